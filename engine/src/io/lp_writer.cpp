// Writer of LP files (the layout the LP reader describes).
//
// Every column appears in the objective, in index order (with coefficient
// 0 where it has none), so that reading the file numbers the columns as
// they were. Range rows are written "lower <= expression <= upper", with
// the lower side chosen so that upper - lower gives back the range exactly
// whenever a double allows it; free rows as "expression >= -inf". Names
// must start with a letter or one of !"#$%&(),;?@_`'{}|~, hold only those
// and digits and '.', and not be a section word; other names are replaced.
#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstring>

#include "core/errors.h"
#include "io/file_format.h"
#include "io/file_stream.h"
#include "io/number_text.h"
#include "zorvan/zrvs.h"

namespace zorvan {

namespace {

bool lp_name_char(unsigned char c) {
  if (std::isalnum(c) || c >= 0x80) return true;
  return c != 0 && std::strchr("!\"#$%&()/,.;?@_`'{}|~", c) != nullptr;
}

bool legal_lp_name(const std::string &s) {
  if (s.empty() || s.size() > 255) return false;
  unsigned char first = static_cast<unsigned char>(s[0]);
  if (std::isdigit(first) || first == '.' || first == '/') return false;
  for (unsigned char c : s)
    if (!lp_name_char(c)) return false;
  static const char *const reserved[] = {
      "minimize", "minimise", "minimum", "min", "maximize", "maximise", "maximum", "max",
      "subject", "such", "st", "s.t.", "st.", "bounds", "bound", "general", "generals", "gen",
      "integer", "integers", "binary", "binaries", "bin", "semi", "semis", "semi-continuous",
      "semicontinuous", "sos", "end", "free", "inf", "infinity", "s1", "s2"};
  std::string low = s;
  for (char &c : low) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  for (const char *r : reserved)
    if (low == r) return false;
  return true;
}

std::string bound_text(double v) {
  if (v <= ZRVS_MINUSINFINITY && v == ZRVS_MINUSINFINITY) return "-inf";
  if (v >= ZRVS_PLUSINFINITY && v == ZRVS_PLUSINFINITY) return "+inf";
  return format_number(v);
}

// A lower side lo with up - lo == range, as near to up - range as possible.
double range_lower(double up, double range) {
  double lo = up - range;
  if (up - lo == range) return lo;
  double below = lo, above = lo;
  for (int k = 0; k < 8; ++k) {
    below = std::nextafter(below, -HUGE_VAL);
    above = std::nextafter(above, HUGE_VAL);
    if (up - below == range) return below;
    if (up - above == range) return above;
  }
  return lo;
}

class LpWriter {
 public:
  LpWriter(const Model &m, FileWriter &out, std::vector<std::string> &warnings)
      : m_(m), out_(out), warnings_(warnings) {}
  void write();

 private:
  // Appends " + 3 x" style terms, breaking long lines.
  void term(double coef, const std::string &name, bool always) {
    if (coef == 0.0 && !always) return;
    std::string t = coef < 0 ? " - " : " + ";
    double a = std::fabs(coef);
    if (a != 1.0) t += format_number(a) + " ";
    t += name;
    put(t);
  }
  void put(const std::string &t) {
    if (width_ + t.size() > 78 && width_ > 0) {
      out_ << '\n';
      width_ = 0;
    }
    out_ << t;
    width_ += t.size();
  }
  void end_line() {
    out_ << '\n';
    width_ = 0;
  }
  void quadratic(const QForm &q, bool objective);
  void row(int i);
  void bounds();

