// Branching objects: a branching of a node into branches, each with bound
// changes, rows and pool cuts. The user builds them through ZRVS_bo_...;
// the search takes copies (BranchSpec) and branches by them.
#pragma once
#include <memory>
#include <string>
#include <vector>

#include "problem/cut_pool.h"
#include "zorvan/zrvs.h"

namespace zorvan {

struct BoundChange {
  char type;  // 'L', 'U' or 'B'
  int col;
  double value;
};

// Rows in the layout of ZRVSaddrows64 with 32-bit offsets.
struct BranchRows {
  std::vector<char> type;
  std::vector<double> rhs;
  std::vector<int> start{0};
  std::vector<int> col;
  std::vector<double> coef;
  int size() const { return static_cast<int>(type.size()); }
};

struct Branch {
  std::vector<BoundChange> bounds;
  BranchRows rows;
  std::vector<CutPtr> cuts;
};

struct BranchSpec {
  std::vector<Branch> branches;
  int priority = 0;
  int preferred = 0;
  int id = 0;
};

// Throws unless spec names only columns below ncols, rows of known types
// and cuts still in pool, and has a branch.
void validate_branching(const BranchSpec &spec, int ncols, const CutPool &pool,
                        const char *who);

}  // namespace zorvan

struct zrvs_branchobject {
  zrvs_problem *prob = nullptr;
  int isoriginal = 1;
  zorvan::BranchSpec spec;
  int last_code = 0;
  std::string last_error;
};

namespace zorvan {

// Live branching objects, for the checks of their handles.
zrvs_branchobject *create_branch_object(zrvs_problem *prob, int isoriginal);
void destroy_branch_object(zrvs_branchobject *bo);
// Throws naming `who` when bo is not a live branching object.
void check_branch_object(const zrvs_branchobject *bo, const char *who);

}  // namespace zorvan
