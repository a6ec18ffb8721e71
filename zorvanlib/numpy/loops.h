// Element-wise loops of NumPy's ufuncs for the module's data types.
#pragma once

namespace zrv {

// Registers the loops of the arithmetic and comparison ufuncs and of
// matmul; 0 or -1 with an error.
int RegisterLoops();

}  // namespace zrv
