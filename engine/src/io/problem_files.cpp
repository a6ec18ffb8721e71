// Whole problem files in MPS and LP format.
#include "io/problem_files.h"

#include <algorithm>

#include "core/arguments.h"
#include "io/file_format.h"
#include "io/file_stream.h"

namespace zorvan {

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

}  // namespace

Model read_problem_file(const char *filename, const char *flags, const char *who,
                        std::vector<std::string> &warnings) {
  require(filename, "filename", who);
  FileChoice choice = choose_file_format(filename, flags, who);
  std::string text = read_whole_file(filename, who);
  Model model = choice.format == FileFormat::Lp
                    ? read_lp(text, filename, who, warnings)
                    : read_mps(text, choice.format == FileFormat::FixedMps, filename, who,
                               warnings);
  if (model.name.empty()) model.name = base_name(filename);
  return model;
}

void write_problem_file(const Model &m, const char *filename, const char *flags,
                        const char *who, std::vector<std::string> &warnings) {
  require(filename, "filename", who);
  FileChoice choice = choose_file_format(filename, flags, who);
  check_writable(m, who);
  FileWriter out(filename, choice.gzip, who);
  if (choice.format == FileFormat::Lp)
    write_lp(m, out, who, warnings);
  else
    write_mps(m, choice.format == FileFormat::FixedMps, out, who, warnings);
  out.close();
}

}  // namespace zorvan
