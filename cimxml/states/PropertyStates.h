// Parse states of the three property elements: the declaration variants
// inside a class and the value variants inside an instance.
#ifndef ORV_CIMXML_STATES_PROPERTYSTATES_H
#define ORV_CIMXML_STATES_PROPERTYSTATES_H

#include "cimxml/CIMXMLParser.h"

#include <boost/shared_ptr.hpp>

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

namespace NVRNORV20 {

/// What the start tag of a property or parameter element says about it.
/// Each kind reads its own attributes: TYPE (scalar and array), ARRAYSIZE
/// (array), REFERENCECLASS (reference); NAME, CLASSORIGIN and PROPAGATED
/// for all. CLASSORIGIN and PROPAGATED are kept but reach no object.
class TPropertyAttributes {
public:
  enum class EKind { kScalar, kArray, kReference };

  explicit TPropertyAttributes(EKind propertyKind) : kind(propertyKind) {}

  /// Stores the attribute if this kind reads it; false otherwise. An
  /// unknown TYPE throws from the object model.
  bool Read(TCIMXMLParser &parser, TXmlParser::TAttributes::iterator &attribute);
  /// The type as the element declares it: TYPE, TYPE with the array flag,
  /// or the reference type.
  TCIMType ElementType() const;
  /// An empty value of ElementType; an array's count is ARRAYSIZE, and a
  /// reference points to REFERENCECLASS when ns holds that class.
  TCIMValue EmptyValue(ICIMNamespace &ns) const;

  EKind kind;
  std::string name;
  TCIMType type;
  unsigned arraySize = 0;
  std::string referenceClass;
  std::string classOrigin;
  bool propagated = false;
};

/// Points a reference value to ns's class of that name. A name that ns
/// does not hold leaves the value without a class; any other failure of the
/// look-up throws.
void AttachReferencedClass(ICIMNamespace &ns, const std::string &className, TCIMValue &value);

/// "property" in a class: declares the property at its start tag, so that
/// its qualifiers attach to a live declaration, and gives it its default
/// value at the end tag: the value child's, or an empty one of the element's
/// type. Children: "qualifier" and "value" in any order and number (the last
/// value wins). The base of the array and reference declarations.
class TCIMXMLParser::TStatePropertyDecl : public TCIMXMLParser::TParseState {
public:
  explicit TStatePropertyDecl(boost::shared_ptr<ICIMClass> owner)
      : TStatePropertyDecl(std::move(owner), TPropertyAttributes::EKind::kScalar) {}

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    TAttributes &attributes) override;
  /// Without a class (its start tag failed) it throws, and so do its
  /// qualifiers: the state's children and end tag still arrive.
  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override;
  void ElementStart(TCIMXMLParser &parser, TAttributes &attributes) override;

protected:
  TStatePropertyDecl(boost::shared_ptr<ICIMClass> owner, TPropertyAttributes::EKind kind)
      : cls(std::move(owner)), property(kind) {}

  static TParseStatePtr MakeQualifier(TCIMXMLParser &parser, TParseState &parent);

  boost::shared_ptr<ICIMClass> cls;
  TPropertyAttributes property;
  boost::shared_ptr<ICIMPropertyDecl> declaration;
  TCIMValue defaultValue;
  bool valueSeen = false;

private:
  static TParseStatePtr MakeValue(TCIMXMLParser &parser, TParseState &parent);
};

/// "property.array" in a class. Without "value.array" the default is an
/// empty array of the element's type with ARRAYSIZE as its count.
class TCIMXMLParser::TStatePropertyArrayDecl : public TCIMXMLParser::TStatePropertyDecl {
public:
  explicit TStatePropertyArrayDecl(boost::shared_ptr<ICIMClass> owner)
      : TStatePropertyDecl(std::move(owner), TPropertyAttributes::EKind::kArray) {}

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    TAttributes &attributes) override;

private:
  static TParseStatePtr MakeValueArray(TCIMXMLParser &parser, TParseState &parent);
};

