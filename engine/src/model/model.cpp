// Model storage: sizes, compaction of the matrix, appends and deletions that
// keep matrix, names, quadratic parts, sets and indicators consistent.
#include "model/model.h"

#include <algorithm>

#include "zorvan/zrvs.h"

namespace zorvan {

Model::Model() { objectives.resize(1); }

int Model::mipents() const {
  int n = 0;
  for (char t : coltype) n += t != 'C';
  return n;
}

int Model::indicators() const {
  int n = 0;
  for (int c : indcol) n += c >= 0;
  return n;
}

int64_t Model::qcelems() const {
  int64_t n = 0;
  for (const auto &r : qrows) n += static_cast<int64_t>(r.second.size());
  return n;
}

namespace {
// Counting sort of the triplets by `line` (the row or column of each entry).
Compressed compress(int nlines, const LargeArray<int> &line, const LargeArray<int> &other,
                    const LargeArray<double> &val) {
  Compressed c;
  c.start.assign(static_cast<size_t>(nlines) + 1, 0);
  for (int l : line) ++c.start[l + 1];
  for (int k = 0; k < nlines; ++k) c.start[k + 1] += c.start[k];
  std::vector<int64_t> next(c.start.begin(), c.start.end() - 1);
  c.index.resize(val.size());
  c.value.resize(val.size());
  for (size_t e = 0; e < val.size(); ++e) {
    int64_t pos = next[line[e]]++;
    c.index[pos] = other[e];
    c.value[pos] = val[e];
  }
  return c;
}

// New index of every kept entity (-1 for deleted ones).
std::vector<int> renumbering(const std::vector<char> &del) {
  std::vector<int> map(del.size(), -1);
  int n = 0;
  for (size_t i = 0; i < del.size(); ++i)
    if (!del[i]) map[i] = n++;
  return map;
}

// Renumbers the lines (rows or columns) of the matrix entries by map and
// drops the entries of deleted lines (map -1); `other` and `val` follow.
void renumber_entries(LargeArray<int> &line, LargeArray<int> &other, LargeArray<double> &val,
                      const std::vector<int> &map) {
  size_t n = 0;
  for (size_t e = 0; e < val.size(); ++e) {
    int l = map[line[e]];
    if (l < 0) continue;
    line[n] = l, other[n] = other[e], val[n] = val[e];
    ++n;
  }
  line.resize(n), other.resize(n), val.resize(n);
}

template <class T>
void keep_flagged(std::vector<T> &v, const std::vector<char> &del) {
  size_t n = 0;
  for (size_t i = 0; i < v.size(); ++i)
    if (!del[i]) v[n++] = v[i];
  v.resize(n);
}

std::vector<char> inverted(const std::vector<char> &del) {
  std::vector<char> keep(del.size());
  for (size_t i = 0; i < del.size(); ++i) keep[i] = !del[i];
  return keep;
}

// Renumbers the column pairs of a quadratic form, dropping pairs with a
// deleted column.
QForm renumber_form(const QForm &q, const std::vector<int> &map) {
  QForm out;
  for (const auto &e : q) {
    int i = map[e.first.first], j = map[e.first.second];
    if (i >= 0 && j >= 0) out.emplace_hint(out.end(), qkey(i, j), e.second);
  }
  return out;
}
}  // namespace

Compressed Model::by_columns() const { return compress(cols(), mcol, mrow, mval); }
Compressed Model::by_rows() const { return compress(rows(), mrow, mcol, mval); }

void Model::reserve(size_t rows, size_t cols, size_t entries) {
  auto more = [](auto &v, size_t n) { v.reserve(v.size() + n); };
  if (rows) {
    more(rowtype, rows), more(rhs, rows), more(range, rows);
    more(indcol, rows), more(indflag, rows);
    rownames.reserve_more(rows);
  }
  if (cols) {
    more(lb, cols), more(ub, cols), more(limit, cols), more(coltype, cols);
    for (Objective &o : objectives) more(o.coef, cols);
    colnames.reserve_more(cols);
  }
  if (entries) more(mrow, entries), more(mcol, entries), more(mval, entries);
}

void Model::append_columns(int n) {
  size_t size = lb.size() + n;
  lb.resize(size, 0.0);
  ub.resize(size, ZRVS_PLUSINFINITY);
  limit.resize(size, 0.0);
  coltype.resize(size, 'C');
  colnames.append_unnamed(n);
  for (Objective &o : objectives) o.coef.resize(size, 0.0);
}

void Model::append_rows(int n) {
  size_t size = rowtype.size() + n;
  rowtype.resize(size, 'N');
  rhs.resize(size, 0.0);
  range.resize(size, 0.0);
  indcol.resize(size, -1);
  indflag.resize(size, 0);
  rownames.append_unnamed(n);
}

void Model::delete_columns(const std::vector<char> &del) {
  formulas.check_columns_unused(del, "ZRVSdelcols");
  formulas.delete_columns(del);
  basis_col.clear(), basis_row.clear();
  std::vector<int> map = renumbering(del);
  renumber_entries(mcol, mrow, mval, map);
  keep_flagged(lb, del), keep_flagged(ub, del), keep_flagged(limit, del);
  keep_flagged(coltype, del);
  colnames.keep_only(inverted(del));
  for (Objective &o : objectives) keep_flagged(o.coef, del);
  qobj = renumber_form(qobj, map);
  for (auto it = qrows.begin(); it != qrows.end();) {
    it->second = renumber_form(it->second, map);
    it = it->second.empty() ? qrows.erase(it) : std::next(it);
  }
  // Sets keep their remaining members.
  std::vector<int64_t> start{0};
  size_t m = 0;
  for (int s = 0; s < sets(); ++s) {
    for (int64_t k = setstart[s]; k < setstart[s + 1]; ++k) {
      int c = map[setcol[k]];
      if (c < 0) continue;
      setcol[m] = c, setref[m] = setref[k];
      ++m;
    }
    start.push_back(static_cast<int64_t>(m));
  }
  setcol.resize(m), setref.resize(m), setstart = std::move(start);
  for (size_t r = 0; r < indcol.size(); ++r) {
    if (indcol[r] < 0) continue;
    indcol[r] = map[indcol[r]];
    if (indcol[r] < 0) indflag[r] = 0;
  }
}

void Model::delete_rows(const std::vector<char> &del) {
  formulas.delete_rows(del);
  basis_col.clear(), basis_row.clear();
  std::vector<int> map = renumbering(del);
  renumber_entries(mrow, mcol, mval, map);
  keep_flagged(rowtype, del), keep_flagged(rhs, del), keep_flagged(range, del);
  keep_flagged(indcol, del), keep_flagged(indflag, del);
  rownames.keep_only(inverted(del));
  std::map<int, QForm> q;
  for (auto &e : qrows)
    if (map[e.first] >= 0) q.emplace_hint(q.end(), map[e.first], std::move(e.second));
  qrows = std::move(q);
}

void Model::delete_sets(const std::vector<char> &del) {
  std::vector<int64_t> start{0};
  size_t m = 0;
  for (int s = 0; s < sets(); ++s) {
    if (del[s]) continue;
    for (int64_t k = setstart[s]; k < setstart[s + 1]; ++k) {
      setcol[m] = setcol[k], setref[m] = setref[k];
      ++m;
    }
    start.push_back(static_cast<int64_t>(m));
  }
  setcol.resize(m), setref.resize(m), setstart = std::move(start);
  keep_flagged(settype, del);
  setnames.keep_only(inverted(del));
}

std::string size_text(const Model &m) {
  return std::to_string(m.rows()) + " rows, " + std::to_string(m.cols()) + " columns, " +
         std::to_string(m.elems()) + " nonzeros";
}

}  // namespace zorvan
