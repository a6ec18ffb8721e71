// Names of rows, columns and sets, with a name-to-index map built on demand.
#include "model/model.h"

#include <cstdlib>

namespace zorvan {

std::string Names::get(size_t i) const {
  if (refs_[i] != 0) return std::string(text(i));
  return std::string(1, prefix_) + std::to_string(i);
}

void Names::set(size_t i, std::string_view name) {
  if (indexed_ && refs_[i] != 0) {
    auto it = index_.find(std::string(text(i)));
    // Dropping the entry of the old name may uncover a later duplicate: rebuild.
    if (it != index_.end() && it->second == static_cast<int>(i)) indexed_ = false;
  }
  if (indexed_ && !name.empty()) {
    auto inserted = index_.emplace(std::string(name), static_cast<int>(i));
    if (!inserted.second && inserted.first->second > static_cast<int>(i))
      inserted.first->second = static_cast<int>(i);
  }
  unused_ += length_of(refs_[i]);
  if (name.empty()) {
    refs_[i] = 0;
  } else {
    refs_[i] = static_cast<uint64_t>(pool_.size()) << kLengthBits | name.size();
    pool_.append(name);
  }
  if (unused_ > 4096 && unused_ > pool_.size() / 2) compact();
}

void Names::compact() {
  std::string pool;
  pool.reserve(pool_.size() - unused_);
  for (size_t i = 0; i < refs_.size(); ++i) {
    if (refs_[i] == 0) continue;
    std::string_view t = text(i);
    refs_[i] = static_cast<uint64_t>(pool.size()) << kLengthBits | t.size();
    pool.append(t);
  }
  pool_.swap(pool);
  unused_ = 0;
}

int Names::find(const std::string &name) const {
  if (!indexed_) {
    index_.clear();
    index_.reserve(refs_.size());
    for (size_t i = 0; i < refs_.size(); ++i)
      if (refs_[i] != 0) index_.emplace(std::string(text(i)), static_cast<int>(i));
    indexed_ = true;
  }
  auto it = index_.find(name);
  if (it != index_.end()) return it->second;
  // A generated name refers to an unnamed entry.
  if (name.size() < 2 || name[0] != prefix_) return -1;
  for (size_t k = 1; k < name.size(); ++k)
    if (name[k] < '0' || name[k] > '9') return -1;
  if (name.size() > 11 || (name[1] == '0' && name.size() > 2)) return -1;
  long long i = std::atoll(name.c_str() + 1);
  if (i >= static_cast<long long>(refs_.size()) || refs_[i] != 0) return -1;
  return static_cast<int>(i);
}

void Names::keep_only(const std::vector<char> &keep) {
  size_t n = 0;
  for (size_t i = 0; i < refs_.size(); ++i) {
    if (!keep[i]) {
      unused_ += length_of(refs_[i]);
      continue;
    }
    refs_[n++] = refs_[i];
  }
  refs_.resize(n);
  if (unused_ > pool_.size() / 2) compact();
  index_.clear();
  indexed_ = false;
}

}  // namespace zorvan
