// Text price files: layout, finder, reader, single column, lister and writers.
#include <gtest/gtest.h>

#include <chrono>
#include <ctime>

#include "support/expect.h"
#include "support/vendor_files.h"

namespace {

using namespace qvtest;

// A line for each day, by its distance from that Monday, with the distance as close.
std::string rows(std::initializer_list<int> days) {
  std::string text;
  for (const int d : days) {
    char date[20];
    qvFormatDate(kMonday + d, "yyyy/mm/dd", date);
    text += date + ("," + std::to_string(d)) + "\n";
  }
  return text;
}

struct TextFiles : testing::Test {
  const ScratchDir dir;
  const std::string directory = dir.path();
  const char* const path = directory.c_str();
  QvTxtInfo info = {1, 0, 0, 0, 0, 2, 0, 0, 0, 0, {','}};  // date and close
  Bars bars;
  Array array;

  QvTxtInfo layoutOf(const std::string& text) {
    dir.write("txtinfo.txt", text);
    QvTxtInfo layout;
    std::memset(&layout, 'x', sizeof layout);
    expectAnswersExhaustedMemory("layout", [&] { return qvTXTreadinfo(path, "TXTinfo.txt", &layout); });
    return layout;
  }
  const Read read = [this](QvBars* b, int start, int count) {
    return qvTXTread(b, path, "a.csv", &info, start, count);
  };
  const Find find = [this](double date, double* found) {
    return qvTXTfindrec(path, "a.csv", &info, date, found);
  };
  Items closesOf(const std::string& text, int skip, int start, int count) {
    dir.write("a.csv", text);
    info.skip = skip;
    Bars fresh;
    const int status = read(&fresh, start, count);
    expectConsistent(fresh);
    const Items closes = itemsOf(fresh.close);
    EXPECT_EQ(status, closes.empty() ? -9 : 0);
    return closes;
  }
  int readArray(const char* delimiters, int skip, int column, int start, int count) {
    return qvTXTreadarray(&array, path, "A.CSV", delimiters, skip, column, start, count);
  }
};

TEST_F(TextFiles, HaveALayoutOfKeysInAnyCase) {
  info = layoutOf(
      "# a comment\r\n\r\n  DT = 1 \r\nti=2\nop\t= 3\nHi =+4\nlo = 5 and more\n\ncl = 6\nvol = x\noi = -8\n"
      "skip = 99999999999\ncolour = 7\nskip\ndtformat = mdy\n");
  const QvTxtInfo expected = {1, 2, 3, 4, 5, 6, 0, -8, 1, INT_MAX, {' '}};
  EXPECT_EQ(std::memcmp(&info, &expected, sizeof info), 0);
  const char* const words[][6] = {{"YMD", "N/A", "YY_MM_DD", "CCYY_MM_DD", "YYMMDD", "CCYYMMDD"},
                                  {"MDY", "mdy", "MM_DD_YY", "MM_DD_CCYY", "MMDDYY", "MMDDCCYY"},
                                  {"DMY", "dmY", "DD_MM_YY", "DD_MM_CCYY", "DDMMYY", "ddmmccyy"}};
  for (int code = 0; code < 3; ++code)
    for (const std::string word : words[code]) {
      const std::string other = std::string("dtformat = ") + words[(code + 1) % 3][0] + "\ndtformat = ";
      EXPECT_EQ(layoutOf(other + word + "\ndtformat = nonsense\n").dateFormat, code) << word;
    }
}

TEST_F(TextFiles, HaveALayoutWithDelimitersAndWithoutTheLastCharacterOfAnUnendedLine) {
  // 16 characters count, of the value; the tail of a longer earlier text stays.
  const std::pair<const char*, const char*> cases[] = {{";\\|\t\n", ";\\|\t"},
                                                       {"abcdefghijklmnopq\n", "abcdefghijklmnop"},
                                                       {"abcdefghijklmno\\t\n", "abcdefghijklmno\\"},
                                                       {"abc\ndelimit = ;\n", ";bc"},
                                                       {";,", ";"},
                                                       {"\ndelimit =", " "}};
  for (const auto& [text, delimiters] : cases) {
    info = layoutOf(std::string("delimit = ") + text);
    EXPECT_EQ(std::string(info.delimiters, strnlen(info.delimiters, 16)), delimiters) << text;
  }
  EXPECT_EQ(layoutOf("oi = 71").openInterestColumn, 7);
  EXPECT_EQ(layoutOf(std::string("oi = 72\0 34\n", 12)).openInterestColumn, 7) << "a zero byte ends the line";
  // Pieces of 79 characters are lines: this one ends in "123".
  EXPECT_EQ(layoutOf("oi =" + std::string(72, ' ') + "12345\n").openInterestColumn, 12);
}

TEST_F(TextFiles, HaveALayoutThatIsWrittenAsItReadsBack) {
  info = {1, 2, 3, 4, 5, 6, 7, 8, 2, 9, {',', ' ', '\t'}};
  dir.write("stdout", "an older layout");
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(path);
  EXPECT_EQ(qvTXTwriteinfo("", "stdout", &info), 0) << "a file like any other";
  std::filesystem::current_path(before);
  const std::string text = dir.read("stdout");
  EXPECT_EQ(text,
            "delimit  = ,_\\t\nskip     = 9\ndt       = 1\nti       = 2\nop       = 3\nhi       = 4\n"
            "lo       = 5\ncl       = 6\nvol      = 7\noi       = 8\ndtformat = DMY\n");
  QvTxtInfo back = layoutOf(text);
  EXPECT_EQ(std::memcmp(&info, &back, sizeof info), 0);
  // Sixteen delimiters, with a tab that in letters would be a seventeenth character.
  std::memcpy(info.delimiters, "abcdefgh;,\t= klm", sizeof info.delimiters);
  info.dateFormat = 1;
  EXPECT_EQ(qvTXTwriteinfo(path, "b.txt", &info), 0);
  EXPECT_EQ(qvTXTreadinfo(path, "b.txt", &back), 0);
  EXPECT_EQ(std::memcmp(&info, &back, sizeof info), 0) << dir.read("b.txt");
  EXPECT_EQ(qvTXTreadinfo(path, "none.txt", &back), -2);
  EXPECT_EQ(qvTXTwriteinfo((dir / "none").c_str(), "txtinfo.txt", &info), -2);
  EXPECT_EQ(std::memcmp(&info, &back, sizeof info), 0) << "untouched";
}

TEST_F(TextFiles, AreReadInARangeByTheOrderOfTheFirstTwoDifferentDates) {
  dir.write("a.csv", rows({1, 2, 3, 4, 5, 6}));
  expectRecordRange(read);

  const std::string down = rows({5, 4, 3, 2, 1, 0}), none = "x,1\n2000/01/03,2\n2000/01/03,3\n";
  // Text, skip, start, count.
  const std::tuple<std::string, int, int, int, Items> cases[] = {
      {down, 0, 0, 2, {0, 1}},                    // the oldest two
      {down, 0, -1, 2, {4, 5}},                   // the newest two
      {down, 0, 4, 2, {1, 2}},                    // records 3 and 4
      {down, 0, 1, 4, {2, 3, 4, 5}},              // would begin before the file
      {down, 0, 3, -1, {0, 1, 2, 3}},             // the oldest start + 1
      {down, 0, 0, 8, {0, 0, 0, 1, 2, 3, 4, 5}},  // the last slots are filled
      {down, 0, 6, 1, {}},
      {none, 0, 0, -1, {0, 0, 3}},  // without an order each record lands in the last slot
      // A heading is no date. Of three header lines records 0 and 1 take no part, so 5 4 | 1 2 is rising;
      // of one header line all do.
      {"Date,Close\n" + rows({2, 1}), 0, 0, -1, {1, 2, 0}},
      {rows({1}) + "n/a,7\n" + rows({2}), 0, 0, -1, {1, 7, 2}},
      {"h\nh\nh\n" + rows({5, 4, 1, 2}), 3, 0, -1, {5, 4, 1, 2}},
      {"h\n" + rows({1, 2, 2, 1}), 1, 0, -1, {1, 2, 2, 1}}};
  for (const auto& [text, skip, start, count, closes] : cases)
    EXPECT_EQ(closesOf(text, skip, start, count), closes) << text << start << ' ' << count;
  dir.write("a.csv", down);
  info.skip = 0;
  qvAllocBars(&bars, 4);
  qvReSizeBars(&bars, 2);
  expectGives(read(&bars, 0, -1), bars.close, {0, 1});  // the size is left: four were stored
  EXPECT_EQ(bars.close.data[3], 3.0);
  bars.volume.capacity = 3;
  EXPECT_EQ(read(&bars, 0, -1), -1) << "a series with less room than the set";
  bars.volume.capacity = 4;
  info.skip = 100;
  EXPECT_EQ(read(&bars, 0, -1), -9) << "nothing but headings";
}

TEST_F(TextFiles, AreReadInEveryColumn) {
  dir.write("a.csv",
            "date time open high low close volume oi\n"
            "03/01/2000 09:30 1 4 0.5 +2.5 1e3 -7\n"
            "\t04/01/2000   14:15:00 1.25 4 .5 2 99  7 8 9\n"
            "05/01/2000 2:20pm 5\n");
  info = {1, 2, 3, 4, 5, 6, 7, 8, 2, 1, {' '}};
  expectAnswersExhaustedMemory("bars", [&] { return read(&bars, 0, -1); });
  const Items expected[] = {{kMonday + 34200.0 / 86400, 1, 4, 0.5, 2.5, 1000, -7},
                            {kMonday + 1 + 51300.0 / 86400, 1.25, 4, 0.5, 2, 99, 7},
                            {kMonday + 2 + 51600.0 / 86400, 5, 0, 0, 0, 0, 0}};
  for (int i = 0; i < 3; ++i) EXPECT_EQ(barOf(bars, i), expected[i]);

  // Columns that do not exist give 0, also in a set that held other bars; a time column that is the date
  // column adds nothing.
  dir.write("a.csv", "2000/01/03 10:30,1\n2000/01/04 15:00,2\n");
  info = {1, 1, 9999, -1, INT_MIN, 2, INT_MAX, 0, 0, 0, {','}};
  ASSERT_EQ(read(&bars, 0, -1), 0);
  EXPECT_EQ(barOf(bars, 0), (Items{kMonday + 0.4375, 0, 0, 0, 1, 0, 0}));
  EXPECT_EQ(barOf(bars, 1), (Items{kMonday + 1.625, 0, 0, 0, 2, 0, 0}));
}

TEST_F(TextFiles, WrittenTimesAreReadBack) {
  info = {1, 2, 0, 0, 0, 0, 0, 0, 0, 0, {','}};
  for (const double day : {kMonday + 0.0, 367.0, 109572.0, -25568.0}) {
    std::string text;
    Items dates;
    const auto write = [&](double whole, int second) {
      dates.push_back(whole < 0 ? whole - second / 86400.0 : whole + second / 86400.0);
      char line[40];
      qvFormatDate(dates.back(), "yyyy/mm/dd,hh:nn:ss\n", line);
      text += line;
    };
    for (int s = 0; s < 86400; s += 61) write(day, s);
    write(day + 1, 0);  // tells the order
    dir.write("a.csv", text);
    Bars fresh;
    expectGives(read(&fresh, 0, -1), fresh.date, dates);
  }
}

TEST_F(TextFiles, FillTheBarInformation) {
#ifdef _WIN32
  GTEST_SKIP() << "the system chooses the short names";
#endif
  dir.write("Microsoft, Corp .2000.csv", rows({0, 1, 2}));
  fillWithOldFile(bars, 1);
  const std::string padding = " " + directory + "\n";
  ASSERT_EQ(qvTXTread(&bars, padding.c_str(), " Microsoft, Corp .2000.csv ", &info, 1, 1), 0);
  ASSERT_EQ(qvFILEprintinfo(&bars, (dir / "info").c_str(), 0), 0);
  EXPECT_EQ(dir.read("info"), "barsize      1\ndatasize     1\nreccnt       3\npath         " + directory +
                                  "\nname         Microsoft, Corp\nsymbol       Microsoft, Corp\n"
                                  "description  Microsoft, Corp\nfrequency    Unknown\n"
                                  "datatype     Unknown\nfiletype     Text\n")
      << "names of 15 characters";

  // The texts may be those of the bar set itself.
  dir.write("up.csv", rows({0}));
  std::strcpy(bars.name, "UP.csv");
  ASSERT_EQ(qvTXTread(&bars, bars.path, bars.name, &info, 0, -1), 0);
  EXPECT_STREQ(bars.symbol, "UP");

  // A name beside the program, and one that holds what other systems take for a directory.
  for (const char* name : {"up.csv", "C:\\data\\up.csv"}) {
    dir.write(name, rows({0}));
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(path);
    EXPECT_EQ(qvTXTread(&bars, "", name, &info, 0, -1), 0);
    std::filesystem::current_path(before);
    EXPECT_STREQ(bars.name, "up.csv");
    std::filesystem::remove(dir / name);
  }
}

TEST_F(TextFiles, CountLinesAsRecordsByTheirFirstCharacter) {
  // Headers of any kind, empty lines with and without carriage returns, a line of blanks (a record, but
  // no bar), an end-of-file mark.
  const std::string text = "h\n\n\r\n" + rows({1}) + "\r\n\n  \t\n\r\r\n" + rows({2}) + "\r\r\n" + rows({3}) +
                           "2000/01/07,4\x1A,junk\n,,\n";
  const Items tails[] = {{1, 2, 3, 4}, {2, 3, 4}, {2, 3, 4}, {3, 4}, {4}};
  for (int start = 0; start < 5; ++start) {  // from the remembered position, and counted from the top
    EXPECT_EQ(closesOf(text, 2, start, -1), tails[start]);
    EXPECT_EQ(closesOf(text, 2, -1, 5 - start), tails[start]);
  }
  ASSERT_EQ(read(&bars, 0, 1), 0);
  EXPECT_EQ(bars.reccnt, 5);
  EXPECT_EQ(find(kMonday + 2, nullptr), 2);
  expectGives(readArray(",", 2, 2, 0, -1), array, {1, 2, 3, 4});  // no item for the blank line
}

TEST_F(TextFiles, FindTheDateOrTheNextLaterRecordInEitherOrder) {
  info.skip = 1;
  for (const bool newestFirst : {false, true}) {
    const std::string up = rows({0}) + "\n" + rows({2, 4, 6}), down = rows({6, 4}) + "\n" + rows({2, 0});
    dir.write("a.csv", "Date,Close\n" + (newestFirst ? down : up));
    expectAnswersExhaustedMemory("find", [&] { return find(kMonday, nullptr); });
    const auto number = [&](int k) { return newestFirst ? 3 - k : k; };
    expectFindings(find, {{kMonday, number(0), kMonday},
                          {kMonday + 0.25, number(1), kMonday + 2},
                          {kMonday + 3, number(2), kMonday + 4},
                          {kMonday + 6, number(3), kMonday + 6},
                          {kMonday - 1, -9, 0},
                          {kMonday + 7, -9, 0},
                          {kNaN, -9, 0}});
  }
}

TEST_F(TextFiles, ReadOneColumnAndCountTheHeaderLinesInTotalAndStart) {
  dir.write("a.csv", "h,h\nh,h\n0,10\n1,11\n\n2,12\n3,13\n4\n");
  const std::tuple<int, int, Items, int> cases[] = {
      {0, -1, {10, 11, 12, 13, 0}, 7},  // the total is 5 + 2
      {1, -1, {11, 12, 13, 0}, 6},      // below skip: from the first data line
      {2, -1, {10, 11, 12, 13, 0}, 5},  // from skip on: from the top of the file
      {3, 2, {11, 12}, 2},
      {-1, 3, {0}, 3},  // begins at line 7 - 3 after the headers
      {9, -1, {}, 0}};
  for (const auto& [start, count, items, capacity] : cases) {
    qvFreeArray(&array);
    expectGives(readArray(",", 2, 2, start, count), array, items);
    EXPECT_EQ(array.capacity, capacity) << start << ' ' << count;
  }
  // The 127th column; a zero byte ends the line.
  std::string wide;
  for (int k = 1; k < 127; ++k) wide += "1,";
  dir.write("a.csv", wide + std::string("7\n1\0,2\n", 7));
  qvFreeArray(&array);
  expectAnswersExhaustedMemory("array", [&] { return readArray(",", 0, 127, 0, -1); });
  expectGives(0, array, {7, 0});
  expectGives(readArray(",", 0, 2, 0, -1), array, {1, 0});
  // A caller's array keeps its capacity. A column that does not exist gives 0, a count of 0 opens nothing.
  dir.write("a.csv", "5;6\n7|8\n9\n");
  array.firstValid = 1;
  expectGives(readArray(";|", 0, 2, 0, 100), array, {6, 8}, 0);
  expectGives(readArray("", -3, 1, 2, 100), array, {9});
  expectGives(readArray(";", 0, -1, 0, 2), array, {0, 0});
  expectGives(qvTXTreadarray(&array, path, "none", ";", 0, 1, 0, 0), array, {0, 0});
}

TEST_F(TextFiles, AreListedByFourPatternsInTheirOrder) {
#ifdef _WIN32
  GTEST_SKIP() << "the system chooses the short names";
#endif
  for (const char* name :
       {"b.TXT", "B.txt", "q", "A.txt", "txtinfo.txt", "q.prn", "long file name.csv", "x.asc", "y.dat"})
    dir.write(name, "");
  std::filesystem::create_directory(dir / "directory.csv");
  std::tm noon{};
  noon.tm_year = 108, noon.tm_mday = 15, noon.tm_hour = 12, noon.tm_isdst = -1;  // 15 January 2008
  const auto time = std::chrono::system_clock::from_time_t(std::mktime(&noon));
  for (const auto& entry : std::filesystem::directory_iterator(path))
    if (!entry.is_directory())
      std::filesystem::last_write_time(entry, std::chrono::file_clock::from_sys(time));

  std::filesystem::create_symlink("nowhere", dir / "gone.csv");
  std::filesystem::create_symlink("y.dat", dir / "a link.csv");
  const auto line = [](const char* name, const char* symbol, const char* description,
                       const char* rest = "Unknown   Unknown    15/01/2008") {
    return padded(name, 13) + padded(symbol, 17) + padded(description, 49) + rest + "\n";
  };
  const std::string heading = line("File Name", "Symbol", "Description", "Frequency First Date Last Date ") +
                              "------------ ---------------- " + std::string(48, '-') +
                              " --------- ---------- ----------\n";
  const std::string list = dir / "list", none = dir / "none";
  for (const int order : {2, 3, -1}) qvSetDefaultDateFormat(order);  // unknown orders change nothing
  expectAnswersExhaustedMemory("list", [&] { return qvFILElist("none.lay", path, list.c_str(), 0); });
  qvSetDefaultDateFormat(0);
  EXPECT_EQ(qvTXTlist(none.c_str(), list.c_str(), 1), 0) << "no files";
  EXPECT_EQ(dir.read("list"), heading + line("x.asc", "x", "x.asc") +
                                  line("a link.csv", "a link", "a link.csv") +
                                  line("long file na", "long file name", "long file name.csv") +
                                  line("q.prn", "q", "q.prn") + line("A.txt", "A", "A.txt") +
                                  line("B.txt", "B", "B.txt") + line("b.TXT", "b", "b.TXT") + heading);
  EXPECT_EQ(qvTXTlist(path, path, 0), -2);
}

TEST_F(TextFiles, AreWrittenAsTextAndLines) {
  const std::string out = dir / "out.txt";
  EXPECT_EQ(qvTXTwriteline("lost", out.c_str(), 0), 0);
  EXPECT_EQ(qvTXTwrite("100%s, %d%%", out.c_str(), 0), 0) << "not a printf format";
  EXPECT_EQ(qvTXTwriteline("|", out.c_str(), -1), 0);
  EXPECT_EQ(dir.read("out.txt"), "100%s, %d%%|\n");
  testing::internal::CaptureStdout();
  EXPECT_EQ(qvTXTwriteline("one", "StdOut", 0), 0);
  EXPECT_EQ(qvTXTwrite("two", "STDOUT", 0), 0) << "still open";
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "one\ntwo");
  EXPECT_EQ(qvTXTwrite("x", path, 0), -2) << "a directory";
#ifdef __linux__
  for (int status : {qvTXTwrite("x", "/dev/full", 0), qvTXTwriteinfo("/dev", "full", &info),
                     qvTXTlist(path, "/dev/full", 0), qvFILEprintinfo(&bars, "/dev/full", 0)})
    EXPECT_EQ(status, -5);
#endif
}

