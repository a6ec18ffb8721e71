// Values of a model at a given point: objective values, row activities,
// slacks and reduced costs. Quadratic parts are included.
#pragma once
#include <vector>

#include "model/model.h"

namespace zorvan {

// Objective k at x: coef.x + constant (+ 0.5 x'Qx for objective 0).
double objective_value(const Model &m, int k, const double *x);

// Row activities a.x (+ x'Qx for quadratic rows).
std::vector<double> row_activities(const Model &m, const double *x);

// Slacks rhs - activity, one per row.
std::vector<double> row_slacks(const Model &m, const double *x);

// Reduced costs c - A'y of objective 0 (its gradient Qx + c when it is
// quadratic, so x may be NULL only without a quadratic objective).
std::vector<double> reduced_costs(const Model &m, const double *duals, const double *x);

// The two sides of row i (infinite sides as +-ZRVS_PLUSINFINITY).
void row_sides(const Model &m, int i, double *lower, double *upper);

}  // namespace zorvan
