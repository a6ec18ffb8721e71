#include "solve/analysis/iis.h"

#include <cmath>
#include <map>
#include <memory>

#include "core/errors.h"
#include "model/evaluate.h"
#include "solve/highs/builder.h"

namespace zorvan {

namespace {

double highs_value(double v) {
  return v >= ZRVS_PLUSINFINITY ? kHighsInf : v <= -ZRVS_PLUSINFINITY ? -kHighsInf : v;
}

// The relaxation as a feasibility LP whose rows and bounds can be switched
// off and on.
class FeasibilityLp {
 public:
  FeasibilityLp(const Model &m, const char *who) : h_(Highs_create(), Highs_destroy) {
    const int n = m.cols(), r = m.rows();
    Highs_setBoolOptionValue(h_.get(), "output_flag", 0);
    lb_.resize(n), ub_.resize(n), lo_.resize(r), up_.resize(r);
    for (int j = 0; j < n; ++j) lb_[j] = highs_value(m.lb[j]), ub_[j] = highs_value(m.ub[j]);
    for (int i = 0; i < r; ++i) {
      double lower, upper;
      row_sides(m, i, &lower, &upper);
      lo_[i] = highs_value(lower), up_[i] = highs_value(upper);
    }
    Compressed a = m.by_columns();
    std::vector<HighsInt> start(a.start.begin(), a.start.end()), index(a.index.begin(), a.index.end());
    std::vector<double> cost(static_cast<size_t>(n), 0.0);
    if (Highs_passLp(h_.get(), n, r, static_cast<HighsInt>(a.value.size()),
                     kHighsMatrixFormatColwise, kHighsObjSenseMinimize, 0.0, cost.data(),
                     lb_.data(), ub_.data(), lo_.data(), up_.data(), start.data(), index.data(),
                     a.value.data()) == kHighsStatusError)
      fail(ZRVS_ERR_INTERNAL, "%s: HiGHS refused the feasibility LP", who);
  }
  void row(int i, bool on) {
    Highs_changeRowBounds(h_.get(), i, on ? lo_[i] : -kHighsInf, on ? up_[i] : kHighsInf);
  }
  void bound(int j, char side, bool on) {
    cur_lb(j) = side == 'L' ? (on ? lb_[j] : -kHighsInf) : cur_lb(j);
    cur_ub(j) = side == 'U' ? (on ? ub_[j] : kHighsInf) : cur_ub(j);
    Highs_changeColBounds(h_.get(), j, cur_lb(j), cur_ub(j));
  }
  bool infeasible() {
    Highs_run(h_.get());
    return Highs_getModelStatus(h_.get()) == kHighsModelStatusInfeasible;
  }
  bool ray(std::vector<double> &y) {
    HighsInt has = 0;
    y.assign(lo_.size(), 0.0);
    return Highs_getDualRay(h_.get(), &has, y.data()) != kHighsStatusError && has;
  }
  bool finite(int j, char side) const { return std::isfinite(side == 'L' ? lb_[j] : ub_[j]); }

 private:
  double &cur_lb(int j) { return lbnow_.emplace(j, lb_[j]).first->second; }
  double &cur_ub(int j) { return ubnow_.emplace(j, ub_[j]).first->second; }
  std::unique_ptr<void, void (*)(void *)> h_;
  std::vector<double> lb_, ub_, lo_, up_;
  std::map<int, double> lbnow_, ubnow_;
};

struct Member {
  bool is_row;
  int index;
  char side;
};

}  // namespace

bool find_iis(const Model &m, const std::vector<int> &banned, Iis &out, const char *who) {
  FeasibilityLp lp(m, who);
  for (int i : banned) lp.row(i, false);
  if (!lp.infeasible()) return false;
  // Candidates: the support of a dual ray when there is one, else all.
  std::vector<char> row_in(static_cast<size_t>(m.rows()), 1);
  for (int i : banned) row_in[i] = 0;
  std::vector<Member> members;
  std::vector<double> y;
  const bool has_ray = lp.ray(y);
  std::vector<double> w(static_cast<size_t>(m.cols()), 0.0);
  if (has_ray)
    for (size_t e = 0; e < m.mval.size(); ++e) w[m.mcol[e]] += y[m.mrow[e]] * m.mval[e];
  for (int i = 0; i < m.rows(); ++i)
    if (row_in[i] && (!has_ray || std::fabs(y[i]) > 1e-9)) members.push_back({true, i, 0});
  for (int j = 0; j < m.cols(); ++j)
    for (char side : {'L', 'U'})
      if (lp.finite(j, side) && (!has_ray || std::fabs(w[j]) > 1e-9))
        members.push_back({false, j, side});
  auto set = [&](const Member &k, bool on) {
    if (k.is_row)
      lp.row(k.index, on);
    else
      lp.bound(k.index, k.side, on);
  };
  if (has_ray) {
    // Everything outside the support off; the support alone must stay
    // infeasible, else start from everything.
    std::vector<char> keep_row(static_cast<size_t>(m.rows()), 0);
    std::map<std::pair<int, char>, char> keep_bound;
    for (const Member &k : members)
      k.is_row ? void(keep_row[k.index] = 1) : void(keep_bound[{k.index, k.side}] = 1);
    for (int i = 0; i < m.rows(); ++i)
      if (row_in[i] && !keep_row[i]) lp.row(i, false);
    for (int j = 0; j < m.cols(); ++j)
      for (char side : {'L', 'U'})
        if (lp.finite(j, side) && !keep_bound.count({j, side})) lp.bound(j, side, false);
    if (!lp.infeasible()) fail(ZRVS_ERR_INTERNAL, "%s: the dual ray does not prove infeasibility", who);
  }
  // Deletion filter: a member whose removal keeps the system infeasible
  // is not needed.
  std::vector<Member> needed;
  for (const Member &k : members) {
    set(k, false);
    if (!lp.infeasible()) {
      set(k, true);
      needed.push_back(k);
    }
  }
  out = Iis();
  for (const Member &k : needed) {
    if (k.is_row)
      out.rows.push_back(k.index);
    else
      out.cols.push_back(k.index), out.bounds.push_back(k.side);
  }
  return true;
}

}  // namespace zorvan
