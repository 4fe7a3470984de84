#include "core/CIMInstance.h"

#include "core/CIMNamespace.h"
#include "core/Mof.h"
#include "core_api/ORVStatusCode.h"

#include <map>
#include <utility>

namespace NVRNORV20 {

namespace {

[[noreturn]] void Fail(EORVStatusCode code) {
  throw TORVException(TORVStatusCode(code));
}

} // namespace

TCIMInstance::TCIMInstance(boost::shared_ptr<TCIMClass> instanceClass,
                           boost::weak_ptr<ICIMNamespace> ns,
                           boost::shared_ptr<const TPropertyLayout> classLayout)
    : cimClass(std::move(instanceClass)), cimNamespace(std::move(ns)),
      layout(std::move(classLayout)), slots(layout->properties.size(), 0) {}

std::vector<std::pair<boost::shared_ptr<ICIMPropertyDecl>, TCIMValue>>
TCIMInstance::GetKeyValues() const {
  // The class's layout, not the one this instance was made with: an
  // instance made before its class's Commit must still get the keys that
  // the Commit settled.
  boost::shared_ptr<const TPropertyLayout> classLayout = cimClass->GetLayout();
  std::vector<std::pair<boost::shared_ptr<ICIMPropertyDecl>, TCIMValue>> keys;
  keys.reserve(classLayout->keys.size());
  for (std::size_t position : classLayout->keys) {
    const boost::shared_ptr<ICIMPropertyDecl> &property = classLayout->properties[position];
    if (classLayout == layout) {
      keys.emplace_back(property, ValueAt(position));
      continue;
    }
    auto found = layout->index.find(property->GetName());
    keys.emplace_back(property,
                      found == layout->index.end() ? TCIMValue() : ValueAt(found->second));
  }
  return keys;
}

std::size_t TCIMInstance::PositionOf(const std::string &name) const {
  auto found = layout->index.find(name);
  if (found == layout->index.end())
    Fail(kORVStatusNoSuchProperty);
  return found->second;
}

boost::shared_ptr<ICIMClass> TCIMInstance::GetClass(const TCIMOptions &) {
  return cimClass;
}

void TCIMInstance::Commit(TCIMOptions) {
  if (committed)
    Fail(kORVStatusAlreadyCommitted);
  boost::shared_ptr<ICIMNamespace> ns = cimNamespace.lock();
  if (!ns)
    Fail(kORVStatusNamespaceGone);
  auto *registry = dynamic_cast<TCIMNamespace *>(ns.get());
  if (!registry)
    Fail(kORVStatusNotSupported);
  registry->RegisterInstance(shared_from_this());
  committed = true;
}

bool TCIMInstance::IsCommitted(const TCIMOptions &) {
  return committed;
}

const std::string &TCIMInstance::GetClassName(const TCIMOptions &) {
  return cimClass->GetName();
}

TCIMReference TCIMInstance::GetPath(const TCIMOptions &) {
  TCIMReference path(cimNamespace.lock(), std::map<std::string, TCIMValue>());
  path.SetClassName(cimClass->GetName());
  for (const auto &key : GetKeyValues())
    path.AddKeyValue(key.first->GetName(), key.second);
  return path;
}

boost::shared_ptr<ICIMNamespace> TCIMInstance::GetNamespace(const TCIMOptions &) {
  return cimNamespace.lock();
}

std::vector<boost::shared_ptr<ICIMProperty>> TCIMInstance::GetProperties(const TCIMOptions &) {
  std::vector<boost::shared_ptr<ICIMProperty>> properties;
  properties.reserve(slots.size());
  boost::shared_ptr<TCIMInstance> self = shared_from_this();
  for (std::size_t i = 0; i < slots.size(); ++i)
    properties.emplace_back(new TCIMInstanceProperty(self, i));
  return properties;
}

TCIMValue TCIMInstance::GetPropertyValue(const std::string &name, const TCIMOptions &) {
  return ValueAt(PositionOf(name));
}

bool TCIMInstance::HasProperty(const std::string &name, const TCIMOptions &) {
  return layout->index.count(name) != 0;
}

std::string TCIMInstance::ToMOF(const TCIMOptions &) {
  std::string text = "instance of " + cimClass->GetName() + " {\n";
  for (std::size_t i = 0; i < slots.size(); ++i) {
    const TCIMValue value = ValueAt(i);
    if (value.IsNull())
      continue;
    text += kMofIndent + layout->properties[i]->GetName() + " = " + value.ToMOF() + ";\n";
  }
  return text + "};";
}

boost::shared_ptr<ICIMProperty> TCIMInstance::GetPropertyDecl(const std::string &name,
                                                              const TCIMOptions &) {
  return boost::shared_ptr<ICIMProperty>(
      new TCIMInstanceProperty(shared_from_this(), PositionOf(name)));
}

void TCIMInstance::SetPropertyValue(const std::string &name, const TCIMValue &value,
                                    const TCIMOptions &) {
  const std::size_t position = PositionOf(name);
  const TCIMType declared = layout->properties[position]->GetType();
  TCIMValue stored;
  if (value.GetType() == kCIMTypeNone) {
    // What a failed text conversion leaves: null of the declared type.
    if (declared != kCIMTypeNone)
      stored = TCIMValue(declared, 0);
  } else if (declared == kCIMTypeNone || value.GetType() == declared) {
    stored = value;
  } else {
    Fail(kORVStatusTypeMismatch);
  }
  // The registry finds a committed instance by its key values.
  if (committed && layout->properties[position]->IsKey())
    Fail(kORVStatusAlreadyCommitted);
  if (slots[position] != 0) {
    assigned[slots[position] - 1] = std::move(stored);
    return;
  }
  assigned.push_back(std::move(stored));
  slots[position] = static_cast<std::uint32_t>(assigned.size());
}

TCIMInstanceProperty::TCIMInstanceProperty(boost::shared_ptr<TCIMInstance> owner,
                                           std::size_t propertyPosition)
    : instance(std::move(owner)), position(propertyPosition) {}

TCIMType TCIMInstanceProperty::GetDeclaredType(const TCIMOptions &) {
  return GetPropertyDecl()->GetType();
}

const std::string &TCIMInstanceProperty::GetName(const TCIMOptions &) {
  return GetPropertyDecl()->GetName();
}

TCIMValue TCIMInstanceProperty::GetValue(const TCIMOptions &) {
  return instance->ValueAt(position);
}

boost::shared_ptr<ICIMPropertyDecl> TCIMInstanceProperty::GetPropertyDecl(const TCIMOptions &) {
  return instance->GetLayout().properties[position];
}

bool TCIMInstanceProperty::IsKey(const TCIMOptions &) {
  return GetPropertyDecl()->IsKey();
}

} // namespace NVRNORV20
