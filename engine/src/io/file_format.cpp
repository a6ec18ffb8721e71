// Format selection and the name rules shared by the writers.
#include "io/file_format.h"

#include <cctype>
#include <cstring>
#include <unordered_set>

#include "core/errors.h"
#include "zorvan/zrvs.h"

namespace zorvan {

namespace {
bool ends_with_nocase(const std::string &s, const char *suffix) {
  size_t n = std::strlen(suffix);
  if (s.size() < n) return false;
  for (size_t k = 0; k < n; ++k)
    if (std::tolower(static_cast<unsigned char>(s[s.size() - n + k])) != suffix[k]) return false;
  return true;
}
}  // namespace

FileChoice choose_file_format(const std::string &filename, const char *flags, const char *who) {
  if (filename.empty()) fail(ZRVS_ERR_ARGUMENT, "%s: the file name is empty", who);
  FileChoice choice{FileFormat::FreeMps, ends_with_nocase(filename, ".gz")};
  std::string base = choice.gzip ? filename.substr(0, filename.size() - 3) : filename;
  int chosen = 0;
  for (const char *f = flags ? flags : ""; *f; ++f) {
    FileFormat format;
    switch (*f) {
      case 'l': format = FileFormat::Lp; break;
      case 'm': format = FileFormat::FreeMps; break;
      case 'f': format = FileFormat::FixedMps; break;
      default:
        fail(ZRVS_ERR_ARGUMENT,
             "%s: unknown flag '%c' (known: 'l' LP, 'm' free MPS, 'f' fixed MPS)", who, *f);
    }
    if (chosen && format != choice.format)
      fail(ZRVS_ERR_ARGUMENT, "%s: the flags \"%s\" ask for two different formats", who, flags);
    choice.format = format;
    chosen = 1;
  }
  if (chosen) return choice;
  if (ends_with_nocase(base, ".lp")) {
    choice.format = FileFormat::Lp;
  } else if (ends_with_nocase(base, ".mps")) {
    choice.format = FileFormat::FreeMps;
  } else {
    fail(ZRVS_ERR_ARGUMENT,
         "%s: cannot tell the format of '%s': name it .mps or .lp (optionally with .gz) or give "
         "a flag ('l' LP, 'm' free MPS, 'f' fixed MPS)",
         who, filename.c_str());
  }
  return choice;
}

void check_read_indicators(const Model &m, const char *who, const std::string &display) {
  for (int i = 0; i < m.rows(); ++i) {
    int j = m.indcol[i];
    if (j < 0) continue;
    bool binary = m.coltype[j] == 'B' || (m.coltype[j] == 'I' && m.lb[j] >= 0.0 && m.ub[j] <= 1.0);
    if (!binary)
      fail(ZRVS_ERR_FILE, "%s: file '%s': the indicator column '%s' of row '%s' is not binary",
           who, display.c_str(), m.colnames.get(j).c_str(), m.rownames.get(i).c_str());
    if (m.qrows.count(i))
      fail(ZRVS_ERR_FILE, "%s: file '%s': row '%s' is an indicator row with a quadratic part", who,
           display.c_str(), m.rownames.get(i).c_str());
  }
}

void check_writable(const Model &m, const char *who) {
  if (m.objectives.size() > 1)
    fail(ZRVS_ERR_UNSUPPORTED,
         "%s: the problem has %d objectives; MPS and LP files hold a single objective", who,
         static_cast<int>(m.objectives.size()));
  if (m.gencons() > 0 || m.pwlcons() > 0)
    fail(ZRVS_ERR_UNSUPPORTED,
         "%s: the problem has %d general and %d piecewise-linear constraints, which MPS and LP "
         "files here cannot hold; delete them before writing",
         who, m.gencons(), m.pwlcons());
  for (int j = 0; j < m.cols(); ++j)
    if (m.coltype[j] == 'P')
      fail(ZRVS_ERR_UNSUPPORTED,
           "%s: column %d (%s) is partially integer, which MPS and LP files cannot hold", who, j,
           m.colnames.get(j).c_str());
}

std::vector<std::string> file_names(const Names &names, size_t count, char prefix,
                                    bool (*legal)(const std::string &), bool unique,
                                    size_t *replaced, std::string *examples) {
  std::vector<std::string> out(count);
  std::vector<char> bad(count, 0);
  std::unordered_set<std::string> used;
  used.reserve(count);
  for (size_t i = 0; i < count; ++i) {
    out[i] = names.get(i);
    bad[i] = !legal(out[i]) || (unique && !used.insert(out[i]).second);
    if (!bad[i] && !unique) used.insert(out[i]);
  }
  *replaced = 0;
  if (examples) examples->clear();
  for (size_t i = 0; i < count; ++i) {
    if (!bad[i]) continue;
    std::string base = std::string(1, prefix) + std::to_string(i);
    std::string name = base;
    for (int k = 1; used.count(name); ++k) name = base + "_" + std::to_string(k);
    used.insert(name);
    if (examples && *replaced < kNameExamples)
      *examples += (*replaced ? ", '" : "'") + out[i] + "' as " + name;
    out[i] = std::move(name);
    ++*replaced;
  }
  return out;
}

std::string file_problem_name(const std::string &name, std::vector<std::string> &warnings) {
  std::string out = name;
  bool changed = false;
  for (char &c : out)
    if (static_cast<unsigned char>(c) < 0x20 || c == 0x7f) c = '_', changed = true;
  if (changed)
    warnings.push_back("the problem name holds control characters, written as '_'");
  return out;
}

}  // namespace zorvan
