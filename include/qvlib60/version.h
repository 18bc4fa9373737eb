/* The library's version: the one place where it is written. The build reads the three numbers from here. */
#ifndef QVLIB60_VERSION_H
#define QVLIB60_VERSION_H

#define QVLIB60_VERSION_MAJOR 0
#define QVLIB60_VERSION_MINOR 1
#define QVLIB60_VERSION_PATCH 0

/* The same as a text, "0.1.0". */
#define QVLIB60_VERSION_QUOTE_(x) #x
#define QVLIB60_VERSION_JOIN_(major, minor, patch) \
  QVLIB60_VERSION_QUOTE_(major) "." QVLIB60_VERSION_QUOTE_(minor) "." QVLIB60_VERSION_QUOTE_(patch)
#define QVLIB60_VERSION \
  QVLIB60_VERSION_JOIN_(QVLIB60_VERSION_MAJOR, QVLIB60_VERSION_MINOR, QVLIB60_VERSION_PATCH)

#endif
