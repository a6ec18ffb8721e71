#include "search/search.h"

#include <algorithm>
#include <cmath>

#include "solve/highs/controls.h"

namespace zorvan {

namespace {

constexpr double kInf = 1e30;
constexpr int kStrongCandidates = 8;      // strong-branched columns per node at most
constexpr int64_t kStrongIterations = 100;  // simplex iterations per strong-branching LP
constexpr int kRootCutRounds = 20, kNodeCutRounds = 3;
constexpr size_t kCutsPerRound = 100;

double seconds_since(std::chrono::steady_clock::time_point t) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - t).count();
}

// Sets the p.search.node pointer while a node is processed.
class NodeScope {
 public:
  NodeScope(zrvs_problem &p, NodeAccess *node) : p_(p) { p_.search.node = node; }
  ~NodeScope() { p_.search.node = nullptr; }
  NodeScope(const NodeScope &) = delete;
  NodeScope &operator=(const NodeScope &) = delete;

 private:
  zrvs_problem &p_;
};

double highs_value(double v) {
  if (v >= ZRVS_PLUSINFINITY) return kHighsInf;
  if (v <= -ZRVS_PLUSINFINITY) return -kHighsInf;
  return v;
}

}  // namespace

BranchAndCut::BranchAndCut(zrvs_problem &p, const HighsBuild &build, SearchEvents &events,
                           const SearchLimits &limits)
    : p_(p), build_(build), events_(events), limits_(limits), pseudo_(build.lp.cols()) {
  const LpBuilder &lp = build.lp;
  const int n = lp.cols();
  sense_ = build.sense;
  cost_.assign(static_cast<size_t>(n), 0.0);
  root_lb_ = lp.col_lower, root_ub_ = lp.col_upper;
  semi_low_.assign(static_cast<size_t>(n), 0.0);
  is_int_.assign(static_cast<size_t>(n), 0);
  for (int j = 0; j < n; ++j) {
    const HighsInt t = lp.integrality[j];
    if (t == kHighsVarTypeInteger || t == kHighsVarTypeSemiInteger) is_int_[j] = 1;
    if (t == kHighsVarTypeSemiContinuous || t == kHighsVarTypeSemiInteger) {
      semi_low_[j] = root_lb_[j];
      root_lb_[j] = std::min(root_lb_[j], 0.0);
    }
  }
  // Delayed rows and model cuts start outside the LP.
  hidden_.assign(static_cast<size_t>(lp.rows()), 0);
  const SearchInputs &in = p.search;
  for (int i = 0; i < build.nrows; ++i) {
    const size_t k = static_cast<size_t>(i);
    if ((k < in.delayed.size() && in.delayed[k]) || (k < in.model_cut.size() && in.model_cut[k]))
      hidden_[k] = in.model_cut.size() > k && in.model_cut[k] ? 2 : 1;
  }
  lp_.reset(new NodeLp(build, highs_matrix(p.model, lp), cost_, 0.0, hidden_, limits.feastol,
                       p.controls.get_dbl(ZRVS_OPTIMALITYTOL, "optimize"), solve_threads(p)));
}

BranchAndCut::~BranchAndCut() = default;

void BranchAndCut::set_objective(const std::vector<double> &cost, double constant) {
  std::fill(cost_.begin(), cost_.end(), 0.0);
  for (size_t j = 0; j < cost.size(); ++j) cost_[j] = sense_ * cost[j];
  offset_ = sense_ * constant;
  lp_->set_costs(cost_, offset_);
}

void BranchAndCut::hold(const std::vector<double> &cost, double lower, double upper) {
  std::vector<HighsInt> col;
  std::vector<double> coef;
  for (size_t j = 0; j < cost.size(); ++j)
    if (cost[j] != 0.0) col.push_back(static_cast<HighsInt>(j)), coef.push_back(cost[j]);
  lp_->add_base_row(highs_value(lower), highs_value(upper), col, coef);
  hidden_.push_back(0);
}

// ---- Rows -------------------------------------------------------------------

RowPtr BranchAndCut::row_of_cut(const CutPtr &cut) {
  auto it = cut_rows_.find(cut->serial);
  if (it != cut_rows_.end()) return it->second;
  auto r = std::make_shared<ExtraRow>();
  r->key = 2 * cut->serial + 1;  // odd keys: cuts; even keys: rows of branches
  r->lo = cut->rowtype == 'L' ? -kHighsInf : cut->rhs;
  r->up = cut->rowtype == 'G' ? kHighsInf : cut->rhs;
  r->col.assign(cut->col.begin(), cut->col.end());
  r->coef = cut->coef;
  cut_rows_.emplace(cut->serial, r);
  return r;
}

