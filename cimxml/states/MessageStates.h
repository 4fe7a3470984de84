// Parse states for CIM operation messages, as far as loading needs them:
// requests that create a class or an instance, and responses of intrinsic
// methods whose return value carries a class, a named instance or a
// qualifier declaration. Objects of a request are committed to the parser's
// namespace; classes of a response are committed and collected. Everything
// else a message may hold (extrinsic calls, other parameters, exports) is
// "Unexpected element " + name.
#ifndef ORV_CIMXML_STATES_MESSAGESTATES_H
#define ORV_CIMXML_STATES_MESSAGESTATES_H

#include "cimxml/CIMXMLParser.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <string>

namespace NVRNORV20 {

/// "message": one simple request, multiple request or simple response per
/// child, in any number. A "protocolversion" other than "1.0" is "Unknown
/// protocol version"; a missing one is accepted.
class TCIMXMLParser::TStateMessage : public TCIMXMLParser::TParseState {
public:
  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    TAttributes &attributes) override;
  void ElementStart(TCIMXMLParser &parser, TAttributes &attributes) override;
};

/// "multireq": simple requests; fewer than two is "Invalid MULTIREQ" at the
/// end.
class TCIMXMLParser::TStateMultiReq : public TCIMXMLParser::TParseState {
public:
  /// Counts requests up to two; later ones leave it at two.
  enum EPhase : std::int32_t { kNoRequest, kOneRequest, kRequests };

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    TAttributes &attributes) override;
  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override;
};

/// "simplereq": intrinsic method calls only.
class TCIMXMLParser::TStateSimpleReq : public TCIMXMLParser::TParseState {
public:
  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    TAttributes &attributes) override;
};

/// "imethodcall": a local namespace path (read, not used: objects go to the
/// parser's namespace), then parameters. A method other than "CreateClass",
/// "CreateInstance" or "Create Instance" is "Unexpected IMethodCall method "
/// + name.
class TCIMXMLParser::TStateIMethodCall : public TCIMXMLParser::TParseState {
public:
  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    TAttributes &attributes) override;
  void ElementStart(TCIMXMLParser &parser, TAttributes &attributes) override;

  enum EPhase : std::int32_t { kNamespacePath, kParameters };

  /// Filled by the namespace-path child; not read afterwards.
  std::string namespacePath;

private:
  std::string methodName;
};

/// "iparamvalue": "NewClass" or "NewInstance" (else "Unexpected IParamValue
/// parameter name"), holding exactly one class or instance, which is
/// committed at the end; none is "CIM element syntax error". The parameter
/// name does not have to match the kind of object.
class TCIMXMLParser::TStateIParamValue : public TCIMXMLParser::TParseState {
public:
  enum EPhase : std::int32_t { kObject, kDone };

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    TAttributes &attributes) override;
  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override;
  void ElementStart(TCIMXMLParser &parser, TAttributes &attributes) override;

  // What the object children write into.
  bool isClass = false;
  boost::shared_ptr<ICIMClass> cls;
  boost::shared_ptr<ICIMInstance> instance;

private:
  std::string parameterName;
};

/// "simplersp": intrinsic method responses only.
class TCIMXMLParser::TStateSimpleRsp : public TCIMXMLParser::TParseState {
public:
  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    TAttributes &attributes) override;
};

/// "imethodresponse": return values and errors, any number in any order.
class TCIMXMLParser::TStateMethodResponse : public TCIMXMLParser::TParseState {
public:
  /// Records that something came, but is never read: return values and
  /// errors mix freely.
  enum EPhase : std::int32_t { kEmpty, kAnswered };

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    TAttributes &attributes) override;
};

/// "error": its attributes are not read. A child element named "6" is
/// passed over silently; any other is "Unexpected element " + name.
class TCIMXMLParser::TStateError : public TCIMXMLParser::TParseState {
public:
  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    TAttributes &attributes) override;
};

/// "ireturnvalue": exactly one class, named instance or qualifier
/// declaration; none is "CIM element syntax error" at the end. A class is
/// committed and collected at the end; the other two are finished by their
/// own states.
class TCIMXMLParser::TStateIReturnValue : public TCIMXMLParser::TParseState {
public:
  enum EPhase : std::int32_t { kObject, kDone };

  void ChildElement(TCIMXMLParser &parser, const std::string &name,
                    TAttributes &attributes) override;
  void ElementEnd(TCIMXMLParser &parser, const std::string &name) override;

  // What the class child writes into.
  bool isClass = false;
  boost::shared_ptr<ICIMClass> cls;
};

} // namespace NVRNORV20

#endif
