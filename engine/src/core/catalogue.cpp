#include "core/catalogue.h"

#include <cctype>
#include <cmath>

#include "core/arguments.h"
#include "core/errors.h"
#include "zorvan/zrvs.h"

namespace zorvan {

namespace {
std::string lower(const char *text) {
  std::string s(text ? text : "");
  for (char &c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return s;
}

const char *type_word(ValueType type) {
  switch (type) {
    case ValueType::integer:
    case ValueType::integer64: return "integer";
    case ValueType::real: return "double";
    case ValueType::string: return "string";
    case ValueType::pointer: return "pointer";
  }
  return "unknown";
}
}  // namespace

Catalogue::Catalogue(std::vector<CatalogueEntry> entries) : entries_(std::move(entries)) {
  for (size_t i = 0; i < entries_.size(); ++i) {
    by_id_[entries_[i].id] = static_cast<int>(i);
    by_name_[lower(entries_[i].name)] = static_cast<int>(i);
  }
}

int Catalogue::index_of(int id) const {
  auto it = by_id_.find(id);
  return it == by_id_.end() ? -1 : it->second;
}

int Catalogue::index_of(const char *name) const {
  auto it = by_name_.find(lower(name));
  return it == by_name_.end() ? -1 : it->second;
}

const CatalogueEntry *Catalogue::find(int id) const {
  int i = index_of(id);
  return i < 0 ? nullptr : &entries_[i];
}

const CatalogueEntry *Catalogue::find(const char *name) const {
  int i = index_of(name);
  return i < 0 ? nullptr : &entries_[i];
}

ControlValues::ControlValues(const Catalogue &catalogue)
    : catalogue_(&catalogue),
      ints_(catalogue.entries().size()),
      dbls_(catalogue.entries().size()),
      strs_(catalogue.entries().size()) {
  reset();
}

void ControlValues::reset() {
  for (size_t i = 0; i < ints_.size(); ++i) reset(static_cast<int>(i));
}

void ControlValues::reset_control(int id, const char *who) {
  int i = catalogue_->index_of(id);
  if (i < 0 || !catalogue_->entries()[i].control)
    fail(ZRVS_ERR_UNKNOWNID, "%s: unknown control %d", who, id);
  reset(i);
}

void ControlValues::reset(int index) {
  const CatalogueEntry &e = catalogue_->entries()[index];
  ints_[index] = e.int_default;
  dbls_[index] = e.dbl_default;
  strs_[index] = e.str_default ? e.str_default : "";
  ++version_;
}

int ControlValues::control_index(int id, ValueType type, const char *who) const {
  int i = catalogue_->index_of(id);
  if (i < 0) fail(ZRVS_ERR_UNKNOWNID, "%s: unknown control %d", who, id);
  const CatalogueEntry &e = catalogue_->entries()[i];
  if (!e.control)
    fail(ZRVS_ERR_UNKNOWNID, "%s: %d (%s) is an attribute, not a control", who, id, e.name);
  bool is_int = e.type == ValueType::integer || e.type == ValueType::integer64;
  bool wants_int = type == ValueType::integer || type == ValueType::integer64;
  if (is_int != wants_int || (!is_int && e.type != type))
    fail(ZRVS_ERR_ARGUMENT, "%s: control %s is of type %s, not %s", who, e.name,
         type_word(e.type), type_word(type));
  return i;
}

int64_t ControlValues::get_int(int id, const char *who) const {
  return ints_[control_index(id, ValueType::integer, who)];
}

double ControlValues::get_dbl(int id, const char *who) const {
  return dbls_[control_index(id, ValueType::real, who)];
}

const std::string &ControlValues::get_str(int id, const char *who) const {
  return strs_[control_index(id, ValueType::string, who)];
}

void ControlValues::set_int(int id, int64_t value, const char *who) {
  int i = control_index(id, ValueType::integer, who);
  const CatalogueEntry &e = catalogue_->entries()[i];
  if (value < e.int_min || value > e.int_max)
    fail(ZRVS_ERR_ARGUMENT, "%s: value %lld of control %s is outside [%lld, %lld]", who,
         static_cast<long long>(value), e.name, static_cast<long long>(e.int_min),
         static_cast<long long>(e.int_max));
  ints_[i] = value;
  ++version_;
}

void ControlValues::set_dbl(int id, double value, const char *who) {
  int i = control_index(id, ValueType::real, who);
  const CatalogueEntry &e = catalogue_->entries()[i];
  if (std::isnan(value) || value < e.dbl_min || value > e.dbl_max)
    fail(ZRVS_ERR_ARGUMENT, "%s: value %g of control %s is outside [%g, %g]", who, value,
         e.name, e.dbl_min, e.dbl_max);
  dbls_[i] = value;
  ++version_;
}

void ControlValues::set_str(int id, const char *value, const char *who) {
  int i = control_index(id, ValueType::string, who);
  require(value, "the value", who);
  std::string text(value);
  if (text.size() >= ZRVS_MAXSTRINGLENGTH)
    fail(ZRVS_ERR_ARGUMENT, "%s: the value of control %s is longer than %d bytes", who,
         catalogue_->entries()[i].name, ZRVS_MAXSTRINGLENGTH - 1);
  strs_[i] = std::move(text);
  ++version_;
}

}  // namespace zorvan
