// The array tests and the mapping of functions over arrays that the
// expression tree uses come from the NumPy bridge.
#pragma once

#include "numpy/bridge.h"
