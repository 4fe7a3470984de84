#include "core/CIMNamespace.h"

#include "core/CIMValueTree.h"
#include "core_api/ORVStatusCode.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>
#include <string_view>
#include <utility>

namespace NVRNORV20 {

namespace {

[[noreturn]] void Fail(EORVStatusCode code) {
  throw TORVException(TORVStatusCode(code));
}

// The registry files a keyed instance under a text built from its folded
// class name and its key values, part by part: each text is preceded by its
// length and each list by its count, so no part can run into the next and
// none is escaped again for the level that holds it. The key is thus as
// long as the values. Two instances share a key exactly when their key
// values would read the same in MOF: integers of any width and sign alike,
// a string and a datetime of the same text alike, names inside references
// in their own letter case, as the MOF text of a reference shows them.

/// How a value is seen: as a key value of the instance (its MOF literal),
/// as a key value inside a reference (bare or quoted in the path's text), or
/// as an element of an array inside a reference (its own text).
enum class ERegistryRole : std::uint8_t { kInstanceKey, kPathKey, kPathElement };

void AppendCount(std::string &key, char tag, std::size_t count) {
  // The tag, the count in decimal and the colon, without a string for the
  // number.
  char text[2 + std::numeric_limits<std::size_t>::digits10 + 1];
  text[0] = tag;
  char *end = std::to_chars(text + 1, text + sizeof text - 1, count).ptr;
  *end++ = ':';
  key.append(text, static_cast<std::size_t>(end - text));
}

void AppendCounted(std::string &key, char tag, std::string_view text) {
  AppendCount(key, tag, text.size());
  key.append(text.data(), text.size());
}

bool IsBarePathKey(ECIMType type) {
  return type == kCIMTypeBoolean || (type >= kCIMTypeUint8 && type <= kCIMTypeReal64);
}

bool IsAscii(std::string_view text) {
  for (const char c : text)
    if (static_cast<unsigned char>(c) >= 0x80)
      return false;
  return true;
}

/// A key value of the instance that MOF writes as a text in double quotes:
/// a string (an embedded object's being the object's MOF) or a datetime.
/// Where that text is ASCII, quoting and escaping it tell no two values
/// apart that the text alone does not, so the text itself is filed, and no
/// MOF literal is built for every instance. Other texts keep their literal
/// (a non-ASCII one can never read as an ASCII one). False when the value
/// is not such a text.
bool AppendQuotedKey(std::string &key, const TCIMValue &value) {
  if (value.IsNull() || value.IsArray())
    return false;
  std::string spare;
  const std::string *text = &spare;
  if (value.GetType() == kCIMTypeString) {
    if (boost::shared_ptr<ICIMInstance> embedded = value.GetEmbeddedInstance())
      spare = embedded->ToMOF();
    else if (boost::shared_ptr<ICIMClass> embeddedClass = value.GetEmbeddedClass())
      spare = embeddedClass->ToMOF();
    else
      text = &value.GetString();
  } else if (value.GetType() == kCIMTypeDateTime) {
    spare = value.ToString();
  } else {
    return false;
  }
  if (IsAscii(*text)) {
    AppendCounted(key, 'S', *text);
  } else if (text == &spare && value.GetType() == kCIMTypeString) {
    // An embedded object's MOF, quoted as the value's literal quotes it,
    // without writing the object a second time.
    AppendCounted(key, 'M', TCIMValue(spare).ToMOF());
  } else {
    return false;
  }
  return true;
}

/// Appends the parts of one key value, nested references and arrays
/// walked with a stack.
void AppendRegistryValue(std::string &key, const TCIMValue &top) {
  // Most keys are a plain string: no stack for them.
  if (AppendQuotedKey(key, top))
    return;
  struct TPart {
    const TCIMValue *value;
    const TCIMReference *path;
    std::string_view name;
    ERegistryRole role;
  };
  std::vector<TPart> pending{{&top, nullptr, {}, ERegistryRole::kInstanceKey}};
  while (!pending.empty()) {
    const TPart part = pending.back();
    pending.pop_back();
    if (part.path != nullptr) {
      const TCIMReference &path = *part.path;
      AppendCounted(key, 'P', path.GetNamespaceName());
      AppendCounted(key, 'c', path.GetClassName());
      const auto &bindings = path.GetKeyBindings();
      AppendCount(key, 'k', bindings.size());
      for (std::size_t i = bindings.size(); i-- > 0;) {
        pending.push_back({&bindings[i].second, nullptr, {}, ERegistryRole::kPathKey});
        pending.push_back({nullptr, nullptr, bindings[i].first, ERegistryRole::kPathKey});
      }
      continue;
    }
    if (part.value == nullptr) {
      AppendCounted(key, 'n', part.name);
      continue;
    }
    const TCIMValue &value = *part.value;
    if (const TCIMReference *path = TCIMValueTree::PathOf(value)) {
      pending.push_back({nullptr, path, {}, part.role});
    } else if (const std::vector<TCIMValue> *elements = TCIMValueTree::ElementsOf(value)) {
      AppendCount(key, 'A', elements->size());
      const ERegistryRole role = part.role == ERegistryRole::kInstanceKey
                                     ? ERegistryRole::kInstanceKey
                                     : ERegistryRole::kPathElement;
      for (std::size_t i = elements->size(); i-- > 0;)
        pending.push_back({&(*elements)[i], nullptr, {}, role});
    } else if (part.role == ERegistryRole::kInstanceKey) {
      // A scalar or null: its text or MOF literal, which no nesting can
      // lengthen.
      if (!AppendQuotedKey(key, value))
        AppendCounted(key, 'M', value.ToMOF());
    } else if (part.role == ERegistryRole::kPathKey && value.IsNull()) {
      key += 'N'; // written as nothing, where an empty string is
    } else if (part.role == ERegistryRole::kPathKey && IsBarePathKey(value.GetType())) {
      AppendCounted(key, 'b', value.ToString());
    } else {
      AppendCounted(key, 'q', value.ToString());
    }
  }
}

void AppendPathKey(std::string &key, const TCIMValue &value) {
  AppendRegistryValue(key, value);
}

std::string PathKeyStart(const std::string &className) {
  std::string key;
  AppendCounted(key, 'C', FoldName(className));
  return key;
}

/// The registry key of an instance's own key values; empty when its class
/// has no keys (such instances are not filed by path).
std::string InstancePathKey(TCIMInstance &instance) {
  const auto keys = instance.GetKeyValues();
  if (keys.empty())
    return std::string();
  std::string key = PathKeyStart(instance.GetClassName());
  for (const auto &binding : keys)
    AppendPathKey(key, binding.second);
  return key;
}

} // namespace

TCIMNamespace::TCIMNamespace(std::string namespaceName) : name(std::move(namespaceName)) {}

// Classes release their chains of superclasses themselves (ReleaseChain),
// so the order in which the maps let go of them does not matter.
TCIMNamespace::~TCIMNamespace() = default;

TCIMNamespace::TClassEntry *TCIMNamespace::FindEntry(const std::string &className) {
  auto found = classes.find(className);
  return found == classes.end() ? nullptr : &found->second;
}

std::vector<TCIMNamespace::TClassEntry *> TCIMNamespace::CollectDescendants(TClassEntry &entry,
                                                                            bool includeSelf) {
  std::vector<TClassEntry *> collected;
  if (includeSelf)
    collected.push_back(&entry);
  std::vector<TClassEntry *> pending{&entry};
  while (!pending.empty()) {
    TClassEntry *current = pending.back();
    pending.pop_back();
    for (const std::string &subclass : current->subclasses) {
      if (TClassEntry *child = FindEntry(subclass)) {
        collected.push_back(child);
        pending.push_back(child);
      }
    }
  }
  std::sort(collected.begin(), collected.end(),
            [](const TClassEntry *left, const TClassEntry *right) {
              return left->sequence < right->sequence;
            });
  return collected;
}

void TCIMNamespace::RegisterInstance(const boost::shared_ptr<TCIMInstance> &instance) {
  TClassEntry *entry = FindEntry(instance->GetClassName());
  if (!entry || entry->cimClass != instance->GetClass())
    Fail(kORVStatusSchemaLookup);
  std::string key = InstancePathKey(*instance);
  if (!key.empty() && !instancesByPath.Insert(std::move(key), instance))
    Fail(kORVStatusAlreadyExists);
  const std::uint64_t sequence = ++lastInstanceSequence;
  instance->SetSequence(sequence);
  entry->instances.Append(sequence, instance);
  instanceOrder.Append(sequence, instance);
}

boost::shared_ptr<TCIMInstance> TCIMNamespace::FindInstance(const TCIMReference &path) {
  TClassEntry *entry = FindEntry(path.GetClassName());
  if (!entry || entry->instances.Empty())
    return boost::shared_ptr<TCIMInstance>();
  boost::shared_ptr<const TPropertyLayout> layout = entry->cimClass->GetLayout();
  if (layout->keys.empty())
    return entry->instances.Front();
  std::string key = PathKeyStart(entry->cimClass->GetName());
  for (const auto &position : layout->keys) {
    const boost::shared_ptr<ICIMPropertyDecl> &property = position.second;
    const TCIMType declared = property->GetType();
    TCIMValue value = path.GetKeyValue(property->GetName());
    if (value.GetType() == kCIMTypeNone) {
      value = declared == kCIMTypeNone ? TCIMValue() : TCIMValue(declared, 0);
    } else if (declared != kCIMTypeNone && value.GetType() != declared) {
      // A path built by hand may carry key values as text.
      try {
        value = TCIMValue(declared, value.ToString(), shared_from_this());
      } catch (const TORVException &) {
        return boost::shared_ptr<TCIMInstance>();
      }
    }
    AppendPathKey(key, value);
  }
  return instancesByPath.Find(key);
}

const std::string &TCIMNamespace::GetName(const TCIMOptions &) {
  return name;
}

std::vector<boost::shared_ptr<ICIMClass>> TCIMNamespace::GetClasses(const TCIMOptions &) {
  std::vector<boost::shared_ptr<ICIMClass>> ordered;
  ordered.reserve(classOrder.Size());
  classOrder.ForEach([&](const auto &entry) { ordered.push_back(entry.second); });
  return ordered;
}

void TCIMNamespace::DeleteClass(const std::string &className, const TCIMOptions &) {
  auto found = classes.find(className);
  if (found == classes.end())
    Fail(kORVStatusSchemaLookup);
  TClassEntry &entry = found->second;
  if (!entry.subclasses.empty() || !entry.instances.Empty())
    Fail(kORVStatusClassHasInstances);
  const std::string &superClassName = entry.cimClass->GetSuperClassName();
  if (TClassEntry *parent = superClassName.empty() ? nullptr : FindEntry(superClassName)) {
    auto &siblings = parent->subclasses;
    siblings.erase(std::remove_if(siblings.begin(), siblings.end(),
                                  [&](const std::string &sibling) {
                                    return EqualsNoCase(sibling, className);
                                  }),
                   siblings.end());
  }
  classOrder.Erase(entry.sequence);
  classes.erase(found);
}

boost::shared_ptr<ICIMClass> TCIMNamespace::CreateClass(const std::string &className,
                                                        boost::shared_ptr<ICIMClass> superClass,
                                                        const TCIMOptions &) {
  if (className.empty())
    Fail(kORVStatusInvalidArgument);
  if (classes.count(className) != 0)
    Fail(kORVStatusAlreadyExists);
  TClassEntry *parent = nullptr;
  if (superClass) {
    parent = FindEntry(superClass->GetName());
    // A superclass from elsewhere is inherited from all the same, but only
    // this namespace's own classes list their subclasses.
    if (parent && parent->cimClass != superClass)
      parent = nullptr;
  }
  boost::shared_ptr<TCIMClass> cimClass(new TCIMClass(
      boost::weak_ptr<ICIMNamespace>(shared_from_this()), className, std::move(superClass)));
  TClassEntry entry;
  entry.cimClass = cimClass;
  entry.sequence = ++lastClassSequence;
  classOrder.Append(entry.sequence, cimClass);
  classes.emplace(className, std::move(entry));
  if (parent)
    parent->subclasses.push_back(className);
  return cimClass;
}

boost::shared_ptr<ICIMClass> TCIMNamespace::GetClass(const std::string &className,
                                                     const TCIMOptions &) {
  // Every class start tag looks up its superclass, also when it names none.
  if (className.empty())
    return boost::shared_ptr<ICIMClass>();
  TClassEntry *entry = FindEntry(className);
  if (!entry)
    Fail(kORVStatusSchemaLookup);
  return entry->cimClass;
}

std::vector<boost::shared_ptr<ICIMQualifierDecl>>
TCIMNamespace::GetQualifierDecls(const TCIMOptions &) {
  return std::vector<boost::shared_ptr<ICIMQualifierDecl>>(qualifierDecls.Items().begin(),
                                                           qualifierDecls.Items().end());
}

void TCIMNamespace::DeleteQualifierDecl(const std::string &qualifierName, const TCIMOptions &) {
  if (!qualifierDecls.Remove(qualifierName))
    Fail(kORVStatusQualifierNotDeclared);
}

boost::shared_ptr<ICIMQualifierDecl>
TCIMNamespace::CreateQualifierDecl(const std::string &qualifierName, const TCIMValue &defaultValue,
                                   std::uint32_t scope, std::uint32_t flavor,
                                   const TCIMOptions &options) {
  if (qualifierName.empty())
    Fail(kORVStatusInvalidArgument);
  if (qualifierDecls.Contains(qualifierName))
    Fail(kORVStatusSchemaLookup);
  boost::shared_ptr<TCIMQualifierDecl> declaration(
      new TCIMQualifierDecl(qualifierName, defaultValue, scope, flavor));
  const auto arraySize = options.find("ARRAYSIZE");
  if (arraySize != options.end() && defaultValue.IsArray() && !arraySize->second.IsNull())
    declaration->SetArraySize(static_cast<unsigned int>(arraySize->second.GetUnsigned()));
  qualifierDecls.Add(declaration);
  return declaration;
}

boost::shared_ptr<ICIMQualifierDecl>
TCIMNamespace::GetQualifierDecl(const std::string &qualifierName, const TCIMOptions &) {
  boost::shared_ptr<TCIMQualifierDecl> declaration = qualifierDecls.Find(qualifierName);
  if (!declaration)
    Fail(kORVStatusQualifierNotDeclared);
  return declaration;
}

bool TCIMNamespace::HasClass(const std::string &className, const TCIMOptions &) {
  return classes.count(className) != 0;
}

std::vector<boost::shared_ptr<ICIMInstance>>
TCIMNamespace::GetInstances(const std::string &className, bool deep, const TCIMOptions &) {
  std::vector<boost::shared_ptr<ICIMInstance>> result;
  if (className.empty()) {
    result.reserve(instanceOrder.Size());
    instanceOrder.ForEach([&](const auto &entry) { result.push_back(entry.second); });
    return result;
  }
  TClassEntry *entry = FindEntry(className);
  if (!entry)
    Fail(kORVStatusSchemaLookup);
  if (!deep) {
    result.reserve(entry->instances.Size());
    entry->instances.ForEach([&](const auto &instance) { result.push_back(instance.second); });
    return result;
  }
  std::vector<const TSequenceList<TCIMInstance>::TEntry *> merged;
  for (TClassEntry *member : CollectDescendants(*entry, true))
    member->instances.ForEach([&](const auto &instance) { merged.push_back(&instance); });
  std::sort(merged.begin(), merged.end(),
            [](const auto *left, const auto *right) { return left->first < right->first; });
  result.reserve(merged.size());
  for (const auto *instance : merged)
    result.push_back(instance->second);
  return result;
}

boost::shared_ptr<ICIMInstance> TCIMNamespace::GetInstance(const TCIMReference &path,
                                                           const TCIMOptions &) {
  boost::shared_ptr<TCIMInstance> instance = FindInstance(path);
  if (!instance)
    Fail(kORVStatusNoSuchInstance);
  return instance;
}

void TCIMNamespace::DeleteInstance(const TCIMReference &path, const TCIMOptions &) {
  boost::shared_ptr<TCIMInstance> instance = FindInstance(path);
  if (!instance)
    Fail(kORVStatusNoSuchInstance);
  const std::string key = InstancePathKey(*instance);
  if (!key.empty())
    instancesByPath.Erase(key);
  if (TClassEntry *entry = FindEntry(instance->GetClassName()))
    entry->instances.Erase(instance->GetSequence());
  instanceOrder.Erase(instance->GetSequence());
}

std::vector<std::string> TCIMNamespace::GetSubclassNames(const std::string &className, bool deep,
                                                         const TCIMOptions &) {
  std::vector<std::string> names;
  if (className.empty()) {
    classOrder.ForEach([&](const auto &entry) {
      if (deep || entry.second->GetSuperClassName().empty())
        names.push_back(entry.second->GetName());
    });
    return names;
  }
  TClassEntry *entry = FindEntry(className);
  if (!entry)
    Fail(kORVStatusSchemaLookup);
  if (!deep)
    return entry->subclasses;
  for (TClassEntry *descendant : CollectDescendants(*entry, false))
    names.push_back(descendant->cimClass->GetName());
  return names;
}

std::string TCIMNamespace::ToMOF(const TCIMOptions &options) {
  std::string text;
  auto append = [&text](const std::string &mof) {
    if (mof.empty())
      return; // an object left out
    if (!text.empty())
      text += "\n";
    text += mof;
    text += "\n";
  };
  for (const auto &declaration : qualifierDecls.Items())
    append(declaration->ToMOF());
  classOrder.ForEach([&](const auto &entry) { append(entry.second->ToMOF(options)); });
  instanceOrder.ForEach([&](const auto &entry) { append(entry.second->ToMOF()); });
  return text;
}

boost::shared_ptr<ICIMNamespace> CreateCIMNamespace(const std::string &name) {
  return boost::shared_ptr<ICIMNamespace>(new TCIMNamespace(name));
}

} // namespace NVRNORV20
