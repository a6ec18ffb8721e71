// Catalogues of controls and attributes: identifier, name, type, default and
// valid range of every entry, with lookups by identifier and by name.
#pragma once
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace zorvan {

enum class ValueType { integer, integer64, real, string, pointer };

struct CatalogueEntry {
  int id;
  const char *name;
  ValueType type;
  bool control;
  // Controls only: default and inclusive range.
  int64_t int_default = 0, int_min = 0, int_max = 0;
  double dbl_default = 0.0, dbl_min = 0.0, dbl_max = 0.0;
  const char *str_default = "";
};

class Catalogue {
 public:
  explicit Catalogue(std::vector<CatalogueEntry> entries);
  const std::vector<CatalogueEntry> &entries() const { return entries_; }
  // Position of the entry, or -1.
  int index_of(int id) const;
  int index_of(const char *name) const;  // case-insensitive
  const CatalogueEntry *find(int id) const;
  const CatalogueEntry *find(const char *name) const;

 private:
  std::vector<CatalogueEntry> entries_;
  std::unordered_map<int, int> by_id_;
  std::unordered_map<std::string, int> by_name_;
};

// The main optimiser's catalogue.
const Catalogue &main_catalogue();

// A catalogue as parallel arrays for the C interface: identifiers, flags and
// names, ending with identifier 0, flags 0 and the name end_name.
struct CatalogueLists {
  CatalogueLists(const Catalogue *catalogue, int (*flags_of)(const CatalogueEntry &),
                 const char *end_name);
  std::vector<int> ids, flags;
  std::vector<const char *> names;
};

// ZRVS_CAFLAG_... flags and ZRVS_TYPE_... code of a main catalogue entry.
int catalogue_flags(const CatalogueEntry &e);
int type_code(const CatalogueEntry &e);
// The main catalogue's lists, names ending with NULL; built once.
const CatalogueLists &main_catalogue_lists();

// Control values of one problem, one slot per catalogue entry.
class ControlValues {
 public:
  explicit ControlValues(const Catalogue &catalogue);
  void reset();            // every control to its default
  void reset(int index);   // one control to its default
  // Control `id` to its default; throws for an unknown id or an attribute.
  void reset_control(int id, const char *who);
  // Typed access by identifier; throw zorvan::Error for an unknown
  // identifier, a type mismatch or a value out of range. `who` names the
  // entry point in error texts.
  int64_t get_int(int id, const char *who) const;
  double get_dbl(int id, const char *who) const;
  const std::string &get_str(int id, const char *who) const;
  void set_int(int id, int64_t value, const char *who);
  void set_dbl(int id, double value, const char *who);
  void set_str(int id, const char *value, const char *who);
  const Catalogue &catalogue() const { return *catalogue_; }
  // Grows with every set or reset, so that a solver can tell whether the
  // values it took are still current.
  uint64_t version() const { return version_; }

 private:
  int control_index(int id, ValueType type, const char *who) const;
  const Catalogue *catalogue_;
  uint64_t version_ = 0;
  std::vector<int64_t> ints_;
  std::vector<double> dbls_;
  std::vector<std::string> strs_;
};

}  // namespace zorvan
