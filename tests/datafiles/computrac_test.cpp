// CompuTrac directories: lookup, field orders, headers, times, single fields, lister.
#include <gtest/gtest.h>

#include "support/vendor_formats.h"

namespace {

using namespace qvtest;

struct Entry {
  int number;
  std::string symbol = "ACME", name = "Acme Industries";
  char period = 'D';
  int fields = 7;  // per record in master, flags in xmaster
  double first = kMonday, last = kMonday + 5;
};

std::string master(const std::vector<Entry>& entries, int more = 0) {
  std::string file = little(static_cast<int>(entries.size()) + more, 2) + gap(51);
  for (const Entry& e : entries)
    file += little(e.number, 1) + gap(3) + little(e.fields, 1) + gap(2) + padded(e.name, 16) + gap(2) +
            mbf(vendorDate(e.first)) + mbf(vendorDate(e.last)) + e.period + gap(2) + padded(e.symbol, 16) +
            gap(1);
  return file;
}

std::string xmaster(const std::vector<Entry>& entries) {
  const auto date = [](double d) { return little(static_cast<int>(vendorDate(d)) + 19000000, 4); };
  std::string file = gap(10) + little(static_cast<int>(entries.size()), 2) + gap(138);
  for (const Entry& e : entries)
    file += gap(1) + padded(e.symbol, 15) + padded(e.name, 45) + gap(1) + e.period + gap(2) +
            little(e.number, 2) + gap(3) + little(e.fields, 1) + gap(37) + date(e.first) + gap(4) +
            date(e.last) + gap(30);
  return file;
}

// Letters that are no field take a place in the record.
std::string dataFile(const std::string& fields, int records, int lastRecord = INT_MAX, int step = 1) {
  return padded(gap(2) + little(std::min(lastRecord, records + 1), 2), fields.size() * 4) +
         recordsOf(fields, records, step, mbfField);
}

const VendorFormat& row(const char* label, const char* name, const std::string& fields,
                        const Files& directory) {
  const auto data = [fields](int step) { return dataFile(fields, 6, INT_MAX, step); };
  return vendorFormat(label, "CT", qvCTread, qvCTfindrec, qvCTlist, directory, name, fields, data,
                      "Acme Industries", "Daily");
}
const VendorFormat& kXmaster = row("CompuTracXmaster", "F1.MWD", "DOHLCVI",
                                   {{"xmaster", xmaster({{1, "ACME", "Acme Industries", 'D', 0x7F}})}});
const VendorFormat& kMaster =
    row("CompuTracMaster", "F1.DAT", "VLCD",
        {{"master", master({{2, "B"}, {1}})}, {"F1.DOP", "VOL\nLOW\nCLOSE\nDATE\n"}});

struct CompuTrac : VendorTest {
  CompuTrac() : VendorTest(kMaster) {}
};

TEST_F(CompuTrac, ReadsTheUsualFieldsOfAPeriod) {
  const std::tuple<char, int, int, std::string> usual[] = {
      {'I', 1, 4, "DTCV"},     {'I', 1, 5, "DTCVI"}, {'I', 1, 6, "DTHLCV"}, {'I', 1, 7, "DTOHLCV"},
      {'I', 1, 8, "DTOHLCVI"}, {'D', 2, 5, "DHLCV"}, {'W', 3, 6, "DOHLCV"}, {'M', 4, 7, "DOHLCVI"},
      {'Q', 5, 5, "DHLCV"},    {'Y', 6, 5, "DHLCV"}, {'i', 0, 5, "DHLCV"},  {'I', 1, 3, ""},
      {'I', 1, 9, ""},         {'D', 2, 4, ""},      {'D', 2, 8, ""}};
  for (const auto& [period, frequency, fields, letters] : usual) {
    dir.write("MASTER", master({{255, "ACME", "Acme", period, fields}}));
    dir.write("f255.dat", dataFile(letters.empty() ? "DHLCV" : letters, 3));
    expectBars(letters, letters.empty() ? 0 : 3);
    EXPECT_EQ(bars.reccnt, 3);
    EXPECT_EQ(bars.frequency, frequency);
  }
  dir.write("f255.dat", dataFile("DHLCV", 3, -1));
  EXPECT_EQ(status(), -9) << "records of no known field and no known number";
}

TEST_F(CompuTrac, ReadsTheFlaggedFieldsOfXmaster) {
  for (int k = 0; k < 16; ++k) {  // each field alone, and all but it
    const int flags = k < 8 ? 1 << k : 255 ^ 1 << (k - 8);
    std::string fields;
    for (const char f : std::string("DTOHLCVI"))
      if (flags >> std::string("HLCVDOIT").find(f) & 1) fields += f;
    dir.write("XMaster", xmaster({{1234, "ACME", "", 'I', flags}}));
    dir.write("F1234.mwd", dataFile(fields, 2));
    expectBars(fields, 2);
  }
}

TEST_F(CompuTrac, ReadsTheFieldsOfTheOrderFile) {
  dir.write("MASTER", master({{12}}));
  const auto expectOrder = [&](const std::string& order, const std::string& stored,
                               const std::string& fields) {
    SCOPED_TRACE(order.substr(0, 60));
    dir.write("f12.dop", order);
    dir.write("F12.DAT", dataFile(stored, 2));
    expectBars(fields, fields.empty() ? 0 : 2);
  };
  expectOrder("\"DATE\",10,0\r\n\"CLOSE\",10,4\r\n\"VOL\",10,0\r\n\"Open\"\r\n\x1A", "DCVO", "DCVO");
  expectOrder("oi\nTime\n\n\r\n\x1A\nlow\nhigh\ndate", "ITLHD", "ITLHD");
  // Unknown names and pieces of long lines take positions, but the record is as long as the number of
  // known ones: what would lie beyond its end is absent.
  expectOrder("DATE\x1A\r\n\"CLOSE\n,\nLOW\"\n", "DCV", "DC");
  expectOrder("DATE,\"\"," + std::string(71, '0') + "OPEN,\nCLOSE" + std::string("\0x", 2), "DOC", "DOC");
  expectOrder("", "DC", "");
}

TEST_F(CompuTrac, FindsASecurityByEachOfItsNames) {
  std::string file = master({{1, "AB C", "Alpha Beta"},
                             {2, "SPX", "Index <DIR>"},
                             {3, "SPX", "Index W", 'W'},
                             {4, "F5.DAT", "odd"},
                             {5, "X Y Z", "ab c"},
                             {200, "LAST", "No@D"},
                             {7, "0123456789ABCDEF", "ALL SIXTEEN CHRS"}});
  dir.write("master", file.replace(53 * 2 + 18, 5, "<DIR>"));
  const std::string longName(45, 'n');
  dir.write("XMASTER", xmaster({{-3, "SPX", "of xmaster"}, {300, "A LONG SYMBOL 5", longName}}));
  expectNames({{"F1.DAT", {"f1.dat", "ab c", "AB", "AB C@D", "alpha beta"}},
               {"F3.DAT", {"SPX", "spx@w"}},
               {"F4.DAT", {"F5.DAT"}},  // the first entry that fits
               {"F5.DAT", {"x", "x y", "x y z"}},
               {"F200.DAT", {"F200.DAT", "no@d"}},
               {"F7.DAT", {"0123456789abcdef", "all sixteen chrs"}},
               {"F-3.MWD", {"F-3.mwd", "SPX@D", "of xmaster"}},
               {"F300.MWD", {"A LONG SYMBOL 5", "a long symbol 5@D", longName}},
               {"", {"F2.DAT", "X Y@D", "x y w", "A", "a long", "spx@", "F300.DAT", "SPX ", "Index"}}});
}

TEST_F(CompuTrac, AnswersADamagedMasterUnlessXmasterHasTheSecurity) {
  EXPECT_EQ(status(), -8) << "neither file";
  dir.write("master", std::string(52, '\0'));
  EXPECT_EQ(status(), -4);
  dir.write("F1.MWD", dataFile("DC", 1));
  dir.write("xmaster", xmaster({{1, "ACME", "", 'D', 0x14}}));
  EXPECT_EQ(status(), 0);
  EXPECT_EQ(status("OTHER"), -4);
  dir.write("master", master({{1}}, 8));
  EXPECT_EQ(status("OTHER"), -8) << "fewer entries than the header says";
  dir.write("master", master({{1}, {2, "OTHER"}}, -1));
  EXPECT_EQ(status("OTHER"), -8) << "behind the entries that the header counts";
  dir.write("xmaster", std::string(149, '\0'));
  EXPECT_EQ(status("OTHER"), -4);
  EXPECT_EQ(qvCTread(&bars, (path + "/" + std::string(300, 'x')).c_str(), "ACME", 0, -1), -8);
}

TEST_F(CompuTrac, TakesNoMoreThanTheHeaderSays) {
  dir.write("master", master({{1}}));
  const std::string file = dataFile("DOHLCVI", 6);
  // The number of the last record, the records that it promises, those read. Negative: by the size.
  const std::tuple<int, int, int> headers[] = {{0, 0, 0}, {1, 0, 0}, {2, 1, 1}, {4, 3, 3}, {-1, 6, 6}};
  for (const auto& [last, records, stored] : headers) {
    dir.write("F1.DAT", std::string(file).replace(2, 2, little(last, 2)));
    EXPECT_EQ(read(), records ? 0 : -9);
    EXPECT_EQ(read("ACME", -32768), 0);
    EXPECT_EQ(bars.reccnt, records);
    EXPECT_EQ(bars.barsize, stored);
  }
  dir.write("F1.DAT", std::string(3, '\0'));
  EXPECT_EQ(status(), -4);
  dir.write("F1.DAT", dataFile("DOHLCVI", 6, -1));
  std::filesystem::resize_file(dir / "F1.DAT", std::uintmax_t{28} << 23);  // a hole, which takes no room
  EXPECT_EQ(status(), -4);
  // Measured by size, records of two fields: (24 + 8) / 8 is the last, one more than there is.
  dir.write("F1.DOP", "DATE\nCLOSE");
  dir.write("F1.DAT", dataFile("DC", 2, -1));
  ASSERT_EQ(read(), 0);
  EXPECT_EQ(bars.reccnt, 3);
  EXPECT_EQ(bars.barsize, 2);
}

TEST_F(CompuTrac, FindsTheRecordOfATime) {
  dir.write("xmaster", xmaster({{1, "ACME", "", 'I', 0x94}, {2, "DAILY", "", 'D', 0x14}}));
  std::string ticks = gap(2) + little(7, 2) + gap(8);
  for (const int d : {0, 2})
    for (const int time : {93000, 120000, 161530}) ticks += mbf(vendorDate(kMonday + d)) + mbf(time) + mbf(d);
  dir.write("F1.MWD", ticks);
  constexpr double m = kMonday, morning = 9.5 / 24, close = (16 * 3600 + 15 * 60 + 30) / 86400.0;
  // A quarter to one comes after noon, by its minutes.
  expectFindings(finder, {{m + morning, 0, m + morning},
                          {m + 12.75 / 24, 2, m + close},
                          {m + close, 2, m + close},
                          {m + 1, 3, m + 2 + morning},
                          {m, -9, 0}});
  dir.write("F2.MWD", dataFile("DC", 4));
  EXPECT_EQ(find(m + 2.75, nullptr, "DAILY"), 2) << "only the day counts";
}

TEST_F(CompuTrac, ReadsOneField) {
  dir.write("master", master({{1, "ACME", "Acme", 'I', 8}, {2, "FEW", "Few", 'D', 5}}));
  dir.write("F1.DAT", dataFile("DTOHLCVI", 6));
  dir.write("F2.DAT", dataFile("DHLCV", 6));
  Array a;
  const auto readArray = [&](const char* field, int start, int count, const char* name = "ACME") {
    return qvCTreadarray(&a, path.c_str(), name, field, start, count);
  };
  for (std::size_t k = 0; const char* field : {"dt", "OP", "Hi", "lo", "cl", "vol", "oi"}) {
    a.fresh()->firstValid = 3;
    expectGives(readArray(field, 5, 9), a, {expectedBar("DTOHLCVI", 5)[k++]}, 0);
    EXPECT_EQ(a.capacity, 9);
  }
  Array::fill(*a.fresh(), 4, 777);
  expectGives(readArray("cl", -1, -1), a, {3, 4, 5, 6});  // the last of the room there is
  for (int k = 0; k < 2; ++k, a.fresh()) expectGives(readArray("cl", 0, 0), a, {});
  expectGives(readArray("oi", 4, 9, "FEW"), a, {0, 0});  // the file has no such field
  for (const int answer :
       {readArray("ti", 0, -1), readArray("date", 0, -1), readArray("", 0, -1), readArray(nullptr, 0, -1),
        readArray("cl", 0, -1, nullptr), qvCTreadarray(&a, nullptr, "a", "cl", 0, 1),
        qvCTreadarray(nullptr, "", "a", "cl", 0, 1)})
    EXPECT_EQ(answer, -1);
  EXPECT_EQ(readArray("cl", 0, -1, "none"), -8);
  EXPECT_EQ(readArray("cl", 6, -1), -9);
  a.fresh();
  expectAnswersExhaustedMemory("qvCTreadarray", [&] { return readArray("cl", 0, -1); });
}

TEST_F(CompuTrac, ListsMasterThenXmaster) {
  std::string file = master({{1, "x"}, {2, "0123456789ABCDEF", "Sixteen of these", '?', 7, 2, 44000}});
  dir.write("master", file.replace(53 + 18, 5, "<DIR>"));
  const std::string inMaster =
      padded("F2.DAT       0123456789ABCDEF Sixteen of these", 79) + "Unknown   2000/01/01 2020/06/18\n";
  dir.write("xmaster", "too short");
  EXPECT_EQ(listed(-4), inMaster);
  dir.write("xmaster", xmaster({{300, "EX", "Ex", 'W'}}));
  EXPECT_EQ(listed(),
            inMaster + padded("F300.MWD     EX               Ex", 79) + "Weekly    2000/01/03 2000/01/08\n");
}

}  // namespace
