// Names of rows, columns and sets, with a name-to-index map built on demand.
#include "model/model.h"

#include <cstdlib>

namespace zorvan {

std::string Names::get(size_t i) const {
  if (!names_[i].empty()) return names_[i];
  return std::string(1, prefix_) + std::to_string(i);
}

void Names::set(size_t i, std::string name) {
  if (indexed_ && !names_[i].empty()) {
    auto it = index_.find(names_[i]);
    // Dropping the entry of the old name may uncover a later duplicate: rebuild.
    if (it != index_.end() && it->second == static_cast<int>(i)) indexed_ = false;
  }
  if (indexed_ && !name.empty()) {
    auto inserted = index_.emplace(name, static_cast<int>(i));
    if (!inserted.second && inserted.first->second > static_cast<int>(i))
      inserted.first->second = static_cast<int>(i);
  }
  names_[i] = std::move(name);
}

int Names::find(const std::string &name) const {
  if (!indexed_) {
    index_.clear();
    index_.reserve(names_.size());
    for (size_t i = 0; i < names_.size(); ++i)
      if (!names_[i].empty()) index_.emplace(names_[i], static_cast<int>(i));
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
  if (i >= static_cast<long long>(names_.size()) || !names_[i].empty()) return -1;
  return static_cast<int>(i);
}

void Names::keep_only(const std::vector<char> &keep) {
  size_t n = 0;
  for (size_t i = 0; i < names_.size(); ++i) {
    if (!keep[i]) continue;
    if (n != i) names_[n] = std::move(names_[i]);  // a self-move would empty it
    ++n;
  }
  names_.resize(n);
  index_.clear();
  indexed_ = false;
}

}  // namespace zorvan
