// Which block holds the items of which node.
#pragma once

#include "formula/nodes.h"

namespace qv::formula {

// Gives every node that has items of its own a slot of its context, and the context their number. A slot is
// free for others from the last node that reads it on; the root has the result itself. False when memory
// runs out.
bool assignSlots(QvFormula& f) noexcept;

}  // namespace qv::formula
