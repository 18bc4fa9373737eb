// The front of the data files and the printed bar information.
#include <gtest/gtest.h>

#include <climits>
#include <cstring>

#include "support/files.h"
#include "support/series.h"

namespace {

using qvtest::Bars;
using qvtest::ScratchDir;

struct FileFront : testing::Test {
  const ScratchDir dir;
  const std::string path = dir.path(), output = dir / "output";
};

TEST_F(FileFront, KnowsTypesByNumberAndName) {
  const std::pair<const char*, int> types[] = {
      {"CSI", 1}, {"Ct", 2},   {"dj", 3},   {"FS", 4}, {"tC", 5}, {"TT", 6},  {"aiq", 8}, {"1", 1},
      {"8", 8},   {" +7x", 7}, {"3abc", 3}, {"9", 7},  {"0", 7},  {"CTX", 7}, {" CT", 7}, {"4294967298", 7}};
  for (const auto& [text, code] : types) EXPECT_EQ(qvFILEtype(text), code) << text;
}

TEST_F(FileFront, ReadsTheLayoutThatATextTypeNames) {
  dir.write("a.csv", "2000/01/03,1,10\n2000/01/04,2,20\n");
  dir.write("TxtInfo.TXT", "dt=1\ncl=2\ndelimit=,\n");
  dir.write("my.lay", "dt=1\ncl=3\ndelimit=,\n");
  const std::tuple<const char*, int, double> types[] = {{"txt", 0, 2}, {"7", 0, 2},  {"MY.LAY", 0, 20},
                                                        {"07", -2, 0}, {"9", -2, 0}, {"", -2, 0}};
  for (const auto& [type, status, close] : types) {
    Bars bars;
    double found = -1;
    ASSERT_EQ(qvFILEread(type, &bars, path.c_str(), "A.CSV", 0, -1), status) << type;
    EXPECT_EQ(qvGetArrayItem(&bars.close, 1), close) << type;
    EXPECT_EQ(qvFILEfindrec(type, path.c_str(), "a.csv", 36529, &found), status ? -2 : 1);
    EXPECT_EQ(found, status ? 0 : 36529) << "cleared first";
  }
}

TEST_F(FileFront, KnowsTheFormatsWithoutAReader) {
  Bars bars;
  for (const char* type : {"CSI", "FS", "AIQ"}) {
    EXPECT_EQ(qvFILEread(type, &bars, path.c_str(), "a", 0, -1), -10) << type;
    EXPECT_EQ(qvFILEfindrec(type, path.c_str(), "a", 1, nullptr), -10);
    EXPECT_EQ(qvFILElist(type, path.c_str(), output.c_str(), 0), 0);
  }
  EXPECT_EQ(qvFILEtype(nullptr), -1);
}

TEST_F(FileFront, PrintsTheBarInformationThatIsThere) {
  const auto printed = [this](const QvBars& bars, int append = 0) {
    EXPECT_EQ(qvFILEprintinfo(&bars, output.c_str(), append), 0);
    return dir.read("output");
  };
  EXPECT_EQ(printed(Bars()),
            "barsize      0\ndatasize     0\nreccnt       0\npath         \nname         \nsymbol       \n"
            "description  \nfrequency    Unknown\ndatatype     Unknown\nfiletype     Unknown\n");
  Bars bars({{1, 1, 1, 1}, {2, 2, 2, 2}});
  bars.reccnt = 250;
  std::strcpy(bars.path, "C:\\DATA");
  std::strcpy(bars.name, "F12.DAT");
  std::strcpy(bars.symbol, "ACME");
  std::strcpy(bars.description, "Acme 100% puts");
  std::strcpy(bars.cusip, "004764106");
  bars.begindate = 36528;
  bars.enddate = 39462.75;
  bars.filetype = bars.frequency = bars.optiontype = 2;
  bars.datatype = 4;
  bars.deliverydate = 39500;
  bars.strikeprice = 12.5;
  const std::string expected =
      "barsize      2\ndatasize     2\nreccnt       250\npath         C:\\DATA\nname         F12.DAT\n"
      "symbol       ACME\ndescription  Acme 100% puts\ncusip        004764106\nbegindate    01/03/2000\n"
      "enddate      01/15/2008\nfrequency    Daily\ndatatype     Option\noptiontype   Put\n"
      "deliverydate 02/22/2008\nstrikeprice        12.50\nfiletype     CompuTrac\n";
  qvSetDefaultDateFormat(1);
  EXPECT_EQ(printed(bars), expected);
  EXPECT_EQ(printed(bars, 1), expected + expected);
  qvSetDefaultDateFormat(0);
  EXPECT_EQ(qvFILEprintinfo(&bars, path.c_str(), 0), -2);

  // Fields that no reader stores: texts without terminators, codes and numbers out of range.
  std::memset(bars.path, 'p', reinterpret_cast<char*>(&bars.begindate) - bars.path);
  bars.filetype = bars.datatype = bars.optiontype = INT_MAX;
  bars.frequency = -1;
  bars.begindate = 1e300;
  bars.enddate = qvtest::kNaN;
  bars.strikeprice = -1e300;
  const std::string text = printed(bars);
  for (const char* line : {"\nname         pppppppppppppppp\n", "\nstrikeprice  -9223372036854775808.",
                           "\nfrequency    Unknown\ndatatype     Unknown\noptiontype   Unknown\n"})
    EXPECT_NE(text.find(line), std::string::npos) << text;
}

}  // namespace
