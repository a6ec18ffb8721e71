// The allocation interface of temporary native arrays: the C heap, with
// MemoryError raised when the calling thread holds the interpreter lock.
#include "problem/arguments.h"

#include <cstdlib>

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

}  // namespace

const Allocator NativeAllocator{Allocate, Reallocate, Release, nullptr};

}  // namespace zrv
