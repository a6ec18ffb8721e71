// Whole problem files: the format chosen from name and flags, the text read
// into a model or the model written out.
#pragma once
#include <string>
#include <vector>

#include "model/model.h"

namespace zorvan {

// The model in an MPS or LP file (possibly compressed). A file that gives no
// problem name is named after the file. Warnings are appended to `warnings`.
Model read_problem_file(const char *filename, const char *flags, const char *who,
                        std::vector<std::string> &warnings);
void write_problem_file(const Model &m, const char *filename, const char *flags,
                        const char *who, std::vector<std::string> &warnings);

}  // namespace zorvan
