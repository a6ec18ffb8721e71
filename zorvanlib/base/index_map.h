// Object identifier -> position (column, row or set) within one problem.
//
// Identifiers are serial numbers, and the objects of one problem are mostly
// created together, so their identifiers fill a narrow range. Those in the
// range live in a table indexed by identifier minus the lowest one: 4 bytes
// an identifier, one load a lookup, no allocation an insert. Identifiers far
// from the range (an object created long before or after the others) go to
// a hash map, so that a scattered set of identifiers never costs more than
// a small multiple of its size.
//
// Copies share their storage until one of them changes (copy on write), so
// a problem made from another (problem.copy, a temporary problem) takes its
// maps in constant time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

namespace zrv {

// The storage of an IndexMap.
class IndexTable {
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

  size_t size() const { return count_ + overflow_.size(); }
  bool empty() const { return size() == 0; }

  // The dense range, for IndexMap's lookups.
  const int32_t *slots() const { return table_.data(); }
  size_t span() const { return table_.size(); }
  uint64_t base() const { return base_; }
  // The position of an identifier outside the dense range, or kAbsent.
  int32_t FindOutside(uint64_t id) const { return overflow_.empty() ? kAbsent : FindOverflow(id); }

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

// Identifier -> position, sharing its storage with its copies until one of
// them changes. Lookups read the dense range through pointers kept here, as
// fast as a table of its own.
class IndexMap {
 public:
  static constexpr int32_t kAbsent = IndexTable::kAbsent;

  IndexMap() : table_(std::make_shared<IndexTable>()) { Sync(); }

  int32_t Find(uint64_t id) const {
    uint64_t k = id - base_;
    if (k < span_) return slots_[k];
    return table_->FindOutside(id);
  }
  bool Contains(uint64_t id) const { return Find(id) != kAbsent; }

  // As IndexTable's; each first makes the storage this map's own.
  bool Insert(uint64_t id, int32_t pos) {
    bool inserted = Own().Insert(id, pos);
    Sync();
    return inserted;
  }
  void Set(uint64_t id, int32_t pos) {
    Own().Set(id, pos);
    Sync();
  }
  void Erase(uint64_t id) {
    Own().Erase(id);
    Sync();
  }
  template <class F>
  void ForEach(F f) {
    Own().ForEach(f);
    Sync();
  }

  size_t size() const { return table_->size(); }
  bool empty() const { return table_->empty(); }
  // Whether another map shares this one's storage.
  bool shared() const { return table_.use_count() > 1; }

 private:
  // The storage, copied first when another map shares it. Throws
  // std::bad_alloc.
  IndexTable &Own() {
    if (table_.use_count() > 1) table_ = std::make_shared<IndexTable>(*table_);
    return *table_;
  }
  void Sync() {
    slots_ = table_->slots();
    span_ = table_->span();
    base_ = table_->base();
  }

  std::shared_ptr<IndexTable> table_;
  const int32_t *slots_ = nullptr;
  size_t span_ = 0;
  uint64_t base_ = 0;
};

}  // namespace zrv
