// Saved streams: damage is refused, and what an enemy made with a right checksum does no harm.
#include <gtest/gtest.h>

#include "stream/support.h"

using namespace qvtest;

namespace {

std::uint64_t checksumOf(const std::vector<unsigned char>& bytes, std::size_t count) {
  std::uint64_t sum = 0xCBF29CE484222325u;
  for (std::size_t i = 0; i < count; ++i) sum = (sum ^ bytes[i]) * 0x100000001B3u;
  return sum;
}

Stream streamOf(const QvCatalogueEntry* entry) {
  QvStream* s = nullptr;
  qvStreamOpen(entry, nullptr, 2, &s);
  return Stream(s);
}

// A stream after n bars of a walk, all series alike.
void feed(QvStream* s, int n) {
  const Items walk = shaped(Shape::Walk, n), rising = shaped(Shape::Rising, n);
  std::vector<const double*> values(20, walk.data());
  values[0] = values[7] = rising.data();
  ASSERT_EQ(qvStreamUpdate(s, values.data(), n, nullptr), 0);
}

void refusesEveryDamage(QvStream* s) {
  const auto block = savedOf(s);
  int status = 0;
  EXPECT_TRUE(loadedFrom(block, &status));
  for (std::size_t i = 0; i < block.size(); ++i) {
    auto damaged = block;
    for (const int change : {1, 0x80, 0xFF}) {
      damaged[i] = static_cast<unsigned char>(block[i] ^ change);
      EXPECT_FALSE(loadedFrom(damaged, &status)) << i;
      ASSERT_EQ(status, QV_FILE_READ) << i;
    }
    damaged.assign(block.begin(), block.begin() + static_cast<std::ptrdiff_t>(i));
    EXPECT_FALSE(loadedFrom(damaged, &status)) << i;
    ASSERT_EQ(status, QV_FILE_READ) << i;
  }
  auto longer = block;
  longer.push_back(0);
  EXPECT_FALSE(loadedFrom(longer));
}

TEST(StreamBlocks, AreRefusedWithAnyByteChangedOrMissing) {
  for (const char* name : {"sma", "bollinger", "adx"}) {
    const Stream s = streamOf(qvCatalogueFind(name));
    feed(s.get(), 60);
    refusesEveryDamage(s.get());
  }
  QvStream* s = nullptr;
  ASSERT_EQ(qvStreamOpenFormula(qv::Formula("weekly(sma(3)) > close and candle(\"hammer\")").get(), &s), 0);
  const Stream formula(s);
  feed(s, 60);
  refusesEveryDamage(s);
}

// Its bytes changed, with a right checksum.
std::vector<unsigned char> sealed(std::vector<unsigned char> block) {
  const std::size_t tail = block.size() - 8;
  const std::uint64_t sum = checksumOf(block, tail);
  for (std::size_t k = 0; k < 8; ++k) block[tail + k] = static_cast<unsigned char>(sum >> 8 * k);
  return block;
}

TEST(StreamBlocks, OfAnotherVersionOrWithoutANameAreRefused) {
  QvStream* s = nullptr;
  ASSERT_EQ(qvStreamOpenFormula(qv::Formula("close").get(), &s), 0);
  const Stream formula(s);
  const auto block = savedOf(s);
  const auto answerTo = [](const std::vector<unsigned char>& changed) {
    int status = 0;
    EXPECT_FALSE(loadedFrom(sealed(changed), &status));
    return status;
  };
  auto later = block, nameless = block, given = block;
  ++later[4];
  EXPECT_EQ(answerTo(later), QV_UNKNOWN);
  nameless[9] = 0;
  nameless.erase(nameless.begin() + 13, nameless.begin() + 19);
  EXPECT_EQ(answerTo(nameless), QV_FILE_READ);
  given[19] = 1;  // a parameter that the formula does not have
  given.insert(given.begin() + 23, 8, 0);
  EXPECT_EQ(answerTo(given), QV_FILE_READ);
}

TEST(StreamBlocks, OfLongWindowsLoadOrSayThatMemoryRanOut) {
  const double period[] = {200};
  QvStream* s = nullptr;
  ASSERT_EQ(qvStreamOpen(qvCatalogueFind("wma"), period, 0, &s), 0);
  const Stream stream(s);
  feed(s, 200);
  for (int k = 0; k < 150; ++k) feed(s, 1);
  const auto block = savedOf(s);
  expectAnswersExhaustedMemory("load", [&] {
    int status = 0;
    const Stream loaded = loadedFrom(block, &status);
    return status;
  });
}

TEST(StreamBlocks, AreTheSameEverywhere) {
  const Stream s = streamOf(qvCatalogueFind("sma"));
  const double one[] = {1.5}, *values[] = {one};
  ASSERT_EQ(qvStreamUpdate(s.get(), values, 1, nullptr), 0);
  const auto block = savedOf(s.get());
  // Magic, version, kind, name, one parameter, start, bars.
  const unsigned char head[] = {'Q', 'V', 'S', 'T', 3,    0,    0,   0,   1, 11, 0, 0, 0, 'q', 'v',
                                'S', 'i', 'm', 'p', 'l',  'e',  'M', 'A', 0, 1,  0, 0, 0, 0,   0,
                                0,   0,   0,   0,   0x34, 0x40, 2,   0,   0, 0,  1, 0, 0, 0};
  ASSERT_GT(block.size(), sizeof head);
  EXPECT_EQ(std::vector<unsigned char>(block.begin(), block.begin() + sizeof head),
            std::vector<unsigned char>(head, head + sizeof head));
}

// With a right checksum. Memory is the sanitizer's to watch: accepted or not, whatever comes then runs to its
// end.
bool isAccepted(const std::vector<unsigned char>& forged) {
  const Stream loaded = loadedFrom(sealed(forged));
  if (!loaded) return false;
  feed(loaded.get(), 40);
  feed(loaded.get(), 260);
  return true;
}

TEST(StreamBlocks, MadeByAnEnemyDoNoHarm) {
  std::mt19937 random(9 + static_cast<unsigned>(testing::UnitTest::GetInstance()->random_seed()));
  const auto below = [&](std::size_t n) { return random() % n; };
  std::vector<Stream> streams;
  for (const QvCatalogueEntry* e : allEntries())
    if (Stream s = streamOf(e)) streams.push_back(std::move(s));
  for (const char* text :
       {"weekly(rwi(7).high) + highest(close, 9)[3]", "candle(\"hammer\", 4)", "dmi(monthly(c))"}) {
    QvStream* s = nullptr;
    ASSERT_EQ(qvStreamOpenFormula(qv::Formula(text).get(), &s), 0);
    streams.emplace_back(s);
  }
  int accepted = 0;
  for (const Stream& s : streams) {
    feed(s.get(), 10 + static_cast<int>(below(90)));
    const auto block = savedOf(s.get());
    for (int trial = 0; trial < 60; ++trial) {
      auto forged = block;
      const std::size_t head = 8, tail = block.size() - 8;
      for (std::size_t k = 1 + below(4); k > 0; --k) {
        const unsigned char values[] = {0, 1, 0x7F, 0x80, 0xFF, static_cast<unsigned char>(random())};
        forged[head + below(tail - head)] = values[below(6)];
      }
      accepted += isAccepted(forged);
    }
  }
  EXPECT_GT(accepted, 100);
}

TEST(Stream, GivesTheOutputsThatAreWanted) {
  const Items walk = shaped(Shape::Walk, 500);
  const std::vector<const double*> values(7, walk.data());
  const Stream all = streamOf(qvCatalogueFind("bollinger")), one = copyOf(all.get());
  Items upper(500), middle(500), lower(500), alone(500);
  double *wanted[] = {upper.data(), middle.data(), lower.data()}, *few[] = {nullptr, alone.data(), nullptr};
  ASSERT_EQ(qvStreamUpdate(all.get(), values.data(), 500, wanted), 0);
  ASSERT_EQ(qvStreamUpdate(one.get(), values.data(), 500, few), 0);
  EXPECT_EQ(alone, middle);
}

// Of chains in which one number bounds another: each byte of a young one's state in turn.
TEST(StreamBlocks, WithOneByteForgedDoNoHarm) {
  for (const char* name : {"qvRWI", "qvDMI"}) {
    const Stream s = streamOf(qvCatalogueFind(name));
    feed(s.get(), 5);
    const auto block = savedOf(s.get());
    int accepted = 0;
    for (std::size_t i = 8; i < block.size() - 8; ++i)
      for (const int value : {0, 1, 9}) {
        auto forged = block;
        forged[i] = static_cast<unsigned char>(value);
        accepted += isAccepted(forged);
      }
    EXPECT_GT(accepted, 100) << name;
  }
}

TEST(Stream, RefusesWrongArguments) {
  QvStream* s = nullptr;
  const QvCatalogueEntry* sma = qvCatalogueFind("sma");
  const QvCatalogueEntry copy = *sma;
  const double zero[] = {0};
  EXPECT_EQ(qvStreamOpen(nullptr, nullptr, 0, &s), QV_INVALID_PARM);
  EXPECT_EQ(qvStreamOpen(&copy, nullptr, 0, &s), QV_INVALID_PARM);
  EXPECT_EQ(qvStreamOpen(sma, zero, 0, &s), QV_INVALID_PARM);
  EXPECT_EQ(qvStreamOpen(sma, nullptr, 0, nullptr), QV_INVALID_PARM);
  ASSERT_EQ(qvStreamOpen(sma, nullptr, -5, &s), 0);
  const Stream stream(s);
  double x = 1.0;
  const double* values[] = {&x};
  const double* none[] = {nullptr};
  double* out[] = {&x};
  EXPECT_EQ(qvStreamReplaceLast(s, values, out), QV_RECORD_NOT_FOUND);
  EXPECT_EQ(qvStreamUpdate(s, none, 1, out), QV_INVALID_PARM);
  EXPECT_EQ(qvStreamUpdate(s, nullptr, 1, out), QV_INVALID_PARM);
  EXPECT_EQ(qvStreamUpdate(s, values, -1, out), QV_INVALID_PARM);
  EXPECT_EQ(qvStreamUpdate(s, values, 0, out), 0);
  EXPECT_EQ(qvStreamUpdate(nullptr, values, 1, out), QV_INVALID_PARM);
  EXPECT_EQ(qvStreamPeek(s, none, out), QV_INVALID_PARM);
  EXPECT_EQ(qvStreamPeek(nullptr, values, out), QV_INVALID_PARM);
  EXPECT_EQ(qvStreamReplaceLast(s, none, out), QV_INVALID_PARM);
  EXPECT_EQ(qvStreamReplaceLast(nullptr, values, out), QV_INVALID_PARM);
  EXPECT_EQ(qvStreamBars(s), 0);
  EXPECT_EQ(qvStreamBars(nullptr), QV_INVALID_PARM);
  EXPECT_EQ(qvStreamOutputCount(nullptr), QV_INVALID_PARM);
  EXPECT_EQ(qvStreamFirstValid(s, 1), QV_INVALID_PARM);
  EXPECT_EQ(qvStreamFirstValid(s, -1), QV_INVALID_PARM);
  EXPECT_EQ(qvStreamFirstValid(nullptr, 0), QV_INVALID_PARM);
  EXPECT_EQ(qvStreamFirstValid(s, 0), 19);
  EXPECT_EQ(qvStreamCopy(nullptr, &s), QV_INVALID_PARM);
  EXPECT_EQ(qvStreamCopy(stream.get(), nullptr), QV_INVALID_PARM);
  EXPECT_EQ(qvStreamSave(nullptr, nullptr, 0), QV_INVALID_PARM);
  EXPECT_EQ(qvStreamSave(stream.get(), nullptr, 9), QV_INVALID_PARM);
  EXPECT_EQ(qvStreamLoad(nullptr, 0, &s), QV_INVALID_PARM);
  EXPECT_EQ(qvStreamLoad(&x, -1, &s), QV_INVALID_PARM);
  EXPECT_EQ(qvStreamLoad(&x, 8, nullptr), QV_INVALID_PARM);
  qvStreamClose(nullptr);
}

}  // namespace
