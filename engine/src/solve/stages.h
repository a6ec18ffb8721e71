// Several objectives are solved in stages, one per priority level (highest
// first); objectives of one level are blended by weight.
#pragma once
#include <vector>

#include "model/model.h"

namespace zorvan {

struct Stage {
  std::vector<int> objectives;  // indices into Model::objectives
  std::vector<double> cost;     // blended coefficients by column
  double constant = 0.0;
  double abstol = 0.0, reltol = 0.0;  // largest of its objectives
};

std::vector<Stage> objective_stages(const Model &m);

}  // namespace zorvan
