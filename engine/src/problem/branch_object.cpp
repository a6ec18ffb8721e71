#include "problem/branch_object.h"

#include <cmath>
#include <mutex>
#include <unordered_set>

#include "core/errors.h"

namespace zorvan {

namespace {

std::mutex live_mutex;
std::unordered_set<const zrvs_branchobject *> &live() {
  static std::unordered_set<const zrvs_branchobject *> objects;
  return objects;
}
int next_id = 1;

}  // namespace

void validate_branching(const BranchSpec &spec, int ncols, const CutPool &pool,
                        const char *who) {
  if (spec.branches.empty())
    fail(ZRVS_ERR_ARGUMENT, "%s: the branching object has no branches", who);
  for (size_t b = 0; b < spec.branches.size(); ++b) {
    const Branch &br = spec.branches[b];
    for (const BoundChange &c : br.bounds)
      if (c.col >= ncols)
        fail(ZRVS_ERR_ARGUMENT,
             "%s: branch %d bounds column %d; the problem has %d columns", who,
             static_cast<int>(b), c.col, ncols);
    for (int j : br.rows.col)
      if (j >= ncols)
        fail(ZRVS_ERR_ARGUMENT, "%s: a row of branch %d names column %d; the problem has %d "
             "columns", who, static_cast<int>(b), j, ncols);
    for (const CutPtr &c : br.cuts)
      if (!pool.find(const_cast<zrvs_cut *>(c.get())))
        fail(ZRVS_ERR_ARGUMENT, "%s: branch %d loads a cut that was deleted from the pool", who,
             static_cast<int>(b));
  }
  if (spec.preferred >= static_cast<int>(spec.branches.size()))
    fail(ZRVS_ERR_ARGUMENT, "%s: the preferred branch %d does not exist", who, spec.preferred);
}

zrvs_branchobject *create_branch_object(zrvs_problem *prob, int isoriginal) {
  auto bo = std::make_unique<zrvs_branchobject>();
  bo->prob = prob;
  bo->isoriginal = isoriginal ? 1 : 0;
  std::lock_guard<std::mutex> lock(live_mutex);
  bo->spec.id = next_id++;
  live().insert(bo.get());
  return bo.release();
}

void destroy_branch_object(zrvs_branchobject *bo) {
  {
    std::lock_guard<std::mutex> lock(live_mutex);
    live().erase(bo);
  }
  delete bo;
}

void check_branch_object(const zrvs_branchobject *bo, const char *who) {
  if (!bo) fail(ZRVS_ERR_ARGUMENT, "%s: the branching object is NULL", who);
  std::lock_guard<std::mutex> lock(live_mutex);
  if (!live().count(bo))
    fail(ZRVS_ERR_ARGUMENT, "%s: not a live branching object (destroyed, or never created)",
         who);
}

}  // namespace zorvan
