#include "core/CIMInstance.h"

#include "core/CIMNamespace.h"
#include "core/Mof.h"
#include "core_api/ORVStatusCode.h"

#include <boost/make_shared.hpp>

#include <algorithm>
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
      layout(std::move(classLayout)) {
  // Most instances are given a few values: room for them up front spares
  // the vector's first growths, without reserving a whole wide class.
  if (layout)
    assigned.reserve(std::min<std::size_t>(layout->members.Size(), kReservedValues));
}

std::vector<std::pair<boost::shared_ptr<ICIMPropertyDecl>, TCIMValue>>
TCIMInstance::GetKeyValues() const {
  // The class's layout, not the one this instance was made with: an
  // instance made before its class's Commit must still get the keys that
  // the Commit settled.
  boost::shared_ptr<const TPropertyLayout> classLayout = cimClass->GetLayout();
  std::vector<std::pair<boost::shared_ptr<ICIMPropertyDecl>, TCIMValue>> keys;
  keys.reserve(classLayout->keys.size());
  for (const auto &key : classLayout->keys) {
    if (classLayout == layout) {
      keys.emplace_back(key.second, ValueAt(key.first, *key.second));
      continue;
    }
    const auto *found = layout->members.Find(key.second->GetName());
    keys.emplace_back(key.second, found ? ValueAt(found->position, *found->item) : TCIMValue());
  }
  return keys;
}

const TNameTrie<ICIMPropertyDecl>::TEntry &TCIMInstance::EntryOf(const std::string &name) const {
  const auto *found = layout->members.Find(name);
  if (!found)
    Fail(kORVStatusNoSuchProperty);
  return *found;
}

const TCIMInstance::TAssigned *TCIMInstance::AssignedAt(std::size_t position) const {
  if (assignedIndex.empty()) {
    for (const TAssigned &value : assigned)
      if (value.position == position)
        return &value;
    return nullptr;
  }
  auto found = assignedIndex.find(position);
  return found == assignedIndex.end() ? nullptr : &assigned[found->second];
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

std::vector<boost::shared_ptr<ICIMProperty>>
TCIMInstance::GetProperties(const TCIMOptions &options) {
  const std::vector<boost::shared_ptr<ICIMPropertyDecl>> declared = layout->members.Ordered();
  const auto assignedOnly = options.find("ASSIGNED");
  std::vector<bool> wanted(declared.size(), true);
  if (assignedOnly != options.end() && static_cast<bool>(assignedOnly->second)) {
    wanted.assign(declared.size(), false);
    for (const TAssigned &value : assigned)
      wanted[value.position] = true;
  }
  std::vector<boost::shared_ptr<ICIMProperty>> properties;
  properties.reserve(declared.size());
  boost::shared_ptr<TCIMInstance> self = shared_from_this();
  for (std::size_t i = 0; i < declared.size(); ++i)
    if (wanted[i])
      properties.emplace_back(new TCIMInstanceProperty(self, i, declared[i]));
  return properties;
}

TCIMValue TCIMInstance::GetPropertyValue(const std::string &name, const TCIMOptions &) {
  const auto &entry = EntryOf(name);
  return ValueAt(entry.position, *entry.item);
}

bool TCIMInstance::HasProperty(const std::string &name, const TCIMOptions &) {
  return layout->members.Find(name) != nullptr;
}

std::string TCIMInstance::ToMOF(const TCIMOptions &) {
  // The values assigned, null ones too, in the class's order. A property
  // left out takes its class's default when the MOF is read: writing the
  // defaults again would repeat them in every instance.
  std::vector<const TAssigned *> ordered;
  ordered.reserve(assigned.size());
  for (const TAssigned &value : assigned)
    ordered.push_back(&value);
  std::sort(ordered.begin(), ordered.end(), [](const TAssigned *left, const TAssigned *right) {
    return left->position < right->position;
  });
  if (!MofNamesValid("instance of class", cimClass->GetName()))
    return std::string();
  std::string text = "instance of " + cimClass->GetName() + " {\n";
  for (const TAssigned *value : ordered) {
    const std::string &name = value->property->GetName();
    if (MofNamesValid("value of property", name))
      text += kMofIndent + name + " = " + value->value.ToMOF() + ";\n";
  }
  return text + "};";
}

boost::shared_ptr<ICIMProperty> TCIMInstance::GetPropertyDecl(const std::string &name,
                                                              const TCIMOptions &) {
  const auto &entry = EntryOf(name);
  return boost::make_shared<TCIMInstanceProperty>(shared_from_this(), entry.position, entry.item);
}

void TCIMInstance::SetPropertyValue(const std::string &name, const TCIMValue &value,
                                    const TCIMOptions &) {
  const auto &entry = EntryOf(name);
  const TCIMType declared = entry.item->GetType();
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
  if (committed && entry.item->IsKey())
    Fail(kORVStatusAlreadyCommitted);
  if (const TAssigned *present = AssignedAt(entry.position)) {
    assigned[static_cast<std::size_t>(present - assigned.data())].value = std::move(stored);
    return;
  }
  assigned.push_back({entry.position, entry.item.get(), std::move(stored)});
  if (!assignedIndex.empty()) {
    assignedIndex.emplace(entry.position, assigned.size() - 1);
  } else if (assigned.size() > kScannedValues) {
    for (std::size_t i = 0; i < assigned.size(); ++i)
      assignedIndex.emplace(assigned[i].position, i);
  }
}

TCIMInstanceProperty::TCIMInstanceProperty(boost::shared_ptr<TCIMInstance> owner,
                                           std::size_t propertyPosition,
                                           boost::shared_ptr<ICIMPropertyDecl> declaration)
    : instance(std::move(owner)), position(propertyPosition), property(std::move(declaration)) {}

TCIMType TCIMInstanceProperty::GetDeclaredType(const TCIMOptions &) {
  return property->GetType();
}

const std::string &TCIMInstanceProperty::GetName(const TCIMOptions &) {
  return property->GetName();
}

TCIMValue TCIMInstanceProperty::GetValue(const TCIMOptions &) {
  return instance->ValueAt(position, *property);
}

boost::shared_ptr<ICIMPropertyDecl> TCIMInstanceProperty::GetPropertyDecl(const TCIMOptions &) {
  return property;
}

bool TCIMInstanceProperty::IsKey(const TCIMOptions &) {
  return property->IsKey();
}

} // namespace NVRNORV20
