// Views of controls and attributes by name: `control` (p.controls and the
// module-level defaults object), `attribute` (p.attributes) and `objattrib`
// (p.objattribs), and the routines that read and set one value.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include <string>

#include "base/problem_handles.h"

struct ControlObject {
  PyObject_HEAD
  ProblemHandles *problem;  // borrowed; cleared when the problem is released
  PyObject *table;         // bound: the control dictionary; defaults: own values
  int is_default;          // 1 for the module-level object of user defaults
};

struct AttributeObject {
  PyObject_HEAD
  ProblemHandles *problem;  // borrowed; cleared when the problem is released
  PyObject *table;         // the attribute dictionary
  int32_t solve_index;     // -1: not tied to one solve
};

struct ObjAttribObject {
  PyObject_HEAD
  ProblemHandles *problem;  // borrowed; cleared when the problem is released
  PyObject *cache;         // list: the attribute view of each objective, or None
};

namespace zrv {

extern PyTypeObject ControlType;
extern PyTypeObject AttributeType;
extern PyTypeObject ObjAttribType;

// Value kinds of the descriptor tuples (id, kind, source).
enum Kind { kInt = 1, kReal = 2, kString = 3 };
// Sources: the main engine, the nonlinear companion, its solver's own list.
enum Source { kMain = 0, kSlp = 1, kSlpSolver = 2 };

// New views. A control view with a null problem is the defaults object.
PyObject *NewControlView(ProblemHandles *p, PyObject *table);
PyObject *NewAttributeView(ProblemHandles *p, int32_t solve_index);
PyObject *NewObjAttribView(ProblemHandles *p);
// Cuts a view loose from its problem (the problem is being released).
void DetachView(PyObject *view);

// The characters of a name given as str (UTF-8) or bytes: 1, 0 when name is
// neither (nothing raised), -1 with an error.
int NameText(PyObject *name, const char **text, Py_ssize_t *size);

// Name normalisation: str or bytes, at most 1024 characters, all lower or all
// upper case (folded to lower). Returns 0, -1 with ModelError set, or -2 when
// the name is not text (nothing raised).
int NormaliseName(PyObject *name, std::string &out);

// Checks that value suits a control of the kind. Returns 0 or -1 (ModelError).
int CheckControlValue(int kind, PyObject *value);
// Sets one control of a problem. Returns 0 or -1 with an error set.
int SetControlValue(ProblemHandles *p, int id, int kind, int source, PyObject *value);
// Reads one control or attribute of a problem; new reference or null. An
// index of 0 or more reads the attribute for that objective.
PyObject *ReadValue(ProblemHandles *p, int id, int kind, int source, bool is_control,
                    int index = -1);
// A dict of every value of the table (controls or attributes) of a problem;
// for an objective index, string and nonlinear attributes are left out.
// With `for_display` (repr), a per-objective value the engine does not have
// (before a solve, or an objective the last solve did not reach) shows as
// None instead of raising.
PyObject *ReadAllValues(ProblemHandles *p, PyObject *table, bool is_control, int index = -1,
                        bool for_display = false);

// Unpacks a descriptor tuple (id, kind, source). Returns 0 or -1.
int UnpackDescriptor(PyObject *tuple, int &id, int &kind, int &source);

// Kind of a main-engine control or attribute given by its integer identifier,
// from the engine's catalogue. Returns 0, or -1 with InterfaceError ("Unknown
// control ID %d", "Unknown control type %d") or ModelError (list unreadable).
int KindOfIdentifier(int id, int &kind);

// Objective controls (priority, weight, abstol, reltol, rhs) of one objective.
// The identifier of a key (int identifier or name in any case); 0 or -1 with
// InterfaceError.
int ObjControlId(PyObject *key, int &id);
// The lower-case name of an objective control identifier.
const char *ObjControlName(int id);
// Reads one objective control; new reference or null.
PyObject *GetObjControl(ProblemHandles *p, int objidx, int id);
// Sets one objective control; key is only used in messages. 0 or -1.
int SetObjControl(ProblemHandles *p, int objidx, int id, PyObject *key, PyObject *value);

}  // namespace zrv