  const Model &m_;
  FileWriter &out_;
  std::vector<std::string> &warnings_;
  std::vector<std::string> rows_, cols_, sets_;
  Compressed by_row_;
  size_t width_ = 0;
};

void LpWriter::quadratic(const QForm &q, bool objective) {
  if (q.empty()) return;
  put(" + [");
  bool first = true;
  for (const auto &e : q) {
    int i = e.first.first, j = e.first.second;
    // Objective bracket / 2 is 0.5 x'Qx: a diagonal entry Q is "Q x ^ 2",
    // an off-diagonal one "2Q x * y". A row's bracket is x'Qx: the same.
    double v = i == j ? e.second : 2 * e.second;
    std::string t = v < 0 ? " - " : first ? " " : " + ";
    if (std::fabs(v) != 1.0) t += format_number(std::fabs(v)) + " ";
    t += i == j ? cols_[i] + " ^ 2" : cols_[i] + " * " + cols_[j];
    put(t);
    first = false;
  }
  put(objective ? " ] / 2" : " ]");
}

void LpWriter::row(int i) {
  put(" " + rows_[i] + ":");
  if (m_.indcol[i] >= 0)
    put(" " + cols_[m_.indcol[i]] + " = " + (m_.indflag[i] > 0 ? "1" : "0") + " ->");
  char t = m_.rowtype[i];
  double up = m_.rhs[i];
  double lo = t == 'R' ? range_lower(up, m_.range[i]) : 0.0;
  if (t == 'R') put(" " + bound_text(lo) + " <=");
  size_t written = 0;
  for (int64_t k = by_row_.start[i]; k < by_row_.start[i + 1]; ++k, ++written)
    term(by_row_.value[k], cols_[by_row_.index[k]], false);
  auto q = m_.qrows.find(i);
  if (q != m_.qrows.end()) quadratic(q->second, false), ++written;
  if (written == 0) {
    // An empty row still needs a term.
    if (m_.cols() > 0) put(" 0 " + cols_[0]);
  }
  switch (t) {
    case 'L': put(" <= " + format_number(up)); break;
    case 'G': put(" >= " + format_number(up)); break;
    case 'E': put(" = " + format_number(up)); break;
    case 'R': put(" <= " + bound_text(up)); break;
    case 'N': put(" >= -inf"); break;
  }
  end_line();
}

void LpWriter::bounds() {
  const double inf = ZRVS_PLUSINFINITY;
  for (int j = 0; j < m_.cols(); ++j) {
    double lb = m_.lb[j], ub = m_.ub[j];
    const std::string &x = cols_[j];
    char t = m_.coltype[j];
    if (t == 'S' || t == 'R') {
      // The nonzero range of a semi-continuous column, always both sides.
      double low = std::max(lb, m_.limit[j]);
      put(" " + bound_text(low) + " <= " + x + " <= " + bound_text(ub));
      end_line();
      continue;
    }
    double default_ub = t == 'B' ? 1.0 : inf;
    if (lb == 0.0 && ub == default_ub) continue;
    if (lb == ub)
      put(" " + x + " = " + format_number(lb));
    else if (lb == -inf && ub == inf)
      put(" " + x + " free");
    else if (t == 'B' || (lb != 0.0 && ub != inf))
      put(" " + bound_text(lb) + " <= " + x + " <= " + bound_text(ub));
    else if (lb != 0.0)
      put(" " + x + " >= " + bound_text(lb));
    else
      put(" " + x + " <= " + bound_text(ub));
    end_line();
  }
}

void LpWriter::write() {
  size_t replaced = 0;
  std::string examples;
  auto report = [&](const char *kind) {
    if (replaced)
      warnings_.push_back(std::to_string(replaced) + " " + kind +
                          " names cannot be written in LP format (characters, length, reserved "
                          "words or repeats) and were replaced by generated names: " +
                          examples + (replaced > kNameExamples ? ", ..." : ""));
  };
  rows_ = file_names(m_.rownames, m_.rows(), 'R', legal_lp_name, false, &replaced, &examples);
  report("row");
  cols_ = file_names(m_.colnames, m_.cols(), 'C', legal_lp_name, true, &replaced, &examples);
  report("column");
  sets_ = file_names(m_.setnames, m_.sets(), 'S', legal_lp_name, false, &replaced, &examples);
  report("set");
  by_row_ = m_.by_rows();

  std::string name = file_problem_name(m_.name, warnings_);
  out_ << "\\Problem name: " << name << '\n';
  out_ << (m_.objsense < 0 ? "Maximize\n" : "Minimize\n");
  put(" obj:");
  const Objective &o = m_.objectives[0];
  for (int j = 0; j < m_.cols(); ++j) {
    double c = o.coef[j];
    if (c == 0.0)
      put(" + 0 " + cols_[j]);
    else
      term(c, cols_[j], true);
  }
  quadratic(m_.qobj, true);
  if (o.constant != 0.0)
    put(std::string(o.constant < 0 ? " - " : " + ") + format_number(std::fabs(o.constant)));
  end_line();

  out_ << "Subject To\n";
  for (int i = 0; i < m_.rows(); ++i) row(i);

  bool any = false;
  for (int j = 0; j < m_.cols() && !any; ++j)
    any = m_.coltype[j] == 'S' || m_.coltype[j] == 'R' || m_.lb[j] != 0.0 ||
          m_.ub[j] != (m_.coltype[j] == 'B' ? 1.0 : ZRVS_PLUSINFINITY);
  if (any) {
    out_ << "Bounds\n";
    bounds();
  }
  auto list = [&](const char *title, const char *types) {
    bool started = false;
    for (int j = 0; j < m_.cols(); ++j) {
      if (!std::strchr(types, m_.coltype[j])) continue;
      if (!started) out_ << title << '\n';
      started = true;
      put(" " + cols_[j]);
    }
    if (started) end_line();
  };
  list("Generals", "IR");
  list("Binaries", "B");
  list("Semi-continuous", "SR");
  if (m_.sets() > 0) {
    out_ << "SOS\n";
    for (int s = 0; s < m_.sets(); ++s) {
      put(" " + sets_[s] + ": S" + m_.settype[s] + "::");
      for (int64_t k = m_.setstart[s]; k < m_.setstart[s + 1]; ++k)
        put(" " + cols_[m_.setcol[k]] + ":" + format_number(m_.setref[k]));
      end_line();
    }
  }
  out_ << "End\n";
}

}  // namespace

void write_lp(const Model &m, FileWriter &out, const char *who,
              std::vector<std::string> &warnings) {
  check_writable(m, who);
  LpWriter writer(m, out, warnings);
  writer.write();
}

}  // namespace zorvan
