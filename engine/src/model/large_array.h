// Vectors for the model's largest arrays (the matrix entries).
//
// Blocks of 2 MB and more are asked for in transparent huge pages where the
// system offers them: filling a matrix of millions of entries then takes one
// page fault per 2 MB instead of one per 4 KB, which on some machines costs
// as much as writing the entries. Elements of new room are left
// uninitialised (the model writes them right after growing), so growing
// writes the memory once instead of twice.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <new>
#include <type_traits>
#include <utility>
#include <vector>

#if defined(__linux__)
#include <sys/mman.h>
#endif

namespace zorvan {

template <class T>
struct LargeArrayAllocator {
  static_assert(std::is_trivially_copyable<T>::value, "large arrays hold plain values");
  using value_type = T;
  static constexpr size_t kHugePage = size_t{2} << 20;
  static constexpr size_t kHugeFrom = kHugePage;

  LargeArrayAllocator() = default;
  template <class U>
  LargeArrayAllocator(const LargeArrayAllocator<U> &) {}

  T *allocate(size_t n) {
    if (n > SIZE_MAX / sizeof(T)) throw std::bad_alloc();
    const size_t bytes = n * sizeof(T);
    if (bytes < kHugeFrom) return static_cast<T *>(::operator new(bytes));
    const size_t rounded = (bytes + kHugePage - 1) / kHugePage * kHugePage;
    void *p = std::aligned_alloc(kHugePage, rounded);
    if (!p) throw std::bad_alloc();
#if defined(MADV_HUGEPAGE)
    madvise(p, rounded, MADV_HUGEPAGE);  // a hint: without huge pages all still works
#endif
    return static_cast<T *>(p);
  }

  void deallocate(T *p, size_t n) {
    if (n * sizeof(T) < kHugeFrom)
      ::operator delete(p);
    else
      std::free(p);
  }

  // Value-less construction leaves the element uninitialised.
  template <class U>
  void construct(U *p) noexcept {
    ::new (static_cast<void *>(p)) U;
  }
  template <class U, class... Args>
  void construct(U *p, Args &&...args) {
    ::new (static_cast<void *>(p)) U(std::forward<Args>(args)...);
  }

  template <class U>
  bool operator==(const LargeArrayAllocator<U> &) const { return true; }
  template <class U>
  bool operator!=(const LargeArrayAllocator<U> &) const { return false; }
};

template <class T>
using LargeArray = std::vector<T, LargeArrayAllocator<T>>;

}  // namespace zorvan
