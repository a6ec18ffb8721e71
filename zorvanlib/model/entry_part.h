// One part of an expression (the linear or the quadratic entries), ordered
// by variable identifier.
//
// The entries live in a block with a sorted, duplicate-free prefix and an
// unsorted tail of recent insertions. Adding is a push onto the tail; the
// tail is sorted and merged into the prefix (adding coefficients of equal
// keys in insertion order) before the part is read, and whenever it has
// grown larger than the prefix. Accumulating n terms therefore costs
// O(n log n) at most, whatever the order of the variables.
//
// Blocks are shared between copies: copying an expression (as every
// comparison does to make a constraint's body) takes one more count on the
// block instead of copying the entries and a reference to each variable.
// A part that changes entries while its block is shared first makes a
// block of its own (copy on write), so no copy ever sees another change.
// Entry holds references; the block releases them when its last part goes.
// Counts change only under the interpreter lock, like the references.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <new>

namespace zrv {

// A read-only run of entries; valid until the part next changes.
template <class Entry>
struct EntryView {
  const Entry *first = nullptr;
  size_t count = 0;
  const Entry *begin() const { return first; }
  const Entry *end() const { return first + count; }
  const Entry *data() const { return first; }
  size_t size() const { return count; }
  bool empty() const { return count == 0; }
  const Entry &operator[](size_t i) const { return first[i]; }
};

// A writable run of entries (coefficients may change, keys must not).
template <class Entry>
struct MutableEntryView {
  Entry *first = nullptr;
  size_t count = 0;
  Entry *begin() const { return first; }
  Entry *end() const { return first + count; }
};

template <class Entry>
class Part {
 public:
  using View = EntryView<Entry>;

  Part() = default;
  Part(const Part &) = delete;
  Part &operator=(const Part &) = delete;
  ~Part() { Drop(); }

  bool Empty() const { return !block_ || block_->size == 0; }
  // Takes over the references held by e.
  void Push(const Entry &e) {
    Own(Size() + 1);
    block_->items()[block_->size++] = e;
    if (block_->size - block_->sorted > std::max<size_t>(block_->sorted, 1024)) Normalise();
  }
  // Sorted by key, one entry per key.
  View Items() {
    Normalise();
    return Raw();
  }
  // Entries as inserted (keys may repeat).
  View Raw() const { return block_ ? View{block_->items(), block_->size} : View{}; }
  MutableEntryView<Entry> MutableRaw() {
    if (!block_) return {};
    Own(Size());
    return {block_->items(), block_->size};
  }
  void Reserve(size_t n) { Own(std::max(n, Size())); }
  // Where the entries live (null when there are none), to prefetch them.
  const void *Storage() const { return block_; }
  void Normalise();
  // Appends the entries of src times factor. An empty part takes src's
  // entries unscaled by sharing its block, and otherwise takes over src's
  // order as it is: a copy of an ordered part is ordered without sorting
  // it again.
  void AppendScaled(const Part &src, double factor);

 private:
  struct Block {
    size_t refs, size, capacity, sorted;
    Entry *items() { return reinterpret_cast<Entry *>(this + 1); }
  };
  static_assert(sizeof(Block) % alignof(Entry) == 0, "entries follow the block header");

  size_t Size() const { return block_ ? block_->size : 0; }

  static Block *Allocate(size_t capacity) {
    if (capacity > (SIZE_MAX - sizeof(Block)) / sizeof(Entry)) throw std::bad_alloc();
    void *p = std::malloc(sizeof(Block) + capacity * sizeof(Entry));
    if (!p) throw std::bad_alloc();
    return new (p) Block{1, 0, capacity, 0};
  }

  // Makes block_ this part's own, with room for at least `room` entries.
  void Own(size_t room) {
    if (block_ && block_->refs == 1 && block_->capacity >= room) return;
    size_t size = Size();
    size_t capacity = std::max<size_t>(room, 4);
    if (block_ && block_->capacity < room) capacity = std::max(capacity, 2 * block_->capacity);
    Block *b = Allocate(capacity);  // the only step that can throw
    if (block_) {
      std::memcpy(static_cast<void *>(b->items()), block_->items(), size * sizeof(Entry));
      b->size = size;
      b->sorted = block_->sorted;
      if (block_->refs > 1) {  // the old block stays with its other parts
        for (size_t i = 0; i < size; ++i) b->items()[i].Retain();
        --block_->refs;
      } else {
        std::free(block_);  // the references moved to b
      }
    }
    block_ = b;
  }

  void Drop() {
    if (!block_) return;
    if (--block_->refs == 0) {
      for (size_t i = 0; i < block_->size; ++i) block_->items()[i].Release();
      std::free(block_);
    }
    block_ = nullptr;
  }

  Block *block_ = nullptr;
};

template <class Entry>
void Part<Entry>::AppendScaled(const Part &src, double factor) {
  if (src.Empty()) return;
  if (Empty() && factor == 1.0) {
    Drop();
    block_ = src.block_;
    ++block_->refs;
    return;
  }
  const bool was_empty = Empty();
  const size_t n = src.block_->size;
  Own(Size() + n);  // the only step that can throw
  const Entry *from = src.block_->items();
  Entry *to = block_->items() + block_->size;
  for (size_t i = 0; i < n; ++i) {
    Entry y = from[i];
    y.coef *= factor;
    y.Retain();
    to[i] = y;
  }
  block_->size += n;
  if (was_empty)
    block_->sorted = src.block_->sorted;
  else if (block_->size - block_->sorted > std::max<size_t>(block_->sorted, 1024))
    Normalise();
}

template <class Entry>
void Part<Entry>::Normalise() {
  if (!block_ || block_->sorted == block_->size) return;
  Own(block_->size);  // a shared block is never reordered under its other parts
  Entry *items = block_->items();
  const size_t n = block_->size, sorted = block_->sorted;
  Entry *tail = items + sorted;
  if (!std::is_sorted(tail, items + n)) std::stable_sort(tail, items + n);
  // Fast case: the tail continues the prefix.
  if (sorted == 0 || *(tail - 1) < *tail) {
    size_t w = sorted;
    for (size_t r = sorted; r < n; ++r) {
      if (w > sorted && items[w - 1].SameKey(items[r])) {
        items[w - 1].coef += items[r].coef;
        items[r].Release();
      } else {
        items[w++] = items[r];
      }
    }
    block_->size = block_->sorted = w;
    return;
  }
  // General case: merge the prefix and the sorted tail into a new block;
  // for equal keys the prefix comes first, then the tail in insertion order.
  Block *out = Allocate(n);
  Entry *o = out->items();
  size_t w = 0, i = 0, j = sorted;
  while (i < sorted || j < n) {
    const Entry &e = (j >= n || (i < sorted && !(items[j] < items[i]))) ? items[i++] : items[j++];
    if (w > 0 && o[w - 1].SameKey(e)) {
      o[w - 1].coef += e.coef;
      e.Release();
    } else {
      o[w++] = e;
    }
  }
  out->size = out->sorted = w;
  std::free(block_);  // its references moved to out
  block_ = out;
}

}  // namespace zrv