/// "property.reference" in a class. Without a value child the default is
/// an empty reference pointing to REFERENCECLASS, or to no class when the
/// namespace does not hold it.
class TCIMXMLParser::TStatePropertyReferenceDecl : public TCIMXMLParser::TStatePropertyDecl {
public:
  explicit TStatePropertyReferenceDecl(boost::shared_ptr<ICIMClass> owner)
      : TStatePropertyDecl(std::move(owner), TPropertyAttributes::EKind::kReference) {}

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    TAttributes &attributes) override;

private:
  static TParseStatePtr MakeValueReference(TCIMXMLParser &parser, TParseState &parent);
};

/// "property" in an instance: sets the instance's property at the end tag.
/// Its type must be the one the class declares ("Property type != property
/// declaration type"), unless the parser is in QN402 mode, where a value of
/// another type is left unset instead. A value child is read as the declared
/// type. Qualifiers are not attached. Any other child ends the property and
/// is handed to the instance as its next child; the element is then
/// rejected (status 36), so that its own end tag is not expected. The base
/// of the array and reference variants.
class TCIMXMLParser::TStateProperty : public TCIMXMLParser::TParseState {
public:
  explicit TStateProperty(boost::shared_ptr<ICIMInstance> owner)
      : TStateProperty(std::move(owner), TPropertyAttributes::EKind::kScalar) {}

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    TAttributes &attributes) override;
  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override;
  void ElementStart(TCIMXMLParser &parser, TAttributes &attributes) override;

  /// Qualifiers of instances and of their properties are not attached: no
  /// state is made, and the qualifier's attributes go to the start handler
  /// of the state on top, which reads them as its own.
  static TParseStatePtr MakeNoState(TCIMXMLParser &parser, TParseState &parent);

protected:
  TStateProperty(boost::shared_ptr<ICIMInstance> owner, TPropertyAttributes::EKind kind)
      : instance(std::move(owner)), property(kind) {}

  /// Accepts the children of the table; hands any other over to the
  /// instance (see the class comment).
  template <std::size_t N>
  void AcceptOrHandOver(TCIMXMLParser &parser, const std::string &name, TAttributes &attributes,
                        const TChildRow (&rows)[N]) {
    if (phase >= 0 && phase <= kLastPhase && !Accepts(rows, N, name))
      HandOver(parser, name, attributes);
    AcceptChild(parser, name, attributes, rows, kLastPhase);
  }
  /// The type of the property as the instance's class declares it. Looked
  /// up once per element: the class and the name stay for the element.
  TCIMType DeclaredType() const;

  static constexpr std::int32_t kLastPhase = 1;

  boost::shared_ptr<ICIMInstance> instance;
  TPropertyAttributes property;
  TCIMValue value;
  bool valueSeen = false;

private:
  mutable TCIMType declaredType;
  mutable bool declaredTypeKnown = false;

  static TParseStatePtr MakeValue(TCIMXMLParser &parser, TParseState &parent);
  bool Accepts(const TChildRow *rows, std::size_t rowCount, const std::string &name) const;
  [[noreturn]] void HandOver(TCIMXMLParser &parser, const std::string &name,
                             TAttributes &attributes);
};

/// "property.array" in an instance; its "value.array" child is read as the
/// declared type's elements.
class TCIMXMLParser::TStatePropertyArray : public TCIMXMLParser::TStateProperty {
public:
  explicit TStatePropertyArray(boost::shared_ptr<ICIMInstance> owner)
      : TStateProperty(std::move(owner), TPropertyAttributes::EKind::kArray) {}

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    TAttributes &attributes) override;

private:
  static TParseStatePtr MakeValueArray(TCIMXMLParser &parser, TParseState &parent);
};

/// "property.reference" in an instance.
class TCIMXMLParser::TStatePropertyReference : public TCIMXMLParser::TStateProperty {
public:
  explicit TStatePropertyReference(boost::shared_ptr<ICIMInstance> owner)
      : TStateProperty(std::move(owner), TPropertyAttributes::EKind::kReference) {}

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    TAttributes &attributes) override;

private:
  static TParseStatePtr MakeValueReference(TCIMXMLParser &parser, TParseState &parent);
};

} // namespace NVRNORV20

#endif
