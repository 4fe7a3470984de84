// A CIM object path: an optional namespace, a class name and ordered key
// bindings.
#ifndef ORV_CORE_API_CIMREFERENCE_H
#define ORV_CORE_API_CIMREFERENCE_H

#include "core_api/CIMValue.h"
#include "core_api/ORVExport.h"

#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace NVRNORV20 {

class ORVCORE_API TCIMReference {
public:
  using TKeyBinding = std::pair<std::string, TCIMValue>;

  TCIMReference();
  /// ns may be empty (no namespace). The map's bindings are taken in the
  /// map's order.
  TCIMReference(boost::shared_ptr<ICIMNamespace> ns,
                const std::map<std::string, TCIMValue> &keyBindings);
  TCIMReference(const TCIMReference &other);
  TCIMReference &operator=(const TCIMReference &other);
  ~TCIMReference();

  void SetClassName(const std::string &name) { className = name; }
  const std::string &GetClassName() const { return className; }

  /// Held weakly (a namespace owns instances whose values hold references
  /// to it); the namespace's name is kept for display.
  void SetNamespace(boost::shared_ptr<ICIMNamespace> ns);
  boost::shared_ptr<ICIMNamespace> GetNamespace() const;
  /// Names a namespace that no namespace object of this process stands
  /// for (a path read from a document): the name alone is kept.
  void SetNamespaceName(const std::string &name) {
    cimNamespace.reset();
    namespaceName = name;
  }
  /// The host of a path that names one ("" for a local path).
  void SetHost(const std::string &name) { host = name; }
  const std::string &GetHost() const { return host; }
  const std::string &GetNamespaceName() const { return namespaceName; }

  /// Appends a key binding; a name already bound (in any letter case) has
  /// its value replaced in place.
  void AddKeyValue(const std::string &name, const TCIMValue &value);
  const std::vector<TKeyBinding> &GetKeyBindings() const { return keys; }
  /// The bound value, or null when the name is not bound (any letter case).
  TCIMValue GetKeyValue(const std::string &name) const;

  /// The object path as text: "ns:Class.k1=\"v\",k2=3" (the namespace part
  /// only when set, after "//host/" when a host is set; keys in binding
  /// order). It is also what the text
  /// constructor of a reference value reads. A key that is itself a
  /// reference is quoted, so the backslashes before its quotes double with
  /// every level of nesting; a text longer than a string can hold throws
  /// kORVStatusOutOfMemory.
  std::string ToString() const;
  /// The length of ToString()'s text, found without writing it; the largest
  /// std::size_t when the text would be longer than that.
  std::size_t GetTextLength() const;
  /// Reads the object path text that ToString writes. Quoted key values
  /// become strings, true and false (any letter case) booleans, numbers
  /// sint64 when signed with '-', real64 with a fraction or exponent, else
  /// uint64; an empty value is null. ns, when given, is attached unless the
  /// text names another namespace. Any other text throws TORVException with
  /// kORVStatusInvalidValueText.
  static TCIMReference Parse(const char *text, std::size_t length,
                             boost::shared_ptr<ICIMNamespace> ns);

  /// Same class name and keys (names compared without regard to letter
  /// case, in order), same namespace name and same host.
  bool operator==(const TCIMReference &other) const;
  bool operator!=(const TCIMReference &other) const { return !(*this == other); }

private:
  /// Walks the keys of nested paths in loops (see TCIMValueTree).
  friend class TCIMValueTree;

  /// Positions of the keys by name, made once a path has many of them.
  struct TKeyIndex;
  /// The position of the key of that name (any letter case); the number of
  /// keys when none has it.
  std::size_t FindKey(const std::string &name) const;

  boost::weak_ptr<ICIMNamespace> cimNamespace;
  std::string namespaceName;
  std::string className;
  std::string host;
  std::vector<TKeyBinding> keys;
  std::unique_ptr<TKeyIndex> keyIndex;
};

} // namespace NVRNORV20

#endif
