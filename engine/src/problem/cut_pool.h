// The problem's cut pool: cuts the user stores (valid inequalities over the
// problem's columns), identified by handles that stay valid until the cut is
// deleted from the pool. The search adds pool cuts that its node solutions
// violate, and those the user loads at a node.
#pragma once
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

#include "zorvan/zrvs.h"

// One cut: type (a user tag), row type 'L', 'G' or 'E', right-hand side and
// coefficients. Its address is the handle ZRVScut.
struct zrvs_cut {
  int type = 0;
  char rowtype = 'L';
  double rhs = 0.0;
  std::vector<int> col;
  std::vector<double> coef;
  int64_t serial = 0;  // order of storing; also a row key in the search
};

namespace zorvan {

using CutPtr = std::shared_ptr<const zrvs_cut>;

// How a cut type is compared with the type asked for: every cut, equal
// types, some bit in common, or all bits of the asked type present.
enum CutInterp { cut_any = -1, cut_equal = 1, cut_some_bits = 2, cut_all_bits = 3 };

// Throws unless interp is one of the CutInterp values.
void check_cut_interp(int interp, const char *who);
bool cut_matches(const zrvs_cut &c, int cuttype, int interp);
// a.x of the cut at x (the problem's columns).
double cut_activity(const zrvs_cut &c, const double *x);
// How far x is from satisfying the cut (positive: violated).
double cut_violation(const zrvs_cut &c, const double *x);
// rhs - a.x, as the slack of a row.
inline double cut_slack(const zrvs_cut &c, const double *x) { return c.rhs - cut_activity(c, x); }

// Checks and copies a batch of cuts given as rows (the layout of
// ZRVSaddrows64), against ncols columns. Row types 'L', 'G', 'E'.
std::vector<std::shared_ptr<zrvs_cut>> make_cuts(int ncuts, const int cuttype[],
                                                 const char rowtype[], const double rhs[],
                                                 const int64_t start[], const int colind[],
                                                 const double cutcoef[], int ncols,
                                                 const char *who);

class CutPool {
 public:
  // Stores a cut and returns its handle. nodups 0 stores every cut; 1 returns
  // the handle of an equal cut (type, row type, rhs and coefficients) already
  // stored instead; 2 as 1 whatever the type.
  ZRVScut store(std::shared_ptr<zrvs_cut> cut, int nodups);
  // The cut of a handle, or null when the handle is not in the pool.
  CutPtr find(ZRVScut handle) const;
  // As find; throws naming `who` for a handle not in the pool.
  CutPtr require(ZRVScut handle, const char *who) const;
  void remove(ZRVScut handle);
  // Every cut, in the order stored.
  const std::vector<CutPtr> &cuts() const { return cuts_; }
  bool empty() const { return cuts_.empty(); }
  // Empties the pool (a new model).
  void clear() { cuts_.clear(), where_.clear(); }

 private:
  std::vector<CutPtr> cuts_;
  std::unordered_map<const zrvs_cut *, CutPtr> where_;
  int64_t next_serial_ = 1;
};

}  // namespace zorvan
