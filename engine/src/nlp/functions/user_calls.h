// Calls of user functions: values, and first and second derivatives, exact
// where the function gives them and by central differences (steps scaled by
// |x|) where it does not.
#pragma once
#include <string>

#include "model/formulas.h"

namespace zorvan::nlp {

// Outcome of a call: the function failed (it said so), or gave a value that is
// not a finite number.
enum class CallResult { ok, not_finite, failed };

// f(x) for x[0..nargs-1].
CallResult call_value(const UserFunction &f, const double *x, double *v);
// f(x) and grad[0..nargs-1].
CallResult call_gradient(const UserFunction &f, const double *x, double *v, double *grad);
// The Hessian, nargs x nargs by rows, symmetric; f must have been callable at
// x. Differences of gradients (kind 5) or of values (kind 2).
CallResult call_hessian(const UserFunction &f, const double *x, double *hess);

// "user function NAME failed at (x1, x2)" and the like, for failure texts.
std::string describe_call(const UserFunction &f, const double *x, CallResult r);

}  // namespace zorvan::nlp
