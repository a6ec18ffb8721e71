// Scale factors of rows and columns: the scaled problem has entries
// rowscale[i] * a[i][j] * colscale[j], values x[j] / colscale[j] and row
// activities rowscale[i] * a[i].x.
#pragma once
#include <vector>

#include "model/model.h"

namespace zorvan {

struct Scaling {
  std::vector<double> row, col;
};

// Geometric-mean scaling by powers of two (a few alternating passes over
// rows and columns), so that the scaled entries lie near 1.
Scaling geometric_scaling(const Model &m);

}  // namespace zorvan
