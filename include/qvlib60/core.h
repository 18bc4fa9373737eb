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
   output, which then allocates it. A record that owns a block keeps it: as an output it is filled up to its
   room, and its size tells how far, so that a block of a shorter series cuts a longer result (free the
   record first to get all of it; see indicators.h).

   A series may lie in the caller's own memory: set data, size and capacity (both the number of items) and
   firstValid. Such a record is only for reading, or for an output of at most that many items: it must go to
   no function that frees or enlarges it (qvFreeArray, qvReAllocArray). */
typedef struct QvArray {
  double* data;       /* block of `capacity` doubles; null when the record is empty */
  int32_t size;       /* items in use; every calculation stops here */
  int32_t capacity;   /* doubles allocated, at most 0x40000000 */
  int32_t firstValid; /* index of the first meaningful item; those below it hold 0.0 or a remnant */
} QvArray;

/* A set of price bars: seven series of equal length, then the description of where they came from.

   A set over the caller's own memory needs, for calculations: the dates (every calculation on a bar set
   asks for that block, whether it reads it or not), each series that the calculation reads, and barsize.
   Each of these series needs data, size and capacity, at least barsize items; one that is missing or shorter
   is -1. datasize is the room of the outputs that are allocated for it: set it to barsize or more, for
   outputs get no items where it is 0. Series that no calculation reads may stay all zero, but qvCopyBars,
   compression and the readers want all seven. */
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
  int32_t filetype;     /* QV_FILETYPE_UNKNOWN 0, CSI 1, COMPUTRAC 2, DOWJONES 3, FUTURESOURCE 4,
                           TELECHART 5, TECHTOOLS 6, TEXT 7, AIQ 8 */
  int32_t frequency;    /* QV_FREQ_UNKNOWN 0, INTRADAY 1, DAILY 2, WEEKLY 3, MONTHLY 4, QUARTERLY 5,
                           YEARLY 6 */
  int32_t datatype;     /* QV_DATATYPE_UNKNOWN 0, BOND 1, COMMODITY 2, MUTUAL_FUND 3, OPTION 4, STOCK 5,
                           INDEX 6 */
  int32_t optiontype;   /* QV_OPTION_NONE 0, CALL 1, PUT 2 */
  double deliverydate;  /* date number; 0 = none */
  double strikeprice;   /* 0 = none */
} QvBars;

#pragma pack(pop)

/* ---- Memory of a series ---------------------------------------------------------------------- */

/* Allocates n zeroed items (n above 0x40000000 counts as that). size = capacity = n, firstValid = 0.
   A block that the record held before is not freed. -3, also for an n below 0, leaves the record all
   zero. */
QVAPI int QVCALL qvAllocArray(QvArray* a, int n) QVNOEXCEPT;

/* Makes the series n items long: allocates an empty record, enlarges a block that is too small
   (keeping its items and firstValid; new items are not cleared), else only changes the size.
   -3 leaves the record unchanged. */
QVAPI int QVCALL qvReAllocArray(QvArray* a, int n) QVNOEXCEPT;

/* Changes the size within the capacity; n above the capacity is -3 and changes nothing. An n below 0 is
   stored as it is, and the series counts as empty. */
QVAPI int QVCALL qvReSizeArray(QvArray* a, int n) QVNOEXCEPT;

/* Copies src to dst. An empty dst is allocated with src's capacity (-3 on failure); else as much as
   dst's capacity holds is copied, the items beyond src's size too, and the size becomes the smaller of
   src's size and dst's capacity. firstValid is taken over as it stands. */
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

/* Copies the describing fields and the seven series; an empty dst (without dates) is allocated with
   src.datasize bars (-3 on failure), another gets as many bars as its datasize holds. */
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
   maximum; -1 for a null record. */
QVAPI int QVCALL qvSetFirstValid(QvArray* a, int n) QVNOEXCEPT;

/* Sets the process-wide maximum (to any value) and returns it. Reset it before a run of
   calculations, read it afterwards to learn the first bar at which all their outputs are valid. */
QVAPI int QVCALL qvSetMaxFirstValid(int n) QVNOEXCEPT;
QVAPI int QVCALL qvGetMaxFirstValid(void) QVNOEXCEPT;

/* ---- Error texts ----------------------------------------------------------------------------- */

/* Copies the text of an error code into buf (at least 17 characters) and returns its length. Codes
   above 0 and below -10 are described as "Unknown"; that of 0 is spelt "Sucessfull". -1 for a null buf. */
QVAPI int QVCALL qvErrDesc(int code, char* buf) QVNOEXCEPT;

/* Shows the description of code, a blank and text (cut to fit 1,023 characters in all) in a message
   box captioned "Error"; where the platform has none, on standard error. Returns the message box's
   result, 1 where there is none. */
QVAPI int QVCALL qvErrMessageBox(int code, const char* text) QVNOEXCEPT;

QV_END_DECLS

/* The array utilities and the per-bar price formulas stand in a header of their own. */
#include "qvlib60/core/arrays.h"

#endif
