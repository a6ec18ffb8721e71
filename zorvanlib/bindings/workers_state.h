// The workers of the members about solver state: solutions, bases,
// analysis, MIP starts, files of solutions and bases, by the file that
// holds them. Each has the BindingWorker signature.
#pragma once

#include "bindings/binding.h"

namespace zrv {

#define ZRV_WORKER(name) \
  PyObject *name(ProblemObject *p, const Binding &b, PyObject *args, PyObject *kwds)

// solution_readers.cpp
ZRV_WORKER(GetLpSol);
ZRV_WORKER(GetMipSol);
ZRV_WORKER(GetLpSolVal);
ZRV_WORKER(GetMipSolVal);
ZRV_WORKER(GetLastBarSol);
ZRV_WORKER(GetBasis);
ZRV_WORKER(GetBasisVal);
ZRV_WORKER(GetInfeas);
ZRV_WORKER(GetScaledInfeas);
ZRV_WORKER(GetPrimalRay);
ZRV_WORKER(GetDualRay);
ZRV_WORKER(HasPrimalRay);
ZRV_WORKER(HasDualRay);
ZRV_WORKER(GetUnbVec);
ZRV_WORKER(CalcObjective);
ZRV_WORKER(CalcObjN);
ZRV_WORKER(CalcReducedCosts);
ZRV_WORKER(CalcSlacks);
ZRV_WORKER(CalcSolInfo);

// state_loaders.cpp
ZRV_WORKER(LoadBasis);
ZRV_WORKER(LoadPresolveBasis);
ZRV_WORKER(LoadLpSol);
ZRV_WORKER(LoadMipSol);
ZRV_WORKER(AddMipSol);
ZRV_WORKER(LoadDirs);
ZRV_WORKER(LoadPresolveDirs);
ZRV_WORKER(LoadBranchDirs);
ZRV_WORKER(GetDirs);
ZRV_WORKER(LoadSecureVecs);

// sensitivity.cpp
ZRV_WORKER(ObjSa);
ZRV_WORKER(RhsSa);
ZRV_WORKER(BndSa);
ZRV_WORKER(BTran);
ZRV_WORKER(FTran);
ZRV_WORKER(GetPivotOrder);
ZRV_WORKER(BasisStability);

// infeasible_subsystems.cpp
ZRV_WORKER(IisFirst);
ZRV_WORKER(IisNext);
ZRV_WORKER(IisAll);
ZRV_WORKER(IisClear);
ZRV_WORKER(IisStatus);
ZRV_WORKER(GetIisData);

#undef ZRV_WORKER

}  // namespace zrv