// Adds what x violates: model cuts always, pool cuts and delayed rows as
// well at integer solutions (they must hold there) and pool cuts within the
// rounds of cutting. True when a row was added.
bool BranchAndCut::separate(const std::vector<double> &x, bool integral) {
  const double tol = 10 * limits_.feastol;
  bool added = false;
  const std::vector<double> &act = lp_->row_activity();
  for (size_t i = 0; i < hidden_.size(); ++i) {
    if (!hidden_[i] || (hidden_[i] == 1 && !integral)) continue;
    const double a = act[i];
    if (a < build_.lp.row_lower[i] - tol || a > build_.lp.row_upper[i] + tol) {
      hidden_[i] = 0;
      lp_->reveal_row(static_cast<int>(i));
      added = true;
    }
  }
  std::vector<std::pair<double, CutPtr>> violated;
  for (const CutPtr &c : p_.search.pool.cuts()) {
    if (global_cut_serials_.count(c->serial)) continue;
    const double v = cut_violation(*c, x.data());
    if (v > tol) violated.emplace_back(v, c);
  }
  if (!integral && violated.size() > kCutsPerRound) {
    std::partial_sort(violated.begin(), violated.begin() + kCutsPerRound, violated.end(),
                      [](const auto &a, const auto &b) { return a.first > b.first; });
    violated.resize(kCutsPerRound);
  }
  for (auto &v : violated) {
    global_cut_serials_.insert(v.second->serial);
    global_rows_.push_back(row_of_cut(v.second));
    added = true;
  }
  return added;
}

// ---- Node access for callbacks ------------------------------------------

void BranchAndCut::load_cuts(const std::vector<CutPtr> &cuts) {
  if (!current_) return;
  for (const CutPtr &c : cuts) {
    if (std::find(current_->cuts.begin(), current_->cuts.end(), c) != current_->cuts.end())
      continue;
    current_->cuts.push_back(c);
    current_->rows.push_back(row_of_cut(c));
    node_changed_ = true;
  }
}

std::vector<CutPtr> BranchAndCut::node_cuts() const {
  return current_ ? current_->cuts : std::vector<CutPtr>();
}

void BranchAndCut::unload_cuts(const std::vector<CutPtr> &cuts) {
  if (!current_ || cuts.empty()) return;
  for (const CutPtr &c : cuts) {
    auto &list = current_->cuts;
    list.erase(std::remove(list.begin(), list.end(), c), list.end());
    const int64_t key = 2 * c->serial + 1;
    auto &rows = current_->rows;
    rows.erase(std::remove_if(rows.begin(), rows.end(),
                              [&](const RowPtr &r) { return r->key == key; }),
               rows.end());
  }
  node_changed_ = true;
}

int BranchAndCut::lp_row_of(const zrvs_cut &cut) const { return lp_->row_of_key(2 * cut.serial + 1); }

void BranchAndCut::store_branching(const BranchSpec &spec, const char *who) {
  validate_branching(spec, build_.ncols, p_.search.pool, who);
  stored_.push_back(spec);
}

void BranchAndCut::tighten(const std::vector<BoundChange> &bounds, const char *) {
  if (!current_) return;
  for (const BoundChange &b : bounds) {
    double lo = lb_[b.col], up = ub_[b.col];
    if (b.type != 'U') lo = std::max(lo, b.value);
    if (b.type != 'L') up = std::min(up, b.value);
    lb_[b.col] = lo, ub_[b.col] = up;
    current_->bounds.push_back({b.col, lo, up});
  }
  node_changed_ = true;
}

// ---- Nodes ----------------------------------------------------------------

bool BranchAndCut::apply_node(const Node &node) {
  lb_ = root_lb_, ub_ = root_ub_;
  for (const ColumnBound &b : node.bounds) lb_[b.col] = b.lb, ub_[b.col] = b.ub;
  for (size_t j = 0; j < lb_.size(); ++j)
    if (lb_[j] > ub_[j] + limits_.feastol) return false;
  lp_->set_bounds(lb_, ub_);
  std::vector<RowPtr> rows = global_rows_;
  rows.insert(rows.end(), node.rows.begin(), node.rows.end());
  lp_->set_extra_rows(rows);
  if (node.basis && node.parent != last_solved_) lp_->set_basis(*node.basis);
  return true;
}

