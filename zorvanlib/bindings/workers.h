// The workers of the one-to-one members, by the file that holds them. Each
// has the BindingWorker signature and is named after its member.
#pragma once

#include "bindings/binding.h"

namespace zrv {

#define ZRV_WORKER(name) \
  PyObject *name(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds)

// read_model.cpp
ZRV_WORKER(GetLb);
ZRV_WORKER(GetUb);
ZRV_WORKER(GetColType);
ZRV_WORKER(GetGlbLimit);
ZRV_WORKER(GetObj);
ZRV_WORKER(GetObjN);
ZRV_WORKER(GetRhs);
ZRV_WORKER(GetRhsRange);
ZRV_WORKER(GetRowType);
ZRV_WORKER(GetNames);
ZRV_WORKER(GetNameList);
ZRV_WORKER(GetIndexFromName);
ZRV_WORKER(GetCols);
ZRV_WORKER(GetRows);
ZRV_WORKER(GetMQObj);
ZRV_WORKER(GetIndicators);
ZRV_WORKER(GetQRowTriplets);

// change_model.cpp
ZRV_WORKER(ChgBounds);
ZRV_WORKER(ChgColType);
ZRV_WORKER(ChgGlbLimit);
ZRV_WORKER(ChgObj);
ZRV_WORKER(ChgObjN);
ZRV_WORKER(ChgObjSense);
ZRV_WORKER(ChgRhs);
ZRV_WORKER(ChgRhsRange);
ZRV_WORKER(ChgRowType);
ZRV_WORKER(ChgMQObj);
ZRV_WORKER(DelObj);

// add_model.cpp
ZRV_WORKER(AddCols);
ZRV_WORKER(AddRows);
ZRV_WORKER(AddNames);
ZRV_WORKER(AddQMatrix);

// load_model.cpp
ZRV_WORKER(LoadProblem);

// solver_state.cpp
ZRV_WORKER(GetLastError);
ZRV_WORKER(GetAttribInfo);
ZRV_WORKER(GetControlInfo);
ZRV_WORKER(SetProbName);
ZRV_WORKER(SetDefaults);
ZRV_WORKER(SetDefaultControl);
ZRV_WORKER(SetIndicators);

#undef ZRV_WORKER

// first and last (absent: the whole model) as column or row indices;
// InterfaceError for an empty range. 0 or -1.
int ReadRange(ProblemObject *p, PyObject *first_obj, PyObject *last_obj, bool columns,
              int *first, int *last);

}  // namespace zrv
