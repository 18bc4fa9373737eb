// Series and bar sets: memory, copying, items, first-valid bookkeeping, error texts.
#include <gtest/gtest.h>

#include <climits>
#include <cstddef>
#include <cstring>
#include <string>

#include "core/calculation.h"
#include "core/memory.h"
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
  EXPECT_EQ(a.size, 3);
  EXPECT_EQ(a.data[2], 0.0);
  a.data[2] = 5.0;
  a.firstValid = 2;
  EXPECT_EQ(qvReSizeArray(&a, 4), -3);
  EXPECT_EQ(a.size, 3);
  EXPECT_EQ(qvReSizeArray(&a, 1), 0);
  EXPECT_EQ(qvReAllocArray(&a, 3), 0);  // within the capacity: only the size changes
  EXPECT_EQ(qvReAllocArray(&a, 100), 0);
  EXPECT_EQ(a.size, 100);
  EXPECT_EQ(a.capacity, 100);
  EXPECT_EQ(a.data[2], 5.0);
  EXPECT_EQ(a.firstValid, 2);
  qvFreeArray(&a);
  EXPECT_TRUE(isEmpty(a));
  qvFreeArray(&a);

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
  const long before = qv::memory::liveBlocks();
  for (long k = 1; k <= 7; ++k) {
    QvBars b{};
    b.reccnt = 9;
    qv::memory::failAllocation(k);
    EXPECT_EQ(qvAllocBars(&b, 10), -3);
    qv::memory::failAllocation(0);
    EXPECT_TRUE(isEmpty(b));

    ASSERT_EQ(qvAllocBars(&b, 10), 0);
    b.close.data[9] = 3.0;
    qv::memory::failAllocation(k);
    EXPECT_EQ(qvReAllocBars(&b, 20), -3);
    qv::memory::failAllocation(0);
    EXPECT_EQ(b.barsize, 10);
    EXPECT_EQ(b.datasize, 10);
    for (int s = 0; s < qv::kSeriesCount; ++s) EXPECT_EQ(qv::seriesOf(b, s).size, s < k - 1 ? 20 : 10);
    EXPECT_EQ(b.close.data[9], 3.0);
    QvBars copy{};
    qv::memory::failAllocation(k);
    EXPECT_EQ(qvCopyBars(&b, &copy), -3);
    qv::memory::failAllocation(0);
    EXPECT_TRUE(isEmpty(copy));
    qvFreeBars(&b);
  }
  Array a{1, 2, 3};
  QvArray copy{};
  qv::memory::failAllocation(1);
  EXPECT_EQ(qvReAllocArray(&a, 9), -3);
  qv::memory::failAllocation(1);
  EXPECT_EQ(qvCopyArray(&a, &copy), -3);
  qv::memory::failAllocation(0);
  EXPECT_EQ(a.items(), (std::vector<double>{1, 2, 3}));
  qvFreeArray(&a);
  EXPECT_EQ(qv::memory::liveBlocks(), before);
}

TEST(Records, CopiesAsMuchAsFits) {
  Array src{1, 2, 3, 4};
  src.firstValid = 3;
  qvReSizeArray(&src, 2);
  Array whole;
  ASSERT_EQ(qvCopyArray(&src, &whole), 0);
  EXPECT_EQ(whole.size, 2);
  EXPECT_EQ(whole.capacity, 4);
  EXPECT_EQ(whole.data[3], 4.0);  // the whole allocated part is copied
  qvReSizeArray(&src, 4);
  Array small{9, 9};
  ASSERT_EQ(qvCopyArray(&src, &small), 0);
  EXPECT_EQ(small.items(), (std::vector<double>{1, 2}));
  EXPECT_EQ(small.firstValid, 3);

  Bars bars(walkBars(5));
  std::strcpy(bars.symbol, "ABC");
  bars.strikeprice = 12.5;
  Bars copy;
  ASSERT_EQ(qvCopyBars(&bars, &copy), 0);
  EXPECT_TRUE(sizesAre(copy, 5, 5));
  EXPECT_STREQ(copy.symbol, "ABC");
  EXPECT_EQ(copy.strikeprice, 12.5);
  EXPECT_EQ(copy.openInterest.data[4], bars.openInterest.data[4]);
  ASSERT_EQ(qvCopyBars(&bars, &bars), 0);
  EXPECT_TRUE(sizesAre(bars, 5, 5));
}

TEST(Records, ItemsOutsideTheSeriesAreSafe) {
  Array a{1, 2, 3};
  for (int i : {-1, 3, INT_MIN, INT_MAX}) {
    EXPECT_EQ(qvGetArrayItem(&a, i), 0.0);
    qvSetArrayItem(&a, i, 9.0);
  }
  qvSetArrayItem(&a, 1, 8.0);
  EXPECT_EQ(a.items(), (std::vector<double>{1, 8, 3}));
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
  testing::internal::CaptureStderr();
  EXPECT_EQ(qvErrMessageBox(-2, "/no/such/file"), 1);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Error: File Open /no/such/file\n");
  testing::internal::CaptureStderr();
  qvErrMessageBox(-3, std::string(5000, 'x').c_str());
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "Error: " + ("Malloc " + std::string(5000, 'x')).substr(0, 1023) + "\n");
  testing::internal::CaptureStderr();
  qvErrMessageBox(-3, nullptr);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Error: Malloc \n");
}

TEST(EntryStep, ChecksBeforeItWrites) {
  Array in{1, 2, 3}, other{4, 5};
  Array out, empty;
  EXPECT_EQ(qv::prepareOutputs({}, {}, {&out}), -1);
  EXPECT_EQ(qv::prepareOutputs({}, {&in, &empty}, {&out}), -1);
  Array none(std::vector<double>{});
  EXPECT_EQ(qv::prepareOutputs({}, {&none}, {&out}), -1);
  EXPECT_EQ(qv::prepareOutputs({}, {&in}, {&out, nullptr}), -1);
  EXPECT_EQ(out.data, nullptr);
  Array used{7, 7, 7, 7};
  EXPECT_EQ(qv::prepareOutputs({}, {&in}, {&used, &in}), -1);
  EXPECT_EQ(used.items(), (std::vector<double>{7, 7, 7, 7}));

  EXPECT_EQ(qv::prepareOutputs({}, {&in, &other}, {&out, &used}), 2);
  EXPECT_EQ(out.capacity, 2);
  EXPECT_EQ(used.size, 2);
  EXPECT_EQ(used.data[3], 0.0);  // cleared over the whole capacity
  Array narrow{9};
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
  EXPECT_EQ(std::vector<double>(used.data, used.data + 5), (std::vector<double>{0, 7, 7, 0, 0}));
  EXPECT_EQ(qv::prepareOverwritten(&in, &narrow, 5, &first), 2);  // nothing will be written
  EXPECT_EQ(narrow.items(), (std::vector<double>{0, 0}));
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
  const long before = qv::memory::liveBlocks();
  qv::Temporary a, b, c;
  qv::memory::failAllocation(3);
  EXPECT_EQ(qv::allocArrays(5, {&a, &b, &c}), -3);
  qv::memory::failAllocation(0);
  EXPECT_EQ(qv::memory::liveBlocks(), before);
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
