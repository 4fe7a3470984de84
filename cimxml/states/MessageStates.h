// Parse states for CIM operation messages. The classic grammar reads as far
// as loading needs: requests that create a class or an instance, and
// responses of intrinsic methods whose return value carries a class, a
// named instance or a qualifier declaration; objects of a request are
// committed to the parser's namespace, classes of a response committed and
// collected, and everything else a message may hold is "Unexpected element
// " + name. The full grammar reads every message, operation and export of
// DSP0201 and hands each operation over with its parameters, return value,
// error and correlators.
#ifndef ORV_CIMXML_STATES_MESSAGESTATES_H
#define ORV_CIMXML_STATES_MESSAGESTATES_H

#include "cimxml/CIMXMLParser.h"
#include "cimxml/states/StandaloneSink.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <string>
#include <vector>

namespace NVRNORV20 {

/// "message": one simple request, multiple request or simple response per
/// child, in any number. A "protocolversion" other than "1.0" is "Unknown
/// protocol version"; a missing one is accepted.
/// The full grammar takes exactly one child of the eight kinds, reads ID
/// and PROTOCOLVERSION as they are, and hands the message over at its end.
class TCIMXMLParser::TStateMessage : public TCIMXMLParser::TParseState {
public:
  enum EPhase : std::int32_t { kAny, kFullDone };

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override;
  void ElementStart(TCIMXMLParser &parser, const TAttributeList &attributes) override;

private:
  TCIMXMLMessage message;
};

/// "multireq": simple requests; fewer than two is "Invalid MULTIREQ" at the
/// end.
class TCIMXMLParser::TStateMultiReq : public TCIMXMLParser::TParseState {
public:
  /// Counts requests up to two; later ones leave it at two.
  enum EPhase : std::int32_t { kNoRequest, kOneRequest, kRequests };

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override;
};

/// "multirsp", "multiexpreq" and "multiexprsp", full grammar only: two or
/// more of their simple kind, like "multireq".
class TCIMXMLParser::TStateMultiRsp : public TCIMXMLParser::TStateMultiReq {
public:
  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
};
class TCIMXMLParser::TStateMultiExpReq : public TCIMXMLParser::TStateMultiReq {
public:
  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
};
class TCIMXMLParser::TStateMultiExpRsp : public TCIMXMLParser::TStateMultiReq {
public:
  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
};

/// "simplereq": intrinsic method calls only. The full grammar takes
/// correlators, then one intrinsic or extrinsic call, which takes the
/// correlators with it.
class TCIMXMLParser::TStateSimpleReq : public TCIMXMLParser::TParseState {
public:
  enum EPhase : std::int32_t { kCorrelators, kFullDone };

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;

  std::vector<TCIMXMLCorrelator> correlators;
};

/// "simpleexpreq", full grammar only: correlators, then one export call.
class TCIMXMLParser::TStateExpRequest : public TCIMXMLParser::TStateSimpleReq {
public:
  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
};

/// "correlator", full grammar only: one value, typed by TYPE, added to the
/// request's correlators.
class TCIMXMLParser::TStateCorrelator : public TCIMXMLParser::TParseState {
public:
  enum EPhase : std::int32_t { kValue, kDone };

  TStateCorrelator(TCIMXMLParser &, TStateSimpleReq &parent) : request(parent) {}

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override;
  void ElementStart(TCIMXMLParser &parser, const TAttributeList &attributes) override;

  TCIMType ValueType() const { return correlator.value.GetType(); }
  TCIMValue value;
  bool valueSeen = false;

private:
  TStateSimpleReq &request;
  TCIMXMLCorrelator correlator;
};

/// What every operation element shares, in the full grammar: the record it
/// fills while it is open (the parser numbers it and places the objects of
/// its parameters in it), handed over at its end tag.
class TCIMXMLParser::TStateOperation : public TCIMXMLParser::TParseState, public TPathSlots {
public:
  TCIMXMLOperation operation;

protected:
  /// Starts the record of the given kind, named by NAME.
  void Open(TCIMXMLParser &parser, TCIMXMLOperation::EKind kind, const TAttributeList &attributes);
  /// Hands the record over and pops the state.
  void Close(TCIMXMLParser &parser);
};

/// "imethodcall": a local namespace path (read, not used: objects go to the
/// parser's namespace), then parameters. A method other than "CreateClass",
/// "CreateInstance" or "Create Instance" is "Unexpected IMethodCall method "
/// + name. The full grammar reads every method, under any name, and takes
/// the namespace path as its target.
class TCIMXMLParser::TStateIMethodCall : public TCIMXMLParser::TStateOperation {
public:
  TStateIMethodCall(TCIMXMLParser &parser, TStateSimpleReq &parent);

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override;
  void ElementStart(TCIMXMLParser &parser, const TAttributeList &attributes) override;

  enum EPhase : std::int32_t { kNamespacePath, kParameters };

private:
  std::string methodName;
};

/// "methodcall", full grammar only: a local class or instance path, the
/// target, then parameters.
class TCIMXMLParser::TStateMethodCall : public TCIMXMLParser::TStateOperation {
public:
  enum EPhase : std::int32_t { kPath, kParameters };

