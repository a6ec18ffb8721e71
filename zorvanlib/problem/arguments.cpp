// Converting Python arguments to the engine's native arrays and back, by
// element codes; keyword parsing with legacy names; the allocator of
// temporary arrays.
#include "problem/arguments.h"

#include "base/arrays.h"

#include <climits>
#include <cmath>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <string>

#include "base/poolcut.h"
#include "base/handles.h"
#include "model/constraint.h"
#include "model/sos.h"
#include "model/var.h"
#include "base/errors.h"
#include "base/globals.h"
#include "base/text.h"
#include "base/types.h"
#include "problem/problem.h"
#include "zorvan/zrvs.h"

namespace zrv {

namespace {

int Allocate(void *, size_t size, void **out) {
  void *block = std::malloc(size ? size : 1);
  if (!block) {
    if (PyGILState_Check()) PyErr_NoMemory();
    return 1;
  }
  *out = block;
  return 0;
}

int Reallocate(void *, void **inout, size_t size) {
  void *block = std::realloc(*inout, size ? size : 1);
  if (!block) {
    if (PyGILState_Check()) PyErr_NoMemory();
    return 1;
  }
  *inout = block;
  return 0;
}

void Release(void *, void **inout) {
  std::free(*inout);
  *inout = nullptr;
}

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

const Allocator NativeAllocator{Allocate, Reallocate, Release, nullptr};

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

int ParseWithLegacy(PyObject *args, PyObject *kwargs, const char *format,
                    const char *const *keywords, const char *const *legacy, ...) {
  va_list outputs;
  va_start(outputs, legacy);
  va_list again;
  va_copy(again, outputs);
  int ok = PyArg_VaParseTupleAndKeywords(args, kwargs, format, const_cast<char **>(keywords),
                                         outputs);
  va_end(outputs);
  if (!ok && legacy) {
    PyObject *type, *value, *trace;
    PyErr_Fetch(&type, &value, &trace);
    ok = PyArg_VaParseTupleAndKeywords(args, kwargs, format, const_cast<char **>(legacy),
                                       again);
    if (ok) {
      Py_XDECREF(type);
      Py_XDECREF(value);
      Py_XDECREF(trace);
    } else {
      PyErr_Clear();
      PyErr_Restore(type, value, trace);
    }
  }
  va_end(again);
  return ok;
}

void MissingArguments(const char *const *names, int count) {
  std::string text = count == 1 ? "Must provide argument " : "Must provide arguments ";
  for (int i = 0; i < count; ++i) {
    if (i) text += ", ";
    text += names[i];
  }
  if (text.size() > 255) text.resize(255);
  PyErr_SetString(InterfaceError, text.c_str());
}

void MissingKeywords(const char *const *keywords, int first, int last) {
  std::string text = last - first == 1 ? "Must provide argument" : "Must provide arguments";
  text += ' ';
  for (int i = first; i < last; ++i) {
    if (i > first) text += ", ";
    text += keywords[i];
  }
  if (text.size() > 255) text.resize(255);
  PyErr_SetString(InterfaceError, text.c_str());
}

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

int SequenceToArray(ProblemObject *p, Py_ssize_t *length, PyObject *obj, void **array,
                    int code) {
  *array = nullptr;
  if (!obj || obj == Py_None) return 0;
  size_t width = ElementWidth(code);
  bool is_list = PyList_Check(obj), is_tuple = PyTuple_Check(obj);
  bool is_iter = !is_list && !is_tuple && PyIter_Check(obj);
  bool is_seq = !is_list && !is_tuple && !is_iter && PySequence_Check(obj);
  Py_ssize_t size = is_list    ? PyList_GET_SIZE(obj)
                    : is_tuple ? PyTuple_GET_SIZE(obj)
                    : is_seq   ? PySequence_Size(obj)
                               : 0;
  if ((!is_list && !is_tuple && !is_iter && !is_seq) || size < 0 || width == 0 ||
      code == ElemUnified) {
    PyErr_Clear();
    PyErr_SetString(InterfaceError, "Invalid sequence of objects");
    return -1;
  }
  if (!is_iter && length) {
    if (*length >= 0 && *length != size) {
      PyErr_Format(InterfaceError, "Mismatched lengths in arguments: expected %d, found %d",
                   static_cast<int>(*length), static_cast<int>(size));
      return -1;
    }
    *length = size;
  }
  Py_INCREF(obj);
  PyObject *items = nullptr;  // fast sequence of a generic sequence
  void *block = nullptr;
  int result = -1;
  Py_ssize_t n = 0;  // items converted (iterators)
  if (is_iter) {
    Py_ssize_t capacity = 256;
    if (NativeAllocator.allocate(NativeAllocator.context, capacity * width, &block) != 0)
      goto done;
    if (code == ElemString) std::memset(block, 0, capacity * width);
    for (;;) {
      PyObject *item = PyIter_Next(obj);
      if (!item) break;
      if (n >= capacity) {
        Py_ssize_t grown = 2 * capacity;
        if (NativeAllocator.reallocate(NativeAllocator.context, &block, grown * width) != 0) {
          Py_DECREF(item);
          goto done;
        }
        if (code == ElemString)
          std::memset(static_cast<char *>(block) + capacity * width, 0,
                      (grown - capacity) * width);
        capacity = grown;
      }
      int rc = ElementToNative(p, item, block, n, code);
      Py_DECREF(item);
      if (rc < 0) goto done;
      ++n;
    }
    if (PyErr_Occurred()) goto done;
    // The arrays of one call are read with one length: an iterator must
    // agree with the arrays before it as much as a list must.
    if (length && *length >= 0 && *length != n) {
      PyErr_Format(InterfaceError, "Mismatched lengths in arguments: expected %d, found %d",
                   static_cast<int>(*length), static_cast<int>(n));
      goto done;
    }
    if (length) *length = n;
    result = 0;
    goto done;
  }
  if (is_seq) {
    items = PySequence_Fast(obj, "Unable to scan sequence");
    if (!items) goto done;
    if (PySequence_Fast_GET_SIZE(items) != size) {  // the sequence misreported its size
      PyErr_SetString(InterfaceError, "Invalid sequence of objects");
      goto done;
    }
  }
  if (NativeAllocator.allocate(NativeAllocator.context, size * width, &block) != 0) goto done;
  if (code == ElemString) std::memset(block, 0, size * width);
  for (Py_ssize_t i = 0; i < size; ++i) {
    // Converting an item may run Python code that changes the list.
    if (is_list && i >= PyList_GET_SIZE(obj)) {
      PyErr_SetString(InterfaceError, "Sequence changed size during conversion");
      goto done;
    }
    PyObject *item = is_list ? PyList_GET_ITEM(obj, i)
                     : is_tuple ? PyTuple_GET_ITEM(obj, i)
                                : PySequence_Fast_GET_ITEM(items, i);
    Py_INCREF(item);
    int rc = ElementToNative(p, item, block, i, code);
    Py_DECREF(item);
    if (rc < 0) goto done;
  }
  result = 0;
done:
  Py_XDECREF(items);
  Py_DECREF(obj);
  if (result == 0) {
    *array = block;
  } else if (block) {
    if (code == ElemString) ReleaseStrings(block, is_iter ? n : size);
    NativeAllocator.release(NativeAllocator.context, &block);
  }
  return result;
}

void ReleaseStrings(void *array, Py_ssize_t count) {
  if (!array) return;
  void **slots = static_cast<void **>(array);
  for (Py_ssize_t i = 0; i < count; ++i)
    if (slots[i]) NativeAllocator.release(NativeAllocator.context, &slots[i]);
}

int StringsToBuffer(PyObject *obj, Py_ssize_t count, void **buffer) {
  *buffer = nullptr;
  bool is_iter = obj && obj != Py_None && !PyList_Check(obj) && !PyTuple_Check(obj) &&
                 PyIter_Check(obj);
  if (!obj || obj == Py_None || count < 0 ||
      (!is_iter && !PyList_Check(obj) && !PyTuple_Check(obj) && !PySequence_Check(obj))) {
    PyErr_SetString(InterfaceError, "Invalid sequence of strings");
    return -1;
  }
  PyObject *items = nullptr;
  if (!is_iter) {
    items = PySequence_Fast(obj, "Invalid sequence of strings");
    if (!items) return -1;
    Py_ssize_t found = PySequence_Fast_GET_SIZE(items);
    if (found < count) {
      Py_DECREF(items);
      PyErr_Format(InterfaceError, "Expected %d strings but found %d", static_cast<int>(count),
                   static_cast<int>(found));
      return -1;
    }
  }
  size_t capacity = 9 * static_cast<size_t>(count), used = 0;
  void *block = nullptr;
  int result = -1;
  Py_ssize_t n = is_iter ? count : PySequence_Fast_GET_SIZE(items);
  if (NativeAllocator.allocate(NativeAllocator.context, capacity ? capacity : 1, &block) != 0) {
    Py_XDECREF(items);
    return -1;
  }
  Py_ssize_t i = 0;
  for (; i < n; ++i) {
    PyObject *item = is_iter ? PyIter_Next(obj) : PySequence_Fast_GET_ITEM(items, i);
    if (!item) {
      if (!PyErr_Occurred())
        PyErr_Format(InterfaceError, "Expected %d strings but found %d",
                     static_cast<int>(count), static_cast<int>(i));
      goto done;
    }
    Py_ssize_t len;
    const char *text = PyUnicode_Check(item) ? PyUnicode_AsUTF8AndSize(item, &len) : nullptr;
    if (!text || CheckNameText(text, len, "string", item) < 0) {
      if (!PyErr_Occurred()) PyErr_Format(InterfaceError, "Invalid string %S", item);
      if (is_iter) Py_DECREF(item);
      goto done;
    }
    size_t need = used + static_cast<size_t>(len) + 1;
    if (need > capacity) {
      size_t grown = need > 2 * capacity ? need : 2 * capacity;
      if (NativeAllocator.reallocate(NativeAllocator.context, &block, grown) != 0) {
        PyErr_Clear();
        PyErr_SetString(InterfaceError, "Out of memory");
        if (is_iter) Py_DECREF(item);
        goto done;
      }
      capacity = grown;
    }
    std::memcpy(static_cast<char *>(block) + used, text, static_cast<size_t>(len) + 1);
    used = need;
    if (is_iter) Py_DECREF(item);
  }
  result = 0;
done:
  Py_XDECREF(items);
  if (result == 0)
    *buffer = block;
  else
    NativeAllocator.release(NativeAllocator.context, &block);
  return result;
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

int ArrayToList(ProblemObject *p, Py_ssize_t count, const void *array, PyObject *list,
                int code) {
  if (!array || !list || list == Py_None) return 0;
  if (!PyList_Check(list)) {
    PyErr_Format(ModelError,
                 "Unexpected argument to conv_arr2obj: results are written into a list "
                 "given by the caller, not a %s",
                 Py_TYPE(list)->tp_name);
    return -1;
  }
  Py_ssize_t old = PyList_GET_SIZE(list);
  if (old > count && PyList_SetSlice(list, count, old, nullptr) < 0) return -1;
  for (Py_ssize_t i = 0; i < count; ++i) {
    PyObject *item = ElementToObject(p, array, i, code);
    if (!item) {
      if (!PyErr_Occurred())
        PyErr_Format(InterfaceError, "Wrong item returned from API call, type %d", code);
      return -1;
    }
    if (i < old) {
      PyList_SetItem(list, i, item);  // steals the reference
    } else {
      int rc = PyList_Append(list, item);
      Py_DECREF(item);
      if (rc < 0) return -1;
    }
  }
  return 0;
}

int CheckRange(int first, int last, bool columns) {
  if (last - first + 1 > 0) return 0;
  PyErr_SetString(InterfaceError, columns ? "Empty range of columns requested"
                                          : "Empty range of rows requested");
  return -1;
}

}  // namespace zrv
