#include "cimxml/states/MessageStates.h"

#include "cimxml/states/ClassStates.h"
#include "cimxml/states/InstanceStates.h"
#include "cimxml/states/PathStates.h"
#include "cimxml/states/QualifierDeclStates.h"
#include "cimxml/states/ReferenceStates.h"
#include "cimxml/states/ValueStates.h"
#include "core_api/ORVStatusCode.h"

#include <strings.h>

#include <utility>

namespace NVRNORV20 {

namespace {

/// The intrinsic methods whose objects are loaded. "Create Instance" with a
/// blank is accepted beside "CreateInstance" on purpose.
bool IsAcceptedMethod(const std::string &name) {
  return name == "CreateClass" || name == "CreateInstance" || name == "Create Instance";
}

bool IsAcceptedParameter(const std::string &name) {
  return name == "NewClass" || name == "NewInstance";
}

/// The types DSP0200 gives the intrinsic parameters that are not strings
/// when they arrive as a VALUE.
TCIMType IntrinsicParameterType(const std::string &name) {
  static const char *const kBooleans[] = {
      "LocalOnly",       "IncludeQualifiers",      "IncludeClassOrigin", "DeepInheritance",
      "ContinueOnError", "ReturnQueryResultClass", "EndOfSequence"};
  static const char *const kUnsigned32[] = {"MaxObjectCount", "OperationTimeout"};
  for (const char *known : kBooleans)
    if (strcasecmp(name.c_str(), known) == 0)
      return TCIMType(kCIMTypeBoolean);
  for (const char *known : kUnsigned32)
    if (strcasecmp(name.c_str(), known) == 0)
      return TCIMType(kCIMTypeUint32);
  return TCIMType(kCIMTypeString);
}

/// PARAMTYPE as the type of a VALUE: the CIM types by name; "reference"
/// is read from VALUE.REFERENCE, "object" and "instance" are embedded
/// objects, strings in the document. Absent or unknown, a string.
TCIMType ParamType(const TXmlAttributeList &attributes) {
  auto found = attributes.Find("paramtype");
  if (found == attributes.end() || found->value == "object" || found->value == "instance")
    return TCIMType(kCIMTypeString);
  try {
    return TCIMType(std::string(found->value));
  } catch (TORVException &) {
    return TCIMType(kCIMTypeString);
  }
}

std::string Attribute(const TXmlAttributeList &attributes, const char *name) {
  auto found = attributes.Find(name);
  return found != attributes.end() ? std::string(found->value) : std::string();
}

/// The message kind that a child of "message" starts.
bool MessageKindOf(const std::string &name, TCIMXMLMessage::EKind &kind) {
  using EKind = TCIMXMLMessage::EKind;
  static const std::pair<const char *, EKind> kKinds[] = {
      {"simplereq", EKind::kSimpleRequest},
      {"multireq", EKind::kMultipleRequest},
      {"simplersp", EKind::kSimpleResponse},
      {"multirsp", EKind::kMultipleResponse},
      {"simpleexpreq", EKind::kSimpleExportRequest},
      {"multiexpreq", EKind::kMultipleExportRequest},
      {"simpleexprsp", EKind::kSimpleExportResponse},
      {"multiexprsp", EKind::kMultipleExportResponse},
  };
  for (const auto &known : kKinds)
    if (name == known.first) {
      kind = known.second;
      return true;
    }
  return false;
}

} // namespace

// message ------------------------------------------------------------------

void TCIMXMLParser::TStateMessage::ElementStart(TCIMXMLParser &parser,
                                                const TAttributeList &attributes) {
  if (IsFull(parser)) {
    message.id = Attribute(attributes, "id");
    message.protocolVersion = Attribute(attributes, "protocolversion");
    message.sequence = MessagesDelivered(parser);
    message.firstOperation = OperationsDelivered(parser);
    message.line = line;
    return;
  }
  // "id" and anything else are ignored; only a version that is there and
  // not ours is refused.
  auto version = attributes.Find("protocolversion");
  if (version != attributes.end() && version->value != "1.0")
    parser.FatalError("Unknown protocol version");
}

void TCIMXMLParser::TStateMessage::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                const TAttributeList &attributes) {
  using TSelf = TStateMessage;
  static constexpr TChildRow kRows[] = {
      ClassicChild<TStateSimpleReq, TSelf>("simplereq"),
      ClassicChild<TStateMultiReq, TSelf>("multireq"),
      ClassicChild<TStateSimpleRsp, TSelf>("simplersp"),
      FullChild<TStateSimpleReq, TSelf>("simplereq", kAny, kAny, kFullDone),
      FullChild<TStateMultiReq, TSelf>("multireq", kAny, kAny, kFullDone),
      FullChild<TStateSimpleRsp, TSelf>("simplersp", kAny, kAny, kFullDone),
      FullChild<TStateMultiRsp, TSelf>("multirsp", kAny, kAny, kFullDone),
      FullChild<TStateExpRequest, TSelf>("simpleexpreq", kAny, kAny, kFullDone),
      FullChild<TStateMultiExpReq, TSelf>("multiexpreq", kAny, kAny, kFullDone),
      FullChild<TStateExpResponse, TSelf>("simpleexprsp", kAny, kAny, kFullDone),
      FullChild<TStateMultiExpRsp, TSelf>("multiexprsp", kAny, kAny, kFullDone),
  };
  if (IsFull(parser) && phase == kAny)
    MessageKindOf(name, message.kind);
  AcceptChild(parser, name, attributes, kRows, kFullDone);
}

