/* Ends the program with the text of a result that is an error. */
#ifndef STOP_ON_ERROR_H
#define STOP_ON_ERROR_H

#include <stdio.h>
#include <stdlib.h>

#include "qvlib60.h"

static void stopOnError(int status, const char* what) {
  char text[32];
  if (status >= 0) return;
  qvErrDesc(status, text);
  fprintf(stderr, "%s: %s\n", what, text);
  exit(EXIT_FAILURE);
}

#endif
