/* CompuTrac files: a directory of up to 255 securities in the file "master" and more in "xmaster", and
   for each security a data file of single-precision prices in the Microsoft Binary Format (MBF), named
   by its file number: F1.DAT for those of master, F1.MWD for those of xmaster.

   A security is named by its data file, its symbol, its symbol with "@" and the period letter ("IBM@D"),
   or its long name; in master also by the first words of its symbol, as many as the name given has.
   Names are compared without regard to case, and the first security that fits is taken, those of master
   before those of xmaster.

   The fields of a record are for a security of xmaster those that its entry flags; for one of master
   those of the order file (F1.DOP, one field name per line), or without such a file the usual ones of
   its period and number of fields. Fields that are not there, also those that an order file places
   beyond the record's end, read as 0. A data file's header tells its number of records; when that is
   negative, the size of the file does.

   Results below 0, beside those that a function names: -1 for a null argument, -2 when the data file
   cannot be opened, -3 when the memory is exhausted, -4 when the header of a directory or data file
   cannot be read or the size tells of more than 4,194,304 records, -8 when there is no such security. */
#ifndef QVLIB60_DATAFILES_COMPUTRAC_H
#define QVLIB60_DATAFILES_COMPUTRAC_H

#include "qvlib60/core.h"

QV_BEGIN_DECLS

/* ---- Numbers of the Microsoft Binary Format ---------------------------------------------------- */

/* Between an IEEE single and the four bytes of an MBF single; both may be the same four bytes. Zero of
   either sign becomes four zero bytes, and an MBF exponent byte of 0 is zero whatever the rest is.
   Exponents are not checked and wrap: the IEEE numbers from 2^127 on have no MBF form. 0; -1 for a null
   argument. */
QVAPI int QVCALL qvIEEEtoMS(const float* ieee, unsigned char* ms) QVNOEXCEPT;
QVAPI int QVCALL qvMStoIEEE(const unsigned char* ms, float* ieee) QVNOEXCEPT;

/* ---- Finding and reading ------------------------------------------------------------------------ */

/* The number, from 0, of the record with this date or the nearest later one, by halving, in files of
   either order; *foundDate (may be null) receives its date. The time of day counts for securities that have
   one, else only the day does. -9 when the date is before the earliest or after the latest record; *foundDate
   then is not written. -4 when a record cannot be read. */
QVAPI int QVCALL qvCTfindrec(const char* directory, const char* security, double date,
                             double* foundDate) QVNOEXCEPT;

/* Reads `count` records from record `start` on into a bar set and fills its bar information. A bar set
   without storage is allocated to `count` bars; else no more bars are read than it has room for. A
   negative count reads to the end, a negative start the last `count` records. The set's size becomes
   the number of bars read; a count of 0 fills only the bar information. -9 when start is not below the
   number of records. */
QVAPI int QVCALL qvCTread(QvBars* bars, const char* directory, const char* security, int start,
                          int count) QVNOEXCEPT;

/* Reads one field of the same records into a series, which is sized as a bar set is: "dt" (the date with
   the time of day), "op", "hi", "lo", "cl", "vol" or "oi", in any case; -1 for another field. */
QVAPI int QVCALL qvCTreadarray(QvArray* array, const char* directory, const char* security, const char* field,
                               int start, int count) QVNOEXCEPT;

/* Lists the securities of master, then those of xmaster; none where neither file exists. The output is a
   file name, or "STDOUT" in any case for standard output; a file is appended to when `append` is not 0,
   else overwritten. -2 when it cannot be opened, -5 when it cannot be written; -4, after all that could
   be read was listed, for a directory file without a header. */
QVAPI int QVCALL qvCTlist(const char* directory, const char* output, int append) QVNOEXCEPT;

QV_END_DECLS

#endif