void TCIMXMLParser::TStateMessage::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  if (IsFull(parser)) {
    RequireComplete(parser, kFullDone);
    message.operationCount = OperationsDelivered(parser) - message.firstOperation;
    Deliver(parser, message);
  }
  Pop(parser);
}

// multireq -----------------------------------------------------------------

void TCIMXMLParser::TStateMultiReq::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                 const TAttributeList &attributes) {
  static constexpr TChildRow kRows[] = {
      Child<TStateSimpleReq, TStateMultiReq>("simplereq", kNoRequest, kNoRequest, kOneRequest),
      Child<TStateSimpleReq, TStateMultiReq>("simplereq", kOneRequest, kRequests, kRequests),
  };
  AcceptChild(parser, name, attributes, kRows, kRequests);
}

void TCIMXMLParser::TStateMultiReq::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  if (phase != kRequests)
    parser.FatalError("Invalid MULTIREQ");
  Pop(parser);
}

void TCIMXMLParser::TStateMultiRsp::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                 const TAttributeList &attributes) {
  static constexpr TChildRow kRows[] = {
      Child<TStateSimpleRsp, TStateMultiRsp>("simplersp", kNoRequest, kNoRequest, kOneRequest),
      Child<TStateSimpleRsp, TStateMultiRsp>("simplersp", kOneRequest, kRequests, kRequests),
  };
  AcceptChild(parser, name, attributes, kRows, kRequests);
}

void TCIMXMLParser::TStateMultiExpReq::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                    const TAttributeList &attributes) {
  static constexpr TChildRow kRows[] = {
      Child<TStateExpRequest, TStateMultiExpReq>("simpleexpreq", kNoRequest, kNoRequest,
                                                 kOneRequest),
      Child<TStateExpRequest, TStateMultiExpReq>("simpleexpreq", kOneRequest, kRequests, kRequests),
  };
  AcceptChild(parser, name, attributes, kRows, kRequests);
}

void TCIMXMLParser::TStateMultiExpRsp::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                    const TAttributeList &attributes) {
  static constexpr TChildRow kRows[] = {
      Child<TStateExpResponse, TStateMultiExpRsp>("simpleexprsp", kNoRequest, kNoRequest,
                                                  kOneRequest),
      Child<TStateExpResponse, TStateMultiExpRsp>("simpleexprsp", kOneRequest, kRequests,
                                                  kRequests),
  };
  AcceptChild(parser, name, attributes, kRows, kRequests);
}

// simplereq, imethodcall ---------------------------------------------------

void TCIMXMLParser::TStateSimpleReq::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                  const TAttributeList &attributes) {
  using TSelf = TStateSimpleReq;
  static constexpr TChildRow kRows[] = {
      ClassicChild<TStateIMethodCall, TSelf>("imethodcall"),
      FullChild<TStateCorrelator, TSelf>("correlator", kCorrelators, kCorrelators, kKeepPhase),
      FullChild<TStateIMethodCall, TSelf>("imethodcall", kCorrelators, kCorrelators, kFullDone),
      FullChild<TStateMethodCall, TSelf>("methodcall", kCorrelators, kCorrelators, kFullDone),
  };
  AcceptChild(parser, name, attributes, kRows, kFullDone);
}

