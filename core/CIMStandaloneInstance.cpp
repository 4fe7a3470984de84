#include "core/CIMStandaloneInstance.h"

#include "core/Mof.h"
#include "core_api/ORVStatusCode.h"

#include <map>
#include <utility>

namespace NVRNORV20 {

namespace {

[[noreturn]] void Fail(EORVStatusCode code) {
  throw TORVException(TORVStatusCode(code));
}

/// The name of each property, for TNamePositions.
struct TPropertyNames {
  const std::vector<TCIMStandaloneInstance::TSetProperty> &properties;
  const std::string &operator()(std::size_t i) const { return properties[i].name; }
};

} // namespace

TCIMStandaloneInstance::TCIMStandaloneInstance(std::string name, boost::weak_ptr<ICIMNamespace> ns)
    : className(std::move(name)), cimNamespace(std::move(ns)) {
  if (className.empty())
    Fail(kORVStatusInvalidArgument);
}

std::size_t TCIMStandaloneInstance::Find(const std::string &name) const {
  return positions.Find(name, properties.size(), TPropertyNames{properties});
}

std::size_t TCIMStandaloneInstance::PositionOf(const std::string &name) const {
  const std::size_t position = Find(name);
  if (position == properties.size())
    Fail(kORVStatusNoSuchProperty);
  return position;
}

boost::shared_ptr<ICIMClass> TCIMStandaloneInstance::GetClass(const TCIMOptions &) {
  return boost::shared_ptr<ICIMClass>();
}

void TCIMStandaloneInstance::Commit(TCIMOptions) {
  Fail(kORVStatusNotSupported);
}

bool TCIMStandaloneInstance::IsCommitted(const TCIMOptions &) {
  return false;
}

const std::string &TCIMStandaloneInstance::GetClassName(const TCIMOptions &) {
  return className;
}

TCIMReference TCIMStandaloneInstance::GetPath(const TCIMOptions &) {
  TCIMReference path(cimNamespace.lock(), std::map<std::string, TCIMValue>());
  path.SetClassName(className);
  for (const TSetProperty &property : properties)
    if (property.key)
      path.AddKeyValue(property.name, property.value);
  return path;
}

boost::shared_ptr<ICIMNamespace> TCIMStandaloneInstance::GetNamespace(const TCIMOptions &) {
  return cimNamespace.lock();
}

std::vector<boost::shared_ptr<ICIMProperty>>
TCIMStandaloneInstance::GetProperties(const TCIMOptions &) {
  std::vector<boost::shared_ptr<ICIMProperty>> list;
  list.reserve(properties.size());
  boost::shared_ptr<TCIMStandaloneInstance> self = shared_from_this();
  for (std::size_t i = 0; i < properties.size(); ++i)
    list.emplace_back(new TCIMStandaloneProperty(self, i));
  return list;
}

TCIMValue TCIMStandaloneInstance::GetPropertyValue(const std::string &name, const TCIMOptions &) {
  return properties[PositionOf(name)].value;
}

bool TCIMStandaloneInstance::HasProperty(const std::string &name, const TCIMOptions &) {
  return Find(name) != properties.size();
}

std::string TCIMStandaloneInstance::ToMOF(const TCIMOptions &) {
  // Every property here was set, so all are written: there is no class
  // whose defaults could stand in for the ones left out.
  if (!MofNamesValid("instance of class", className))
    return std::string();
  std::string text = "instance of " + className + " {\n";
  for (const TSetProperty &property : properties)
    if (MofNamesValid("value of property", property.name))
      text += kMofIndent + property.name + " = " + property.value.ToMOF() + ";\n";
  return text + "};";
}

boost::shared_ptr<ICIMProperty> TCIMStandaloneInstance::GetPropertyDecl(const std::string &name,
                                                                        const TCIMOptions &) {
  return boost::shared_ptr<ICIMProperty>(
      new TCIMStandaloneProperty(shared_from_this(), PositionOf(name)));
}

void TCIMStandaloneInstance::SetPropertyValue(const std::string &name, const TCIMValue &value,
                                              const TCIMOptions &options) {
  const auto keyOption = options.find("KEY");
  const std::size_t position = Find(name);
  if (position == properties.size()) {
    if (name.empty())
      Fail(kORVStatusInvalidArgument);
    const bool key = keyOption != options.end() && static_cast<bool>(keyOption->second);
    properties.push_back({name, value.GetType(), value, key});
    positions.Appended(properties.size(), TPropertyNames{properties});
    return;
  }
  TSetProperty &property = properties[position];
  TCIMValue stored;
  if (value.GetType() == kCIMTypeNone) {
    // What a failed text conversion leaves: null of the declared type.
    if (property.declared != kCIMTypeNone)
      stored = TCIMValue(property.declared, 0);
  } else if (property.declared == kCIMTypeNone || value.GetType() == property.declared) {
    // A property first set to an untyped null is declared by the first
    // typed value.
    stored = value;
  } else {
    Fail(kORVStatusTypeMismatch);
  }
  property.declared = stored.GetType();
  property.value = std::move(stored);
  if (keyOption != options.end())
    property.key = static_cast<bool>(keyOption->second);
}

TCIMStandaloneProperty::TCIMStandaloneProperty(boost::shared_ptr<TCIMStandaloneInstance> owner,
                                               std::size_t propertyPosition)
    : instance(std::move(owner)), position(propertyPosition), name(instance->At(position).name) {}

TCIMType TCIMStandaloneProperty::GetDeclaredType(const TCIMOptions &) {
  return instance->At(position).declared;
}

const std::string &TCIMStandaloneProperty::GetName(const TCIMOptions &) {
  return name;
}

TCIMValue TCIMStandaloneProperty::GetValue(const TCIMOptions &) {
  return instance->At(position).value;
}

boost::shared_ptr<ICIMPropertyDecl> TCIMStandaloneProperty::GetPropertyDecl(const TCIMOptions &) {
  return boost::shared_ptr<ICIMPropertyDecl>();
}

bool TCIMStandaloneProperty::IsKey(const TCIMOptions &) {
  return instance->At(position).key;
}

// By value in the exported interface, which callers are built against.
// NOLINTBEGIN(performance-unnecessary-value-param)
boost::shared_ptr<ICIMInstance> CreateStandaloneInstance(const std::string &className,
                                                         boost::shared_ptr<ICIMNamespace> ns) {
  return boost::shared_ptr<ICIMInstance>(new TCIMStandaloneInstance(className, ns));
}
// NOLINTEND(performance-unnecessary-value-param)

} // namespace NVRNORV20
