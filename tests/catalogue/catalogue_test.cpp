// The catalogue against the headers' declarations, its texts and numbers, and what its entries answer
// against what the calculations do.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <regex>
#include <set>
#include <sstream>
#include <string>

#include "core/calculation.h"
#include "support/entry_call.h"
#include "support/expect.h"
#include "support/spx.h"

namespace qvtest {
namespace {

using Texts = std::vector<std::string>;

std::string lower(std::string text) {
  for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return text;
}

// ---- Against the declarations --------------------------------------------------------------------

// Functions with an output series that turn no bar sets and series into one item for each bar: memory and
// single records, columns of charts, readers, the marks of an order system.
const std::set<std::string> kNoCalculations = {
    "qvAllocArray",    "qvReAllocArray", "qvReSizeArray",  "qvCopyArray",        "qvFreeArray",
    "qvSetArrayItem",  "qvShiftArray",   "qvGroupArray",   "qvSetFirstValid",    "qvBars2PNF",
    "qvBars2PNFhilo",  "qvCTreadarray",  "qvTXTreadarray", "qvCreateTradeGraph", "qvEquity",
    "qvCatalogueCall", "qvFormulaEval"};
// Arguments that the catalogue gives itself: a call runs from start to the last bar.
const std::set<std::string> kGiven = {"start", "end", "first", "last", "reserved"};

struct Declaration {
  Texts inputs, outputs, params;
  int bars = 0;
  std::string source;  // what the comment above says behind "Source:", without the full stop
};

std::string sourceIn(const std::string& comment) {
  const std::size_t at = comment.rfind("Source: ");
  if (at == std::string::npos) return "";
  std::string text = std::regex_replace(comment.substr(at + 8), std::regex(R"(\s+)"), " ");
  if (text.ends_with(". ")) text.resize(text.size() - 2);
  return text == "no published source known" ? "" : text;
}

std::map<std::string, Declaration> declarations() {
  std::map<std::string, Declaration> all;
  for (const auto& file : std::filesystem::recursive_directory_iterator("include/qvlib60")) {
    if (!file.is_regular_file()) continue;
    std::stringstream text;
    text << std::ifstream(file.path()).rdbuf();
    const std::string header = text.str();
    static const std::regex declaration(R"(QVAPI\s+\w+\s+QVCALL\s+(qv\w+)\(([^)]*)\))");
    for (std::sregex_iterator it(header.begin(), header.end(), declaration), end; it != end; ++it) {
      Declaration d;
      const std::size_t close = header.rfind("*/", static_cast<std::size_t>(it->position()));
      const std::size_t open = header.rfind("/*", close);
      d.source = sourceIn(header.substr(open, close - open));
      std::stringstream arguments((*it)[2]);
      for (std::string argument; std::getline(arguments, argument, ',');) {
        const std::string name = argument.substr(argument.find_last_of(" *\n") + 1);
        const bool isConst = argument.find("const ") != std::string::npos;
        if (argument.find("QvArray*") != std::string::npos)
          (isConst ? d.inputs : d.outputs).push_back(name);
        else if (argument.find("QvBars*") != std::string::npos)
          ++d.bars;
        else if (!kGiven.count(name) && argument.find("QvCandles") == std::string::npos)
          d.params.push_back(name);
      }
      if (!d.outputs.empty() && !kNoCalculations.count((*it)[1])) all[(*it)[1]] = d;
    }
  }
  return all;
}

TEST(Catalogue, DescribesEveryDeclaredCalculation) {
  const auto declared = declarations();
  EXPECT_GT(declared.size(), 150u);
  for (const auto& [name, d] : declared) {
    SCOPED_TRACE(name);
    const QvCatalogueEntry* e = qvCatalogueFind(name.c_str());
    EXPECT_TRUE(e && e->name == name) << "not in the catalogue";
    if (!e) continue;
    Texts params, inputs;
    for (int k = 0; k < e->paramCount; ++k) params.push_back(e->params[k].name);
    for (int k = 0; k < e->inputCount; ++k) inputs.push_back(e->inputs[k].name);
    EXPECT_EQ(e->barsCount, d.bars);
    EXPECT_EQ(params, d.params);
    EXPECT_EQ(inputs, d.inputs);
    ASSERT_EQ(static_cast<std::size_t>(e->outputCount), d.outputs.size());
    for (int k = 0; k < e->outputCount; ++k) {  // "outUpper" is "upper"
      const std::string out = lower(d.outputs[static_cast<std::size_t>(k)]);
      EXPECT_TRUE(out == "out" || !out.starts_with("out") || lower(e->outputs[k].name) == out.substr(3))
          << out;
    }
  }
  for (int i = 0; i < qvCatalogueSize(); ++i) EXPECT_TRUE(declared.count(qvCatalogueItem(i)->name)) << i;
}

// In a header "Wilder, 1978" stands for a work that it has named in full, and "after" and what follows a
// semicolon tell how a calculation differs.
TEST(Catalogue, NamesTheSourcesOfTheHeaders) {
  const std::set<std::string> ofTheChoice = {"qvMovingAverage", "qvFormationFill", "qvCandleFill"};
  for (const auto& [name, d] : declarations()) {
    if (ofTheChoice.count(name)) continue;
    const std::string own = qvCatalogueFind(name.c_str())->source;
    const std::string told = d.source.starts_with("after ") ? d.source.substr(6) : d.source;
    std::smatch brief;
    if (std::regex_search(told, brief, std::regex(R"(^(\w+), (\d{4}))")) && own != told)
      EXPECT_TRUE(own.find(brief[1]) != own.npos && own.find(brief[2]) != own.npos) << name << ": " << own;
    else
      EXPECT_EQ(own, told) << name;
  }
}

TEST(Catalogue, TellsWholeAndSensibleThings) {
  std::set<std::string> shortNames;
  for (const QvCatalogueEntry* e : allEntries()) {
    SCOPED_TRACE(e->name);
    for (const char* text : {e->title, e->group, e->summary}) EXPECT_TRUE(*text);
    for (const std::string sentence : {e->summary, e->note})
      EXPECT_TRUE(sentence.empty() || sentence.back() == '.') << sentence;
    EXPECT_TRUE(shortNames.insert(e->shortName).second) << e->shortName << " twice";
    EXPECT_TRUE(std::regex_match(e->shortName, std::regex("[a-z][a-z0-9]+"))) << e->shortName;
    EXPECT_EQ(qvCatalogueFind(e->shortName), e);
    EXPECT_TRUE(e->mainOutput >= 0 && e->mainOutput < e->outputCount);
    EXPECT_EQ(e->barsCount > 0, e->series > 0) << "series read";
    std::set<std::string> names;
    for (const QvCatalogueOutput* o = e->outputs; o < e->outputs + e->outputCount; ++o) {
      EXPECT_TRUE(names.insert(o->name).second && o->low <= o->high) << o->name;
      for (int z = 0; z < o->zoneCount; ++z)
        EXPECT_TRUE(o->low == o->high || (o->low < o->zones[z] && o->zones[z] < o->high)) << o->name;
    }
    for (int k = 0; k < e->paramCount; ++k) {
      const QvCatalogueParam& p = e->params[k];
      EXPECT_TRUE(p.least <= p.defaultValue && p.defaultValue <= p.greatest && p.least <= p.optimiseStart &&
                  p.optimiseStart <= p.optimiseEnd && p.optimiseEnd <= p.greatest)
          << p.name;
      EXPECT_EQ(p.optimiseStep > 0, p.optimiseStart < p.optimiseEnd) << p.name;
      EXPECT_EQ(p.choiceCount > 0, p.choices != nullptr) << p.name;
      for (int c = 0; c < p.choiceCount; ++c)
        EXPECT_EQ(qvCatalogueChoice(e, k, p.choices[c]), c) << p.choices[c];
    }
  }
}

TEST(Catalogue, FindsByEitherNameInAnyCase) {
  for (const char* name : {"qvRSI", "QVRSI", "rsi", "RSI", "Rsi"})
    EXPECT_EQ(qvCatalogueFind(name), qvCatalogueFind("qvrsi")) << name;
  EXPECT_STREQ(qvCatalogueFind("sma")->name, "qvSimpleMA");
  EXPECT_STREQ(qvCatalogueFind("simplema")->name, "qvSimpleMA");
  EXPECT_STREQ(qvCatalogueFind("macd")->name, "qvMACDx") << "short names go first";
  EXPECT_STREQ(qvCatalogueFind("qvMACD")->name, "qvMACD");
  for (const char* name : {"", "q", "qv", "qvqvRSI", "rsi ", "qvNone"})
    EXPECT_FALSE(qvCatalogueFind(name)) << name;
  const QvCatalogueEntry* formation = qvCatalogueFind("formation");
  for (const char* name : {"InsideBar", "inside bar", "qvInsideBar"})
    EXPECT_GT(qvCatalogueChoice(formation, 0, name), 0) << name;
  EXPECT_EQ(qvCatalogueChoice(qvCatalogueFind("ma"), 0, "Wilder"), QV_MA_WILDER);
}

TEST(Catalogue, AnswersToAnyArgument) {
  const QvCatalogueEntry copy = *qvCatalogueItem(0);
  const auto* inside =
      reinterpret_cast<const QvCatalogueEntry*>(reinterpret_cast<const char*>(qvCatalogueItem(0)) + 8);
  Array in(shaped(Shape::Walk, 50)), out;
  const QvArray* inputs[] = {&in};
  QvArray* outputs[] = {&out};
  for (const QvCatalogueEntry* e : {static_cast<const QvCatalogueEntry*>(nullptr), &copy, inside}) {
    EXPECT_EQ(qvCatalogueCall(e, nullptr, inputs, outputs, nullptr, 0), -1);
    EXPECT_EQ(qvCatalogueFirstValid(e, nullptr, 0), -1);
    EXPECT_EQ(qvCatalogueFirstValidOf(e, 0, nullptr, 0), -1);
    EXPECT_EQ(qvCatalogueSettle(e, nullptr, 0.01), -1);
    EXPECT_EQ(qvCatalogueChoice(e, 0, "simple"), -1);
  }
  EXPECT_FALSE(qvCatalogueFind(nullptr));
  for (int i : {INT_MIN, -1, qvCatalogueSize(), INT_MAX}) EXPECT_FALSE(qvCatalogueItem(i)) << i;
  const QvCatalogueEntry *ma = qvCatalogueFind("ma"), *atr = qvCatalogueFind("atr");
  for (int k : {INT_MIN, -1, 1, 2, INT_MAX}) {
    EXPECT_EQ(qvCatalogueChoice(ma, k, "simple"), -1) << "the period, 1, has no names";
    EXPECT_EQ(qvCatalogueFirstValidOf(ma, k, nullptr, 0), -1);
  }
  for (const char* name : {static_cast<const char*>(nullptr), "", "none"})
    EXPECT_EQ(qvCatalogueChoice(ma, 0, name), -1);
  EXPECT_EQ(qvCatalogueCall(ma, nullptr, nullptr, outputs, nullptr, 0), -1);
  EXPECT_EQ(qvCatalogueCall(ma, nullptr, inputs, nullptr, nullptr, 0), -1);
  EXPECT_EQ(qvCatalogueCall(atr, nullptr, inputs, outputs, nullptr, 0), -1);
  EXPECT_EQ(out.data, nullptr);
  EXPECT_STREQ(qvVersion(), QVLIB60_VERSION);

  // Not-a-number is the period 0, a fraction is cut off, too much saturates.
  for (auto [number, status] : {std::pair{kNaN, -1}, {14.9, 0}, {1e300, 0}, {-kInf, -1}, {0.9, -1}}) {
    const double params[] = {QV_MA_SIMPLE, number};
    EXPECT_EQ(qvCatalogueCall(ma, nullptr, inputs, outputs, params, 0), status) << number;
    EXPECT_EQ(qvCatalogueFirstValid(ma, params, 0), status ? -1 : out.firstValid) << number;
    EXPECT_EQ(qvCatalogueSettle(ma, params, 0.01), status) << number;
  }
  EXPECT_EQ(qvCatalogueFirstValid(ma, nullptr, INT_MAX), INT_MAX) << "saturates";
}

// ---- First valid index ---------------------------------------------------------------------------

TEST(Catalogue, KnowsTheFirstValidIndex) {
  std::mt19937 random(5);
  const auto pick = [&](int from, int to) { return std::uniform_int_distribution(from, to)(random); };
  for (const QvCatalogueEntry* e : allEntries())
    for (int trial = 0; trial < 60; ++trial) {
      EntryCall call(e, 400);
      for (int k = 0; k < e->paramCount; ++k) {
        const QvCatalogueParam& p = e->params[k];
        double& value = call.params[static_cast<std::size_t>(k)];
        const bool wild = trial >= 50;
        if (p.kind == QV_PARAM_METHOD || p.kind == QV_PARAM_CHOICE)
          value = pick(wild ? -1 : 0, p.choiceCount - !wild);
        else if (p.kind == QV_PARAM_PERIOD || p.kind == QV_PARAM_INTEGER)
          value = pick(wild ? -2 : static_cast<int>(p.least), trial < 25 ? 12 : 60);
      }
      const int start = trial % 3 ? pick(-2, 60) : 0;
      const std::string what =
          e->name + testing::PrintToString(call.params) + " from " + std::to_string(start);
      const int status = call.run(start), latest = qvCatalogueFirstValid(e, call.params.data(), start);
      EXPECT_TRUE(status >= 0 || latest == -1) << what << " answers " << status;
      if (status != 0 || latest == -1) continue;
      int reached = -1;
      for (int k = 0; k < e->outputCount; ++k) {
        const int first = call.outputs[static_cast<std::size_t>(k)].firstValid;
        EXPECT_EQ(first, qvCatalogueFirstValidOf(e, k, call.params.data(), start)) << what << " output " << k;
        reached = std::max(reached, first);
      }
      EXPECT_EQ(latest, reached) << what;
    }
  const std::set<std::string> unset = {"rsic",  "compstrength", "compperformance", "spread",
                                       "scale", "multadd",      "candle"};
  for (const QvCatalogueEntry* e : allEntries())
    EXPECT_EQ(qvCatalogueFirstValid(e, nullptr, 0) == -1, unset.count(e->shortName) == 1) << e->name;
}

// ---- History -------------------------------------------------------------------------------------

// The call of an entry on the bundled prices from bar `from` on; series that the bars do not hold are made of
// closes and volumes of other days.
EntryCall onSpx(const QvCatalogueEntry* e, int from) {
  EntryCall call(e, 0);
  const int n = spx().barsize;
  for (Bars& b : call.bars) {
    qvFreeBars(&b);
    qvAllocBars(&b, n - from);
    for (int i = from; i < n; ++i) {
      for (int s = 0; s < qv::kSeriesCount; ++s)
        qv::seriesOf(b, s).data[i - from] = qv::seriesOf(spx(), s).data[i];
      b.openInterest.data[i - from] = spx().volume.data[i] / 1e5 + i % 7;
    }
  }
  for (std::size_t k = 0; k < call.inputs.size(); ++k) {
    qvAllocArray(call.inputs[k].fresh(), n - from);
    for (int i = from; i < n; ++i) {
      const int other = (i + 350 * static_cast<int>(k)) % n;
      call.inputs[k].data[i - from] = (k < 2 ? spx().close : spx().volume).data[other];
    }
  }
  return call;
}

// Bars after the first valid index until two beginnings of the data make no difference.
int observedHistory(const QvCatalogueEntry* e, const Items& params, double tolerance) {
  const int first = std::max(qvCatalogueFirstValid(e, params.data(), 0), 0);
  EntryCall whole = onSpx(e, 0);
  whole.params = params;
  whole.run();
  int bars = 0;
  for (int from : {500, 1777, 2205, 3001}) {
    EntryCall part = onSpx(e, from);
    part.params = params;
    part.run();
    for (std::size_t k = 0; k < part.outputs.size(); ++k) {
      const Array &a = whole.outputs[k], &b = part.outputs[k];
      const int n = std::min(a.size - from, b.size);
      double size = 0;
      for (int i = first; i < n; ++i) size = std::max(size, std::fabs(a[i + from]));
      int last = n - 1;
      while (last >= first && std::fabs(a[last + from] - b[last]) <= tolerance * size) --last;
      bars = std::max(bars, last - first + 1);
    }
  }
  return bars;
}

TEST(Catalogue, KnowsHowMuchHistoryIsNeeded) {
  for (const QvCatalogueEntry* e : allEntries()) {
    for (const double QvCatalogueParam::*value :
         {&QvCatalogueParam::defaultValue, &QvCatalogueParam::optimiseStart,
          &QvCatalogueParam::optimiseEnd}) {
      Items params;
      for (int k = 0; k < e->paramCount; ++k) params.push_back(e->params[k].*value);
      for (double tolerance : {1e-6, 1e-9}) {
        const int told = qvCatalogueSettle(e, params.data(), tolerance);
        if (told < 0) continue;
        const int observed = observedHistory(e, params, tolerance);
        EXPECT_GE(told, observed) << e->name << testing::PrintToString(params) << tolerance;
        EXPECT_TRUE(told <= 2 * observed + 5) << e->name << testing::PrintToString(params) << " " << tolerance
                                              << ": " << told << " bars told, " << observed << " needed";
      }
    }
  }
  for (const char* never : {"vidya", "obv", "sar", "zigzag", "accumulate", "candle"})
    EXPECT_EQ(qvCatalogueSettle(qvCatalogueFind(never), nullptr, 0.1), -1) << never;
  const QvCatalogueEntry *ema = qvCatalogueFind("ema"), *sma = qvCatalogueFind("sma");
  const double nineteen[] = {19};  // 0.9 to the power of 44 is the first below 0.01
  EXPECT_EQ(qvCatalogueSettle(ema, nineteen, 0.01), 44);
  EXPECT_EQ(qvCatalogueSettle(ema, nineteen, 1), 0);
  for (double never : {0.0, -1.0, kNaN}) EXPECT_EQ(qvCatalogueSettle(ema, nineteen, never), -1) << never;
  EXPECT_EQ(qvCatalogueSettle(sma, nineteen, 0), 0);
  // A lag below 0 is refused by the calculation, so no bar has a value.
  const double back[] = {14, -1}, rating[] = {14, 14, -1}, whole[] = {0, 0, 0, 100, 0},
               given[] = {0, 5, 0, 100, 0}, shifted[] = {1, 5, 0, 100, 0}, endless[] = {1e300};
  for (const auto& [name, params] : {std::pair("sonar", back), {"adxr", rating}}) {
    const QvCatalogueEntry* lagged = qvCatalogueFind(name);
    EXPECT_EQ(qvCatalogueFirstValidOf(lagged, 0, params, 0), -1) << name;
    EXPECT_EQ(qvCatalogueSettle(lagged, params, 0.01), -1) << name;
  }
  const QvCatalogueEntry* scale = qvCatalogueFind("scale");
  EXPECT_EQ(qvCatalogueSettle(scale, whole, 0.01), -1) << "by the range of all items";
  EXPECT_TRUE(qvCatalogueSettle(scale, given, 0.01) == 0 && qvCatalogueSettle(scale, shifted, 0.01) == 0);
  EXPECT_EQ(qvCatalogueSettle(ema, endless, 0.01), -1) << "what is kept of the value before is all of it";
  const double longest[] = {1e9};
  EXPECT_EQ(qvCatalogueSettle(ema, longest, 1e-300), INT_MAX);
}

}  // namespace
}  // namespace qvtest
