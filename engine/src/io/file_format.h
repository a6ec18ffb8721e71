// Which file format a read or write uses, from the file name and flags.
#pragma once
#include <string>
#include <vector>

#include "model/model.h"

namespace zorvan {

enum class FileFormat { FreeMps, FixedMps, Lp };

struct FileChoice {
  FileFormat format;
  bool gzip;  // the name ends in ".gz" (reads uncompress any gzip file anyway)
};

// Flags: 'l' LP format, 'm' free MPS, 'f' fixed MPS; without one of them the
// extension decides (".lp", ".mps", each optionally followed by ".gz").
// Throws Error(ZRVS_ERR_ARGUMENT) for unknown flags, conflicting flags, or
// a name whose format cannot be told.
FileChoice choose_file_format(const std::string &filename, const char *flags, const char *who);

// Readers take the whole text of a file and build a new model. `display`
// is the file name used in error texts; problems are reported as
// Error(ZRVS_ERR_FILE, "<who>: file '<display>', line <n>: <what>").
// Warnings (text the model was changed to accept) go to `warnings`.
Model read_mps(const std::string &text, bool fixed, const std::string &display, const char *who,
               std::vector<std::string> &warnings);
Model read_lp(const std::string &text, const std::string &display, const char *who,
              std::vector<std::string> &warnings);

// Checks the indicator rows of a model read from a file: each indicator
// column is binary and no indicator row has a quadratic part. Throws
// Error(ZRVS_ERR_FILE) naming the file, the row and the column.
void check_read_indicators(const Model &m, const char *who, const std::string &display);

class FileWriter;
// Writers write the model; they throw Error(ZRVS_ERR_UNSUPPORTED) for what
// the format cannot hold and add a warning for every kind of name that had
// to be replaced.
void write_mps(const Model &m, bool fixed, FileWriter &out, const char *who,
               std::vector<std::string> &warnings);
void write_lp(const Model &m, FileWriter &out, const char *who,
              std::vector<std::string> &warnings);

// Refuses models that no file format here can hold: several objectives,
// partially integer columns.
void check_writable(const Model &m, const char *who);

// How many replaced names a warning shows.
constexpr size_t kNameExamples = 3;

// The names of one kind of entity as a file will hold them. Names that are
// not `legal`, and (when `unique`) repeats of an earlier name, are replaced
// by generated names "<prefix><index>" made unique with a "_<k>" suffix.
// Returns the names; *replaced receives how many were replaced and, when
// given, *examples the first few of them ("'a b' as R0, ...").
std::vector<std::string> file_names(const Names &names, size_t count, char prefix,
                                    bool (*legal)(const std::string &), bool unique,
                                    size_t *replaced, std::string *examples = nullptr);

// The problem name as a file holds it on one line: control characters
// become '_' (with a warning).
std::string file_problem_name(const std::string &name, std::vector<std::string> &warnings);

}  // namespace zorvan
