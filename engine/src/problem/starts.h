// What the user hands the next solves besides the model: a starting LP
// solution, MIP starts and branching directives. They follow column
// deletions (renumbered, entries of deleted columns dropped).
#pragma once
#include <map>
#include <string>
#include <vector>

namespace zorvan {

// A full or partial integer solution: values of the listed columns.
struct MipStart {
  std::string name;
  std::vector<int> cols;
  std::vector<double> values;
};

// How the search branches on one column: lower priority values first,
// direction 'U' up branch first, 'D' down first, 'N' the search decides;
// pseudo costs per unit of change up and down (negative: none given).
struct Directive {
  int priority = 500;
  char dir = 'N';
  double up = -1.0, down = -1.0;
};

struct SolverStarts {
  // A starting point for the next LP solve (values, slacks, prices).
  bool has_lp = false;
  std::vector<double> lp_x, lp_slack, lp_duals, lp_djs;
  // MIP starts not yet handed to a solve, in the order given.
  std::vector<MipStart> mip;
  // Branching directives by column.
  std::map<int, Directive> dirs;

  // Columns flagged in mask are gone; the others are renumbered.
  void columns_deleted(const std::vector<char> &mask);
  // Rows changed shape: an LP start no longer fits.
  void rows_changed() { has_lp = false; }
};

}  // namespace zorvan
