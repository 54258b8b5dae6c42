/// \file
/// Slow twin of Divide.
#pragma once

#include "reference/model.h"

namespace reference {

/// Divides pixel by pixel and leaves all three blocks as the operator does. The blocks may be the same.
/// \throws MaskNotComputable as the operator does
/// \throws FillContradictsCondition where the operator's release of the result's mask ends the process
void Divide(Block& dividend, Block& divisor, Block& result);

} // namespace reference
