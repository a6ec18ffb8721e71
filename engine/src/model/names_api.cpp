// Names of rows, columns and sets: adding, reading and looking up.
#include <cstring>

#include "core/problem.h"
#include "model/checks.h"

using namespace zorvan;

namespace {

Names &names_of(Model &m, int type, int *count, const char *who) {
  switch (type) {
    case 1: *count = m.rows(); return m.rownames;
    case 2: *count = m.cols(); return m.colnames;
    case 3: *count = m.sets(); return m.setnames;
  }
  fail(ZRVS_ERR_ARGUMENT, "%s: type %d is not a name type (1 rows, 2 columns, 3 sets)", who,
       type);
}

// The packed names of entries first..last.
std::string packed_names(Model &m, int type, int first, int last, const char *who) {
  int n = 0;
  Names &names = names_of(m, type, &n, who);
  check_range(first, last, n, type == 1 ? "row" : type == 2 ? "column" : "set", who);
  std::string out;
  for (int i = first; i <= last; ++i) {
    out += names.get(i);
    out.push_back('\0');
  }
  return out;
}

}  // namespace

extern "C" {

int ZRVSaddnames(ZRVSprob prob, int type, const char names[], int first, int last) {
  const char *who = "ZRVSaddnames";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    int n = 0;
    Names &target = names_of(p.model, type, &n, who);
    require(names, "names", who);
    check_range(first, last, n, type == 1 ? "row" : type == 2 ? "column" : "set", who);
    // Every name is checked before the first is stored, so a refused call
    // changes nothing.
    const char *s = names;
    for (int i = first; i <= last; ++i) {
      size_t len = std::strlen(s);
      if (len > ZRVS_MAXNAMELENGTH)
        fail(ZRVS_ERR_ARGUMENT, "%s: name %d is longer than %d characters", who, i - first,
             ZRVS_MAXNAMELENGTH);
      s += len + 1;
    }
    s = names;
    for (int i = first; i <= last; ++i) {
      size_t len = std::strlen(s);
      target.set(i, std::string_view(s, len));
      s += len + 1;
    }
  });
}

int ZRVSgetnamelist(ZRVSprob prob, int type, char names[], int maxbytes, int *nbytes,
                    int first, int last) {
  const char *who = "ZRVSgetnamelist";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    std::string packed = packed_names(p.model, type, first, last, who);
    if (nbytes) *nbytes = static_cast<int>(packed.size());
    if (!names) return;
    if (maxbytes < static_cast<int>(packed.size()))
      fail(ZRVS_ERR_ARGUMENT, "%s: the names need %d bytes, maxbytes is %d", who,
           static_cast<int>(packed.size()), maxbytes);
    std::memcpy(names, packed.data(), packed.size());
  });
}

int ZRVSgetnames(ZRVSprob prob, int type, char names[], int first, int last) {
  const char *who = "ZRVSgetnames";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    require(names, "names", who);
    std::string packed = packed_names(p.model, type, first, last, who);
    std::memcpy(names, packed.data(), packed.size());
  });
}

int ZRVSgetindex(ZRVSprob prob, int type, const char *name, int *index) {
  const char *who = "ZRVSgetindex";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    int n = 0;
    Names &names = names_of(p.model, type, &n, who);
    require(name, "name", who);
    require(index, "index", who);
    *index = names.find(name);
  });
}

}  // extern "C"
