// The data types npconstraint, npvar and npexpr: arrays whose elements are
// the module's own objects. Each is NumPy's object element (one reference)
// presented as a structure with one object field, the form NumPy accepts
// for user types that hold references. Casts between the three copy the
// references; the element-wise loops are in loops.cpp.
#include "base/numpy_api.h"

#include "base/arrays.h"
#include "base/types.h"
#include "numpy/bridge.h"
#include "numpy/reductions.h"

namespace zrv {

namespace {

struct TypeSpec {
  PyTypeObject *scalar;
  char kind;
  const char *field;
  int *typenum;
};

// In registration order.
const TypeSpec kTypes[3] = {
    {&ConstraintType, 'c', "constraint", &NpConstraintTypeNum},
    {&VarType, 'v', "variable", &NpVarTypeNum},
    {&ExpressionType, 'e', "expression", &NpExprTypeNum},
};

// NumPy 1.x keeps the registered prototype itself as the descriptor, so
// these live as long as the process.
PyArray_DescrProto Protos[3];
PyArray_ArrFuncs Funcs[3];

// Copies n object references, taking a new reference for each.
void CopyReferences(void *from, void *to, npy_intp n, void *, void *) {
  auto **src = static_cast<PyObject **>(from);
  auto **dst = static_cast<PyObject **>(to);
  for (npy_intp i = 0; i < n; ++i) {
    PyObject *o = src[i];
    Py_XINCREF(o);
    Py_XSETREF(dst[i], o);
  }
}

int RegisterType(int i, PyArray_Descr *objectDescr) {
  const TypeSpec &spec = kTypes[i];
  PyArray_ArrFuncs &f = Funcs[i];
  PyArray_InitArrFuncs(&f);
  f = *PyDataType_GetArrFuncs(objectDescr);
  // The object type's cast tables are its own.
  f.castdict = nullptr;
  f.cancastscalarkindto = nullptr;
  f.cancastto = nullptr;
  f.scalarkind = nullptr;
  // numpy.dot sums the element products with the running sum grown in place.
  if (spec.kind != 'c') f.dotfunc = ModelDot;

  PyObject *fields = PyDict_New();
  PyObject *pair = Py_BuildValue("(Oi)", objectDescr, 0);
  PyObject *names = Py_BuildValue("(s)", spec.field);
  if (!fields || !pair || !names || PyDict_SetItemString(fields, spec.field, pair) < 0) {
    Py_XDECREF(fields);
    Py_XDECREF(pair);
    Py_XDECREF(names);
    return -1;
  }
  Py_DECREF(pair);

  PyArray_DescrProto &d = Protos[i];
  d = PyArray_DescrProto{};
  Py_SET_REFCNT(reinterpret_cast<PyObject *>(&d), 1);
  Py_SET_TYPE(reinterpret_cast<PyObject *>(&d), &PyArrayDescr_Type);
  Py_INCREF(spec.scalar);
  d.typeobj = spec.scalar;
  d.kind = spec.kind;
  d.type = spec.kind;
  d.byteorder = '|';
  d.flags = NPY_OBJECT_DTYPE_FLAGS;
  d.type_num = 0;
  d.elsize = sizeof(PyObject *);
  d.alignment = alignof(PyObject *);
  d.subarray = nullptr;
  d.fields = fields;  // kept for the life of the process
  d.names = names;
  d.f = &f;
  d.metadata = nullptr;
  d.c_metadata = nullptr;
  d.hash = -1;
  int num = PyArray_RegisterDataType(&d);
  if (num < 0) return -1;
  *spec.typenum = num;
  return 0;
}

int RegisterCasts() {
  for (const TypeSpec &from : kTypes) {
    PyArray_Descr *descr = PyArray_DescrFromType(*from.typenum);
    if (!descr) return -1;
    for (const TypeSpec &to : kTypes) {
      if (&to == &from) continue;
      if (PyArray_RegisterCastFunc(descr, *to.typenum, CopyReferences) < 0 ||
          PyArray_RegisterCanCast(descr, *to.typenum, NPY_NOSCALAR) < 0) {
        Py_DECREF(descr);
        return -1;
      }
    }
    Py_DECREF(descr);
  }
  return 0;
}

}  // namespace

int RegisterNumpyTypes() {
  if (NpVarTypeNum >= 0) return 0;  // a second start-up in one process
  PyArray_Descr *objectDescr = PyArray_DescrFromType(NPY_OBJECT);
  if (!objectDescr) return -1;
  int rc = 0;
  for (int i = 0; i < 3 && rc == 0; ++i) rc = RegisterType(i, objectDescr);
  Py_DECREF(objectDescr);
  if (rc < 0) return -1;
  return RegisterCasts();
}

int AddNumpyTypes(PyObject *module) {
  static const char *const kNames[3] = {"npconstraint", "npvar", "npexpr"};
  for (int i = 0; i < 3; ++i) {
    PyObject *descr = reinterpret_cast<PyObject *>(PyArray_DescrFromType(*kTypes[i].typenum));
    if (!descr) return -1;
    if (PyModule_AddObject(module, kNames[i], descr) < 0) {
      Py_DECREF(descr);
      return -1;
    }
  }
  return 0;
}

}  // namespace zrv
