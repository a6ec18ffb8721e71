// Writer of free and fixed MPS files, one entry per line.
//
// Range rows are written as L rows with a RANGES entry, free rows as N rows
// after the objective row, integer and semi-integer columns between integer
// markers, binaries with BV, semi-continuous columns with SC (their lower
// bound is the larger of bound and threshold), the objective constant as
// minus the RHS of the objective row. Free format: names without blanks;
// fixed format: names of 1 to 8 characters, fields at their fixed columns
// (a long number runs past its field, which readers of this engine accept).
#include <algorithm>
#include <cctype>
#include <unordered_set>

#include "core/errors.h"
#include "io/file_format.h"
#include "io/file_stream.h"
#include "io/number_text.h"
#include "zorvan/zrvs.h"

namespace zorvan {

namespace {

bool printable(unsigned char c) { return c > 0x20 && c != 0x7f; }

bool legal_free_name(const std::string &s) {
  if (s.empty() || s[0] == '$' || s.size() > ZRVS_MAXNAMELENGTH) return false;
  for (unsigned char c : s)
    if (!printable(c)) return false;
  return true;
}

bool legal_fixed_name(const std::string &s) {
  if (s.empty() || s.size() > 8 || s[0] == ' ' || s.back() == ' ' || s[0] == '$') return false;
  for (unsigned char c : s)
    if (c != ' ' && !printable(c)) return false;
  return true;
}

class MpsWriter {
 public:
  MpsWriter(const Model &m, bool fixed, FileWriter &out, const char *who,
            std::vector<std::string> &warnings)
      : m_(m), fixed_(fixed), out_(out), who_(who), warnings_(warnings) {}
  void write();

 private:
  // One data line: code (field 1), names (fields 2, 3), a number (field 4).
  void line(const std::string &code, const std::string &a, const std::string &b,
            const std::string &num);
  void names();
  void bounds(int j, const std::string &name);

