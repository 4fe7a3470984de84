// Parse states of the three property elements: the declaration variants
// inside a class and the value variants inside an instance.
#ifndef ORV_CIMXML_STATES_PROPERTYSTATES_H
#define ORV_CIMXML_STATES_PROPERTYSTATES_H

#include "cimxml/CIMXMLParser.h"

#include <boost/shared_ptr.hpp>

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
  bool Read(TCIMXMLParser &parser, TXmlAttributeList::TIterator attribute);
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
  /// The EmbeddedObject attribute ("object", "instance"); read in both
  /// grammars, used by the full one.
  std::string embeddedObject;
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
  /// Declares a property of the parent's class.
  template <class TParent>
  TStatePropertyDecl(TCIMXMLParser &, TParent &parent)
      : TStatePropertyDecl(parent.cls, TPropertyAttributes::EKind::kScalar) {}

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
  /// Without a class (its start tag failed) it throws, and so do its
  /// qualifiers: the state's children and end tag still arrive.
  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override;
  void ElementStart(TCIMXMLParser &parser, const TAttributeList &attributes) override;

  // What the children write into: qualifiers and the default value.
  boost::shared_ptr<ICIMQualifiedObject> QualifiedObject() const { return declaration; }
  /// The superclass's property of the same name; empty when there is none.
  /// Looked up at the first qualifier, kept for the others.
  boost::shared_ptr<ICIMQualifiedObject> InheritedObject() const;
  TCIMType ValueType() const { return property.type; }
  TCIMType ElementType() const { return property.type; }
  unsigned ArraySize() const { return property.arraySize; }
  TCIMValue value;
  bool valueSeen = false;

protected:
  TStatePropertyDecl(boost::shared_ptr<ICIMClass> owner, TPropertyAttributes::EKind kind)
      : cls(std::move(owner)), property(kind) {}

  boost::shared_ptr<ICIMClass> cls;
  TPropertyAttributes property;
  boost::shared_ptr<ICIMPropertyDecl> declaration;

private:
  mutable boost::shared_ptr<ICIMQualifiedObject> inherited;
  mutable bool inheritedFound = false;
};

/// "property.array" in a class. Without "value.array" the default is an
/// empty array of the element's type with ARRAYSIZE as its count.
class TCIMXMLParser::TStatePropertyArrayDecl : public TCIMXMLParser::TStatePropertyDecl {
public:
  template <class TParent>
  TStatePropertyArrayDecl(TCIMXMLParser &, TParent &parent)
      : TStatePropertyDecl(parent.cls, TPropertyAttributes::EKind::kArray) {}

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
};

/// "property.reference" in a class. Without a value child the default is
/// an empty reference pointing to REFERENCECLASS, or to no class when the
/// namespace does not hold it.
class TCIMXMLParser::TStatePropertyReferenceDecl : public TCIMXMLParser::TStatePropertyDecl {
public:
  template <class TParent>
  TStatePropertyReferenceDecl(TCIMXMLParser &, TParent &parent)
      : TStatePropertyDecl(parent.cls, TPropertyAttributes::EKind::kReference) {}

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
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
  /// Sets a property of the parent's instance.
  template <class TParent>
  TStateProperty(TCIMXMLParser &, TParent &parent)
      : TStateProperty(parent.instance, TPropertyAttributes::EKind::kScalar) {}

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override;
  void ElementStart(TCIMXMLParser &parser, const TAttributeList &attributes) override;

  // What the value children write into; they are read as the declared type.
  TCIMType ValueType() const { return DeclaredType(); }
  TCIMType ElementType() const { return DeclaredType().GetElementType(); }
  unsigned ArraySize() const { return property.arraySize; }
  TCIMValue value;
  bool valueSeen = false;

protected:
  TStateProperty(const boost::shared_ptr<ICIMInstance> &owner, TPropertyAttributes::EKind kind)
      : instance(owner), property(kind) {}

  /// Ends the property and hands the child to the instance (see the class
  /// comment).
  [[noreturn]] void UnexpectedChild(TCIMXMLParser &parser, const std::string &name,
                                    const TAttributeList &attributes) override;
  /// The type of the property as the instance's class declares it. Looked
  /// up once per element: the class and the name stay for the element.
  TCIMType DeclaredType() const;
  /// The same, through the parser's memory of the class's declarations.
  TCIMType DeclaredType(TCIMXMLParser &parser) const;
  /// Whether the instance's class declares the property's values embedded
  /// objects.
  bool DeclaredEmbedded(TCIMXMLParser &parser) const;

  /// The instance state's own pointer, which outlives the property: the
  /// property takes no share of the instance.
  const boost::shared_ptr<ICIMInstance> &instance;
  TPropertyAttributes property;

private:
  mutable TCIMType declaredType;
  mutable bool declaredTypeKnown = false;
};

/// "property.array" in an instance; its "value.array" child is read as the
/// declared type's elements.
class TCIMXMLParser::TStatePropertyArray : public TCIMXMLParser::TStateProperty {
public:
  template <class TParent>
  TStatePropertyArray(TCIMXMLParser &, TParent &parent)
      : TStateProperty(parent.instance, TPropertyAttributes::EKind::kArray) {}

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
};

/// "property.reference" in an instance.
class TCIMXMLParser::TStatePropertyReference : public TCIMXMLParser::TStateProperty {
public:
  template <class TParent>
  TStatePropertyReference(TCIMXMLParser &, TParent &parent)
      : TStateProperty(parent.instance, TPropertyAttributes::EKind::kReference) {}

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
};

} // namespace NVRNORV20

#endif
