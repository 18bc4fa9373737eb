/* TeleChart files: one file per security, with the extension .NDX, which is appended to a name without
   a ".". It holds the description, then records of date, high, low, close, volume and open in
   single-precision numbers of the Microsoft Binary Format.

   Results below 0, beside those that a function names: -1 for a null argument, -2 when the file cannot be
   opened, -3 when memory is exhausted, -4 without a header, also for more than 4,194,304 records. */
#ifndef QVLIB60_DATAFILES_TELECHART_H
#define QVLIB60_DATAFILES_TELECHART_H

#include "qvlib60/core.h"

QV_BEGIN_DECLS

/* The number, from 0, of the record with this date or the nearest later one, by halving, in files of
   either order; *foundDate (may be null) receives its date. -9 when the date is before the earliest or
   after the latest record; *foundDate then is not written. -4 when a record cannot be read. */
QVAPI int QVCALL qvTCfindrec(const char* directory, const char* fileName, double date,
                             double* foundDate) QVNOEXCEPT;

/* Reads `count` records from record `start` on into a bar set and fills its bar information: symbol is
   the file name up to its first ".", the frequency comes from the number of records per calendar day, and the
   begin date is that of the first bar read. A bar set without storage is allocated to `count` bars; else no
   more bars are read than it has room for. A negative count reads to the end, a negative start the last
   `count` records. The set's size becomes the number of bars read; a count of 0 fills only the bar
   information. The open interest, which the files do not have, stays as it is: 0.0 in a new set. -9 when
   start is not below the number of records. */
QVAPI int QVCALL qvTCread(QvBars* bars, const char* directory, const char* fileName, int start,
                          int count) QVNOEXCEPT;

/* Lists the directory's files *.NDX in name order; of those that cannot be read, the name. The output is
   a file name, or "STDOUT" in any case for standard output; a file is appended to when `append` is not 0,
   else overwritten. -2 when it cannot be opened, -5 when it cannot be written. */
QVAPI int QVCALL qvTClist(const char* directory, const char* output, int append) QVNOEXCEPT;

QV_END_DECLS

#endif
