// Control values written to the outputs of entry points; the main and the
// nonlinear entry points share them.
#pragma once
#include <string>

#include "core/arguments.h"
#include "core/catalogue.h"

namespace zorvan {

// An integer control into a 32-bit output (`wider` names the 64-bit reader).
inline void get_int_control(const ControlValues &c, int id, int *value, const char *wider,
                            const char *who) {
  require(value, "value", who);
  *value = fit_in_32_bits(c.get_int(id, who), "control", id, wider, who);
}

inline void get_dbl_control(const ControlValues &c, int id, double *value, const char *who) {
  require(value, "value", who);
  *value = c.get_dbl(id, who);
}

// A string control into a buffer of ZRVS_MAXSTRINGLENGTH bytes.
inline void get_str_control(const ControlValues &c, int id, char *value, const char *who) {
  require(value, "value", who);
  copy_text(c.get_str(id, who), value, ZRVS_MAXSTRINGLENGTH);
}

// A text into a buffer of maxbytes (either may be absent); *nbytes gets the
// size the whole text needs, NUL included.
inline void put_sized_text(const std::string &text, char *value, int maxbytes, int *nbytes) {
  if (nbytes) *nbytes = static_cast<int>(text.size()) + 1;
  if (value && maxbytes > 0) copy_text(text, value, static_cast<size_t>(maxbytes));
}

}  // namespace zorvan
