// Module initialisation and teardown: the composition root that readies
// every type, installs the operators, wires the hooks of the lower floors
// and fills the module.
#include "aggregate/aggregate.h"
#include "algebra/arith.h"
#include "module/constants.h"
#include "base/enums.h"
#include "base/environment.h"
#include "base/errors.h"
#include "module/functions.h"
#include "base/globals.h"
#include "base/types.h"
#include "nonlinear/functions.h"
#include "base/arrays.h"
#include "bindings/members.h"
#include "callbacks/registry.h"
#include "numpy/bridge.h"
#include "controls/catalogue.h"
#include "controls/control.h"
#include "problem/method_table.h"
#include "problem/problem.h"

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
  ReleaseEnums();
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
  // The locks are process-wide objects, ready before this runs. Each type's
  // slots first, then the operators that join the modelling types.
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
  InstallOperators();
  SetEnvironmentHooks({EnsureCatalogue, ReleaseAllProblems});
  // Construction of these happens in their initialisers.
  for (PyTypeObject *t : {&SosType, &ExpressionType, &ConstraintType, &ControlType,
                          &BranchObjType, &PoolCutType, &ZrvsObjectType, &GenericType,
                          &LinTermType, &QuadTermType})
    t->tp_new = PyType_GenericNew;
  if (RegisterMembers() < 0 || RegisterCallbackMethods() < 0 || BuildProblemMethods() < 0)
    return nullptr;
  for (PyTypeObject *t : AllTypes)
    if (PyType_Ready(t) < 0) return nullptr;
  if (DeferNumpyScalars() < 0) return nullptr;
  PyObject *module = PyModule_Create2(&ModuleDef, 1013);
  if (!module) return nullptr;
  // The tables of controls, user defaults and message handlers, and a
  // fresh count of engine starts.
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
  // The property maps of variables and constraints, and the exceptions.
  if (ok) CreateMaps();
  if (ok) {
    ModelError = PyErr_NewException("zorvan.ModelError", nullptr, nullptr);
    InterfaceError = PyErr_NewException("zorvan.InterfaceError", nullptr, nullptr);
    SolverError = PyErr_NewException("zorvan.SolverError", nullptr, nullptr);
    ok = ModelError && InterfaceError && SolverError;
  }
  // The public types and exceptions.
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
  // NumPy: its interfaces, then the module's data types and their loops.
  ok = ok && BindNumpy() == 0 && RegisterNumpyTypes() == 0 && RegisterNumpyLoops() == 0;
  // Constants, fresh serial counters and module functions.
  ok = ok && PublishConstants(module) == 0;
  if (ok) ResetSerialCounters();
  ok = ok && PyModule_AddFunctions(module, NonlinearFunctions) == 0 &&
       PyModule_AddFunctions(module, AggregateFunctions) == 0 &&
       PyModule_AddFunctions(module, VarsFunctions) == 0;
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
  Module = module;
  return module;
}

}  // namespace

}  // namespace zrv

PyMODINIT_FUNC PyInit_zorvanlib(void) { return zrv::Initialise(); }
