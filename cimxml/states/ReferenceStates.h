// Parse states that build object paths of the object model: instance names
// with their key bindings and key values, and reference values. Key values
// are typed from the class definition that the namespace already holds,
// never from attributes of the document.
#ifndef ORV_CIMXML_STATES_REFERENCESTATES_H
#define ORV_CIMXML_STATES_REFERENCESTATES_H

#include "cimxml/CIMXMLParser.h"
#include "cimxml/states/StandaloneSink.h"

#include <boost/shared_ptr.hpp>

#include <cstddef>
#include <cstdint>
#include <string>

namespace NVRNORV20 {

/// "instancename": names a class (attribute "classname", looked up in the
/// namespace; an unknown name fails there) and gives its keys as one or more
/// key bindings, or one bare key value, or one reference, never a mixture:
/// a child out of that shape is "Unexpected element " + name. A bare key
/// value binds the class's first key property; a class without one is
/// "Class " + classname + " doesn't have any key properties". A reference
/// child replaces the whole target, class name included.
class TCIMXMLParser::TStateInstanceName : public TCIMXMLParser::TParseState {
public:
  enum EPhase : std::int32_t { kStart, kKeyBindings, kKeyValue, kReference };

  /// Fills the parent's instanceName.
  template <class TParent>
  TStateInstanceName(TCIMXMLParser &parser, TParent &parent)
      : instanceName(parent.instanceName), standalone(kStandsAlone<TParent> && IsFull(parser)) {}
  /// An instance name of a named instance, or of a reference value, lies in
  /// the parser's namespace.
  TStateInstanceName(TCIMXMLParser &parser, TStateValueNamedInstance &parent);
  TStateInstanceName(TCIMXMLParser &parser, TStateValueReference &parent);

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override;
  void ElementStart(TCIMXMLParser &parser, const TAttributeList &attributes) override;

  // What the children write into.
  TCIMReference &instanceName;
  /// The class named by the "classname" attribute; in the full grammar
  /// empty when no namespace holds it, and the keys are typed by the
  /// document.
  boost::shared_ptr<ICIMClass> keyClass;
  std::string keyValueText;
  /// A key value's VALUETYPE and TYPE, read by the full grammar only.
  std::string keyValueType;
  TCIMType keyType;
  TCIMValue value;
  bool valueSeen = false;

private:
  explicit TStateInstanceName(TCIMReference &target) : instanceName(target) {}
  /// Binds the bare key value to the class's first key property.
  void AddFirstKey(TCIMXMLParser &parser);
  /// The full grammar's end: a bare key or reference names the class's
  /// first key, and a name standing alone is handed over.
  void EndFull(TCIMXMLParser &parser);

  std::string className;
  bool standalone = false;
};

/// "keybinding": attribute "name" names the key; its value is the last key
/// value child, typed from the class's property of that name, or a reference
/// child, which wins over any key value and is bound without looking at the
/// class. A name that is not a key property of the class is "Class " + class
/// name + " doesn't have any key properties"; one the class lacks fails in
/// the object model.
class TCIMXMLParser::TStateKeyBinding : public TCIMXMLParser::TParseState {
public:
  /// Adds to the parent's instanceName a key of the parent's keyClass.
  template <class TParent>
  TStateKeyBinding(TCIMXMLParser &, TParent &parent)
      : keyClass(parent.keyClass), instanceName(parent.instanceName) {}

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override;
  void ElementStart(TCIMXMLParser &parser, const TAttributeList &attributes) override;

  // What the children write into.
  std::string keyValueText;
  std::string keyValueType;
  TCIMType keyType;
  TCIMValue value;
  bool valueSeen = false;

private:
  boost::shared_ptr<ICIMClass> keyClass;
  TCIMReference &instanceName;
  std::string keyName;
};

/// "keyvalue": its text, untrimmed, becomes the parent's keyValueText. Its
/// attributes (the value type) are not read, and child elements are neither
/// entered nor reported.
class TCIMXMLParser::TStateKeyValue : public TCIMXMLParser::TParseState {
public:
  /// Empties the parser's character buffer, so that the end sees this
  /// element's text only.
  template <class TParent>
  TStateKeyValue(TCIMXMLParser &parser, TParent &parent)
      : target(parent.keyValueText), valueType(parent.keyValueType), type(parent.keyType) {
    CharacterData(parser).clear();
  }

  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override;
  /// The full grammar reads VALUETYPE and TYPE, which type the key when its
  /// class is not loaded.
  void ElementStart(TCIMXMLParser &parser, const TAttributeList &attributes) override;

private:
  std::string &target;
  std::string &valueType;
  TCIMType &type;
};

/// A key value typed by what the document says of it: TYPE when given,
/// else VALUETYPE ("string", "boolean", or "numeric": a signed integer with
/// a minus sign, a real with a point or exponent, else an unsigned one).
TCIMValue KeyValueFromDocument(TCIMXMLParser &parser, std::string &text,
                               const std::string &valueType, TCIMType type);

/// "value.reference": makes a reference value from any of its path children
/// (any number, each acting in turn) and stores it into the parent's value,
/// which counts as seen. Only a class name or an instance name gives the
/// reference a namespace, and that is the parser's own; hosts and namespace
/// paths of the path forms are read and dropped. Any other child is
/// "Unexpected element " + name.
///
/// Two bounds keep a short document from costing more than its size: a
/// reference inside more than kMaxNesting others is "Reference nested more
/// than 16 deep" at its start tag, and one whose text would be longer than
/// kMaxTextLength bytes is "Reference longer than 1048576 bytes as text" at
/// its end tag. Either is dropped with all it holds; the parent's value
/// stays null.
class TCIMXMLParser::TStateValueReference : public TCIMXMLParser::TParseState {
public:
  /// Whether the reference is a class's: a class is named by a class path or
  /// class name, and an instance name, at any point, makes it an instance's.
  enum EPhase : std::int32_t { kUnnamed, kClassNamed, kInstanceNamed };

  /// Real documents nest references two or three deep.
  static constexpr std::size_t kMaxNesting = 16;
  /// Each level of nesting doubles the backslashes of the levels inside it.
  static constexpr std::size_t kMaxTextLength = 1048576;

  template <class TParent>
  TStateValueReference(TCIMXMLParser &, TParent &parent) : TStateValueReference(parent.value) {
    parent.valueSeen = true;
  }

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override;
  void ElementStart(TCIMXMLParser &parser, const TAttributeList &attributes) override;

  // What the children write into.
  std::string host;
  std::string namespacePath;
  std::string className;
  TCIMReference instanceName;

private:
  explicit TStateValueReference(TCIMValue &value);

  TCIMValue &target;
  /// Nested too deep: its content is read and dropped.
  bool refused = false;
  bool pathSeen = false;
};

/// An element inside a refused reference: read to its end, with all that it
/// holds, without a message, so that the document stays in step.
class TCIMXMLParser::TStateDropped : public TCIMXMLParser::TParseState {
public:
  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
};

} // namespace NVRNORV20

#endif
