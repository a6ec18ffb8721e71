// What a problem keeps for the engine's own branch-and-cut: the cut pool,
// delayed rows and model cuts, branchings and cuts for the root of the next
// search, stored bound sets, and, while a search runs its node callbacks,
// the node they act on.
#pragma once
#include <memory>
#include <vector>

#include "problem/branch_object.h"
#include "problem/cut_pool.h"

namespace zorvan {

// The node that node callbacks act on; implemented by the search.
class NodeAccess {
 public:
  virtual ~NodeAccess() = default;
  // Loads cuts into the node and the nodes below it.
  virtual void load_cuts(const std::vector<CutPtr> &cuts) = 0;
  // Cuts loaded at the node (and inherited from its parents).
  virtual std::vector<CutPtr> node_cuts() const = 0;
  // Unloads the given cuts from the node.
  virtual void unload_cuts(const std::vector<CutPtr> &cuts) = 0;
  // The row of a cut in the node's LP, -1 when not in it.
  virtual int lp_row_of(const zrvs_cut &cut) const = 0;
  // The node's LP solution over the problem's columns; empty before the
  // node's LP is solved.
  virtual const std::vector<double> &lp_x() const = 0;
  // A branching for this node.
  virtual void store_branching(const BranchSpec &spec, const char *who) = 0;
  // Tightens the node's bounds.
  virtual void tighten(const std::vector<BoundChange> &bounds, const char *who) = 0;
};

struct SearchInputs {
  CutPool pool;
  std::vector<CutPtr> root_cuts;            // loaded outside a search
  std::vector<BranchSpec> root_branchings;  // stored outside a search
  std::vector<BoundChange> root_bounds;     // set outside a search
  std::vector<char> delayed, model_cut;     // per row; may be shorter than the rows
  std::vector<std::unique_ptr<std::vector<BoundChange>>> stored_bounds;
  NodeAccess *node = nullptr;  // set while node callbacks run

  // True when a solve needs the engine's search.
  bool needs_search() const;
  // Deleting columns empties the pool and drops what names columns;
  // deleting rows clears the row marks.
  void lines_deleted(bool columns);
};

}  // namespace zorvan