bool BranchAndCut::integral(const std::vector<double> &x) const {
  for (size_t j = 0; j < x.size(); ++j) {
    if (is_int_[j] && std::fabs(x[j] - std::round(x[j])) > limits_.inttol) return false;
    if (semi_low_[j] > 0.0 && x[j] > limits_.inttol && x[j] < semi_low_[j] - limits_.inttol)
      return false;
  }
  return true;
}

void BranchAndCut::publish_lp() {
  const Model &m = p_.model;
  SolveState &r = p_.results;
  r.x = node_x_;
  r.slack.assign(m.rhs.begin(), m.rhs.end());
  for (size_t e = 0; e < m.mval.size(); ++e) r.slack[m.mrow[e]] -= m.mval[e] * r.x[m.mcol[e]];
  r.duals.assign(lp_->row_duals().begin(), lp_->row_duals().begin() + m.rows());
  r.djs.assign(lp_->col_duals().begin(), lp_->col_duals().begin() + m.cols());
  for (double &d : r.duals) d *= sense_;
  for (double &d : r.djs) d *= sense_;
  r.lpobjval = sense_ * lp_->objective();
  // Node callbacks read the node's solution whichever reader they use.
  r.has_lp_solution = true;
  r.has_mip_solution = true;
}

// Solves the node's LP with its rounds of cuts and its callbacks. False
// when the node is done (infeasible, cut off, dropped or failed).
bool BranchAndCut::solve_node(Node &node, bool &is_integral) {
  int rounds = 0;
  bool first = true;
  const int max_rounds = node.depth == 0 ? kRootCutRounds : kNodeCutRounds;
  for (;;) {
    node_changed_ = false;
    const LpOutcome outcome = lp_->solve(-1, limits_.time_limit - seconds_since(start_));
    last_solved_ = node.id;
    if (outcome == LpOutcome::infeasible) {
      events_.infnode();
      return false;
    }
    if (outcome == LpOutcome::unbounded && node.depth == 0) {
      unbounded_ = true;
      return false;
    }
    if (outcome != LpOutcome::optimal) {  // a limit, or HiGHS failed: the node is lost
      incomplete_ = true;
      lost_bound_ = std::min(lost_bound_, node.bound);
      return false;
    }
    const double obj = lp_->objective();
    lp_values_ = lp_->x();
    node_x_.assign(lp_values_.begin(), lp_values_.begin() + build_.ncols);
    if (first && node.branch_col >= 0 && node.distance > 0.0)
      pseudo_.record(node.branch_col, node.up, (obj - node.bound) / node.distance);
    first = false;
    node.bound = std::max(node.bound, obj);
    if (obj >= prune_level()) {
      events_.nodecutoff(static_cast<int>(node.id));
      return false;
    }
    publish_lp();
    events_.nodelpsolved();
    is_integral = integral(lp_values_);
    if (separate(node_x_, is_integral) && (is_integral || rounds++ < max_rounds)) {
      apply_node(node);
      continue;
    }
    if (events_.optnode()) return false;
    if (node_changed_) {  // the callback loaded cuts or tightened bounds
      if (!apply_node(node)) {
        events_.infnode();
        return false;
      }
      continue;
    }
    return true;
  }
}

BranchAndCut::Verdict BranchAndCut::process(Node &node, std::vector<Node> &children) {
  if (node.bound >= prune_level()) {
    events_.nodecutoff(static_cast<int>(node.id));
    return Verdict::done;
  }
  ++nodes_;
  current_ = &node;
  stored_.clear();
  NodeScope scope(p_, this);
  if (!apply_node(node)) {
    events_.infnode();
    return Verdict::done;
  }
  if (events_.prenode()) return Verdict::done;
  if (node_changed_ && !apply_node(node)) {
    events_.infnode();
    return Verdict::done;
  }
  bool is_integral = false;
  if (!solve_node(node, is_integral)) return unbounded_ ? Verdict::stop : Verdict::done;
  const double obj = lp_->objective();
  if (is_integral && stored_.empty()) {
    const double before = sense_ * std::min({incumbent_value_, limits_.cutoff, run_cutoff_});
    double cutoff = before;
    if (events_.preintsol(0, cutoff)) return Verdict::done;
    if (cutoff != before) run_cutoff_ = std::min(run_cutoff_, sense_ * cutoff);
    accept(lp_values_, obj);
    return Verdict::done;
  }
  int column = -1;
  double value = 0.0;
  BranchSpec spec = choose_branching(node, obj, column, value);
  if (spec.branches.empty()) return Verdict::done;  // strong branching proved it infeasible
  make_children(node, spec, column, value, obj, children);
  return Verdict::branch;
}

