#include "nlp/ad/forward_pass.h"

#include <cmath>
#include <cstdio>

#include "nlp/functions/builtins.h"
#include "nlp/functions/user_calls.h"

namespace zorvan::nlp {

namespace {
std::string number(double v) {
  char buf[40];
  std::snprintf(buf, sizeof buf, "%.17g", v);
  return buf;
}
bool is_integer(double v) { return v == std::floor(v); }
}  // namespace

void ForwardPass::prepare(const Graph &g, const FormulaStore &store) {
  g_ = &g, store_ = &store;
  size_t n = g.size();
  val.assign(n, 0), da.assign(n, 0), db.assign(n, 0);
  daa.assign(n, 0), dab.assign(n, 0), dbb.assign(n, 0);
  sel.assign(n, 0), uat.assign(n, -1), hat.assign(n, -1);
  size_t grads = 0, hessians = 0;
  for (size_t i = 0; i < n; ++i) {
    switch (g.op[i]) {
      case Op::add: da[i] = 1, db[i] = 1; break;
      case Op::sub: da[i] = 1, db[i] = -1; break;
      case Op::neg: da[i] = -1; break;
      case Op::mul: dab[i] = 1; break;
      case Op::user: {
        size_t m = g.b[i];
        uat[i] = static_cast<int>(grads), hat[i] = static_cast<int>(hessians);
        grads += m, hessians += m * m;
        break;
      }
      default: break;
    }
  }
  ugrad.assign(grads, 0), uhess.assign(hessians, 0);
}

EvalFailure ForwardPass::domain(int i, const std::string &what) {
  failure_ = what;
  return EvalFailure::domain;
}

EvalFailure ForwardPass::user_node(int i, int level, bool gradient_held) {
  const Graph &g = *g_;
  const UserFunction &f = store_->user_function(static_cast<int>(g.num[i]));
  int m = g.b[i];
  args_.resize(m);
  for (int k = 0; k < m; ++k) args_[k] = val[g.list[g.aux[i] + k]];
  CallResult r = CallResult::ok;
  double v;
  if (level == 0)
    r = call_value(f, args_.data(), &val[i]);
  else if (!gradient_held)
    r = call_gradient(f, args_.data(), &v, &ugrad[uat[i]]);
  if (r == CallResult::ok && level == 2) r = call_hessian(f, args_.data(), &uhess[hat[i]]);
  if (r == CallResult::ok) return EvalFailure::none;
  failure_ = describe_call(f, args_.data(), r);
  return r == CallResult::failed ? EvalFailure::user_function : EvalFailure::domain;
}

EvalFailure ForwardPass::values(const double *x) {
  const Graph &g = *g_;
  const int n = g.size();
  const Op *op = g.op.data();
  const int *a = g.a.data(), *b = g.b.data();
  double *v = val.data();
  for (int i = 0; i < n; ++i) {
    switch (op[i]) {
      case Op::constant: v[i] = g.num[i]; break;
      case Op::variable: v[i] = x[g.aux[i]]; break;
      case Op::add: v[i] = v[a[i]] + v[b[i]]; break;
      case Op::sub: v[i] = v[a[i]] - v[b[i]]; break;
      case Op::mul: v[i] = v[a[i]] * v[b[i]]; break;
      case Op::neg: v[i] = -v[a[i]]; break;
      case Op::div: {
        double y = v[b[i]];
        if (y == 0) return domain(i, "division by zero (" + number(v[a[i]]) + " / 0)");
        v[i] = v[a[i]] / y;
        break;
      }
      case Op::pow: {
        double base = v[a[i]], e = v[b[i]];
        if (base < 0 && !is_integer(e))
          return domain(i, "** of a negative base (" + number(base) +
                               ") with a non-integer exponent (" + number(e) + ")");
        if (base == 0 && e < 0) return domain(i, "division by zero (0 ** " + number(e) + ")");
        double p = e == 2 ? base * base : std::pow(base, e);
        if (!std::isfinite(p))
          return domain(i, number(base) + " ** " + number(e) + " is not a finite number");
        v[i] = p;
        break;
      }
      // Sine and cosine keep their derivatives, which come with the value.
      case Op::sin:
      case Op::cos: {
        double s, c;
        sincos(v[a[i]], &s, &c);
        if (op[i] == Op::sin)
          v[i] = s, da[i] = c;
        else
          v[i] = c, da[i] = -s;
        daa[i] = -v[i];
        break;
      }
      case Op::exp: {
        double e = std::exp(v[a[i]]);
        if (!std::isfinite(e))
          return domain(i, "exp of " + number(v[a[i]]) + " is not a finite number");
        v[i] = da[i] = daa[i] = e;
        break;
      }
      case Op::min:
      case Op::max: {
        int first = g.aux[i], count = b[i], best = 0;
        double bv = v[g.list[first]];
        for (int k = 1; k < count; ++k) {
          double c = v[g.list[first + k]];
          if (op[i] == Op::min ? c < bv : c > bv) bv = c, best = k;
        }
        v[i] = bv, sel[i] = best;
        break;
      }
      case Op::pwl: {
        double slope;
        if (!pwl_value(g.points.data() + g.aux[i], b[i], v[a[i]], &v[i], &slope))
          return domain(i, "pwl cannot be extended beyond a vertical end piece to " +
                               number(v[a[i]]));
        da[i] = slope;
        break;
      }
      case Op::user: {
        EvalFailure f = user_node(i, 0, false);
        if (f != EvalFailure::none) return f;
        break;
      }
      default: {
        double arg = v[a[i]];
        if (!unary_value(op[i], arg, &v[i])) {
          bool bounded = op[i] == Op::log || op[i] == Op::log10 || op[i] == Op::sqrt ||
                         op[i] == Op::asin || op[i] == Op::acos;
          return domain(i, std::string(op_name(op[i])) + " of " + number(arg) +
                               (bounded ? ": the argument is outside its domain"
                                        : " is not a finite number"));
        }
      }
    }
  }
  return EvalFailure::none;
}

EvalFailure ForwardPass::derivatives(int level, int held) {
  const Graph &g = *g_;
  const int n = g.size();
  const Op *op = g.op.data();
  const int *a = g.a.data(), *b = g.b.data();
  const double *v = val.data();
  const bool second = level >= 2;
  for (int i = 0; i < n; ++i) {
    switch (op[i]) {
      case Op::constant:
      case Op::variable:
      case Op::add:
      case Op::sub:
      case Op::neg:
      case Op::sin:
      case Op::cos:
      case Op::exp:
      case Op::min:
      case Op::max:
      case Op::pwl: break;  // constant or kept by the value pass
      case Op::mul: da[i] = v[b[i]], db[i] = v[a[i]]; break;
      case Op::div: {
        double y = v[b[i]], q = v[i];
        da[i] = 1 / y, db[i] = -q / y;
        if (second) dab[i] = -1 / (y * y), dbb[i] = 2 * q / (y * y);
        break;
      }
      case Op::pow: {
        double base = v[a[i]], e = v[b[i]], p = v[i];
        if (g.is_constant(b[i])) {
          double d1 = e == 2 ? 2 * base : (e == 0 ? 0 : e * std::pow(base, e - 1));
          double d2 = !second ? 0 : e == 2 ? 2 : (e == 0 ? 0 : e * (e - 1) * std::pow(base, e - 2));
          if (!std::isfinite(d1) || !std::isfinite(d2))
            return domain(i, "** has no derivative at base " + number(base) + ", exponent " +
                                 number(e));
          da[i] = d1, daa[i] = d2;
        } else {
          if (!(base > 0))
            return domain(i, "** with a variable exponent needs a positive base for its "
                             "derivatives, not " + number(base));
          double ln = std::log(base);
          da[i] = e * p / base, db[i] = p * ln;
          if (second) {
            daa[i] = e * (e - 1) * p / (base * base);
            dab[i] = p / base * (1 + e * ln);
            dbb[i] = p * ln * ln;
          }
        }
        break;
      }
      case Op::user: {
        EvalFailure f = user_node(i, level, held >= 1);
        if (f != EvalFailure::none) return f;
        break;
      }
      default: {
        double arg = v[a[i]], d1, d2;
        if (!unary_derivatives(op[i], arg, v[i], &d1, &d2))
          return domain(i, std::string(op_name(op[i])) + " has no derivative at " + number(arg));
        da[i] = d1, daa[i] = d2;
      }
    }
  }
  return EvalFailure::none;
}

}  // namespace zorvan::nlp
