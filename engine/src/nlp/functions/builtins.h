// Values, first and second derivatives of the built-in functions of one
// argument and of pwl. Kinks take a documented one-sided choice: abs'(0) = 1
// (the right derivative); sign' = 0 everywhere; pwl at a breakpoint takes the
// piece to its right, and outside its breakpoints extends the first or last
// piece. Second derivatives of these are 0.
#pragma once
#include "nlp/formula/graph.h"

namespace zorvan::nlp {

// f(x) for a unary op; false when x lies outside the function's domain or the
// value is not finite.
bool unary_value(Op op, double x, double *v);
// f'(x) and f''(x) given v = f(x); false where they are not finite (sqrt at
// 0, asin and acos at -1 and 1).
bool unary_derivatives(Op op, double x, double v, double *d1, double *d2);

// pwl through n breakpoints pts = x1, y1, x2, y2, ... (x non-decreasing, n >=
// 2) at x: the value and the slope of the piece used. False when the piece
// is vertical (extending a piece whose two ends share their x).
bool pwl_value(const double *pts, int n, double x, double *v, double *slope);

}  // namespace zorvan::nlp
