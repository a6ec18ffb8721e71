// ZRVSreadprob and ZRVSwriteprob: problem files in MPS and LP format.
#include <algorithm>

#include "core/problem.h"
#include "io/file_format.h"
#include "io/file_stream.h"
#include "model/checks.h"

using namespace zorvan;

namespace {

// The file's name without directories and known extensions: the problem
// name of a file that does not give one.
std::string base_name(const std::string &path) {
  std::string name = path.substr(path.find_last_of('/') == std::string::npos
                                     ? 0
                                     : path.find_last_of('/') + 1);
  for (const char *ext : {".gz", ".mps", ".lp"}) {
    size_t n = std::string(ext).size();
    if (name.size() > n) {
      std::string tail = name.substr(name.size() - n);
      std::transform(tail.begin(), tail.end(), tail.begin(), ::tolower);
      if (tail == ext) name.resize(name.size() - n);
    }
  }
  if (name.size() > ZRVS_MAXNAMELENGTH) name.resize(ZRVS_MAXNAMELENGTH);
  return name.empty() ? "noname" : name;
}

void send_warnings(zrvs_problem &p, const std::vector<std::string> &warnings, const char *who) {
  for (const std::string &w : warnings) p.message(ZRVS_MSG_WARNING, std::string(who) + ": " + w);
}

}  // namespace

extern "C" {

int ZRVSreadprob(ZRVSprob prob, const char *filename, const char *flags) {
  const char *who = "ZRVSreadprob";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    require(filename, "filename", who);
    FileChoice choice = choose_file_format(filename, flags, who);
    std::string text = read_whole_file(filename, who);
    std::vector<std::string> warnings;
    Model model = choice.format == FileFormat::Lp
                      ? read_lp(text, filename, who, warnings)
                      : read_mps(text, choice.format == FileFormat::FixedMps, filename, who,
                                 warnings);
    if (model.name.empty()) model.name = base_name(filename);
    p.model = std::move(model);
    p.model_changed();
    send_warnings(p, warnings, who);
    p.message(ZRVS_MSG_INFO, "Problem " + p.model.name + " read from " + filename + ": " +
                                 std::to_string(p.model.rows()) + " rows, " +
                                 std::to_string(p.model.cols()) + " columns, " +
                                 std::to_string(p.model.elems()) + " nonzeros");
  });
}

int ZRVSwriteprob(ZRVSprob prob, const char *filename, const char *flags) {
  const char *who = "ZRVSwriteprob";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    require(filename, "filename", who);
    FileChoice choice = choose_file_format(filename, flags, who);
    check_writable(p.model, who);
    std::vector<std::string> warnings;
    FileWriter out(filename, choice.gzip, who);
    if (choice.format == FileFormat::Lp)
      write_lp(p.model, out, who, warnings);
    else
      write_mps(p.model, choice.format == FileFormat::FixedMps, out, who, warnings);
    out.close();
    send_warnings(p, warnings, who);
  });
}

}  // extern "C"
