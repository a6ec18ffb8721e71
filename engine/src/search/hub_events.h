// Node events sent to the problem's registered callbacks (the event hub).
#pragma once
#include "problem/problem.h"
#include "search/search_events.h"

namespace zorvan {

// True when the problem has callbacks of a kind that only the engine's
// search fires.
bool has_node_callbacks(const zrvs_problem &p);

class HubEvents : public SearchEvents {
 public:
  explicit HubEvents(zrvs_problem &p) : p_(p) {}
  void new_node(int parent, int node, int branch) override;
  bool prenode() override;
  bool optnode() override;
  void nodelpsolved() override;
  void infnode() override;
  void nodecutoff(int node) override;
  void change_branching(BranchSpec &spec) override;
  bool preintsol(int soltype, double &cutoff) override;
  void intsol() override;
  void mipthread(zrvs_problem *worker) override;
  void destroymt() override;

 private:
  zrvs_problem &p_;
};

}  // namespace zorvan
