/* The public header compiles as C99 and the shared library answers a C caller. */
#include <stdio.h>

#include "qvlib60.h"

static int failures = 0;

static void expect(int condition, const char* what) {
  if (condition) return;
  printf("failed: %s\n", what);
  ++failures;
}

int main(void) {
  QvArray a = {0};
  QvBars bars = {0};
  char text[32];
  int i;

  expect(qvAllocArray(&a, 5) == QV_OK && a.size == 5, "qvAllocArray");
  for (i = 0; i < 5; ++i) qvSetArrayItem(&a, i, i + 1.0);
  expect(qvGetArrayItem(&a, 4) == 5.0, "qvGetArrayItem");
  expect(qvAllocBars(&bars, 3) == QV_OK && bars.barsize == 3, "qvAllocBars");
  expect(qvErrDesc(0, text) == 10, "qvErrDesc");
  qvFreeArray(&a);
  qvFreeBars(&bars);
  expect(a.data == 0 && bars.date.data == 0, "freed records are empty");
  printf("%d failed\n", failures);
  return failures != 0;
}
