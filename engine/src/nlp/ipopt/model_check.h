// Numbers the interior-point solver cannot take, found before it runs and
// named by column and row: bounds or row sides that no value meets, numbers
// that are not finite, coefficients too large to work with.
#pragma once
#include <string>

#include "model/model.h"

namespace zorvan::nlp {

// Coefficients of this magnitude or more are refused.
constexpr double kLargeCoefficient = 1e15;

// The first such part of m in words, or empty when there is none.
std::string unusable_part(const Model &m);

}  // namespace zorvan::nlp
