#include "search/hub_events.h"

#include "events/fire.h"

namespace zorvan {

bool has_node_callbacks(const zrvs_problem &p) {
  for (EventKind k : {EventKind::newnode, EventKind::prenode, EventKind::optnode,
                      EventKind::nodelpsolved, EventKind::infnode, EventKind::nodecutoff,
                      EventKind::chgbranchobject, EventKind::mipthread})
    if (p.events.any(k)) return true;
  return false;
}

void HubEvents::new_node(int parent, int node, int branch) {
  fire_newnode(p_.events, &p_, parent, node, branch);
}

bool HubEvents::prenode() { return fire_int_output(p_.events, EventKind::prenode, &p_, 0) != 0; }

bool HubEvents::optnode() { return fire_int_output(p_.events, EventKind::optnode, &p_, 0) != 0; }

void HubEvents::nodelpsolved() { fire_notice(p_.events, EventKind::nodelpsolved, &p_); }

void HubEvents::infnode() { fire_notice(p_.events, EventKind::infnode, &p_); }

void HubEvents::nodecutoff(int node) { fire_nodecutoff(p_.events, &p_, node); }

void HubEvents::change_branching(BranchSpec &spec) {
  if (!p_.events.any(EventKind::chgbranchobject)) return;
  // The search's branching as an object the callbacks may replace.
  zrvs_branchobject *mine = create_branch_object(&p_, 1);
  mine->spec.branches = spec.branches;
  mine->spec.preferred = spec.preferred;
  ZRVSbranchobject chosen = fire_chgbranchobject(p_.events, &p_, mine);
  if (chosen && chosen != mine) {
    // Only a valid object of this problem replaces the search's own.
    try {
      check_branch_object(chosen, "chgbranchobject");
      if (chosen->prob != &p_)
        p_.message(ZRVS_MSG_WARNING,
                   "chgbranchobject: a branching object of another problem is refused");
      else {
        validate_branching(chosen->spec, p_.model.cols(), p_.search.pool, "chgbranchobject");
        spec = chosen->spec;
      }
    } catch (const Error &e) {
      p_.message(ZRVS_MSG_WARNING, e.what());
    }
  }
  destroy_branch_object(mine);
}

bool HubEvents::preintsol(int soltype, double &cutoff) {
  int reject = 0;
  fire_preintsol(p_.events, &p_, soltype, &reject, &cutoff);
  return reject != 0;
}

void HubEvents::intsol() { fire_notice(p_.events, EventKind::intsol, &p_); }

void HubEvents::mipthread(zrvs_problem *worker) { fire_mipthread(p_.events, &p_, worker); }

void HubEvents::destroymt() { fire_notice(p_.events, EventKind::destroymt, &p_); }

}  // namespace zorvan
