// Text price files: layout, finder, reader, single column, lister and writers.
#include <gtest/gtest.h>

#include <chrono>
#include <ctime>

#include "support/expect.h"
#include "support/vendor_files.h"

namespace {

using namespace qvtest;

constexpr double kMonday = 36528.0;  // 3 January 2000

std::string day(double date) {
  char text[20];
  qvFormatDate(date, "yyyy/mm/dd", text);
  return text;
}

// Days 0 .. n - 1 after that Monday, each with its number as close.
std::string dailyFile(int n, bool newestFirst = false) {
  std::string text;
  for (int k = 0; k < n; ++k) {
    const int d = newestFirst ? n - 1 - k : k;
    text += day(kMonday + d) + "," + std::to_string(d) + "\n";
  }
  return text;
}

QvTxtInfo dateAndClose(int skip = 0) {
  QvTxtInfo info{};
  info.dateColumn = 1;
  info.closeColumn = 2;
  info.skip = skip;
  info.delimiters[0] = ',';
  return info;
}

// ---- Layout ---------------------------------------------------------------------------------------

QvTxtInfo layoutOf(const std::string& text) {
  const ScratchDir dir;
  dir.write("txtinfo.txt", text);
  QvTxtInfo info{};
  EXPECT_EQ(qvTXTreadinfo(dir.path().c_str(), "txtinfo.txt", &info), 0);
  return info;
}

std::string delimitersOf(const std::string& text) {
  const QvTxtInfo info = layoutOf(text);
  return {info.delimiters, strnlen(info.delimiters, sizeof info.delimiters)};
}

TEST(TextLayout, ReadsKeysInAnyCaseAndIgnoresWhatItDoesNotKnow) {
  const QvTxtInfo info = layoutOf(
      "# a comment\r\n\r\n  DT = 1 \r\nti=2\nop\t= 3\nHi =+4\nlo = 5 and more\n\ncl = 6\nvol = x\noi = -8\n"
      "skip = 99999999999\ncolour = 7\nskip\ndtformat = mdy\n");
  const QvTxtInfo expected = {1, 2, 3, 4, 5, 6, 0, -8, 1, INT_MAX, {' '}};
  EXPECT_EQ(std::memcmp(&info, &expected, sizeof info), 0);
}

TEST(TextLayout, DecodesDelimiters) {
  const std::pair<const char*, const char*> cases[] = {
      {"", " "},
      {",\\t\n", ",\t"},
      {"_\n", " "},
      {";\\|\t\n", ";\\|\t"},                         // other backslashes and a plain tab
      {"abcdefghijklmnopq\n", "abcdefghijklmnop"},    // 16 characters
      {"abcdefghijklmno\\t\n", "abcdefghijklmno\\"},  // of the value
      {"abc\ndelimit = ;\n", ";bc"},                  // the tail of the first stays
      {";,", ";"}};                                   // no newline: see below
  for (const auto& [text, delimiters] : cases)
    EXPECT_EQ(delimitersOf(std::string("delimit = ") + text), delimiters) << text;
}

TEST(TextLayout, LosesTheLastCharacterOfALineWithoutNewline) {
  EXPECT_EQ(layoutOf("oi = 7").openInterestColumn, 0);
  EXPECT_EQ(layoutOf("oi = 71").openInterestColumn, 7);
  // Pieces of 79 characters are lines: the first ends in "123", the second is a setting of its own.
  EXPECT_EQ(layoutOf("oi =" + std::string(72, ' ') + "12345\n").openInterestColumn, 12);
  EXPECT_EQ(layoutOf(std::string(79, '#') + "oi = 5\n").openInterestColumn, 5);
}

TEST(TextLayout, KnowsTheWordsOfDateFormats) {
  const std::pair<const char*, int> words[] = {
      {"N/A", 0},        {"YMD", 0},      {"mdy", 1},        {"DMY", 2},      {"YY_MM_DD", 0},
      {"CCYY_MM_DD", 0}, {"MM_DD_YY", 1}, {"MM_DD_CCYY", 1}, {"DD_MM_YY", 2}, {"DD_MM_CCYY", 2},
      {"YYMMDD", 0},     {"CCYYMMDD", 0}, {"MMDDYY", 1},     {"MMDDCCYY", 1}, {"DDMMYY", 2},
      {"ddmmccyy", 2},   {"nonsense", 0}};
  for (const auto& [word, code] : words)
    EXPECT_EQ(layoutOf(std::string("dtformat = ") + word + "\n").dateFormat, code) << word;
}

TEST(TextLayout, WritesWhatReadsBackToTheSameRecord) {
  const ScratchDir dir;
  const QvTxtInfo info = {1, 2, 3, 4, 5, 6, 7, 8, 2, 9, {',', ' ', '\t'}};
  ASSERT_EQ(qvTXTwriteinfo(dir.path().c_str(), "my.lay", &info), 0);
  EXPECT_EQ(dir.read("my.lay"),
            "delimit  = ,_\\t\nskip     = 9\ndt       = 1\nti       = 2\nop       = 3\nhi       = 4\n"
            "lo       = 5\ncl       = 6\nvol      = 7\noi       = 8\ndtformat = DMY\n");
  QvTxtInfo back{};
  ASSERT_EQ(qvTXTreadinfo(dir.path().c_str(), "MY.LAY", &back), 0);
  EXPECT_EQ(std::memcmp(&info, &back, sizeof info), 0);
}

TEST(TextLayout, FailsWithoutTouchingTheRecord) {
  const ScratchDir dir;
  QvTxtInfo info = dateAndClose(5);
  const QvTxtInfo before = info;
  EXPECT_EQ(qvTXTreadinfo(dir.path().c_str(), "none.txt", &info), -2);
  EXPECT_EQ(qvTXTreadinfo(dir.path().c_str(), "", &info), -2) << "a directory";
  EXPECT_EQ(qvTXTwriteinfo((dir / "none").c_str(), "txtinfo.txt", &info), -2);
  EXPECT_EQ(std::memcmp(&info, &before, sizeof info), 0);
}

// ---- Reading bars ---------------------------------------------------------------------------------

Items closesOf(const std::string& text, const QvTxtInfo& info, int start, int count, int status = 0) {
  const ScratchDir dir;
  dir.write("a.csv", text);
  Bars bars;
  EXPECT_EQ(qvTXTread(&bars, dir.path().c_str(), "a.csv", &info, start, count), status);
  expectConsistent(bars);
  return itemsOf(bars.close);
}

TEST(TextRead, TakesARangeOfAFileThatIsOldestFirst) {
  const ScratchDir dir;
  std::string text = dailyFile(7);
  dir.write("a.csv", text.substr(text.find('\n') + 1));
  const QvTxtInfo info = dateAndClose();
  expectRecordRange([&](QvBars* bars, int start, int count) {
    return qvTXTread(bars, dir.path().c_str(), "a.csv", &info, start, count);
  });
}

TEST(TextRead, TakesARangeOfAFileThatIsNewestFirst) {
  const struct {
    int start, count;
    Items closes;
  } ranges[] = {{0, -1, {0, 1, 2, 3, 4, 5}},
                {0, 2, {0, 1}},         // the oldest two
                {-1, 2, {4, 5}},        // the newest two
                {4, 2, {1, 2}},         // records 3 and 4 of 5 4 3 2 1 0
                {1, 4, {2, 3, 4, 5}},   // would begin before the file
                {3, -1, {0, 1, 2, 3}},  // the oldest start + 1
                {-3, -1, {0, 1, 2, 3, 4, 5}},
                {0, 8, {0, 0, 0, 1, 2, 3, 4, 5}},  // more slots than records: the last ones are filled
                {6, 1, {}}};
  for (const auto& r : ranges)
    EXPECT_EQ(closesOf(dailyFile(6, true), dateAndClose(), r.start, r.count, r.start == 6 ? -9 : 0), r.closes)
        << r.start << ' ' << r.count;
}

TEST(TextRead, LeavesTheSizeOfNewestFirstReads) {
  const ScratchDir dir;
  dir.write("a.csv", dailyFile(6, true));
  const QvTxtInfo info = dateAndClose();
  Bars bars;
  qvAllocBars(&bars, 4);
  qvReSizeBars(&bars, 2);
  ASSERT_EQ(qvTXTread(&bars, dir.path().c_str(), "a.csv", &info, 0, -1), 0);
  EXPECT_EQ(itemsOf(bars.close), (Items{0, 1})) << "four were stored";
  EXPECT_EQ(bars.close.data[3], 3.0);
}

TEST(TextRead, PutsRecordsWithoutAnOrderIntoTheLastSlot) {
  const std::string sameDay = day(kMonday) + ",1\n" + day(kMonday) + ",2\n" + day(kMonday) + ",3\n";
  EXPECT_EQ(closesOf(sameDay, dateAndClose(), 0, -1), (Items{0, 0, 3}));
  EXPECT_EQ(closesOf(sameDay, dateAndClose(), 0, 1), Items{3});
  EXPECT_EQ(closesOf(sameDay, dateAndClose(), -1, 2), (Items{0, 3}));
  EXPECT_EQ(closesOf(sameDay, dateAndClose(), 3, 1, -9), Items{});
  EXPECT_EQ(closesOf("x,1\ny,2\n", dateAndClose(), 0, 2), (Items{0, 2}));
  EXPECT_EQ(closesOf("", dateAndClose(), 0, -1, -9), Items{});
}

TEST(TextRead, TellsTheOrderByTheFirstTwoDifferentDates) {
  const auto read = [](const std::string& text, int skip) {
    return closesOf(text, dateAndClose(skip), 0, -1);
  };
  const std::string up = day(kMonday) + ",1\n" + day(kMonday + 1) + ",2\n";
  const std::string down = day(kMonday + 1) + ",2\n" + day(kMonday) + ",1\n";
  EXPECT_EQ(read("Date,Close\n" + down, 0), (Items{1, 2, 0})) << "a heading is no date";
  EXPECT_EQ(read(day(kMonday) + ",1\nn/a,7\n" + day(kMonday + 1) + ",2\n", 0), (Items{1, 7, 2}));
  // Three header lines: records 0 and 1 take no part, so 5 4 | 1 2 is rising.
  EXPECT_EQ(read("h\nh\nh\n" + day(kMonday + 5) + ",5\n" + day(kMonday + 4) + ",4\n" + up, 3),
            (Items{5, 4, 1, 2}));
  EXPECT_EQ(read("h\n" + up + down, 1), (Items{1, 2, 2, 1})) << "of one header line all do";
  EXPECT_EQ(read(up, -5), (Items{1, 2}));
}

TEST(TextRead, ReadsEveryColumnOfTheLayout) {
  const ScratchDir dir;
  dir.write("es.txt",
            "date time open high low close volume oi\n"
            "03/01/2000 09:30 1 4 0.5 +2.5 1e3 -7\n"
            "\t04/01/2000   14:15:00 1.25 4 .5 2 99  7 8 9\n"
            "05/01/2000 2:20pm 5\n");
  QvTxtInfo info = {1, 2, 3, 4, 5, 6, 7, 8, 2, 1, {' '}};
  Bars bars;
  ASSERT_EQ(qvTXTread(&bars, dir.path().c_str(), "es.txt", &info, 0, -1), 0);
  EXPECT_EQ(itemsOf(bars.date),
            (Items{kMonday + 34200.0 / 86400, kMonday + 1 + 51300.0 / 86400, kMonday + 2 + 51600.0 / 86400}));
  const Items first{1, 4, 0.5, 2.5, 1000, -7}, second{1.25, 4, 0.5, 2, 99, 7}, third{5, 0, 0, 0, 0, 0};
  for (int i = 0; const Items& bar : {first, second, third}) {
    const Items read = barOf(bars, i++);
    EXPECT_EQ(Items(read.begin() + 1, read.end()), bar);
  }

  // Columns that do not exist leave the series at 0, also in a set that held other bars. No dates: the
  // order is unknown and the last record lands in the last slot.
  info = {0, 9999, -1, INT_MIN, INT_MAX, 6, 0, 0, 2, 1, {' '}};
  ASSERT_EQ(qvTXTread(&bars, dir.path().c_str(), "es.txt", &info, 0, 2), 0);
  for (const QvArray* a : {&bars.date, &bars.open, &bars.high, &bars.low, &bars.volume, &bars.openInterest})
    EXPECT_EQ(a->data[1], 0.0);
  expectConsistent(bars);
}

TEST(TextRead, IgnoresATimeColumnThatIsTheDateColumn) {
  const ScratchDir dir;
  dir.write("a.csv", "2000/01/03 10:30,1\n2000/01/04 15:00,2\n");
  QvTxtInfo info = dateAndClose();
  info.timeColumn = 1;
  Bars bars;
  ASSERT_EQ(qvTXTread(&bars, dir.path().c_str(), "a.csv", &info, 0, -1), 0);
  EXPECT_EQ(itemsOf(bars.date), (Items{kMonday + 0.4375, kMonday + 1.625}));
  double found;
  EXPECT_EQ(qvTXTfindrec(dir.path().c_str(), "a.csv", &info, kMonday + 1, &found), 1);
  EXPECT_EQ(found, kMonday + 1.625);
}

TEST(TextRead, FillsTheBarInformation) {
  const ScratchDir dir;
  dir.write("Microsoft, Corp .2000.csv", dailyFile(3));
  const QvTxtInfo info = dateAndClose();
  Bars bars, expected;
  expected.reccnt = 3;
  expected.filetype = 7;
  std::strcpy(expected.path, dir.path().c_str());
  std::strcpy(expected.name, "Microsoft, Corp");  // 15 characters
  std::strcpy(expected.description, expected.name);
  std::strcpy(expected.symbol, expected.name);
  fillWithOldFile(bars, 1);
  ASSERT_EQ(qvTXTread(&bars, (" " + dir.path() + "\n").c_str(), " Microsoft, Corp .2000.csv ", &info, 1, 1),
            0);
  EXPECT_EQ(infoBytes(bars), infoBytes(expected));

  // The texts may be those of the bar set itself; a count of 0 reads no bars.
  dir.write("up.csv", dailyFile(2));
  std::strcpy(bars.name, "UP.csv");
  ASSERT_EQ(qvTXTread(&bars, bars.path, bars.name, &info, 0, 0), 0);
  EXPECT_EQ(bars.path, dir.path());
  EXPECT_STREQ(bars.symbol, "UP");
  EXPECT_EQ(bars.reccnt, 2);
  EXPECT_EQ(bars.barsize, 0);
}

TEST(TextRead, CountsLinesAsRecordsByTheirFirstCharacter) {
  // Headers of any kind, empty lines with and without carriage returns, a line of blanks (a record, but
  // no bar), an end-of-file mark.
  const std::string text = "h\n\n\r\n" + day(kMonday) + ",1\r\n\n  \t\n\r\r\n" + day(kMonday + 1) +
                           ",2\r\r\n" + day(kMonday + 2) + ",3\r\n" + day(kMonday + 3) + ",4\x1A,junk\n,,\n";
  const ScratchDir dir;
  dir.write("a.csv", text);
  const QvTxtInfo info = dateAndClose(2);
  Bars bars;
  ASSERT_EQ(qvTXTread(&bars, dir.path().c_str(), "a.csv", &info, 0, -1), 0);
  EXPECT_EQ(bars.reccnt, 5);
  EXPECT_EQ(itemsOf(bars.close), (Items{1, 2, 3, 4}));
  ASSERT_EQ(qvTXTread(&bars, dir.path().c_str(), "a.csv", &info, -1, 3), 0);
  EXPECT_EQ(itemsOf(bars.close), (Items{2, 3, 4}));
  EXPECT_EQ(qvTXTfindrec(dir.path().c_str(), "a.csv", &info, kMonday + 1, nullptr), 2);
  Array closes;
  ASSERT_EQ(qvTXTreadarray(&closes, dir.path().c_str(), "a.csv", ",", 2, 2, 0, -1), 0);
  EXPECT_EQ(closes.items(), (Items{1, 2, 3, 4})) << "no item for the blank line";
}

TEST(TextRead, ReadsLongLinesInPieces) {
  // 254 characters, newline included, are a line; the next piece is a record of its own.
  std::string text = day(kMonday) + ",1,";
  text += std::string(254 - text.size(), 'x') + day(kMonday + 1) + ",2\n" + day(kMonday + 2) + ",3\n";
  EXPECT_EQ(closesOf(text, dateAndClose(), 0, -1), (Items{1, 2, 3}));
  for (const int start : {0, 1, 2}) EXPECT_EQ(closesOf(text, dateAndClose(), start, 1), Items{start + 1.0});
}

// The remembered position and the count from the top lead to the same record, in files of many blocks.
TEST(TextRead, BeginsAtTheSameRecordOnBothWays) {
  std::string text = "header\n";
  for (int k = 0; k < 6000; ++k) {
    text +=
        day(kMonday + k) + "," + std::to_string(k) + "," + std::string(static_cast<std::size_t>(k % 97), 'x');
    text += k % 5 == 0 ? "\r\n\n" : k % 7 == 0 ? "\n\r\n" : "\n";
  }
  const ScratchDir dir;
  dir.write("a.csv", text);
  const QvTxtInfo info = dateAndClose(1);
  for (const int start : {0, 1, 1234, 3000, 5995}) {
    Bars here, counted;
    ASSERT_EQ(qvTXTread(&here, dir.path().c_str(), "a.csv", &info, start, 5), 0);
    ASSERT_EQ(qvTXTread(&counted, dir.path().c_str(), "a.csv", &info, -1, 6000 - start), 0);
    for (int i = 0; i < 5; ++i) {
      EXPECT_EQ(here.close.data[i], start + i);
      EXPECT_EQ(counted.close.data[i], start + i);
    }
    EXPECT_EQ(counted.barsize, 6000 - start);
  }
}

// ---- Finding a record -----------------------------------------------------------------------------

TEST(TextFind, FindsTheDateOrTheNextLaterRecordInEitherOrder) {
  const ScratchDir dir;
  // Days 0 2 4 6 behind a heading.
  const auto line = [](int d) { return day(kMonday + d) + "," + std::to_string(d) + "\n"; };
  dir.write("up.csv", "Date,Close\n" + line(0) + "\n" + line(2) + line(4) + line(6));
  dir.write("down.csv", "Date,Close\n" + line(6) + line(4) + "\n" + line(2) + line(0));
  const QvTxtInfo info = dateAndClose(1);
  const auto in = [&](const char* name) {
    return [&, name](double date, double* found) {
      return qvTXTfindrec(dir.path().c_str(), name, &info, kMonday + date, found);
    };
  };
  expectFindings(in("up.csv"), {{0, 0, kMonday},
                                {2, 1, kMonday + 2},
                                {3, 2, kMonday + 4},
                                {3.5, 2, kMonday + 4},
                                {6, 3, kMonday + 6},
                                {0.25, 1, kMonday + 2}});
  expectFindings(in("down.csv"), {{0, 3, kMonday},
                                  {2, 2, kMonday + 2},
                                  {3, 1, kMonday + 4},
                                  {6, 0, kMonday + 6},
                                  {0.25, 2, kMonday + 2}});
  for (const char* name : {"up.csv", "down.csv"})
    expectFindings(in(name), {{-1, -9, 0}, {7, -9, 0}, {kNaN, -9, 0}});
  EXPECT_EQ(in("none.csv")(0, nullptr), -2);
}

// ---- One column -----------------------------------------------------------------------------------

TEST(TextReadArray, CountsTheHeaderLinesInTotalAndStart) {
  const ScratchDir dir;
  dir.write("a.csv", "h,h\nh,h\n0,10\n1,11\n\n2,12\n3,13\n4\n");
  struct Case {
    int start, count;
    Items items;
    int capacity;
  };
  for (const Case& c :
       {Case{0, -1, {10, 11, 12, 13, 0}, 7},           // the total is 5 + 2
        Case{1, -1, {11, 12, 13, 0}, 6},               // below skip: from the first data line
        Case{2, -1, {10, 11, 12, 13, 0}, 5},           // from skip on: from the top of the file
        Case{3, 2, {11, 12}, 2}, Case{-1, 3, {0}, 3},  // begins at line 7 - 3 after the headers
        Case{-1, -1, {10, 11, 12, 13, 0}, 7}, Case{7, 2, {}, 2}, Case{9, -1, {}, 0}}) {
    Array a;
    EXPECT_EQ(qvTXTreadarray(&a, dir.path().c_str(), "A.CSV", ",", 2, 2, c.start, c.count), 0);
    EXPECT_EQ(a.items(), c.items) << c.start << ' ' << c.count;
    EXPECT_EQ(a.capacity, c.capacity) << c.start << ' ' << c.count;
  }
}

TEST(TextReadArray, KeepsWithinTheCapacity) {
  const ScratchDir dir;
  dir.write("a.csv", "5;6\n7|8\n9\n");
  Array a;
  Array::fill(a, 2, 1.5);
  a.firstValid = 1;
  ASSERT_EQ(qvTXTreadarray(&a, dir.path().c_str(), "a.csv", ";|", 0, 2, 0, 100), 0);
  EXPECT_EQ(a.items(), (Items{6, 8}));
  EXPECT_EQ(a.firstValid, 0);
  ASSERT_EQ(qvTXTreadarray(&a, dir.path().c_str(), "a.csv", "", -3, 1, 2, 100), 0);
  EXPECT_EQ(a.items(), Items{9});
  ASSERT_EQ(qvTXTreadarray(&a, dir.path().c_str(), "a.csv", ";", 0, -1, 0, 2), 0);
  EXPECT_EQ(a.items(), (Items{0, 0}));
  EXPECT_EQ(qvTXTreadarray(&a, dir.path().c_str(), "none", ";", 0, 1, 0, 0), 0) << "count 0 opens nothing";
  EXPECT_EQ(qvTXTreadarray(&a, dir.path().c_str(), "none", ";", 0, 1, 0, 1), -2);
  EXPECT_EQ(a.items(), (Items{0, 0}));
}

// ---- Listing and writing --------------------------------------------------------------------------

TEST(TextList, ListsTheFilesOfFourPatternsInTheirOrder) {
  const ScratchDir dir;
  for (const char* name : {"b.TXT", "A.txt", "txtinfo.txt", "q.prn", "long file name.csv", "x.asc", "y.dat"})
    dir.write(name, "");
  std::filesystem::create_directory(dir / "directory.csv");
  std::tm noon{};
  noon.tm_year = 108, noon.tm_mday = 15, noon.tm_hour = 12, noon.tm_isdst = -1;  // 15 January 2008
  const auto time = std::chrono::system_clock::from_time_t(std::mktime(&noon));
  for (const auto& entry : std::filesystem::directory_iterator(dir.path()))
    std::filesystem::last_write_time(entry, std::chrono::file_clock::from_sys(time));

  ASSERT_EQ(qvTXTlist(dir.path().c_str(), (dir / "list").c_str(), 0), 0);
  std::string expected =
      "File Name    Symbol           Description                                      Frequency First "
      "Date Last Date \n"
      "------------ ---------------- ------------------------------------------------ --------- "
      "---------- ----------\n";
  const auto line = [](const char* name, const char* symbol, const char* description) {
    return padded(name, 13) + padded(symbol, 17) + padded(description, 49) +
           "Unknown   Unknown    2008/01/15\n";
  };
  expected += line("x.asc", "x", "x.asc") + line("long file na", "long file name", "long file name.csv") +
              line("q.prn", "q", "q.prn") + line("A.txt", "A", "A.txt") + line("b.TXT", "b", "b.TXT");
  EXPECT_EQ(dir.read("list"), expected);
  qvSetDefaultDateFormat(2);
  EXPECT_EQ(qvTXTlist(dir.path().c_str(), (dir / "list").c_str(), 1), 0);
  qvSetDefaultDateFormat(0);
  EXPECT_EQ(dir.read("list").size(), 2 * expected.size());
  EXPECT_NE(dir.read("list").find("15/01/2008"), std::string::npos);
  EXPECT_EQ(qvTXTlist(dir.path().c_str(), dir.path().c_str(), 0), -2);
  EXPECT_EQ(qvTXTlist((dir / "none").c_str(), (dir / "list").c_str(), 0), 0) << "no files";
}

TEST(TextWrite, WritesTextAndLines) {
  const ScratchDir dir;
  const std::string path = dir / "out.txt";
  EXPECT_EQ(qvTXTwriteline("lost", path.c_str(), 0), 0);
  EXPECT_EQ(qvTXTwrite("100%s, %d%%", path.c_str(), 0), 0) << "not a printf format";
  EXPECT_EQ(qvTXTwriteline("|", path.c_str(), -1), 0);
  EXPECT_EQ(dir.read("out.txt"), "100%s, %d%%|\n");
  testing::internal::CaptureStdout();
  EXPECT_EQ(qvTXTwriteline("one", "StdOut", 0), 0);
  EXPECT_EQ(qvTXTwrite("two", "STDOUT", 0), 0);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "one\ntwo");
  EXPECT_EQ(qvTXTwrite("x", dir.path().c_str(), 0), -2);
  EXPECT_EQ(qvTXTwrite(nullptr, "STDOUT", 0), -1);
  EXPECT_EQ(qvTXTwriteline("x", nullptr, 0), -1);
#ifdef __linux__
  EXPECT_EQ(qvTXTwrite("x", "/dev/full", 0), -5);
#endif
}

