#include "nlp/functions/builtins.h"

#include <cmath>

namespace zorvan::nlp {

bool unary_value(Op op, double x, double *v) {
  switch (op) {
    case Op::neg: *v = -x; break;
    case Op::exp: *v = std::exp(x); break;
    case Op::log:
      if (!(x > 0)) return false;
      *v = std::log(x);
      break;
    case Op::log10:
      if (!(x > 0)) return false;
      *v = std::log10(x);
      break;
    case Op::sin: *v = std::sin(x); break;
    case Op::cos: *v = std::cos(x); break;
    case Op::tan: *v = std::tan(x); break;
    case Op::asin:
      if (!(x >= -1 && x <= 1)) return false;
      *v = std::asin(x);
      break;
    case Op::acos:
      if (!(x >= -1 && x <= 1)) return false;
      *v = std::acos(x);
      break;
    case Op::atan: *v = std::atan(x); break;
    case Op::abs: *v = std::fabs(x); break;
    case Op::sign: *v = x > 0 ? 1.0 : (x < 0 ? -1.0 : 0.0); break;
    case Op::erf: *v = std::erf(x); break;
    case Op::erfc: *v = std::erfc(x); break;
    case Op::sqrt:
      if (!(x >= 0)) return false;
      *v = std::sqrt(x);
      break;
    default: return false;
  }
  return std::isfinite(*v);
}

bool unary_derivatives(Op op, double x, double v, double *d1, double *d2) {
  constexpr double two_over_sqrt_pi = 1.1283791670955126;
  constexpr double ln10 = 2.302585092994046;
  switch (op) {
    case Op::neg: *d1 = -1, *d2 = 0; break;
    case Op::exp: *d1 = v, *d2 = v; break;
    case Op::log: *d1 = 1 / x, *d2 = -1 / (x * x); break;
    case Op::log10: *d1 = 1 / (x * ln10), *d2 = -1 / (x * x * ln10); break;
    case Op::sin: *d1 = std::cos(x), *d2 = -v; break;
    case Op::cos: *d1 = -std::sin(x), *d2 = -v; break;
    case Op::tan: *d1 = 1 + v * v, *d2 = 2 * v * (1 + v * v); break;
    case Op::asin:
    case Op::acos: {
      double s = 1 - x * x;
      if (!(s > 0)) return false;
      double r = 1 / std::sqrt(s);
      *d1 = r, *d2 = x * r * r * r;
      if (op == Op::acos) *d1 = -*d1, *d2 = -*d2;
      break;
    }
    case Op::atan: {
      double s = 1 / (1 + x * x);
      *d1 = s, *d2 = -2 * x * s * s;
      break;
    }
    case Op::abs: *d1 = x >= 0 ? 1.0 : -1.0, *d2 = 0; break;
    case Op::sign: *d1 = 0, *d2 = 0; break;
    case Op::erf:
    case Op::erfc: {
      double g = two_over_sqrt_pi * std::exp(-x * x);
      *d1 = g, *d2 = -2 * x * g;
      if (op == Op::erfc) *d1 = -*d1, *d2 = -*d2;
      break;
    }
    case Op::sqrt:
      if (!(v > 0)) return false;
      *d1 = 0.5 / v, *d2 = -0.25 / (v * v * v);
      break;
    default: return false;
  }
  return std::isfinite(*d1) && std::isfinite(*d2);
}

bool pwl_value(const double *pts, int n, double x, double *v, double *slope) {
  // The piece from breakpoint i-1 to i, where i is the first breakpoint with
  // xi > x, or the first or last piece when there is none before or after.
  int i = 0;
  while (i < n && pts[2 * i] <= x) ++i;
  if (i == 0) i = 1;
  if (i == n) i = n - 1;
  double x0 = pts[2 * i - 2], y0 = pts[2 * i - 1], x1 = pts[2 * i], y1 = pts[2 * i + 1];
  if (x1 == x0) {
    // A jump: only reachable when extending a vertical end piece.
    if (x != x0) return false;
    *v = y1, *slope = 0;
    return true;
  }
  *slope = (y1 - y0) / (x1 - x0);
  *v = y0 + *slope * (x - x0);
  return std::isfinite(*v);
}

}  // namespace zorvan::nlp
