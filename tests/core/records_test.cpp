// Series and bar sets: memory, copying, items, first-valid bookkeeping, error texts.
#include <gtest/gtest.h>

#include <climits>
#include <cstddef>
#include <cstring>

#include "core/calculation.h"
#include "support/expect.h"
#include "support/series.h"

namespace qvtest {
namespace {

bool sizesAre(const QvBars& b, int size, int capacity) {
  for (int k = 0; k < qv::kSeriesCount; ++k)
    if (qv::seriesOf(b, k).size != size || qv::seriesOf(b, k).capacity != capacity) return false;
  return b.barsize == size && b.datasize == capacity;
}

TEST(Records, AllocatesResizesAndFrees) {
  QvArray a{};
  EXPECT_EQ(qvAllocArray(&a, -1), -3);
  for (int n : {0, 3}) {
    qvFreeArray(&a);
    ASSERT_EQ(qvAllocArray(&a, n), 0);
  }
  EXPECT_EQ(itemsOf(a), (Items{0, 0, 0}));
  a.data[2] = 5.0;
  a.firstValid = 2;
  EXPECT_EQ(qvReSizeArray(&a, 4), -3);
  EXPECT_EQ(qvReAllocArray(&a, 1), 0);  // within the capacity: only the size changes
  EXPECT_TRUE(a.size == 1 && a.capacity == 3);
  EXPECT_EQ(qvReAllocArray(&a, 100), 0);
  EXPECT_TRUE(a.size == 100 && a.capacity == 100 && a.data[2] == 5.0 && a.firstValid == 2);
  qvFreeArray(&a);
  EXPECT_TRUE(!a.data && a.size == 0 && a.capacity == 0 && a.firstValid == 0);
  EXPECT_EQ(qvReAllocArray(&a, 2), 0);
  EXPECT_TRUE(a.data && a.size == 2);
  qvFreeArray(&a);

  Bars b;
  b.reccnt = 9;
  ASSERT_EQ(qvReAllocBars(&b, 4), 0);
  EXPECT_TRUE(sizesAre(b, 4, 4) && b.reccnt == 9);
  EXPECT_EQ(qvReSizeBars(&b, 5), -3);
  EXPECT_EQ(qvReAllocBars(&b, 2), 0);
  EXPECT_TRUE(sizesAre(b, 2, 4));
  qvFreeArray(&b.open);
  EXPECT_EQ(qvReSizeBars(&b, 3), 0);
  EXPECT_TRUE(b.close.size == 3 && b.open.size == 3) << "that of a missing series, too";
  b.open.data = b.close.data, b.open.capacity = 2;
  EXPECT_EQ(qvReSizeBars(&b, 4), 0);
  EXPECT_TRUE(b.close.size == 4 && b.open.size == 2) << "a shorter block has no more items";
  b.open = {};
  qvFreeBars(&b);
  EXPECT_TRUE(sizesAre(b, 0, 0) && !b.date.data && b.reccnt == 0);
}

TEST(Records, ExhaustedMemoryLeavesRecordsInOrder) {
  Bars bars(walkBars(10)), b, barsCopy, growing(walkBars(10));
  Array a{1, 2, 3}, copy;
  expectAnswersExhaustedMemory("qvAllocBars", [&] {
    b.reccnt = 9;
    const int status = qvAllocBars(&b, 10);
    EXPECT_TRUE(status == 0 || (sizesAre(b, 0, 0) && !b.date.data && b.reccnt == 0));
    return status;
  });
  expectAnswersExhaustedMemory("qvCopyBars", [&] { return qvCopyBars(&bars, &barsCopy); });
  expectAnswersExhaustedMemory("qvCopyArray", [&] { return qvCopyArray(&a, &copy); });
  expectAnswersExhaustedMemory("qvReAllocArray", [&] { return qvReAllocArray(&a, a.size + 9); });
  EXPECT_EQ(a.size, 12) << "the failure left it as it was";
  expectAnswersExhaustedMemory("qvReAllocBars", [&] {
    const int status = qvReAllocBars(&growing, 20), count = status ? 10 : 20;
    EXPECT_TRUE(growing.barsize == count && growing.datasize == count);
    EXPECT_EQ(growing.volume.data[9], bars.volume.data[9]);
    return status;
  });
  EXPECT_TRUE(sizesAre(growing, 20, 20));
}

TEST(Records, CopiesAsMuchAsFits) {
  Array src({1, 2, 3, 4}, 3), whole, small{9, 9};
  qvReSizeArray(&src, 2);
  expectGives(qvCopyArray(&src, &whole), whole, {1, 2});
  EXPECT_TRUE(whole.capacity == 4 && whole.data[3] == 4.0);  // the whole allocated part is copied
  qvReSizeArray(&src, 4);
  expectGives(qvCopyArray(&src, &small), small, {1, 2}, 3);

  // The descriptive fields are copied, the counts are the copy's own; onto itself nothing changes.
  Bars bars(walkBars(5)), copy, three(walkBars(3));
  const auto info = [](QvBars& b) { return reinterpret_cast<char*>(&b) + offsetof(QvBars, reccnt); };
  constexpr std::size_t kInfo = sizeof(QvBars) - offsetof(QvBars, reccnt);
  std::memset(info(bars), 7, kInfo);
  for (QvBars* to : std::initializer_list<QvBars*>{&copy, &three, &bars}) {
    ASSERT_EQ(qvCopyBars(&bars, to), 0);
    EXPECT_TRUE(sizesAre(*to, to == &three ? 3 : 5, to == &three ? 3 : 5));
    EXPECT_EQ(std::memcmp(info(*to), info(bars), kInfo), 0);
    EXPECT_EQ(to->openInterest.data[2], bars.openInterest.data[2]);
  }
  EXPECT_EQ(bars.symbol[15], 7);

  // A series that is missing here is empty there, one that is missing there is made.
  qvFreeArray(&bars.openInterest);
  qvFreeArray(&three.volume);
  three.openInterest.firstValid = 2;
  expectAnswersExhaustedMemory("qvCopyBars into a set that lacks a series",
                               [&] { return qvCopyBars(&bars, &three); });
  EXPECT_TRUE(three.openInterest.size == 0 && three.volume.size == 5);
  expectGives(0, three.volume, bars.volume.size == 5 ? itemsOf(bars.volume) : Items{});
  const QvArray blockless{nullptr, 3, 3, 0};
  EXPECT_EQ(qvCopyArray(&blockless, &small), 0);
  Array noRoom;
  qvAllocArray(&noRoom, 0);
  expectGives(qvCopyArray(&small, &noRoom), noRoom, {});
}

TEST(Records, ItemsOutsideTheSeriesAndNullRecordsAreSafe) {
  Array a{1, 2, 3};
  for (int i : {-1, 3, INT_MIN, INT_MAX}) {
    EXPECT_EQ(qvGetArrayItem(&a, i), 0.0);
    qvSetArrayItem(&a, i, 9.0);
  }
  qvSetArrayItem(&a, 0, 8.0);
  EXPECT_EQ(a.items(), (Items{8, 2, 3}));

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
  EXPECT_TRUE(a.firstValid == 3 && qvGetMaxFirstValid() == 7);
  qvSetMaxFirstValid(0);
}

TEST(Errors, EachCodeHasItsText) {
  const char* texts[] = {"Sucessfull",     "Invalid Parm",     "File Open", "Malloc",
                         "File Read",      "File Write",       "File Seek", "File Exists",
                         "File Not Found", "Record Not Found", "Unknown"};
  char text[32];
  for (int code : {0, -1, -2, -3, -4, -5, -6, -7, -8, -9, -10, 1, -11, INT_MIN, INT_MAX}) {
    const char* wanted = texts[code > 0 || code < -10 ? 10 : -code];
    EXPECT_EQ(qvErrDesc(code, text), static_cast<int>(std::strlen(wanted)));
    EXPECT_STREQ(text, wanted);
  }
#ifndef _WIN32  // where a box waits for somebody to answer it
  testing::internal::CaptureStderr();
  for (const char* description : {"/no/file", static_cast<const char*>(nullptr)})
    EXPECT_EQ(qvErrMessageBox(-2, description), 1);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Error: File Open /no/file\nError: File Open \n");
#endif
}

// Beside the common properties of the calculations.
TEST(EntryStep, ChecksBeforeItClearsAndGoesByTheShortestSeries) {
  Array in({1, 2, 3}, 1), other{4, 5}, out, used{7, 7, 7, 7, 7}, narrow{9};
  int first = -1;
  EXPECT_EQ(qv::prepareOutputs({}, {&in}, {&used, &in}), -1);
  EXPECT_EQ(qv::prepareOverwritten(&in, &used, 0, &first), 3);
  used.size = 5;
  EXPECT_EQ(used.items(), (Items{0, 7, 7, 0, 0})) << "spares what is overwritten";
  EXPECT_EQ(qv::prepareOutputs({}, {&in, &other}, {&out, &used}), 2);
  EXPECT_TRUE(out.capacity == 2 && used.size == 2 && used.data[2] == 0);
  EXPECT_EQ(qv::prepareOutputs({}, {&in}, {&narrow, &used}), 1);
  EXPECT_EQ(used.size, 1);
}

}  // namespace
}  // namespace qvtest