// ---- Bad input ------------------------------------------------------------------------------------

// Everything that reads a file, over one file; the results must be error codes or the rules.
void readEverything(const ScratchDir& dir, const char* name) {
  const std::string path = dir.path();
  QvTxtInfo layout{};
  EXPECT_EQ(qvTXTreadinfo(path.c_str(), name, &layout), 0);
  const QvTxtInfo odd = {-1, 9999, 0, 3, INT_MIN, 2, INT_MAX, 1, 7, -2, {'\0', 'x'}};
  for (const QvTxtInfo& info : {dateAndClose(), dateAndClose(2), odd, layout}) {
    const auto read = [&](QvBars* bars, int start, int count) {
      Array a;
      EXPECT_EQ(qvTXTreadarray(&a, path.c_str(), name, ",", info.skip, info.closeColumn, start, count), 0);
      EXPECT_LE(a.size, a.capacity);
      const int status = qvTXTread(bars, path.c_str(), name, &info, start, count);
      EXPECT_TRUE(status == 0 || status == -9) << status;
      return status;
    };
    expectSurvives(read, [&](double date, double* found) {
      return qvTXTfindrec(path.c_str(), name, &info, date, found);
    });
  }
}

TEST(TextFiles, SurviveDamage) {
  const ScratchDir dir;
  dir.write("a", "dt = 1\r\n\n  delimit = ,\\t_\ncl = 2\n" + dailyFile(2) + "\r\n" + dailyFile(2, true) +
                     "dtformat = DMY\n");
  withDamage(dir, "a", [&] { readEverything(dir, "a"); });
}

