// Reader of LP files.
//
//   \ comment to the end of the line
//   Minimize | Maximize            (also min, max, minimum, maximum, ...)
//    obj: 3 x + 2 y + [ x ^ 2 + 4 x * y ] / 2 + 5
//   Subject To                     (also such that, st, s.t.)
//    c1: x + y <= 4                (<, <=, =<, >, >=, =>, =)
//    c2: -2 <= x - y <= 8          (a range)
//    c3: b = 1 -> x + y <= 3       (an indicator constraint)
//    q1: x + [ x ^ 2 + 2 x * y ] <= 5
//   Bounds
//    x <= 4 | x >= -inf | -1 <= y <= 1 | z = 2 | w free
//   Generals | Binaries | Semi-continuous
//    x y z
//   SOS
//    s1: S1:: x:1 y:2 z:3
//   End
//
// Line breaks are blanks, except that a section keyword is recognised only
// at the start of a line. Columns are numbered in the order they first
// appear. The objective's bracket divided by 2 is 0.5 x'Qx; a row's bracket
// is x'Qx. Binary columns get bounds [0, 1] unless the Bounds section gives
// theirs. A first comment "\Problem name: <name>" names the problem.
#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <map>
#include <unordered_map>

#include "core/errors.h"
#include "io/file_format.h"
#include "io/number_text.h"
#include "zorvan/zrvs.h"