void TCIMXMLParser::TStateExpRequest::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                   const TAttributeList &attributes) {
  using TSelf = TStateExpRequest;
  static constexpr TChildRow kRows[] = {
      Child<TStateCorrelator, TSelf>("correlator", kCorrelators, kCorrelators, kKeepPhase),
      Child<TStateExpMethodCall, TSelf>("expmethodcall", kCorrelators, kCorrelators, kFullDone),
  };
  AcceptChild(parser, name, attributes, kRows, kFullDone);
}

// correlator ---------------------------------------------------------------

void TCIMXMLParser::TStateCorrelator::ElementStart(TCIMXMLParser &parser,
                                                   const TAttributeList &attributes) {
  TCIMType type;
  for (auto attribute = attributes.begin(); attribute != attributes.end(); ++attribute)
    parser.HandleCIMName(attribute, &correlator.name) || parser.HandleCIMType(attribute, &type);
  correlator.value = TCIMValue(type, 0);
}

void TCIMXMLParser::TStateCorrelator::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                   const TAttributeList &attributes) {
  static constexpr TChildRow kRows[] = {
      Child<TStateValue, TStateCorrelator>("value", kValue, kValue, kDone),
  };
  AcceptChild(parser, name, attributes, kRows, kDone);
}

void TCIMXMLParser::TStateCorrelator::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  RequireComplete(parser, kDone);
  correlator.value = value;
  request.correlators.push_back(correlator);
  Pop(parser);
}

// operations ---------------------------------------------------------------

void TCIMXMLParser::TStateOperation::Open(TCIMXMLParser &parser, TCIMXMLOperation::EKind kind,
                                          const TAttributeList &attributes) {
  operation.kind = kind;
  operation.method = Attribute(attributes, "name");
  operation.sequence = OperationsDelivered(parser);
  operation.message = MessagesDelivered(parser);
  operation.line = line;
  OperationOpen(parser) = &operation;
  RoleOpen(parser).clear();
}

void TCIMXMLParser::TStateOperation::Close(TCIMXMLParser &parser) {
  OperationOpen(parser) = nullptr;
  Deliver(parser, operation);
  Pop(parser);
}

TCIMXMLParser::TStateIMethodCall::TStateIMethodCall(TCIMXMLParser &, TStateSimpleReq &parent) {
  operation.correlators.swap(parent.correlators);
}

void TCIMXMLParser::TStateIMethodCall::ElementStart(TCIMXMLParser &parser,
                                                    const TAttributeList &attributes) {
  if (IsFull(parser)) {
    Open(parser, TCIMXMLOperation::EKind::kIntrinsicCall, attributes);
    return;
  }
  for (auto attribute = attributes.begin(); attribute != attributes.end(); ++attribute)
    parser.HandleCIMName(attribute, &methodName);
  // Which object is made follows from the parameter alone; the name only
  // screens out the operations that load nothing.
  if (!IsAcceptedMethod(methodName))
    parser.FatalError(("Unexpected IMethodCall method " + methodName).c_str());
}

void TCIMXMLParser::TStateIMethodCall::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                    const TAttributeList &attributes) {
  static constexpr TChildRow kRows[] = {
      Child<TStateLocalNamespacePath, TStateIMethodCall>("localnamespacepath", kNamespacePath,
                                                         kNamespacePath, kParameters),
      Child<TStateIParamValue, TStateIMethodCall>("iparamvalue", kParameters, kParameters,
                                                  kKeepPhase),
  };
  AcceptChild(parser, name, attributes, kRows, kParameters);
}

void TCIMXMLParser::TStateIMethodCall::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  if (!IsFull(parser)) {
    Pop(parser);
    return;
  }
  RequireComplete(parser, kParameters);
  operation.hasTarget = true;
  operation.target.kind = TCIMXMLPath::EKind::kNamespace;
  operation.target.reference.SetNamespaceName(namespacePath);
  Close(parser);
}