void BranchAndCut::accept(const std::vector<double> &x, double objective) {
  if (objective >= incumbent_value_) return;
  incumbent_ = x;
  incumbent_value_ = objective;
  ++solutions_;
  SolveState &r = p_.results;
  r.x.assign(x.begin(), x.begin() + build_.ncols);
  r.mipobjval = sense_ * objective;
  r.has_mip_solution = true;
  events_.intsol();
}

// ---- Branching --------------------------------------------------------------

BranchSpec BranchAndCut::choose_branching(const Node &node, double objective, int &column,
                                          double &value) {
  column = -1;
  if (!stored_.empty()) {  // the user's branching: lowest priority value, first stored
    auto best = std::min_element(stored_.begin(), stored_.end(),
                                 [](const BranchSpec &a, const BranchSpec &b) {
                                   return a.priority < b.priority;
                                 });
    return *best;
  }
  if (node.depth == 0 && !p_.search.root_branchings.empty()) {
    const auto &list = p_.search.root_branchings;
    return *std::min_element(list.begin(), list.end(), [](const BranchSpec &a, const BranchSpec &b) {
      return a.priority < b.priority;
    });
  }
  const std::vector<double> &x = lp_values_;
  BranchSpec spec;
  // A semi-continuous column strictly between 0 and its threshold first.
  for (size_t j = 0; j < x.size(); ++j)
    if (semi_low_[j] > 0.0 && x[j] > limits_.inttol && x[j] < semi_low_[j] - limits_.inttol) {
      column = static_cast<int>(j);
      value = x[j];
      spec.branches.resize(2);
      spec.branches[0].bounds.push_back({'U', column, 0.0});
      spec.branches[1].bounds.push_back({'L', column, semi_low_[j]});
      spec.preferred = x[j] >= 0.5 * semi_low_[j] ? 1 : 0;
      events_.change_branching(spec);
      return spec;
    }
  // Fractional columns by pseudo-cost score; those without history in a
  // direction are strong-branched first (a few per node).
  struct Candidate {
    int col;
    double frac, down, up;
  };
  std::vector<Candidate> cands;
  for (size_t j = 0; j < x.size(); ++j) {
    if (!is_int_[j]) continue;
    const double f = x[j] - std::floor(x[j]);
    if (f <= limits_.inttol || f >= 1.0 - limits_.inttol) continue;
    const int c = static_cast<int>(j);
    cands.push_back({c, f, pseudo_.estimate(c, false) * f, pseudo_.estimate(c, true) * (1 - f)});
  }
  if (cands.empty()) return spec;
  std::sort(cands.begin(), cands.end(), [](const Candidate &a, const Candidate &b) {
    return std::fabs(a.frac - 0.5) < std::fabs(b.frac - 0.5);
  });
  std::shared_ptr<LpBasis> basis;
  int strong = 0;
  for (Candidate &c : cands) {
    if (strong >= kStrongCandidates) break;
    if (pseudo_.known(c.col, false) && pseudo_.known(c.col, true)) continue;
    if (!basis) basis = std::make_shared<LpBasis>(lp_->basis());
    ++strong;
    const double down_ub = std::floor(x[c.col]), up_lb = std::ceil(x[c.col]);
    double gains[2];
    for (int dir = 0; dir < 2; ++dir) {
      lp_->set_column_bounds(c.col, dir ? up_lb : lb_[c.col], dir ? ub_[c.col] : down_ub);
      const LpOutcome o =
          lp_->solve(kStrongIterations, limits_.time_limit - seconds_since(start_));
      const double dist = dir ? 1.0 - c.frac : c.frac;
      if (o == LpOutcome::infeasible) {
        gains[dir] = kInf;
      } else {
        gains[dir] = std::max(lp_->objective() - objective, 0.0);
        if (o == LpOutcome::optimal) pseudo_.record(c.col, dir == 1, gains[dir] / dist);
      }
      lp_->set_column_bounds(c.col, lb_[c.col], ub_[c.col]);
      lp_->set_basis(*basis);
    }
    c.down = gains[0], c.up = gains[1];
  }
  if (basis) last_solved_ = -1;  // the LP no longer holds the node's solution
  const Candidate *best = &cands[0];
  double best_score = -1.0;
  for (const Candidate &c : cands) {
    const double s = branch_score(std::min(c.down, kInf), std::min(c.up, kInf));
    if (s > best_score) best_score = s, best = &c;
  }
  column = best->col;
  value = x[column];
  spec.branches.resize(2);
  spec.branches[0].bounds.push_back({'U', column, std::floor(value)});
  spec.branches[1].bounds.push_back({'L', column, std::ceil(value)});
  // Dive towards the nearer integer.
  spec.preferred = best->frac >= 0.5 ? 1 : 0;
  events_.change_branching(spec);
  return spec;
}

