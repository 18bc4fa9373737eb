// Series and bar sets: memory, copying, items, first-valid bookkeeping, error texts.
#include <gtest/gtest.h>

#include <climits>
#include <cstddef>
#include <cstring>
#include <string>

#include "core/calculation.h"
#include "core/memory.h"
#include "support/expect.h"
#include "support/series.h"

namespace qvtest {
namespace {

bool isEmpty(const QvArray& a) {
  return !a.data && !a.size && !a.capacity && !a.firstValid;
}
bool isEmpty(const QvBars& b) {
  const QvBars zero{};
  return std::memcmp(&b, &zero, sizeof b) == 0;
}
bool sizesAre(const QvBars& b, int size, int capacity) {
  for (int k = 0; k < qv::kSeriesCount; ++k)
    if (qv::seriesOf(b, k).size != size || qv::seriesOf(b, k).capacity != capacity) return false;
  return b.barsize == size && b.datasize == capacity;
}

TEST(Records, LayoutIsFixed) {
  // Callers depend on the order and the widths of the fields.
  EXPECT_EQ(offsetof(QvArray, firstValid), sizeof(void*) + 8);
  const std::size_t info = 7 * sizeof(QvArray);
  EXPECT_EQ(offsetof(QvBars, barsize), info);
  EXPECT_EQ(offsetof(QvBars, path), info + 12);
  EXPECT_EQ(offsetof(QvBars, description), info + 12 + 256 + 16);
  EXPECT_EQ(offsetof(QvBars, symbol), info + 12 + 256 + 16 + 48);
  EXPECT_EQ(offsetof(QvBars, begindate), info + 12 + 256 + 16 + 48 + 16 + 12);
  EXPECT_EQ(offsetof(QvBars, strikeprice), sizeof(QvBars) - 8);
}

TEST(Records, AllocatesResizesAndFreesSeries) {
  QvArray a{};
  ASSERT_EQ(qvAllocArray(&a, 3), 0);
  EXPECT_EQ(itemsOf(a), (Items{0, 0, 0}));
  a.data[2] = 5.0;
  a.firstValid = 2;
  EXPECT_EQ(qvReSizeArray(&a, 4), -3);
  EXPECT_EQ(a.size, 3);
  EXPECT_EQ(qvReSizeArray(&a, 1), 0);
  EXPECT_EQ(qvReAllocArray(&a, 3), 0);  // within the capacity: only the size changes
  EXPECT_EQ(qvReAllocArray(&a, 100), 0);
  EXPECT_TRUE(a.size == 100 && a.capacity == 100 && a.data[2] == 5.0 && a.firstValid == 2);
  for (int k = 0; k < 2; ++k) {
    qvFreeArray(&a);
    EXPECT_TRUE(isEmpty(a));
  }
  ASSERT_EQ(qvAllocArray(&a, 0), 0);
  EXPECT_EQ(a.size, 0);
  qvFreeArray(&a);
  EXPECT_EQ(qvAllocArray(&a, -1), -3);
  EXPECT_TRUE(isEmpty(a));
}

TEST(Records, AllocatesResizesAndFreesBarSets) {
  QvBars b{};
  b.reccnt = 9;
  ASSERT_EQ(qvAllocBars(&b, 4), 0);
  EXPECT_TRUE(sizesAre(b, 4, 4));
  EXPECT_EQ(b.reccnt, 9);
  b.close.data[3] = 7.0;
  EXPECT_EQ(qvReSizeBars(&b, 5), -3);
  EXPECT_EQ(qvReSizeBars(&b, 2), 0);
  EXPECT_TRUE(sizesAre(b, 2, 4));
  EXPECT_EQ(qvReAllocBars(&b, 50), 0);
  EXPECT_TRUE(sizesAre(b, 50, 50));
  EXPECT_EQ(b.close.data[3], 7.0);
  qvFreeBars(&b);
  EXPECT_TRUE(isEmpty(b));
}

TEST(Records, ExhaustedMemoryLeavesRecordsInOrder) {
  Bars b, bars(walkBars(10)), barsCopy;
  Array a{1, 2, 3}, copy;
  b.reccnt = 9;
  expectAnswersExhaustedMemory("qvAllocBars", [&] {
    const int status = qvAllocBars(&b, 10);
    EXPECT_TRUE(status == 0 || isEmpty(b));
    return status;
  });
  expectAnswersExhaustedMemory("qvCopyBars", [&] {
    const int status = qvCopyBars(&bars, &barsCopy);
    EXPECT_TRUE(status == 0 || isEmpty(barsCopy));
    return status;
  });
  for (int grown = 0; grown < 7; ++grown) {  // the series grow one after the other
    const Bars before(walkBars(10));
    Bars growing(walkBars(10));
    qv::memory::failAllocation(grown + 1);
    EXPECT_EQ(qvReAllocBars(&growing, 20), -3);
    qv::memory::failAllocation(0);
    EXPECT_TRUE(growing.barsize == 10 && growing.datasize == 10);
    for (int s = 0; s < qv::kSeriesCount; ++s) {
      EXPECT_EQ(qv::seriesOf(growing, s).size, s < grown ? 20 : 10);
      EXPECT_EQ(qv::seriesOf(growing, s).data[9], qv::seriesOf(before, s).data[9]);
    }
  }
  expectAnswersExhaustedMemory("qvCopyArray", [&] { return qvCopyArray(&a, &copy); });
  expectAnswersExhaustedMemory("qvReAllocArray", [&] {
    const int status = qvReAllocArray(&a, 9);
    EXPECT_EQ(itemsOf(a).size(), status ? 3 : 9);
    return status;
  });
}

TEST(Records, CopiesAsMuchAsFits) {
  Array src({1, 2, 3, 4}, 3), whole, small{9, 9};
  qvReSizeArray(&src, 2);
  expectGives(qvCopyArray(&src, &whole), whole, {1, 2});
  EXPECT_EQ(whole.capacity, 4);
  EXPECT_EQ(whole.data[3], 4.0);  // the whole allocated part is copied
  qvReSizeArray(&src, 4);
  expectGives(qvCopyArray(&src, &small), small, {1, 2}, 3);

  Bars bars(walkBars(5)), copy;
  std::strcpy(bars.symbol, "ABC");
  bars.strikeprice = 12.5;
  ASSERT_EQ(qvCopyBars(&bars, &copy), 0);
  ASSERT_EQ(qvCopyBars(&bars, &bars), 0);
  for (const QvBars* b : {&bars, &copy}) EXPECT_TRUE(sizesAre(*b, 5, 5));
  EXPECT_STREQ(copy.symbol, "ABC");
  EXPECT_EQ(copy.strikeprice, 12.5);
  EXPECT_EQ(copy.openInterest.data[4], bars.openInterest.data[4]);
}

TEST(Records, ItemsOutsideTheSeriesAreSafe) {
  Array a{1, 2, 3};
  for (int i : {-1, 3, INT_MIN, INT_MAX}) {
    EXPECT_EQ(qvGetArrayItem(&a, i), 0.0);
    qvSetArrayItem(&a, i, 9.0);
  }
  qvSetArrayItem(&a, 1, 8.0);
  EXPECT_EQ(a.items(), (Items{1, 8, 3}));
}

TEST(Records, NullRecordsAreRefused) {
  Array a{1};
  Bars b(walkBars(1));
  for (int status : {qvAllocArray(nullptr, 1), qvReAllocArray(nullptr, 1), qvReSizeArray(nullptr, 1),
                     qvCopyArray(nullptr, &a), qvCopyArray(&a, nullptr), qvAllocBars(nullptr, 1),
                     qvReAllocBars(nullptr, 1), qvReSizeBars(nullptr, 1), qvCopyBars(nullptr, &b),
                     qvCopyBars(&b, nullptr), qvSetFirstValid(nullptr, 1), qvErrDesc(0, nullptr)})
    EXPECT_EQ(status, -1);
  EXPECT_EQ(qvGetArrayItem(nullptr, 0), 0.0);
  qvSetArrayItem(nullptr, 0, 1.0);
  qvCopyBarInfo(nullptr, &b);
  qvCopyBarInfo(&b, nullptr);
  qvFreeArray(nullptr);
  qvFreeBars(nullptr);
}

TEST(Records, FirstValidRaisesTheMaximum) {
  Array a{1};
  EXPECT_EQ(qvSetMaxFirstValid(-5), -5);
  EXPECT_EQ(qvSetFirstValid(&a, 7), 7);
  EXPECT_EQ(qvSetFirstValid(&a, 3), 7);
  EXPECT_EQ(a.firstValid, 3);
  EXPECT_EQ(qvGetMaxFirstValid(), 7);
  qvSetMaxFirstValid(0);
}

TEST(Errors, EachCodeHasItsText) {
  const char* texts[] = {"Sucessfull",     "Invalid Parm",     "File Open", "Malloc",
                         "File Read",      "File Write",       "File Seek", "File Exists",
                         "File Not Found", "Record Not Found", "Unknown"};
  char text[32];
  for (int code = -10; code <= 0; ++code) {
    EXPECT_EQ(qvErrDesc(code, text), static_cast<int>(std::strlen(texts[-code])));
    EXPECT_STREQ(text, texts[-code]);
  }
  for (int code : {1, 3, -11, INT_MIN, INT_MAX}) {
    EXPECT_EQ(qvErrDesc(code, text), 7);
    EXPECT_STREQ(text, "Unknown");
  }
}

TEST(Errors, TheBoxShowsTextAndDescription) {
  const std::string most(5000, 'x');
  const std::pair<const char*, std::string> boxes[] = {
      {"/no/such/file", "/no/such/file"}, {most.c_str(), most.substr(0, 1023 - 10)}, {nullptr, ""}};
  for (const auto& [description, shown] : boxes) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(qvErrMessageBox(-2, description), 1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Error: File Open " + shown + "\n");
  }
}

TEST(EntryStep, ChecksBeforeItWritesAndClearsTheWholeCapacity) {
  Array in{1, 2, 3}, other{4, 5}, out, used{7, 7, 7, 7}, narrow{9};
  EXPECT_EQ(qv::prepareOutputs({}, {}, {&out}), -1);
  EXPECT_EQ(qv::prepareOutputs({}, {&in}, {&out, nullptr}), -1);
  EXPECT_EQ(qv::prepareOutputs({}, {&in}, {&used, &in}), -1);
  EXPECT_EQ(out.data, nullptr);
  EXPECT_EQ(used.items(), (Items{7, 7, 7, 7}));
  EXPECT_EQ(qv::prepareOutputs({}, {&in, &other}, {&out, &used}), 2);
  EXPECT_EQ(out.capacity, 2);
  EXPECT_EQ(used.size, 2);
  EXPECT_EQ(used.data[3], 0.0);
  EXPECT_EQ(qv::prepareOutputs({}, {&in}, {&narrow, &used}), 1);
  EXPECT_EQ(used.size, 1);
}

TEST(EntryStep, SparesTheItemsThatAreOverwritten) {
  const Array in({1, 2, 3}, 1);
  Array used{7, 7, 7, 7, 7}, narrow{7, 7}, out;
  int first = -1;
  EXPECT_EQ(qv::prepareOverwritten(&in, &used, 0, &first), 3);
  EXPECT_EQ(first, 1);
  EXPECT_EQ(used.size, 3);
  used.size = 5;
  EXPECT_EQ(used.items(), (Items{0, 7, 7, 0, 0}));
  EXPECT_EQ(qv::prepareOverwritten(&in, &narrow, 5, &first), 2);  // nothing will be written
  EXPECT_EQ(narrow.items(), (Items{0, 0}));
  EXPECT_EQ(qv::prepareOverwritten(&in, &out, 0, &first), 3);
  EXPECT_EQ(qv::prepareOverwritten(&out, &out, 2, &first), 3);
  EXPECT_EQ(qv::prepareOverwritten(&in, nullptr, 0, &first), -1);
}

TEST(EntryStep, OnlyTheDateSeriesMayServeAsOutput) {
  Bars b(walkBars(4));
  for (int s = 1; s < qv::kSeriesCount; ++s)
    EXPECT_EQ(qv::prepareOutputs({{&b, qv::kClose}}, {}, {&qv::seriesOf(b, s)}), -1);
  EXPECT_EQ(qv::prepareOutputs({{&b, qv::kClose}}, {}, {&b.date}), 4);
}

TEST(EntryStep, TemporariesAreAllOrNone) {
  qv::Temporary a, b, c;
  expectAnswersExhaustedMemory("temporaries", [&] { return qv::allocArrays(5, {&a, &b, &c}); });
  EXPECT_EQ(qv::firstValidOf(-4, {}), 0);
  Array in({1, 2, 3}, 2);
  EXPECT_EQ(qv::firstValidOf(1, {&in}), 2);
}

TEST(Table, GrowsByOneStep) {
  void* block = nullptr;
  int count = 0;
  ASSERT_EQ(qv::growTable(&block, 0, &count, 4, 0, 8), 0);
  EXPECT_EQ(count, 4);
  std::memset(block, 0xFF, 32);
  EXPECT_EQ(qv::growTable(&block, 3, &count, 4, 0, 8), 0);
  EXPECT_EQ(count, 4);
  ASSERT_EQ(qv::growTable(&block, 4, &count, 4, 5, 8), 0);  // a small maximum is in effect ignored
  EXPECT_EQ(count, 8);
  EXPECT_EQ(static_cast<unsigned char*>(block)[31], 0xFF);
  EXPECT_EQ(static_cast<unsigned char*>(block)[32], 0);
  qv::memory::failAllocation(1);
  EXPECT_EQ(qv::growTable(&block, 8, &count, 4, 0, 8), -3);
  qv::memory::failAllocation(0);
  EXPECT_EQ(count, 8);
  EXPECT_EQ(qv::growTable(&block, INT_MAX / 8, &count, 4, 0, 8), -3);
  qv::memory::release(block);
}

}  // namespace
}  // namespace qvtest
