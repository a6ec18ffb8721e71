// Module-level functions: the engine environment and library-wide settings.
#include "module/functions.h"

#include <utility>

#include "base/environment.h"
#include "controls/catalogue.h"
#include "base/errors.h"
#include "base/globals.h"
#include "base/help.h"
#include "base/text.h"
#include "module/evaluate.h"
#include "problem/formula_readback.h"
#include "controls/control.h"
#include "problem/solve_guard.h"
#include "zorvan/zrvs.h"

namespace zrv {

namespace {

// Argument errors of module functions are reported as InterfaceError with
// the interpreter's text.
PyObject *ArgumentError() {
  PyObject *type, *value, *traceback;
  PyErr_Fetch(&type, &value, &traceback);
  PyObject *text = value ? PyObject_Str(value) : nullptr;
  Py_XDECREF(type);
  Py_XDECREF(value);
  Py_XDECREF(traceback);
  if (text) {
    PyErr_SetObject(InterfaceError, text);
    Py_DECREF(text);
  } else {
    PyErr_Clear();
    PyErr_SetString(InterfaceError, "Incorrect arguments");
  }
  return nullptr;
}

PyObject *Init(PyObject *, PyObject *args) {
  // A missing argument counts as None.
  PyObject *arg = Py_None;
  if (!PyArg_UnpackTuple(args, "_init", 0, 1, &arg)) return ArgumentError();
  const char *path = nullptr;
  if (PyUnicode_Check(arg)) {
    path = PyUnicode_AsUTF8(arg);
    if (!path) return nullptr;
  } else if (arg != Py_None) {
    PyErr_SetString(InterfaceError, "The argument of _init must be a directory name or None");
    return nullptr;
  }
  if (StartEnvironment(path, true) < 0) return nullptr;
  Py_RETURN_NONE;
}

PyObject *Free(PyObject *, PyObject *) {
  // The last stop releases every problem; not while one of them is solved.
  if (GetEnvCount() == 1 && AnyProblemSolving("zorvan.free()")) return nullptr;
  StopEnvironment(true);
  return PyBool_FromLong(GetEnvCount() >= 1);
}

PyObject *GetLastError(PyObject *, PyObject *) {
  if (EnsureEnvironment() < 0) return nullptr;
  char msg[1024] = {0};
  int code = 0, nbytes = 0;
  if (ZRVS_ge_getlasterror(&code, msg, sizeof msg, &nbytes) != 0)
    return ReportError(nullptr, nullptr);
  msg[sizeof msg - 1] = '\0';
  return ReportError(nullptr, Py_BuildValue("(iN)", code, TextFromEngine(msg)));
}

PyObject *GetVersion(PyObject *, PyObject *) {
  char version[ZRVS_MAXVERSIONLENGTH] = {0};
  if (ZRVSgetversion(version) != 0) return ReportError(nullptr, nullptr);
  version[sizeof version - 1] = '\0';
  return ReportError(nullptr, PyUnicode_FromString(version));
}

PyObject *GetVersionNumbers(PyObject *, PyObject *) {
  int major = -1, minor = -1, build = -1;
  ZRVSgetversionnumbers(&major, &minor, &build);  // a failure leaves -1
  return ReportError(nullptr, Py_BuildValue("(iii)", major, minor, build));
}

PyObject *GetCheckedMode(PyObject *, PyObject *) {
  if (EnsureEnvironment() < 0) return nullptr;
  int checked = 0;
  if (ZRVSgetcheckedmode(&checked) != 0) return ReportError(nullptr, nullptr);
  return ReportError(nullptr, PyBool_FromLong(checked != 0));
}

PyObject *SetCheckedMode(PyObject *, PyObject *args, PyObject *kwds) {
  static const char *keywords[] = {"checked_mode", nullptr};
  PyObject *value = nullptr;
  if (!PyArg_ParseTupleAndKeywords(args, kwds, "O", const_cast<char **>(keywords), &value))
    return ArgumentError();
  if (EnsureEnvironment() < 0) return nullptr;
  // Only True itself switches checking on.
  if (ZRVSsetcheckedmode(value == Py_True ? 1 : 0) != 0) return ReportError(nullptr, nullptr);
  Py_RETURN_NONE;
}

PyObject *GetBanner(PyObject *, PyObject *) {
  if (EnsureEnvironment() < 0) return nullptr;
  char banner[ZRVS_MAXBANNERLENGTH] = {0};
  if (ZRVSgetbanner(banner) != 0) return ReportError(nullptr, nullptr);
  banner[sizeof banner - 1] = '\0';
  return ReportError(nullptr, PyUnicode_FromString(banner));
}

PyObject *SetArchConsistency(PyObject *, PyObject *args, PyObject *kwds) {
  static const char *keywords[] = {"ifArchConsistent", nullptr};
  PyObject *value = nullptr;
  if (!PyArg_ParseTupleAndKeywords(args, kwds, "O", const_cast<char **>(keywords), &value))
    return ArgumentError();
  if (EnsureEnvironment() < 0) return nullptr;
  int flag = (value == Py_None || value == Py_False) ? 0 : 1;
  if (ZRVS_ge_setarchconsistency(flag) != 0) return ReportError(nullptr, nullptr);
  Py_RETURN_NONE;
}

PyObject *FeatureQuery(PyObject *, PyObject *args, PyObject *kwds) {
  static const char *keywords[] = {"feature", nullptr};
  const char *feature = nullptr;
  if (!PyArg_ParseTupleAndKeywords(args, kwds, "s", const_cast<char **>(keywords), &feature))
    return ArgumentError();
  if (EnsureEnvironment() < 0) return nullptr;
  int status = 0;
  if (ZRVSfeaturequery(feature, &status) != 0) return ReportError(nullptr, nullptr);
  return ReportError(nullptr, PyBool_FromLong(status != 0));
}

PyObject *GetComputeAllowed(PyObject *, PyObject *) {
  if (EnsureEnvironment() < 0) return nullptr;
  int allowed = -1;
  if (ZRVS_ge_getcomputeallowed(&allowed) != 0) return ReportError(nullptr, nullptr);
  return ReportError(nullptr, PyLong_FromLong(allowed));
}

PyObject *SetComputeAllowed(PyObject *, PyObject *arg) {
  if (!PyLong_Check(arg)) {
    // The error is set and None still returned: the interpreter reports a
    // SystemError whose cause is this error.
    PyErr_SetString(ModelError, "Incorrect argument in setcomputeallowed: should be integer");
    Py_RETURN_NONE;
  }
  int overflow = 0;
  long value = PyLong_AsLongAndOverflow(arg, &overflow);
  if (overflow || value < INT_MIN || value > INT_MAX) {
    PyErr_SetString(ModelError, "Incorrect argument in setcomputeallowed: should be integer");
    return nullptr;
  }
  if (EnsureEnvironment() < 0) return nullptr;
  if (ZRVS_ge_setcomputeallowed(static_cast<int>(value)) != 0)
    return ReportError(nullptr, nullptr);
  Py_RETURN_NONE;
}

PyObject *GetOutputEnabledFn(PyObject *, PyObject *) { return PyBool_FromLong(GetOutputEnabled()); }

PyObject *SetOutputEnabledFn(PyObject *, PyObject *arg) {
  if (!PyLong_Check(arg)) {
    // As in setcomputeallowed: error set, None returned.
    PyErr_SetString(ModelError, "Incorrect argument in setOutputEnabled: should be True or False");
    Py_RETURN_NONE;
  }
  int truth = PyObject_IsTrue(arg);
  if (truth < 0) return nullptr;
  std::lock_guard<std::mutex> lock(OutputLock);
  OutputEnabled = truth;
  Py_RETURN_NONE;
}

PyObject *SetDefaultControl(PyObject *, PyObject *args, PyObject *kwds) {
  static const char *keywords[] = {"ipar", nullptr};
  PyObject *name = nullptr;
  if (!PyArg_ParseTupleAndKeywords(args, kwds, "U", const_cast<char **>(keywords), &name))
    return ArgumentError();
  std::string normal;
  if (NormaliseName(name, normal) < 0) return nullptr;
  GilSafeLock lock(DefaultControlsLock);
  if (PyDict_GetItemString(UserDefaults, normal.c_str()) &&
      PyDict_DelItemString(UserDefaults, normal.c_str()) < 0)
    return nullptr;
  Py_RETURN_NONE;
}

PyObject *SetDefaults(PyObject *, PyObject *) {
  GilSafeLock lock(DefaultControlsLock);
  PyDict_Clear(UserDefaults);
  Py_RETURN_NONE;
}

PyObject *GetControls(PyObject *, PyObject *) {
  if (EnsureCatalogue() < 0) return nullptr;
  return ReportError(nullptr, Py_NewRef(DefaultControls));
}

// Entries held by each module-wide property map: a diagnostic that shows
// attribute storage is released with the objects that own it.
PyObject *StoreSizes(PyObject *, PyObject *) {
  const std::pair<const char *, size_t> sizes[] = {
      {"varLbMap", varLbMap ? varLbMap->size() : 0},
      {"varUbMap", varUbMap ? varUbMap->size() : 0},
      {"varThresholdMap", varThresholdMap ? varThresholdMap->size() : 0},
      {"varNameMap", varNameMap ? varNameMap->size() : 0},
      {"conLbMap", conLbMap ? conLbMap->size() : 0},
      {"conUbMap", conUbMap ? conUbMap->size() : 0},
      {"conNameMap", conNameMap ? conNameMap->size() : 0},
  };
  PyObject *result = PyDict_New();
  if (!result) return nullptr;
  for (const auto &entry : sizes) {
    PyObject *n = PyLong_FromSize_t(entry.second);
    if (!n || PyDict_SetItemString(result, entry.first, n) < 0) {
      Py_XDECREF(n);
      Py_DECREF(result);
      return nullptr;
    }
    Py_DECREF(n);
  }
  return result;
}

}  // namespace

PyMethodDef ModuleMethods[] = {
    {"_storesizes", StoreSizes, METH_NOARGS,
     ZRV_HELP("Report how many entries each attribute store of variables and constraints holds.",
              "zorvan._storesizes()", "None.",
              "zorvan._storesizes()['varUbMap']",
              "Variables and constraints keep only non-default bounds, thresholds and names in "
              "module-wide stores; releasing the objects removes their entries. This diagnostic "
              "returns a dict from store name to its number of entries.",
              "zorvan.var, zorvan.constraint")},
    {"_init", Init, METH_VARARGS,
     ZRV_HELP("Start the optimization engine explicitly.", "zorvan._init(path=None)",
              "path: the engine's installation directory, or None (or nothing) for the default.",
              "zorvan._init(None)",
              "The engine starts by itself when first needed; every _init needs a matching "
              "zorvan.free().",
              "zorvan.free")},
    {"free", Free, METH_NOARGS,
     ZRV_HELP("Stop the optimization engine once.", "zorvan.free()", "None.",
              "still_running = zorvan.free()",
              "Returns True while earlier starts remain, else False. The last stop releases "
              "every problem, which then reports 'Problem is not initialized'.",
              "zorvan._init")},
    {"getlasterror", GetLastError, METH_NOARGS,
     ZRV_HELP("Return the engine's last error outside problems.", "code, text = zorvan.getlasterror()",
              "None.", "print(zorvan.getlasterror())",
              "The code is 0 and the text empty when no error happened.",
              "zorvan.SolverError, zorvan.InterfaceError")},
    {"getversion", GetVersion, METH_NOARGS,
     ZRV_HELP("Return the engine's version as a string.", "zorvan.getversion()", "None.",
              "print(zorvan.getversion())  # e.g. '0.1.0'", "Does not start the engine.",
              "zorvan.getversionnumbers, zorvan.getbanner")},
    {"getversionnumbers", GetVersionNumbers, METH_NOARGS,
     ZRV_HELP("Return the engine's version as three integers.",
              "major, minor, build = zorvan.getversionnumbers()", "None.",
              "print(zorvan.getversionnumbers())", "A number the engine does not give is -1.",
              "zorvan.getversion")},
    {"getcheckedmode", GetCheckedMode, METH_NOARGS,
     ZRV_HELP("Tell whether the engine validates every problem handle.",
              "zorvan.getcheckedmode()", "None.", "zorvan.getcheckedmode()  # True",
              "Checked mode is on by default.", "zorvan.setcheckedmode")},
    {"setcheckedmode", reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(SetCheckedMode)),
     METH_VARARGS | METH_KEYWORDS,
     ZRV_HELP("Switch the engine's checked mode on or off.", "zorvan.setcheckedmode(checked_mode)",
              "checked_mode: True switches it on; any other value, 1 included, switches it off.",
              "zorvan.setcheckedmode(True)",
              "Without checking, only null handles are caught.", "zorvan.getcheckedmode")},
    {"getbanner", GetBanner, METH_NOARGS,
     ZRV_HELP("Return the engine's banner: its name and versions.", "zorvan.getbanner()", "None.",
              "print(zorvan.getbanner())", "Starts the engine if needed.", "zorvan.getversion")},
    {"setarchconsistency",
     reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(SetArchConsistency)),
     METH_VARARGS | METH_KEYWORDS,
     ZRV_HELP("Make results independent of the machine's number of cores.",
              "zorvan.setarchconsistency(ifArchConsistent)",
              "ifArchConsistent: None or False switches it off; anything else (0 included) on.",
              "zorvan.setarchconsistency(True)",
              "Solves then run with a fixed number of threads.", "problem.controls")},
    {"featurequery", reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(FeatureQuery)),
     METH_VARARGS | METH_KEYWORDS,
     ZRV_HELP("Tell whether the engine provides a feature.", "zorvan.featurequery(feature)",
              "feature: the feature's name (case does not matter).",
              "zorvan.featurequery('lp')", "Returns True or False.", "zorvan.getbanner")},
    {"getcomputeallowed", GetComputeAllowed, METH_NOARGS,
     ZRV_HELP("Tell whether remote computation is allowed.", "zorvan.getcomputeallowed()",
              "None.", "zorvan.getcomputeallowed()  # 0",
              "This engine solves in-process only, so the value is 0.",
              "zorvan.setcomputeallowed")},
    {"setcomputeallowed", SetComputeAllowed, METH_O,
     ZRV_HELP("Allow or forbid remote computation.", "zorvan.setcomputeallowed(value)",
              "value: an integer; this engine accepts only 0.", "zorvan.setcomputeallowed(0)",
              "Any other value raises InterfaceError with the engine's text.",
              "zorvan.getcomputeallowed")},
    {"getOutputEnabled", GetOutputEnabledFn, METH_NOARGS,
     ZRV_HELP("Tell whether engine messages are printed.", "zorvan.getOutputEnabled()", "None.",
              "zorvan.getOutputEnabled()  # True", "Messages go to sys.stdout.",
              "zorvan.setOutputEnabled, problem.setOutputEnabled")},
    {"setOutputEnabled", SetOutputEnabledFn, METH_O,
     ZRV_HELP("Switch the printing of engine messages on or off.",
              "zorvan.setOutputEnabled(enabled)", "enabled: True or False (or an integer).",
              "zorvan.setOutputEnabled(False)",
              "Applies to every problem and to the engine's own messages.",
              "zorvan.getOutputEnabled, problem.setOutputEnabled")},
    {"addcbmsghandler",
     reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(AddMessageHandler)),
     METH_VARARGS | METH_KEYWORDS,
     ZRV_HELP("Add a function that receives every engine message.",
              "zorvan.addcbmsghandler(msghandler, data, priority)",
              "msghandler: called as msghandler(obj, data, thread, msg, length, msgtype); "
              "data: any object passed back; priority: handlers of higher priority run first.",
              "zorvan.addcbmsghandler(lambda o, d, t, m, n, k: print(m), None, 0)",
              "A handler that raises has its error printed; the engine goes on.",
              "zorvan.removecbmsghandler")},
    {"removecbmsghandler",
     reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(RemoveMessageHandler)),
     METH_VARARGS | METH_KEYWORDS,
     ZRV_HELP("Remove global message handlers.", "zorvan.removecbmsghandler(msghandler, data)",
              "msghandler: the function to remove, or None for all; data: the data it was "
              "added with, or None for any.",
              "zorvan.removecbmsghandler(handler, None)",
              "Every matching handler is removed; none matching raises InterfaceError.",
              "zorvan.addcbmsghandler")},
    {"setdefaultcontrol",
     reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(SetDefaultControl)),
     METH_VARARGS | METH_KEYWORDS,
     ZRV_HELP("Forget the user default of one control.", "zorvan.setdefaultcontrol(ipar)",
              "ipar: the control's name, all lower or all upper case.",
              "zorvan.setdefaultcontrol('presolve')",
              "Problems created afterwards get the engine's default for this control.",
              "zorvan.setdefaults, zorvan._getcontrols")},
    {"setdefaults", SetDefaults, METH_NOARGS,
     ZRV_HELP("Forget every user default of the controls.", "zorvan.setdefaults()", "None.",
              "zorvan.setdefaults()",
              "Problems created afterwards start from the engine's own defaults.",
              "zorvan.setdefaultcontrol, zorvan._getcontrols")},
    {"_getcontrols", GetControls, METH_NOARGS,
     ZRV_HELP("Return the object of control defaults for new problems.",
              "c = zorvan._getcontrols()", "None.",
              "zorvan._getcontrols().presolve = 0  # every new problem: no presolve",
              "Reading a control gives the user default if set, else the engine's default.",
              "zorvan.setdefaultcontrol, zorvan.setdefaults, problem.controls")},
    {"evaluate", reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(ModuleEvaluate)),
     METH_VARARGS | METH_KEYWORDS, EvaluateDoc},
    {"_rowformulas", RowFormulas, METH_VARARGS, RowFormulasDoc},
    {nullptr, nullptr, 0, nullptr},
};

}  // namespace zrv
