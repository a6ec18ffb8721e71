// Entry points of problem files.
#include "problem/problem.h"
#include "io/problem_files.h"

using namespace zorvan;

namespace {
void send_warnings(zrvs_problem &p, const std::vector<std::string> &warnings, const char *who) {
  for (const std::string &w : warnings) p.message(ZRVS_MSG_WARNING, std::string(who) + ": " + w);
}
}  // namespace

extern "C" {

int ZRVSreadprob(ZRVSprob prob, const char *filename, const char *flags) {
  const char *who = "ZRVSreadprob";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    std::vector<std::string> warnings;
    Model model = read_problem_file(filename, flags, who, warnings);
    model.formulas.keep_user_functions(p.model.formulas);
    p.model = std::move(model);
    p.model_changed();
    send_warnings(p, warnings, who);
    p.message(ZRVS_MSG_INFO, "Problem " + p.model.name + " read from " + filename + ": " +
                                 size_text(p.model));
  });
}

int ZRVSwriteprob(ZRVSprob prob, const char *filename, const char *flags) {
  const char *who = "ZRVSwriteprob";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    std::vector<std::string> warnings;
    write_problem_file(p.model, filename, flags, who, warnings);
    send_warnings(p, warnings, who);
  });
}

}  // extern "C"
