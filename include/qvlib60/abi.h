/* Export macro, calling convention and error codes shared by every header of the library. */
#ifndef QVLIB60_ABI_H
#define QVLIB60_ABI_H

#include <stdint.h>

#if defined(_WIN32)
#define QVCALL __stdcall
#ifdef QVLIB60_BUILD
#define QVAPI /* exported, undecorated, through the module definition file */
#else
#define QVAPI __declspec(dllimport)
#endif
#else
#define QVCALL
#define QVAPI __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
#define QVNOEXCEPT noexcept
#define QV_BEGIN_DECLS extern "C" {
#define QV_END_DECLS }
#else
#define QVNOEXCEPT
#define QV_BEGIN_DECLS
#define QV_END_DECLS
#endif

/* Before records that hold pointers: these are packed on 4-byte boundaries on 32-bit platforms and
   naturally aligned on 64-bit ones. The number stands in the pragma itself, for some compilers take a
   macro there for a name and pack nothing. */
#if UINTPTR_MAX > 0xFFFFFFFFu
#define QV_PACK_POINTERS _Pragma("pack(push, 8)")
#else
#define QV_PACK_POINTERS _Pragma("pack(push, 4)")
#endif

/* Results of almost every function; qvErrDesc gives the texts. */
enum {
  QV_OK = 0,
  QV_INVALID_PARM = -1,
  QV_FILE_OPEN = -2,
  QV_MALLOC = -3,
  QV_FILE_READ = -4,
  QV_FILE_WRITE = -5,
  QV_FILE_SEEK = -6,
  QV_FILE_EXISTS = -7,
  QV_FILE_NOT_FOUND = -8,
  QV_RECORD_NOT_FOUND = -9,
  QV_UNKNOWN = -10
};

#endif
