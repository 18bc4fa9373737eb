#include "kernels/lanes.h"

namespace qv {

#if QV_WIDE_LOOPS
bool wideLoops = __builtin_cpu_supports("avx2") != 0;
#else
bool wideLoops = false;
#endif

}  // namespace qv
