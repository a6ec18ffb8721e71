// What changed in a model since the solver last took it, for solvers that
// keep their own copy between solves. Values (bounds, costs, right-hand
// sides, types, sense) are compared by the solver itself; this log holds
// what a comparison cannot see: whether lines were appended or deleted, and
// whether anything else changed that makes the copy unusable. When the only
// changes are to column bounds, rows (sides, ranges, types), costs of the
// first objective or the sense, it also lists the lines touched, so that a
// re-solve looks at those alone instead of comparing every line.
#pragma once
#include <cstddef>
#include <vector>

namespace zorvan {

enum class Change {
  values,    // bounds, costs, types, right-hand sides, objective sense or controls
  appended,  // columns or rows appended, with their matrix entries
  anything,  // anything else (a new model, sets, indicators, quadratic rows)
};

class ChangeLog {
 public:
  // A deletion of columns (or rows) by a mask over the lines before it.
  struct Deletion {
    bool columns;
    std::vector<char> mask;
  };

  void note(Change c) {
    noted_ = true;
    listed_ = false;
    discrete_known_ = false;
    if (c == Change::anything) rebuild_ = true;
    if (c == Change::appended) appended_ = true;
  }
  // Deletions after appends in one log are not replayed: the appended
  // lines were never seen by the solver, so the masks would not fit it.
  void note_deleted(bool columns, const std::vector<char> &mask) {
    noted_ = true;
    listed_ = false;
    discrete_known_ = false;
    if (rebuild_ || appended_) {
      rebuild_ = true;
      deletions_.clear();
      return;
    }
    deletions_.push_back(Deletion{columns, mask});
  }
  void note_basis_loaded() { basis_loaded_ = true; }

  // Value changes whose lines are known. `lines` is the model's count of
  // such lines: a list that grows past it is dropped (every line is then
  // compared, as after an unlisted change).
  void note_column_bounds(int n, const int *index, int lines) {
    note_listed(columns_, n, index, lines);
  }
  void note_rows(int n, const int *index, int lines) { note_listed(rows_, n, index, lines); }
  // Costs of the first objective; negative indices (the constant) are
  // compared by the solver anyway.
  void note_costs(int n, const int *index, int lines) { note_listed(costs_, n, index, lines); }
  void note_sense() { noted_ = true; }

  bool rebuild() const { return rebuild_; }
  // Whether any change at all was noted (even one to the same values).
  bool noted() const { return noted_; }
  bool basis_loaded() const { return basis_loaded_; }
  const std::vector<Deletion> &deletions() const { return deletions_; }
  // True when every change since the solver took the model is listed
  // below (column bounds, rows, costs, sense): nothing was appended,
  // deleted, retyped or rebuilt.
  bool listed() const { return listed_ && !rebuild_; }
  const std::vector<int> &column_bounds() const { return columns_; }
  const std::vector<int> &rows() const { return rows_; }
  const std::vector<int> &costs() const { return costs_; }

  // Whether the model has discrete parts, as last worked out: listed value
  // changes keep it, anything else forgets it.
  bool discrete_known() const { return discrete_known_; }
  bool discrete() const { return discrete_; }
  void know_discrete(bool discrete) { discrete_known_ = true, discrete_ = discrete; }

  // Called by the solver once it holds the model as it is now.
  void clear() {
    rebuild_ = appended_ = basis_loaded_ = noted_ = false;
    listed_ = true;
    deletions_.clear();
    columns_.clear(), rows_.clear(), costs_.clear();
  }

 private:
  void note_listed(std::vector<int> &list, int n, const int *index, int lines) {
    noted_ = true;
    if (!listed_) return;
    if (list.size() + static_cast<size_t>(n) > static_cast<size_t>(lines)) {
      listed_ = false;
      columns_.clear(), rows_.clear(), costs_.clear();
      return;
    }
    list.insert(list.end(), index, index + n);
  }

  bool rebuild_ = true;  // nothing has been handed over yet
  bool appended_ = false;
  bool basis_loaded_ = false;
  bool noted_ = true;
  bool listed_ = false;
  bool discrete_known_ = false, discrete_ = false;
  std::vector<Deletion> deletions_;
  std::vector<int> columns_, rows_, costs_;
};

}  // namespace zorvan
