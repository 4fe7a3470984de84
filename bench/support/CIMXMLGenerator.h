// Synthetic CIM-XML documents for the benchmarks: a class document with
// qualifier declarations and classes (qualifiers with values, scalar, array
// and reference properties, methods with parameters), and an instance
// document whose instances belong to those classes and refer to each other
// through key bindings. The same arguments always give the same bytes.
#ifndef ORV_BENCH_SUPPORT_CIMXMLGENERATOR_H
#define ORV_BENCH_SUPPORT_CIMXMLGENERATOR_H

#include <cstddef>
#include <string>

namespace orvbench {

/// The root of every generated class: abstract, keyed by InstanceID.
inline constexpr const char *kGeneratedBaseClass = "ORV_BenchElement";

/// Name of generated class `index` (0-based). Every fourth class (index 3,
/// 7, ...) is an association whose two key references point at
/// kGeneratedBaseClass.
std::string GeneratedClassName(std::size_t index);
bool IsGeneratedAssociation(std::size_t index);

/// Qualifier declarations, the base class, then `classCount` classes
/// deriving from it, in one DECLGROUP. About 6 KB per class. With
/// `chainDepth` above 1 the ordinary classes form chains that deep, each
/// deriving from the one before and overriding its members.
std::string GenerateClassDocument(std::size_t classCount, std::size_t chainDepth = 1);

/// `instanceCount` instances spread round-robin over the `classCount`
/// classes of GenerateClassDocument(classCount). Instance j has the key
/// InstanceID "orv:bench:j"; an instance of an association refers, by
/// INSTANCENAME and KEYBINDING, to instances j-1 and j-2 (instances of
/// ordinary classes). Needs classCount >= 1.
std::string GenerateInstanceDocument(std::size_t instanceCount, std::size_t classCount);

/// An EnumerateInstances response of `instanceCount` named instances of the
/// ordinary classes of GenerateClassDocument(classCount), as a server sends
/// it: each VALUE.NAMEDINSTANCE with its key binding. About 1 KB per
/// instance. Needs classCount to be a multiple of 4.
std::string GenerateEnumerationResponse(std::size_t instanceCount, std::size_t classCount);

/// Picks `classCount` so that the class document is about `bytes` long.
std::size_t ClassCountForSize(std::size_t bytes);

} // namespace orvbench

#endif
