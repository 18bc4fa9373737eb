/* Names of the numbers that the functions take and answer, and that stand in the records' fields. */
#ifndef QVLIB60_CODES_H
#define QVLIB60_CODES_H

/* Results of almost every function; qvErrDesc gives the texts. A few members answer a positive number
   where a period does not fit, which they document. */
enum {
  QV_OK = 0,
  QV_INVALID_PARM = -1, /* an argument or missing data */
  QV_FILE_OPEN = -2,
  QV_MALLOC = -3, /* memory exhausted */
  QV_FILE_READ = -4,
  QV_FILE_WRITE = -5,
  QV_FILE_SEEK = -6,
  QV_FILE_EXISTS = -7,
  QV_FILE_NOT_FOUND = -8,
  QV_RECORD_NOT_FOUND = -9,
  QV_UNKNOWN = -10
};

/* ---- Averages -------------------------------------------------------------------------------- */

/* The `method` of qvMovingAverage and of every indicator that leaves its average to the caller. */
enum {
  QV_MA_EXPONENTIAL = 0,   /* qvExpMA */
  QV_MA_LEAST_SQUARES = 1, /* qvLstSqrMA */
  QV_MA_SIMPLE = 2,        /* qvSimpleMA */
  QV_MA_WEIGHTED = 3,      /* qvWeightedMA */
  QV_MA_WILDER = 4,        /* qvWellesMA */
  QV_MA_TRIANGULAR = 5,    /* qvTriangularMA */
  QV_MA_VARIABLE = 6,      /* qvVariableMA */
  QV_MA_ZERO_LAG = 7       /* qvZeroLagExpMA */
};

/* The `mode` of qvZigZag's threshold. */
enum { QV_ZIGZAG_FRACTION = 0, QV_ZIGZAG_PERCENT = 1 };

/* ---- Bar information ------------------------------------------------------------------------- */

/* QvBars.filetype. */
enum {
  QV_FILETYPE_UNKNOWN = 0,
  QV_FILETYPE_CSI = 1,
  QV_FILETYPE_COMPUTRAC = 2,
  QV_FILETYPE_DOWJONES = 3,
  QV_FILETYPE_FUTURESOURCE = 4,
  QV_FILETYPE_TELECHART = 5,
  QV_FILETYPE_TECHTOOLS = 6,
  QV_FILETYPE_TEXT = 7,
  QV_FILETYPE_AIQ = 8
};

/* QvBars.frequency; daily and coarser ones are also the `frequency` of the bar compression. */
enum {
  QV_FREQ_UNKNOWN = 0,
  QV_FREQ_INTRADAY = 1,
  QV_FREQ_DAILY = 2,
  QV_FREQ_WEEKLY = 3,
  QV_FREQ_MONTHLY = 4,
  QV_FREQ_QUARTERLY = 5,
  QV_FREQ_YEARLY = 6
};

/* QvBars.datatype. */
enum {
  QV_DATATYPE_UNKNOWN = 0,
  QV_DATATYPE_BOND = 1,
  QV_DATATYPE_COMMODITY = 2,
  QV_DATATYPE_MUTUAL_FUND = 3,
  QV_DATATYPE_OPTION = 4,
  QV_DATATYPE_STOCK = 5,
  QV_DATATYPE_INDEX = 6
};

/* QvBars.optiontype and QvOptionLeg.type. */
enum { QV_OPTION_NONE = 0, QV_OPTION_CALL = 1, QV_OPTION_PUT = 2 };

/* ---- Dates ----------------------------------------------------------------------------------- */

/* Order of a date's parts: the `format` of the parsers and of qvSetDefaultDateFormat, and
   QvTxtInfo.dateFormat. */
enum { QV_DATE_YMD = 0, QV_DATE_MDY = 1, QV_DATE_DMY = 2 };

/* qvDayOfWeek and qvJulianDOW. */
enum {
  QV_MONDAY = 0,
  QV_TUESDAY = 1,
  QV_WEDNESDAY = 2,
  QV_THURSDAY = 3,
  QV_FRIDAY = 4,
  QV_SATURDAY = 5,
  QV_SUNDAY = 6
};

/* ---- Formations and candles ------------------------------------------------------------------ */

/* Signals of formations, crossovers and turns; a trough is bullish, a peak bearish. */
enum { QV_BEARISH = -1, QV_NO_SIGNAL = 0, QV_BULLISH = 1 };

/* QvCandle.colour, .shape, and both shadows. */
enum { QV_CANDLE_FLAT = 0, QV_CANDLE_BLACK = 1, QV_CANDLE_WHITE = 2 };
enum { QV_BODY_DOJI = 0, QV_BODY_SMALL = 1, QV_BODY_LONG = 3 };
enum { QV_SHADOW_SHORT = 1, QV_SHADOW_NORMAL = 2, QV_SHADOW_LONG = 3 };

/* ---- Trading systems ------------------------------------------------------------------------- */

/* QvOrder.orderType, .direction, .action and .timeInForce. A time in force other than QV_DAY, which is
   good for the next processed bar only, waits until it is filled or cancelled. */
enum { QV_MARKET = 1, QV_STOP = 2, QV_LIMIT = 3, QV_CLOSE = 4 };
enum { QV_BUY = 1, QV_SELL = 2 };
enum { QV_EXIT = 1, QV_ENTRY = 2 };
enum { QV_DAY = 1, QV_GTC = 2 };

/* QvPosition.direction and QvOrderSystem.positionDirection. */
enum { QV_FLAT = 0, QV_LONG = 1, QV_SHORT = 2 };

/* The marks that qvCreateTradeGraph adds up on a bar. */
enum {
  QV_MARK_LONG_ENTRY = 1,
  QV_MARK_SHORT_ENTRY = 2,
  QV_MARK_CLOSED_BY_BUY = 4,
  QV_MARK_CLOSED_BY_SELL = 8
};

#endif
