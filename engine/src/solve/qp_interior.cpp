// Mehrotra's predictor-corrector on the QP with row activities as variables:
// v = (x, w), min g'v + v'Hv/2 subject to Ax - w = 0 and lo <= v <= up.
// Every finite bound gets a slack s >= 0 and a dual z >= 0; the Newton
// systems [H + D, -B'; B, 0] are solved by dense LU with partial pivoting.
#include "solve/qp_interior.h"

#include <algorithm>
#include <cmath>

namespace zorvan {

namespace {

constexpr int kMaxIterations = 200;
constexpr double kTolerance = 1e-9;
constexpr double kRegularisation = 1e-10;

// Dense LU with partial pivoting of a square row-major matrix.
class DenseLu {
 public:
  explicit DenseLu(int size) : n_(size), a_(static_cast<size_t>(size) * size), piv_(size) {}
  double &at(int i, int j) { return a_[static_cast<size_t>(i) * n_ + j]; }
  void clear() { std::fill(a_.begin(), a_.end(), 0.0); }
  bool factor() {
    for (int k = 0; k < n_; ++k) {
      int p = k;
      for (int i = k + 1; i < n_; ++i)
        if (std::fabs(at(i, k)) > std::fabs(at(p, k))) p = i;
      if (at(p, k) == 0.0 || !std::isfinite(at(p, k))) return false;
      piv_[k] = p;
      if (p != k)
        for (int j = 0; j < n_; ++j) std::swap(at(k, j), at(p, j));
      double inv = 1.0 / at(k, k);
      for (int i = k + 1; i < n_; ++i) {
        double f = at(i, k) *= inv;
        if (f == 0.0) continue;
        double *ri = &at(i, 0);
        const double *rk = &at(k, 0);
        for (int j = k + 1; j < n_; ++j) ri[j] -= f * rk[j];
      }
    }
    return true;
  }
  void solve(std::vector<double> &b) {
    // The factor's rows were swapped whole: all swaps first, then L.
    for (int k = 0; k < n_; ++k) std::swap(b[k], b[piv_[k]]);
    for (int k = 0; k < n_; ++k)
      for (int i = k + 1; i < n_; ++i) b[i] -= at(i, k) * b[k];
    for (int k = n_ - 1; k >= 0; --k) {
      for (int j = k + 1; j < n_; ++j) b[k] -= at(k, j) * b[j];
      b[k] /= at(k, k);
    }
  }

 private:
  int n_;
  std::vector<double> a_;
  std::vector<int> piv_;
};

double inf_norm(const std::vector<double> &v) {
  double r = 0.0;
  for (double e : v) r = std::max(r, std::fabs(e));
  return r;
}

struct Iterate {
  std::vector<double> v, lambda, sl, zl, su, zu;
};

struct Direction {
  std::vector<double> v, lambda, sl, zl, su, zu;
};

class InteriorPoint {
 public:
  explicit InteriorPoint(const QpModel &qp)
      : qp_(qp), n_(qp.n), m_(qp.m), nv_(qp.n + qp.m), lu_(qp.n + 2 * qp.m) {
    lo_.assign(qp.col_lower.begin(), qp.col_lower.end());
    lo_.insert(lo_.end(), qp.row_lower.begin(), qp.row_lower.end());
    up_.assign(qp.col_upper.begin(), qp.col_upper.end());
    up_.insert(up_.end(), qp.row_upper.begin(), qp.row_upper.end());
    g_.assign(nv_, 0.0);
    for (int j = 0; j < n_; ++j) g_[j] = qp.sense * qp.cost[j];
    h_.assign(static_cast<size_t>(n_) * n_, 0.0);
    for (int j = 0; j + 1 < static_cast<int>(qp.q.start.size()); ++j)
      for (HighsInt k = qp.q.start[j]; k < qp.q.start[j + 1]; ++k) {
        int i = qp.q.index[k];
        h_[static_cast<size_t>(i) * n_ + j] += qp.sense * qp.q.value[k];
        if (i != j) h_[static_cast<size_t>(j) * n_ + i] += qp.sense * qp.q.value[k];
      }
    for (int j = 0; j < nv_; ++j) {
      has_lo_.push_back(std::isfinite(lo_[j]));
      has_up_.push_back(std::isfinite(up_[j]));
    }
  }

