#include "solve/highs/open_mip.h"

#include <memory>
#include <vector>

#include "solve/highs/builder.h"

namespace zorvan {

namespace {

struct HighsDeleter {
  void operator()(void *h) const { Highs_destroy(h); }
};
using HighsHandle = std::unique_ptr<void, HighsDeleter>;

// HiGHS's model, as passModel takes it (no quadratic part in a MIP).
struct MipCopy {
  HighsInt cols = 0, rows = 0, nz = 0, sense = kHighsObjSenseMinimize;
  double offset = 0.0;
  std::vector<double> cost, col_lower, col_upper, row_lower, row_upper, value;
  std::vector<HighsInt> start, index, integrality;
};

bool copy_mip(void *h, MipCopy &c) {
  c.cols = Highs_getNumCol(h), c.rows = Highs_getNumRow(h), c.nz = Highs_getNumNz(h);
  c.cost.resize(c.cols), c.col_lower.resize(c.cols), c.col_upper.resize(c.cols);
  c.row_lower.resize(c.rows), c.row_upper.resize(c.rows);
  c.start.resize(c.cols + 1), c.index.resize(c.nz), c.value.resize(c.nz);
  c.integrality.resize(c.cols);
  HighsInt cols = 0, rows = 0, nz = 0;
  return Highs_getLp(h, kHighsMatrixFormatColwise, &cols, &rows, &nz, &c.sense, &c.offset,
                     c.cost.data(), c.col_lower.data(), c.col_upper.data(), c.row_lower.data(),
                     c.row_upper.data(), c.start.data(), c.index.data(), c.value.data(),
                     c.integrality.data()) != kHighsStatusError;
}

// Runs the copy on an instance of its own: as an LP without presolve, or as
// a MIP without costs (any feasible point ends it). Returns HiGHS's verdict.
HighsInt run_copy(const MipCopy &c, bool as_mip, double time_limit) {
  HighsHandle h(Highs_create());
  Highs_setBoolOptionValue(h.get(), "output_flag", false);
  Highs_setDoubleOptionValue(h.get(), "time_limit", time_limit);
  const std::vector<double> zero(static_cast<size_t>(c.cols), 0.0);
  if (!as_mip) Highs_setStringOptionValue(h.get(), "presolve", "off");
  HighsInt status = Highs_passModel(
      h.get(), c.cols, c.rows, c.nz, 0, kHighsMatrixFormatColwise, kHighsHessianFormatTriangular,
      c.sense, c.offset, as_mip ? zero.data() : c.cost.data(), c.col_lower.data(),
      c.col_upper.data(), c.row_lower.data(), c.row_upper.data(), c.start.data(),
      c.index.data(), c.value.data(), nullptr, nullptr, nullptr,
      as_mip ? c.integrality.data() : nullptr);
  if (status == kHighsStatusError) return kHighsModelStatusNotset;
  Highs_run(h.get());
  return Highs_getModelStatus(h.get());
}

}  // namespace

OpenMipVerdict settle_open_mip(void *highs, bool found_point, double time_limit) {
  MipCopy c;
  if (!copy_mip(highs, c)) return OpenMipVerdict::undecided;
  const HighsInt relaxation = run_copy(c, false, time_limit);
  if (relaxation == kHighsModelStatusInfeasible) return OpenMipVerdict::infeasible;
  if (relaxation != kHighsModelStatusUnbounded) return OpenMipVerdict::undecided;
  if (found_point) return OpenMipVerdict::unbounded;
  const HighsInt point = run_copy(c, true, time_limit);
  if (point == kHighsModelStatusOptimal) return OpenMipVerdict::unbounded;
  if (point == kHighsModelStatusInfeasible) return OpenMipVerdict::infeasible;
  return OpenMipVerdict::undecided;
}

}  // namespace zorvan
