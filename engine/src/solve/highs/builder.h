// The model handed to HiGHS: the problem's columns and rows first, in their
// own order, then the columns and rows that reformulations add.
#pragma once
#include <vector>

#include <limits>

#include "interfaces/highs_c_api.h"
#include "model/model.h"
#include "zorvan/zrvs.h"

namespace zorvan {

// HiGHS's infinity (the engine's is ZRVS_PLUSINFINITY).
constexpr double kHighsInf = std::numeric_limits<double>::infinity();

// A matrix by columns in HiGHS's index type.
struct HighsCsc {
  std::vector<HighsInt> start{0}, index;
  std::vector<double> value;
};

struct LpBuilder {
  std::vector<double> cost, col_lower, col_upper;
  std::vector<HighsInt> integrality;  // kHighsVarType...
  std::vector<double> row_lower, row_upper;
  // Entries beyond the problem's matrix (reformulations); repeated (row,
  // column) pairs add up.
  std::vector<int> erow, ecol;
  std::vector<double> eval;

  void reserve(int ncols, int nrows) {
    cost.reserve(ncols), col_lower.reserve(ncols), col_upper.reserve(ncols);
    integrality.reserve(ncols);
    row_lower.reserve(nrows), row_upper.reserve(nrows);
  }
  int cols() const { return static_cast<int>(cost.size()); }
  int rows() const { return static_cast<int>(row_lower.size()); }
  int add_column(double lower, double upper, HighsInt type) {
    cost.push_back(0.0), col_lower.push_back(lower), col_upper.push_back(upper);
    integrality.push_back(type);
    return cols() - 1;
  }
  int add_row(double lower, double upper) {
    row_lower.push_back(lower), row_upper.push_back(upper);
    return rows() - 1;
  }
  void add_entry(int row, int col, double value) {
    erow.push_back(row), ecol.push_back(col), eval.push_back(value);
  }
};

// The matrix of m and the extra entries of lp by columns, repeated entries
// merged.
HighsCsc highs_matrix(const Model &m, const LpBuilder &lp);

// How the problem is solved: its continuous relaxation, or with every
// discrete part enforced.
enum class SolveMode { relaxation, mip };

struct HighsBuild {
  LpBuilder lp;
  HighsCsc hessian;  // lower triangle by columns; empty without a quadratic objective
  double sense = 1.0;  // 1 minimise, -1 maximise
  int ncols = 0, nrows = 0;  // the problem's own columns and rows
};

// Column j (or row i) as HiGHS takes it: bounds in HiGHS's infinity and the
// type; semi-continuous parts and indicator rows of the relaxation
// loosened. A column HiGHS cannot take throws, naming it.
struct HighsColumn {
  double lower, upper;
  HighsInt type;
};
struct HighsRow {
  double lower, upper;
};
HighsColumn highs_column(const Model &m, int j, SolveMode mode, const char *who);
HighsRow highs_row(const Model &m, int i, SolveMode mode);

// Builds the model for HiGHS. Throws zorvan::Error for what cannot be solved
// exactly (infinite bounds needed for a reformulation, quadratic rows, ...).
HighsBuild build_for_highs(const Model &m, SolveMode mode, const char *who);

// Reformulations of discrete parts into binaries and big-M rows.
void reformulate_sets(const Model &m, LpBuilder &lp, const char *who);
void reformulate_indicators(const Model &m, LpBuilder &lp, const char *who);
void reformulate_partial_integers(const Model &m, LpBuilder &lp, const char *who);
void reformulate_general_constraints(const Model &m, LpBuilder &lp, const char *who);
void reformulate_piecewise_constraints(const Model &m, LpBuilder &lp, const char *who);

// Finite bounds of column j as a reformulation needs them (0 included for
// semi-continuous columns); throws naming the column and `need` when the
// requested side is infinite.
double finite_lower(const Model &m, int j, const char *need, const char *who);
double finite_upper(const Model &m, int j, const char *need, const char *who);

inline bool is_infinite(double v) { return v >= ZRVS_PLUSINFINITY || v <= -ZRVS_PLUSINFINITY; }

}  // namespace zorvan