  bool run(QpPoint &pt, int &iterations, std::string &why) {
    Iterate it = start();
    double scale_p = 1.0, scale_d = 1.0 + inf_norm(g_);
    for (int j = 0; j < nv_; ++j) {
      if (has_lo_[j]) scale_p = std::max(scale_p, std::fabs(lo_[j]));
      if (has_up_[j]) scale_p = std::max(scale_p, std::fabs(up_[j]));
    }
    for (iterations = 0; iterations < kMaxIterations; ++iterations) {
      residuals(it);
      double mu = complementarity(it);
      double rp = std::max({inf_norm(rp_), inf_norm(rl_), inf_norm(ru_)});
      double rd = inf_norm(rd_);
      if (rp <= kTolerance * scale_p && rd <= kTolerance * scale_d &&
          mu <= kTolerance * (1.0 + std::fabs(objective(it.v)))) {
        finish(it, pt);
        return true;
      }
      if (inf_norm(it.v) > 1e15 || !std::isfinite(mu)) break;
      factor(it);
      if (!factored_) {
        why = "its Newton system is singular";
        return false;
      }
      // Predictor: the affine direction.
      Direction aff = direction(it, 0.0, nullptr);
      double alpha_aff = step_length(it, aff);
      double mu_aff = complementarity_after(it, aff, alpha_aff);
      double sigma = mu > 0 ? std::pow(mu_aff / mu, 3) : 0.0;
      // Corrector with centring.
      Direction d = direction(it, sigma * mu, &aff);
      double alpha = std::min(1.0, 0.995 * step_length(it, d, false));
      apply(it, d, alpha);
    }
    why = "the interior point method did not converge (the problem may be infeasible or "
          "unbounded)";
    return false;
  }

 private:
  Iterate start() const {
    Iterate it;
    it.v.assign(nv_, 0.0);
    for (int j = 0; j < n_; ++j) it.v[j] = clip(0.0, j);
    std::vector<double> r = qp_.activity(std::vector<double>(it.v.begin(), it.v.begin() + n_));
    for (int i = 0; i < m_; ++i) it.v[n_ + i] = clip(r[i], n_ + i);
    it.lambda.assign(m_, 0.0);
    it.sl.assign(nv_, 0.0), it.zl.assign(nv_, 0.0), it.su.assign(nv_, 0.0), it.zu.assign(nv_, 0.0);
    for (int j = 0; j < nv_; ++j) {
      if (has_lo_[j]) it.sl[j] = std::max(it.v[j] - lo_[j], 1.0), it.zl[j] = 1.0;
      if (has_up_[j]) it.su[j] = std::max(up_[j] - it.v[j], 1.0), it.zu[j] = 1.0;
    }
    return it;
  }

  double clip(double v, int j) const {
    if (has_lo_[j] && has_up_[j]) return v < lo_[j] || v > up_[j] ? 0.5 * (lo_[j] + up_[j]) : v;
    if (has_lo_[j]) return std::max(v, lo_[j]);
    if (has_up_[j]) return std::min(v, up_[j]);
    return v;
  }

  std::vector<double> hessian_times(const std::vector<double> &v) const {
    std::vector<double> r(nv_, 0.0);
    for (int i = 0; i < n_; ++i) {
      const double *row = &h_[static_cast<size_t>(i) * n_];
      double s = 0.0;
      for (int j = 0; j < n_; ++j) s += row[j] * v[j];
      r[i] = s;
    }
    return r;
  }

  double objective(const std::vector<double> &v) const {
    std::vector<double> hv = hessian_times(v);
    double f = 0.0;
    for (int j = 0; j < n_; ++j) f += (g_[j] + 0.5 * hv[j]) * v[j];
    return f;
  }