  TStateMethodCall(TCIMXMLParser &parser, TStateSimpleReq &parent);

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override;
  void ElementStart(TCIMXMLParser &parser, const TAttributeList &attributes) override;
};

/// "expmethodcall", full grammar only: export parameters.
class TCIMXMLParser::TStateExpMethodCall : public TCIMXMLParser::TStateOperation {
public:
  TStateExpMethodCall(TCIMXMLParser &parser, TStateExpRequest &parent);

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override;
  void ElementStart(TCIMXMLParser &parser, const TAttributeList &attributes) override;
};

/// "iparamvalue": "NewClass" or "NewInstance" (else "Unexpected IParamValue
/// parameter name"), holding exactly one class or instance, which is
/// committed at the end; none is "CIM element syntax error". The parameter
/// name does not have to match the kind of object.
///
/// The full grammar reads any parameter with any one value form of the
/// CIM-XML document type: values typed as DSP0200 declares the intrinsic
/// parameter (a string when it does not), objects and paths handed over as
/// they end.
class TCIMXMLParser::TStateIParamValue : public TCIMXMLParser::TParseState, public TStandaloneSink {
public:
  enum EPhase : std::int32_t { kObject, kDone };

  TStateIParamValue(TCIMXMLParser &, TStateOperation &parent) : operation(parent.operation) {}

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override;
  void ElementStart(TCIMXMLParser &parser, const TAttributeList &attributes) override;

protected:
  /// The full grammar's start and end of any argument element: the role of
  /// its objects, and the argument added to the operation.
  void OpenArgument(TCIMXMLParser &parser, const TAttributeList &attributes);
  void CloseArgument(TCIMXMLParser &parser, std::vector<TCIMXMLArgument> *into);

  TCIMXMLOperation &operation;
  TCIMXMLArgument argument;

private:
  std::string parameterName;
};

/// "paramvalue", full grammar only: a parameter of an extrinsic call or
/// response, typed by PARAMTYPE (a string when absent), with any one value
/// form of the CIM-XML document type.
class TCIMXMLParser::TStateParamValue : public TCIMXMLParser::TStateIParamValue {
public:
  TStateParamValue(TCIMXMLParser &parser, TStateOperation &parent)
      : TStateIParamValue(parser, parent) {}

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override;
  void ElementStart(TCIMXMLParser &parser, const TAttributeList &attributes) override;
};

/// "returnvalue", full grammar only: an extrinsic method's return value.
class TCIMXMLParser::TStateReturnValue : public TCIMXMLParser::TStateIParamValue {
public:
  TStateReturnValue(TCIMXMLParser &parser, TStateOperation &parent)
      : TStateIParamValue(parser, parent) {}

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override;
  void ElementStart(TCIMXMLParser &parser, const TAttributeList &attributes) override;
};

/// "expparamvalue", full grammar only: an indication's instance.
class TCIMXMLParser::TStateExpParamValue : public TCIMXMLParser::TStateIParamValue {
public:
  TStateExpParamValue(TCIMXMLParser &parser, TStateOperation &parent)
      : TStateIParamValue(parser, parent) {}

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override;
  void ElementStart(TCIMXMLParser &parser, const TAttributeList &attributes) override;
};

/// "simplersp": intrinsic method responses only. The full grammar takes one
/// intrinsic or extrinsic response.
class TCIMXMLParser::TStateSimpleRsp : public TCIMXMLParser::TParseState {
public:
  enum EPhase : std::int32_t { kAny, kFullDone };

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
};

/// "simpleexprsp", full grammar only: one export response.
class TCIMXMLParser::TStateExpResponse : public TCIMXMLParser::TStateSimpleRsp {
public:
  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
};

/// "imethodresponse": return values and errors, any number in any order.
/// The full grammar takes an error, or a return value and then output
/// parameters.
class TCIMXMLParser::TStateMethodResponse : public TCIMXMLParser::TStateOperation {
public:
  /// Records that something came, but is never read: return values and
  /// errors mix freely.
  enum EPhase : std::int32_t { kEmpty, kAnswered, kReturned, kErrored };

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override;
  void ElementStart(TCIMXMLParser &parser, const TAttributeList &attributes) override;
};

/// "methodresponse", full grammar only: an error, or a return value and then
/// output parameters.
class TCIMXMLParser::TStateExtrinsicResponse : public TCIMXMLParser::TStateMethodResponse {
public:
  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
  void ElementStart(TCIMXMLParser &parser, const TAttributeList &attributes) override;
};

/// "expmethodresponse", full grammar only: an error or a return value.
class TCIMXMLParser::TStateExpMethodResponse : public TCIMXMLParser::TStateMethodResponse {
public:
  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
  void ElementStart(TCIMXMLParser &parser, const TAttributeList &attributes) override;
};

/// "error": its attributes are not read. A child element named "6" is
/// passed over silently; any other is "Unexpected element " + name. The
/// full grammar reads CODE and DESCRIPTION and hands its instances over as
/// the operation's error instances.
class TCIMXMLParser::TStateError : public TCIMXMLParser::TParseState, public TStandaloneSink {
public:
  TStateError(TCIMXMLParser &, TStateOperation &parent) : operation(parent.operation) {}

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override;
  void ElementStart(TCIMXMLParser &parser, const TAttributeList &attributes) override;

private:
  TCIMXMLOperation &operation;
  std::string roleBefore;
};

/// "ireturnvalue": exactly one class, named instance or qualifier
/// declaration; none is "CIM element syntax error" at the end. A class is
/// committed and collected at the end; the other two are finished by their
/// own states.
///
/// The full grammar takes any number of children of one kind (one at most
/// of "value.array" and "value.reference"), as the CIM-XML document type
/// allows; several "value" children make an array of strings.
class TCIMXMLParser::TStateIReturnValue : public TCIMXMLParser::TStateIParamValue {
public:
  enum EPhase : std::int32_t { kObject, kDone };

  TStateIReturnValue(TCIMXMLParser &parser, TStateOperation &parent)
      : TStateIParamValue(parser, parent) {}

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    const TAttributeList &attributes) override;
  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override;
  void ElementStart(TCIMXMLParser &parser, const TAttributeList &attributes) override;

private:
  /// The kind of the first child; the others must be of it.
  std::string childKind;
  std::vector<TCIMValue> values;
};

} // namespace NVRNORV20

#endif
