// Reader of free and fixed MPS files.
//
// Sections: NAME, OBJSENSE (MIN/MAX on the same or the next line), OBJNAME,
// ROWS (N, L, G, E), COLUMNS (with 'MARKER' 'INTORG'/'INTEND' integer
// markers), RHS (the objective row's entry is minus the objective constant),
// RANGES, BOUNDS (UP, LO, FX, FR, MI, PL, BV, LI, UI, SC, SI), QUADOBJ (one
// triangle) and QMATRIX (both triangles) of the objective's 0.5 x'Qx,
// QCMATRIX <row> (both triangles of the row's x'Qx), SOS (S1/S2 headers and
// "column weight" members) and INDICATORS (IF row column value), ENDATA.
//
// Free format splits lines at blanks, so names cannot hold blanks; fixed
// format takes fields from columns 2-3, 5-12, 15-22, 25-36, 40-47, 50-61
// (a number in field 4 may run past column 36 when fields 5 and 6 are
// empty). Section headers start in column 1, comment lines with '*'.
// The first N row is the objective unless OBJNAME names another; further N
// rows stay in the model as free rows.
#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <map>
#include <unordered_map>

#include "core/errors.h"
#include "io/file_format.h"
#include "io/number_text.h"
#include "zorvan/zrvs.h"

namespace zorvan {

namespace {

enum class Section {
  None, Name, ObjSense, ObjName, Rows, Columns, Rhs, Ranges, Bounds,
  QuadObj, QMatrix, QcMatrix, Sos, Indicators, End
};

bool parse_section(const std::string &word, Section &s) {
  static const std::unordered_map<std::string, Section> sections = {
      {"NAME", Section::Name},         {"OBJSENSE", Section::ObjSense},
      {"OBJSENS", Section::ObjSense},  {"OBJNAME", Section::ObjName},
      {"ROWS", Section::Rows},         {"COLUMNS", Section::Columns},
      {"RHS", Section::Rhs},           {"RANGES", Section::Ranges},
      {"BOUNDS", Section::Bounds},     {"QUADOBJ", Section::QuadObj},
      {"QSECTION", Section::QuadObj},  {"QMATRIX", Section::QMatrix},
      {"QCMATRIX", Section::QcMatrix}, {"SOS", Section::Sos},
      {"INDICATORS", Section::Indicators}, {"ENDATA", Section::End}};
  auto it = sections.find(word);
  if (it == sections.end()) return false;
  s = it->second;
  return true;
}

std::vector<std::string> split_blanks(const std::string &line) {
  std::vector<std::string> out;
  size_t i = 0, n = line.size();
  while (i < n) {
    while (i < n && std::isspace(static_cast<unsigned char>(line[i]))) ++i;
    size_t b = i;
    while (i < n && !std::isspace(static_cast<unsigned char>(line[i]))) ++i;
    if (i > b) out.push_back(line.substr(b, i - b));
  }
  return out;
}

std::string trim(const std::string &s) {
  size_t b = 0, e = s.size();
  while (b < e && std::isspace(static_cast<unsigned char>(s[b]))) ++b;
  while (e > b && std::isspace(static_cast<unsigned char>(s[e - 1]))) --e;
  return s.substr(b, e - b);
}

std::string upper(std::string s) {
  for (char &c : s) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return s;
}

// Fields of a fixed-format line by column positions.
std::vector<std::string> fixed_fields(const std::string &line) {
  auto cut = [&](size_t b, size_t e) {
    if (b >= line.size()) return std::string();
    return trim(line.substr(b, std::min(e, line.size()) - b));
  };
  std::vector<std::string> f(6);
  f[0] = cut(1, 3);
  f[1] = cut(4, 12);
  f[2] = cut(14, 22);
  // Field 4: a number that may run past its columns.
  size_t b = 24;
  while (b < line.size() && line[b] == ' ') ++b;
  size_t e = b;
  while (e < line.size() && !std::isspace(static_cast<unsigned char>(line[e]))) ++e;
  if (b < line.size()) f[3] = line.substr(b, e - b);
  if (e <= 39) {
    f[4] = cut(39, 47);
    f[5] = cut(49, 61);
  } else if (!trim(line.substr(e)).empty()) {
    f[4] = "\x01";  // marks text where fields 5 and 6 cannot be told apart
  }
  return f;
}

struct RowInfo {
  char type;
  int index;  // model row, -1 for the objective
};

class MpsReader {
 public:
  MpsReader(const std::string &text, bool fixed, const std::string &display, const char *who,
            std::vector<std::string> &warnings)
      : text_(text), fixed_(fixed), display_(display), who_(who), warnings_(warnings) {}

