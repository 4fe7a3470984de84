// What the full grammar gives back from a document: its objects (qualifier
// declarations, classes, instances, paths that stand alone), its messages
// and their operations. A handler receives each as soon as it is complete;
// TCIMXMLResult is the handler that keeps everything.
#ifndef ORV_CIMXML_CIMXMLDOCUMENT_H
#define ORV_CIMXML_CIMXMLDOCUMENT_H

#include "core_api/CIMInterfaces.h"
#include "core_api/CIMReference.h"
#include "core_api/CIMValue.h"
#include "core_api/ORVExport.h"

#include <boost/shared_ptr.hpp>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace NVRNORV20 {

/// Which grammar a parser reads.
enum class ECIMXMLGrammar {
  /// What the loaders have always read: declarations and the CreateClass
  /// and CreateInstance requests, with every behaviour they had.
  kClassic,
  /// Every element of the DSP0201 2.4 DTD wherever the DTD allows it:
  /// declarations, all operation and export messages, objects with their
  /// paths, and instances of classes the namespace does not know.
  kFull,
};

/// Where the full grammar puts the objects it reads.
enum class ECIMXMLRegistration {
  /// Qualifier declarations, classes and instances are also registered in
  /// the namespace, as the classic grammar does.
  kRegister,
  /// They are only handed back; the namespace is read for typing, never
  /// changed.
  kReturnOnly,
};

/// How a document is read.
struct TCIMXMLReadOptions {
  ECIMXMLGrammar grammar = ECIMXMLGrammar::kClassic;
  ECIMXMLRegistration registration = ECIMXMLRegistration::kRegister;
};

/// A path as the document wrote it.
struct TCIMXMLPath {
  enum class EKind : std::uint8_t {
    /// Only a namespace (an intrinsic call's target).
    kNamespace,
    kClass,
    kInstance,
  };
  EKind kind = EKind::kClass;
  /// For class and instance paths, the class name and, for an instance, its
  /// key bindings in document order. Its namespace name is the path's
  /// NAMESPACE elements joined with "/", empty when it has none; its host
  /// the HOST of a NAMESPACEPATH, empty for a local path.
  TCIMReference reference;
};

/// One object of the document, handed over when its end tag is read.
struct TCIMXMLObject {
  enum class EKind : std::uint8_t {
    kQualifierDecl,
    kClass,
    kInstance,
    /// A class path standing alone (CLASSNAME, CLASSPATH, LOCALCLASSPATH,
    /// an OBJECTPATH holding a CLASSPATH) in a return value or parameter,
    /// or as the document's root.
    kClassPath,
    /// An instance path standing alone likewise (INSTANCENAME,
    /// INSTANCEPATH, LOCALINSTANCEPATH, OBJECTPATH).
    kInstancePath,
  };
  EKind kind = EKind::kInstance;
  /// Set for kQualifierDecl, kClass and kInstance respectively.
  boost::shared_ptr<ICIMQualifierDecl> qualifierDecl;
  boost::shared_ptr<ICIMClass> cimClass;
  boost::shared_ptr<ICIMInstance> instance;
  /// The object's path where the document gave one (VALUE.NAMEDINSTANCE,
  /// VALUE.INSTANCEWITHPATH, VALUE.OBJECTWITHPATH,
  /// VALUE.OBJECTWITHLOCALPATH, VALUE.NAMEDOBJECT), and for the path kinds
  /// the path itself.
  bool hasPath = false;
  TCIMXMLPath path;
  /// True when the object is also registered in the namespace.
  bool registered = false;
  /// The line of the object's start tag.
  unsigned line = 0;
  /// The object's place among the document's objects, from 0.
  std::size_t sequence = 0;
  /// The operation it belongs to (its sequence among the document's
  /// operations), or -1 for an object outside any operation.
  std::ptrdiff_t operation = -1;
  /// Within that operation: the parameter's name, "" for the return value,
  /// "ERROR" for an instance of an error.
  std::string role;
};

/// A typed value of a parameter or return value, or the objects given in
/// its place.
struct TCIMXMLArgument {
  std::string name;
  /// PARAMTYPE, or the type the value was read with; none when absent.
  TCIMType type;
  /// The value (scalar, array, reference or array of references); null when
  /// the element was empty or held objects instead.
  TCIMValue value;
  /// The EmbeddedObject attribute ("object", "instance"), else empty.
  std::string embeddedObject;
  /// The objects and paths that were its value: their sequence numbers are
  /// firstObject .. firstObject + objectCount - 1.
  std::size_t firstObject = 0;
  std::size_t objectCount = 0;
};

