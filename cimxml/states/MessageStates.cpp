#include "cimxml/states/MessageStates.h"

#include "cimxml/states/ClassStates.h"
#include "cimxml/states/InstanceStates.h"
#include "cimxml/states/PathStates.h"
#include "cimxml/states/QualifierDeclStates.h"

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

} // namespace

// message ------------------------------------------------------------------

void TCIMXMLParser::TStateMessage::ElementStart(TCIMXMLParser &parser, TAttributes &attributes) {
  // "id" and anything else are ignored; only a version that is there and
  // not ours is refused.
  auto version = attributes.find("protocolversion");
  if (version != attributes.end() && version->second != "1.0")
    parser.FatalError("Unknown protocol version");
}

void TCIMXMLParser::TStateMessage::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      Child<TStateSimpleReq, TStateMessage>("simplereq"),
      Child<TStateMultiReq, TStateMessage>("multireq"),
      Child<TStateSimpleRsp, TStateMessage>("simplersp"),
  };
  AcceptChild(parser, name, attributes, kRows, kAnyOrder);
}

// multireq -----------------------------------------------------------------

void TCIMXMLParser::TStateMultiReq::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                 TAttributes &attributes) {
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

// simplereq, imethodcall ---------------------------------------------------

void TCIMXMLParser::TStateSimpleReq::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                  TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      Child<TStateIMethodCall, TStateSimpleReq>("imethodcall"),
  };
  AcceptChild(parser, name, attributes, kRows, kAnyOrder);
}

void TCIMXMLParser::TStateIMethodCall::ElementStart(TCIMXMLParser &parser,
                                                    TAttributes &attributes) {
  for (auto attribute = attributes.begin(); attribute != attributes.end(); ++attribute)
    parser.HandleCIMName(attribute, &methodName);
  // Which object is made follows from the parameter alone; the name only
  // screens out the operations that load nothing.
  if (!IsAcceptedMethod(methodName))
    parser.FatalError(("Unexpected IMethodCall method " + methodName).c_str());
}

void TCIMXMLParser::TStateIMethodCall::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                    TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      Child<TStateLocalNamespacePath, TStateIMethodCall>("localnamespacepath", kNamespacePath,
                                                         kNamespacePath, kParameters),
      Child<TStateIParamValue, TStateIMethodCall>("iparamvalue", kParameters, kParameters,
                                                  kKeepPhase),
  };
  AcceptChild(parser, name, attributes, kRows, kParameters);
}

// iparamvalue --------------------------------------------------------------

void TCIMXMLParser::TStateIParamValue::ElementStart(TCIMXMLParser &parser,
                                                    TAttributes &attributes) {
  for (auto attribute = attributes.begin(); attribute != attributes.end(); ++attribute)
    parser.HandleCIMName(attribute, &parameterName);
  if (!IsAcceptedParameter(parameterName))
    parser.FatalError("Unexpected IParamValue parameter name");
}

void TCIMXMLParser::TStateIParamValue::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                    TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      Child<TStateClass, TStateIParamValue>("class", kObject, kObject, kDone),
      Child<TStateInstance, TStateIParamValue>("instance", kObject, kObject, kDone),
  };
  AcceptChild(parser, name, attributes, kRows, kDone);
}

void TCIMXMLParser::TStateIParamValue::ElementEnd(TCIMXMLParser &parser, const std::string &) {
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
                                                  TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      Child<TStateMethodResponse, TStateSimpleRsp>("imethodresponse"),
  };
  AcceptChild(parser, name, attributes, kRows, kAnyOrder);
}

void TCIMXMLParser::TStateMethodResponse::ChildElement(TCIMXMLParser &parser,
                                                       const std::string &name,
                                                       TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      Child<TStateIReturnValue, TStateMethodResponse>("ireturnvalue", kEmpty, kAnswered, kAnswered),
      Child<TStateError, TStateMethodResponse>("error", kEmpty, kAnswered, kAnswered),
  };
  AcceptChild(parser, name, attributes, kRows, kAnswered);
}

void TCIMXMLParser::TStateError::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                              TAttributes &attributes) {
  // A child named "6" is passed over without entering it or handing on its
  // attributes. No XML name can be "6", so every element child is refused.
  if (name == "6")
    return;
  AcceptChild(parser, name, attributes, nullptr, 0, kAnyOrder);
}

// ireturnvalue -------------------------------------------------------------

void TCIMXMLParser::TStateIReturnValue::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                     TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      Child<TStateClass, TStateIReturnValue>("class", kObject, kObject, kDone),
      Child<TStateValueNamedInstance, TStateIReturnValue>("value.namedinstance", kObject, kObject,
                                                          kDone),
      Child<TStateQualifierDeclaration, TStateIReturnValue>("qualifier.declaration", kObject,
                                                            kObject, kDone),
  };
  AcceptChild(parser, name, attributes, kRows, kDone);
}

void TCIMXMLParser::TStateIReturnValue::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  RequireComplete(parser, kDone);
  // Named instances and qualifier declarations have finished themselves.
  if (isClass) {
    Require(cls).Commit();
    Collect(parser, cls);
  }
  Pop(parser);
}

} // namespace NVRNORV20
