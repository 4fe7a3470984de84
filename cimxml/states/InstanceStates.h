// Parse states of instances and of the value objects that carry classes
// and instances.
#ifndef ORV_CIMXML_STATES_INSTANCESTATES_H
#define ORV_CIMXML_STATES_INSTANCESTATES_H

#include "cimxml/CIMXMLParser.h"
#include "cimxml/states/ReferenceStates.h"
#include "cimxml/states/StandaloneSink.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <string>

namespace NVRNORV20 {

/// "instance": creates an instance of the CLASSNAME class at its start tag
/// into the creator's slot. The class "VRNSG_ComputerSystem" (exactly so)
/// also switches the object model's parser mode on, for good. Children:
/// properties of the three kinds; a "qualifier" before them is not
/// attached (no state is made and its attributes reach this state's start
/// handler), after them it is unexpected.
class TCIMXMLParser::TStateInstance : public TCIMXMLParser::TParseState {
public:
  enum EPhase : std::int32_t { kQualifiers, kProperties };

  /// Makes the instance in the parent's instance slot.
  template <class TParent>
  TStateInstance(TCIMXMLParser &parser, TParent &parent)
      : instance(parent.instance), standalone(kStandsAlone<TParent> && IsFull(parser)) {}

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
  /// An unknown or missing class name throws; the state then stays without
  /// an instance, and each property fails when it would set a value. The
  /// full grammar makes an instance of a class that no namespace holds a
  /// standalone one, typed by its properties' own TYPE attributes.
  void ElementStart(TCIMXMLParser &parser, const TAttributeList &attributes) override;
  /// An instance standing alone is handed over here.
  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override;

  /// What the property children set values of.
  boost::shared_ptr<ICIMInstance> &instance;

private:
  std::string className;
  const bool standalone;
};

/// A qualifier of an instance or of an instance's property, in the full
/// grammar: read to its end and reported, as the object model keeps
/// qualifiers on declarations only.
class TCIMXMLParser::TStateInstanceQualifier : public TCIMXMLParser::TStateDropped {
public:
  void ElementStart(TCIMXMLParser &parser, const TAttributeList &attributes) override;
};

/// "value.object": one "class" or one "instance". At the end tag the object
/// is committed and collected; an element without its child ends in "CIM
/// element syntax error". The base of the other value objects, which differ
/// in their children and final phase.
class TCIMXMLParser::TStateValueObject : public TCIMXMLParser::TParseState, public TPathSlots {
public:
  enum EPhase : std::int32_t { kObject, kDone };

  TStateValueObject() : TStateValueObject(kDone, true) {}

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override;

protected:
  TStateValueObject(std::int32_t lastPhase, bool collecting)
      : finalPhase(lastPhase), collects(collecting) {}

  /// The full grammar's end: the object is handed over with the path its
  /// siblings gave.
  void EndFull(TCIMXMLParser &parser);

  /// The phase after the object's own child, the only one in which the
  /// element may end.
  const std::int32_t finalPhase;
  const bool collects;

public:
  // What the children write into.
  bool isClass = false;
  boost::shared_ptr<ICIMClass> cls;
  boost::shared_ptr<ICIMInstance> instance;
  // The path and instance-name children fill the path slots; only the full
  // grammar reads them.
};

/// "value.namedinstance": an instance name, then the instance. The instance
/// is committed but not collected; the name is not applied to it.
class TCIMXMLParser::TStateValueNamedInstance : public TCIMXMLParser::TStateValueObject {
public:
  enum EPhase : std::int32_t { kName, kInstance, kDone };

  TStateValueNamedInstance() : TStateValueObject(kDone, false) {}

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
};

/// "value.namedobject": a class alone, or an instance name followed by its
/// instance.
class TCIMXMLParser::TStateValueNamedObject : public TCIMXMLParser::TStateValueObject {
public:
  enum EPhase : std::int32_t { kObjectOrName, kInstance, kDone };

  TStateValueNamedObject() : TStateValueObject(kDone, true) {}

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
};

/// "value.objectwithpath": a class path and its class, or an instance path
/// and its instance.
class TCIMXMLParser::TStateValueObjectWithPath : public TCIMXMLParser::TStateValueObject {
public:
  enum EPhase : std::int32_t { kPath, kClass, kInstance, kDone };

  TStateValueObjectWithPath() : TStateValueObject(kDone, true) {}

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
};

/// "value.objectwithlocalpath": as "value.objectwithpath" with local paths.
class TCIMXMLParser::TStateValueObjectWithLocalPath : public TCIMXMLParser::TStateValueObject {
public:
  enum EPhase : std::int32_t { kPath, kClass, kInstance, kDone };

  TStateValueObjectWithLocalPath() : TStateValueObject(kDone, true) {}

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
};

/// "value.instancewithpath", full grammar only: an instance path, then its
/// instance.
class TCIMXMLParser::TStateValueInstanceWithPath : public TCIMXMLParser::TStateValueObject {
public:
  enum EPhase : std::int32_t { kPath, kInstance, kDone };

  TStateValueInstanceWithPath() : TStateValueObject(kDone, true) {}

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
};

} // namespace NVRNORV20

#endif
