#include "solve/highs/instance.h"

#include <new>

#include "core/errors.h"
#include "problem/problem.h"
#include "solve/highs/rejection.h"
#include "zorvan/zrvs.h"

namespace zorvan {

namespace {

void check(HighsInt status, const char *what, const char *who) {
  if (status == kHighsStatusError) fail(ZRVS_ERR_INTERNAL, "%s: HiGHS refused %s", who, what);
}

// Keeps the entries of v whose mask entry is 0.
template <class T>
void keep_unmasked(std::vector<T> &v, const std::vector<char> &mask) {
  size_t out = 0;
  for (size_t k = 0; k < v.size(); ++k)
    if (!mask[k]) v[out++] = v[k];
  v.resize(out);
}

// Indices where `now` differs from `was` (both of one length).
template <class T>
void differences(const std::vector<T> &was, const std::vector<T> &now,
                 std::vector<HighsInt> &index) {
  index.clear();
  for (size_t k = 0; k < was.size(); ++k)
    if (was[k] != now[k]) index.push_back(static_cast<HighsInt>(k));
}

// Indices where either side of a pair of bounds differs.
void bound_differences(const std::vector<double> &was_lower, const std::vector<double> &now_lower,
                       const std::vector<double> &was_upper, const std::vector<double> &now_upper,
                       std::vector<HighsInt> &index) {
  index.clear();
  for (size_t k = 0; k < was_lower.size(); ++k)
    if (was_lower[k] != now_lower[k] || was_upper[k] != now_upper[k])
      index.push_back(static_cast<HighsInt>(k));
}

template <class T>
std::vector<T> pick(const std::vector<T> &v, const std::vector<HighsInt> &index) {
  std::vector<T> out(index.size());
  for (size_t k = 0; k < index.size(); ++k) out[k] = v[index[k]];
  return out;
}

bool same(const HighsCsc &a, const HighsCsc &b) {
  return a.start == b.start && a.index == b.index && a.value == b.value;
}

}  // namespace

void HighsInstanceDeleter::operator()(HighsInstance *h) const { delete h; }

HighsInstance::~HighsInstance() {
  if (h_) Highs_destroy(h_);
}

void *HighsInstance::handle() {
  if (!h_) {
    h_ = Highs_create();
    if (!h_) throw std::bad_alloc();
  }
  return h_;
}

HighsInstance::Loaded HighsInstance::load(const Model &m, const HighsBuild &build, double constant, bool mip,
                         ChangeLog &log, const char *who) {
  handle();
  const bool plain = build.lp.cols() == m.cols() && build.lp.rows() == m.rows();
  bool whole = !mirrors_ || log.rebuild() || mip != mip_ || !plain;
  // A quadratic objective is compared as a whole; lines added or deleted
  // change its shape, and one that comes or goes changes the class.
  const bool had_q = !hessian_.value.empty(), has_q = !build.hessian.value.empty();
  if (!whole && (had_q || has_q) &&
      (had_q != has_q || !log.deletions().empty() || m.cols() != static_cast<int>(cost_.size())))
    whole = true;
  mirrors_ = false;  // until HiGHS holds all of it again
  changed_ = false;
  if (whole) {
    transfer(m, build, mip, who);
  } else {
    replay_deletions(log, who);
    append_lines(m, build, who);
    send_values(build, who);
  }
  if (offset_ != constant || whole) {
    check(Highs_changeObjectiveOffset(h_, constant), "the objective constant", who);
    offset_ = constant;
    changed_ = true;
  }
  mip_ = mip;
  mirrors_ = plain;
  log.clear();
  return whole ? Loaded::whole : changed_ ? Loaded::changes : Loaded::unchanged;
}

bool HighsInstance::can_take_listed(const Model &m, bool mip, const ChangeLog &log) const {
  return h_ && mirrors_ && log.listed() && mip == mip_ && hessian_.value.empty() &&
         m.qobj.empty() && m.cols() == static_cast<int>(cost_.size()) &&
         m.rows() == static_cast<int>(row_lower_.size());
}

HighsInstance::Loaded HighsInstance::load_listed(const Model &m, const std::vector<double> &cost,
                                                 double constant, ChangeLog &log,
                                                 const char *who) {
  const SolveMode mode = mip_ ? SolveMode::mip : SolveMode::relaxation;
  mirrors_ = false;  // until HiGHS holds all of it again
  changed_ = false;
  // A line listed twice is sent once: the copy of what HiGHS holds is
  // updated as each one is collected.
  std::vector<HighsInt> index, types_index, types;
  std::vector<double> lower, upper;
  for (int j : log.column_bounds()) {
    HighsColumn c = highs_column(m, j, mode, who);
    if (c.lower != col_lower_[j] || c.upper != col_upper_[j]) {
      index.push_back(j), lower.push_back(c.lower), upper.push_back(c.upper);
      col_lower_[j] = c.lower, col_upper_[j] = c.upper;
    }
    // Bounds decide whether a semi-continuous column is one for HiGHS.
    if (mip_ && c.type != integrality_[j]) {
      types_index.push_back(j), types.push_back(c.type);
      integrality_[j] = c.type;
    }
  }
  if (!index.empty())
    check(Highs_changeColsBoundsBySet(h_, static_cast<HighsInt>(index.size()), index.data(),
                                      lower.data(), upper.data()),
          "changed column bounds", who);
  if (!types_index.empty())
    check(Highs_changeColsIntegralityBySet(h_, static_cast<HighsInt>(types_index.size()),
                                           types_index.data(), types.data()),
          "changed column types", who);
  changed_ = !index.empty() || !types_index.empty();
  index.clear(), lower.clear(), upper.clear();
  for (int i : log.rows()) {
    HighsRow r = highs_row(m, i, mode);
    if (r.lower == row_lower_[i] && r.upper == row_upper_[i]) continue;
    index.push_back(i), lower.push_back(r.lower), upper.push_back(r.upper);
    row_lower_[i] = r.lower, row_upper_[i] = r.upper;
  }
  if (!index.empty()) {
    check(Highs_changeRowsBoundsBySet(h_, static_cast<HighsInt>(index.size()), index.data(),
                                      lower.data(), upper.data()),
          "changed row bounds", who);
    changed_ = true;
  }
  index.clear(), lower.clear();
  for (int j : log.costs()) {
    if (j < 0 || cost[j] == cost_[j]) continue;
    index.push_back(j), lower.push_back(cost[j]);
    cost_[j] = cost[j];
  }
  if (!index.empty()) {
    check(Highs_changeColsCostBySet(h_, static_cast<HighsInt>(index.size()), index.data(),
                                    lower.data()),
          "changed costs", who);
    changed_ = true;
  }
  if (sense_ != m.objsense) {
    check(Highs_changeObjectiveSense(
              h_, m.objsense > 0 ? kHighsObjSenseMinimize : kHighsObjSenseMaximize),
          "the objective sense", who);
    changed_ = true;
    sense_ = m.objsense;
  }
  if (offset_ != constant) {
    check(Highs_changeObjectiveOffset(h_, constant), "the objective constant", who);
    offset_ = constant;
    changed_ = true;
  }
  mirrors_ = true;
  log.clear();
  return changed_ ? Loaded::changes : Loaded::unchanged;
}

void HighsInstance::transfer(const Model &m, const HighsBuild &build, bool mip, const char *who) {
  const LpBuilder &lp = build.lp;
  HighsCsc a = highs_matrix(m, lp);
  const HighsCsc &q = build.hessian;
  HighsInt qnz = static_cast<HighsInt>(q.value.size());
  HighsInt status = Highs_passModel(
      h_, lp.cols(), lp.rows(), static_cast<HighsInt>(a.value.size()), qnz,
      kHighsMatrixFormatColwise, kHighsHessianFormatTriangular,
      m.objsense > 0 ? kHighsObjSenseMinimize : kHighsObjSenseMaximize, 0.0, lp.cost.data(),
      lp.col_lower.data(), lp.col_upper.data(), lp.row_lower.data(), lp.row_upper.data(),
      a.start.data(), a.index.data(), a.value.data(), qnz ? q.start.data() : nullptr,
      qnz ? q.index.data() : nullptr, qnz ? q.value.data() : nullptr,
      mip ? lp.integrality.data() : nullptr);
  if (status == kHighsStatusError) {
    double large = 1e15;
    Highs_getDoubleOptionValue(h_, "large_matrix_value", &large);
    std::string why = rejected_part(m, build, large);
    fail(why.empty() ? ZRVS_ERR_INTERNAL : ZRVS_ERR_ARGUMENT, "%s: HiGHS rejected the model%s%s",
         who, why.empty() ? "" : ": ", why.c_str());
  }
  ++transfers_;
  cost_ = lp.cost, col_lower_ = lp.col_lower, col_upper_ = lp.col_upper;
  row_lower_ = lp.row_lower, row_upper_ = lp.row_upper;
  if (mip)
    integrality_ = lp.integrality;
  else
    integrality_.clear();
  hessian_ = q;
  sense_ = m.objsense;
}

void HighsInstance::replay_deletions(const ChangeLog &log, const char *who) {
  for (const ChangeLog::Deletion &d : log.deletions()) {
    changed_ = true;
    std::vector<HighsInt> mask(d.mask.begin(), d.mask.end());  // HiGHS rewrites it
    if (d.columns) {
      check(Highs_deleteColsByMask(h_, mask.data()), "a deletion of columns", who);
      keep_unmasked(cost_, d.mask), keep_unmasked(col_lower_, d.mask);
      keep_unmasked(col_upper_, d.mask);
      if (!integrality_.empty()) keep_unmasked(integrality_, d.mask);
    } else {
      check(Highs_deleteRowsByMask(h_, mask.data()), "a deletion of rows", who);
      keep_unmasked(row_lower_, d.mask), keep_unmasked(row_upper_, d.mask);
    }
  }
}

void HighsInstance::append_lines(const Model &m, const HighsBuild &build, const char *who) {
  const LpBuilder &lp = build.lp;
  const int old_cols = static_cast<int>(cost_.size()), old_rows = static_cast<int>(row_lower_.size());
  const int new_cols = m.cols() - old_cols, new_rows = m.rows() - old_rows;
  if (new_cols < 0 || new_rows < 0)
    fail(ZRVS_ERR_INTERNAL, "%s: HiGHS holds more lines than the problem", who);
  if (new_cols == 0 && new_rows == 0) return;
  changed_ = true;
  // Entries of new columns in old rows go with the columns; entries of new
  // rows (in any column) go with the rows.
  std::vector<HighsInt> col_count(new_cols + 1, 0), row_count(new_rows + 1, 0);
  for (int64_t e = 0; e < m.elems(); ++e) {
    int i = m.mrow[e], j = m.mcol[e];
    if (i >= old_rows)
      ++row_count[i - old_rows + 1];
    else if (j >= old_cols)
      ++col_count[j - old_cols + 1];
  }
  for (int k = 0; k < new_cols; ++k) col_count[k + 1] += col_count[k];
  for (int k = 0; k < new_rows; ++k) row_count[k + 1] += row_count[k];
  std::vector<HighsInt> col_index(col_count.back()), row_index(row_count.back());
  std::vector<double> col_value(col_count.back()), row_value(row_count.back());
  std::vector<HighsInt> col_next(col_count.begin(), col_count.end() - 1);
  std::vector<HighsInt> row_next(row_count.begin(), row_count.end() - 1);
  for (int64_t e = 0; e < m.elems(); ++e) {
    int i = m.mrow[e], j = m.mcol[e];
    if (i >= old_rows) {
      HighsInt pos = row_next[i - old_rows]++;
      row_index[pos] = j, row_value[pos] = m.mval[e];
    } else if (j >= old_cols) {
      HighsInt pos = col_next[j - old_cols]++;
      col_index[pos] = i, col_value[pos] = m.mval[e];
    }
  }
  if (new_cols > 0) {
    check(Highs_addCols(h_, new_cols, lp.cost.data() + old_cols, lp.col_lower.data() + old_cols,
                        lp.col_upper.data() + old_cols, col_count.back(), col_count.data(),
                        col_index.data(), col_value.data()),
          "the added columns", who);
    if (mip_)
      check(Highs_changeColsIntegralityByRange(h_, old_cols, m.cols() - 1,
                                               lp.integrality.data() + old_cols),
            "the types of the added columns", who);
    cost_.insert(cost_.end(), lp.cost.begin() + old_cols, lp.cost.end());
    col_lower_.insert(col_lower_.end(), lp.col_lower.begin() + old_cols, lp.col_lower.end());
    col_upper_.insert(col_upper_.end(), lp.col_upper.begin() + old_cols, lp.col_upper.end());
    if (mip_)
      integrality_.insert(integrality_.end(), lp.integrality.begin() + old_cols,
                          lp.integrality.end());
  }
  if (new_rows > 0) {
    check(Highs_addRows(h_, new_rows, lp.row_lower.data() + old_rows,
                        lp.row_upper.data() + old_rows, row_count.back(), row_count.data(),
                        row_index.data(), row_value.data()),
          "the added rows", who);
    row_lower_.insert(row_lower_.end(), lp.row_lower.begin() + old_rows, lp.row_lower.end());
    row_upper_.insert(row_upper_.end(), lp.row_upper.begin() + old_rows, lp.row_upper.end());
  }
}

void HighsInstance::send_values(const HighsBuild &build, const char *who) {
  const LpBuilder &lp = build.lp;
  std::vector<HighsInt> index;
  differences(cost_, lp.cost, index);
  if (!index.empty()) {
    check(Highs_changeColsCostBySet(h_, static_cast<HighsInt>(index.size()), index.data(),
                                    pick(lp.cost, index).data()),
          "changed costs", who);
    changed_ = true;
    cost_ = lp.cost;
  }
  bound_differences(col_lower_, lp.col_lower, col_upper_, lp.col_upper, index);
  if (!index.empty()) {
    check(Highs_changeColsBoundsBySet(h_, static_cast<HighsInt>(index.size()), index.data(),
                                      pick(lp.col_lower, index).data(),
                                      pick(lp.col_upper, index).data()),
          "changed column bounds", who);
    changed_ = true;
    col_lower_ = lp.col_lower, col_upper_ = lp.col_upper;
  }
  bound_differences(row_lower_, lp.row_lower, row_upper_, lp.row_upper, index);
  if (!index.empty()) {
    check(Highs_changeRowsBoundsBySet(h_, static_cast<HighsInt>(index.size()), index.data(),
                                      pick(lp.row_lower, index).data(),
                                      pick(lp.row_upper, index).data()),
          "changed row bounds", who);
    changed_ = true;
    row_lower_ = lp.row_lower, row_upper_ = lp.row_upper;
  }
  if (mip_) {
    differences(integrality_, lp.integrality, index);
    if (!index.empty()) {
      check(Highs_changeColsIntegralityBySet(h_, static_cast<HighsInt>(index.size()),
                                             index.data(), pick(lp.integrality, index).data()),
            "changed column types", who);
    changed_ = true;
      integrality_ = lp.integrality;
    }
  }
  if (!same(hessian_, build.hessian)) {
    const HighsCsc &q = build.hessian;
    check(Highs_passHessian(h_, lp.cols(), static_cast<HighsInt>(q.value.size()),
                            kHighsHessianFormatTriangular, q.start.data(), q.index.data(),
                            q.value.data()),
          "the quadratic objective", who);
    changed_ = true;
    hessian_ = q;
  }
  if (sense_ != build.sense) {
    check(Highs_changeObjectiveSense(
              h_, build.sense > 0 ? kHighsObjSenseMinimize : kHighsObjSenseMaximize),
          "the objective sense", who);
    changed_ = true;
    sense_ = build.sense;
  }
}

}  // namespace zorvan