  const Model &m_;
  bool fixed_;
  FileWriter &out_;
  const char *who_;
  std::vector<std::string> &warnings_;
  std::vector<std::string> rows_, cols_, sets_;
  std::string obj_;
  std::string text_;
};

void MpsWriter::line(const std::string &code, const std::string &a, const std::string &b,
                     const std::string &num) {
  text_.clear();
  if (fixed_) {
    auto pad = [&](size_t column) {
      if (text_.size() < column) text_.append(column - text_.size(), ' ');
    };
    text_ = " " + code;
    pad(4), text_ += a;
    if (!b.empty() || !num.empty()) pad(14), text_ += b;
    if (!num.empty()) pad(24), text_ += num;
  } else {
    text_ = " ";
    text_ += code.empty() ? "   " : code + " ";
    text_ += a;
    if (!b.empty()) text_ += "  " + b;
    if (!num.empty()) text_ += "  " + num;
  }
  text_ += '\n';
  out_ << text_;
}

void MpsWriter::names() {
  auto legal = fixed_ ? legal_fixed_name : legal_free_name;
  const char *format = fixed_ ? "fixed MPS" : "free MPS";
  size_t replaced = 0;
  std::string examples;
  auto report = [&](const char *kind) {
    if (replaced)
      warnings_.push_back(std::to_string(replaced) + " " + kind + " names cannot be written in " +
                          format + " (blanks, length or repeats) and were replaced by generated names: " +
                          examples + (replaced > kNameExamples ? ", ..." : ""));
  };
  rows_ = file_names(m_.rownames, m_.rows(), 'R', legal, true, &replaced, &examples);
  report("row");
  cols_ = file_names(m_.colnames, m_.cols(), 'C', legal, true, &replaced, &examples);
  report("column");
  sets_ = file_names(m_.setnames, m_.sets(), 'S', legal, false, &replaced, &examples);
  report("set");
  // The objective row needs a name no other row has.
  obj_ = "obj";
  std::unordered_set<std::string> taken(rows_.begin(), rows_.end());
  for (int k = 1; taken.count(obj_); ++k) obj_ = "obj_" + std::to_string(k);
}

void MpsWriter::bounds(int j, const std::string &name) {
  const double inf = ZRVS_PLUSINFINITY;
  double lb = m_.lb[j], ub = m_.ub[j];
  char t = m_.coltype[j];
  if (t == 'S' || t == 'R') {
    double low = std::max(lb, m_.limit[j]);
    if (low != 0.0) line(low == -inf ? "MI" : "LO", "BND", name, low == -inf ? "" : format_number(low));
    line("SC", "BND", name, format_number(ub));
    return;
  }
  double default_ub = ZRVS_PLUSINFINITY;
  if (t == 'B') {
    line("BV", "BND", name, "");
    default_ub = 1.0;
  }
  if (lb == ub) {
    if (!(t == 'B' && lb == 0.0 && ub == 1.0)) line("FX", "BND", name, format_number(lb));
    return;
  }
  if (lb == -inf && ub == inf) {
    line("FR", "BND", name, "");
    return;
  }
  auto lower = [&] {
    if (lb == -inf) line("MI", "BND", name, "");
    else if (lb != 0.0) line("LO", "BND", name, format_number(lb));
  };
  auto upper = [&] {
    if (ub == default_ub) return;
    if (ub == inf) line("PL", "BND", name, "");
    else line("UP", "BND", name, format_number(ub));
  };
  if (lb == 0.0 && ub < 0.0) {
    // A negative upper bound on a column with lower bound 0 makes readers
    // free the lower bound: give the lower bound again afterwards.
    upper();
    line("LO", "BND", name, "0");
  } else {
    lower();
    upper();
  }
}

void MpsWriter::write() {
  names();
  std::string name = file_problem_name(m_.name, warnings_);
  if (name.empty())
    out_ << "NAME\n";
  else
    out_ << (fixed_ ? "NAME          " : "NAME ") << name << '\n';
  if (m_.objsense < 0) out_ << "OBJSENSE\n    MAX\n";
  out_ << "ROWS\n";
  line("N", obj_, "", "");
  for (int i = 0; i < m_.rows(); ++i) {
    char t = m_.rowtype[i] == 'R' ? 'L' : m_.rowtype[i];
    line(std::string(1, t), rows_[i], "", "");
  }

  out_ << "COLUMNS\n";
  Compressed by_col = m_.by_columns();
  const std::vector<double> &obj = m_.objectives[0].coef;
  bool integer_block = false;
  int marker = 0;
  for (int j = 0; j < m_.cols(); ++j) {
    bool integer = m_.coltype[j] == 'I' || m_.coltype[j] == 'R';
    if (integer != integer_block) {
      std::string id = "M" + std::to_string(marker++);
      if (fixed_) {
        text_ = "    " + id;
        text_.append(14 - text_.size(), ' ');
        text_ += "'MARKER'";
        text_.append(39 - text_.size(), ' ');
        text_ += integer ? "'INTORG'\n" : "'INTEND'\n";
        out_ << text_;
      } else {
        out_ << "    " << id << "  'MARKER'  " << (integer ? "'INTORG'\n" : "'INTEND'\n");
      }
      integer_block = integer;
    }
    int64_t b = by_col.start[j], e = by_col.start[j + 1];
    if (obj[j] != 0.0 || b == e) line("", cols_[j], obj_, format_number(obj[j]));
    for (int64_t k = b; k < e; ++k)
      line("", cols_[j], rows_[by_col.index[k]], format_number(by_col.value[k]));
  }
  if (integer_block) {
    std::string id = "M" + std::to_string(marker++);
    if (fixed_) {
      text_ = "    " + id;
      text_.append(14 - text_.size(), ' ');
      text_ += "'MARKER'";
      text_.append(39 - text_.size(), ' ');
      text_ += "'INTEND'\n";
      out_ << text_;
    } else {
      out_ << "    " << id << "  'MARKER'  'INTEND'\n";
    }
  }

  out_ << "RHS\n";
  if (m_.objectives[0].constant != 0.0)
    line("", "RHS", obj_, format_number(-m_.objectives[0].constant));
  for (int i = 0; i < m_.rows(); ++i)
    if (m_.rowtype[i] != 'N' && m_.rhs[i] != 0.0)
      line("", "RHS", rows_[i], format_number(m_.rhs[i]));

  bool ranges = false;
  for (int i = 0; i < m_.rows(); ++i) {
    if (m_.rowtype[i] != 'R') continue;
    if (!ranges) out_ << "RANGES\n";
    ranges = true;
    line("", "RNG", rows_[i], format_number(m_.range[i]));
  }

  bool any_bounds = false;
  for (int j = 0; j < m_.cols() && !any_bounds; ++j)
    any_bounds = m_.coltype[j] != 'C' || m_.lb[j] != 0.0 || m_.ub[j] != ZRVS_PLUSINFINITY;
  if (any_bounds) {
    out_ << "BOUNDS\n";
    for (int j = 0; j < m_.cols(); ++j) bounds(j, cols_[j]);
  }

  if (!m_.qobj.empty()) {
    out_ << "QUADOBJ\n";
    for (const auto &e : m_.qobj)
      line("", cols_[e.first.first], cols_[e.first.second], format_number(e.second));
  }
  for (const auto &q : m_.qrows) {
    out_ << "QCMATRIX " << rows_[q.first] << '\n';
    for (const auto &e : q.second) {
      int i = e.first.first, j = e.first.second;
      std::string v = format_number(e.second);
      line("", cols_[i], cols_[j], v);
      if (i != j) line("", cols_[j], cols_[i], v);
    }
  }

  if (m_.sets() > 0) {
    out_ << "SOS\n";
    for (int s = 0; s < m_.sets(); ++s) {
      line(std::string("S") + m_.settype[s], "SOS", sets_[s], "");
      for (int64_t k = m_.setstart[s]; k < m_.setstart[s + 1]; ++k)
        line("", cols_[m_.setcol[k]], "", format_number(m_.setref[k]));
    }
  }

  if (m_.indicators() > 0) {
    out_ << "INDICATORS\n";
    for (int i = 0; i < m_.rows(); ++i)
      if (m_.indcol[i] >= 0)
        line("IF", rows_[i], cols_[m_.indcol[i]], m_.indflag[i] > 0 ? "1" : "0");
  }
  out_ << "ENDATA\n";
}

}  // namespace

void write_mps(const Model &m, bool fixed, FileWriter &out, const char *who,
               std::vector<std::string> &warnings) {
  check_writable(m, who);
  MpsWriter writer(m, fixed, out, who, warnings);
  writer.write();
}

}  // namespace zorvan
