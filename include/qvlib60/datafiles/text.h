/* Text files: price histories of one bar per line and one value per column, read through a layout
   record that says which column holds what.

   Lines have at most 254 characters, newline included; longer ones are read in pieces, each of which
   counts as a line. The first `skip` lines are headers. A line that begins with its newline is no
   record; every other line is one, and records are numbered from 0. Columns are the runs of
   characters between delimiters: several delimiters in a row count as one, so no column is empty.
   Leading blanks (also tabs) of a line are ignored, as are carriage returns at the end of a line, on
   every system; a character 26 ends the file. A column that a line does not have gives no value.
   Dates may run oldest first or newest first.

   Directory and file name are joined to one path: blanks around both are dropped, a separator is put
   between them where the directory needs one, and the path is cut to 255 characters. A file name that
   does not exist exactly is looked up without regard to case.

   Results below 0, beside those that a function names: -1 for a null argument, -2 when the file cannot
   be opened (a directory cannot), -3 when the memory is exhausted, -4 when reading fails half-way. */
#ifndef QVLIB60_DATAFILES_TEXT_H
#define QVLIB60_DATAFILES_TEXT_H

#include "qvlib60/core.h"

QV_BEGIN_DECLS

#pragma pack(push, 4)

/* Columns are numbered from 1; 0 (or less) means that there is none. */
typedef struct QvTxtInfo {
  int32_t dateColumn;
  int32_t timeColumn; /* time of day; ignored when it is the date column */
  int32_t openColumn;
  int32_t highColumn;
  int32_t lowColumn;
  int32_t closeColumn;
  int32_t volumeColumn;
  int32_t openInterestColumn;
  int32_t dateFormat;  /* order of the date's parts: QV_DATE_YMD 0, QV_DATE_MDY 1, QV_DATE_DMY 2 */
  int32_t skip;        /* header lines at the top of each data file */
  char delimiters[16]; /* the characters that separate columns; ends at a zero or with the field */
} QvTxtInfo;

#pragma pack(pop)

/* ---- The layout file ------------------------------------------------------------------------- */

/* Reads a layout file: one "key = value" per line, of at most 79 characters, keys in any case:
     dt ti op hi lo cl vol oi   the columns          skip       the number of header lines
     dtformat   YMD, MDY, DMY, or N/A (as YMD); also YY_MM_DD, CCYY_MM_DD, YYMMDD, CCYYMMDD and the
                same in the other two orders
     delimit    the delimiters: \t is a tab, _ a blank, every other character itself; of the value the
                first 16 characters count
   Unknown keys are ignored. A setting that is missing is 0, the delimiters then are one blank; a second
   delimit line overwrites the first from its beginning and leaves its tail. The last character of a
   value is taken for its newline: a last line without one loses it.
   -2 when the file cannot be opened, and then the record stays as it was. */
QVAPI int QVCALL qvTXTreadinfo(const char* directory, const char* fileName, QvTxtInfo* info) QVNOEXCEPT;

/* Writes a layout file that reads back to the same record (but for delimiters that none can name: "_",
   a newline, a backslash before a "t"). -2 when it cannot be created, -5 when it cannot be written. */
QVAPI int QVCALL qvTXTwriteinfo(const char* directory, const char* fileName,
                                const QvTxtInfo* info) QVNOEXCEPT;

/* ---- Finding and reading --------------------------------------------------------------------- */

/* The number of the record with this date or, when there is none, of the record with the nearest later
   date, in files of either order; *foundDate (may be null) receives its date. -9 when the date is before
   the earliest or after the latest record; *foundDate then is not written. */
QVAPI int QVCALL qvTXTfindrec(const char* directory, const char* fileName, const QvTxtInfo* info, double date,
                              double* foundDate) QVNOEXCEPT;

/* Reads `count` records from record `start` on into a bar set, oldest first, and fills its
   bar information. A bar set without storage is allocated to `count` bars; else no more bars are read
   than it has room for. Texts that are no date or number give 0.
   Oldest first in the file: a negative count reads to the end, a negative start the last `count`
   records; the set's size becomes the number of bars read.
   Newest first in the file, or no two different dates: start 0 or below 0 reads the oldest `count`
   records (start 0) or the newest (below 0), a start above 0 the `count` records that end with record
   `start` (the first `count` of the file when it has fewer before that); a negative count means start + 1
   records, the oldest ones, or all for a start of 0 or less. Bars are stored from slot count - 1 downwards,
   other slots keep what they held, and the set's size is left as it was: hand in an empty bar set, or one of
   the size that is read. Without two different dates every record goes to slot count - 1 and the last one
   stays. The order is found from the records numbered skip - 1 and later; texts that are no date do not
   count. A count of 0 fills the bar information of a set of no bars. -9 when start is not below the number of
   records; the bar set then stays as it was. */
QVAPI int QVCALL qvTXTread(QvBars* bars, const char* directory, const char* fileName, const QvTxtInfo* info,
                           int start, int count) QVNOEXCEPT;

/* Reads one column of numbers into a series: `count` lines from line `start` on, lines of nothing but
   blanks left out; a line without that column gives 0.0. The total includes the `skip` header lines,
   and so does `start` when it is at least `skip`; below that it counts from the first line after the
   headers. A negative count reads to the end; a negative start reads the last `count` - `skip` lines, for
   it is reckoned from the total and the headers are passed over again. A
   series without storage is allocated to `count` items; else no more are read than it has room for.
   The size becomes the number of items read. A count of 0 does nothing. */
QVAPI int QVCALL qvTXTreadarray(QvArray* array, const char* directory, const char* fileName,
                                const char* delimiters, int skip, int column, int start,
                                int count) QVNOEXCEPT;

/* ---- Writing --------------------------------------------------------------------------------- */

/* The output is a file name, used as given, or "STDOUT" in any case for standard output. A file is
   appended to when `append` is not 0, else overwritten. -2 when it cannot be opened, -5 when it cannot
   be written. */

/* Lists the directory's files *.ASC, *.CSV, *.PRN and *.TXT except txtinfo.txt, with the date of their
   last modification as last date. */
QVAPI int QVCALL qvTXTlist(const char* directory, const char* output, int append) QVNOEXCEPT;

/* Writes the text, and the text followed by a newline. */
QVAPI int QVCALL qvTXTwrite(const char* text, const char* output, int append) QVNOEXCEPT;
QVAPI int QVCALL qvTXTwriteline(const char* text, const char* output, int append) QVNOEXCEPT;

QV_END_DECLS

#endif
