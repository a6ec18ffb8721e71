// The model of one problem in flat arrays: columns, rows and the matrix
// stored by columns.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

namespace zorvan {

struct Model {
  std::string name = "noname";
  double objsense = 1.0;  // 1 minimise, -1 maximise

  // Columns.
  std::vector<double> obj, lb, ub;
  std::vector<char> coltype;  // 'C','B','I','S','R','P'
  // Matrix by columns: column j holds entries colstart[j] .. colstart[j+1]-1.
  std::vector<int64_t> colstart{0};
  std::vector<int> rowind;
  std::vector<double> coef;

  // Rows.
  std::vector<char> rowtype;  // 'L','G','E','R','N'
  std::vector<double> rhs, range;

  int cols() const { return static_cast<int>(obj.size()); }
  int rows() const { return static_cast<int>(rowtype.size()); }
  int64_t elems() const { return static_cast<int64_t>(coef.size()); }
  int mipents() const;
};

// The arguments of ZRVSloadlp, checked and turned into a Model. Throws
// zorvan::Error naming the offending argument.
struct LpData {
  const char *name;
  int ncols, nrows;
  const char *rowtype;
  const double *rhs, *rng, *obj;
  const int64_t *start64;
  const int *start32;
  const int *collen;
  const int *rowind;
  const double *rowcoef, *lb, *ub;
};
Model build_lp_model(const LpData &data, const char *who);

void check_problem_name(const char *name, const char *who);

}  // namespace zorvan
