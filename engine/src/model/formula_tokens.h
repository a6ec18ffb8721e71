// The token encoding of formulas: pairs (type, value) in reverse Polish
// order. Function arguments follow a start-of-arguments token (type 22) and
// are written last argument first, so the first argument is the one nearest
// the function token.
#pragma once

namespace zorvan::tokens {

enum Type : int {
  end = 0,         // end of a formula
  constant = 1,    // value: the number
  column = 10,     // value: column index
  user = 11,       // value: index of a registered user function (from 1)
  function = 12,   // value: built-in function number (below)
  arguments = 22,  // start of a function's argument list
  op = 31,         // value: operator number (below)
};

enum Operator : int { negate = 1, power = 2, multiply = 3, divide = 4, plus = 5, minus = 6 };

enum Function : int {
  log10 = 14,
  log = 15,
  exp = 16,
  abs = 17,
  sqrt = 18,
  sin = 27,
  cos = 28,
  tan = 29,
  asin = 30,
  acos = 31,
  atan = 32,
  min = 33,
  max = 34,
  pwl = 35,
  sign = 46,
  erf = 49,
  erfc = 50,
};

// Name of a built-in function number, or nullptr for an unknown number.
inline const char *function_name(int f) {
  switch (f) {
    case log10: return "log10";
    case log: return "log";
    case exp: return "exp";
    case abs: return "abs";
    case sqrt: return "sqrt";
    case sin: return "sin";
    case cos: return "cos";
    case tan: return "tan";
    case asin: return "asin";
    case acos: return "acos";
    case atan: return "atan";
    case min: return "min";
    case max: return "max";
    case pwl: return "pwl";
    case sign: return "sign";
    case erf: return "erf";
    case erfc: return "erfc";
  }
  return nullptr;
}

// Symbol of an operator number, or nullptr for an unknown number.
inline const char *operator_name(int o) {
  switch (o) {
    case negate: return "unary -";
    case power: return "**";
    case multiply: return "*";
    case divide: return "/";
    case plus: return "+";
    case minus: return "-";
  }
  return nullptr;
}

}  // namespace zorvan::tokens
