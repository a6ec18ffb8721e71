// The model of one problem in flat arrays: columns, rows, the matrix as
// triplets (cheap to append by rows or by columns, compacted on demand),
// names, the quadratic objective, quadratic parts of rows, special ordered
// sets, indicator constraints and several linear objectives.
#pragma once
#include <algorithm>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "model/formulas.h"
#include "model/large_array.h"

namespace zorvan {

// Names of one kind of entity (rows, columns or sets). An empty name means
// "unnamed"; readers show a generated name instead. The texts lie one after
// another in one pool, each entry holding its text's place and length (8
// bytes an entry instead of a string object of 32); renaming leaves the old
// text behind, and the pool is compacted once such texts fill half of it.
class Names {
 public:
  explicit Names(char prefix) : prefix_(prefix) {}
  // New entries are unnamed, so the name index stays valid.
  void append_unnamed(size_t n) { refs_.resize(refs_.size() + n, 0); }
  void reserve_more(size_t n) { refs_.reserve(refs_.size() + n); }
  // Keeps a built index up to date, so that naming entries one by one while
  // looking names up stays linear.
  void set(size_t i, std::string_view name);
  // The name of entry i, generated ("C12") when it has none.
  std::string get(size_t i) const;
  // Lowest index carrying that name (generated names included), or -1.
  int find(const std::string &name) const;
  // Keeps the entries whose keep flag is set.
  void keep_only(const std::vector<char> &keep);
  size_t size() const { return refs_.size(); }
  void clear() { refs_.clear(), pool_.clear(), unused_ = 0, index_.clear(), indexed_ = false; }

 private:
  static constexpr int kLengthBits = 11;  // names have at most 1024 characters
  static size_t length_of(uint64_t ref) { return ref & ((uint64_t{1} << kLengthBits) - 1); }
  std::string_view text(size_t i) const {
    uint64_t ref = refs_[i];
    return {pool_.data() + (ref >> kLengthBits), length_of(ref)};
  }
  void compact();

  char prefix_;
  std::vector<uint64_t> refs_;  // place in pool_ << kLengthBits | length; 0: unnamed
  std::string pool_;
  size_t unused_ = 0;  // characters of the pool that no entry refers to
  mutable std::unordered_map<std::string, int> index_;  // built on demand
  mutable bool indexed_ = false;
};

// One linear objective: coefficients by column, a constant, and the controls
// that order and blend several objectives.
struct Objective {
  std::vector<double> coef;
  double constant = 0.0;  // also the objective control "rhs"
  int priority = 0;
  double weight = 1.0;
  double abstol = 1e-6;
  double reltol = 1e-6;
};

// Grows v for `extra` more elements, at least doubling its capacity, so that
// appending in many batches stays linear.
template <class V>
void reserve_more(V &v, size_t extra) {
  size_t need = v.size() + extra;
  if (need > v.capacity()) v.reserve(std::max(need, 2 * v.capacity()));
}

// A column-pair key (i <= j) of a symmetric quadratic form.
using QKey = std::pair<int, int>;
using QForm = std::map<QKey, double>;
inline QKey qkey(int i, int j) { return i <= j ? QKey{i, j} : QKey{j, i}; }

// A matrix in compressed form: entries start[k] .. start[k+1]-1 belong to
// the k-th line (column or row).
struct Compressed {
  std::vector<int64_t> start;
  std::vector<int> index;
  std::vector<double> value;
};

struct Model {
  Model();

  std::string name = "noname";
  double objsense = 1.0;  // 1 minimise, -1 maximise

  // Columns.
  std::vector<double> lb, ub;
  std::vector<double> limit;  // thresholds of 'S', 'R' and 'P' columns
  std::vector<char> coltype;  // 'C','B','I','S','R','P'
  Names colnames{'C'};

  // Rows: rhs - range <= activity <= rhs for 'R' rows.
  std::vector<char> rowtype;  // 'L','G','E','R','N'
  std::vector<double> rhs, range;
  Names rownames{'R'};

  // Matrix entries as triplets; no two share a (row, column) and none is 0.
  LargeArray<int> mrow, mcol;
  LargeArray<double> mval;

  // Objectives; objectives[0] is the primary one. Objective value:
  // coef.x + constant (+ 0.5 x'Qx for the primary objective).
  std::vector<Objective> objectives;
  QForm qobj;  // Q[i][j] = Q[j][i] for the key (i, j)

  // Quadratic parts of rows: row value = a.x + x'Qx.
  std::map<int, QForm> qrows;

  // Special ordered sets: type '1' or '2', members setcol[setstart[k] ..
  // setstart[k+1]-1] ordered by their reference values setref.
  std::vector<char> settype;
  std::vector<int64_t> setstart{0};
  std::vector<int> setcol;
  std::vector<double> setref;
  Names setnames{'S'};

  // Indicator constraints by row: column (-1: none) and 1 when the row is
  // enforced at column value 1, -1 when at value 0.
  std::vector<int> indcol, indflag;

  // A simplex basis (ZRVS_BASIS_* statuses by column and by row) that the
  // next LP solve starts from: the basis of the last LP solve or one loaded
  // by the user. Columns and rows appended since keep no entry; deleting
  // columns or rows drops the basis.
  std::vector<int> basis_col, basis_row;

  // Nonlinear formula terms of rows and the user functions they call.
  FormulaStore formulas;

