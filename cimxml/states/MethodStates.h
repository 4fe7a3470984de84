// Parse states of methods and their parameters.
#ifndef ORV_CIMXML_STATES_METHODSTATES_H
#define ORV_CIMXML_STATES_METHODSTATES_H

#include "cimxml/CIMXMLParser.h"
#include "cimxml/states/PropertyStates.h"

#include <boost/shared_ptr.hpp>

#include <string>
#include <utility>

namespace NVRNORV20 {

/// "method": adds the method to the class at its start tag and commits it at
/// its end tag. Qualifiers and the four parameter kinds come in any order
/// and number.
class TCIMXMLParser::TStateMethod : public TCIMXMLParser::TParseState {
public:
  /// Adds a method to the parent's class.
  template <class TParent> TStateMethod(TCIMXMLParser &, TParent &parent) : cls(parent.cls) {}

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override;
  void ElementStart(TCIMXMLParser &parser, const TAttributeList &attributes) override;

  // What the children write into, and what the method overrides (full
  // grammar only).
  boost::shared_ptr<ICIMQualifiedObject> QualifiedObject() const { return method; }
  boost::shared_ptr<ICIMQualifiedObject> InheritedObject() const { return inheritedMethod; }
  boost::shared_ptr<ICIMMethod> method;
  boost::shared_ptr<ICIMMethod> inheritedMethod;

private:
  boost::shared_ptr<ICIMClass> cls;
  std::string methodName;
  TCIMType returnType;
  // Read in both grammars, used in the full one only.
  std::string classOrigin;
  bool propagated = false;
};

/// "parameter": adds the parameter to the method at its start tag and
/// commits it at its end tag. Children: "qualifier", "value", "value.array".
/// The default value is read but the object model keeps none for
/// parameters. The base of the other three parameter kinds, which share its
/// handlers as follows: an array parameter has the scalar one's children and
/// ends like a reference parameter; "parameter.refarray" is handled exactly
/// like "parameter.reference".
class TCIMXMLParser::TStateParameter : public TCIMXMLParser::TParseState {
public:
  /// Adds a parameter to the parent's method.
  template <class TParent>
  TStateParameter(TCIMXMLParser &, TParent &parent)
      : TStateParameter(parent, TPropertyAttributes::EKind::kScalar) {}

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override;
  /// A reference parameter is added with the reference type, the others
  /// with their TYPE. The classic grammar drops an array parameter's array
  /// flag; the full grammar keeps it, with ARRAYSIZE and REFERENCECLASS.
  void ElementStart(TCIMXMLParser &parser, const TAttributeList &attributes) override;

protected:
  TStateParameter(const TStateMethod &parent, TPropertyAttributes::EKind kind)
      : method(parent.method), inheritedMethod(parent.inheritedMethod), property(kind) {}

  /// The reference parameters' end: the default is an empty reference,
  /// pointing to REFERENCECLASS when the namespace holds it.
  void EndAsReference(TCIMXMLParser &parser);
  TCIMType ParameterType(bool full) const;

public:
  // What the children write into: qualifiers and the default value.
  boost::shared_ptr<ICIMQualifiedObject> QualifiedObject() const { return parameter; }
  /// The overridden method's parameter of the same name; empty when there
  /// is none. Looked up at the first qualifier, kept for the others.
  boost::shared_ptr<ICIMQualifiedObject> InheritedObject() const;
  TCIMType ValueType() const { return property.type; }
  // Only the classic grammar gives a parameter a value child.
  TCIMType ElementType() const { return ParameterType(false); }
  unsigned ArraySize() const { return property.arraySize; }
  TCIMValue value;
  bool valueSeen = false;

protected:
  boost::shared_ptr<ICIMMethod> method;
  boost::shared_ptr<ICIMMethod> inheritedMethod;
  boost::shared_ptr<ICIMParameter> parameter;
  TPropertyAttributes property;
  bool referenceArray = false;

private:
  void Finish(TCIMXMLParser &parser);

  mutable boost::shared_ptr<ICIMQualifiedObject> inherited;
  mutable bool inheritedFound = false;
};

/// "parameter.array": its own attributes, the children of "parameter", the
/// end of "parameter.reference" (with no reference class).
class TCIMXMLParser::TStateParameterArray : public TCIMXMLParser::TStateParameter {
public:
  template <class TParent>
  TStateParameterArray(TCIMXMLParser &, TParent &parent)
      : TStateParameter(parent, TPropertyAttributes::EKind::kArray) {}

  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override;
};

/// "parameter.reference": takes "qualifier" and an array default spelt
/// "value.aray"; "value.array" and "value.reference" are unexpected.
class TCIMXMLParser::TStateParameterReference : public TCIMXMLParser::TStateParameter {
public:
  template <class TParent>
  TStateParameterReference(TCIMXMLParser &, TParent &parent)
      : TStateParameter(parent, TPropertyAttributes::EKind::kReference) {}

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override;
};

/// "parameter.refarray": in the classic grammar a reference parameter whose
/// ARRAYSIZE is not read; in the full grammar an array of references.
class TCIMXMLParser::TStateParameterRefArray : public TCIMXMLParser::TStateParameterReference {
public:
  template <class TParent>
  TStateParameterRefArray(TCIMXMLParser &parser, TParent &parent)
      : TStateParameterReference(parser, parent) {
    referenceArray = true;
  }
};

} // namespace NVRNORV20

#endif
