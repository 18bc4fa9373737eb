// A call of an entry and its stream over the same data.
#pragma once

#include <memory>
#include <random>

#include "support/entry_call.h"
#include "support/expect.h"

namespace qvtest {

struct CloseStream {
  void operator()(QvStream* s) const { qvStreamClose(s); }
};
using Stream = std::unique_ptr<QvStream, CloseStream>;

inline Stream copyOf(QvStream* s) {
  QvStream* copy = nullptr;
  qvStreamCopy(s, &copy);
  return Stream(copy);
}

inline std::vector<unsigned char> savedOf(QvStream* s) {
  std::vector<unsigned char> block(static_cast<std::size_t>(std::max(0, qvStreamSave(s, nullptr, 0))));
  qvStreamSave(s, block.data(), static_cast<int>(block.size()));
  return block;
}
inline Stream loadedFrom(const std::vector<unsigned char>& block, int* status = nullptr) {
  QvStream* loaded = nullptr;
  const int answer = qvStreamLoad(block.data(), static_cast<int>(block.size()), &loaded);
  if (status) *status = answer;
  return Stream(loaded);
}

// Whole series as a stream takes them, and what it gives.
struct Feed {
  std::vector<const double*> values;
  std::vector<Items> outputs;
  int bars;

  Feed(std::size_t outputCount, int n)
      : outputs(outputCount, Items(static_cast<std::size_t>(n), -77.0)), bars(n) {}
  std::vector<const double*> from(int i) const {
    std::vector<const double*> at = values;
    for (const double*& v : at) v = v ? v + i : nullptr;
    return at;
  }
  std::vector<double*> into(int i) {
    std::vector<double*> at;
    for (Items& out : outputs) at.push_back(out.data() + i);
    return at;
  }
};

// Through the whole feed in random pieces, with peeks, corrections, copies and saved states between.
inline void runAtRandom(Stream& stream, Feed& feed, std::mt19937& random) {
  const auto below = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
  std::vector<double> one(feed.outputs.size());
  std::vector<double*> shown;
  for (double& x : one) shown.push_back(&x);
  for (int i = 0; i < feed.bars;) {
    const int other = below(feed.bars);
    switch (below(12)) {
      case 0:
        ASSERT_EQ(qvStreamPeek(stream.get(), feed.from(other).data(), shown.data()), 0);
        break;
      case 1: {
        const Stream copy = copyOf(stream.get());
        ASSERT_EQ(qvStreamPeek(stream.get(), feed.from(other).data(), shown.data()), 0);
        const std::vector<double> peeked = one;
        ASSERT_EQ(qvStreamUpdate(copy.get(), feed.from(other).data(), 1, shown.data()), 0);
        for (std::size_t k = 0; k < one.size(); ++k) ASSERT_TRUE(sameBits(one[k], peeked[k]));
        break;
      }
      case 2:
        stream = copyOf(stream.get());
        break;
      case 3:
        stream = loadedFrom(savedOf(stream.get()));
        ASSERT_TRUE(stream);
        break;
      case 4: {  // a wrong bar, corrected once or more
        ASSERT_EQ(qvStreamUpdate(stream.get(), feed.from(other).data(), 1, nullptr), 0);
        for (int k = below(3); k > 0; --k)
          ASSERT_EQ(qvStreamReplaceLast(stream.get(), feed.from(below(feed.bars)).data(), shown.data()), 0);
        ASSERT_EQ(qvStreamReplaceLast(stream.get(), feed.from(i).data(), feed.into(i).data()), 0);
        ++i;
        break;
      }
      default: {
        const int longest[] = {1, 1, 1, 5, 40, 400};
        const int count = std::min(feed.bars - i, 1 + below(longest[below(6)]));
        ASSERT_EQ(qvStreamUpdate(stream.get(), feed.from(i).data(), count, feed.into(i).data()), 0);
        i += count;
      }
    }
    ASSERT_EQ(qvStreamBars(stream.get()), i);
  }
}

}  // namespace qvtest
