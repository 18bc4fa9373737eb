/* Dow Jones files: the directory file "mapinfo.dat" lists the securities; the bars of each lie in a file
   named from its symbol, type and period ("IBM.SQD"), in one of ten record formats.

   A security is named by its symbol or its description, without regard to case. The characters
   + < > | = ; \ / of the name given stand for digits in the order they come, the first for 1, the second
   for 2 and so on (after 9 follows 0), as they do in the stored names. A "." may follow with a type
   letter, any character and a period letter (".SQD"); each of the two letters may be a blank or missing
   and then fits every security. The first entry that fits is taken.

   Prices are IEEE singles; series that a record format does not have are 0.

   Results below 0, beside those that a function names: -1 for a null argument, -2 when mapinfo.dat or the
   data file cannot be opened or lies in another directory, -3 when memory is exhausted, -4 when mapinfo.dat
   ends before the security was found or gives it an unknown record format, -8 when there is no such one. */
#ifndef QVLIB60_DATAFILES_DOWJONES_H
#define QVLIB60_DATAFILES_DOWJONES_H

#include "qvlib60/core.h"

QV_BEGIN_DECLS

/* The number, from 0, of the record with this date or the nearest later one, by halving the records that
   mapinfo.dat tells of, in files of either order; *foundDate (may be null) receives its date. -9 when the
   date is before the earliest or after the latest of them; *foundDate then is not written. -4 when a record
   cannot be read. */
QVAPI int QVCALL qvDJfindrec(const char* directory, const char* security, double date,
                             double* foundDate) QVNOEXCEPT;

/* Reads `count` records from record `start` on into a bar set and fills its bar information. A bar set
   without storage is allocated to `count` bars; else no more bars are read than it has room for. A
   negative count reads as many as mapinfo.dat tells of, a negative start the last `count` of these; a
   count beyond reads on as far as the data file goes. The set's size becomes the number of bars read; a
   count of 0 fills only the bar information. -6 when the record cannot be reached, -9 when start is not
   below the number of records. */
QVAPI int QVCALL qvDJread(QvBars* bars, const char* directory, const char* security, int start,
                          int count) QVNOEXCEPT;

/* Lists the securities of mapinfo.dat by their data files. The output is a file name, or "STDOUT" in any
   case for standard output; a file is appended to when `append` is not 0, else overwritten. -2 when it or
   mapinfo.dat cannot be opened, -5 when it cannot be written; -4, after all that could be read was
   listed, when mapinfo.dat ends early. */
QVAPI int QVCALL qvDJlist(const char* directory, const char* output, int append) QVNOEXCEPT;

QV_END_DECLS

#endif
