// The fifteen types of the module and the helpers that fill their slots.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

namespace zrv {

// Starts a static type afresh with its name and instance size.
inline void InitType(PyTypeObject &t, const char *name, Py_ssize_t size) {
  t = PyTypeObject{};
  Py_SET_REFCNT(reinterpret_cast<PyObject *>(&t), 1);
  t.tp_name = name;
  t.tp_basicsize = size;
  t.tp_flags = Py_TPFLAGS_DEFAULT;
}

// A keyword method as the PyCFunction a method table holds.
inline PyCFunction WithKeywords(PyCFunctionWithKeywords f) {
  return reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)(void)>(f));
}

extern PyTypeObject VarType;
extern PyTypeObject SosType;
extern PyTypeObject ExpressionType;
extern PyTypeObject ConstraintType;
extern PyTypeObject ControlType;
extern PyTypeObject AttributeType;
extern PyTypeObject ObjAttribType;
extern PyTypeObject ProblemType;
extern PyTypeObject BranchObjType;
extern PyTypeObject PoolCutType;
extern PyTypeObject ZrvsObjectType;
extern PyTypeObject GenericType;
extern PyTypeObject LinTermType;
extern PyTypeObject QuadTermType;
extern PyTypeObject NonlinearType;

// Each fills the slots of its type (before the module makes them ready).
void SetupVarType();
void SetupSosType();
void SetupExpressionType();
void SetupConstraintType();
void SetupControlType();
void SetupAttributeType();
void SetupObjAttribType();
void SetupProblemType();
void SetupBranchObjType();
void SetupPoolCutType();
void SetupZrvsObjectType();
void SetupGenericType();
void SetupLinTermType();
void SetupQuadTermType();
void SetupNonlinearType();

}  // namespace zrv