namespace zorvan {

namespace {

enum class Tok { Name, Number, Op, End };

struct Token {
  Tok kind;
  std::string text;  // names and operators: "<=", ">=", "=", "->", "+", "-", "*", "^", "/", ":", "::", "[", "]"
  double value = 0;  // numbers
  int line = 0;
  bool line_start = false;
};

bool name_char(unsigned char c) {
  if (std::isalnum(c) || c >= 0x80) return true;
  return std::strchr("!\"#$%&()/,.;?@_`'{}|~", c) != nullptr && c != 0;
}

std::string lower(std::string s) {
  for (char &c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return s;
}

enum class Section { None, Objective, Constraints, Bounds, Generals, Binaries, Semis, Sos, End };

class LpReader {
 public:
  LpReader(const std::string &text, const std::string &display, const char *who,
           std::vector<std::string> &warnings)
      : text_(text), display_(display), who_(who), warnings_(warnings) {}
  Model read();

 private:
  [[noreturn]] void error(const Token &at, const char *format, ...)
      __attribute__((format(printf, 3, 4)));
  void tokenize();
  // Section keyword starting at token k (at a line start), with its length
  // in tokens; Section::None when there is none.
  Section keyword(size_t k, size_t *length) const;
  const Token &peek(size_t ahead = 0) const {
    size_t k = std::min(pos_ + ahead, tokens_.size() - 1);
    return tokens_[k];
  }
  bool at_section() const {
    size_t n;
    return peek().kind == Tok::End || (peek().line_start && keyword(pos_, &n) != Section::None);
  }
  bool is_op(const Token &t, const char *op) const { return t.kind == Tok::Op && t.text == op; }
  bool is_comparison(const Token &t) const {
    return t.kind == Tok::Op && (t.text == "<=" || t.text == ">=" || t.text == "=");
  }
  bool is_label() const { return peek().kind == Tok::Name && is_op(peek(1), ":"); }
  int column(const std::string &name);
  double constant(const char *what);
  // Reads a run of '+' and '-' tokens: their product, and whether there was one.
  double signs(bool *had_sign);

  struct Expr {
    std::vector<std::pair<int, double>> linear;
    std::map<QKey, double> quad;  // bracket terms a x_i x_j (i <= j)
    bool has_bracket = false;
    double constant = 0;
  };
  // Reads terms until a comparison, "->", a label or a section.
  Expr expression(bool objective);
  void bracket(Expr &e, bool objective);
  void objective_section();
  void constraint();
  void bound();
  void sos_set();
  void add_row(const std::string &name, const Expr &e, char type, double rhs, double range,
               const Token &at);

  const std::string &text_;
  const std::string &display_;
  const char *who_;
  std::vector<std::string> &warnings_;
  std::vector<Token> tokens_;
  size_t pos_ = 0;
  Model m_;
  std::unordered_map<std::string, int> cols_;
  std::vector<char> bounded_, in_general_, in_binary_, in_semi_;
};

void LpReader::error(const Token &at, const char *format, ...) {
  char buf[512];
  va_list args;
  va_start(args, format);
  std::vsnprintf(buf, sizeof buf, format, args);
  va_end(args);
  fail(ZRVS_ERR_FILE, "%s: file '%s', line %d: %s", who_, display_.c_str(), at.line, buf);
}

void LpReader::tokenize() {
  int line = 1;
  bool line_start = true;
  size_t i = 0, n = text_.size();
  // "\Problem name: <name>" as the first line names the problem.
  static const char *const kNameTag = "\\Problem name: ";
  if (text_.compare(0, std::strlen(kNameTag), kNameTag) == 0) {
    size_t e = text_.find('\n');
    std::string name = text_.substr(std::strlen(kNameTag), e == std::string::npos
                                                               ? std::string::npos
                                                               : e - std::strlen(kNameTag));
    if (!name.empty() && name.back() == '\r') name.pop_back();
    m_.name = name.substr(0, ZRVS_MAXNAMELENGTH);
  }
  while (i < n) {
    unsigned char c = static_cast<unsigned char>(text_[i]);
    if (c == '\n') {
      ++line, ++i, line_start = true;
      continue;
    }
    if (c == '\0') {
      Token t{Tok::End, "", 0, line, false};
      error(t, "the file holds a NUL character");
    }
    if (std::isspace(c)) {
      ++i;
      continue;
    }
    if (c == '\\') {
      while (i < n && text_[i] != '\n') ++i;
      continue;
    }
    Token t{Tok::Op, "", 0, line, line_start};
    line_start = false;
    if (std::isdigit(c) || c == '.') {
      size_t b = i;
      while (i < n && (std::isdigit(static_cast<unsigned char>(text_[i])) || text_[i] == '.')) ++i;
      if (i < n && (text_[i] == 'e' || text_[i] == 'E')) {
        size_t k = i + 1;
        if (k < n && (text_[k] == '+' || text_[k] == '-')) ++k;
        if (k < n && std::isdigit(static_cast<unsigned char>(text_[k]))) {
          i = k;
          while (i < n && std::isdigit(static_cast<unsigned char>(text_[i]))) ++i;
        }
      }
      t.kind = Tok::Number;
      t.text = text_.substr(b, i - b);
      if (!parse_number(t.text, t.value)) error(t, "'%s' is not a number", t.text.c_str());
    } else if (name_char(c) && c != '/') {
      size_t b = i;
      while (i < n && name_char(static_cast<unsigned char>(text_[i]))) ++i;
      t.kind = Tok::Name;
      t.text = text_.substr(b, i - b);
    } else {
      char d = i + 1 < n ? text_[i + 1] : '\0';
      if ((c == '<' || c == '>') && d == '=') t.text = std::string(1, c) + "=", i += 2;
      else if (c == '=' && (d == '<' || d == '>')) t.text = std::string(1, d) + "=", i += 2;
      else if (c == '-' && d == '>') t.text = "->", i += 2;
      else if (c == ':' && d == ':') t.text = "::", i += 2;
      else if (c == '<' || c == '>') t.text = std::string(1, c) + "=", ++i;
      else if (std::strchr("=+-*^/:[]", c)) t.text = std::string(1, c), ++i;
      else error(t, "unexpected character '%c'", std::isprint(c) ? c : '?');
    }
    tokens_.push_back(std::move(t));
  }
  tokens_.push_back(Token{Tok::End, "", 0, line, true});
}

Section LpReader::keyword(size_t k, size_t *length) const {
  const Token &t = tokens_[k];
  *length = 1;
  if (t.kind != Tok::Name) return Section::None;
  if (k + 1 < tokens_.size() && tokens_[k + 1].kind == Tok::Op && tokens_[k + 1].text == ":")
    return Section::None;
  std::string w = lower(t.text);
  auto next_is = [&](const char *word) {
    return k + 1 < tokens_.size() && tokens_[k + 1].kind == Tok::Name &&
           lower(tokens_[k + 1].text) == word && tokens_[k + 1].line == t.line;
  };
  if (w == "minimize" || w == "minimise" || w == "minimum" || w == "min" || w == "maximize" ||
      w == "maximise" || w == "maximum" || w == "max")
    return Section::Objective;
  if ((w == "subject" && next_is("to")) || (w == "such" && next_is("that"))) {
    *length = 2;
    return Section::Constraints;
  }
  if (w == "st" || w == "s.t." || w == "st.") return Section::Constraints;
  if (w == "bounds" || w == "bound") return Section::Bounds;
  if (w == "general" || w == "generals" || w == "gen" || w == "integer" || w == "integers")
    return Section::Generals;
  if (w == "binary" || w == "binaries" || w == "bin") return Section::Binaries;
  if (w == "semi-continuous" || w == "semicontinuous" || w == "semis") return Section::Semis;
  if (w == "semi") {
    // "semi-continuous" reads as semi, -, continuous.
    if (k + 2 < tokens_.size() && tokens_[k + 1].kind == Tok::Op && tokens_[k + 1].text == "-" &&
        tokens_[k + 2].kind == Tok::Name && lower(tokens_[k + 2].text) == "continuous")
      *length = 3;
    return Section::Semis;
  }
  if (w == "sos") return Section::Sos;
  if (w == "end") return Section::End;
  return Section::None;
}

int LpReader::column(const std::string &name) {
  auto it = cols_.find(name);
  if (it != cols_.end()) return it->second;
  int j = m_.cols();
  m_.append_columns(1);
  m_.colnames.set(j, name);
  bounded_.push_back(0), in_general_.push_back(0), in_binary_.push_back(0),
      in_semi_.push_back(0);
  cols_.emplace(name, j);
  return j;
}

double LpReader::signs(bool *had_sign) {
  double sign = 1;
  *had_sign = false;
  while (is_op(peek(), "+") || is_op(peek(), "-")) {
    if (peek().text == "-") sign = -sign;
    *had_sign = true;
    ++pos_;
  }
  return sign;
}

// A signed number or infinity.
double LpReader::constant(const char *what) {
  bool had_sign;
  double sign = signs(&had_sign);
  const Token &t = peek();
  double v = 0;
  if (t.kind == Tok::Number)
    v = t.value;
  else if (t.kind != Tok::Name || !parse_number(t.text, v))
    error(t, "%s expected, found '%s'", what, t.kind == Tok::End ? "end of file" : t.text.c_str());
  ++pos_;
  return sign * v;
}

void LpReader::bracket(Expr &e, bool objective) {
  const Token &open = peek();
  ++pos_;  // '['
  e.has_bracket = true;
  std::map<QKey, double> terms;
  bool first = true;
  while (!is_op(peek(), "]")) {
    bool had_sign = false;
    double sign = signs(&had_sign);
    if (!first && !had_sign) error(peek(), "'+' or '-' expected between quadratic terms");
    first = false;
    double coef = 1;
    if (peek().kind == Tok::Number) coef = peek().value, ++pos_;
    if (peek().kind != Tok::Name) {
      if (peek().kind == Tok::End) error(open, "the bracket is not closed");
      error(peek(), "a column name expected in a quadratic term, found '%s'", peek().text.c_str());
    }
    int i = column(peek().text);
    ++pos_;
    int j;
    if (is_op(peek(), "^")) {
      ++pos_;
      if (peek().kind != Tok::Number || peek().value != 2) error(peek(), "only squares ('^ 2') are allowed");
      ++pos_;
      j = i;
    } else if (is_op(peek(), "*")) {
      ++pos_;
      if (peek().kind != Tok::Name) error(peek(), "a column name expected after '*'");
      j = column(peek().text);
      ++pos_;
    } else {
      error(peek(), "a quadratic term needs '^ 2' or '* column'");
    }
    terms[qkey(i, j)] += sign * coef;
  }
  ++pos_;  // ']'
  double divisor = 1;
  if (is_op(peek(), "/")) {
    ++pos_;
    if (peek().kind != Tok::Number || !(peek().value > 0)) error(peek(), "a positive divisor expected after '/'");
    divisor = peek().value;
    ++pos_;
  }
  // Objective: the bracket is 0.5 x'Qx, so Q[i][i] += 2a/d and Q[i][j] +=
  // a/d. Rows: the bracket is x'Qx, so Q[i][i] += a/d and Q[i][j] += a/2d.
  for (const auto &t : terms) {
    bool diagonal = t.first.first == t.first.second;
    double v = t.second / divisor;
    if (objective && diagonal) v = 2 * t.second / divisor;
    if (!objective && !diagonal) v = t.second / (2 * divisor);
    e.quad[t.first] += v;
  }
}

LpReader::Expr LpReader::expression(bool objective) {
  Expr e;
  bool first = true;
  for (;;) {
    const Token &t = peek();
    if (t.kind == Tok::End || is_comparison(t) || is_op(t, "->") || is_label() ||
        (t.line_start && at_section()))
      break;
    bool had_sign = false;
    double sign = signs(&had_sign);
    if (!first && !had_sign) break;  // the next statement starts here
    first = false;
    if (is_op(peek(), "[")) {
      if (sign < 0) {
        Expr inner;
        bracket(inner, objective);
        for (auto &q : inner.quad) e.quad[q.first] -= q.second;
      } else {
        bracket(e, objective);
      }
      e.has_bracket = true;
      continue;
    }
    if (peek().kind == Tok::Number) {
      double v = peek().value;
      ++pos_;
      if (peek().kind == Tok::Name && !is_label() && !(peek().line_start && at_section())) {
        e.linear.push_back({column(peek().text), sign * v});
        ++pos_;
      } else {
        e.constant += sign * v;
      }
      continue;
    }
    if (peek().kind == Tok::Name && !is_label()) {
      e.linear.push_back({column(peek().text), sign});
      ++pos_;
      continue;
    }
    error(peek(), "a term expected, found '%s'",
          peek().kind == Tok::End ? "end of file" : peek().text.c_str());
  }
  return e;
}

void LpReader::objective_section() {
  if (is_label()) pos_ += 2;
  Expr e = expression(true);
  std::vector<double> &coef = m_.objectives[0].coef;
  for (const auto &t : e.linear) coef[t.first] += t.second;
  coef.resize(m_.cols(), 0.0);
  for (const auto &q : e.quad) m_.qobj[q.first] += q.second;
  m_.objectives[0].constant += e.constant;
  if (!at_section()) error(peek(), "unexpected '%s' in the objective", peek().text.c_str());
}

void LpReader::add_row(const std::string &name, const Expr &e, char type, double rhs,
                       double range, const Token &at) {
  int r = m_.rows();
  m_.append_rows(1);
  m_.rowtype[r] = type;
  m_.rhs[r] = rhs;
  m_.range[r] = range;
  if (!name.empty()) m_.rownames.set(r, name);
  // Repeated columns add up.
  std::map<int, double> sum;
  for (const auto &t : e.linear) sum[t.first] += t.second;
  for (const auto &s : sum) {
    if (s.second == 0.0) continue;
    m_.mrow.push_back(r), m_.mcol.push_back(s.first), m_.mval.push_back(s.second);
  }
  QForm form;
  for (const auto &q : e.quad)
    if (q.second != 0.0) form.emplace_hint(form.end(), q.first, q.second);
  if (!form.empty()) m_.qrows[r] = std::move(form);
}

void LpReader::constraint() {
  const Token &start = peek();
  std::string name;
  if (is_label()) {
    name = peek().text;
    pos_ += 2;
  }
  // Indicator: column = 0|1 -> row.
  int indcol = -1, indflag = 0;
  if (peek().kind == Tok::Name && is_op(peek(1), "=") && peek(2).kind == Tok::Number &&
      is_op(peek(3), "->")) {
    indcol = column(peek().text);
    double v = peek(2).value;
    if (v != 0 && v != 1) error(peek(2), "an indicator value must be 0 or 1");
    indflag = v == 1 ? 1 : -1;
    pos_ += 4;
  }
  // "constant op expression [op constant]" or "expression op constant".
  size_t save = pos_;
  bool reversed = false;
  {
    while (is_op(peek(), "+") || is_op(peek(), "-")) ++pos_;
    double v;
    reversed = (peek().kind == Tok::Number ||
                (peek().kind == Tok::Name && parse_number(peek().text, v))) &&
               is_comparison(peek(1));
    pos_ = save;
  }
  char type;
  double rhs = 0, range = 0;
  Expr e;
  if (reversed) {
    double left = constant("a number");
    std::string op1 = peek().text;
    ++pos_;
    e = expression(false);
    double k = e.constant;
    if (is_comparison(peek())) {
      std::string op2 = peek().text;
      ++pos_;
      double right = constant("a right-hand side");
      if (op1 == "=" || op2 == "=" || op1 != op2) error(start, "a range needs two '<=' or two '>='");
      double lo = op1 == "<=" ? left : right, up = op1 == "<=" ? right : left;
      lo -= k, up -= k;
      if (lo > up) error(start, "the range of row '%s' is empty", name.c_str());
      type = 'R', rhs = up, range = up - lo;
      if (lo <= ZRVS_MINUSINFINITY && up >= ZRVS_PLUSINFINITY) type = 'N', rhs = 0, range = 0;
      else if (lo <= ZRVS_MINUSINFINITY) type = 'L', range = 0;
      else if (up >= ZRVS_PLUSINFINITY) type = 'G', rhs = lo, range = 0;
    } else {
      // left op expr: expr op' left.
      type = op1 == "<=" ? 'G' : op1 == ">=" ? 'L' : 'E';
      rhs = left - k;
    }
  } else {
    e = expression(false);
    if (!is_comparison(peek()))
      error(peek(), "a comparison expected, found '%s'",
            peek().kind == Tok::End ? "end of file" : peek().text.c_str());
    std::string op = peek().text;
    ++pos_;
    double right = constant("a right-hand side");
    type = op == "<=" ? 'L' : op == ">=" ? 'G' : 'E';
    rhs = right - e.constant;
    // "expression >= -inf" is a free row.
    if (type == 'G' && rhs <= ZRVS_MINUSINFINITY) type = 'N', rhs = 0;
  }
  if (type == 'E' && std::fabs(rhs) >= ZRVS_PLUSINFINITY)
    error(start, "an equality with an infinite right-hand side");
  if (indcol >= 0 && e.has_bracket) error(start, "an indicator constraint cannot be quadratic");
  add_row(name, e, type, rhs, range, start);
  if (indcol >= 0) {
    m_.indcol[m_.rows() - 1] = indcol;
    m_.indflag[m_.rows() - 1] = indflag;
  }
}

void LpReader::bound() {
  const Token &start = peek();
  double v;
  bool leading_number = peek().kind == Tok::Number || is_op(peek(), "+") || is_op(peek(), "-") ||
                        (peek().kind == Tok::Name && parse_number(peek().text, v) &&
                         is_comparison(peek(1)));
  if (leading_number) {
    double left = constant("a bound");
    if (!is_comparison(peek())) error(peek(), "a comparison expected in a bound");
    std::string op1 = peek().text;
    ++pos_;
    if (peek().kind != Tok::Name) error(peek(), "a column name expected in a bound");
    int j = column(peek().text);
    ++pos_;
    bounded_[j] = 1;
    if (op1 == "=") m_.lb[j] = m_.ub[j] = left;
    else if (op1 == "<=") m_.lb[j] = left;
    else m_.ub[j] = left;
    if (is_comparison(peek())) {
      std::string op2 = peek().text;
      ++pos_;
      double right = constant("a bound");
      if (op2 != op1 || op1 == "=") error(start, "a double bound needs two '<=' or two '>='");
      if (op2 == "<=") m_.ub[j] = right;
      else m_.lb[j] = right;
    }
    return;
  }
  if (peek().kind != Tok::Name) error(peek(), "a bound expected, found '%s'", peek().text.c_str());
  int j = column(peek().text);
  ++pos_;
  bounded_[j] = 1;
  if (peek().kind == Tok::Name && lower(peek().text) == "free") {
    ++pos_;
    m_.lb[j] = ZRVS_MINUSINFINITY, m_.ub[j] = ZRVS_PLUSINFINITY;
    return;
  }
  if (!is_comparison(peek())) error(peek(), "a comparison or 'free' expected in a bound");
  std::string op = peek().text;
  ++pos_;
  double right = constant("a bound");
  if (op == "=") m_.lb[j] = m_.ub[j] = right;
  else if (op == "<=") m_.ub[j] = right;
  else m_.lb[j] = right;
}

void LpReader::sos_set() {
  std::string name;
  if (is_label() && !(peek(2).kind == Tok::Op && peek(2).text == "::")) {
    name = peek().text;
    pos_ += 2;
  }
  const Token &head = peek();
  std::string type = head.kind == Tok::Name ? lower(head.text) : "";
  if ((type != "s1" && type != "s2") || !is_op(peek(1), "::"))
    error(head, "a set starts with 'S1::' or 'S2::'");
  pos_ += 2;
  std::vector<std::pair<int, double>> members;
  for (;;) {
    // Members "column:weight"; the weight may carry a sign.
    size_t n = is_op(peek(2), "-") || is_op(peek(2), "+") ? 1 : 0;
    if (peek().kind != Tok::Name || !is_op(peek(1), ":") || peek(2 + n).kind != Tok::Number ||
        (peek().line_start && at_section()))
      break;
    int j = column(peek().text);
    double w = (n && peek(2).text == "-" ? -1 : 1) * peek(2 + n).value;
    for (const auto &mbr : members) {
      if (mbr.first == j) error(peek(), "column '%s' is twice in one set", peek().text.c_str());
      if (mbr.second == w) error(peek(), "two members of one set have the same weight");
    }
    members.push_back({j, w});
    pos_ += 3 + n;
  }
  std::sort(members.begin(), members.end(),
            [](const auto &a, const auto &b) { return a.second < b.second; });
  for (const auto &mbr : members) m_.setcol.push_back(mbr.first), m_.setref.push_back(mbr.second);
  m_.settype.push_back(type[1]);
  m_.setstart.push_back(static_cast<int64_t>(m_.setcol.size()));
  m_.setnames.append_unnamed(1);
  if (!name.empty()) m_.setnames.set(m_.sets() - 1, name);
}

Model LpReader::read() {
  m_.name.clear();
  tokenize();
  Section section = Section::None;
  bool objective_seen = false;
  while (section != Section::End) {
    const Token &t = peek();
    if (t.kind == Tok::End) error(t, "the file ends without 'End'");
    size_t length = 0;
    Section s = t.line_start ? keyword(pos_, &length) : Section::None;
    if (s != Section::None) {
      if (s == Section::Objective) {
        if (objective_seen) error(t, "a second objective section");
        objective_seen = true;
        std::string w = lower(t.text);
        m_.objsense = w.compare(0, 3, "max") == 0 ? -1.0 : 1.0;
      } else if (!objective_seen) {
        error(t, "the file must start with Minimize or Maximize");
      }
      pos_ += length;
      section = s;
      if (s == Section::Objective) objective_section();
      continue;
    }
    switch (section) {
      case Section::None:
        error(t, "the file must start with Minimize or Maximize");
      case Section::Objective:
        error(t, "unexpected '%s' after the objective", t.text.c_str());
      case Section::Constraints: constraint(); break;
      case Section::Bounds: bound(); break;
      case Section::Generals:
      case Section::Binaries:
      case Section::Semis: {
        if (t.kind != Tok::Name) error(t, "a column name expected, found '%s'", t.text.c_str());
        int j = column(t.text);
        (section == Section::Generals ? in_general_ : section == Section::Binaries ? in_binary_
                                                                                  : in_semi_)[j] = 1;
        ++pos_;
        break;
      }
      case Section::Sos: sos_set(); break;
      case Section::End: break;
    }
  }
  for (int j = 0; j < m_.cols(); ++j) {
    if (in_semi_[j]) {
      m_.coltype[j] = in_general_[j] || in_binary_[j] ? 'R' : 'S';
      if (in_binary_[j] && !bounded_[j]) m_.lb[j] = 0, m_.ub[j] = 1;
    } else if (in_binary_[j]) {
      m_.coltype[j] = 'B';
      if (!bounded_[j]) m_.lb[j] = 0, m_.ub[j] = 1;
    } else if (in_general_[j]) {
      m_.coltype[j] = 'I';
    }
  }
  check_read_indicators(m_, who_, display_);
  (void)warnings_;
  return std::move(m_);
}

}  // namespace

Model read_lp(const std::string &text, const std::string &display, const char *who,
              std::vector<std::string> &warnings) {
  LpReader reader(text, display, who, warnings);
  return reader.read();
}

}  // namespace zorvan
