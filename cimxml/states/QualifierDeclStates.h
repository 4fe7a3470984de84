// Parse states of qualifier declarations and their scopes.
#ifndef ORV_CIMXML_STATES_QUALIFIERDECLSTATES_H
#define ORV_CIMXML_STATES_QUALIFIERDECLSTATES_H

#include "cimxml/CIMXMLParser.h"

#include <cstdint>
#include <string>

namespace NVRNORV20 {

/// "qualifier.declaration": declares one qualifier in the namespace at its
/// end tag. "scope" must be the first child ("Expected SCOPE element"
/// otherwise), then "value" or "value.array" in any number (the last one
/// wins). A declaration of a name that the namespace already holds is
/// skipped without a message.
class TCIMXMLParser::TStateQualifierDeclaration : public TCIMXMLParser::TParseState {
public:
  /// Unlike the CIM-XML document type, the scope is required first.
  enum EPhase : std::int32_t { kScope, kValue, kFullDone };

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
  /// "Incompatible attributes" when ISARRAY, ARRAYSIZE and the kind of the
  /// value child disagree; an array value needs a non-zero ARRAYSIZE.
  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override;
  /// An unknown TYPE throws from the object model; the attributes after it
  /// in name order are then not read.
  void ElementStart(TCIMXMLParser &parser, const TAttributeList &attributes) override;

  // What the children write into: the scope and the default value.
  std::uint32_t scope = 0;
  TCIMType ValueType() const { return type; }
  TCIMType ElementType() const { return type; }
  unsigned ArraySize() const { return arraySize; }
  TCIMValue value;
  bool valueSeen = false;

private:
  /// The ISARRAY, ARRAYSIZE and value-kind checks.
  bool AttributesAgree() const;
  /// The full grammar's end: the declaration goes where the parse puts new
  /// objects (a name already declared there is returned from the scratch
  /// namespace instead) and is handed over.
  void EndFull(TCIMXMLParser &parser);

  std::string qualifierName;
  TCIMType type;
  bool isArray = false;
  bool isArrayGiven = false;
  unsigned arraySize = 0;
  ICIMQualifierDecl::EFlavor flavor = ICIMQualifierDecl::kFlavorDefault;
};

/// "scope": each of the attributes class, association, property,
/// reference, method and parameter adds its scope bit to the declaration,
/// whatever its value ("false" included). Other attributes are ignored.
class TCIMXMLParser::TStateScope : public TCIMXMLParser::TParseState {
public:
  TStateScope(TCIMXMLParser &, TStateQualifierDeclaration &owner) : declaration(owner) {}

  void ElementStart(TCIMXMLParser &parser, const TAttributeList &attributes) override;

private:
  TStateQualifierDeclaration &declaration;
};

} // namespace NVRNORV20

#endif