TEST_F(TextFiles, SurviveDamageAlsoInTheLayout) {
  dir.write("a.csv", "dt = 1\r\n\n  delimit = ,\\t_\ncl = 2\n" + rows({0, 1}) + "\r\n" + rows({1, 0}) +
                         "dtformat = DMY\n" + std::string(300, '1'));
  withDamage(dir, "a.csv", [this] {
    EXPECT_EQ(qvTXTreadinfo(path, "a.csv", &info), 0);
    EXPECT_EQ(readArray(",", info.skip, 2, 1, -1), 0);
    expectSurvives(read, find);
  });
}

TEST_F(TextFiles, RefuseWhatIsNoFileAndNullArguments) {
  const auto answers = [this](const char* d, const char* f, QvTxtInfo* i, const char* delimiters) {
    return std::vector<int>{qvTXTreadinfo(d, f, i), qvTXTread(&bars, d, f, i, 0, 1),
                            qvTXTfindrec(d, f, i, 1, nullptr),
                            qvTXTreadarray(&array, d, f, delimiters, 0, 1, 0, 1)};
  };
  for (const char* name : {".", "", "none"})
    EXPECT_EQ(answers(path, name, &info, ","), std::vector(4, -2)) << name;
  for (const std::vector<int>& nulls : {answers(nullptr, "a", &info, ","), answers(path, nullptr, &info, ","),
                                        answers(path, "a", nullptr, nullptr)})
    EXPECT_EQ(nulls, std::vector(4, -1));
  for (int status :
       {qvTXTread(nullptr, path, "a", &info, 0, 1), qvTXTreadarray(nullptr, path, "a", ",", 0, 1, 0, 1),
        qvTXTwriteinfo(nullptr, "a", &info), qvTXTwriteinfo(path, nullptr, &info),
        qvTXTwriteinfo(path, "a", nullptr), qvTXTlist(nullptr, "x", 0), qvTXTlist("", nullptr, 0),
        qvTXTwrite(nullptr, "STDOUT", 0), qvTXTwriteline("x", nullptr, 0)})
    EXPECT_EQ(status, -1);
#ifdef __linux__
  EXPECT_EQ(qvTXTread(&bars, "/proc/self", "mem", &info, 0, 1), -4) << "opens, but cannot be read";
#endif
}

}  // namespace