  // r_d = Hv + g - B'lambda - zl + zu, r_p = Ax - w, r_l = v - sl - lo,
  // r_u = v + su - up (zero where the bound is absent).
  void residuals(const Iterate &it) {
    rd_ = hessian_times(it.v);
    std::vector<double> atl = qp_.times_transposed(it.lambda);
    for (int j = 0; j < nv_; ++j) {
      rd_[j] += g_[j] - it.zl[j] + it.zu[j];
      rd_[j] -= j < n_ ? atl[j] : -it.lambda[j - n_];
    }
    rp_ = qp_.activity(std::vector<double>(it.v.begin(), it.v.begin() + n_));
    for (int i = 0; i < m_; ++i) rp_[i] -= it.v[n_ + i];
    rl_.assign(nv_, 0.0), ru_.assign(nv_, 0.0);
    for (int j = 0; j < nv_; ++j) {
      if (has_lo_[j]) rl_[j] = it.v[j] - it.sl[j] - lo_[j];
      if (has_up_[j]) ru_[j] = it.v[j] + it.su[j] - up_[j];
    }
  }

  double complementarity(const Iterate &it) const {
    double sum = 0.0;
    int count = 0;
    for (int j = 0; j < nv_; ++j) {
      if (has_lo_[j]) sum += it.sl[j] * it.zl[j], ++count;
      if (has_up_[j]) sum += it.su[j] * it.zu[j], ++count;
    }
    return count ? sum / count : 0.0;
  }

  double complementarity_after(const Iterate &it, const Direction &d, double alpha) const {
    double sum = 0.0;
    int count = 0;
    for (int j = 0; j < nv_; ++j) {
      if (has_lo_[j])
        sum += (it.sl[j] + alpha * d.sl[j]) * (it.zl[j] + alpha * d.zl[j]), ++count;
      if (has_up_[j])
        sum += (it.su[j] + alpha * d.su[j]) * (it.zu[j] + alpha * d.zu[j]), ++count;
    }
    return count ? sum / count : 0.0;
  }

  void factor(const Iterate &it) {
    lu_.clear();
    for (int i = 0; i < n_; ++i)
      for (int j = 0; j < n_; ++j) lu_.at(i, j) = h_[static_cast<size_t>(i) * n_ + j];
    for (int j = 0; j < nv_; ++j) {
      double d = kRegularisation;
      if (has_lo_[j]) d += it.zl[j] / it.sl[j];
      if (has_up_[j]) d += it.zu[j] / it.su[j];
      lu_.at(j, j) += d;
    }
    // -B' in the upper right block, B in the lower left: B = [A, -I].
    for (int j = 0; j < n_; ++j)
      for (HighsInt k = qp_.a.start[j]; k < qp_.a.start[j + 1]; ++k) {
        int i = qp_.a.index[k];
        lu_.at(j, nv_ + i) -= qp_.a.value[k];
        lu_.at(nv_ + i, j) += qp_.a.value[k];
      }
    for (int i = 0; i < m_; ++i) {
      lu_.at(n_ + i, nv_ + i) = 1.0;
      lu_.at(nv_ + i, n_ + i) = -1.0;
      lu_.at(nv_ + i, nv_ + i) = kRegularisation;
    }
    factored_ = lu_.factor();
  }

