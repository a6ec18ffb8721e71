// The table of the one-to-one members: one row each, with the argument
// format and the current and legacy keyword names. Help texts are in
// help_texts.h.
#include "bindings/members.h"

#include <iterator>

#include "bindings/help_texts.h"
#include "bindings/members_state.h"
#include "bindings/workers.h"
#include "bindings/workers_model.h"

namespace zrv {

namespace {

using KW = const char *const[];

// Reading the model.
constexpr KW kColType = {"coltype", "first", "last", nullptr};
constexpr KW kRowType = {"rowtype", "first", "last", nullptr};
constexpr KW kRowTypeOld = {"qrtype", "first", "last", nullptr};
constexpr KW kLimit = {"limit", "first", "last", nullptr};
constexpr KW kObj = {"objcoef", "first", "last", nullptr};
constexpr KW kObjOld = {"obj", "first", "last", nullptr};
constexpr KW kObjN = {"objidx", "objcoef", "first", "last", nullptr};
constexpr KW kGetCols = {"start", "rowind", "rowcoef", "maxcoefs", "first", "last", nullptr};
constexpr KW kGetColsOld = {"mstart", "mrwind", "dmatval", "size", "first", "last", nullptr};
constexpr KW kGetRows = {"start", "colind", "colcoef", "maxcoefs", "first", "last", nullptr};
constexpr KW kGetRowsOld = {"mstart", "mclind", "dmatval", "size", "first", "last", nullptr};
constexpr KW kGetMQObj = {"start", "colind", "objqcoef", "maxcoefs", "first", "last", nullptr};
constexpr KW kGetMQObjOld = {"mstart", "mclind", "dobjval", "size", "first", "last", nullptr};
constexpr KW kNames = {"type", "names", "first", "last", nullptr};
constexpr KW kNameList = {"type", "first", "last", nullptr};
constexpr KW kNameListOld = {"type", "start", "end", nullptr};
constexpr KW kIndexFromName = {"type", "name", nullptr};
constexpr KW kIndicators = {"colind", "complement", "first", "last", nullptr};
constexpr KW kIndicatorsOld = {"inds", "comps", "first", "last", nullptr};
constexpr KW kTriplets = {"row", "rowqcol1", "rowqcol2", "rowqcoef", nullptr};
constexpr KW kTripletsOld = {"irow", "mqcol1", "mqcol2", "dqe", nullptr};
constexpr KW kName = {"name", nullptr};
constexpr KW kNone = {nullptr};

// Changing the model.
constexpr KW kChgBounds = {"colind", "bndtype", "bndval", nullptr};
constexpr KW kChgBoundsOld = {"mindex", "qbtype", "bnd", nullptr};
constexpr KW kChgColType = {"colind", "coltype", nullptr};
constexpr KW kChgColTypeOld = {"mindex", "qctype", nullptr};
constexpr KW kChgLimit = {"colind", "limit", nullptr};
constexpr KW kChgLimitOld = {"mindex", "dlimit", nullptr};
constexpr KW kChgMQObj = {"objqcol1", "objqcol2", "objqcoef", nullptr};
constexpr KW kChgMQObjOld = {"mqcol1", "mqcol2", "dval", nullptr};
constexpr KW kChgObj = {"colind", "objcoef", nullptr};
constexpr KW kChgObjOld = {"mindex", "obj", nullptr};
constexpr KW kChgObjN = {"objidx", "colind", "objcoef", nullptr};
constexpr KW kSense = {"objsense", nullptr};
constexpr KW kSenseOld = {"sense", nullptr};
constexpr KW kObjIdx = {"objidx", nullptr};
constexpr KW kChgRhs = {"rowind", "rhs", nullptr};
constexpr KW kChgRhsOld = {"mindex", "rhs", nullptr};
constexpr KW kChgRng = {"rowind", "rng", nullptr};
constexpr KW kChgRngOld = {"mindex", "rng", nullptr};
constexpr KW kChgRowType = {"rowind", "rowtype", nullptr};
constexpr KW kChgRowTypeOld = {"mindex", "qrtype", nullptr};

// Adding to the model.
constexpr KW kAddCols = {"objcoef", "start", "rowind", "rowcoef", "lb", "ub", "names",
                         "types", nullptr};
constexpr KW kAddColsOld = {"objx", "mstart", "mrwind", "dmatval", "bdl", "bdu", "names",
                            "types", nullptr};
constexpr KW kAddRows = {"rowtype", "rhs", "start", "colind", "rowcoef", "range", "names",
                         nullptr};
constexpr KW kAddRowsOld = {"qrtype", "rhs", "mstart", "mclind", "dmatval", "range", "names",
                            nullptr};
constexpr KW kAddNames = {"type", "names", "first", "last", nullptr};
constexpr KW kAddQMatrix = {"row", "rowqcol1", "rowqcol2", "rowqcoef", nullptr};
constexpr KW kAddQMatrixOld = {"irow", "mqc1", "mqc2", "dqe", nullptr};

// Loading models.
constexpr KW kLoadProblem = {
    "probname", "rowtype",  "rhs",      "rng",        "objcoef",  "start",    "collen",
    "rowind",   "rowcoef",  "lb",       "ub",         "objqcol1", "objqcol2", "objqcoef",
    "qrowind",  "nrowqcoefs", "rowqcol1", "rowqcol2", "rowqcoef", "coltype",  "entind",
    "limit",    "settype",  "setstart", "setind",     "refval",   "colnames", "rownames",
    nullptr};
constexpr KW kLoadProblemOld = {
    "probname", "qrtypes", "rhs",      "range",  "obj",      "mstart",   "mnel",
    "mrwind",   "dmatval", "dlb",      "dub",    "mqcol1",   "mqcol2",   "dqe",
    "qcrows",   "qcnquads", "qcmqcol1", "qcmqcol2", "qcdqval", "qgtype", "mgcols",
    "dlim",     "qstype",  "msstart",  "mscols", "dref",     "colnames", "rownames",
    nullptr};

// Setting solver state.
constexpr KW kSetIndicators = {"rowind", "colind", "complement", nullptr};
constexpr KW kSetIndicatorsOld = {"mrows", "inds", "comps", nullptr};
constexpr KW kProbName = {"probname", nullptr};
constexpr KW kControl = {"control", nullptr};
constexpr KW kControlOld = {"ipar", nullptr};

constexpr bool kReads = false, kChanges = true;

}  // namespace

struct MemberTable {
  static const Binding rows[];
};

// name, worker, format, keywords, legacy keywords, changes the model, help
const Binding MemberTable::rows[] = {
    // Reading the model
    {"getlb", GetLb, "O|OO", nullptr, nullptr, kReads, help::kGetLb},
    {"getub", GetUb, "O|OO", nullptr, nullptr, kReads, help::kGetUb},
    {"getcoltype", GetColType, "O|OO", kColType, nullptr, kReads, help::kGetColType},
    {"getglblimit", GetGlbLimit, "O|OO", kLimit, nullptr, kReads, help::kGetGlbLimit},
    {"getrhs", GetRhs, "O|OO", nullptr, nullptr, kReads, help::kGetRhs},
    {"getrhsrange", GetRhsRange, "O|OO", nullptr, nullptr, kReads, help::kGetRhsRange},
    {"getrowtype", GetRowType, "O|OO", kRowType, kRowTypeOld, kReads, help::kGetRowType},
    {"getobj", GetObj, "O|OO", kObj, kObjOld, kReads, help::kGetObj},
    {"getobjn", GetObjN, "iOii", kObjN, nullptr, kReads, help::kGetObjN},
    {"getcols", GetCols, "OOOLOO", kGetCols, kGetColsOld, kReads, help::kGetCols},
    {"getrows", GetRows, "OOOLOO", kGetRows, kGetRowsOld, kReads, help::kGetRows},
    {"getmqobj", GetMQObj, "OOOLOO", kGetMQObj, kGetMQObjOld, kReads, help::kGetMQObj},
    {"getnames", GetNames, "iO|OO", kNames, nullptr, kReads, help::kGetNames},
    {"getnamelist", GetNameList, "i|OO", kNameList, kNameListOld, kReads, help::kGetNameList},
    {"getIndexFromName", GetIndexFromName, "is", kIndexFromName, nullptr, kReads,
     help::kGetIndexFromName},
    {"getindicators", GetIndicators, "|OOOO", kIndicators, kIndicatorsOld, kReads,
     help::kGetIndicators},
    {"getqrowqmatrixtriplets", GetQRowTriplets, "O|OOO", kTriplets, kTripletsOld, kReads,
     help::kGetQRowTriplets},
    {"getattribinfo", GetAttribInfo, "s", kName, nullptr, kReads, help::kGetAttribInfo},
    {"getcontrolinfo", GetControlInfo, "s", kName, nullptr, kReads, help::kGetControlInfo},
    {"getlasterror", GetLastError, "", kNone, nullptr, kReads, help::kGetLastError},
    // Changing the model
    {"chgbounds", ChgBounds, "OOO", kChgBounds, kChgBoundsOld, kChanges, help::kChgBounds},
    {"chgcoltype", ChgColType, "OO", kChgColType, kChgColTypeOld, kChanges, help::kChgColType},
    {"chgglblimit", ChgGlbLimit, "OO", kChgLimit, kChgLimitOld, kChanges, help::kChgGlbLimit},
    {"chgmqobj", ChgMQObj, "OOO", kChgMQObj, kChgMQObjOld, kChanges, help::kChgMQObj},
    {"chgobj", ChgObj, "OO", kChgObj, kChgObjOld, kChanges, help::kChgObj},
    {"chgobjn", ChgObjN, "iOO", kChgObjN, nullptr, kChanges, help::kChgObjN},
    {"chgobjsense", ChgObjSense, "i", kSense, kSenseOld, kChanges, help::kChgObjSense},
    {"chgrhs", ChgRhs, "OO", kChgRhs, kChgRhsOld, kChanges, help::kChgRhs},
    {"chgrhsrange", ChgRhsRange, "OO", kChgRng, kChgRngOld, kChanges, help::kChgRhsRange},
    {"chgrowtype", ChgRowType, "OO", kChgRowType, kChgRowTypeOld, kChanges, help::kChgRowType},
    // Deleting from the model
    {"delobj", DelObj, "i", kObjIdx, nullptr, kChanges, help::kDelObj},
    // Adding to the model
    {"addcols", AddCols, "OOOOOO|OO", kAddCols, kAddColsOld, kChanges, help::kAddCols},
    {"addrows", AddRows, "OOOOO|OO", kAddRows, kAddRowsOld, kChanges, help::kAddRows},
    {"addnames", AddNames, "iOOO", kAddNames, nullptr, kChanges, help::kAddNames},
    {"addqmatrix", AddQMatrix, "OOOO", kAddQMatrix, kAddQMatrixOld, kChanges,
     help::kAddQMatrix},
    // Loading models
    {"loadproblem", LoadProblem, "sOOOOOOOOOO|OOOOOOOOOOOOOOOOO", kLoadProblem, kLoadProblemOld,
     kChanges, help::kLoadProblem},
    // Setting solver state
    {"setindicators", SetIndicators, "OOO", kSetIndicators, kSetIndicatorsOld, kChanges,
     help::kSetIndicators},
    {"setprobname", SetProbName, "O", kProbName, nullptr, kChanges, help::kSetProbName},
    {"setdefaultcontrol", SetDefaultControl, "i", kControl, kControlOld, kReads,
     help::kSetDefaultControl},
    {"setdefaults", SetDefaults, "", kNone, nullptr, kReads, help::kSetDefaults},
};

int RegisterMembers() {
  if (RegisterCutMembers() < 0) return -1;
  if (RegisterStateMembers() < 0) return -1;
  if (RegisterTable<MemberTable>(std::make_index_sequence<std::size(MemberTable::rows)>()) < 0)
    return -1;
  if (RegisterModelMembers() < 0) return -1;
  return RegisterNonlinearMembers();
}

}  // namespace zrv