/// A CORRELATOR of a request.
struct TCIMXMLCorrelator {
  std::string name;
  TCIMValue value;
};

/// One operation: a call or a response, intrinsic, extrinsic or export.
struct TCIMXMLOperation {
  enum class EKind : std::uint8_t {
    kIntrinsicCall,     // IMETHODCALL
    kExtrinsicCall,     // METHODCALL
    kExportCall,        // EXPMETHODCALL
    kIntrinsicResponse, // IMETHODRESPONSE
    kExtrinsicResponse, // METHODRESPONSE
    kExportResponse,    // EXPMETHODRESPONSE
  };
  EKind kind = EKind::kIntrinsicCall;
  /// The NAME attribute, as the document gives it.
  std::string method;
  /// The call's target: the namespace of an intrinsic call, the class or
  /// instance path of an extrinsic one. hasTarget is false for responses and
  /// export calls.
  bool hasTarget = false;
  TCIMXMLPath target;
  /// IPARAMVALUE, PARAMVALUE or EXPPARAMVALUE elements, in document order;
  /// for responses their output parameters.
  std::vector<TCIMXMLArgument> parameters;
  /// IRETURNVALUE or RETURNVALUE.
  bool hasReturnValue = false;
  TCIMXMLArgument returnValue;
  /// ERROR: its CODE, DESCRIPTION and instances (objects whose role is
  /// "ERROR").
  bool hasError = false;
  std::uint32_t errorCode = 0;
  std::string errorDescription;
  std::size_t firstErrorInstance = 0;
  std::size_t errorInstanceCount = 0;
  std::vector<TCIMXMLCorrelator> correlators;
  /// The operation's place among the document's operations, from 0, and the
  /// message it belongs to.
  std::size_t sequence = 0;
  std::size_t message = 0;
  unsigned line = 0;
};

/// One MESSAGE element.
struct TCIMXMLMessage {
  enum class EKind : std::uint8_t {
    kSimpleRequest,
    kMultipleRequest,
    kSimpleResponse,
    kMultipleResponse,
    kSimpleExportRequest,
    kMultipleExportRequest,
    kSimpleExportResponse,
    kMultipleExportResponse,
  };
  std::string id;
  std::string protocolVersion;
  EKind kind = EKind::kSimpleRequest;
  /// Its operations' sequence numbers are firstOperation ..
  /// firstOperation + operationCount - 1.
  std::size_t firstOperation = 0;
  std::size_t operationCount = 0;
  std::size_t sequence = 0;
  unsigned line = 0;
};

/// Receives what the full grammar reads, one piece at a time, in document
/// order of the end tags: an object inside an operation arrives before the
/// operation, and operations before their message. Nothing handed over is
/// kept by the parser, so a handler that keeps nothing reads a document of
/// any size in the memory of its largest single object.
class ORVCIMXML_API ICIMXMLHandler {
public:
  ICIMXMLHandler() = default;
  ICIMXMLHandler(const ICIMXMLHandler &) = default;
  ICIMXMLHandler &operator=(const ICIMXMLHandler &) = default;
  virtual ~ICIMXMLHandler();

  virtual void Object(const TCIMXMLObject &object) = 0;
  /// The default ignores it.
  virtual void Operation(const TCIMXMLOperation &operation);
  /// The default ignores it.
  virtual void Message(const TCIMXMLMessage &message);
};

/// The handler that keeps everything, in document order.
class ORVCIMXML_API TCIMXMLResult : public ICIMXMLHandler {
public:
  void Object(const TCIMXMLObject &object) override;
  void Operation(const TCIMXMLOperation &operation) override;
  void Message(const TCIMXMLMessage &message) override;

  /// Indexed by sequence.
  const std::vector<TCIMXMLObject> &GetObjects() const { return objects; }
  const std::vector<TCIMXMLOperation> &GetOperations() const { return operations; }
  const std::vector<TCIMXMLMessage> &GetMessages() const { return messages; }

  /// How many objects of the kind were read.
  std::size_t Count(TCIMXMLObject::EKind kind) const;

private:
  std::vector<TCIMXMLObject> objects;
  std::vector<TCIMXMLOperation> operations;
  std::vector<TCIMXMLMessage> messages;
};

} // namespace NVRNORV20

#endif
