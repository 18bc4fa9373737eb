// The table of the records' layouts for people who write bindings, docs/records.md, against the compiler.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <fstream>
#include <sstream>
#include <string>
#include <type_traits>
#include <vector>

#include "qvlib60.h"

namespace qvtest {
namespace {

struct Width {
  int size, alignment;
};

struct Field {
  const char* name;
  std::string type;
  int offset;      // here
  Width narrow{};  // on a 32-bit platform, where everything is packed on 4 bytes
};

int roundedUp(int offset, int alignment) {
  return (offset + alignment - 1) / alignment * alignment;
}

// A record's size on a 32-bit platform: those that hold pointers are smaller there.
template <typename Record>
constexpr int narrowSize() {
  if (std::is_same_v<Record, QvArray>) return 16;
  if (std::is_same_v<Record, QvBars>) return 520;
  return static_cast<int>(sizeof(Record));
}

template <typename T>
std::string typeName() {
  if constexpr (std::is_const_v<T>)
    return typeName<std::remove_const_t<T>>() + " const";
  else if constexpr (std::is_array_v<T>)
    return typeName<std::remove_extent_t<T>>() + "[" + std::to_string(std::extent_v<T>) + "]";
  else if constexpr (std::is_pointer_v<T>)
    return typeName<std::remove_pointer_t<T>>() + "*";
#define NAMED(type) else if constexpr (std::is_same_v<T, type>) return #type
  NAMED(double);
  NAMED(int32_t);
  NAMED(uint32_t);
  NAMED(int8_t);
  NAMED(char);
  NAMED(QvArray);
  NAMED(QvBars);
  NAMED(QvCandle);
  NAMED(QvOptionLeg);
  NAMED(QvOrder);
  NAMED(QvPosition);
  NAMED(QvTrade);
  NAMED(QvTradeStats);
  NAMED(QvCatalogueParam);
  NAMED(QvCatalogueInput);
  NAMED(QvCatalogueOutput);
#undef NAMED
}

template <typename T>
Width narrowWidth() {
  if constexpr (std::is_array_v<T>) {
    const Width one = narrowWidth<std::remove_extent_t<T>>();
    return {one.size * static_cast<int>(std::extent_v<T>), one.alignment};
  }
  if constexpr (std::is_pointer_v<T>) return {4, 4};
  return {narrowSize<T>(), std::min(4, static_cast<int>(alignof(T)))};
}

template <typename T>
Field field(const char* name, std::size_t offset) {
  return {name, typeName<T>(), static_cast<int>(offset), narrowWidth<T>()};
}

// The record's section of the page.
std::string section(const char* record, int size, const std::vector<Field>& fields) {
  std::ostringstream rows;
  int narrow = 0;
  for (const Field& f : fields) {
    narrow = roundedUp(narrow, f.narrow.alignment);
    rows << "| `" << f.name << "` | `" << f.type << "` | " << narrow << " | " << f.offset << " |\n";
    narrow += f.narrow.size;
  }
  std::ostringstream text;
  text << "## `" << record << "`\n\n| field | type | 32-bit | 64-bit |\n|---|---|---|---|\n" << rows.str();
  text << "| *size* | | " << narrow << " | " << size << " |\n";
  return text.str();
}

#define F(name) field<decltype(Record::name)>(#name, offsetof(Record, name))
#define RECORD(type, ...)                                 \
  [] {                                                    \
    using Record = type;                                  \
    return section(#type, sizeof(Record), {__VA_ARGS__}); \
  }()

TEST(RecordLayout, IsAsThePageTells) {
  if (sizeof(void*) != 8) GTEST_SKIP() << "the page is compared where its last column is the compiler's";
  std::ifstream file("docs/records.md");
  std::ostringstream page;
  page << file.rdbuf();
  const std::string sections[] = {
      RECORD(QvArray, F(data), F(size), F(capacity), F(firstValid)),
      RECORD(QvBars, F(date), F(open), F(high), F(low), F(close), F(volume), F(openInterest), F(barsize),
             F(datasize), F(reccnt), F(path), F(name), F(description), F(symbol), F(cusip), F(begindate),
             F(enddate), F(filetype), F(frequency), F(datatype), F(optiontype), F(deliverydate),
             F(strikeprice)),
      RECORD(QvCandle, F(colour), F(shape), F(topShadow), F(bottomShadow)),
      RECORD(QvCandles, F(records), F(longShadowFactor), F(shortShadowFactor), F(dojiFactor)),
      RECORD(QvTxtInfo, F(dateColumn), F(timeColumn), F(openColumn), F(highColumn), F(lowColumn),
             F(closeColumn), F(volumeColumn), F(openInterestColumn), F(dateFormat), F(skip), F(delimiters)),
      RECORD(QvOptionLeg, F(premium), F(strike), F(type), F(expiry)),
      RECORD(QvOption, F(underlying), F(bought), F(written), F(maxProfit), F(ratio), F(maxLoss),
             F(upperBreakeven), F(lowerBreakeven), F(upperMove), F(lowerMove)),
      RECORD(QvBond, F(face), F(price), F(coupon), F(paymentsPerYear), F(maturity)),
      RECORD(QvTvm, F(principal), F(rate), F(years), F(periodsPerYear)),
      RECORD(QvOrder, F(name), F(fromEntry), F(volume), F(action), F(direction), F(price), F(orderType),
             F(timeInForce), F(date), F(filled)),
      RECORD(QvPosition, F(entryName), F(direction), F(entryBar), F(entryDate), F(entryPrice), F(volume),
             F(remaining)),
      RECORD(QvTrade, F(position), F(exitName), F(exitDirection), F(exitBar), F(exitDate), F(exitPrice),
             F(exitVolume), F(reserved)),
      RECORD(QvTradeStats, F(totalNetProfit), F(grossProfit), F(grossLoss), F(totalNumberOfTrades),
             F(percentProfitable), F(numberOfWinningTrades), F(numberOfLosingTrades), F(largestWinningTrade),
             F(largestLosingTrade), F(averageWinningTrade), F(averageLosingTrade),
             F(ratioAverageWinAverageLoss), F(averageTrade), F(maximumConsecutiveWinners),
             F(maximumConsecutiveLosers), F(averageBarsInWinners), F(averageBarsInLosers),
             F(maximumIntradayDrawdown), F(profitFactor), F(maximumContractsHeld), F(accountSizeRequired),
             F(returnOnAccount), F(prr), F(openPositionPL), F(totalBarsInWinners), F(totalBarsInLosers),
             F(currentRunOfWinners), F(currentRunOfLosers)),
      RECORD(QvOrderSystem, F(systemName), F(tickSize), F(tickValue), F(slippage), F(commission),
             F(deductionRate), F(marginPercent), F(entryDelaySeconds), F(gapFills), F(reverseOnEntry),
             F(pyramiding), F(longEntriesAllowed), F(shortEntriesAllowed), F(currentBar),
             F(positionDirection), F(longContracts), F(shortContracts), F(netContracts), F(averageEntryPrice),
             F(lastEntryDate), F(barsInLong), F(barsInShort), F(barsInPosition), F(longStatistics),
             F(shortStatistics), F(netStatistics), F(orders), F(positions), F(trades), F(orderCapacity),
             F(orderCount), F(positionCapacity), F(positionCount), F(tradeCapacity), F(tradeCount), F(bars)),
      RECORD(QvPoint, F(x), F(y)),
      RECORD(QvGraphShape, F(kind), F(bar), F(price), F(bar2), F(direction), F(price2), F(deviations),
             F(text)),
      RECORD(QvGraphStyle, F(colour), F(colour2), F(width), F(dash), F(hidden), F(name)),
      RECORD(QvGraphTheme, F(background), F(text), F(faint), F(grid), F(frame), F(up), F(down), F(zone),
             F(cursor), F(palette), F(reserved), F(fontSize), F(lineWidth), F(font)),
      RECORD(QvGraphHit, F(subWindow), F(bar), F(item), F(part), F(price)),
      RECORD(QvOptVar, F(start), F(end), F(step), F(count), F(value)),
      RECORD(QvEquityFigures, F(first), F(last), F(totalGrowth), F(annualGrowth), F(sharpe), F(sortino),
             F(greatestDrawdown), F(greatestDrawdownPercent), F(barsPerYear), F(greatestDrawdownBars),
             F(bars)),
      RECORD(QvTradeFigures, F(grossProfit), F(grossLoss), F(profitFactor), F(expectancy), F(exposure),
             F(trades), F(barsHeld)),
      RECORD(QvCatalogueParam, F(name), F(choices), F(defaultValue), F(least), F(greatest), F(optimiseStart),
             F(optimiseEnd), F(optimiseStep), F(kind), F(isInteger), F(choiceCount), F(reserved)),
      RECORD(QvCatalogueInput, F(name), F(series), F(reserved)),
      RECORD(QvCatalogueOutput, F(name), F(low), F(high), F(zones), F(zoneCount), F(place), F(style),
             F(repaints)),
      RECORD(QvCatalogueEntry, F(name), F(shortName), F(title), F(group), F(summary), F(source), F(note),
             F(params), F(inputs), F(outputs), F(barsCount), F(inputCount), F(outputCount), F(paramCount),
             F(mainOutput), F(series), F(flags), F(reserved)),
  };
  for (const std::string& expected : sections)
    EXPECT_NE(page.str().find(expected), std::string::npos) << expected;
}

}  // namespace
}  // namespace qvtest
