// The header of Tulip Indicators, whose name (indicators.h) says less.
#pragma once

#include <indicators.h>
