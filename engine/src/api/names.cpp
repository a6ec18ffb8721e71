// Entry points of the names of rows, columns and sets.
#include <cstring>

#include "problem/problem.h"
#include "model/checks.h"

using namespace zorvan;

extern "C" {

int ZRVSaddnames(ZRVSprob prob, int type, const char names[], int first, int last) {
  return problem_call(prob, "ZRVSaddnames", [&](zrvs_problem &p) {
    p.model.add_names(type, names, first, last, "ZRVSaddnames");
  });
}

int ZRVSaddsetnames(ZRVSprob prob, const char names[], int first, int last) {
  return problem_call(prob, "ZRVSaddsetnames", [&](zrvs_problem &p) {
    p.model.add_names(3, names, first, last, "ZRVSaddsetnames");
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

int ZRVSgetindex(ZRVSprob prob, int type, const char *name, int *index) {
  const char *who = "ZRVSgetindex";
  return problem_call(prob, who, [&](zrvs_problem &p) {
    int n = 0;
    Names &names = p.model.names_of(type, &n, who);
    require(name, "name", who);
    require(index, "index", who);
    *index = names.find(name);
  });
}

}  // extern "C"
