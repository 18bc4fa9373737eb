// The bundled directories of other vendors' formats: what is in them, and one security of each.
#include <cstdio>
#include <string>

#include "cli/demo.h"
#include "cli/records.h"
#include "cli/table.h"

namespace qvcli {

void showDataFiles(const DemoData& demo) {
  struct Format {
    const char* type;
    const char* folder;
    const char* title;
    const char* security;
  };
  constexpr Format kFormats[] = {{"CT", "computrac", "CompuTrac", "SPX"},
                                 {"DJ", "dowjones", "Dow Jones", "SPX5"},
                                 {"TC", "telechart", "TeleChart", "SPX"},
                                 {"TT", "techtools", "TechTools", "SPX"}};
  for (const Format& f : kFormats) {
    const std::string folder = demo.directory + "/" + f.folder;
    heading(std::string(f.title) + " files in " + folder);
    std::fflush(stdout);
    check(qvFILElist(f.type, folder.c_str(), "STDOUT", 1), folder);
    qv::Bars bars;
    check(qvFILEread(f.type, &bars, folder.c_str(), f.security, 0, -1), folder + ", " + f.security);
    std::printf("\n%s: %d bars, the last three:\n", f.security, bars.barsize);
    printColumns(bars.date, bars.barsize - 3, bars.barsize - 1,
                 {{"open", &bars.open},
                  {"high", &bars.high},
                  {"low", &bars.low},
                  {"close", &bars.close},
                  {"volume", &bars.volume, 0}});
  }
}

}  // namespace qvcli
