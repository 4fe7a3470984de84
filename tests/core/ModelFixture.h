// A namespace with the qualifier declarations that the object-model tests
// use, and short helpers to declare members the way the loader does.
#ifndef ORV_TESTS_CORE_MODELFIXTURE_H
#define ORV_TESTS_CORE_MODELFIXTURE_H

#include "core_api/CIMInterfaces.h"
#include "core_api/ORVStatusCode.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace orvtest {

using namespace NVRNORV20;

class TModelTest : public ::testing::Test {
protected:
  using EFlavor = ICIMQualifierDecl::EFlavor;

  void SetUp() override {
    ns = CreateCIMNamespace("root/test");
    Declare("Key", TCIMValue(false),
            ICIMQualifierDecl::kScopeProperty | ICIMQualifierDecl::kScopeReference,
            ICIMQualifierDecl::kFlavorToSubclass);
    Declare("Association", TCIMValue(false), ICIMQualifierDecl::kScopeAssociation,
            ICIMQualifierDecl::kFlavorToSubclass);
    Declare("Abstract", TCIMValue(false),
            ICIMQualifierDecl::kScopeClass | ICIMQualifierDecl::kScopeAssociation,
            ICIMQualifierDecl::kFlavorNone);
    Declare("Description", TCIMValue(TCIMType(kCIMTypeString), 0), ICIMQualifierDecl::kScopeAny,
            ICIMQualifierDecl::kFlavorDefault | ICIMQualifierDecl::kFlavorTranslatable);
    // As CIM-XML declares an array qualifier without a default: the array
    // flag is lost, the declaration looks scalar.
    Declare("ValueMap", TCIMValue(TCIMType(kCIMTypeString), 0),
            ICIMQualifierDecl::kScopeProperty | ICIMQualifierDecl::kScopeMethod,
            ICIMQualifierDecl::kFlavorDefault);
    Declare("MaxLen", TCIMValue(TCIMType(kCIMTypeUint32), 0), ICIMQualifierDecl::kScopeProperty,
            ICIMQualifierDecl::kFlavorDefault);
    Declare("In", TCIMValue(true), ICIMQualifierDecl::kScopeParameter,
            ICIMQualifierDecl::kFlavorToSubclass);
  }

  void Declare(const std::string &name, const TCIMValue &value, std::uint32_t scope,
               std::uint32_t flavor) {
    ns->CreateQualifierDecl(name, value, scope, flavor)->Commit();
  }

  /// Creates and attaches a qualifier as the loader does.
  static void Qualify(ICIMQualifiedObject &object, ICIMNamespace &space, const std::string &name,
                      const TCIMValue &value,
                      std::uint32_t flavor = ICIMQualifierDecl::kFlavorDefault) {
    object.AddQualifier(object.CreateQualifier(space.GetQualifierDecl(name), value, flavor));
  }
  void Qualify(ICIMQualifiedObject &object, const std::string &name, const TCIMValue &value,
               std::uint32_t flavor = ICIMQualifierDecl::kFlavorDefault) {
    Qualify(object, *ns, name, value, flavor);
  }

  /// A property declared as the loader declares it: untyped at first, the
  /// default (and with it the type) set at its end.
  static boost::shared_ptr<ICIMPropertyDecl> Property(ICIMClass &cls, const std::string &name,
                                                      const TCIMValue &defaultValue) {
    boost::shared_ptr<ICIMPropertyDecl> property = cls.AddProperty(name, TCIMValue());
    property->SetValue(defaultValue);
    property->Commit();
    return property;
  }

  boost::shared_ptr<ICIMPropertyDecl> KeyProperty(ICIMClass &cls, const std::string &name,
                                                  const TCIMValue &defaultValue) {
    boost::shared_ptr<ICIMPropertyDecl> property = cls.AddProperty(name, TCIMValue());
    Qualify(*property, "Key", TCIMValue(true), ICIMQualifierDecl::kFlavorToSubclass);
    property->SetValue(defaultValue);
    property->Commit();
    return property;
  }

  boost::shared_ptr<ICIMClass> Class(const std::string &name, const std::string &superName = "") {
    return ns->CreateClass(name, ns->GetClass(superName));
  }

  static std::vector<std::string>
  Names(const std::vector<boost::shared_ptr<ICIMPropertyDecl>> &list) {
    std::vector<std::string> names;
    for (const auto &item : list)
      names.push_back(item->GetName());
    return names;
  }

  boost::shared_ptr<ICIMNamespace> ns;
};

/// The status code that the call throws; kORVStatusOK when it does not throw.
inline EORVStatusCode StatusOf(const std::function<void()> &call) {
  try {
    call();
  } catch (const TORVException &ex) {
    return ex.GetStatusCode();
  }
  return kORVStatusOK;
}

inline TCIMValue Uint32(std::uint64_t value) {
  return TCIMValue::MakeUnsigned(kCIMTypeUint32, value);
}

inline TCIMValue StringArray(const std::vector<std::string> &texts) {
  std::vector<TCIMValue> elements;
  for (const auto &text : texts)
    elements.emplace_back(text);
  TCIMValue array;
  array.Set(TCIMType(kCIMTypeString), 0, elements);
  return array;
}

} // namespace orvtest

#endif
