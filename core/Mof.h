// Pieces of MOF text shared by the object model's ToMOF operations.
#ifndef ORV_CORE_MOF_H
#define ORV_CORE_MOF_H

#include "core_api/CIMInterfaces.h"

#include <boost/shared_ptr.hpp>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace NVRNORV20 {

/// True when name is a CIM identifier as DSP0004 spells one: an ASCII
/// letter, "_" or a UTF-8 character from U+0080 to U+FFEF, then any of those
/// or ASCII digits. Only such names are written bare into MOF.
bool IsMofIdentifier(std::string_view name);

/// True when every name given is an identifier. Otherwise logs that the
/// element (its kind, e.g. "class", and its own name) is left out of the MOF
/// and which name is to blame, and returns false: a name that MOF cannot
/// spell would change the structure of the text around it.
bool MofNamesValid(const char *kind, const std::string &name,
                   const std::vector<const std::string *> &others = {});

/// A UTF-8 character at text[i] (1 to 4 bytes, no overlong form, no
/// surrogate, at most U+10FFFF): its length and code point; 0 when the byte
/// there begins none.
std::size_t DecodeUtf8(std::string_view text, std::size_t i, std::uint32_t &codePoint);

/// The indentation of a member inside a class or instance body.
extern const char *const kMofIndent;

/// The element type's MOF keyword ("uint8", "datetime"); "void" for no type.
std::string MofTypeName(TCIMType type);

/// "" for a scalar type, "[]" for an array of variable size, "[4]" for one
/// of a fixed size.
std::string MofArraySuffix(TCIMType type, unsigned int arraySize);

/// "[Key, Description(\"x\")] " for the qualifiers given, "" for none.
/// Qualifiers marked propagated are left out: MOF shows what an element
/// declares itself. So is a qualifier whose ToMOF is empty (its name
/// cannot be written). The options go to each qualifier's ToMOF.
std::string MofQualifierPrefix(const std::vector<boost::shared_ptr<ICIMQualifier>> &qualifiers,
                               const TCIMOptions &options);

/// The option that makes ToMOF write each qualifier's flavors where they
/// differ from its declaration's (" : DisableOverride Restricted"), as a
/// MOF compiler needs them to give the same flavors back.
extern const char *const kMofFlavorsOption;
/// Whether options hold kMofFlavorsOption set to true.
bool MofWritesFlavors(const TCIMOptions &options);

/// "Scope(class, property)" or "Scope(any)"; "" for an empty scope.
std::string MofScope(std::uint32_t scope);

/// "Flavor(EnableOverride, ToSubclass)": both the override and the
/// propagation flavor are always written, then Translatable when set.
std::string MofFlavor(std::uint32_t flavor);

} // namespace NVRNORV20

#endif
