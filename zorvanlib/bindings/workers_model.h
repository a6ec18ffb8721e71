// The workers of the second group of model members: general and
// piecewise-linear constraints, single entries, model parts and messages.
#pragma once

#include "bindings/binding.h"

namespace zrv {

#define ZRV_WORKER(name) \
  PyObject *name(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds)

// general_constraints.cpp
ZRV_WORKER(AddGenCons);
ZRV_WORKER(GetGenCons);
ZRV_WORKER(DelGenCons);
ZRV_WORKER(AddPwlCons);
ZRV_WORKER(GetPwlCons);
ZRV_WORKER(DelPwlCons);

// single_entries.cpp
ZRV_WORKER(ChgCoef);
ZRV_WORKER(ChgMCoef);
ZRV_WORKER(GetCoef);
ZRV_WORKER(ChgQObj);
ZRV_WORKER(GetQObj);
ZRV_WORKER(ChgQRowCoeff);
ZRV_WORKER(GetQRowCoeff);
ZRV_WORKER(GetQRowQMatrix);
ZRV_WORKER(GetQRows);
ZRV_WORKER(DelQMatrix);

// model_parts.cpp
ZRV_WORKER(AddObj);
ZRV_WORKER(AddSetNames);
ZRV_WORKER(DelIndicators);
ZRV_WORKER(GetMipEntities);

// messages.cpp
ZRV_WORKER(GetMessageStatus);
ZRV_WORKER(SetMessageStatus);
ZRV_WORKER(SetLogFile);

#undef ZRV_WORKER

// Adds the members of this group to the problem method table.
int RegisterModelMembers();

}  // namespace zrv
