#include "core/CIMQualifier.h"

#include "core/Mof.h"
#include "core_api/Logger.h"
#include "core_api/ORVStatusCode.h"

#include <boost/make_shared.hpp>

namespace NVRNORV20 {

TCIMQualifierDecl::TCIMQualifierDecl(std::string declName, const TCIMValue &defaultVal,
                                     std::uint32_t declScope, std::uint32_t declFlavor)
    : name(std::move(declName)), defaultValue(defaultVal),
      // A null array default carries the declared size; an array default
      // with elements leaves it unknown.
      arraySize(defaultVal.IsArray() && defaultVal.IsNull() ? defaultVal.GetCount() : 0),
      scope(declScope), flavor(declFlavor) {}

const std::string &TCIMQualifierDecl::GetName(const TCIMOptions &) {
  return name;
}

void TCIMQualifierDecl::Commit(const TCIMOptions &) {
  if (committed)
    throw TORVException(TORVStatusCode(kORVStatusAlreadyCommitted));
  committed = true;
}

std::uint32_t TCIMQualifierDecl::GetScope(const TCIMOptions &) {
  return scope;
}
std::uint32_t TCIMQualifierDecl::GetFlavor(const TCIMOptions &) {
  return flavor;
}
TCIMValue TCIMQualifierDecl::GetDefaultValue(const TCIMOptions &) {
  return defaultValue;
}
TCIMType TCIMQualifierDecl::GetType(const TCIMOptions &) {
  return defaultValue.GetType();
}
bool TCIMQualifierDecl::IsArray(const TCIMOptions &) {
  return defaultValue.IsArray();
}
unsigned int TCIMQualifierDecl::GetArraySize(const TCIMOptions &) {
  return arraySize;
}
bool TCIMQualifierDecl::IsCommitted(const TCIMOptions &) {
  return committed;
}

std::string TCIMQualifierDecl::ToMOF(const TCIMOptions &) {
  if (!MofNamesValid("qualifier declaration", name))
    return std::string();
  const TCIMType type = defaultValue.GetType();
  std::string text =
      "Qualifier " + name + " : " + MofTypeName(type) + MofArraySuffix(type, arraySize);
  if (!defaultValue.IsNull())
    text += " = " + defaultValue.ToMOF();
  const std::string scopeText = MofScope(scope);
  if (!scopeText.empty())
    text += ", " + scopeText;
  return text + ", " + MofFlavor(flavor) + ";";
}

boost::shared_ptr<TCIMQualifier>
TCIMQualifier::Make(boost::shared_ptr<ICIMQualifierDecl> declaration, const TCIMValue &value,
                    std::uint32_t flavor) {
  if (!declaration)
    throw TORVException(TORVStatusCode(kORVStatusNullObject));
  TCIMValue fitted = FitValue(value, declaration->GetType());
  // The name is the declaration's: the qualifier keeps no copy of it.
  const std::string &name = declaration->GetName();
  return boost::make_shared<TCIMQualifier>(name, std::move(declaration), std::move(fitted), flavor,
                                           false);
}

boost::shared_ptr<TCIMQualifier> TCIMQualifier::MakeAbsent(const std::string &name) {
  return boost::make_shared<TCIMQualifier>(name, boost::shared_ptr<ICIMQualifierDecl>(),
                                           TCIMValue(), ICIMQualifierDecl::kFlavorDefault, false);
}

boost::shared_ptr<TCIMQualifier> TCIMQualifier::MakePropagated(ICIMQualifier &inherited) {
  return boost::make_shared<TCIMQualifier>(inherited.GetName(), inherited.GetDeclaration(),
                                           inherited.GetValue(), inherited.GetFlavor(), true);
}

TCIMQualifier::TCIMQualifier(const std::string &qualifierName,
                             boost::shared_ptr<ICIMQualifierDecl> qualifierDecl,
                             TCIMValue qualifierValue, std::uint32_t qualifierFlavor,
                             bool isPropagated)
    : declaration(std::move(qualifierDecl)), value(std::move(qualifierValue)),
      flavor(qualifierFlavor), propagated(isPropagated) {
  if (!declaration || declaration->GetName() != qualifierName)
    ownName = std::make_unique<const std::string>(qualifierName);
}

TCIMValue TCIMQualifier::FitValue(const TCIMValue &given, TCIMType declared) {
  const TCIMType type = given.GetType();
  if (type == kCIMTypeNone)
    return declared == kCIMTypeNone ? TCIMValue() : TCIMValue(declared, 0);
  if (declared != kCIMTypeNone && type.GetElementType() != declared.GetElementType())
    throw TORVException(TORVStatusCode(kORVStatusTypeMismatch));
  return given;
}

const std::string &TCIMQualifier::GetName(const TCIMOptions &) {
  return ownName ? *ownName : declaration->GetName();
}

boost::shared_ptr<ICIMQualifierDecl> TCIMQualifier::GetDeclaration(const TCIMOptions &) {
  return declaration;
}

std::uint32_t TCIMQualifier::GetFlavor(const TCIMOptions &) {
  return flavor;
}
void TCIMQualifier::SetFlavor(std::uint32_t newFlavor, const TCIMOptions &) {
  flavor = newFlavor;
}

TCIMType TCIMQualifier::GetType(const TCIMOptions &) {
  if (value.GetType() != kCIMTypeNone || !declaration)
    return value.GetType();
  return declaration->GetType();
}

bool TCIMQualifier::IsPropagated(const TCIMOptions &) {
  return propagated;
}

void TCIMQualifier::SetValue(const TCIMValue &newValue, const TCIMOptions &) {
  value = FitValue(newValue, declaration ? declaration->GetType() : TCIMType());
}

std::string TCIMQualifier::ToMOF(const TCIMOptions &options) {
  if (!MofNamesValid("qualifier", GetName()))
    return std::string();
  std::string text;
  if (value.GetType() == kCIMTypeBoolean && !value.IsNull() && value.GetBoolean())
    text = GetName();
  // An array value is written as an array initializer, which MOF places
  // after the name without parentheses.
  else if (value.IsArray() && !value.IsNull())
    text = GetName() + " " + value.ToMOF();
  else
    text = GetName() + "(" + value.ToMOF() + ")";
  return MofWritesFlavors(options) ? text + FlavorsMOF() : text;
}

std::string TCIMQualifier::FlavorsMOF() {
  if (!declaration)
    return std::string();
  const std::uint32_t declared = declaration->GetFlavor();
  const std::uint32_t added = flavor & ~declared;
  const std::uint32_t removed = declared & ~flavor;
  std::string text;
  const auto write = [&text](bool condition, const char *keyword) {
    if (condition)
      text += std::string(text.empty() ? " :" : "") + " " + keyword;
  };
  write((added & ICIMQualifierDecl::kFlavorOverridable) != 0, "EnableOverride");
  write((removed & ICIMQualifierDecl::kFlavorOverridable) != 0, "DisableOverride");
  write((added & ICIMQualifierDecl::kFlavorToSubclass) != 0, "ToSubclass");
  write((removed & ICIMQualifierDecl::kFlavorToSubclass) != 0, "Restricted");
  write((added & ICIMQualifierDecl::kFlavorTranslatable) != 0, "Translatable");
  if ((removed & ICIMQualifierDecl::kFlavorTranslatable) != 0)
    TRootObject::Log(3, "MOF: qualifier " + GetName() +
                            " is not translatable, though its declaration is: MOF has no flavor "
                            "that says so");
  return text;
}

TCIMValue TCIMQualifier::GetValue(const TCIMOptions &) {
  return value;
}

namespace {

/// The name of each qualifier of a list, for TNamePositions.
struct TQualifierNames {
  const std::vector<boost::shared_ptr<ICIMQualifier>> &list;
  const std::string &operator()(std::size_t i) const { return list[i]->GetName(); }
};

} // namespace

boost::shared_ptr<ICIMQualifier> TCIMQualifierList::Scan(const TList &list,
                                                         const TNamePositions &positions,
                                                         const std::string &name) {
  const std::size_t position = positions.Find(name, list.size(), TQualifierNames{list});
  return position == list.size() ? boost::shared_ptr<ICIMQualifier>() : list[position];
}

void TCIMQualifierList::Append(TList &list, TNamePositions &positions,
                               boost::shared_ptr<ICIMQualifier> qualifier) {
  list.push_back(std::move(qualifier));
  positions.Appended(list.size(), TQualifierNames{list});
}

void TCIMQualifierList::Add(boost::shared_ptr<ICIMQualifier> qualifier) {
  if (!qualifier)
    throw TORVException(TORVStatusCode(kORVStatusNullObject));
  const std::size_t position =
      ownPositions.Find(qualifier->GetName(), own.size(), TQualifierNames{own});
  if (position != own.size()) {
    own[position] = std::move(qualifier);
    return;
  }
  Append(own, ownPositions, std::move(qualifier));
}

std::vector<boost::shared_ptr<ICIMQualifier>> TCIMQualifierList::All() const {
  std::vector<boost::shared_ptr<ICIMQualifier>> all;
  all.reserve(own.size() + propagated.size());
  all.insert(all.end(), own.begin(), own.end());
  all.insert(all.end(), propagated.begin(), propagated.end());
  return all;
}

boost::shared_ptr<ICIMQualifier> TCIMQualifierList::Find(const std::string &name) const {
  boost::shared_ptr<ICIMQualifier> found = Scan(own, ownPositions, name);
  return found ? found : Scan(propagated, propagatedPositions, name);
}

bool TCIMQualifierList::Has(const std::string &name) const {
  return static_cast<bool>(Find(name));
}

boost::shared_ptr<ICIMQualifier> TCIMQualifierList::Get(const std::string &name) const {
  boost::shared_ptr<ICIMQualifier> found = Find(name);
  return found ? found : TCIMQualifier::MakeAbsent(name);
}

bool TCIMQualifierList::IsTrue(const std::string &name) const {
  boost::shared_ptr<ICIMQualifier> found = Find(name);
  if (!found)
    return false;
  const TCIMValue value = found->GetValue();
  return !value.IsNull() && static_cast<bool>(value);
}

void TCIMQualifierList::Propagate(const std::vector<boost::shared_ptr<ICIMQualifier>> &inherited) {
  propagated.clear();
  propagatedPositions.Clear();
  for (const auto &qualifier : inherited) {
    if ((qualifier->GetFlavor() & ICIMQualifierDecl::kFlavorToSubclass) == 0)
      continue;
    const std::string &name = qualifier->GetName();
    if (Scan(own, ownPositions, name) || Scan(propagated, propagatedPositions, name))
      continue;
    Append(propagated, propagatedPositions, TCIMQualifier::MakePropagated(*qualifier));
  }
}

} // namespace NVRNORV20
