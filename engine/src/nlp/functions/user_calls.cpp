#include "nlp/functions/user_calls.h"

#include <cmath>
#include <cstdio>
#include <vector>

#include "nlp/functions/user_function_error.h"
#include "zorvan/zslp.h"

namespace zorvan::nlp {

namespace {

double step(double x, double scale) { return scale * std::max(1.0, std::fabs(x)); }

// Central-difference steps: about eps^(1/3) for first derivatives of values,
// eps^(1/4) for second derivatives of values.
constexpr double kFirst = 6.0555e-6;
constexpr double kSecond = 1.2207e-4;

}  // namespace

CallResult call_value(const UserFunction &f, const double *x, double *v) {
  if (f.kind == ZSLP_USERFUNC_VALUE) {
    take_user_function_error();
    *v = reinterpret_cast<ZSLP_userfunc_value>(f.function)(x, f.data);
    if (take_user_function_error()) return CallResult::failed;
  } else {
    if (reinterpret_cast<ZSLP_userfunc_derivs>(f.function)(x, nullptr, v, nullptr, f.data) != 0)
      return CallResult::failed;
  }
  return std::isfinite(*v) ? CallResult::ok : CallResult::not_finite;
}

CallResult call_gradient(const UserFunction &f, const double *x, double *v, double *grad) {
  int n = f.nargs;
  if (f.kind == ZSLP_USERFUNC_DERIVS) {
    // Buffers reused across calls (a solve calls from one thread at a time).
    thread_local std::vector<double> request;
    request.assign(n, 1.0);
    if (reinterpret_cast<ZSLP_userfunc_derivs>(f.function)(x, request.data(), v, grad, f.data) !=
        0)
      return CallResult::failed;
    if (!std::isfinite(*v)) return CallResult::not_finite;
    for (int i = 0; i < n; ++i)
      if (!std::isfinite(grad[i])) return CallResult::not_finite;
    return CallResult::ok;
  }
  CallResult r = call_value(f, x, v);
  if (r != CallResult::ok) return r;
  thread_local std::vector<double> y;
  y.assign(x, x + n);
  for (int i = 0; i < n; ++i) {
    double h = step(x[i], kFirst), up, down;
    y[i] = x[i] + h;
    if ((r = call_value(f, y.data(), &up)) != CallResult::ok) return r;
    y[i] = x[i] - h;
    if ((r = call_value(f, y.data(), &down)) != CallResult::ok) return r;
    y[i] = x[i];
    grad[i] = (up - down) / (2 * h);
  }
  return CallResult::ok;
}

CallResult call_hessian(const UserFunction &f, const double *x, double *hess) {
  int n = f.nargs;
  thread_local std::vector<double> y, up, down;
  y.assign(x, x + n);
  CallResult r;
  if (f.kind == ZSLP_USERFUNC_DERIVS) {
    up.resize(n), down.resize(n);
    double v;
    for (int i = 0; i < n; ++i) {
      double h = step(x[i], kFirst);
      y[i] = x[i] + h;
      if ((r = call_gradient(f, y.data(), &v, up.data())) != CallResult::ok) return r;
      y[i] = x[i] - h;
      if ((r = call_gradient(f, y.data(), &v, down.data())) != CallResult::ok) return r;
      y[i] = x[i];
      for (int j = 0; j < n; ++j) hess[j * n + i] = (up[j] - down[j]) / (2 * h);
    }
    for (int i = 0; i < n; ++i)
      for (int j = 0; j < i; ++j) hess[i * n + j] = hess[j * n + i] = 0.5 * (hess[i * n + j] + hess[j * n + i]);
    return CallResult::ok;
  }
  double centre;
  if ((r = call_value(f, x, &centre)) != CallResult::ok) return r;
  auto at = [&](int i, double di, int j, double dj, double *v) {
    y[i] += di;
    y[j] += dj;
    CallResult c = call_value(f, y.data(), v);
    y[i] = x[i], y[j] = x[j];
    return c;
  };
  for (int i = 0; i < n; ++i) {
    double hi = step(x[i], kSecond), up, down;
    if ((r = at(i, hi, i, 0, &up)) != CallResult::ok) return r;
    if ((r = at(i, -hi, i, 0, &down)) != CallResult::ok) return r;
    hess[i * n + i] = (up - 2 * centre + down) / (hi * hi);
    for (int j = 0; j < i; ++j) {
      double hj = step(x[j], kSecond), pp, pm, mp, mm;
      if ((r = at(i, hi, j, hj, &pp)) != CallResult::ok) return r;
      if ((r = at(i, hi, j, -hj, &pm)) != CallResult::ok) return r;
      if ((r = at(i, -hi, j, hj, &mp)) != CallResult::ok) return r;
      if ((r = at(i, -hi, j, -hj, &mm)) != CallResult::ok) return r;
      hess[i * n + j] = hess[j * n + i] = (pp - pm - mp + mm) / (4 * hi * hj);
    }
  }
  return CallResult::ok;
}

std::string describe_call(const UserFunction &f, const double *x, CallResult r) {
  std::string text = "user function " + f.name + (r == CallResult::failed ? " failed" : " gave a value that is not a finite number") + " at (";
  for (int i = 0; i < f.nargs && i < 8; ++i) {
    char buf[32];
    std::snprintf(buf, sizeof buf, "%s%g", i ? ", " : "", x[i]);
    text += buf;
  }
  return text + (f.nargs > 8 ? ", ...)" : ")");
}

}  // namespace zorvan::nlp
