// The table of the members about solver state: one row each, with the
// argument format and the current and legacy keyword names. Help texts are
// in help_state.h.
#include "bindings/members_state.h"

#include <iterator>

#include "bindings/help_state.h"
#include "bindings/workers_state.h"

namespace zrv {

namespace {

using KW = const char *const[];

constexpr KW kSol = {"x", "slack", "duals", "djs", nullptr};
constexpr KW kSolOld = {"x", "slack", "dual", "dj", nullptr};
constexpr KW kMipSol = {"x", "slack", nullptr};
constexpr KW kSolVal = {"col", "row", nullptr};
constexpr KW kSolValOld = {"column", "row", nullptr};
constexpr KW kBasis = {"rowstat", "colstat", nullptr};
constexpr KW kBasisOld = {"rstatus", "cstatus", nullptr};
constexpr KW kBasisVal = {"row", "col", nullptr};
constexpr KW kBasisValOld = {"row", "column", nullptr};
constexpr KW kInfeas = {"x", "slack", "duals", "djs", nullptr};
constexpr KW kInfeasOld = {"mx", "mslack", "mdual", "mdj", nullptr};
constexpr KW kNone = {nullptr};
constexpr KW kSolution = {"solution", nullptr};
constexpr KW kCalcObjN = {"objidx", "solution", nullptr};
constexpr KW kCalcDjs = {"duals", "solution", "djs", nullptr};
constexpr KW kCalcDjsOld = {"duals", "solution", "calculateddjs", nullptr};
constexpr KW kCalcSlacks = {"solution", "slacks", nullptr};
constexpr KW kCalcSlacksOld = {"solution", "calculatedslacks", nullptr};
constexpr KW kSolInfo = {"solution", "duals", "property", nullptr};
constexpr KW kSolInfoOld = {"solution", "dual", "property", nullptr};

constexpr KW kLoadLpSol = {"x", "slack", "duals", "djs", nullptr};
constexpr KW kLoadLpSolOld = {"x", "slack", "dual", "dj", nullptr};
constexpr KW kLoadMipSol = {"x", nullptr};
constexpr KW kLoadMipSolOld = {"dsol", nullptr};
constexpr KW kAddMipSol = {"solval", "colind", "name", nullptr};
constexpr KW kAddMipSolOld = {"mipsolval", "mipsolcol", "solname", nullptr};
constexpr KW kDirs = {"colind", "priority", "dir", "uppseudo", "downpseudo", nullptr};
constexpr KW kDirsOld = {"mcols", "mpri", "qbr", "dupc", "ddpc", nullptr};
constexpr KW kGetDirs = {"indices", "prios", "branchdirs", "uppseudo", "downpseudo", nullptr};
constexpr KW kGetDirsOld = {"mcols", "mpri", "qbr", "dupc", "ddpc", nullptr};
constexpr KW kBranchDirs = {"colind", "dir", nullptr};
constexpr KW kBranchDirsOld = {"mcols", "mbranch", nullptr};
constexpr KW kSecure = {"rowind", "colind", nullptr};
constexpr KW kSecureOld = {"mrow", "mcol", nullptr};

constexpr KW kObjSa = {"colind", "lower", "upper", nullptr};
constexpr KW kObjSaOld = {"mindex", "lower", "upper", nullptr};
constexpr KW kRhsSa = {"rowind", "lower", "upper", nullptr};
constexpr KW kBndSa = {"colind", "lblower", "lbupper", "ublower", "ubupper", nullptr};
constexpr KW kBndSaOld = {"mindex", "lblower", "lbupper", "ublower", "ubupper", nullptr};
constexpr KW kVec = {"vec", nullptr};
constexpr KW kPivotOrder = {"pivotorder", nullptr};
constexpr KW kPivotOrderOld = {"mpiv", nullptr};
constexpr KW kStability = {"type", "norm", "scaled", nullptr};
constexpr KW kStabilityOld = {"type", "norm", "ifscaled", nullptr};

constexpr KW kIisFirst = {"mode", nullptr};
constexpr KW kIisFirstOld = {"iismode", nullptr};
constexpr KW kIisStatus = {"nrows", "ncols", "suminfeas", "numinfeas", nullptr};
constexpr KW kIisStatusOld = {"rowsizes", "colsizes", "suminfeas", "numinfeas", nullptr};
constexpr KW kIisData = {"iis", "rowind", "colind", "contype", "bndtype", "duals", "djs",
                         "isolationrows", "isolationcols", nullptr};
constexpr KW kIisDataOld = {"num", "miisrow", "miiscol", "constrainttype", "colbndtype",
                            "duals", "rdcs", "isolationrows", "isolationcols", nullptr};

constexpr bool kReads = false, kChanges = true;

}  // namespace

struct StateMemberTable {
  static const Binding rows[];
};

// name, worker, format, keywords, legacy keywords, changes the model, help
const Binding StateMemberTable::rows[] = {
    // Solutions and bases
    {"getlpsol", GetLpSol, "|OOOO", kSol, kSolOld, kReads, help::kGetLpSol},
    {"getlastbarsol", GetLastBarSol, "|OOOO", kSol, kSolOld, kReads, help::kGetLastBarSol},
    {"getmipsol", GetMipSol, "|OO", kMipSol, nullptr, kReads, help::kGetMipSol},
    {"getlpsolval", GetLpSolVal, "|OO", kSolVal, kSolValOld, kReads, help::kGetLpSolVal},
    {"getmipsolval", GetMipSolVal, "|OO", kSolVal, kSolValOld, kReads, help::kGetMipSolVal},
    {"getbasis", GetBasis, "|OO", kBasis, kBasisOld, kReads, help::kGetBasis},
    {"getbasisval", GetBasisVal, "|OO", kBasisVal, kBasisValOld, kReads, help::kGetBasisVal},
    {"getinfeas", GetInfeas, "|OOOO", kInfeas, kInfeasOld, kReads, help::kGetInfeas},
    {"getscaledinfeas", GetScaledInfeas, "|OOOO", kInfeas, kInfeasOld, kReads,
     help::kGetScaledInfeas},
    {"getprimalray", GetPrimalRay, "", kNone, nullptr, kReads, help::kGetPrimalRay},
    {"getdualray", GetDualRay, "", kNone, nullptr, kReads, help::kGetDualRay},
    {"hasprimalray", HasPrimalRay, "", kNone, nullptr, kReads, help::kHasPrimalRay},
    {"hasdualray", HasDualRay, "", kNone, nullptr, kReads, help::kHasDualRay},
    {"getunbvec", GetUnbVec, "", kNone, nullptr, kReads, help::kGetUnbVec},
    // Values computed from a point
    {"calcobjective", CalcObjective, "O", kSolution, nullptr, kReads, help::kCalcObjective},
    {"calcobjn", CalcObjN, "iO", kCalcObjN, nullptr, kReads, help::kCalcObjN},
    {"calcreducedcosts", CalcReducedCosts, "OOO", kCalcDjs, kCalcDjsOld, kReads,
     help::kCalcReducedCosts},
    {"calcslacks", CalcSlacks, "OO", kCalcSlacks, kCalcSlacksOld, kReads, help::kCalcSlacks},
    {"calcsolinfo", CalcSolInfo, "OOi", kSolInfo, kSolInfoOld, kReads, help::kCalcSolInfo},
    // Loading solver state
    {"loadbasis", LoadBasis, "OO", kBasis, kBasisOld, kChanges, help::kLoadBasis},
    {"loadpresolvebasis", LoadPresolveBasis, "OO", kBasis, kBasisOld, kChanges,
     help::kLoadPresolveBasis},
    {"loadlpsol", LoadLpSol, "O|OOO", kLoadLpSol, kLoadLpSolOld, kChanges, help::kLoadLpSol},
    {"loadmipsol", LoadMipSol, "O", kLoadMipSol, kLoadMipSolOld, kChanges, help::kLoadMipSol},
    {"addmipsol", AddMipSol, "O|OO", kAddMipSol, kAddMipSolOld, kChanges, help::kAddMipSol},
    {"loaddirs", LoadDirs, "O|OOOO", kDirs, kDirsOld, kChanges, help::kLoadDirs},
    {"loadpresolvedirs", LoadPresolveDirs, "O|OOOO", kDirs, kDirsOld, kChanges,
     help::kLoadPresolveDirs},
    {"loadbranchdirs", LoadBranchDirs, "OO", kBranchDirs, kBranchDirsOld, kChanges,
     help::kLoadBranchDirs},
    {"getdirs", GetDirs, "|OOOOO", kGetDirs, kGetDirsOld, kReads, help::kGetDirs},
    {"loadsecurevecs", LoadSecureVecs, "OO", kSecure, kSecureOld, kChanges,
     help::kLoadSecureVecs},
    // Sensitivity and the basis
    {"objsa", ObjSa, "OOO", kObjSa, kObjSaOld, kReads, help::kObjSa},
    {"rhssa", RhsSa, "OOO", kRhsSa, kObjSaOld, kReads, help::kRhsSa},
    {"bndsa", BndSa, "OOOOO", kBndSa, kBndSaOld, kReads, help::kBndSa},
    {"btran", BTran, "O", kVec, nullptr, kReads, help::kBTran},
    {"ftran", FTran, "O", kVec, nullptr, kReads, help::kFTran},
    {"getpivotorder", GetPivotOrder, "O", kPivotOrder, kPivotOrderOld, kReads,
     help::kGetPivotOrder},
    {"basisstability", BasisStability, "|iii", kStability, kStabilityOld, kReads,
     help::kBasisStability},
    // Infeasible subsystems
    {"iisfirst", IisFirst, "|i", kIisFirst, kIisFirstOld, kReads, help::kIisFirst},
    {"iisnext", IisNext, "", kNone, nullptr, kReads, help::kIisNext},
    {"iisall", IisAll, "", kNone, nullptr, kReads, help::kIisAll},
    {"iisclear", IisClear, "", kNone, nullptr, kReads, help::kIisClear},
    {"iisstatus", IisStatus, "|OOOO", kIisStatus, kIisStatusOld, kReads, help::kIisStatus},
    {"getiisdata", GetIisData, "i|OOOOOOOO", kIisData, kIisDataOld, kReads, help::kGetIisData},
};

int RegisterStateMembers() {
  return RegisterTable<StateMemberTable>(
      std::make_index_sequence<std::size(StateMemberTable::rows)>());
}

}  // namespace zrv
