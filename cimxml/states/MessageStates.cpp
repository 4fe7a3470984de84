#include "cimxml/states/MessageStates.h"

#include "cimxml/states/ClassStates.h"
#include "cimxml/states/InstanceStates.h"
#include "cimxml/states/PathStates.h"
#include "cimxml/states/QualifierDeclStates.h"

#include <boost/make_shared.hpp>

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
      {"simplereq", 0, 0, kKeepPhase, &MakeSimpleReq},
      {"multireq", 0, 0, kKeepPhase, &MakeMultiReq},
      {"simplersp", 0, 0, kKeepPhase, &MakeSimpleRsp},
  };
  AcceptChild(parser, name, attributes, kRows, 0);
}

TCIMXMLParser::TParseStatePtr TCIMXMLParser::TStateMessage::MakeSimpleReq(TCIMXMLParser &,
                                                                          TParseState &) {
  return boost::make_shared<TStateSimpleReq>();
}

TCIMXMLParser::TParseStatePtr TCIMXMLParser::TStateMessage::MakeMultiReq(TCIMXMLParser &,
                                                                         TParseState &) {
  return boost::make_shared<TStateMultiReq>();
}

TCIMXMLParser::TParseStatePtr TCIMXMLParser::TStateMessage::MakeSimpleRsp(TCIMXMLParser &,
                                                                          TParseState &) {
  return boost::make_shared<TStateSimpleRsp>();
}

// multireq -----------------------------------------------------------------

void TCIMXMLParser::TStateMultiReq::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                 TAttributes &attributes) {
  // The phase counts requests up to two; later ones leave it at 2.
  static constexpr TChildRow kRows[] = {
      {"simplereq", 0, 0, 1, &MakeSimpleReq},
      {"simplereq", 1, 2, 2, &MakeSimpleReq},
  };
  AcceptChild(parser, name, attributes, kRows, 2);
}

TCIMXMLParser::TParseStatePtr TCIMXMLParser::TStateMultiReq::MakeSimpleReq(TCIMXMLParser &,
                                                                           TParseState &) {
  return boost::make_shared<TStateSimpleReq>();
}

void TCIMXMLParser::TStateMultiReq::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  if (phase != 2)
    parser.FatalError("Invalid MULTIREQ");
  Pop(parser);
}

// simplereq, imethodcall ---------------------------------------------------

void TCIMXMLParser::TStateSimpleReq::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                  TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      {"imethodcall", 0, 0, kKeepPhase, &MakeIMethodCall},
  };
  AcceptChild(parser, name, attributes, kRows, 0);
}

TCIMXMLParser::TParseStatePtr TCIMXMLParser::TStateSimpleReq::MakeIMethodCall(TCIMXMLParser &,
                                                                              TParseState &) {
  return boost::make_shared<TStateIMethodCall>();
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
      {"localnamespacepath", 0, 0, 1, &MakeLocalNamespacePath},
      {"iparamvalue", 1, 1, kKeepPhase, &MakeIParamValue},
  };
  AcceptChild(parser, name, attributes, kRows, 1);
}

TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStateIMethodCall::MakeLocalNamespacePath(TCIMXMLParser &, TParseState &parent) {
  auto &self = static_cast<TStateIMethodCall &>(parent);
  return boost::make_shared<TStateLocalNamespacePath>(self.namespacePath);
}

TCIMXMLParser::TParseStatePtr TCIMXMLParser::TStateIMethodCall::MakeIParamValue(TCIMXMLParser &,
                                                                                TParseState &) {
  return boost::make_shared<TStateIParamValue>();
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
      {"class", 0, 0, 1, &MakeClass},
      {"instance", 0, 0, 1, &MakeInstance},
  };
  AcceptChild(parser, name, attributes, kRows, 1);
}

TCIMXMLParser::TParseStatePtr TCIMXMLParser::TStateIParamValue::MakeClass(TCIMXMLParser &,
                                                                          TParseState &parent) {
  auto &self = static_cast<TStateIParamValue &>(parent);
  self.isClass = true;
  return boost::make_shared<TStateClass>(self.cls);
}

