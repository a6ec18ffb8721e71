// What changed in a model since the solver last took it, for solvers that
// keep their own copy between solves. Values (bounds, costs, right-hand
// sides, types, sense) are compared by the solver itself; this log holds
// what a comparison cannot see: whether lines were appended or deleted, and
// whether anything else changed that makes the copy unusable.
#pragma once
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
    if (c == Change::anything) rebuild_ = true;
    if (c == Change::appended) appended_ = true;
  }
  // Deletions after appends in one log are not replayed: the appended
  // lines were never seen by the solver, so the masks would not fit it.
  void note_deleted(bool columns, const std::vector<char> &mask) {
    noted_ = true;
    if (rebuild_ || appended_) {
      rebuild_ = true;
      deletions_.clear();
      return;
    }
    deletions_.push_back(Deletion{columns, mask});
  }
  void note_basis_loaded() { basis_loaded_ = true; }

  bool rebuild() const { return rebuild_; }
  // Whether any change at all was noted (even one to the same values).
  bool noted() const { return noted_; }
  bool basis_loaded() const { return basis_loaded_; }
  const std::vector<Deletion> &deletions() const { return deletions_; }

  // Called by the solver once it holds the model as it is now.
  void clear() {
    rebuild_ = appended_ = basis_loaded_ = noted_ = false;
    deletions_.clear();
  }

 private:
  bool rebuild_ = true;  // nothing has been handed over yet
  bool appended_ = false;
  bool basis_loaded_ = false;
  bool noted_ = true;
  std::vector<Deletion> deletions_;
};

}  // namespace zorvan
