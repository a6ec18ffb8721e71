// The events the search fires at its nodes, for the problem's node
// callbacks. The search calls these at the moments their names promise; the
// default does nothing, so a search without callbacks pays nothing.
#pragma once
#include "problem/branch_object.h"

struct zrvs_problem;

namespace zorvan {

class SearchEvents {
 public:
  virtual ~SearchEvents() = default;
  // A node was made: its parent, its own number and its branch.
  virtual void new_node(int /*parent*/, int /*node*/, int /*branch*/) {}
  // Before the node's LP; true drops the node as infeasible.
  virtual bool prenode() { return false; }
  // After the node's LP and its cuts; true drops the node as infeasible.
  virtual bool optnode() { return false; }
  // The node's LP was solved (before cuts and branching).
  virtual void nodelpsolved() {}
  // The node was found infeasible.
  virtual void infnode() {}
  // The node was dropped as no better than the incumbent.
  virtual void nodecutoff(int /*node*/) {}
  // The search's branching of the node; may be replaced.
  virtual void change_branching(BranchSpec & /*spec*/) {}
  // An integer solution is about to be accepted: true rejects it; cutoff
  // may be lowered.
  virtual bool preintsol(int /*soltype*/, double & /*cutoff*/) { return false; }
  // A new incumbent was accepted.
  virtual void intsol() {}
  // A worker starts on its own problem, and ends.
  virtual void mipthread(zrvs_problem * /*worker*/) {}
  virtual void destroymt() {}
};

}  // namespace zorvan
