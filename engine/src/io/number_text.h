// Numbers in problem files: written in the shortest form that reads back
// to the same double, read with correct rounding.
#pragma once
#include <string>
#include <string_view>

namespace zorvan {

// Shortest decimal text of v that parses back to exactly v ("1", "0.1",
// "1e+20", "-2.5e-07"). v must be finite.
std::string format_number(double v);

// Parses a whole token as a number: an optional sign, digits with an
// optional fraction and exponent, or "inf"/"infinity" (any case), which
// read as +-1e20. Returns false when the token is not such a number.
bool parse_number(std::string_view text, double &value);

}  // namespace zorvan
