// Attribute values of a problem, computed from its model and the results of
// its last solve. Each throws zorvan::Error for an unknown identifier or one
// of another type.
#pragma once
#include <cstdint>
#include <string>

#include "problem/problem.h"

namespace zorvan {

int64_t int_attribute(const zrvs_problem &p, int id, const char *who);
double dbl_attribute(const zrvs_problem &p, int id, const char *who);
std::string str_attribute(const zrvs_problem &p, int id, const char *who);

}  // namespace zorvan
