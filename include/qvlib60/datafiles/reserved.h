/* CSI, FutureSource and AIQ files: formats with a code and functions of their own, but without a
   reader. Finders and readers answer -10 and touch nothing. The listers write the header lines of a
   listing and return 0; -1 for a null argument, -2 when the output cannot be opened, -5 when it cannot
   be written. */
#ifndef QVLIB60_DATAFILES_RESERVED_H
#define QVLIB60_DATAFILES_RESERVED_H

#include "qvlib60/core.h"

QV_BEGIN_DECLS

QVAPI int QVCALL qvCSIfindrec(const char* directory, const char* fileName, double date,
                              double* foundDate) QVNOEXCEPT;
QVAPI int QVCALL qvCSIlist(const char* directory, const char* output, int append) QVNOEXCEPT;
QVAPI int QVCALL qvCSIread(QvBars* bars, const char* directory, const char* fileName, int start,
                           int count) QVNOEXCEPT;

QVAPI int QVCALL qvFSfindrec(const char* directory, const char* fileName, double date,
                             double* foundDate) QVNOEXCEPT;
QVAPI int QVCALL qvFSlist(const char* directory, const char* output, int append) QVNOEXCEPT;
QVAPI int QVCALL qvFSread(QvBars* bars, const char* directory, const char* fileName, int start,
                          int count) QVNOEXCEPT;

QVAPI int QVCALL qvAIQfindrec(const char* directory, const char* fileName, double date,
                              double* foundDate) QVNOEXCEPT;
QVAPI int QVCALL qvAIQlist(const char* directory, const char* output, int append) QVNOEXCEPT;
QVAPI int QVCALL qvAIQread(QvBars* bars, const char* directory, const char* fileName, int start,
                           int count) QVNOEXCEPT;

QV_END_DECLS

#endif