TCIMXMLParser::TStateMethodCall::TStateMethodCall(TCIMXMLParser &, TStateSimpleReq &parent) {
  operation.correlators.swap(parent.correlators);
}

void TCIMXMLParser::TStateMethodCall::ElementStart(TCIMXMLParser &parser,
                                                   const TAttributeList &attributes) {
  Open(parser, TCIMXMLOperation::EKind::kExtrinsicCall, attributes);
}

void TCIMXMLParser::TStateMethodCall::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                   const TAttributeList &attributes) {
  static constexpr TChildRow kRows[] = {
      Child<TStateLocalClassPath, TStateMethodCall>("localclasspath", kPath, kPath, kParameters),
      Child<TStateLocalInstancePath, TStateMethodCall>("localinstancepath", kPath, kPath,
                                                       kParameters),
      Child<TStateParamValue, TStateMethodCall>("paramvalue", kParameters, kParameters, kKeepPhase),
  };
  AcceptChild(parser, name, attributes, kRows, kParameters);
}

void TCIMXMLParser::TStateMethodCall::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  RequireComplete(parser, kParameters);
  operation.hasTarget = true;
  operation.target = Path();
  Close(parser);
}

TCIMXMLParser::TStateExpMethodCall::TStateExpMethodCall(TCIMXMLParser &, TStateExpRequest &parent) {
  operation.correlators.swap(parent.correlators);
}

void TCIMXMLParser::TStateExpMethodCall::ElementStart(TCIMXMLParser &parser,
                                                      const TAttributeList &attributes) {
  Open(parser, TCIMXMLOperation::EKind::kExportCall, attributes);
}

void TCIMXMLParser::TStateExpMethodCall::ChildElement(TCIMXMLParser &parser,
                                                      const std::string &name,
                                                      const TAttributeList &attributes) {
  static constexpr TChildRow kRows[] = {
      Child<TStateExpParamValue, TStateExpMethodCall>("expparamvalue"),
  };
  AcceptChild(parser, name, attributes, kRows, kAnyOrder);
}

void TCIMXMLParser::TStateExpMethodCall::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  Close(parser);
}

// iparamvalue --------------------------------------------------------------

void TCIMXMLParser::TStateIParamValue::OpenArgument(TCIMXMLParser &parser,
                                                    const TAttributeList &attributes) {
  argument.name = Attribute(attributes, "name");
  argument.embeddedObject = Attribute(attributes, "embeddedobject");
  // A PARAMVALUE's PARAMTYPE may say it instead.
  const std::string paramType = Attribute(attributes, "paramtype");
  if (argument.embeddedObject.empty() && (paramType == "object" || paramType == "instance"))
    argument.embeddedObject = paramType;
  argument.firstObject = ObjectsDelivered(parser);
  RoleOpen(parser) = argument.name;
}

void TCIMXMLParser::TStateIParamValue::CloseArgument(TCIMXMLParser &parser,
                                                     std::vector<TCIMXMLArgument> *into) {
  if (valueSeen) {
    if (!argument.embeddedObject.empty())
      ReadEmbedded(parser, value, "Parameter " + argument.name);
    argument.value = value;
    argument.type = value.GetType();
  }
  argument.objectCount = ObjectsDelivered(parser) - argument.firstObject;
  RoleOpen(parser).clear();
  if (into != nullptr)
    into->push_back(argument);
  Pop(parser);
}

void TCIMXMLParser::TStateIParamValue::ElementStart(TCIMXMLParser &parser,
                                                    const TAttributeList &attributes) {
  if (IsFull(parser)) {
    OpenArgument(parser, attributes);
    valueType = IntrinsicParameterType(argument.name);
    return;
  }
  for (auto attribute = attributes.begin(); attribute != attributes.end(); ++attribute)
    parser.HandleCIMName(attribute, &parameterName);
  if (!IsAcceptedParameter(parameterName))
    parser.FatalError("Unexpected IParamValue parameter name");
}

