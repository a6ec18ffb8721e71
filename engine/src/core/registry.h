// The live engine objects, so that handles can be validated (checked mode)
// and named (ZRVSgetobjecttypename).
#pragma once

namespace zorvan {

enum class ObjectKind { problem, nonlinear_problem };

void register_object(const void *object, ObjectKind kind);
void unregister_object(const void *object);
// True when object is live and of the given kind.
bool is_live(const void *object, ObjectKind kind);
// The type name of a live object, or nullptr.
const char *object_type_name(const void *object);

// Throws Error naming `who` when object is NULL or, in checked mode, not a
// live object of the kind; `noun` names the kind in the text ("problem").
void check_handle(const void *object, ObjectKind kind, const char *noun, const char *who);

}  // namespace zorvan
