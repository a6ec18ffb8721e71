// The engine's own branch-and-cut on HiGHS's simplex: best-bound search
// with diving, pseudo-cost branching seeded by strong branching, cuts from
// the problem's pool, delayed rows and model cuts, the user's branching
// objects, and node events for callbacks. One worker thread.
#pragma once
#include <chrono>
#include <memory>
#include <queue>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "problem/problem.h"
#include "search/node.h"
#include "search/node_lp.h"
#include "search/pseudo_costs.h"
#include "search/search_events.h"
#include "solve/highs/builder.h"

namespace zorvan {

struct SearchLimits {
  double feastol = 1e-7, inttol = 1e-6, absgap = 1e-6, relgap = 1e-4;
  double time_limit = 1e30;  // seconds from the start of the search
  double cutoff = 1e30;      // objective (minimised) no worse than this
  int64_t node_limit = INT64_MAX;
  int solution_limit = 0;    // 0: none
};

class BranchAndCut : public NodeAccess {
 public:
  // build: the problem as a MIP for HiGHS (reformulations included);
  // events: where node events go (not owned).
  BranchAndCut(zrvs_problem &p, const HighsBuild &build, SearchEvents &events,
               const SearchLimits &limits);
  ~BranchAndCut() override;
  // The objective to minimise: sense * (cost.x + constant) over the
  // problem's columns.
  void set_objective(const std::vector<double> &cost, double constant);
  // Keeps cost.x within [lower, upper] in later runs (user's sense).
  void hold(const std::vector<double> &cost, double lower, double upper);
  void run(StageResult &out);
  // The incumbent over the problem's columns; empty when none.
  std::vector<double> solution() const;
  double gap() const;

  // NodeAccess
  void load_cuts(const std::vector<CutPtr> &cuts) override;
  std::vector<CutPtr> node_cuts() const override;
  void unload_cuts(const std::vector<CutPtr> &cuts) override;
  int lp_row_of(const zrvs_cut &cut) const override;
  const std::vector<double> &lp_x() const override { return node_x_; }
  void store_branching(const BranchSpec &spec, const char *who) override;
  void tighten(const std::vector<BoundChange> &bounds, const char *who) override;

 private:
  enum class Verdict { done, branch, stop };
  struct Worse {
    bool operator()(const Node &a, const Node &b) const {
      return a.bound > b.bound || (a.bound == b.bound && a.depth < b.depth);
    }
  };

  Verdict process(Node &node, std::vector<Node> &children);
  bool apply_node(const Node &node);
  bool solve_node(Node &node, bool &integral);
  bool separate(const std::vector<double> &x, bool integral);
  bool integral(const std::vector<double> &x) const;
  void accept(const std::vector<double> &x, double objective);
  BranchSpec choose_branching(const Node &node, double objective, int &column, double &frac);
  void make_children(const Node &node, const BranchSpec &spec, int column, double value,
                     double objective, std::vector<Node> &children);
  double prune_level() const;
  double best_bound(const Node *next) const;
  bool gap_closed(double bound) const;
  int stop_reason(const Node *next) const;
  RowPtr row_of_cut(const CutPtr &cut);
  void publish_lp();
  void record(StageResult &out, int stop, bool finished);

  zrvs_problem &p_;
  const HighsBuild &build_;
  SearchEvents &events_;
  SearchLimits limits_;
  std::unique_ptr<NodeLp> lp_;
  std::vector<double> cost_;  // minimised, over the LP's columns
  double offset_ = 0.0;
  double sense_ = 1.0;
  std::vector<double> root_lb_, root_ub_, semi_low_;
  std::vector<char> is_int_;
  PseudoCosts pseudo_;
  std::chrono::steady_clock::time_point start_;

  // Rows that hold for every node: revealed delayed rows and model cuts,
  // pool cuts that solutions violated.
  std::vector<RowPtr> global_rows_;
  std::unordered_set<int64_t> global_cut_serials_;
  std::unordered_map<int64_t, RowPtr> cut_rows_;
  std::vector<char> hidden_;
  int64_t next_row_key_ = 0;

  std::priority_queue<Node, std::vector<Node>, Worse> open_;
  int64_t next_id_ = 1, nodes_ = 0, last_solved_ = -1;
  Node *current_ = nullptr;
  std::vector<double> node_x_;  // the current node's LP solution, problem's columns
  std::vector<double> lp_values_;  // and over the LP's columns
  std::vector<double> lb_, ub_;  // the current node's bounds
  std::vector<BranchSpec> stored_;  // branchings stored at the current node
  bool node_changed_ = false;
  bool unbounded_ = false, incomplete_ = false;
  std::vector<double> incumbent_;  // over the LP's columns
  double incumbent_value_ = 1e30;
  double final_bound_ = -1e30;
  double lost_bound_ = 1e30;
  double run_cutoff_ = 1e30;  // a cutoff set by a callback, for one run  // the lowest bound of nodes whose LP failed
  int solutions_ = 0;
};

}  // namespace zorvan
