// The `expression` object: a constant, a linear part and a quadratic part,
// each part ordered by variable identifier.
//
// The parts are kept as vectors with a sorted, duplicate-free prefix and an
// unsorted tail of recent insertions. Adding is a push onto the tail; the
// tail is sorted and merged into the prefix (adding coefficients of equal
// keys in insertion order) before the part is read, and whenever it has
// grown larger than the prefix. Accumulating n terms therefore costs
// O(n log n) at most, whatever the order of the variables.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include <algorithm>
#include <cstdint>
#include <vector>

namespace zrv {

struct LinEntry {
  uint64_t id;    // the variable's identifier
  PyObject *var;  // owned reference to the `var`
  double coef;
  bool operator<(const LinEntry &o) const { return id < o.id; }
  bool SameKey(const LinEntry &o) const { return id == o.id; }
  void Release() const { Py_DECREF(var); }
  void Retain() const { Py_INCREF(var); }
};

struct QuadEntry {
  uint64_t id1, id2;        // id1 <= id2
  PyObject *var1, *var2;    // owned references
  double coef;
  bool operator<(const QuadEntry &o) const {
    return id1 < o.id1 || (id1 == o.id1 && id2 < o.id2);
  }
  bool SameKey(const QuadEntry &o) const { return id1 == o.id1 && id2 == o.id2; }
  void Release() const {
    Py_DECREF(var1);
    Py_DECREF(var2);
  }
  void Retain() const {
    Py_INCREF(var1);
    Py_INCREF(var2);
  }
};

template <class Entry>
class Part {
 public:
  Part() = default;
  Part(const Part &) = delete;
  Part &operator=(const Part &) = delete;
  ~Part() {
    for (const Entry &e : items_) e.Release();
  }
  // Takes over the references held by e.
  void Push(const Entry &e) {
    items_.push_back(e);
    if (items_.size() - sorted_ > std::max<size_t>(sorted_, 1024)) Normalise();
  }
  // Sorted by key, one entry per key.
  const std::vector<Entry> &Items() {
    Normalise();
    return items_;
  }
  // Entries as inserted (keys may repeat); for merging into another part.
  const std::vector<Entry> &Raw() const { return items_; }
  std::vector<Entry> &MutableRaw() { return items_; }
  bool Empty() const { return items_.empty(); }
  void Reserve(size_t n) { items_.reserve(n); }
  void Normalise();
  // Appends the entries of src times factor, taking new references. An
  // empty part takes over src's order as it is: a copy of an ordered part
  // is ordered without sorting it again.
  void AppendScaled(const Part &src, double factor);

 private:
  std::vector<Entry> items_;
  size_t sorted_ = 0;
};

using LinearPart = Part<LinEntry>;
using QuadraticPart = Part<QuadEntry>;

template <class Entry>
void Part<Entry>::AppendScaled(const Part &src, double factor) {
  const bool was_empty = items_.empty();
  items_.reserve(items_.size() + src.items_.size());  // the only step that can throw
  for (Entry y : src.items_) {
    y.coef *= factor;
    y.Retain();
    items_.push_back(y);
  }
  if (was_empty)
    sorted_ = src.sorted_;
  else if (items_.size() - sorted_ > std::max<size_t>(sorted_, 1024))
    Normalise();
}

template <class Entry>
void Part<Entry>::Normalise() {
  size_t n = items_.size();
  if (sorted_ == n) return;
  auto tail = items_.begin() + static_cast<std::ptrdiff_t>(sorted_);
  if (!std::is_sorted(tail, items_.end())) std::stable_sort(tail, items_.end());
  // Fast case: the tail continues the prefix.
  if (sorted_ == 0 || *(tail - 1) < *tail) {
    size_t w = sorted_;
    for (size_t r = sorted_; r < n; ++r) {
      if (w > sorted_ && items_[w - 1].SameKey(items_[r])) {
        items_[w - 1].coef += items_[r].coef;
        items_[r].Release();
      } else {
        items_[w++] = items_[r];
      }
    }
    items_.resize(w);
    sorted_ = w;
    return;
  }
  // General case: merge the prefix and the sorted tail; for equal keys the
  // prefix comes first, then the tail in insertion order.
  std::vector<Entry> out;
  out.reserve(n);
  size_t i = 0, j = sorted_;
  while (i < sorted_ || j < n) {
    const Entry &e = (j >= n || (i < sorted_ && !(items_[j] < items_[i]))) ? items_[i++] : items_[j++];
    if (!out.empty() && out.back().SameKey(e)) {
      out.back().coef += e.coef;
      e.Release();
    } else {
      out.push_back(e);
    }
  }
  items_.swap(out);
  sorted_ = items_.size();
}

}  // namespace zrv

struct ExpressionObject {
  PyObject_HEAD
  double constant;
  zrv::LinearPart *linear;        // null when empty
  zrv::QuadraticPart *quadratic;  // null when empty
  uint64_t reserved;
};

namespace zrv {

inline ExpressionObject *AsExpression(PyObject *o) { return reinterpret_cast<ExpressionObject *>(o); }

// An expression without linear and quadratic entries.
bool ExpressionIsConstant(PyObject *e);

// A new empty expression with the given constant.
PyObject *NewExpression(double constant);

// Adds coef * var to the linear part (a new reference to var is taken).
int ExpressionAddLinear(PyObject *e, PyObject *var, double coef);
// Room for n more linear entries, for a sum whose length is known. 0 or -1.
int ExpressionReserveLinear(PyObject *e, size_t n);
// Adds coef * a * b to the quadratic part in canonical order.
int ExpressionAddQuadratic(PyObject *e, PyObject *a, PyObject *b, double coef);
// Adds factor times o (a number, var, linterm, quadterm or expression) to e
// in place. -1 with ModelError set for another operand.
int ExpressionAddScaled(PyObject *e, PyObject *o, double factor);

// Copy with scale factor: a number becomes a float, a var or term an
// expression, an expression a scaled copy (entries becoming exactly zero are
// left out) and a nonlinear tree a copy through the nonlinear operations.
PyObject *CopyScaled(PyObject *o, double factor);

// The accumulator of in-place sums: left may be null or None (the start), a
// number, an expression (changed in place and returned) or a nonlinear
// node; right is added with the factor (1.0 or -1.0). New reference.
PyObject *Accumulate(PyObject *left, PyObject *right, double factor);

// Ordered entries of the parts (empty vectors when absent).
const std::vector<LinEntry> &ExpressionLinear(PyObject *e);
const std::vector<QuadEntry> &ExpressionQuadratic(PyObject *e);

// Multiplies the constant and every coefficient of e in place.
void ExpressionScaleInPlace(PyObject *e, double factor);

// Printing of an expression.
PyObject *ExpressionRepr(PyObject *self);

}  // namespace zrv
