// The heap of the tests itself: what it promises to find, it finds.
#include "core/memory.h"

#include <gtest/gtest.h>

#include <tuple>

#include "core/guarded_heap.h"
#include "qvlib60.h"

namespace {

using namespace qv::memory;

#ifndef QV_PLAIN_HEAP
// Behind the compiler's back, which sees that these writes are wrong.
void writeAt(void* block, int i) {
  static_cast<volatile char*>(block)[i] = 1;
}

TEST(GuardedHeapDeathTest, EndsTheProgramOfWhoWritesBesideABlockOrReleasesItTwice) {
  testing::FLAGS_gtest_death_test_style = "threadsafe";
  const auto spoil = [](int i) {
    void* block = allocate(5, 1);
    writeAt(block, i);
    release(block);
  };
  EXPECT_DEATH(spoil(5), "written beyond its end");
  EXPECT_DEATH(spoil(-1), "written before its begin");
  const auto useReleased = [](bool twice) {
    void* block = allocate(5, 1);
    release(block);
    if (twice) release(block);
    writeAt(block, 2);
    for (int k = 0; k < 200; ++k) release(allocate(5, 1));
  };
  EXPECT_DEATH(useReleased(true), "released twice");
  EXPECT_DEATH(useReleased(false), "written after its release");
}
#endif

TEST(Heap, KeepsItemsThatGrowAndRefusesWhatIsTooMuch) {
  const long live = liveBlocks();
  Buffer<int> items(3);
  items[2] = 7;
  largestGiven = 1000;
  EXPECT_FALSE(items.grow(1001 / sizeof(int) + 1));
  EXPECT_TRUE(items.grow(200) && items.count() == 200 && items[2] == 7);
  EXPECT_EQ(allocate(1001, 1), nullptr);
  largestGiven = 0;
  EXPECT_EQ(allocateZeroed(SIZE_MAX / 4, 8), nullptr);
  EXPECT_EQ(allocate(SIZE_MAX / 4, 8), nullptr);
#ifndef QV_PLAIN_HEAP
  for (auto* take : {allocate, allocateZeroed})
    EXPECT_EQ(take(PTRDIFF_MAX, 1), nullptr) << "no machine has it";
#endif
  EXPECT_EQ(resize(items.data(), SIZE_MAX / 2, 8), nullptr);
  EXPECT_EQ(liveBlocks(), live + 1);
}

TEST(Heap, RefusesTablesOfAnyNumbers) {
  QvOrder* table = nullptr;
  constexpr int kMost = INT_MAX / static_cast<int>(sizeof(QvOrder));
  for (auto [index, count, step] : {std::tuple{5, 5, 0}, {INT_MAX, INT_MAX - 3, 4}, {kMost, kMost, 1}}) {
    std::int32_t grown = count;
    EXPECT_EQ(qv::growTable(table, index, grown, step), -3);
    EXPECT_TRUE(!table && grown == count);
  }
}

}  // namespace
