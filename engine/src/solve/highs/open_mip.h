// A MIP whose run ended "unbounded or infeasible" is settled by two runs of
// its own: the continuous relaxation without presolve, and, when that is
// unbounded, a search for any integer-feasible point. With rational data a
// feasible MIP whose relaxation is unbounded is unbounded itself.
#pragma once

namespace zorvan {

enum class OpenMipVerdict { unbounded, infeasible, undecided };

// `highs` holds the MIP as it was run (its columns' types included);
// `found_point` tells whether that run found an integer-feasible point.
// The runs use instances of their own, limited to `time_limit` seconds.
OpenMipVerdict settle_open_mip(void *highs, bool found_point, double time_limit);

}  // namespace zorvan
