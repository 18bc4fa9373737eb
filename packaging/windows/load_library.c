/* Loads the DLL by name as a Windows program does, finds every exported function, and calls one.
   usage: load_library LIST      where LIST holds the names, one a line */
#include <stdio.h>
#include <string.h>
#include <windows.h>

#include "qvlib60/core.h"

typedef int(__stdcall* Average)(const QvArray*, QvArray*, int, int);

static FARPROC find(HMODULE library, const char* name) {
  FARPROC function = GetProcAddress(library, name);
  if (!function) printf("missing: %s\n", name);
  return function;
}

int main(int argc, char** argv) {
  double prices[] = {1.0, 2.0, 6.0}, room[3];
  QvArray in = {prices, 3, 3, 0}, out = {room, 3, 3, 0};
  char name[128];
  int found = 0, missing = 0;
  Average average;
  FILE* list = argc > 1 ? fopen(argv[1], "r") : NULL;
  HMODULE library = LoadLibraryA("QVLIB60.dll");

  if (!library || !list) return printf("no library or no list\n"), 1;
  while (fgets(name, sizeof name, list)) {
    name[strcspn(name, "\r\n")] = 0;
    find(library, name) ? ++found : ++missing;
  }
  fclose(list);
  average = (Average)(void*)find(library, "qvSimpleMA");
  if (missing || !average || average(&in, &out, 3, 0) != QV_OK || room[2] != 3.0) return printf("failed\n"), 1;
  printf("%d functions found\n", found);
  return 0;
}