  // The Newton direction for complementarity targets target - s z (minus
  // the product of the affine steps when `aff` is given).
  Direction direction(const Iterate &it, double target, const Direction *aff) {
    std::vector<double> rcl(nv_, 0.0), rcu(nv_, 0.0), rhs(nv_ + m_, 0.0);
    for (int j = 0; j < nv_; ++j) {
      rhs[j] = -rd_[j];
      if (has_lo_[j]) {
        rcl[j] = target - it.sl[j] * it.zl[j] - (aff ? aff->sl[j] * aff->zl[j] : 0.0);
        rhs[j] += (rcl[j] - it.zl[j] * rl_[j]) / it.sl[j];
      }
      if (has_up_[j]) {
        rcu[j] = target - it.su[j] * it.zu[j] - (aff ? aff->su[j] * aff->zu[j] : 0.0);
        rhs[j] -= (rcu[j] + it.zu[j] * ru_[j]) / it.su[j];
      }
    }
    for (int i = 0; i < m_; ++i) rhs[nv_ + i] = -rp_[i];
    lu_.solve(rhs);
    Direction d;
    d.v.assign(rhs.begin(), rhs.begin() + nv_);
    d.lambda.assign(rhs.begin() + nv_, rhs.end());
    d.sl.assign(nv_, 0.0), d.zl.assign(nv_, 0.0), d.su.assign(nv_, 0.0), d.zu.assign(nv_, 0.0);
    for (int j = 0; j < nv_; ++j) {
      if (has_lo_[j]) {
        d.sl[j] = d.v[j] + rl_[j];
        d.zl[j] = (rcl[j] - it.zl[j] * d.sl[j]) / it.sl[j];
      }
      if (has_up_[j]) {
        d.su[j] = -ru_[j] - d.v[j];
        d.zu[j] = (rcu[j] - it.zu[j] * d.su[j]) / it.su[j];
      }
    }
    return d;
  }

  // The longest step in [0, 1] (or without the cap) keeping slacks and duals
  // non-negative.
  double step_length(const Iterate &it, const Direction &d, bool cap = true) const {
    double alpha = cap ? 1.0 : 1e30;
    auto limit = [&alpha](double value, double change) {
      if (change < 0) alpha = std::min(alpha, -value / change);
    };
    for (int j = 0; j < nv_; ++j) {
      if (has_lo_[j]) limit(it.sl[j], d.sl[j]), limit(it.zl[j], d.zl[j]);
      if (has_up_[j]) limit(it.su[j], d.su[j]), limit(it.zu[j], d.zu[j]);
    }
    return alpha;
  }

  void apply(Iterate &it, const Direction &d, double alpha) const {
    for (int j = 0; j < nv_; ++j) {
      it.v[j] += alpha * d.v[j];
      it.sl[j] += alpha * d.sl[j], it.zl[j] += alpha * d.zl[j];
      it.su[j] += alpha * d.su[j], it.zu[j] += alpha * d.zu[j];
    }
    for (int i = 0; i < m_; ++i) it.lambda[i] += alpha * d.lambda[i];
  }

  // Duals back in the convention of the problem's own objective sense.
  void finish(const Iterate &it, QpPoint &pt) const {
    pt.x.assign(it.v.begin(), it.v.begin() + n_);
    for (int j = 0; j < n_; ++j) {
      if (has_lo_[j]) pt.x[j] = std::max(pt.x[j], lo_[j]);
      if (has_up_[j]) pt.x[j] = std::min(pt.x[j], up_[j]);
    }
    pt.y.resize(m_);
    for (int i = 0; i < m_; ++i) pt.y[i] = qp_.sense * it.lambda[i];
    pt.z.resize(n_);
    for (int j = 0; j < n_; ++j) pt.z[j] = qp_.sense * (it.zl[j] - it.zu[j]);
  }

  const QpModel &qp_;
  int n_, m_, nv_;
  DenseLu lu_;
  bool factored_ = false;
  std::vector<double> lo_, up_, g_, h_;
  std::vector<bool> has_lo_, has_up_;
  std::vector<double> rd_, rp_, rl_, ru_;
};

}  // namespace

bool solve_qp_interior(const QpModel &qp, QpPoint &pt, int &iterations, std::string &why) {
  iterations = 0;
  if (qp.n + 2 * qp.m > kDenseQpLimit) {
    why = "the problem is too large for the dense interior point method (" +
          std::to_string(qp.n) + " columns, " + std::to_string(qp.m) + " rows)";
    return false;
  }
  InteriorPoint ipm(qp);
  return ipm.run(pt, iterations, why);
}

}  // namespace zorvan
