/* Begins the packing of records that hold pointers: on 4-byte boundaries on 32-bit platforms,
   natural alignment on 64-bit ones. The header that includes this ends it with
   "#pragma pack(pop)". A header of its own, without an include guard, because compilers need not
   expand macros in the pragma: with a macro for the number some push without packing. */
#if UINTPTR_MAX > 0xFFFFFFFFu
#pragma pack(push, 8)
#else
#pragma pack(push, 4)
#endif
