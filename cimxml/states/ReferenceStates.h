// Parse states that build object paths of the object model: instance names
// with their key bindings and key values, and reference values. Key values
// are typed from the class definition that the namespace already holds,
// never from attributes of the document.
#ifndef ORV_CIMXML_STATES_REFERENCESTATES_H
#define ORV_CIMXML_STATES_REFERENCESTATES_H

#include "cimxml/CIMXMLParser.h"

#include <boost/shared_ptr.hpp>

#include <string>
#include <utility>

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
  explicit TStateInstanceName(TCIMReference &reference)
      : target(reference), keyValueSeen(false), referenceSeen(false) {}
  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    TAttributes &attributes) override;
  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override;
  void ElementStart(TCIMXMLParser &parser, TAttributes &attributes) override;

private:
  static TParseStatePtr MakeKeyBinding(TCIMXMLParser &parser, TParseState &parent);
  static TParseStatePtr MakeKeyValue(TCIMXMLParser &parser, TParseState &parent);
  static TParseStatePtr MakeValueReference(TCIMXMLParser &parser, TParseState &parent);
  /// Binds the bare key value to the class's first key property.
  void AddFirstKey(TCIMXMLParser &parser);

  TCIMReference &target;
  std::string className;
  std::string keyValueText;
  TCIMValue referenceValue;
  bool keyValueSeen;
  bool referenceSeen;
  boost::shared_ptr<ICIMClass> cls;
};

/// "keybinding": attribute "name" names the key; its value is the last key
/// value child, typed from the class's property of that name, or a reference
/// child, which wins over any key value and is bound without looking at the
/// class. A name that is not a key property of the class is "Class " + class
/// name + " doesn't have any key properties"; one the class lacks fails in
/// the object model.
class TCIMXMLParser::TStateKeyBinding : public TCIMXMLParser::TParseState {
public:
  TStateKeyBinding(boost::shared_ptr<ICIMClass> keyClass, TCIMReference &reference)
      : cls(std::move(keyClass)), target(reference), referenceSeen(false) {}
  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    TAttributes &attributes) override;
  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override;
  void ElementStart(TCIMXMLParser &parser, TAttributes &attributes) override;

private:
  static TParseStatePtr MakeKeyValue(TCIMXMLParser &parser, TParseState &parent);
  static TParseStatePtr MakeValueReference(TCIMXMLParser &parser, TParseState &parent);

  boost::shared_ptr<ICIMClass> cls;
  TCIMReference &target;
  std::string keyName;
  bool referenceSeen;
  TCIMValue referenceValue;
  std::string keyValueText;
};

/// "keyvalue": its text, untrimmed, becomes the target. Its attributes (the
/// value type) are not read, and child elements are neither entered nor
/// reported.
class TCIMXMLParser::TStateKeyValue : public TCIMXMLParser::TParseState {
public:
  /// Empties the parser's character buffer, so that the end sees this
  /// element's text only.
  TStateKeyValue(TCIMXMLParser &parser, std::string &text);
  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override;

private:
  std::string &target;
};

/// "value.reference": makes a reference value from any of its path children
/// (any number, each acting in turn) and stores it into the target. Only a
/// class name or an instance name gives the reference a namespace, and that
/// is the parser's own; hosts and namespace paths of the path forms are read
/// and dropped. Any other child is "Unexpected element " + name.
class TCIMXMLParser::TStateValueReference : public TCIMXMLParser::TParseState {
public:
  explicit TStateValueReference(TCIMValue &value);
  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    TAttributes &attributes) override;
  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override;

private:
  static TParseStatePtr MakeClassPath(TCIMXMLParser &parser, TParseState &parent);
  static TParseStatePtr MakeLocalClassPath(TCIMXMLParser &parser, TParseState &parent);
  static TParseStatePtr MakeClassName(TCIMXMLParser &parser, TParseState &parent);
  static TParseStatePtr MakeInstancePath(TCIMXMLParser &parser, TParseState &parent);
  static TParseStatePtr MakeLocalInstancePath(TCIMXMLParser &parser, TParseState &parent);
  static TParseStatePtr MakeInstanceName(TCIMXMLParser &parser, TParseState &parent);

  TCIMValue &target;
  bool instanceNameSeen;
  bool classNameGiven;
  std::string host;
  std::string namespacePath;
  TCIMReference reference;
  std::string className;
};

} // namespace NVRNORV20

#endif