  Model read();

 private:
  [[noreturn]] void error(const char *format, ...) __attribute__((format(printf, 2, 3)));
  void warn(const std::string &what) {
    warnings_.push_back("file '" + display_ + "', line " + std::to_string(line_) + ": " + what);
  }
  double number(const std::string &token, const char *what);
  int column(const std::string &name);
  const RowInfo &row(const std::string &name);
  void need(const std::vector<std::string> &f, size_t k, const char *what) {
    if (f[k].empty()) error("%s is missing", what);
    if (f[k] == "\x01") error("a number that does not fit its field is followed by more fields");
  }
  std::vector<std::string> fields(const std::string &line);

  void rows_line(const std::vector<std::string> &f);
  void columns_line(std::vector<std::string> f);
  void rhs_line(const std::vector<std::string> &f, bool ranges);
  void bounds_line(const std::vector<std::string> &f);
  void quadratic_line(const std::vector<std::string> &f);
  void sos_line(const std::vector<std::string> &f);
  void indicator_line(const std::vector<std::string> &f);
  void finish();

  const std::string &text_;
  bool fixed_;
  const std::string &display_;
  const char *who_;
  std::vector<std::string> &warnings_;
  int line_ = 0;
  Section section_ = Section::None;
  Model m_ = unnamed_model();
  static Model unnamed_model() {
    Model m;
    m.name.clear();  // the caller names it after the file when NAME is missing
    return m;
  }

