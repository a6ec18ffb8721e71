#include "search/node_lp.h"

#include <algorithm>
#include <limits>
#include <unordered_map>

#include "core/errors.h"

namespace zorvan {

namespace {

void option(HighsInt status, const char *name) {
  if (status == kHighsStatusError)
    fail(ZRVS_ERR_INTERNAL, "HiGHS refused the value of option %s for the search", name);
}

}  // namespace

NodeLp::NodeLp(const HighsBuild &build, const HighsCsc &matrix, const std::vector<double> &cost,
               double offset, const std::vector<char> &hidden, double feastol, double opttol,
               int threads)
    : h_(Highs_create()), ncols_(build.lp.cols()), nrows_(build.lp.rows()) {
  if (!h_) throw std::bad_alloc();
  try {
    option(Highs_setBoolOptionValue(h_, "output_flag", false), "output_flag");
    option(Highs_setStringOptionValue(h_, "presolve", "off"), "presolve");
    option(Highs_setStringOptionValue(h_, "solver", "simplex"), "solver");
    option(Highs_setIntOptionValue(h_, "simplex_strategy", 1), "simplex_strategy");
    option(Highs_setDoubleOptionValue(h_, "primal_feasibility_tolerance", feastol),
           "primal_feasibility_tolerance");
    option(Highs_setDoubleOptionValue(h_, "dual_feasibility_tolerance", opttol),
           "dual_feasibility_tolerance");
    if (threads > 0) option(Highs_setIntOptionValue(h_, "threads", threads), "threads");
    row_lower_ = build.lp.row_lower;
    row_upper_ = build.lp.row_upper;
    std::vector<double> lo = row_lower_, up = row_upper_;
    for (size_t i = 0; i < hidden.size() && i < lo.size(); ++i)
      if (hidden[i]) lo[i] = -kHighsInf, up[i] = kHighsInf;
    std::vector<double> col_lower = build.lp.col_lower;
    for (int j = 0; j < ncols_; ++j)  // semi-continuous columns may be 0
      if (build.lp.integrality[j] == kHighsVarTypeSemiContinuous ||
          build.lp.integrality[j] == kHighsVarTypeSemiInteger)
        col_lower[j] = std::min(col_lower[j], 0.0);
    if (Highs_passLp(h_, ncols_, nrows_, static_cast<HighsInt>(matrix.index.size()),
                     kHighsMatrixFormatColwise, kHighsObjSenseMinimize, offset, cost.data(),
                     col_lower.data(), build.lp.col_upper.data(), lo.data(), up.data(),
                     matrix.start.data(), matrix.index.data(),
                     matrix.value.data()) == kHighsStatusError)
      fail(ZRVS_ERR_INTERNAL, "HiGHS refused the LP of the search");
  } catch (...) {
    Highs_destroy(h_);
    throw;
  }
}

NodeLp::~NodeLp() { Highs_destroy(h_); }

void NodeLp::set_costs(const std::vector<double> &cost, double offset) {
  Highs_changeColsCostByRange(h_, 0, ncols_ - 1, cost.data());
  Highs_changeObjectiveOffset(h_, offset);
}

void NodeLp::reveal_row(int i) { Highs_changeRowBounds(h_, i, row_lower_[i], row_upper_[i]); }

void NodeLp::add_base_row(double lo, double up, const std::vector<HighsInt> &col,
                          const std::vector<double> &coef) {
  // Extra rows come after the problem's rows: take them out and back in.
  std::vector<RowPtr> extra = extra_;
  set_extra_rows({});
  Highs_addRow(h_, lo, up, static_cast<HighsInt>(col.size()), col.data(), coef.data());
  row_lower_.push_back(lo), row_upper_.push_back(up);
  ++nrows_;
  set_extra_rows(extra);
}

void NodeLp::set_bounds(const std::vector<double> &lb, const std::vector<double> &ub) {
  Highs_changeColsBoundsByRange(h_, 0, ncols_ - 1, lb.data(), ub.data());
}

void NodeLp::set_column_bounds(int j, double lb, double ub) {
  Highs_changeColBounds(h_, j, lb, ub);
}

void NodeLp::set_extra_rows(const std::vector<RowPtr> &rows) {
  size_t keep = 0;
  while (keep < rows.size() && keep < extra_.size() && rows[keep]->key == extra_[keep]->key)
    ++keep;
  if (keep < extra_.size())
    Highs_deleteRowsByRange(h_, nrows_ + static_cast<HighsInt>(keep),
                            nrows_ + static_cast<HighsInt>(extra_.size()) - 1);
  extra_.resize(keep);
  for (size_t k = keep; k < rows.size(); ++k) {
    const ExtraRow &r = *rows[k];
    Highs_addRow(h_, r.lo, r.up, static_cast<HighsInt>(r.col.size()), r.col.data(),
                 r.coef.data());
    extra_.push_back(rows[k]);
  }
}

int NodeLp::row_of_key(int64_t key) const {
  for (size_t k = 0; k < extra_.size(); ++k)
    if (extra_[k]->key == key) return nrows_ + static_cast<int>(k);
  return -1;
}

LpBasis NodeLp::basis() const {
  LpBasis b;
  const size_t total = static_cast<size_t>(nrows_) + extra_.size();
  b.col.resize(static_cast<size_t>(ncols_));
  std::vector<HighsInt> row(total);
  Highs_getBasis(h_, b.col.data(), row.data());
  b.row.assign(row.begin(), row.begin() + nrows_);
  for (size_t k = 0; k < extra_.size(); ++k) b.extra.emplace_back(extra_[k]->key, row[nrows_ + k]);
  return b;
}

void NodeLp::set_basis(const LpBasis &b) {
  if (b.col.size() != static_cast<size_t>(ncols_) || b.row.size() > static_cast<size_t>(nrows_))
    return;
  std::unordered_map<int64_t, HighsInt> known(b.extra.begin(), b.extra.end());
  std::vector<HighsInt> row(b.row);
  // Rows added after the basis was taken (levels of the objectives) start basic.
  row.resize(static_cast<size_t>(nrows_), kHighsBasisStatusBasic);
  for (const RowPtr &r : extra_) {
    auto it = known.find(r->key);
    row.push_back(it == known.end() ? kHighsBasisStatusBasic : it->second);
  }
  // A basis that does not fit (as many basic entries as rows) is not taken;
  // HiGHS then starts from the basis it has.
  if (Highs_setBasis(h_, b.col.data(), row.data()) == kHighsStatusError) Highs_clearSolver(h_);
}

LpOutcome NodeLp::solve(int64_t iteration_limit, double time_limit) {
  Highs_setIntOptionValue(h_, "simplex_iteration_limit",
                          iteration_limit < 0 ? std::numeric_limits<HighsInt>::max()
                                              : static_cast<HighsInt>(iteration_limit));
  Highs_setDoubleOptionValue(h_, "time_limit", time_limit > 0 ? time_limit : 1e-3);
  Highs_run(h_);
  HighsInt status = Highs_getModelStatus(h_);
  if (status == kHighsModelStatusUnknown || status == kHighsModelStatusSolveError) {
    // A warm start can end without a verdict; a fresh start decides.
    Highs_clearSolver(h_);
    Highs_run(h_);
    status = Highs_getModelStatus(h_);
  }
  HighsInt iters = 0;
  Highs_getIntInfoValue(h_, "simplex_iteration_count", &iters);
  iterations_ += std::max<HighsInt>(iters, 0);
  const HighsInt nrows = Highs_getNumRow(h_);
  x_.resize(static_cast<size_t>(ncols_));
  col_dual_.resize(static_cast<size_t>(ncols_));
  row_value_.resize(static_cast<size_t>(nrows));
  row_dual_.resize(static_cast<size_t>(nrows));
  objective_ = Highs_getObjectiveValue(h_);
  switch (status) {
    case kHighsModelStatusOptimal:
    case kHighsModelStatusModelEmpty:
      Highs_getSolution(h_, x_.data(), col_dual_.data(), row_value_.data(), row_dual_.data());
      return LpOutcome::optimal;
    case kHighsModelStatusInfeasible: return LpOutcome::infeasible;
    case kHighsModelStatusUnbounded:
    case kHighsModelStatusUnboundedOrInfeasible: return LpOutcome::unbounded;
    case kHighsModelStatusIterationLimit:
    case kHighsModelStatusTimeLimit:
    case kHighsModelStatusObjectiveBound: return LpOutcome::limit;
    default: return LpOutcome::failed;
  }
}

}  // namespace zorvan