void BranchAndCut::make_children(const Node &node, const BranchSpec &spec, int column,
                                 double value, double objective, std::vector<Node> &children) {
  auto basis = std::make_shared<const LpBasis>(lp_->basis());
  const int n = static_cast<int>(spec.branches.size());
  std::vector<int> order;
  const int preferred = spec.preferred >= 0 && spec.preferred < n ? spec.preferred : 0;
  order.push_back(preferred);
  for (int b = 0; b < n; ++b)
    if (b != preferred) order.push_back(b);
  for (int b : order) {
    const Branch &br = spec.branches[b];
    Node child;
    child.id = ++next_id_;
    child.parent = node.id;
    child.depth = node.depth + 1;
    child.branch = b;
    child.bound = objective;
    child.bounds = node.bounds;
    child.rows = node.rows;
    child.cuts = node.cuts;
    child.basis = basis;
    std::vector<double> lo = lb_, up = ub_;
    for (const BoundChange &c : br.bounds) {
      if (c.type != 'U') lo[c.col] = std::max(lo[c.col], c.value);
      if (c.type != 'L') up[c.col] = std::min(up[c.col], c.value);
      child.bounds.push_back({c.col, lo[c.col], up[c.col]});
    }
    for (int r = 0; r < br.rows.size(); ++r) {
      auto row = std::make_shared<ExtraRow>();
      row->key = 2 * (++next_row_key_);
      const char t = br.rows.type[r];
      row->lo = t == 'L' ? -kHighsInf : br.rows.rhs[r];
      row->up = t == 'G' ? kHighsInf : br.rows.rhs[r];
      for (int k = br.rows.start[r]; k < br.rows.start[r + 1]; ++k)
        row->col.push_back(br.rows.col[k]), row->coef.push_back(br.rows.coef[k]);
      child.rows.push_back(row);
    }
    for (const CutPtr &c : br.cuts)
      if (std::find(child.cuts.begin(), child.cuts.end(), c) == child.cuts.end()) {
        child.cuts.push_back(c);
        child.rows.push_back(row_of_cut(c));
      }
    if (column >= 0) {
      child.branch_col = column;
      child.up = lo[column] > lb_[column];
      child.distance = child.up ? lo[column] - value : value - up[column];
    }
    events_.new_node(static_cast<int>(node.id), static_cast<int>(child.id), b);
    children.push_back(std::move(child));
  }
}

// ---- The search -----------------------------------------------------------

double BranchAndCut::prune_level() const {
  double level = std::min({incumbent_value_, limits_.cutoff, run_cutoff_});
  if (incumbent_value_ < kInf)
    level -= std::max(limits_.absgap, limits_.relgap * std::fabs(incumbent_value_));
  return level;
}

double BranchAndCut::best_bound(const Node *next) const {
  double b = std::min(incumbent_value_, lost_bound_);
  if (next) b = std::min(b, next->bound);
  if (!open_.empty()) b = std::min(b, open_.top().bound);
  return b;
}

bool BranchAndCut::gap_closed(double bound) const {
  if (incumbent_value_ >= kInf) return false;
  const double g = incumbent_value_ - bound;
  return g <= limits_.absgap || g <= limits_.relgap * std::fabs(incumbent_value_);
}

int BranchAndCut::stop_reason(const Node *next) const {
  const int interrupt = p_.interrupt_reason.load();
  if (interrupt != ZRVS_STOP_NONE) return interrupt;
  if (seconds_since(start_) >= limits_.time_limit) return ZRVS_STOP_TIMELIMIT;
  if (nodes_ >= limits_.node_limit) return ZRVS_STOP_NODELIMIT;
  if (limits_.solution_limit > 0 && solutions_ >= limits_.solution_limit) return ZRVS_STOP_SOLLIMIT;
  (void)next;
  return ZRVS_STOP_NONE;
}

