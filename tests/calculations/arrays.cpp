#include "support/calculations.h"

namespace qvtest {

static const Register rows({
    calculation("qvScaleArray", qvScaleArray, {0, 0, 0, 100, 1}).mayRunInPlace().leavesFirstValid(),
    calculation("qvMultAddArray", qvMultAddArray, {2, 1}).mayRunInPlace().leavesFirstValid(),
    calculation("qvDivide", qvDivide, {100}),
    calculation("qvFillInterval", qvFillInterval, {}).keepsItemsBelowFirstValid(),
});

}  // namespace qvtest
