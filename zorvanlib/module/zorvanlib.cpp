// Module initialisation and teardown.
#include "aggregate/aggregate.h"
#include "module/constants.h"
#include "module/environment.h"
#include "module/errors.h"
#include "module/functions.h"
#include "module/globals.h"
#include "module/types.h"
#include "nonlinear/functions.h"
#include "numpy/bridge.h"
#include "problem/control.h"

namespace zrv {

namespace {

void ModuleFree(void *);

PyModuleDef ModuleDef = {
    PyModuleDef_HEAD_INIT,
    "zorvanlib",
    "Create, solve, query and handle optimization problems with the Zorvan Optimizer.",
    -1,
    ModuleMethods,
    nullptr,
    nullptr,
    nullptr,
    ModuleFree,
};

// Types in the order they are made ready.
PyTypeObject *const AllTypes[] = {
    &VarType,     &SosType,     &ExpressionType, &ConstraintType, &ControlType,
    &AttributeType, &ObjAttribType, &ProblemType, &BranchObjType, &PoolCutType,
    &ZrvsObjectType, &GenericType, &LinTermType, &QuadTermType, &NonlinearType,
};

void ReleaseTables() {
  Py_CLEAR(DefaultControls);
  Py_CLEAR(UserDefaults);
  Py_CLEAR(ControlDict);
  Py_CLEAR(AttributeDict);
  Py_CLEAR(CatalogueDict);
  Py_CLEAR(MessageHandlers);
}

void ModuleFree(void *) {
  ReleaseTables();
  FreeMaps();
  StopEnvironment(false);
  Py_CLEAR(ModelError);
  Py_CLEAR(InterfaceError);
  Py_CLEAR(SolverError);
  Module = nullptr;
}

int AddType(PyObject *module, const char *name, PyTypeObject *type) {
  return PyModule_AddObjectRef(module, name, reinterpret_cast<PyObject *>(type));
}

PyObject *Initialise() {
  // 1: the locks are process-wide objects, ready before this runs.
  SetupVarType();
  SetupSosType();
  SetupExpressionType();
  SetupConstraintType();
  SetupControlType();
  SetupAttributeType();
  SetupObjAttribType();
  SetupProblemType();
  SetupBranchObjType();
  SetupPoolCutType();
  SetupZrvsObjectType();
  SetupGenericType();
  SetupLinTermType();
  SetupQuadTermType();
  SetupNonlinearType();
  // 2: construction of these happens in their initialisers.
  for (PyTypeObject *t : {&SosType, &ExpressionType, &ConstraintType, &ControlType,
                          &BranchObjType, &PoolCutType, &ZrvsObjectType, &GenericType,
                          &LinTermType, &QuadTermType})
    t->tp_new = PyType_GenericNew;
  // 3
  for (PyTypeObject *t : AllTypes)
    if (PyType_Ready(t) < 0) return nullptr;
  // 4
  PyObject *module = PyModule_Create2(&ModuleDef, 1013);
  if (!module) return nullptr;
  // 5
  PyObject *own_defaults = PyDict_New();
  if (own_defaults) {
    DefaultControls = NewControlView(nullptr, own_defaults);
    Py_DECREF(own_defaults);
  }
  UserDefaults = PyDict_New();
  ControlDict = PyDict_New();
  AttributeDict = PyDict_New();
  CatalogueDict = PyDict_New();
  MessageHandlers = PyList_New(0);
  {
    std::lock_guard<std::mutex> lock(EnvironmentLock);
    EnvCount = 0;
    SlpStarted = -1;
  }
  {
    std::lock_guard<std::mutex> lock(OutputLock);
    OutputEnabled = 1;
  }
  bool ok = DefaultControls && UserDefaults && ControlDict && AttributeDict && CatalogueDict &&
            MessageHandlers;
  // 6
  if (ok) CreateMaps();
  // 7
  if (ok) {
    ModelError = PyErr_NewException("zorvan.ModelError", nullptr, nullptr);
    InterfaceError = PyErr_NewException("zorvan.InterfaceError", nullptr, nullptr);
    SolverError = PyErr_NewException("zorvan.SolverError", nullptr, nullptr);
    ok = ModelError && InterfaceError && SolverError;
  }
  // 8
  ok = ok && AddType(module, "var", &VarType) == 0 &&
       AddType(module, "expression", &ExpressionType) == 0 &&
       AddType(module, "sos", &SosType) == 0 &&
       AddType(module, "constraint", &ConstraintType) == 0 &&
       AddType(module, "problem", &ProblemType) == 0 &&
       AddType(module, "branchobj", &BranchObjType) == 0 &&
       AddType(module, "poolcut", &PoolCutType) == 0 &&
       PyModule_AddObjectRef(module, "ModelError", ModelError) == 0 &&
       PyModule_AddObjectRef(module, "InterfaceError", InterfaceError) == 0 &&
       PyModule_AddObjectRef(module, "SolverError", SolverError) == 0;
  // 9
  ok = ok && BindNumpy() == 0 && RegisterNumpyTypes() == 0;
  // 10
  ok = ok && PublishConstants(module) == 0;
  ok = ok && PyModule_AddFunctions(module, NonlinearFunctions) == 0 &&
       PyModule_AddFunctions(module, AggregateFunctions) == 0;
  // 11
  ok = ok && AddNumpyTypes(module) == 0;
  if (!ok) {
    // ModuleFree runs when the module object goes; clear what it would see.
    ReleaseTables();
    FreeMaps();
    Py_CLEAR(ModelError);
    Py_CLEAR(InterfaceError);
    Py_CLEAR(SolverError);
    Py_DECREF(module);
    if (!PyErr_Occurred())
      PyErr_SetString(PyExc_RuntimeError, "Error initializing the Zorvan module");
    return nullptr;
  }
  // 12
  Module = module;
  return module;
}

}  // namespace

}  // namespace zrv

PyMODINIT_FUNC PyInit_zorvanlib(void) { return zrv::Initialise(); }