void BranchAndCut::run(StageResult &out) {
  start_ = std::chrono::steady_clock::now();
  open_ = decltype(open_)();
  incumbent_.clear();
  incumbent_value_ = kInf;
  solutions_ = 0, nodes_ = 0, unbounded_ = false, incomplete_ = false;
  lost_bound_ = kInf;
  run_cutoff_ = kInf;
  last_solved_ = -1;
  const int64_t iterations_before = lp_->iterations();

  Node root;
  root.id = next_id_ = 1;
  root.bound = -kInf;
  const SearchInputs &in = p_.search;
  for (const BoundChange &b : in.root_bounds) {
    double lo = root_lb_[b.col], up = root_ub_[b.col];
    for (const ColumnBound &c : root.bounds)
      if (c.col == b.col) lo = c.lb, up = c.ub;
    if (b.type != 'U') lo = std::max(lo, b.value);
    if (b.type != 'L') up = std::min(up, b.value);
    root.bounds.push_back({b.col, lo, up});
  }
  for (const CutPtr &c : in.root_cuts) {
    root.cuts.push_back(c);
    root.rows.push_back(row_of_cut(c));
  }

  std::unique_ptr<Node> next(new Node(std::move(root)));
  int stop = ZRVS_STOP_NONE;
  while (next || !open_.empty()) {
    if (!next) {
      next.reset(new Node(open_.top()));
      open_.pop();
    }
    if (gap_closed(best_bound(next.get()))) break;
    stop = stop_reason(next.get());
    if (stop != ZRVS_STOP_NONE) break;
    std::vector<Node> children;
    const Verdict v = process(*next, children);
    current_ = nullptr;
    if (v == Verdict::stop) break;
    next.reset();
    if (children.empty()) continue;
    // Dive into the preferred child; the others wait by their bound.
    next.reset(new Node(std::move(children[0])));
    for (size_t k = 1; k < children.size(); ++k) open_.push(std::move(children[k]));
  }
  final_bound_ = best_bound(next.get());
  out.simplexiter = lp_->iterations() - iterations_before;
  record(out, stop, stop == ZRVS_STOP_NONE);
  // The node's LP solution was shown to callbacks only.
  SolveState &r = p_.results;
  r.has_lp_solution = false, r.has_mip_solution = false;
  r.duals.clear(), r.djs.clear();
}

void BranchAndCut::record(StageResult &out, int stop, bool finished) {
  out.nodes = nodes_;
  out.lpstatus = ZRVS_LP_UNSTARTED;
  const bool found = !incumbent_.empty();
  out.objval = found ? sense_ * incumbent_value_ : 0.0;
  out.bestbound = sense_ * final_bound_;
  out.solvestatus = ZRVS_SOLVESTATUS_COMPLETED;
  out.stopstatus = ZRVS_STOP_NONE;
  if (unbounded_) {
    out.mipstatus = ZRVS_MIP_UNBOUNDED;
    out.solstatus = ZRVS_SOLSTATUS_UNBOUNDED;
    return;
  }
  if (!finished) {
    out.solvestatus = ZRVS_SOLVESTATUS_STOPPED;
    out.stopstatus = stop;
    out.mipstatus = found ? ZRVS_MIP_SOLUTION : ZRVS_MIP_NO_SOL_FOUND;
    out.solstatus = found ? ZRVS_SOLSTATUS_FEASIBLE : ZRVS_SOLSTATUS_NOTFOUND;
    return;
  }
  if (incomplete_) {
    // Some node LP failed: what was found is not proven.
    out.mipstatus = found ? ZRVS_MIP_SOLUTION : ZRVS_MIP_NO_SOL_FOUND;
    out.solstatus = found ? ZRVS_SOLSTATUS_FEASIBLE : ZRVS_SOLSTATUS_NOTFOUND;
    return;
  }
  out.stopstatus = found ? ZRVS_STOP_SOLVECOMPLETE : ZRVS_STOP_NONE;
  out.mipstatus = found ? ZRVS_MIP_OPTIMAL : ZRVS_MIP_INFEAS;
  out.solstatus = found ? ZRVS_SOLSTATUS_OPTIMAL : ZRVS_SOLSTATUS_INFEASIBLE;
}

std::vector<double> BranchAndCut::solution() const {
  if (incumbent_.empty()) return {};
  return std::vector<double>(incumbent_.begin(), incumbent_.begin() + build_.ncols);
}

double BranchAndCut::gap() const {
  if (incumbent_.empty()) return kHighsInf;
  const double g = std::fabs(incumbent_value_ - final_bound_);
  return std::fabs(incumbent_value_) > 0.0 ? g / std::fabs(incumbent_value_) : g;
}

}  // namespace zorvan
