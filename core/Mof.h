// Pieces of MOF text shared by the object model's ToMOF operations.
#ifndef ORV_CORE_MOF_H
#define ORV_CORE_MOF_H

#include "core_api/CIMInterfaces.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <string>
#include <vector>

namespace NVRNORV20 {

/// The indentation of a member inside a class or instance body.
extern const char *const kMofIndent;

/// The element type's MOF keyword ("uint8", "datetime"); "void" for no type.
std::string MofTypeName(TCIMType type);

/// "" for a scalar type, "[]" for an array of variable size, "[4]" for one
/// of a fixed size.
std::string MofArraySuffix(TCIMType type, unsigned int arraySize);

/// "[Key, Description(\"x\")] " for the qualifiers given, "" for none.
/// Qualifiers marked propagated are left out: MOF shows what an element
/// declares itself.
std::string MofQualifierPrefix(const std::vector<boost::shared_ptr<ICIMQualifier>> &qualifiers);

/// "Scope(class, property)" or "Scope(any)"; "" for an empty scope.
std::string MofScope(std::uint32_t scope);

/// "Flavor(EnableOverride, ToSubclass)": both the override and the
/// propagation flavor are always written, then Translatable when set.
std::string MofFlavor(std::uint32_t flavor);

} // namespace NVRNORV20

#endif
