/* Series and bar sets: the two records that every calculation reads and writes, their memory,
   single items, first-valid bookkeeping and error texts.

   Common to all functions: a null record or a null required pointer is -1 (functions without a
   result do nothing; functions that return a double return 0.0). Nothing throws. */
#ifndef QVLIB60_CORE_H
#define QVLIB60_CORE_H

#include "qvlib60/abi.h"

QV_BEGIN_DECLS

QV_PACK_POINTERS

/* One series of doubles. An all-zero record is empty and may be handed to any calculation as an
   output, which then allocates it. */
typedef struct QvArray {
  double* data;       /* block of `capacity` doubles; null when the record is empty */
  int32_t size;       /* items in use; every calculation stops here */
  int32_t capacity;   /* doubles allocated, at most 0x40000000 */
  int32_t firstValid; /* index of the first meaningful item; calculations write 0.0 below it */
} QvArray;

/* A set of price bars: seven series of equal length, then the description of where they came from. */
typedef struct QvBars {
  QvArray date; /* date numbers: days since 30 December 1899, the time of day as fraction */
  QvArray open;
  QvArray high;
  QvArray low;
  QvArray close;
  QvArray volume;
  QvArray openInterest;
  int32_t barsize;      /* bars in use: the common size of the seven series */
  int32_t datasize;     /* bars allocated: their common capacity */
  int32_t reccnt;       /* records in the file that the bars came from */
  char path[256];       /* directory of that file */
  char name[16];        /* file name */
  char description[48]; /* long name of the security */
  char symbol[16];      /* ticker symbol */
  char cusip[12];       /* security number; absent when its first byte is NUL */
  double begindate;     /* date number of the first record; 0 = unknown */
  double enddate;       /* date number of the last record; 0 = unknown */
  int32_t filetype;     /* 0 unknown, 1 CSI, 2 CompuTrac, 3 Dow Jones, 4 FutureSource, 5 TeleChart,
                           6 TechTools, 7 text, 8 AIQ */
  int32_t frequency;    /* 0 unknown, 1 intraday, 2 daily, 3 weekly, 4 monthly, 5 quarterly, 6 yearly */
  int32_t datatype;     /* 0 unknown, 1 bond, 2 commodity, 3 mutual fund, 4 option, 5 stock, 6 index */
  int32_t optiontype;   /* 0 none, 1 call, 2 put */
  double deliverydate;  /* date number; 0 = none */
  double strikeprice;   /* 0 = none */
} QvBars;

#pragma pack(pop)

/* ---- Memory of a series ---------------------------------------------------------------------- */

/* Allocates n zeroed items (n above 0x40000000 counts as that). size = capacity = n, firstValid = 0.
   A block that the record held before is not freed. -3 leaves the record all zero. */
QVAPI int QVCALL qvAllocArray(QvArray* a, int n) QVNOEXCEPT;

/* Makes the series n items long: allocates an empty record, enlarges a block that is too small
   (keeping its items and firstValid; new items are not cleared), else only changes the size.
   -3 leaves the record unchanged. */
QVAPI int QVCALL qvReAllocArray(QvArray* a, int n) QVNOEXCEPT;

/* Changes the size within the capacity; n above the capacity is -3 and changes nothing. */
QVAPI int QVCALL qvReSizeArray(QvArray* a, int n) QVNOEXCEPT;

/* Copies src to dst. An empty dst is allocated with src's capacity (-3 on failure); else as much as
   dst's capacity holds is copied. firstValid is taken over as it stands. */
QVAPI int QVCALL qvCopyArray(const QvArray* src, QvArray* dst) QVNOEXCEPT;

/* Frees the block and clears the record; a null pointer or an empty record is fine. */
QVAPI void QVCALL qvFreeArray(QvArray* a) QVNOEXCEPT;

/* ---- Memory of a bar set --------------------------------------------------------------------- */

/* Allocates seven zeroed series of n bars; barsize = datasize = n. The describing fields are left
   as they are. -3 leaves the whole record all zero. */
QVAPI int QVCALL qvAllocBars(QvBars* b, int n) QVNOEXCEPT;

/* As qvReAllocArray for all seven series. If memory runs out half-way the earlier series stay
   enlarged, barsize and datasize stay as they were, and -3 is returned. */
QVAPI int QVCALL qvReAllocBars(QvBars* b, int n) QVNOEXCEPT;

/* Changes barsize and the seven sizes within datasize; n above it is -3. */
QVAPI int QVCALL qvReSizeBars(QvBars* b, int n) QVNOEXCEPT;

/* Copies the describing fields and the seven series; an empty dst is allocated with src.datasize
   bars (-3 on failure). */
QVAPI int QVCALL qvCopyBars(const QvBars* src, QvBars* dst) QVNOEXCEPT;

/* Copies the describing fields (reccnt to strikeprice), not barsize and datasize. */
QVAPI void QVCALL qvCopyBarInfo(const QvBars* src, QvBars* dst) QVNOEXCEPT;

/* Frees the seven blocks and clears the whole record; a null pointer is fine. */
QVAPI void QVCALL qvFreeBars(QvBars* b) QVNOEXCEPT;

/* ---- Single items ---------------------------------------------------------------------------- */

/* Item i, or 0.0 when i is outside 0 .. size - 1. */
QVAPI double QVCALL qvGetArrayItem(const QvArray* a, int i) QVNOEXCEPT;

/* Stores v at i; does nothing when i is outside 0 .. size - 1. */
QVAPI void QVCALL qvSetArrayItem(QvArray* a, int i, double v) QVNOEXCEPT;

/* ---- First valid index ----------------------------------------------------------------------- */

/* Records where a series' values begin and raises the process-wide maximum to it; returns that
   maximum. */
QVAPI int QVCALL qvSetFirstValid(QvArray* a, int n) QVNOEXCEPT;

/* Sets the process-wide maximum (to any value) and returns it. Reset it before a run of
   calculations, read it afterwards to learn the first bar at which all their outputs are valid. */
QVAPI int QVCALL qvSetMaxFirstValid(int n) QVNOEXCEPT;
QVAPI int QVCALL qvGetMaxFirstValid(void) QVNOEXCEPT;

/* ---- Error texts ----------------------------------------------------------------------------- */

/* Copies the text of an error code into buf (at least 17 characters) and returns its length. Codes
   above 0 and below -10 are described as "Unknown". */
QVAPI int QVCALL qvErrDesc(int code, char* buf) QVNOEXCEPT;

/* Shows the description of code, a blank and text (cut to fit 1,023 characters in all) in a message
   box captioned "Error"; where the platform has none, on standard error. Returns the message box's
   result, 1 where there is none. */
QVAPI int QVCALL qvErrMessageBox(int code, const char* text) QVNOEXCEPT;

QV_END_DECLS

/* The array utilities and the per-bar price formulas stand in a header of their own. */
#include "qvlib60/core/arrays.h"

#endif