  int cols() const { return static_cast<int>(lb.size()); }
  int rows() const { return static_cast<int>(rowtype.size()); }
  int sets() const { return static_cast<int>(settype.size()); }
  int64_t elems() const { return static_cast<int64_t>(mval.size()); }
  int mipents() const;
  int indicators() const;
  int64_t qcelems() const;
  bool has_discrete() const { return mipents() > 0 || sets() > 0 || indicators() > 0; }

  // The matrix by columns (index = row) or by rows (index = column), each
  // line's entries in the order they were added.
  Compressed by_columns() const;
  Compressed by_rows() const;

  // Room for that many more rows, columns and matrix entries.
  void reserve(size_t rows, size_t cols, size_t entries);
  // Appends columns or rows (bounds and types defaulted; names unnamed).
  void append_columns(int n);
  void append_rows(int n);
  // Deletes the flagged entities and renumbers everything that refers to
  // the remaining ones. Sets lose deleted members; indicators on deleted
  // columns are dropped; formula terms of deleted rows are dropped, and
  // deleting a column that a formula uses is refused (before any change).
  void delete_columns(const std::vector<char> &del);
  void delete_rows(const std::vector<char> &del);
  void delete_sets(const std::vector<char> &del);

  // Appends the matrix entries of n lines numbered from `first`: columns
  // when by_column (ind holds rows), else rows (ind holds columns). Line j
  // holds entries range(j) = [begin, end) of ind and val. Zeros are left
  // out. The caller has checked that indices are valid and that no line
  // repeats one, so no (row, column) pair repeats.
  template <class Range>
  void append_entries(bool by_column, int first, int n, Range range, const int *ind,
                      const double *val);

  // The changes of the C interface, each checked completely before the
  // model changes, so that a refused call changes nothing. `who` names the
  // entry point in error texts. Arrays may be NULL where the interface
  // says so.
  void add_columns(int n, int64_t ncoefs, const double *obj, const int64_t *start,
                   const int *rowind, const double *rowcoef, const double *lb,
                   const double *ub, const char *who);
  void add_rows(int n, int64_t ncoefs, const char *type, const double *rhs, const double *rng,
                const int64_t *start, const int *colind, const double *rowcoef, const char *who);
  void change_bounds(int n, const int *colind, const char *bndtype, const double *bndval,
                     const char *who);
  void change_column_types(int n, const int *colind, const char *type, const char *who);
  void change_rhs(int n, const int *rowind, const double *value, const char *who);
  void change_ranges(int n, const int *rowind, const double *value, const char *who);
  void change_row_types(int n, const int *rowind, const char *type, const char *who);
  void change_limits(int n, const int *colind, const double *value, const char *who);
  void add_row_quadratic(int row, int64_t n, const int *col1, const int *col2,
                         const double *coef, const char *who);
  void add_sets(int n, int64_t nelems, const char *type, const int64_t *start,
                const int *colind, const double *refval, const char *who);
  void set_indicators(int n, const int *rowind, const int *colind, const int *complement,
                      const char *who);
  // Sets coefficients of objective objidx (column -1: the constant); objidx
  // equal to the number of objectives adds one.
  void change_objective(int objidx, int n, const int *colind, const double *coef,
                        const char *who);
  void change_quadratic_objective(int64_t n, const int *col1, const int *col2,
                                  const double *coef, const char *who);
  void delete_objective(int objidx, const char *who);
  void set_sense(int sense, const char *who);
  // Objective objidx; throws for an index that names none.
  Objective &objective(int objidx, const char *who);
  // Names of one kind: 1 rows, 2 columns, 3 sets; *count gets their number.
  Names &names_of(int type, int *count, const char *who);
  // Names of entries first..last from a packed buffer; all are checked first.
  void add_names(int type, const char *names, int first, int last, const char *who);

  // A column that can only take 0 or 1: type 'B', or 'I' with bounds in [0, 1].
  bool is_binary(int c) const;
};

// "R rows, C columns, N nonzeros": the size of a model in log messages.
std::string size_text(const Model &m);

// The names of entries first..last of one kind (as Model::names_of), each
// followed by a NUL; unnamed entries read as generated names.
std::string packed_names(Model &m, int type, int first, int last, const char *who);

template <class Range>
void Model::append_entries(bool by_column, int first, int n, Range range, const int *ind,
                           const double *val) {
  int64_t most = 0;
  for (int j = 0; j < n; ++j) most += range(j).second - range(j).first;
  if (most == 0) return;
  // Room first (the only step that may fail); then the entries are written
  // in place and the arrays cut to what was written.
  size_t used = mval.size();
  reserve_more(mrow, most);
  reserve_more(mcol, most);
  reserve_more(mval, most);
  mrow.resize(used + most);
  mcol.resize(used + most);
  mval.resize(used + most);
  int *line = by_column ? mcol.data() : mrow.data();
  int *other = by_column ? mrow.data() : mcol.data();
  double *value = mval.data();
  for (int j = 0; j < n; ++j) {
    auto r = range(j);
    for (int64_t k = r.first; k < r.second; ++k) {
      if (val[k] == 0.0) continue;
      line[used] = first + j;
      other[used] = ind[k];
      value[used++] = val[k];
    }
  }
  mrow.resize(used);
  mcol.resize(used);
  mval.resize(used);
}

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
