// Solves with the optimal basis matrix B of the last LP solve. B holds, in
// the order of the pivot list, the matrix column of each basic column and
// the unit column e_i of each basic row.
#pragma once
#include <vector>

#include "problem/problem.h"

namespace zorvan {

// The basic rows and columns in the order of B's columns, unified
// numbering (row i as i, column j as rows + j).
std::vector<int> pivot_order(zrvs_problem &p, const char *who);

// vec (one entry per row) replaced by B^-1 vec (ftran) or B^-T vec (btran).
void basis_solve(zrvs_problem &p, double *vec, bool transposed, const char *who);

// An estimate of the condition number of B in the 1-norm: |B|_1 times an
// estimate of |B^-1|_1 (Hager's method, a few solves with B and B').
double basis_condition(zrvs_problem &p, const char *who);

}  // namespace zorvan