  std::string objname_;      // OBJNAME, or the first N row once seen
  bool objective_seen_ = false;
  std::unordered_map<std::string, RowInfo> rows_;
  std::unordered_map<std::string, int> cols_;
  std::vector<std::pair<int, std::pair<int, double>>> entries_;  // row, column, value
  std::vector<double> rangeval_;
  std::vector<char> has_range_;
  bool integer_block_ = false;
  std::string last_column_;
  int last_col_ = -1;
  int qrow_ = -2;  // QCMATRIX row; -1 objective (QUADOBJ/QMATRIX)
  bool qfull_ = false;
  std::map<QKey, double> qsum_;  // entries of the open quadratic section
  char settype_ = 0;
  std::string setname_;
  std::vector<std::pair<int, double>> members_;
  bool in_set_ = false;
  void close_quadratic();
  void close_set();
};

void MpsReader::error(const char *format, ...) {
  char buf[512];
  va_list args;
  va_start(args, format);
  std::vsnprintf(buf, sizeof buf, format, args);
  va_end(args);
  fail(ZRVS_ERR_FILE, "%s: file '%s', line %d: %s", who_, display_.c_str(), line_, buf);
}

double MpsReader::number(const std::string &token, const char *what) {
  double v = 0.0;
  if (!parse_number(token, v)) error("%s '%s' is not a number", what, token.c_str());
  return v;
}

int MpsReader::column(const std::string &name) {
  auto it = cols_.find(name);
  if (it == cols_.end()) error("unknown column '%s'", name.c_str());
  return it->second;
}

const RowInfo &MpsReader::row(const std::string &name) {
  auto it = rows_.find(name);
  if (it == rows_.end()) error("unknown row '%s'", name.c_str());
  return it->second;
}

std::vector<std::string> MpsReader::fields(const std::string &line) {
  if (fixed_) {
    // Field 3 or later starting with '$' begins a comment.
    std::vector<std::string> f = fixed_fields(line);
    for (size_t k = 2; k < f.size(); ++k)
      if (!f[k].empty() && f[k][0] == '$')
        for (size_t i = k; i < f.size(); ++i) f[i].clear();
    return f;
  }
  std::vector<std::string> t = split_blanks(line);
  // A later token starting with '$' begins a comment.
  for (size_t k = 1; k < t.size(); ++k)
    if (t[k][0] == '$') {
      t.resize(k);
      break;
    }
  std::vector<std::string> f(6);
  auto put = [&](size_t first_field, size_t first_token) {
    for (size_t k = first_token, i = first_field; k < t.size(); ++k, ++i) {
      if (i >= f.size()) error("too many fields (%d)", static_cast<int>(t.size()));
      f[i] = t[k];
    }
  };
  switch (section_) {
    case Section::Rows:
    case Section::Indicators:
      put(0, 0);
      break;
    case Section::Columns:
      if (t.size() == 3 && t[1] == "'MARKER'") {
        f[1] = t[0], f[2] = t[1], f[4] = t[2];
      } else {
        put(1, 0);
      }
      break;
    case Section::Rhs:
    case Section::Ranges:
      // Two or four tokens: no set name.
      if (t.size() % 2 == 0) put(2, 0); else put(1, 0);
      break;
    case Section::Bounds: {
      if (t.empty()) break;
      std::string type = upper(t[0]);
      bool no_value = type == "FR" || type == "MI" || type == "PL";
      bool optional = type == "BV" || type == "SC" || type == "SI";
      f[0] = t[0];
      if (t.size() >= 4) {
        put(0, 0);
      } else if (t.size() == 3) {
        double v;
        bool value_last = !no_value && (!optional || (parse_number(t[2], v) &&
                                                       cols_.count(t[1]) && !cols_.count(t[2])));
        if (value_last) f[2] = t[1], f[3] = t[2];
        else f[1] = t[1], f[2] = t[2];
      } else if (t.size() == 2) {
        f[2] = t[1];
      }
      break;
    }
    case Section::QuadObj:
    case Section::QMatrix:
    case Section::QcMatrix:
      put(1, 0);
      break;
    case Section::Sos: {
      std::string first = t.empty() ? "" : upper(t[0]);
      double v;
      bool header = (first == "S1" || first == "S2") &&
                    (t.size() == 1 || t[1] == "SOS" || !parse_number(t[1], v));
      if (header) {
        put(0, 0);
      } else if (t.size() == 1) {
        size_t colon = t[0].rfind(':');
        if (colon == std::string::npos) error("a set member needs a weight");
        f[1] = t[0].substr(0, colon), f[3] = t[0].substr(colon + 1);
      } else {
        if (t.size() > 2) error("too many fields in a set member line");
        f[1] = t[0], f[3] = t[1];
      }
      break;
    }
    default:
      put(0, 0);
  }
  return f;
}

void MpsReader::rows_line(const std::vector<std::string> &f) {
  need(f, 0, "the row type");
  need(f, 1, "the row name");
  std::string type = upper(f[0]);
  if (type.size() != 1 || std::string("NLGE").find(type[0]) == std::string::npos)
    error("row type '%s' is not one of N, L, G, E", f[0].c_str());
  const std::string &name = f[1];
  if (rows_.count(name)) error("row '%s' is defined twice", name.c_str());
  bool objective = type[0] == 'N' && !objective_seen_ && (objname_.empty() || objname_ == name);
  if (objective) {
    objective_seen_ = true;
    objname_ = name;
    rows_[name] = RowInfo{'N', -1};
    return;
  }
  int r = m_.rows();
  m_.append_rows(1);
  m_.rowtype[r] = type[0];
  m_.rownames.set(r, name);
  rows_[name] = RowInfo{type[0], r};
}

void MpsReader::columns_line(std::vector<std::string> f) {
  if (f[2] == "'MARKER'") {
    std::string kind = f[4].empty() ? f[3] : f[4];
    if (kind == "'INTORG'") integer_block_ = true;
    else if (kind == "'INTEND'") integer_block_ = false;
    else error("unknown marker '%s'", kind.c_str());
    return;
  }
  // Fixed format: a blank name continues the previous column.
  if (fixed_ && f[1].empty() && last_col_ >= 0) f[1] = last_column_;
  need(f, 1, "the column name");
  const std::string &name = f[1];
  if (name != last_column_) {
    if (cols_.count(name)) error("the entries of column '%s' are not together", name.c_str());
    last_col_ = m_.cols();
    m_.append_columns(1);
    m_.colnames.set(last_col_, name);
    if (integer_block_) m_.coltype[last_col_] = 'I';
    cols_[name] = last_col_;
    last_column_ = name;
  }
  for (size_t k = 2; k <= 4; k += 2) {
    if (k == 4 && f[4].empty()) break;
    need(f, k, "the row name");
    need(f, k + 1, "the coefficient");
    const RowInfo &r = row(f[k]);
    double v = number(f[k + 1], "coefficient");
    if (std::fabs(v) >= ZRVS_PLUSINFINITY) error("coefficient '%s' is infinite", f[k + 1].c_str());
    if (r.index < 0)
      m_.objectives[0].coef[last_col_] += v;
    else if (v != 0.0)
      entries_.push_back({r.index, {last_col_, v}});
  }
}

void MpsReader::rhs_line(const std::vector<std::string> &f, bool ranges) {
  for (size_t k = 2; k <= 4; k += 2) {
    if (k == 4 && f[4].empty()) break;
    need(f, k, "the row name");
    need(f, k + 1, "the value");
    const RowInfo &r = row(f[k]);
    double v = number(f[k + 1], ranges ? "range" : "right-hand side");
    if (ranges) {
      rangeval_.resize(m_.rows(), 0.0);
      has_range_.resize(m_.rows(), 0);
      if (r.index < 0 || r.type == 'N') {
        warn("range on free row '" + f[k] + "' ignored");
        continue;
      }
      rangeval_[r.index] = v;
      has_range_[r.index] = 1;
    } else if (r.index < 0) {
      m_.objectives[0].constant = -v;
    } else if (r.type != 'N') {
      m_.rhs[r.index] = v;
    }
  }
}

void MpsReader::bounds_line(const std::vector<std::string> &f) {
  need(f, 0, "the bound type");
  need(f, 2, "the column name");
  std::string type = upper(f[0]);
  int j = column(f[2]);
  bool no_value = type == "FR" || type == "MI" || type == "PL" || type == "BV";
  bool optional = type == "BV" || type == "SC" || type == "SI";
  double v = 0.0;
  bool has_value = !f[3].empty();
  if (!no_value && !optional) need(f, 3, "the bound value");
  if (has_value) v = number(f[3], "bound");
  double &lb = m_.lb[j], &ub = m_.ub[j];
  char &t = m_.coltype[j];
  if (type == "UP" || type == "UI") {
    if (v < 0 && lb == 0.0) {
      warn("negative upper bound on column '" + f[2] + "' with lower bound 0: lower bound set to -infinity");
      lb = ZRVS_MINUSINFINITY;
    }
    ub = v;
    if (type == "UI") t = t == 'S' || t == 'R' ? 'R' : 'I';
  } else if (type == "LO" || type == "LI") {
    lb = v;
    if (type == "LI") t = t == 'S' || t == 'R' ? 'R' : 'I';
  } else if (type == "FX") {
    lb = ub = v;
  } else if (type == "FR") {
    lb = ZRVS_MINUSINFINITY, ub = ZRVS_PLUSINFINITY;
  } else if (type == "MI") {
    lb = ZRVS_MINUSINFINITY;
  } else if (type == "PL") {
    ub = ZRVS_PLUSINFINITY;
  } else if (type == "BV") {
    if (has_value && v != 0.0 && v != 1.0)
      error("a BV bound takes no value other than 0 or 1, not '%s'", f[3].c_str());
    t = 'B', lb = 0.0, ub = 1.0;
  } else if (type == "SC" || type == "SI") {
    if (has_value) ub = v;
    t = type == "SI" || t == 'I' || t == 'R' ? 'R' : 'S';
  } else {
    error("unknown bound type '%s'", f[0].c_str());
  }
}

void MpsReader::quadratic_line(const std::vector<std::string> &f) {
  need(f, 1, "the first column");
  need(f, 2, "the second column");
  need(f, 3, "the coefficient");
  int i = column(f[1]), j = column(f[2]);
  double v = number(f[3], "coefficient");
  if (std::fabs(v) >= ZRVS_PLUSINFINITY) error("coefficient '%s' is infinite", f[3].c_str());
  qsum_[qkey(i, j)] += v;
}

// Turns the listed entries of the quadratic section into stored entries.
// Sections with both triangles (QMATRIX, QCMATRIX) list Q[i][j] and Q[j][i]
// separately: an off-diagonal pair stores half their sum, which is also
// right when a file lists only one of them. QUADOBJ lists one triangle.
void MpsReader::close_quadratic() {
  if (qrow_ == -2) return;
  QForm form;
  for (const auto &e : qsum_) {
    double v = e.second;
    if (qfull_ && e.first.first != e.first.second) v *= 0.5;
    if (v != 0.0) form.emplace_hint(form.end(), e.first, v);
  }
  if (qrow_ == -1) {
    for (const auto &e : form) m_.qobj[e.first] = e.second;
  } else if (!form.empty()) {
    m_.qrows[qrow_] = std::move(form);
  }
  qsum_.clear();
  qrow_ = -2;
}

void MpsReader::sos_line(const std::vector<std::string> &f) {
  std::string head = upper(f[0]);
  if (head == "S1" || head == "S2") {
    close_set();
    in_set_ = true;
    settype_ = head[1];
    // "S1 SOS name priority": the word SOS and the priority are optional.
    setname_ = upper(f[1]) == "SOS" ? f[2] : f[1];
    if (f[1].empty() && !f[2].empty()) setname_ = f[2];
    return;
  }
  if (!head.empty()) error("set type '%s' is not S1 or S2", f[0].c_str());
  if (!in_set_) error("a set member comes before any S1 or S2 line");
  need(f, 1, "the member column");
  std::string weight = f[3].empty() ? f[2] : f[3];
  if (weight.empty()) error("the member '%s' has no weight", f[1].c_str());
  int j = column(f[1]);
  double v = number(weight, "weight");
  if (std::fabs(v) >= ZRVS_PLUSINFINITY) error("weight '%s' is not finite", weight.c_str());
  for (const auto &mbr : members_) {
    if (mbr.first == j) error("column '%s' is twice in one set", f[1].c_str());
    if (mbr.second == v) error("two members of one set have the weight %s", weight.c_str());
  }
  members_.push_back({j, v});
}

void MpsReader::close_set() {
  if (!in_set_) return;
  std::sort(members_.begin(), members_.end(),
            [](const auto &a, const auto &b) { return a.second < b.second; });
  for (const auto &mbr : members_) {
    m_.setcol.push_back(mbr.first);
    m_.setref.push_back(mbr.second);
  }
  m_.settype.push_back(settype_);
  m_.setstart.push_back(static_cast<int64_t>(m_.setcol.size()));
  m_.setnames.append_unnamed(1);
  m_.setnames.set(m_.sets() - 1, setname_);
  members_.clear();
  in_set_ = false;
}

void MpsReader::indicator_line(const std::vector<std::string> &f) {
  if (upper(f[0]) != "IF") error("an indicator line starts with IF, not '%s'", f[0].c_str());
  need(f, 1, "the row name");
  need(f, 2, "the column name");
  need(f, 3, "the value");
  const RowInfo &r = row(f[1]);
  if (r.index < 0) error("the objective row cannot be an indicator row");
  int j = column(f[2]);
  double v = number(f[3], "indicator value");
  if (v != 0.0 && v != 1.0) error("the indicator value must be 0 or 1, not '%s'", f[3].c_str());
  m_.indcol[r.index] = j;
  m_.indflag[r.index] = v == 1.0 ? 1 : -1;
}

void MpsReader::finish() {
  close_quadratic();
  close_set();
  // Ranges: L [rhs-|R|, rhs]; G [rhs, rhs+|R|]; E [rhs, rhs+R] for R > 0,
  // [rhs+R, rhs] for R < 0. Stored as 'R' rows: rhs - range .. rhs.
  for (int i = 0; i < m_.rows(); ++i) {
    if (!has_range_[i]) continue;
    double r = rangeval_[i], a = std::fabs(r);
    char &t = m_.rowtype[i];
    if (t == 'E' && r == 0.0) continue;
    if (t == 'G' || (t == 'E' && r > 0)) m_.rhs[i] += a;
    t = 'R';
    m_.range[i] = a;
  }
  std::vector<std::pair<int, std::pair<int, double>>> entries;
  entries.swap(entries_);
  m_.mrow.reserve(entries.size());
  m_.mcol.reserve(entries.size());
  m_.mval.reserve(entries.size());
  // A column may name a row twice: such entries are added up.
  std::unordered_map<int64_t, size_t> seen;
  for (const auto &e : entries) {
    int64_t key = static_cast<int64_t>(e.first) * m_.cols() + e.second.first;
    auto it = seen.find(key);
    if (it != seen.end()) {
      m_.mval[it->second] += e.second.second;
      continue;
    }
    seen.emplace(key, m_.mval.size());
    m_.mrow.push_back(e.first);
    m_.mcol.push_back(e.second.first);
    m_.mval.push_back(e.second.second);
  }
  // Drop entries that cancelled out.
  size_t n = 0;
  for (size_t k = 0; k < m_.mval.size(); ++k) {
    if (m_.mval[k] == 0.0) continue;
    m_.mrow[n] = m_.mrow[k], m_.mcol[n] = m_.mcol[k], m_.mval[n] = m_.mval[k];
    ++n;
  }
  m_.mrow.resize(n), m_.mcol.resize(n), m_.mval.resize(n);
  check_read_indicators(m_, who_, display_);
}

Model MpsReader::read() {
  size_t pos = 0;
  bool ended = false;
  std::string line;
  while (pos < text_.size() && !ended) {
    size_t e = text_.find('\n', pos);
    if (e == std::string::npos) e = text_.size();
    line.assign(text_, pos, e - pos);
    pos = e + 1;
    ++line_;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    for (char c : line)
      if (c == '\0') error("the line holds a NUL character");
    if (line.empty() || line[0] == '*' || trim(line).empty()) continue;

    if (!std::isspace(static_cast<unsigned char>(line[0]))) {
      std::vector<std::string> t = split_blanks(line);
      Section s;
      if (parse_section(upper(t[0]), s)) {
        if (section_ == Section::QuadObj || section_ == Section::QMatrix ||
            section_ == Section::QcMatrix)
          close_quadratic();
        if (section_ == Section::Sos) close_set();
        section_ = s;
        switch (s) {
          case Section::Name: {
            std::string rest = trim(line.substr(4));
            if (fixed_ && line.size() > 14) rest = trim(line.substr(14));
            if (!rest.empty()) m_.name = rest.substr(0, ZRVS_MAXNAMELENGTH);
            break;
          }
          case Section::ObjSense:
            if (t.size() > 1) {
              std::string sense = upper(t[1]);
              if (sense == "MAX" || sense == "MAXIMIZE") m_.objsense = -1.0;
              else if (sense == "MIN" || sense == "MINIMIZE") m_.objsense = 1.0;
              else error("objective sense '%s' is not MIN or MAX", t[1].c_str());
            }
            break;
          case Section::ObjName:
            if (t.size() > 1) objname_ = t[1];
            break;
          case Section::Columns:
            if (!objective_seen_ && !objname_.empty())
              error("OBJNAME names '%s', which is not an N row", objname_.c_str());
            break;
          case Section::QuadObj:
          case Section::QMatrix:
            qrow_ = -1;
            qfull_ = s == Section::QMatrix;
            break;
          case Section::QcMatrix: {
            std::string name = fixed_ ? trim(line.substr(8)) : t.size() > 1 ? t[1] : "";
            if (name.empty()) error("QCMATRIX needs the name of its row");
            const RowInfo &r = row(name);
            if (r.index < 0) error("QCMATRIX names the objective row; use QUADOBJ or QMATRIX");
            if (m_.qrows.count(r.index)) error("row '%s' has two QCMATRIX sections", name.c_str());
            qrow_ = r.index;
            qfull_ = true;
            break;
          }
          case Section::End:
            ended = true;
            break;
          default:
            break;
        }
        continue;
      }
      if (fixed_) error("unknown section '%s'", t[0].c_str());
      // Free format tolerates data lines that start in column 1.
    }
    std::vector<std::string> f = fields(line);
    switch (section_) {
      case Section::None:
      case Section::Name:
        error("data before the first section");
      case Section::ObjSense: {
        std::string sense = upper(trim(line));
        if (sense == "MAX" || sense == "MAXIMIZE") m_.objsense = -1.0;
        else if (sense == "MIN" || sense == "MINIMIZE") m_.objsense = 1.0;
        else error("objective sense '%s' is not MIN or MAX", trim(line).c_str());
        break;
      }
      case Section::ObjName: objname_ = trim(line); break;
      case Section::Rows: rows_line(f); break;
      case Section::Columns: columns_line(f); break;
      case Section::Rhs: rhs_line(f, false); break;
      case Section::Ranges: rhs_line(f, true); break;
      case Section::Bounds: bounds_line(f); break;
      case Section::QuadObj:
      case Section::QMatrix:
      case Section::QcMatrix: quadratic_line(f); break;
      case Section::Sos: sos_line(f); break;
      case Section::Indicators: indicator_line(f); break;
      case Section::End: break;
    }
  }
  if (!ended) {
    ++line_;
    error("the file ends without ENDATA");
  }
  rangeval_.resize(m_.rows(), 0.0);
  has_range_.resize(m_.rows(), 0);
  finish();
  return std::move(m_);
}

}  // namespace

Model read_mps(const std::string &text, bool fixed, const std::string &display, const char *who,
               std::vector<std::string> &warnings) {
  MpsReader reader(text, fixed, display, who, warnings);
  return reader.read();
}

}  // namespace zorvan
