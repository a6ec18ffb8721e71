// Object identifier -> position (column, row or set) within one problem.
//
// Identifiers are serial numbers, and the objects of one problem are mostly
// created together, so their identifiers fill a narrow range. Those in the
// range live in a table indexed by identifier minus the lowest one: 4 bytes
// an identifier, one load a lookup, no allocation an insert. Identifiers far
// from the range (an object created long before or after the others) go to
// a hash map, so that a scattered set of identifiers never costs more than
// a small multiple of its size.
#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace zrv {

class IndexMap {
 public:
  static constexpr int32_t kAbsent = -1;

  // The position of an identifier, or kAbsent.
  int32_t Find(uint64_t id) const {
    uint64_t k = id - base_;
    if (k < table_.size()) return table_[k];
    return overflow_.empty() ? kAbsent : FindOverflow(id);
  }
  bool Contains(uint64_t id) const { return Find(id) != kAbsent; }

  // Adds an identifier at a position; false (and no change) when it is
  // already there. Throws std::bad_alloc.
  bool Insert(uint64_t id, int32_t pos);
  // Adds or moves an identifier. Throws std::bad_alloc.
  void Set(uint64_t id, int32_t pos);
  void Erase(uint64_t id);
  // Room for identifiers up to `last` (of a batch about to be inserted).
  void Prepare(uint64_t first, uint64_t last);

  size_t size() const { return count_ + overflow_.size(); }
  bool empty() const { return size() == 0; }

  // Calls f(id, position&) for every identifier; f may change the position.
  template <class F>
  void ForEach(F f) {
    for (size_t k = 0; k < table_.size(); ++k)
      if (table_[k] != kAbsent) f(base_ + k, table_[k]);
    for (auto &kv : overflow_) f(kv.first, kv.second);
  }

 private:
  int32_t FindOverflow(uint64_t id) const;
  // Whether a table spanning that many identifiers stays dense enough.
  bool DenseEnough(uint64_t span, size_t entries) const {
    return span <= 4 * static_cast<uint64_t>(entries) + 4096;
  }
  // Widens the table to cover [first, last]; false when that would make it
  // too sparse.
  bool Cover(uint64_t first, uint64_t last, size_t entries);
  // Rebuilds the table around the densest range once most identifiers have
  // gone to the hash map.
  void Rebalance();

  std::vector<int32_t> table_;  // by identifier - base_; kAbsent: none
  uint64_t base_ = 0;
  size_t count_ = 0;  // identifiers in the table
  std::unordered_map<uint64_t, int32_t> overflow_;
  size_t rebalance_at_ = 1024;  // overflow size that triggers Rebalance
};

}  // namespace zrv
