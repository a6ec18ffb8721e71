// One element between Python and native form by its element code: indices
// of rows, columns and sets (from numbers, names or model objects),
// numbers, characters, strings and handles.
#include "problem/arguments.h"

#include <climits>
#include <cstring>

#include "base/arrays.h"
#include "base/errors.h"
#include "base/handles.h"
#include "base/poolcut.h"
#include "base/text.h"
#include "base/types.h"
#include "model/constraint.h"
#include "model/sos.h"
#include "model/var.h"
#include "problem/problem.h"
#include "zorvan/zrvs.h"

namespace zrv {

namespace {

// The text of a str (UTF-8, else ASCII) or bytes as a new bytes object.
PyObject *NameBytes(PyObject *o) {
  if (PyBytes_Check(o)) {
    Py_INCREF(o);
    return o;
  }
  PyObject *b = PyUnicode_AsUTF8String(o);
  if (!b) {
    PyErr_Clear();
    b = PyUnicode_AsASCIIString(o);
  }
  return b;
}

// rows + sparerows: where columns start in the unified numbering.
int UnifiedOffset(ProblemObject *p, int *offset) {
  int rows = 0, spare = 0;
  if (ReadIntAttrib(p, ZRVS_ROWS, &rows) < 0 || ReadIntAttrib(p, ZRVS_SPAREROWS, &spare) < 0)
    return -1;
  *offset = rows + spare;
  return 0;
}

int LookUp(const IndexMap *map, uint64_t key, int32_t *index) {
  int32_t found = map ? map->Find(key) : IndexMap::kAbsent;
  if (found == IndexMap::kAbsent) return 0;
  *index = found;
  return 1;
}

}  // namespace

size_t ElementWidth(int code) {
  switch (code) {
    case ElemRow:
    case ElemColumn:
    case ElemSet:
    case ElemInt: return 4;
    case ElemLong:
    case ElemDouble:
    case ElemString:
    case ElemCut:
    case ElemObject: return 8;
    case ElemChar:
    case ElemCharNumber: return 1;
  }
  return 0;
}

bool IsIntegerObject(PyObject *o) { return PyLong_Check(o) || IsNumpySignedInteger(o); }

// An integer as a 32-bit value; one that does not fit would otherwise wrap
// around to some other valid index.
int Int32Value(PyObject *obj, int32_t *out) {
  long v = PyLong_AsLong(obj);
  if (v == -1 && PyErr_Occurred()) return -1;
  if (v < INT32_MIN || v > INT32_MAX) {
    PyErr_Format(PyExc_OverflowError, "%ld does not fit in a 32-bit integer", v);
    return -1;
  }
  *out = static_cast<int32_t>(v);
  return 0;
}

int ObjectToIndex(PyObject *obj, ProblemObject *p, int32_t *index, int code) {
  if (code == ElemInt || IsIntegerObject(obj)) return Int32Value(obj, index);
  if (PyUnicode_Check(obj) || PyBytes_Check(obj)) {
    PyObject *name = NameBytes(obj);
    if (!name) return -1;
    if (CheckNameText(PyBytes_AS_STRING(name), PyBytes_GET_SIZE(name), "object", obj) < 0) {
      Py_DECREF(name);
      return -1;
    }
    int type = code == ElemRow ? 1 : 2;  // set names are looked up as column names
    int idx = -1;
    int status = CallUnlocked(ZRVSgetindex, p->prob, type,
                              static_cast<const char *>(PyBytes_AS_STRING(name)), &idx);
    Py_DECREF(name);
    if (status != 0) {
      ReportError(reinterpret_cast<PyObject *>(p), nullptr);
      return -1;
    }
    *index = idx;
    return 0;
  }
  PyTypeObject *type = Py_TYPE(obj);
  if (type == &VarType && (code == ElemColumn || code == ElemUnified)) {
    uint64_t id = VarId(reinterpret_cast<VarObject *>(obj)->word);
    int32_t col;
    if (!LookUp(p->colmap, id, &col)) {
      PyErr_Format(ModelError, "Variable %S not in problem", obj);
      return -1;
    }
    if (code == ElemUnified) {
      int offset;
      if (UnifiedOffset(p, &offset) < 0) return -1;
      col -= offset;  // the existing numbering subtracts here
    }
    *index = col;
    return 0;
  }
  if (type == &ConstraintType && (code == ElemRow || code == ElemUnified)) {
    uint64_t id = ConId(reinterpret_cast<ConstraintObject *>(obj)->word);
    if (!LookUp(p->rowmap, id, index)) {
      PyErr_Format(ModelError, "Constraint %S not in problem", obj);
      return -1;
    }
    return 0;
  }
  if (type == &SosType && code == ElemSet) {
    if (!LookUp(p->setmap, reinterpret_cast<SosObject *>(obj)->word, index)) {
      PyErr_Format(ModelError, "SOS %S not in problem", obj);
      return -1;
    }
    return 0;
  }
  switch (code) {
    case ElemColumn: PyErr_Format(ModelError, "Invalid variable object %S", obj); break;
    case ElemSet: PyErr_Format(ModelError, "Invalid SOS object %S", obj); break;
    case ElemRow: PyErr_Format(ModelError, "Invalid constraint object %S", obj); break;
    default: PyErr_Format(ModelError, "Invalid object %S", obj); break;
  }
  return -1;
}

int ElementToNative(ProblemObject *p, PyObject *obj, void *array, Py_ssize_t pos, int code) {
  if (!obj) {
    *static_cast<void **>(array) = nullptr;
    return 0;
  }
  switch (code) {
    case ElemRow:
    case ElemColumn:
    case ElemSet:
    case ElemUnified:
      return ObjectToIndex(obj, p, static_cast<int32_t *>(array) + pos, code);
    case ElemInt: {
      if (!IsIntegerObject(obj)) {
        if (!PyErr_Occurred())
          PyErr_Format(ModelError, "Invalid integer argument %S", obj);
        return -1;
      }
      return Int32Value(obj, static_cast<int32_t *>(array) + pos);
    }
    case ElemLong: {
      if (!IsIntegerObject(obj)) {
        if (!PyErr_Occurred())
          PyErr_Format(ModelError, "Invalid integer argument %S", obj);
        return -1;
      }
      long long v = PyLong_AsLongLong(obj);
      if (v == -1 && PyErr_Occurred()) return -1;
      static_cast<int64_t *>(array)[pos] = v;
      return 0;
    }
    case ElemDouble: {
      double v = PyFloat_AsDouble(obj);
      if (v == -1.0 && PyErr_Occurred()) return -1;
      static_cast<double *>(array)[pos] = v;
      return 0;
    }
    case ElemChar: {
      Py_UCS4 c[1];
      if (!PyUnicode_Check(obj) || PyUnicode_GET_LENGTH(obj) < 1) {
        PyErr_Format(ModelError, "Invalid character argument %S", obj);
        return -1;
      }
      if (!PyUnicode_AsUCS4(obj, c, 1, 0)) return -1;
      static_cast<char *>(array)[pos] = static_cast<char>(c[0]);
      return 0;
    }
    case ElemCharNumber: {
      long v = PyLong_AsLong(obj);
      if (v == -1 && PyErr_Occurred()) return -1;
      static_cast<char *>(array)[pos] = static_cast<char>(v & 0xff);
      return 0;
    }
    case ElemString: {
      if (!PyUnicode_Check(obj) && !PyBytes_Check(obj)) {
        PyErr_Format(ModelError, "Invalid string argument %S", obj);
        return -1;
      }
      PyObject *text = NameBytes(obj);
      if (!text) return -1;
      Py_ssize_t n = PyBytes_GET_SIZE(text);
      if (CheckNameText(PyBytes_AS_STRING(text), n, "string", obj) < 0) {
        Py_DECREF(text);
        return -1;
      }
      void **slot = static_cast<void **>(array) + pos;
      *slot = nullptr;
      int status = NativeAllocator.reallocate(NativeAllocator.context, slot,
                                              static_cast<size_t>(n) + 1);
      if (status == 0) std::memcpy(*slot, PyBytes_AS_STRING(text), static_cast<size_t>(n) + 1);
      Py_DECREF(text);
      return status == 0 ? 0 : -1;
    }
    case ElemCut:
      if (Py_TYPE(obj) != &PoolCutType) {
        PyErr_Format(ModelError, "Invalid cut object %S", obj);
        return -1;
      }
      static_cast<void **>(array)[pos] = reinterpret_cast<PoolCutObject *>(obj)->handle;
      return 0;
    case ElemObject:
      if (Py_TYPE(obj) != &ZrvsObjectType) {
        PyErr_Format(ModelError, "Invalid solver object %S", obj);
        return -1;
      }
      static_cast<void **>(array)[pos] = reinterpret_cast<ZrvsObjectObject *>(obj)->handle;
      return 0;
  }
  PyErr_Format(InterfaceError, "Unknown element code %d", code);
  return -1;
}

PyObject *ElementToObject(ProblemObject *p, const void *array, Py_ssize_t i, int code) {
  switch (code) {
    case ElemRow: {
      int32_t r = static_cast<const int32_t *>(array)[i];
      if (r < 0) return PyLong_FromLong(-1);
      if (p->conlist && r < PyList_GET_SIZE(p->conlist)) {
        PyObject *c = PyList_GET_ITEM(p->conlist, r);
        Py_INCREF(c);
        return c;
      }
      return PyLong_FromLong(r);
    }
    case ElemColumn: {
      int32_t c = static_cast<const int32_t *>(array)[i];
      if (c < 0) return PyLong_FromLong(-1);
      if (!p->varlist || c >= PyList_GET_SIZE(p->varlist)) return nullptr;
      PyObject *v = PyList_GET_ITEM(p->varlist, c);
      Py_INCREF(v);
      return v;
    }
    case ElemInt: return PyLong_FromLong(static_cast<const int32_t *>(array)[i]);
    case ElemLong: return PyLong_FromLongLong(static_cast<const int64_t *>(array)[i]);
    case ElemDouble: return PyFloat_FromDouble(static_cast<const double *>(array)[i]);
    case ElemChar: return PyUnicode_FromFormat("%c", static_cast<const char *>(array)[i]);
    case ElemCharNumber:
      return PyUnicode_FromFormat("%d", static_cast<int>(static_cast<const char *>(array)[i]));
    case ElemString: return TextFromEngine(static_cast<char *const *>(array)[i]);
    case ElemCut: {
      auto *o = PyObject_New(PoolCutObject, &PoolCutType);
      if (o) o->handle = static_cast<void *const *>(array)[i];
      return reinterpret_cast<PyObject *>(o);
    }
    case ElemObject: return NewZrvsObject(static_cast<void *const *>(array)[i]);
    case ElemUnified: {
      int32_t k = static_cast<const int32_t *>(array)[i];
      if (k < 0) return PyLong_FromLong(-1);
      int offset;
      if (UnifiedOffset(p, &offset) < 0) return nullptr;
      PyObject *list = k < offset ? p->conlist : p->varlist;
      Py_ssize_t at = k < offset ? k : k - offset;
      if (!list || at >= PyList_GET_SIZE(list)) return nullptr;
      PyObject *o = PyList_GET_ITEM(list, at);
      Py_INCREF(o);
      return o;
    }
  }
  return nullptr;  // ElemSet and unknown codes have no Python form
}

}  // namespace zrv