void TCIMXMLParser::TStateIParamValue::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                    const TAttributeList &attributes) {
  using TSelf = TStateIParamValue;
  static constexpr TChildRow kRows[] = {
      Child<TStateClass, TSelf>("class", kObject, kObject, kDone),
      Child<TStateInstance, TSelf>("instance", kObject, kObject, kDone),
      FullChild<TStateValue, TSelf>("value", kObject, kObject, kDone),
      FullChild<TStateValueArray, TSelf>("value.array", kObject, kObject, kDone),
      FullChild<TStateValueReference, TSelf>("value.reference", kObject, kObject, kDone),
      FullChild<TStateClassName, TSelf>("classname", kObject, kObject, kDone),
      FullChild<TStateInstanceName, TSelf>("instancename", kObject, kObject, kDone),
      FullChild<TStateQualifierDeclaration, TSelf>("qualifier.declaration", kObject, kObject,
                                                   kDone),
      FullChild<TStateValueNamedInstance, TSelf>("value.namedinstance", kObject, kObject, kDone),
  };
  AcceptChild(parser, name, attributes, kRows, kDone);
}

void TCIMXMLParser::TStateIParamValue::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  if (IsFull(parser)) {
    CloseArgument(parser, &operation.parameters);
    return;
  }
  RequireComplete(parser, kDone);
  // A request's objects go into the namespace but are not collected: the
  // collections list what declarations and responses hold.
  if (isClass)
    Require(cls).Commit();
  else
    Require(instance).Commit();
  Pop(parser);
}

// simplersp, imethodresponse, error ----------------------------------------

void TCIMXMLParser::TStateSimpleRsp::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                  const TAttributeList &attributes) {
  using TSelf = TStateSimpleRsp;
  static constexpr TChildRow kRows[] = {
      ClassicChild<TStateMethodResponse, TSelf>("imethodresponse"),
      FullChild<TStateMethodResponse, TSelf>("imethodresponse", kAny, kAny, kFullDone),
      FullChild<TStateExtrinsicResponse, TSelf>("methodresponse", kAny, kAny, kFullDone),
  };
  AcceptChild(parser, name, attributes, kRows, kFullDone);
}

void TCIMXMLParser::TStateExpResponse::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                    const TAttributeList &attributes) {
  static constexpr TChildRow kRows[] = {
      Child<TStateExpMethodResponse, TStateExpResponse>("expmethodresponse", kAny, kAny, kFullDone),
  };
  AcceptChild(parser, name, attributes, kRows, kFullDone);
}

void TCIMXMLParser::TStateMethodResponse::ElementStart(TCIMXMLParser &parser,
                                                       const TAttributeList &attributes) {
  if (IsFull(parser))
    Open(parser, TCIMXMLOperation::EKind::kIntrinsicResponse, attributes);
}

void TCIMXMLParser::TStateMethodResponse::ChildElement(TCIMXMLParser &parser,
                                                       const std::string &name,
                                                       const TAttributeList &attributes) {
  using TSelf = TStateMethodResponse;
  static constexpr TChildRow kRows[] = {
      ClassicChild<TStateIReturnValue, TSelf>("ireturnvalue", kEmpty, kAnswered, kAnswered),
      ClassicChild<TStateError, TSelf>("error", kEmpty, kAnswered, kAnswered),
      FullChild<TStateError, TSelf>("error", kEmpty, kEmpty, kErrored),
      FullChild<TStateIReturnValue, TSelf>("ireturnvalue", kEmpty, kEmpty, kReturned),
      FullChild<TStateParamValue, TSelf>("paramvalue", kEmpty, kReturned, kReturned),
  };
  AcceptChild(parser, name, attributes, kRows, kErrored);
}

void TCIMXMLParser::TStateMethodResponse::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  if (IsFull(parser))
    Close(parser);
  else
    Pop(parser);
}

void TCIMXMLParser::TStateExtrinsicResponse::ElementStart(TCIMXMLParser &parser,
                                                          const TAttributeList &attributes) {
  Open(parser, TCIMXMLOperation::EKind::kExtrinsicResponse, attributes);
}

void TCIMXMLParser::TStateExtrinsicResponse::ChildElement(TCIMXMLParser &parser,
                                                          const std::string &name,
                                                          const TAttributeList &attributes) {
  using TSelf = TStateExtrinsicResponse;
  static constexpr TChildRow kRows[] = {
      Child<TStateError, TSelf>("error", kEmpty, kEmpty, kErrored),
      Child<TStateReturnValue, TSelf>("returnvalue", kEmpty, kEmpty, kReturned),
      Child<TStateParamValue, TSelf>("paramvalue", kEmpty, kReturned, kReturned),
  };
  AcceptChild(parser, name, attributes, kRows, kErrored);
}

