// The table of the second group of model members: general and
// piecewise-linear constraints, single entries, model parts and messages.
// Help texts are in help_texts_model.h.
#include <iterator>

#include "bindings/help_texts_model.h"
#include "bindings/workers_model.h"

namespace zrv {

namespace {

using KW = const char *const[];

// General and piecewise-linear constraints.
constexpr KW kAddGenCons = {"contype", "resultant", "colstart", "colind", "valstart", "val",
                            nullptr};
constexpr KW kAddGenConsOld = {"type", "resultant", "colstart", "col", "valstart", "val",
                               nullptr};
constexpr KW kGetGenCons = {"contype",  "resultant", "colstart", "colind", "maxcols",
                            "valstart", "val",       "maxvals",  "first",  "last",
                            nullptr};
constexpr KW kGetGenConsOld = {"type",     "resultant", "colstart", "col",   "colsize",
                               "valstart", "val",       "valsize",  "first", "last",
                               nullptr};
constexpr KW kDelGenCons = {"conind", nullptr};
constexpr KW kDelOld = {"mindex", nullptr};
constexpr KW kAddPwlCons = {"colind", "resultant", "start", "xval", "yval", nullptr};
constexpr KW kAddPwlConsOld = {"col", "resultant", "start", "xval", "yval", nullptr};
constexpr KW kGetPwlCons = {"colind",    "resultant", "start", "xval", "yval",
                            "maxpoints", "first",     "last",  nullptr};
constexpr KW kGetPwlConsOld = {"col",  "resultant", "start", "xval", "yval",
                               "size", "first",     "last",  nullptr};
constexpr KW kDelPwlCons = {"pwlind", nullptr};

// Single entries.
constexpr KW kChgCoef = {"row", "col", "coef", nullptr};
constexpr KW kChgCoefOld = {"irow", "icol", "dval", nullptr};
constexpr KW kChgMCoef = {"rowind", "colind", "rowcoef", nullptr};
constexpr KW kChgMCoefOld = {"mrow", "mcol", "dval", nullptr};
constexpr KW kGetCoef = {"row", "col", nullptr};
constexpr KW kGetCoefOld = {"irow", "icol", nullptr};
constexpr KW kChgQObj = {"objqcol1", "objqcol2", "objqcoef", nullptr};
constexpr KW kChgQObjOld = {"icol", "jcol", "dval", nullptr};
constexpr KW kGetQObj = {"objqcol1", "objqcol2", nullptr};
constexpr KW kGetQObjOld = {"icol", "jcol", nullptr};
constexpr KW kChgQRowCoeff = {"row", "rowqcol1", "rowqcol2", "rowqcoef", nullptr};
constexpr KW kChgQRowCoeffOld = {"irow", "icol", "jcol", "dval", nullptr};
constexpr KW kGetQRowCoeff = {"row", "rowqcol1", "rowqcol2", nullptr};
constexpr KW kGetQRowCoeffOld = {"irow", "icol", "jcol", nullptr};
constexpr KW kGetQRowQMatrix = {"row", "start", "colind", "rowqcoef", "maxcoefs", "first",
                                "last", nullptr};
constexpr KW kGetQRowQMatrixOld = {"irow", "mstart", "mclind", "dqe", "size", "first", "last",
                                   nullptr};
constexpr KW kGetQRows = {"rowind", nullptr};
constexpr KW kGetQRowsOld = {"qcrows", nullptr};
constexpr KW kDelQMatrix = {"row", nullptr};

// Model parts.
constexpr KW kAddObj = {"colind", "objcoef", "priority", "weight", nullptr};
constexpr KW kAddSetNames = {"names", "first", "last", nullptr};
constexpr KW kAddSetNamesOld = {"names", "start", "end", nullptr};
constexpr KW kDelIndicators = {"first", "last", nullptr};
constexpr KW kDelIndicatorsOld = {"start", "end", nullptr};
constexpr KW kGetMipEntities = {"coltype", "colind",  "limit",  "settype",
                                "start",   "setcols", "refval", nullptr};
constexpr KW kGetMipEntitiesOld = {"qgtype", "mgcols", "dlim", "qstype",
                                   "msstart", "mscols", "dref", nullptr};

// Messages.
constexpr KW kMsgCode = {"msgcode", nullptr};
constexpr KW kMsgCodeOld = {"errcode", nullptr};
constexpr KW kMsgStatus = {"msgcode", "status", nullptr};
constexpr KW kMsgStatusOld = {"errcode", "status", nullptr};
constexpr KW kLogFile = {"filename", nullptr};

constexpr bool kReads = false, kChanges = true;

}  // namespace

struct ModelMemberTable {
  static const Binding rows[];
};

// name, worker, format, keywords, legacy keywords, changes the model, help
const Binding ModelMemberTable::rows[] = {
    // General and piecewise-linear constraints
    {"addgencons", AddGenCons, "OO|OOOO", kAddGenCons, kAddGenConsOld, kChanges,
     help::kAddGenCons},
    {"getgencons", GetGenCons, "OOOOLOOLii", kGetGenCons, kGetGenConsOld, kReads,
     help::kGetGenCons},
    {"delgencons", DelGenCons, "O", kDelGenCons, kDelOld, kChanges, help::kDelGenCons},
    {"addpwlcons", AddPwlCons, "OOOOO", kAddPwlCons, kAddPwlConsOld, kChanges,
     help::kAddPwlCons},
    {"getpwlcons", GetPwlCons, "OOOOOLii", kGetPwlCons, kGetPwlConsOld, kReads,
     help::kGetPwlCons},
    {"delpwlcons", DelPwlCons, "O", kDelPwlCons, kDelOld, kChanges, help::kDelPwlCons},
    // Single entries
    {"chgcoef", ChgCoef, "OOd", kChgCoef, kChgCoefOld, kChanges, help::kChgCoef},
    {"chgmcoef", ChgMCoef, "OOO", kChgMCoef, kChgMCoefOld, kChanges, help::kChgMCoef},
    {"getcoef", GetCoef, "OO", kGetCoef, kGetCoefOld, kReads, help::kGetCoef},
    {"chgqobj", ChgQObj, "OOd", kChgQObj, kChgQObjOld, kChanges, help::kChgQObj},
    {"getqobj", GetQObj, "OO", kGetQObj, kGetQObjOld, kReads, help::kGetQObj},
    {"chgqrowcoeff", ChgQRowCoeff, "OOOd", kChgQRowCoeff, kChgQRowCoeffOld, kChanges,
     help::kChgQRowCoeff},
    {"getqrowcoeff", GetQRowCoeff, "OOO", kGetQRowCoeff, kGetQRowCoeffOld, kReads,
     help::kGetQRowCoeff},
    {"getqrowqmatrix", GetQRowQMatrix, "OOOOLOO", kGetQRowQMatrix, kGetQRowQMatrixOld, kReads,
     help::kGetQRowQMatrix},
    {"getqrows", GetQRows, "|O", kGetQRows, kGetQRowsOld, kReads, help::kGetQRows},
    {"delqmatrix", DelQMatrix, "O", kDelQMatrix, nullptr, kChanges, help::kDelQMatrix},
    // Model parts
    {"addobj", AddObj, "OOid", kAddObj, nullptr, kChanges, help::kAddObj},
    {"addsetnames", AddSetNames, "OOO", kAddSetNames, kAddSetNamesOld, kChanges,
     help::kAddSetNames},
    {"delindicators", DelIndicators, "OO", kDelIndicators, kDelIndicatorsOld, kChanges,
     help::kDelIndicators},
    {"getmipentities", GetMipEntities, "|OOOOOOO", kGetMipEntities, kGetMipEntitiesOld, kReads,
     help::kGetMipEntities},
    // Messages
    {"getmessagestatus", GetMessageStatus, "i", kMsgCode, kMsgCodeOld, kReads,
     help::kGetMessageStatus},
    {"setmessagestatus", SetMessageStatus, "ii", kMsgStatus, kMsgStatusOld, kReads,
     help::kSetMessageStatus},
    {"setlogfile", SetLogFile, "z", kLogFile, nullptr, kReads, help::kSetLogFile},
};

int RegisterModelMembers() {
  return RegisterTable<ModelMemberTable>(
      std::make_index_sequence<std::size(ModelMemberTable::rows)>());
}

}  // namespace zrv
