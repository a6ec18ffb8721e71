// Conversion between Python arguments and the engine's native arrays, in
// both directions, driven by element codes; keyword parsing with legacy
// names; the "Must provide argument" messages; engine calls without the
// interpreter lock. Defined by job in native_allocator.cpp,
// argument_keywords.cpp, element_codes.cpp, argument_sequences.cpp and
// argument_strings.cpp.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include <cstddef>
#include <cstdint>
#include <utility>

#include "base/engine_call.h"

struct ProblemObject;

namespace zrv {

// What one element is on the native side and how it maps to Python.
enum ElementCode : int {
  ElemRow = 0,         // int32 row index; constraint objects, row names
  ElemColumn = 1,      // int32 column index; var objects, column names
  ElemSet = 2,         // int32 set index; sos objects (Python-to-native only)
  ElemInt = 3,         // int32
  ElemLong = 4,        // int64
  ElemDouble = 5,      // double
  ElemChar = 6,        // one character
  ElemCharNumber = 7,  // small integer held in a char
  ElemString = 8,      // char* to a fresh NUL-terminated copy
  ElemCut = 9,         // poolcut handle word
  ElemObject = 10,     // zrvsobject handle word
  ElemUnified = 11,    // int32 unified row/column index (single values only)
};

// Bytes per element of a whole sequence; 0 for codes that have none.
size_t ElementWidth(int code);

// The module-wide allocation interface for temporary native arrays. Each
// operation returns 0 on success; on failure it returns non-zero and, when the
// calling thread holds the interpreter lock, sets MemoryError.
struct Allocator {
  int (*allocate)(void *context, size_t size, void **out);
  int (*reallocate)(void *context, void **inout, size_t size);
  void (*release)(void *context, void **inout);
  void *context;
};
extern const Allocator NativeAllocator;

// A temporary native array released on every path out of its scope.
class NativeArray {
 public:
  NativeArray() = default;
  ~NativeArray() { reset(); }
  NativeArray(const NativeArray &) = delete;
  NativeArray &operator=(const NativeArray &) = delete;
  void **slot() { return &data_; }
  void *get() const { return data_; }
  template <class T>
  T *as() const { return static_cast<T *>(data_); }
  void reset() {
    if (data_) NativeAllocator.release(NativeAllocator.context, &data_);
  }

 private:
  void *data_ = nullptr;
};

// An integer argument: a Python int (or subclass) or a NumPy signed integer
// scalar. Unsigned NumPy scalars are not integers here.
bool IsIntegerObject(PyObject *o);

// Parses with the current keyword list and, when that fails and a legacy list
// is given, with the legacy one; a failure of both reports the current names.
int ParseWithLegacy(PyObject *args, PyObject *kwargs, const char *format,
                    const char *const *keywords, const char *const *legacy, ...);

// InterfaceError "Must provide argument x" / "Must provide arguments x, y".
void MissingArguments(const char *const *names, int count);
// The same for the keyword positions [first, last) of a keyword list.
void MissingKeywords(const char *const *keywords, int first, int last);

// Object to a row, column or set index (codes 0, 1, 2, 3, 11). 0 or -1.
int ObjectToIndex(PyObject *obj, ProblemObject *p, int32_t *index, int code);
// One element into position `pos` of a native array. A null object stores a
// null array. 0 or -1.
int ElementToNative(ProblemObject *p, PyObject *obj, void *array, Py_ssize_t pos, int code);
// A whole sequence (list, tuple, iterator or other sequence) into a native
// array from the allocation interface. None gives a null array. `length`, if
// given, fixes or checks the common length of the arrays of one call.
int SequenceToArray(ProblemObject *p, Py_ssize_t *length, PyObject *obj, void **array,
                    int code);
// A list of `count` strings packed NUL-separated into one buffer.
int StringsToBuffer(PyObject *obj, Py_ssize_t count, void **buffer);
// Frees the per-element copies of an ElemString array of `count` entries.
void ReleaseStrings(void *array, Py_ssize_t count);
// A native element as a new Python object by its code (null with an
// exception set on failure).
PyObject *ElementToObject(ProblemObject *p, const void *array, Py_ssize_t i, int code);
// Fills a caller's list with `count` native elements, replacing and
// appending in place so the list ends with exactly `count` items.
int ArrayToList(ProblemObject *p, Py_ssize_t count, const void *array, PyObject *list,
                int code);

// "Empty range of columns requested" / rows, when last < first.
int CheckRange(int first, int last, bool columns);

}  // namespace zrv