void TCIMXMLParser::TStateExpMethodResponse::ElementStart(TCIMXMLParser &parser,
                                                          const TAttributeList &attributes) {
  Open(parser, TCIMXMLOperation::EKind::kExportResponse, attributes);
}

void TCIMXMLParser::TStateExpMethodResponse::ChildElement(TCIMXMLParser &parser,
                                                          const std::string &name,
                                                          const TAttributeList &attributes) {
  using TSelf = TStateExpMethodResponse;
  static constexpr TChildRow kRows[] = {
      Child<TStateError, TSelf>("error", kEmpty, kEmpty, kErrored),
      Child<TStateIReturnValue, TSelf>("ireturnvalue", kEmpty, kEmpty, kReturned),
  };
  AcceptChild(parser, name, attributes, kRows, kErrored);
}

void TCIMXMLParser::TStateError::ElementStart(TCIMXMLParser &parser,
                                              const TAttributeList &attributes) {
  if (!IsFull(parser))
    return;
  std::string code = Attribute(attributes, "code");
  operation.hasError = true;
  operation.errorCode = parser.ConvertUnsignedInt(code);
  operation.errorDescription = Attribute(attributes, "description");
  operation.firstErrorInstance = ObjectsDelivered(parser);
  roleBefore = RoleOpen(parser);
  RoleOpen(parser) = "ERROR";
}

void TCIMXMLParser::TStateError::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                              const TAttributeList &attributes) {
  if (IsFull(parser)) {
    static constexpr TChildRow kRows[] = {
        Child<TStateInstance, TStateError>("instance"),
    };
    AcceptChild(parser, name, attributes, kRows, kAnyOrder);
    return;
  }
  // A child named "6" is passed over without entering it or handing on its
  // attributes. No XML name can be "6", so every element child is refused.
  if (name == "6")
    return;
  AcceptChild(parser, name, attributes, nullptr, 0, kAnyOrder);
}

void TCIMXMLParser::TStateError::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  if (IsFull(parser)) {
    operation.errorInstanceCount = ObjectsDelivered(parser) - operation.firstErrorInstance;
    RoleOpen(parser) = roleBefore;
  }
  Pop(parser);
}

// paramvalue, returnvalue, expparamvalue -----------------------------------

void TCIMXMLParser::TStateParamValue::ElementStart(TCIMXMLParser &parser,
                                                   const TAttributeList &attributes) {
  OpenArgument(parser, attributes);
  valueType = ParamType(attributes);
}

void TCIMXMLParser::TStateParamValue::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                   const TAttributeList &attributes) {
  using TSelf = TStateParamValue;
  static constexpr TChildRow kRows[] = {
      Child<TStateValue, TSelf>("value", kObject, kObject, kDone),
      Child<TStateValueReference, TSelf>("value.reference", kObject, kObject, kDone),
      Child<TStateValueArray, TSelf>("value.array", kObject, kObject, kDone),
      Child<TStateValueRefArray, TSelf>("value.refarray", kObject, kObject, kDone),
      Child<TStateClassName, TSelf>("classname", kObject, kObject, kDone),
      Child<TStateInstanceName, TSelf>("instancename", kObject, kObject, kDone),
      Child<TStateClass, TSelf>("class", kObject, kObject, kDone),
      Child<TStateInstance, TSelf>("instance", kObject, kObject, kDone),
      Child<TStateValueNamedInstance, TSelf>("value.namedinstance", kObject, kObject, kDone),
  };
  AcceptChild(parser, name, attributes, kRows, kDone);
}

void TCIMXMLParser::TStateParamValue::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  CloseArgument(parser, &operation.parameters);
}

void TCIMXMLParser::TStateReturnValue::ElementStart(TCIMXMLParser &parser,
                                                    const TAttributeList &attributes) {
  OpenArgument(parser, attributes);
  valueType = ParamType(attributes);
}

