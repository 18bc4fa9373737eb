/* What every header of the library shares: export macro, calling convention, packing, and the names of the
   codes. */
#ifndef QVLIB60_ABI_H
#define QVLIB60_ABI_H

#include <stdint.h>

#include "qvlib60/codes.h"

#if defined(_WIN32)
#define QVCALL __stdcall
#ifdef QVLIB60_BUILD
#define QVAPI /* exported, undecorated, through the module definition file */
#elif defined(QVLIB60_STATIC)
#define QVAPI /* the caller links the static library */
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

#endif
