// Names of rows, columns and sets of a model: by kind, added from and read
// into packed buffers.
#include <cstring>

#include "model/checks.h"
#include "model/model.h"

namespace zorvan {

namespace {
const char *entity_word(int type) { return type == 1 ? "row" : type == 2 ? "column" : "set"; }
}  // namespace

Names &Model::names_of(int type, int *count, const char *who) {
  switch (type) {
    case 1: *count = rows(); return rownames;
    case 2: *count = cols(); return colnames;
    case 3: *count = sets(); return setnames;
  }
  fail(ZRVS_ERR_ARGUMENT, "%s: type %d is not a name type (1 rows, 2 columns, 3 sets)", who,
       type);
}

void Model::add_names(int type, const char *names, int first, int last, const char *who) {
  int n = 0;
  Names &target = names_of(type, &n, who);
  require(names, "names", who);
  check_range(first, last, n, entity_word(type), who);
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
}

std::string packed_names(Model &m, int type, int first, int last, const char *who) {
  int n = 0;
  Names &names = m.names_of(type, &n, who);
  check_range(first, last, n, entity_word(type), who);
  std::string out;
  for (int i = first; i <= last; ++i) {
    out += names.get(i);
    out.push_back('\0');
  }
  return out;
}

}  // namespace zorvan
