#include "core/CIMClass.h"

#include "core/CIMInstance.h"
#include "core/Mof.h"
#include "core/ReleaseChain.h"
#include "core_api/ORVStatusCode.h"

#include <algorithm>
#include <utility>

namespace NVRNORV20 {

namespace {

[[noreturn]] void Fail(EORVStatusCode code) {
  throw TORVException(TORVStatusCode(code));
}

/// Adds item under its name: in the place of the inherited one it
/// overrides, else after the rest. The place it took.
template <class TItem>
std::size_t SetMember(TNameTrie<TItem> &members, boost::shared_ptr<TItem> item) {
  const auto *inherited = members.Find(item->GetName());
  const std::size_t position = inherited ? inherited->position : members.Size();
  members.Set(std::move(item), position);
  return position;
}

/// The layout of a class of another model: its properties, in its order
/// (a name it repeats in another letter case, in its first place).
boost::shared_ptr<const TPropertyLayout> LayoutOf(ICIMClass &cls) {
  boost::shared_ptr<TPropertyLayout> built(new TPropertyLayout);
  for (const auto &property : cls.GetProperties()) {
    const std::size_t position = SetMember(built->members, property);
    if (property->IsKey() && (built->keys.empty() || built->keys.back().first != position))
      built->keys.emplace_back(position, property);
  }
  return built;
}

boost::shared_ptr<const TMethodLayout> MethodsOf(ICIMClass &cls) {
  boost::shared_ptr<TMethodLayout> built(new TMethodLayout);
  for (const auto &method : cls.GetMethods())
    SetMember(*built, method);
  return built;
}

/// A member's MOF on a line of its own in a class body; nothing for a
/// member left out.
void AppendMember(std::string &text, const std::string &mof) {
  if (!mof.empty())
    text += kMofIndent + mof + "\n";
}

} // namespace

TCIMClass::TCIMClass(boost::weak_ptr<ICIMNamespace> ns, std::string className,
                     boost::shared_ptr<ICIMClass> super)
    : cimNamespace(std::move(ns)), name(std::move(className)),
      superClassName(super ? super->GetName() : std::string()), superClass(std::move(super)) {}

TCIMClass::~TCIMClass() {
  ReleaseChain(superClass, &TCIMClass::superClass);
}

boost::shared_ptr<const TPropertyLayout> TCIMClass::GetLayout() {
  return layout ? layout : BuildLayout();
}

std::vector<TCIMClass *> TCIMClass::UncommittedChain(ICIMClass *&above) {
  std::vector<TCIMClass *> chain{this};
  above = superClass.get();
  while (auto *ancestor = dynamic_cast<TCIMClass *>(above)) {
    if (ancestor->committed)
      break;
    chain.push_back(ancestor);
    above = ancestor->superClass.get();
  }
  return chain;
}

template <class TLayout>
boost::shared_ptr<const TLayout>
TCIMClass::BuildOnChain(boost::shared_ptr<const TLayout> TCIMClass::*settled,
                        boost::shared_ptr<const TLayout> (*foreign)(ICIMClass &),
                        boost::shared_ptr<const TLayout> (TCIMClass::*extend)(const TLayout &)
                            const) {
  // Ancestors not yet committed have no layout either: the chain of them is
  // laid out from its top down, each on the one above, in a loop.
  ICIMClass *above = nullptr;
  const std::vector<TCIMClass *> chain = UncommittedChain(above);
  boost::shared_ptr<const TLayout> built;
  if (auto *own = dynamic_cast<TCIMClass *>(above))
    built = own->*settled;
  else if (above)
    built = foreign(*above);
  else
    built.reset(new TLayout);
  for (auto cls = chain.rbegin(); cls != chain.rend(); ++cls)
    built = ((*cls)->*extend)(*built);
  return built;
}

boost::shared_ptr<const TPropertyLayout> TCIMClass::BuildLayout() {
  return BuildOnChain(&TCIMClass::layout, &LayoutOf, &TCIMClass::LayOut);
}

boost::shared_ptr<const TPropertyLayout> TCIMClass::LayOut(const TPropertyLayout &above) const {
  boost::shared_ptr<TPropertyLayout> built(new TPropertyLayout);
  built->members = above.members.Derived();
  // The inherited keys stay but where an own property takes their place;
  // the own ones that are keys join them.
  std::vector<std::pair<std::size_t, boost::shared_ptr<ICIMPropertyDecl>>> ownKeys;
  std::vector<std::size_t> taken;
  for (const auto &property : localProperties.Items()) {
    const std::size_t position = SetMember<ICIMPropertyDecl>(built->members, property);
    if (position < above.members.Size())
      taken.push_back(position);
    if (property->IsKey())
      ownKeys.emplace_back(position, property);
  }
  std::sort(taken.begin(), taken.end());
  for (const auto &key : above.keys)
    if (!std::binary_search(taken.begin(), taken.end(), key.first))
      built->keys.push_back(key);
  built->keys.insert(built->keys.end(), ownKeys.begin(), ownKeys.end());
  std::sort(built->keys.begin(), built->keys.end(),
            [](const auto &left, const auto &right) { return left.first < right.first; });
  return built;
}

boost::shared_ptr<const TMethodLayout> TCIMClass::BuildMethods() {
  return BuildOnChain(&TCIMClass::methods, &MethodsOf, &TCIMClass::ListMethods);
}

boost::shared_ptr<const TMethodLayout> TCIMClass::ListMethods(const TMethodLayout &above) const {
  boost::shared_ptr<TMethodLayout> built(new TMethodLayout(above.Derived()));
  for (const auto &method : localMethods.Items())
    SetMember<ICIMMethod>(*built, method);
  return built;
}

// Each class asks its own ancestors in a loop: a chain of classes not yet
// committed, which find members by asking upwards, may be of any length.
boost::shared_ptr<ICIMPropertyDecl>
TCIMClass::FindInherited(const std::string &propertyName) const {
  for (ICIMClass *ancestor = superClass.get(); ancestor;) {
    auto *own = dynamic_cast<TCIMClass *>(ancestor);
    if (!own)
      return ancestor->HasProperty(propertyName) ? ancestor->GetProperty(propertyName)
                                                 : boost::shared_ptr<ICIMPropertyDecl>();
    if (own->layout)
      return own->FindProperty(propertyName);
    if (boost::shared_ptr<TCIMPropertyDecl> declared = own->localProperties.Find(propertyName))
      return declared;
    ancestor = own->superClass.get();
  }
  return boost::shared_ptr<ICIMPropertyDecl>();
}

boost::shared_ptr<ICIMMethod> TCIMClass::FindInheritedMethod(const std::string &methodName) const {
  for (ICIMClass *ancestor = superClass.get(); ancestor;) {
    auto *own = dynamic_cast<TCIMClass *>(ancestor);
    if (!own)
      return ancestor->HasMethod(methodName) ? ancestor->GetMethod(methodName)
                                             : boost::shared_ptr<ICIMMethod>();
    if (own->committed)
      return own->FindMethod(methodName);
    if (boost::shared_ptr<TCIMMethod> declared = own->localMethods.Find(methodName))
      return declared;
    ancestor = own->superClass.get();
  }
  return boost::shared_ptr<ICIMMethod>();
}

boost::shared_ptr<ICIMPropertyDecl> TCIMClass::FindProperty(const std::string &propertyName) {
  if (layout) {
    const auto *found = layout->members.Find(propertyName);
    return found ? found->item : boost::shared_ptr<ICIMPropertyDecl>();
  }
  if (boost::shared_ptr<TCIMPropertyDecl> own = localProperties.Find(propertyName))
    return own;
  return FindInherited(propertyName);
}

boost::shared_ptr<ICIMMethod> TCIMClass::FindMethod(const std::string &methodName) {
  if (committed) {
    const auto *found = methods->Find(methodName);
    return found ? found->item : boost::shared_ptr<ICIMMethod>();
  }
  if (boost::shared_ptr<TCIMMethod> own = localMethods.Find(methodName))
    return own;
  return FindInheritedMethod(methodName);
}

void TCIMClass::ThrowIfCommitted() const {
  if (committed)
    Fail(kORVStatusAlreadyCommitted);
}

boost::shared_ptr<ICIMNamespace> TCIMClass::GetNamespace(const TCIMOptions &) {
  return cimNamespace.lock();
}

void TCIMClass::Commit(const TCIMOptions &) {
  ThrowIfCommitted();
  // A flattened schema repeats every inherited member; the document drops
  // the qualifiers it marks propagated, so the KEY of a repeated key property
  // comes back here from the overridden declaration.
  for (const auto &property : localProperties.Items()) {
    property->SetOverridden(FindInherited(property->GetName()));
    property->PropagateQualifiers();
  }
  for (const auto &method : localMethods.Items()) {
    method->SetOverridden(FindInheritedMethod(method->GetName()));
    method->PropagateQualifiers();
  }
  qualifiers.Propagate(superClass ? superClass->GetQualifiers()
                                  : std::vector<boost::shared_ptr<ICIMQualifier>>());
  layout = BuildLayout();
  methods = BuildMethods();
  committed = true;
}

bool TCIMClass::IsCommitted(const TCIMOptions &) {
  return committed;
}

boost::shared_ptr<ICIMClass> TCIMClass::GetSuperClass(const TCIMOptions &) {
  return superClass;
}

const std::string &TCIMClass::GetName(const TCIMOptions &) {
  return name;
}

const std::string &TCIMClass::GetSuperClassName(const TCIMOptions &) {
  return superClassName;
}

bool TCIMClass::IsAssociation(const TCIMOptions &) {
  // Before Commit the superclass's qualifier is not propagated yet, so the
  // ancestors are asked in turn, in a loop however long the chain.
  for (TCIMClass *cls = this;;) {
    if (cls->qualifiers.IsTrue("ASSOCIATION"))
      return true;
    ICIMClass *super = cls->superClass.get();
    if (!super)
      return false;
    cls = dynamic_cast<TCIMClass *>(super);
    if (!cls)
      return super->IsAssociation(); // a class of another model answers for its chain
  }
}

bool TCIMClass::IsSubclassOf(const std::string &className, const TCIMOptions &) {
  if (EqualsNoCase(name, className))
    return true;
  for (ICIMClass *ancestor = superClass.get(); ancestor;
       ancestor = ancestor->GetSuperClass().get()) {
    // Each class holds its superclass, so the raw pointer outlives the
    // temporary that handed it out.
    if (EqualsNoCase(ancestor->GetName(), className))
      return true;
  }
  return false;
}

std::vector<boost::shared_ptr<ICIMPropertyDecl>> TCIMClass::GetKeyProperties(const TCIMOptions &) {
  boost::shared_ptr<const TPropertyLayout> current = GetLayout();
  std::vector<boost::shared_ptr<ICIMPropertyDecl>> keys;
  keys.reserve(current->keys.size());
  for (const auto &key : current->keys)
    keys.push_back(key.second);
  return keys;
}

std::vector<boost::shared_ptr<ICIMPropertyDecl>>
TCIMClass::GetLocalProperties(const TCIMOptions &) {
  return std::vector<boost::shared_ptr<ICIMPropertyDecl>>(localProperties.Items().begin(),
                                                          localProperties.Items().end());
}

bool TCIMClass::HasProperty(const std::string &propertyName, const TCIMOptions &) {
  return static_cast<bool>(FindProperty(propertyName));
}

void TCIMClass::RemoveProperty(const std::string &propertyName, const TCIMOptions &) {
  ThrowIfCommitted();
  if (!localProperties.Remove(propertyName))
    Fail(kORVStatusNoSuchProperty);
}

std::vector<boost::shared_ptr<ICIMMethod>> TCIMClass::GetLocalMethods(const TCIMOptions &) {
  return std::vector<boost::shared_ptr<ICIMMethod>>(localMethods.Items().begin(),
                                                    localMethods.Items().end());
}

bool TCIMClass::HasMethod(const std::string &methodName, const TCIMOptions &) {
  return static_cast<bool>(FindMethod(methodName));
}

std::vector<std::string> TCIMClass::GetDerivation(const TCIMOptions &) {
  std::vector<std::string> derivation{name};
  for (ICIMClass *ancestor = superClass.get(); ancestor; ancestor = ancestor->GetSuperClass().get())
    derivation.push_back(ancestor->GetName());
  return derivation;
}

boost::shared_ptr<ICIMPropertyDecl> TCIMClass::AddProperty(const std::string &propertyName,
                                                           TCIMValue value, const TCIMOptions &) {
  ThrowIfCommitted();
  if (propertyName.empty())
    Fail(kORVStatusInvalidArgument);
  if (localProperties.Contains(propertyName))
    Fail(kORVStatusAlreadyExists);
  boost::shared_ptr<TCIMPropertyDecl> property(
      new TCIMPropertyDecl(propertyName, name, std::move(value), FindInherited(propertyName)));
  localProperties.Add(property);
  return property;
}

boost::shared_ptr<ICIMPropertyDecl> TCIMClass::GetProperty(const std::string &propertyName,
                                                           const TCIMOptions &) {
  boost::shared_ptr<ICIMPropertyDecl> found = FindProperty(propertyName);
  if (!found)
    Fail(kORVStatusNoSuchProperty);
  return found;
}

std::vector<boost::shared_ptr<ICIMPropertyDecl>> TCIMClass::GetProperties(const TCIMOptions &) {
  return GetLayout()->members.Ordered();
}

boost::shared_ptr<ICIMMethod> TCIMClass::GetMethod(const std::string &methodName,
                                                   const TCIMOptions &) {
  boost::shared_ptr<ICIMMethod> found = FindMethod(methodName);
  if (!found)
    Fail(kORVStatusNoSuchMethod);
  return found;
}

std::vector<boost::shared_ptr<ICIMMethod>> TCIMClass::GetMethods(const TCIMOptions &) {
  return (committed ? methods : BuildMethods())->Ordered();
}

std::vector<boost::shared_ptr<ICIMInstance>> TCIMClass::GetInstances(const TCIMOptions &) {
  // A class deleted from its namespace had no instances when it went.
  boost::shared_ptr<ICIMNamespace> ns = cimNamespace.lock();
  if (!ns || !ns->HasClass(name) || ns->GetClass(name).get() != this)
    return std::vector<boost::shared_ptr<ICIMInstance>>();
  return ns->GetInstances(name, false);
}

boost::shared_ptr<ICIMInstance> TCIMClass::CreateInstance(const TCIMOptions &) {
  return boost::shared_ptr<ICIMInstance>(
      new TCIMInstance(shared_from_this(), cimNamespace, GetLayout()));
}

void TCIMClass::RemoveMethod(const std::string &methodName, const TCIMOptions &) {
  ThrowIfCommitted();
  if (!localMethods.Remove(methodName))
    Fail(kORVStatusNoSuchMethod);
}

boost::shared_ptr<ICIMMethod> TCIMClass::AddMethod(const std::string &methodName,
                                                   TCIMType returnType, const TCIMOptions &) {
  ThrowIfCommitted();
  if (methodName.empty())
    Fail(kORVStatusInvalidArgument);
  if (localMethods.Contains(methodName))
    Fail(kORVStatusAlreadyExists);
  boost::shared_ptr<TCIMMethod> method(
      new TCIMMethod(methodName, returnType, name, FindInheritedMethod(methodName)));
  localMethods.Add(method);
  return method;
}

std::string TCIMClass::ToMOF(const TCIMOptions &options) {
  // Left out with a class whose name cannot be written: its subclasses,
  // which name it as their superclass.
  if (!MofNamesValid("class", name,
                     superClassName.empty() ? std::vector<const std::string *>()
                                            : std::vector<const std::string *>{&superClassName}))
    return std::string();
  std::string text = MofQualifierPrefix(qualifiers.Own(), options);
  if (!text.empty())
    text.back() = '\n'; // the class's qualifiers stand on a line of their own
  text += "class " + name;
  if (!superClassName.empty())
    text += " : " + superClassName;
  text += " {\n";
  for (const auto &property : localProperties.Items())
    AppendMember(text, property->ToMOF(options));
  for (const auto &method : localMethods.Items())
    AppendMember(text, method->ToMOF(options));
  return text + "};";
}

} // namespace NVRNORV20
