/* TechTools files: one file per security, with the extension .TTD, which is appended to a name without
   a ".". It holds a price-format code, then records of date, open, high, low, close, volume and open
   interest; prices are 16-bit numbers, and with the code

     0       the number v itself             10         v * 10
     1 to 5  v / 10 to v / 100000            -11 to -19 v / 2, v / 4 ... v / 512
     -22     v * 0.05                        -32        v / 200
     -24     v * 0.025                       -34        v / 400
     -25     v * 0.02                        -35        v / 500

     -1 to -3  the last digit of v counts halves, quarters, eighths, the digits before it wholes
     -4 to -6  the last two digits count 16ths, 32nds, 64ths
     -7 to -9  the last three digits count 128ths, 256ths, 512ths

   Any other code gives prices of 0. With code 2, files whose names begin with FC_, LC_, LH_ or PB_ (in any
   case) hold half ticks: a number that is no multiple of 5 gets 0.005 (as a single-precision number) more.

   Results below 0, beside those that a function names: -1 for a null argument, -2 when the file cannot be
   opened, -3 when memory is exhausted, -4 for more than 4,194,304 records or no price-format code. */
#ifndef QVLIB60_DATAFILES_TECHTOOLS_H
#define QVLIB60_DATAFILES_TECHTOOLS_H

#include "qvlib60/core.h"

QV_BEGIN_DECLS

/* The number, from 0, of the record with this date or the nearest later one, by halving, in files of
   either order; *foundDate (may be null) receives its date. -9 when the date is before the earliest or
   after the latest record; *foundDate then is not written. -4 when a record cannot be read. */
QVAPI int QVCALL qvTTfindrec(const char* directory, const char* fileName, double date,
                             double* foundDate) QVNOEXCEPT;

/* Reads `count` records from record `start` on into a bar set and fills its bar information: symbol and
   description are the file name up to its first ".", the frequency comes from the number of records per
   calendar day. A bar set without storage is allocated to `count` bars; else no more bars are read than it
   has room for. A negative count reads to the end, a negative start the last `count` records. The set's size
   becomes the number of bars read; a count of 0 fills only the bar information. -6 when the record cannot be
   reached, -9 when start is not below the number of records. */
QVAPI int QVCALL qvTTread(QvBars* bars, const char* directory, const char* fileName, int start,
                          int count) QVNOEXCEPT;

/* Lists the directory's files *.TTD in name order; of those that cannot be read, the name. The output is
   a file name, or "STDOUT" in any case for standard output; a file is appended to when `append` is not 0,
   else overwritten. -2 when it cannot be opened, -5 when it cannot be written. */
QVAPI int QVCALL qvTTlist(const char* directory, const char* output, int append) QVNOEXCEPT;

QV_END_DECLS

#endif