TEST(TextFiles, SurviveBinaryFilesAndEndlessLines) {
  std::mt19937 random(1);
  const ScratchDir dir;
  for (int k = 0; k < 40; ++k) {
    std::string bytes(random() % 3000, '\0');
    for (char& c : bytes) c = "0123456789,/=\n\r\t -.ex\0\xFF"[random() % 24];
    dir.write("a", bytes);
    readEverything(dir, "a");
  }
  for (const char c : {'1', ',', '\0', '\r', '\n', '/'}) {
    dir.write("a", std::string(200'000, c));
    readEverything(dir, "a");
  }
  dir.write("a", dailyFile(2) + std::string(10'000'000, '7') + "\n" + dailyFile(2));
  const QvTxtInfo info = dateAndClose();
  Bars bars;
  EXPECT_EQ(qvTXTread(&bars, dir.path().c_str(), "a", &info, -1, 2), 0);
  EXPECT_EQ(bars.reccnt, 2 + 39371 + 2) << "10,000,000 sevens and a newline in pieces of 254";
  EXPECT_EQ(itemsOf(bars.close), (Items{0, 1}));
}

TEST(TextFiles, RefuseWhatIsNoFileAndNullArguments) {
  const ScratchDir dir;
  const std::string path = dir.path(), far(5000, 'x');
  const QvTxtInfo info = dateAndClose();
  Bars bars;
  Array a;
  for (const char* name : {".", "", "none", "/", far.c_str()}) {
    EXPECT_EQ(qvTXTread(&bars, path.c_str(), name, &info, 0, 1), -2) << name;
    EXPECT_EQ(qvTXTreadarray(&a, path.c_str(), name, ",", 0, 1, 0, 1), -2) << name;
    EXPECT_EQ(qvTXTfindrec(path.c_str(), name, &info, 1, nullptr), -2) << name;
  }
  EXPECT_EQ(qvTXTread(&bars, far.c_str(), "a", &info, 0, 1), -2);
  EXPECT_EQ(bars.date.data, nullptr);
  QvTxtInfo layout{};
  for (int status :
       {qvTXTreadinfo(nullptr, "x", &layout), qvTXTreadinfo("x", nullptr, &layout),
        qvTXTreadinfo("x", "x", nullptr), qvTXTwriteinfo("x", "x", nullptr),
        qvTXTread(nullptr, "", "a", &info, 0, 1), qvTXTread(&bars, nullptr, "a", &info, 0, 1),
        qvTXTread(&bars, "", nullptr, &info, 0, 1), qvTXTread(&bars, "", "a", nullptr, 0, 1),
        qvTXTreadarray(nullptr, "", "a", ",", 0, 1, 0, 1), qvTXTreadarray(&a, nullptr, "a", ",", 0, 1, 0, 1),
        qvTXTreadarray(&a, "", nullptr, ",", 0, 1, 0, 1), qvTXTreadarray(&a, "", "a", nullptr, 0, 1, 0, 1),
        qvTXTfindrec(nullptr, "a", &info, 1, nullptr), qvTXTfindrec("", nullptr, &info, 1, nullptr),
        qvTXTfindrec("", "a", nullptr, 1, nullptr), qvTXTlist(nullptr, "x", 0), qvTXTlist("", nullptr, 0)})
    EXPECT_EQ(status, -1);
#ifdef __linux__
  EXPECT_EQ(qvTXTread(&bars, "/proc/self", "mem", &info, 0, 1), -4) << "opens, but cannot be read";
#endif
}

TEST(TextFiles, AnswerExhaustedMemory) {
  const ScratchDir dir;
  const std::string path = dir.path(), list = dir / "list";
  dir.write("a.csv", dailyFile(3));
  dir.write("txtinfo.txt", "dt=1\ncl=2\ndelimit=,\n");
  const QvTxtInfo info = dateAndClose();
  QvTxtInfo layout{};
  Bars bars, again, ready;
  Array array;
  qvAllocBars(&ready, 2);
  const std::pair<const char*, std::function<int()>> calls[] = {
      {"qvTXTreadinfo", [&] { return qvTXTreadinfo(path.c_str(), "txtinfo.txt", &layout); }},
      {"qvTXTfindrec", [&] { return qvTXTfindrec(path.c_str(), "a.csv", &info, kMonday, nullptr); }},
      {"qvTXTread", [&] { return qvTXTread(&bars, path.c_str(), "a.csv", &info, 0, -1); }},
      {"qvTXTread, allocated", [&] { return qvTXTread(&ready, path.c_str(), "a.csv", &info, 0, -1); }},
      {"qvTXTreadarray", [&] { return qvTXTreadarray(&array, path.c_str(), "a.csv", ",", 0, 1, 0, -1); }},
      {"qvFILEread", [&] { return qvFILEread("txt", &again, path.c_str(), "a.csv", 0, -1); }},
      {"qvFILEfindrec", [&] { return qvFILEfindrec("7", path.c_str(), "a.csv", kMonday, nullptr); }},
      {"qvTXTlist", [&] { return qvTXTlist(path.c_str(), list.c_str(), 0); }},
      {"qvFILElist", [&] { return qvFILElist("TXT", path.c_str(), list.c_str(), 0); }},
  };
  for (const auto& [name, call] : calls) expectAnswersExhaustedMemory(name, call);
  for (const QvBars* b : {&bars, &again, &ready}) expectConsistent(*b);
}

}  // namespace
