// The identifier table of a problem: a dense range plus a hash map for the
// identifiers outside it.
#include "base/index_map.h"

#include <algorithm>
#include <utility>

namespace zrv {

int32_t IndexTable::FindOverflow(uint64_t id) const {
  auto it = overflow_.find(id);
  return it == overflow_.end() ? kAbsent : it->second;
}

bool IndexTable::Insert(uint64_t id, int32_t pos) {
  uint64_t k = id - base_;
  if (k < table_.size()) {
    if (table_[k] != kAbsent) return false;
    table_[k] = pos;
    ++count_;
    return true;
  }
  if (!overflow_.empty() && overflow_.count(id)) return false;
  if (Cover(id, id, count_ + 1)) {
    table_[id - base_] = pos;
    ++count_;
    return true;
  }
  overflow_.emplace(id, pos);
  if (overflow_.size() >= rebalance_at_) Rebalance();
  return true;
}

void IndexTable::Set(uint64_t id, int32_t pos) {
  uint64_t k = id - base_;
  if (k < table_.size()) {
    count_ += table_[k] == kAbsent;
    table_[k] = pos;
    return;
  }
  auto it = overflow_.find(id);
  if (it != overflow_.end())
    it->second = pos;
  else
    Insert(id, pos);
}

void IndexTable::Erase(uint64_t id) {
  uint64_t k = id - base_;
  if (k < table_.size()) {
    if (table_[k] != kAbsent) table_[k] = kAbsent, --count_;
    return;
  }
  overflow_.erase(id);
}

bool IndexTable::Cover(uint64_t first, uint64_t last, size_t entries) {
  const uint64_t old_span = table_.size();
  const uint64_t old_last = base_ + old_span - 1;
  uint64_t lo = old_span ? std::min(base_, first) : first;
  uint64_t hi = old_span ? std::max(old_last, last) : last;
  // Room beyond what is needed, so that a run of inserts in increasing or
  // decreasing order widens the table a logarithmic number of times.
  uint64_t room = std::max<uint64_t>(old_span / 2, 64);
  uint64_t wide_lo = lo < base_ || !old_span ? lo - std::min(lo, room) : lo;
  uint64_t wide_hi = hi > old_last || !old_span ? hi + room : hi;
  if (!DenseEnough(wide_hi - wide_lo + 1, entries)) {
    wide_lo = lo, wide_hi = hi;
    if (!DenseEnough(hi - lo + 1, entries)) return false;
  }
  const size_t span = static_cast<size_t>(wide_hi - wide_lo + 1);
  if (old_span && wide_lo == base_) {
    table_.resize(span, kAbsent);
  } else {
    std::vector<int32_t> wider(span, kAbsent);
    std::copy(table_.begin(), table_.end(), wider.begin() + (old_span ? base_ - wide_lo : 0));
    table_ = std::move(wider);
    base_ = wide_lo;
  }
  // Identifiers of the hash map that the table now covers move into it.
  for (auto it = overflow_.begin(); it != overflow_.end();) {
    uint64_t k = it->first - base_;
    if (k < table_.size()) {
      table_[k] = it->second;
      ++count_;
      it = overflow_.erase(it);
    } else {
      ++it;
    }
  }
  return true;
}

void IndexTable::Rebalance() {
  std::vector<std::pair<uint64_t, int32_t>> all;
  all.reserve(size());
  ForEach([&](uint64_t id, int32_t &pos) { all.emplace_back(id, pos); });
  std::sort(all.begin(), all.end());
  // The range of the allowed width holding the most identifiers.
  const uint64_t width = 4 * static_cast<uint64_t>(all.size()) + 4096;
  size_t best_first = 0, best_count = 0;
  for (size_t i = 0, j = 0; j < all.size(); ++j) {
    while (all[j].first - all[i].first >= width) ++i;
    if (j - i + 1 > best_count) best_count = j - i + 1, best_first = i;
  }
  std::vector<int32_t> table;
  std::unordered_map<uint64_t, int32_t> overflow;
  uint64_t base = all.empty() ? 0 : all[best_first].first;
  if (best_count)
    table.assign(static_cast<size_t>(all[best_first + best_count - 1].first - base + 1), kAbsent);
  for (size_t i = 0; i < all.size(); ++i) {
    if (i >= best_first && i < best_first + best_count)
      table[static_cast<size_t>(all[i].first - base)] = all[i].second;
    else
      overflow.emplace(all[i].first, all[i].second);
  }
  table_ = std::move(table);
  overflow_ = std::move(overflow);
  base_ = base;
  count_ = best_count;
  rebalance_at_ = 2 * overflow_.size() + 1024;
}

}  // namespace zrv
