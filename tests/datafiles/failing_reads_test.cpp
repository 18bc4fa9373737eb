// Files that cannot be read on: each read and each step to another place fails in turn, as on a drive that is
// pulled out. The linker hands the library's calls over (--wrap).
#ifdef __linux__
#include <gtest/gtest.h>

#include <cstdio>

#include "support/vendor_formats.h"

namespace {

int countdown = 0;  // the call that fails; 0: none does
std::FILE* failed = nullptr;

bool failsNow(std::FILE* file) {
  if (countdown == 0 || --countdown > 0) return false;
  failed = file;
  return true;
}

}  // namespace

extern "C" {
std::size_t __real_fread(void* to, std::size_t size, std::size_t count, std::FILE* file);
int __real_fseeko64(std::FILE* file, std::int64_t offset, int whence);
int __real_ferror(std::FILE* file);
std::size_t __wrap_fread(void* to, std::size_t size, std::size_t count, std::FILE* file) {
  return failsNow(file) ? 0 : __real_fread(to, size, count, file);
}
int __wrap_fseeko64(std::FILE* file, std::int64_t offset, int whence) {
  return failsNow(file) ? -1 : __real_fseeko64(file, offset, whence);
}
int __wrap_ferror(std::FILE* file) {
  return file == failed || __real_ferror(file);
}
}

namespace {

using namespace qvtest;

// A call that answers -4, or -6 for a step, whenever one of it has failed. A lister goes on with the next
// file.
void expectTells(const char* name, const std::function<int()>& call, bool goesOn = false) {
  for (int k = 1, status = -4; failed || k == 1; ++k) {
    ASSERT_LT(k, 100) << name;
    countdown = k;
    failed = nullptr;
    status = call();
    countdown = 0;
    EXPECT_TRUE(failed ? status == -4 || status == -6 || (goesOn && status == 0) : status == 0)
        << name << " answers " << status << " at " << k;
  }
  failed = nullptr;
}

class EveryReader : public VendorTest, public testing::WithParamInterface<VendorFormat> {
 protected:
  EveryReader() : VendorTest(GetParam()) {
    for (const auto& [name, bytes] : vendor.directory) dir.write(name, bytes);
    dir.write(vendor.dataFile, vendor.data(1));
  }
};

TEST_P(EveryReader, TellsOfAFailedRead) {
  expectTells("read", [&] { return read(); });
  expectTells("find", [&] { return std::min(find(kMonday), 0); });
  Array array;
  if (vendor.read == qvCTread)
    expectTells("array", [&] { return qvCTreadarray(&array, path.c_str(), "ACME", "cl", 0, -1); });
  expectTells(
      "list", [&] { return vendor.list(path.c_str(), list.c_str(), 0); }, true);
}

INSTANTIATE_TEST_SUITE_P(, EveryReader, testing::ValuesIn(vendorFormats()),
                         testing::PrintToStringParamName());

TEST(TextReaders, TellOfAFailedRead) {
  const ScratchDir dir;
  const std::string path = dir.path();
  std::string text;  // longer than what is read at a time
  for (int k = 0; k < 20'000; ++k) text += "2000/01/03," + std::to_string(k) + "\n";
  dir.write("a.csv", text + "2000/01/04,1\n");
  QvTxtInfo info = {1, 0, 0, 0, 0, 2, 0, 0, 0, 0, {','}};
  Bars bars;
  Array array;
  expectTells("read", [&] { return qvTXTread(&bars, path.c_str(), "a.csv", &info, 0, -1); });
  expectTells("find",
              [&] { return std::min(qvTXTfindrec(path.c_str(), "a.csv", &info, kMonday + 1, nullptr), 0); });
  expectTells("array", [&] { return qvTXTreadarray(&array, path.c_str(), "a.csv", ",", 0, 2, 0, -1); });
  // A directory that is longer than what is read at a time, without the security.
  dir.write("xmaster", std::string(10, '\0') + little(600, 2) + std::string(138 + 600 * 150, '\0'));
  expectTells("security", [&] {
    const int status = qvCTread(&bars, path.c_str(), "ACME", 0, -1);
    return status == -8 ? 0 : status;
  });
  expectTells("layout", [&] { return qvTXTreadinfo(path.c_str(), "a.csv", &info); });
}

}  // namespace
#endif
