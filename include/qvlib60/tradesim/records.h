/* The records of the trading-system simulator. */
#ifndef QVLIB60_TRADESIM_RECORDS_H
#define QVLIB60_TRADESIM_RECORDS_H

#include "qvlib60/core.h"

QV_BEGIN_DECLS

/* Records without pointers have the same bytes on every platform. */
#pragma pack(push, 4)

/* A pending order. */
typedef struct QvOrder {
  char name[20];
  char fromEntry[20];  /* exits: the entry whose positions it may close, empty = any; entries: empty */
  int32_t volume;      /* contracts, shares */
  int32_t action;      /* QV_EXIT 1, QV_ENTRY 2 */
  int32_t direction;   /* QV_BUY 1, QV_SELL 2 */
  double price;        /* stop or limit price; market buy 0, market sell the largest single-precision value;
                          close order: the close of the bar at which it was placed */
  int32_t orderType;   /* QV_MARKET 1, QV_STOP 2, QV_LIMIT 3, QV_CLOSE 4; others are never filled */
  int32_t timeInForce; /* QV_DAY 1: the next processed bar only; QV_GTC 2 and others: until filled or
                          cancelled */
  double date;         /* of the bar at which it was placed */
  int32_t filled;      /* 0 pending, 1 filled or cancelled */
} QvOrder;

/* An entry fill that is still open. */
typedef struct QvPosition {
  char entryName[20];
  int32_t direction; /* QV_LONG 1, QV_SHORT 2 */
  int32_t entryBar;
  double entryDate;
  double entryPrice; /* on the tick grid */
  int32_t volume;    /* contracts at the fill */
  int32_t remaining; /* contracts still open */
} QvPosition;

/* A closed trade, or the part of a position that one exit closed. */
typedef struct QvTrade {
  QvPosition position; /* as it stood before this exit */
  char exitName[20];
  int32_t exitDirection; /* of the order that closed it: QV_BUY 1, QV_SELL 2 */
  int32_t exitBar;
  double exitDate;
  double exitPrice;   /* on the tick grid */
  int32_t exitVolume; /* contracts closed by this trade */
  int32_t reserved;
} QvTrade;

/* Performance of the long, the short or all trades. Averages and ratios stay 0 until there is
   something to divide by. The net block does not keep the last four fields. */
typedef struct QvTradeStats {
  double totalNetProfit;
  double grossProfit;
  double grossLoss; /* zero or negative */
  int32_t totalNumberOfTrades;
  double percentProfitable; /* 0 .. 100 */
  int32_t numberOfWinningTrades;
  int32_t numberOfLosingTrades;
  double largestWinningTrade;
  double largestLosingTrade; /* zero or negative */
  double averageWinningTrade;
  double averageLosingTrade;
  double ratioAverageWinAverageLoss;
  double averageTrade; /* wins and losses */
  int32_t maximumConsecutiveWinners;
  int32_t maximumConsecutiveLosers;
  double averageBarsInWinners; /* whole bars */
  double averageBarsInLosers;
  double maximumIntradayDrawdown; /* zero or negative: of one trade, from the lowest and highest close */
  double profitFactor;            /* gross profit over gross loss; net: the long one plus the short one */
  double maximumContractsHeld;
  double accountSizeRequired;
  double returnOnAccount; /* percent of the account size required */
  double prr;             /* pessimistic return ratio: wins less, losses plus their square root (Ralph Vince,
                             Portfolio Management Formulas, 1990) */
  double openPositionPL;  /* at the bar's close, without costs */
  int32_t totalBarsInWinners;
  int32_t totalBarsInLosers;
  int32_t currentRunOfWinners;
  int32_t currentRunOfLosers;
} QvTradeStats;

#pragma pack(pop)

QV_PACK_POINTERS

/* One trading system over one bar set. The caller sets the settings after qvOrderSystemInit and
   reads the position summary and the statistics. The tables belong to the library. */
typedef struct QvOrderSystem {
  char systemName[80];

  /* Settings, with the values that qvOrderSystemInit gives. */
  double tickSize;             /* 0.001: every fill is put on a multiple of it; above 0 */
  double tickValue;            /* 0.001: money value of one tick per contract */
  double slippage;             /* 0: money per contract taken from every closed trade */
  double commission;           /* 0: money per side, taken twice from every closed trade */
  double deductionRate;        /* 0: fraction taken from every trade result */
  double marginPercent;        /* 100: turns the drawdown into the account size required */
  int32_t entryDelaySeconds;   /* 0: an order waits for that long, in whole days (86400 seconds) */
  int32_t gapFills;            /* 0: stop and limit orders that the bar opens beyond fill at the open */
  int32_t reverseOnEntry;      /* 1: an entry closes all positions of the other direction */
  int32_t pyramiding;          /* 0: entries are taken while a position of their direction is held */
  int32_t longEntriesAllowed;  /* 1 */
  int32_t shortEntriesAllowed; /* 1 */

  /* Position summary, as of the end of the current bar. */
  int32_t currentBar;        /* -1 before the first qvProcessOrders */
  int32_t positionDirection; /* QV_FLAT 0, QV_LONG 1, QV_SHORT 2 */
  int32_t longContracts;
  int32_t shortContracts;
  int32_t netContracts;
  double averageEntryPrice; /* of the prevailing side, weighted by contracts */
  double lastEntryDate;     /* date number of the last entry fill */
  int32_t barsInLong;       /* since the first open position's entry, counting both ends */
  int32_t barsInShort;
  int32_t barsInPosition; /* of the prevailing side */

  QvTradeStats longStatistics;
  QvTradeStats shortStatistics;
  QvTradeStats netStatistics;

  QvOrder* orders;
  QvPosition* positions;
  QvTrade* trades;
  int32_t orderCapacity;
  int32_t orderCount;
  int32_t positionCapacity;
  int32_t positionCount;
  int32_t tradeCapacity;
  int32_t tradeCount;

  QvBars bars; /* the caller's record; its series stay the caller's and must outlive the system */
} QvOrderSystem;

#pragma pack(pop)

#pragma pack(push, 4)

/* One parameter of a trading system that is tried over a range. */
typedef struct QvOptVar {
  double start;
  double end;    /* reached when end - start is a whole number of steps */
  double step;   /* 0 = the single value start */
  int32_t count; /* set by qvOptVarCount */
  double value;  /* set by qvOptVarValue */
} QvOptVar;

#pragma pack(pop)

QV_END_DECLS

#endif
