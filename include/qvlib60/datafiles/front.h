/* The front of the data files: a file format named by a short text, and one function each to find a
   record, list a directory, read bars and print their description.

   Type texts, in any case: "CSI", "CT" (CompuTrac), "DJ" (Dow Jones), "FS" (FutureSource), "TC"
   (TeleChart), "TT" (TechTools), "AIQ", or a number from 1 to 8 in front (1 CSI, 2 CT, 3 DJ, 4 FS, 5 TC,
   6 TT, 7 text, 8 AIQ). Everything else is a text file: "TXT" and "7" read its layout from
   "txtinfo.txt" in the directory, and any other text is itself the name of the layout file.
   A format that the library does not read answers -10. Results below 0 are those of the format's own
   functions, for text files also those of qvTXTreadinfo; -1 for a null argument. */
#ifndef QVLIB60_DATAFILES_FRONT_H
#define QVLIB60_DATAFILES_FRONT_H

#include "qvlib60/core.h"

QV_BEGIN_DECLS

/* The code of a type text, QV_FILETYPE_CSI (1) to QV_FILETYPE_AIQ (8). */
QVAPI int QVCALL qvFILEtype(const char* type) QVNOEXCEPT;

/* The number, from 0, of the record with this date or the nearest later one. *foundDate (may be null)
   receives the date found, or 0 when there is none. */
QVAPI int QVCALL qvFILEfindrec(const char* type, const char* directory, const char* fileName, double date,
                               double* foundDate) QVNOEXCEPT;

/* Lists the directory's files of the type. The output is a file name or "STDOUT" in any case; a file is
   appended to when `append` is not 0, else overwritten. */
QVAPI int QVCALL qvFILElist(const char* type, const char* directory, const char* output,
                            int append) QVNOEXCEPT;

/* Reads at most `count` records from record `start` on into a bar set, which is allocated when it has no
   storage, and fills its bar information. A negative count reads to the end, a negative start the last
   `count` records (text files that are newest first: see qvTXTread). -9 when start is not below the
   number of records. */
QVAPI int QVCALL qvFILEread(const char* type, QvBars* bars, const char* directory, const char* fileName,
                            int start, int count) QVNOEXCEPT;

/* Prints the bar information, one "label value" per line; empty security numbers, dates, option types
   and strike prices are left out. The output as for qvFILElist. -2 when it cannot be opened, -5 when it
   cannot be written. */
QVAPI int QVCALL qvFILEprintinfo(const QvBars* bars, const char* output, int append) QVNOEXCEPT;

QV_END_DECLS

#endif