void TCIMXMLParser::TStateReturnValue::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                    const TAttributeList &attributes) {
  using TSelf = TStateReturnValue;
  static constexpr TChildRow kRows[] = {
      Child<TStateValue, TSelf>("value", kObject, kObject, kDone),
      Child<TStateValueReference, TSelf>("value.reference", kObject, kObject, kDone),
  };
  AcceptChild(parser, name, attributes, kRows, kDone);
}

void TCIMXMLParser::TStateReturnValue::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  operation.hasReturnValue = true;
  CloseArgument(parser, nullptr);
  operation.returnValue = argument;
}

void TCIMXMLParser::TStateExpParamValue::ElementStart(TCIMXMLParser &parser,
                                                      const TAttributeList &attributes) {
  OpenArgument(parser, attributes);
}

void TCIMXMLParser::TStateExpParamValue::ChildElement(TCIMXMLParser &parser,
                                                      const std::string &name,
                                                      const TAttributeList &attributes) {
  static constexpr TChildRow kRows[] = {
      Child<TStateInstance, TStateExpParamValue>("instance", kObject, kObject, kDone),
  };
  AcceptChild(parser, name, attributes, kRows, kDone);
}

void TCIMXMLParser::TStateExpParamValue::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  CloseArgument(parser, &operation.parameters);
}

// ireturnvalue -------------------------------------------------------------

void TCIMXMLParser::TStateIReturnValue::ElementStart(TCIMXMLParser &parser,
                                                     const TAttributeList &attributes) {
  if (IsFull(parser))
    OpenArgument(parser, attributes);
}

void TCIMXMLParser::TStateIReturnValue::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                     const TAttributeList &attributes) {
  using TSelf = TStateIReturnValue;
  static constexpr TChildRow kRows[] = {
      ClassicChild<TStateClass, TSelf>("class", kObject, kObject, kDone),
      ClassicChild<TStateValueNamedInstance, TSelf>("value.namedinstance", kObject, kObject, kDone),
      ClassicChild<TStateQualifierDeclaration, TSelf>("qualifier.declaration", kObject, kObject,
                                                      kDone),
      FullChild<TStateClassName, TSelf>("classname"),
      FullChild<TStateInstanceName, TSelf>("instancename"),
      FullChild<TStateValue, TSelf>("value"),
      FullChild<TStateValueObjectWithPath, TSelf>("value.objectwithpath"),
      FullChild<TStateValueObjectWithLocalPath, TSelf>("value.objectwithlocalpath"),
      FullChild<TStateValueObject, TSelf>("value.object"),
      FullChild<TStateObjectPath, TSelf>("objectpath"),
      FullChild<TStateQualifierDeclaration, TSelf>("qualifier.declaration"),
      FullChild<TStateValueArray, TSelf>("value.array"),
      FullChild<TStateValueReference, TSelf>("value.reference"),
      FullChild<TStateClass, TSelf>("class"),
      FullChild<TStateInstance, TSelf>("instance"),
      FullChild<TStateInstancePath, TSelf>("instancepath"),
      FullChild<TStateValueNamedInstance, TSelf>("value.namedinstance"),
      FullChild<TStateValueInstanceWithPath, TSelf>("value.instancewithpath"),
  };
  if (IsFull(parser)) {
    // One kind of child throughout; an array or a reference comes alone.
    const bool single = name == "value.array" || name == "value.reference";
    if (!childKind.empty() && (name != childKind || single))
      parser.FatalError(("Unexpected element " + name).c_str());
    if (valueSeen) {
      values.push_back(value);
      valueSeen = false;
    }
  }
  AcceptChild(parser, name, attributes, kRows, kDone);
  childKind = name;
}

void TCIMXMLParser::TStateIReturnValue::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  if (IsFull(parser)) {
    if (valueSeen)
      values.push_back(value);
    valueSeen = values.size() == 1 || values.size() > 1;
    if (values.size() == 1)
      value = values.front();
    else if (values.size() > 1)
      value.Set(TCIMType(kCIMTypeString), 0, values);
    operation.hasReturnValue = true;
    CloseArgument(parser, nullptr);
    operation.returnValue = argument;
    return;
  }
  RequireComplete(parser, kDone);
  // Named instances and qualifier declarations have finished themselves.
  if (isClass) {
    Require(cls).Commit();
    Collect(parser, cls);
  }
  Pop(parser);
}

} // namespace NVRNORV20