TCIMXMLParser::TParseStatePtr TCIMXMLParser::TStateIParamValue::MakeInstance(TCIMXMLParser &,
                                                                             TParseState &parent) {
  auto &self = static_cast<TStateIParamValue &>(parent);
  return boost::make_shared<TStateInstance>(self.instance);
}

void TCIMXMLParser::TStateIParamValue::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  if (phase != 1)
    parser.FatalError("CIM element syntax error");
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
      {"imethodresponse", 0, 0, kKeepPhase, &MakeMethodResponse},
  };
  AcceptChild(parser, name, attributes, kRows, 0);
}

TCIMXMLParser::TParseStatePtr TCIMXMLParser::TStateSimpleRsp::MakeMethodResponse(TCIMXMLParser &,
                                                                                 TParseState &) {
  return boost::make_shared<TStateMethodResponse>();
}

void TCIMXMLParser::TStateMethodResponse::ChildElement(TCIMXMLParser &parser,
                                                       const std::string &name,
                                                       TAttributes &attributes) {
  // The phase records that something came but is never read: return values
  // and errors mix freely.
  static constexpr TChildRow kRows[] = {
      {"ireturnvalue", 0, 1, 1, &MakeIReturnValue},
      {"error", 0, 1, 1, &MakeError},
  };
  AcceptChild(parser, name, attributes, kRows, 1);
}

TCIMXMLParser::TParseStatePtr TCIMXMLParser::TStateMethodResponse::MakeIReturnValue(TCIMXMLParser &,
                                                                                    TParseState &) {
  return boost::make_shared<TStateIReturnValue>();
}

TCIMXMLParser::TParseStatePtr TCIMXMLParser::TStateMethodResponse::MakeError(TCIMXMLParser &,
                                                                             TParseState &) {
  return boost::make_shared<TStateError>();
}

void TCIMXMLParser::TStateError::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                              TAttributes &attributes) {
  // A child named "6" is passed over without entering it or handing on its
  // attributes. No XML name can be "6", so every element child is refused.
  if (name == "6")
    return;
  AcceptChild(parser, name, attributes, nullptr, 0, 0);
}

// ireturnvalue -------------------------------------------------------------

void TCIMXMLParser::TStateIReturnValue::ChildElement(TCIMXMLParser &parser, const std::string &name,
                                                     TAttributes &attributes) {
  static constexpr TChildRow kRows[] = {
      {"class", 0, 0, 1, &MakeClass},
      {"value.namedinstance", 0, 0, 1, &MakeValueNamedInstance},
      {"qualifier.declaration", 0, 0, 1, &MakeQualifierDeclaration},
  };
  AcceptChild(parser, name, attributes, kRows, 1);
}

TCIMXMLParser::TParseStatePtr TCIMXMLParser::TStateIReturnValue::MakeClass(TCIMXMLParser &,
                                                                           TParseState &parent) {
  auto &self = static_cast<TStateIReturnValue &>(parent);
  self.isClass = true;
  return boost::make_shared<TStateClass>(self.cls);
}

TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStateIReturnValue::MakeValueNamedInstance(TCIMXMLParser &, TParseState &) {
  return boost::make_shared<TStateValueNamedInstance>();
}

TCIMXMLParser::TParseStatePtr
TCIMXMLParser::TStateIReturnValue::MakeQualifierDeclaration(TCIMXMLParser &, TParseState &) {
  return boost::make_shared<TStateQualifierDeclaration>();
}

void TCIMXMLParser::TStateIReturnValue::ElementEnd(TCIMXMLParser &parser, const std::string &) {
  if (phase != 1)
    parser.FatalError("CIM element syntax error");
  // Named instances and qualifier declarations have finished themselves.
  if (isClass) {
    Require(cls).Commit();
    Collect(parser, cls);
  }
  Pop(parser);
}

} // namespace NVRNORV20
