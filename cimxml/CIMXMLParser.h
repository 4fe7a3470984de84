// The CIM-XML parser: the tokenizer's handler that keeps a stack of parse
// states, one kind of state per CIM-XML element, and hands every event to the
// state on top. It contains errors: an element that a state rejects is logged
// with its line and skipped, and the parse goes on.
#ifndef ORV_CIMXML_CIMXMLPARSER_H
#define ORV_CIMXML_CIMXMLPARSER_H

#include "cimxml/CIMXMLDocument.h"
#include "core_api/CIMInterfaces.h"
#include "core_api/CIMValue.h"
#include "core_api/ORVExport.h"
#include "xml/XmlParser.h"

#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include <cstddef>
#include <cstdint>
#include <deque>
#include <locale>
#include <string>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <vector>

namespace NVRNORV20 {

class ORVCIMXML_API TCIMXMLParser : public TXmlParser {
public:
  class TParseState;
  using TParseStatePtr = boost::shared_ptr<TParseState>;

  // Every parse state, by family; each family's header defines its states.
  // Root and declaration groups:
  class TStateStart;
  class TStateCIM;
  class TStateDeclaration;
  class TStateDeclGroup;
  class TStateDeclGroupWithName;
  class TStateDeclGroupWithPath;
  // Classes:
  class TStateClass;
  // Properties, declaration and value variants:
  class TStatePropertyDecl;
  class TStatePropertyArrayDecl;
  class TStatePropertyReferenceDecl;
  class TStateProperty;
  class TStatePropertyArray;
  class TStatePropertyReference;
  // Qualifiers and values:
  class TStateQualifier;
  class TStateValue;
  class TStateValueArray;
  // Qualifier declarations:
  class TStateQualifierDeclaration;
  class TStateScope;
  // Methods and parameters:
  class TStateMethod;
  class TStateParameter;
  class TStateParameterReference;
  class TStateParameterArray;
  class TStateParameterRefArray;
  // Instances and value objects:
  class TStateInstance;
  class TStateInstanceQualifier;
  class TStateValueObject;
  class TStateValueNamedInstance;
  class TStateValueNamedObject;
  class TStateValueObjectWithPath;
  class TStateValueObjectWithLocalPath;
  // Paths:
  class TStateNamespacePath;
  class TStateLocalNamespacePath;
  class TStateHost;
  class TStateNamespace;
  class TStateClassPath;
  class TStateLocalClassPath;
  class TStateClassName;
  class TStateInstancePath;
  class TStateLocalInstancePath;
  // Instance names, key bindings and references:
  class TStateInstanceName;
  class TStateKeyBinding;
  class TStateKeyValue;
  class TStateValueReference;
  class TStateDropped;
  // Operation messages:
  class TStateMessage;
  class TStateMultiReq;
  class TStateSimpleReq;
  class TStateIMethodCall;
  class TStateIParamValue;
  class TStateSimpleRsp;
  class TStateMethodResponse;
  class TStateError;
  class TStateIReturnValue;
  // Elements that only the full grammar reads:
  class TStateValueNull;
  class TStateValueRefArray;
  class TStateValueInstanceWithPath;
  class TStateObjectPath;
  class TStateMethodCall;
  class TStateParamValue;
  class TStateReturnValue;
  class TStateCorrelator;
  class TStateOperation;
  class TStateExtrinsicResponse;
  class TStateMultiRsp;
  class TStateExpRequest;
  class TStateMultiExpReq;
  class TStateExpMethodCall;
  class TStateExpParamValue;
  class TStateExpResponse;
  class TStateMultiExpRsp;
  class TStateExpMethodResponse;

  /// The largest document, in bytes, that the loaders read whole; larger
  /// ones are cut.
  static const std::uint32_t kMaxSpecificationDocumentSize = 524288000;

  /// Binds the parser to ns without keeping it alive, and pushes the
  /// initial state, which accepts only the root element "cim".
  explicit TCIMXMLParser(boost::shared_ptr<ICIMNamespace> ns);
  /// Member-wise: a copy shares the state objects, not clones of them.
  TCIMXMLParser(const TCIMXMLParser &other);
  TCIMXMLParser &operator=(const TCIMXMLParser &other);
  ~TCIMXMLParser() override;

  /// Tokenizes the buffer as TXmlParser::Parse does. A parser whose last
  /// parse did not end with the document complete (it threw, or stopped
  /// with elements open or its stack emptied) first drops what that parse
  /// left and starts from the initial state again; the classes and
  /// instances collected so far stay.
  void Parse(char *buffer);

  /// Folds the name to lower case and hands it to the top state. A
  /// TORVException raised there is contained; statuses 36 and 8 become the
  /// marker entries of the attribute map.
  void StartElement(const char *name, TAttributes &attributes) override;
  /// Hands the folded name to the top state's end handler. A TORVException
  /// raised there is logged, the state popped, and the parse goes on. An
  /// empty stack throws status 3.
  void EndElement(const char *name) override;
  void processingInstruction(const char *target, const char *data) override;
  /// Appends to the character-data buffer; states that hold text empty it
  /// when they are pushed and read it at their end.
  void characters(const char *data, unsigned int length) override;
  void notationDecl(const char *name, const char *publicId, const char *systemId) override;
  /// In the full grammar a character that XML 1.0 does not allow is logged
  /// with its line and dropped; the parse goes on.
  void CharacterError(const char *message) override;
  /// Logs "CIM-XML Parser line N:" + message at level 3 and throws status 9.
  [[noreturn]] void FatalError(const char *message) override;

protected:
  /// True for this class itself. A subclass may override GetAttributeNValue
  /// or StartElement, so its start tags take the map path.
  bool ReadsAttributeLists() const override;
  /// Folds the name and hands the start tag to the top state; StartElement
  /// comes here with its map's entries as a list.
  EStartVerdict StartElementList(const char *name, const TXmlAttributeList &attributes) override;

public:
  /// Chooses the grammar, and where the full grammar puts what it reads,
  /// for the parses that follow. The default is the classic grammar.
  void SetReadOptions(const TCIMXMLReadOptions &options);
  const TCIMXMLReadOptions &GetReadOptions() const { return readOptions; }
  /// The full grammar hands every object, operation and message to the
  /// handler (not owned; it must outlive the parses). Without one, it keeps
  /// the classes and instances it reads in the collections below.
  void SetHandler(ICIMXMLHandler *documentHandler) { handler = documentHandler; }

  std::vector<boost::shared_ptr<ICIMClass>> GetClassesCollected() const;
  std::vector<boost::shared_ptr<ICIMInstance>> GetInstancesCollected() const;
  /// Skips the property-type check at the start of an instance's property
  /// (and leaves a property of another type unset at its end instead).
  /// There is no way back.
  void SetQN402Mode();

  // Attribute handlers: each takes one entry of a start tag's attribute map
  // and, when the entry's name is its attribute's, stores the converted
  // value and returns true; otherwise it returns false and stores nothing.
  bool HandleCIMName(TAttributes::iterator &attribute, std::string *name);
  /// A type name that the object model does not know throws from here.
  bool HandleCIMType(TAttributes::iterator &attribute, TCIMType *type);
  bool HandleClassName(TAttributes::iterator &attribute, std::string *className);
  bool HandleClassOrigin(TAttributes::iterator &attribute, std::string *classOrigin);
  bool HandlePropagated(TAttributes::iterator &attribute, bool &propagated);
  /// "overridable", "tosubclass", "translatable": sets or clears one bit.
  bool HandleQualifierFlavor(TAttributes::iterator &attribute, ICIMQualifierDecl::EFlavor *flavor);
  bool HandleReferenceClass(TAttributes::iterator &attribute, std::string *referenceClass);
  bool HandleSuperClass(TAttributes::iterator &attribute, std::string *superClass);
  bool HandleArraySize(TAttributes::iterator &attribute, unsigned &arraySize);
  // The same, on one entry of an attribute list: what the states use.
  using TAttributeEntry = TXmlAttributeList::TIterator;
  bool HandleCIMName(TAttributeEntry attribute, std::string *name);
  bool HandleCIMType(TAttributeEntry attribute, TCIMType *type);
  bool HandleClassName(TAttributeEntry attribute, std::string *className);
  bool HandleClassOrigin(TAttributeEntry attribute, std::string *classOrigin);
  bool HandlePropagated(TAttributeEntry attribute, bool &propagated);
  bool HandleQualifierFlavor(TAttributeEntry attribute, ICIMQualifierDecl::EFlavor *flavor);
  bool HandleReferenceClass(TAttributeEntry attribute, std::string *referenceClass);
  bool HandleSuperClass(TAttributeEntry attribute, std::string *superClass);
  bool HandleArraySize(TAttributeEntry attribute, unsigned &arraySize);

  /// "true" and "false" exactly, after leading whitespace; anything else is
  /// false.
  static bool ConvertBool(std::string &text);
  static bool ConvertBool(std::string_view text);
  /// The leading decimal digits after optional whitespace; 0 when none.
  unsigned ConvertUnsignedInt(std::string &text);
  static unsigned ConvertUnsignedInt(std::string_view text);
  /// Text as a value of the type, read by the object model. An invalid
  /// datetime becomes 1970-01-01 00:00:00 with a logged line; any other
  /// rejected text becomes the null value.
  TCIMValue ParseValue(TCIMType type, std::string &text);

private:
  std::deque<TParseStatePtr> stateStack;
  boost::weak_ptr<ICIMNamespace> cimNamespace;
  std::vector<boost::shared_ptr<ICIMClass>> classesCollected;
  std::vector<boost::shared_ptr<ICIMInstance>> instancesCollected;
  std::string characterData;
  bool qn402Mode;
  /// Set while a parse runs, and after one that ended early.
  bool parseUnfinished = false;

  // The full grammar's own data.
  TCIMXMLReadOptions readOptions;
  ICIMXMLHandler *handler = nullptr;
  /// Where objects go that must not, or cannot, go into the namespace:
  /// classes and declarations read only to be returned, and the empty
  /// superclasses that stand in for classes the namespace lacks.
  boost::shared_ptr<ICIMNamespace> scratchNamespace;
  /// How many objects, operations and messages this document has given.
  std::size_t objectsDelivered = 0;
  std::size_t operationsDelivered = 0;
  std::size_t messagesDelivered = 0;
  /// The operation whose element is open, and the role its objects play
  /// (the parameter's name, "" for the return value).
  TCIMXMLOperation *operationOpen = nullptr;
  std::string roleOpen;
  /// Set while the full grammar reads a class that has no superclass to
  /// propagate qualifiers from (a root class, or one whose superclass is a
  /// stand-in): its propagated qualifiers are then kept as its own.
  bool keepPropagated = false;
  /// Per class whose instances were read, the names of its properties that
  /// their declarations mark as embedded objects (most classes have none),
  /// found once instead of for every value; the pointer keeps the key's
  /// class alive.
  std::unordered_map<const ICIMClass *,
                     std::pair<boost::shared_ptr<ICIMClass>, std::vector<std::string>>>
      embeddedProperties;
  /// Per class whose instances were read, the declared types of the
  /// properties met, under the names as written: the instances of an
  /// enumeration list their properties in one order, so the entry after the
  /// last one found is tried first. At most kKnownTypes names per class.
  struct TDeclaredTypes {
    boost::shared_ptr<ICIMClass> cls; // keeps the key's class alive
    std::vector<std::pair<std::string, TCIMType>> types;
    std::size_t next = 0;
  };
  static constexpr std::size_t kKnownTypes = 256;
  std::unordered_map<const ICIMClass *, TDeclaredTypes> declaredTypes;
  /// The type that the class declares for the property; throws as the
  /// class's GetProperty does for a name it does not declare.
  TCIMType DeclaredPropertyType(const boost::shared_ptr<ICIMClass> &cls, const std::string &name);

  /// An open element's name as the tokenizer handed it, and folded.
  struct TOpenName {
    const char *source = nullptr;
    std::string folded;
  };
  /// The states popped during the current event, released after it.
  std::vector<TParseStatePtr> poppedStates;
  /// Element names are folded into reused buffers, so that a name costs no
  /// allocation once they are long enough: one per open element (the first
  /// openNameCount entries), found again at its end by the name's pointer,
  /// and foldedName for names met otherwise.
  std::vector<TOpenName> openNames;
  std::size_t openNameCount = 0;
  std::string foldedName;
  /// The global locale whose ctype facet foldTable was taken from, and the
  /// facet (none until a name is folded in this document); foldByTable says whether the facet folds
  /// byte by byte (the standard one) so that the table gives the same bytes.
  std::locale foldLocale;
  const std::ctype<char> *foldFacet = nullptr;
  bool foldByTable = false;
  /// The table folds A to Z only, as ASCII does (the classic locale and
  /// most others): then eight bytes are folded at a time.
  bool foldAscii = false;
  char foldTable[256] = {};

  /// The list as the full grammar reads it: references decoded, characters
  /// that XML 1.0 does not allow logged and dropped. The values that change
  /// are kept in decodedValues until the next start tag.
  TXmlAttributeList DecodeAttributes(const TXmlAttributeList &attributes);
  std::vector<TXmlAttribute> decodedAttributes;
  std::vector<std::string> decodedValues;
  /// A map's entries as a list, for the map path.
  std::vector<TXmlAttribute> mapAttributes;
  /// Appends text, dropping (and logging) what XML 1.0 does not allow.
  void AppendXmlText(std::string &to, const char *data, std::size_t length);

  /// The name folded with the global locale as it stood when the document
  /// started.
  const std::string &FoldElementName(const char *name, std::string &into);
  /// A start tag's name, folded and kept until its end tag.
  const std::string &FoldStartName(const char *name);
  /// An end tag's name, as its start tag's was folded.
  const std::string &FoldEndName(const char *name);

  /// The namespace for one call; throws kORVStatusNamespaceGone when the
  /// caller no longer holds it.
  boost::shared_ptr<ICIMNamespace> LockNamespace() const;
};

/// The base of every parse state. A state lives from its push to its pop.
class ORVCIMXML_API TCIMXMLParser::TParseState {
public:
  /// A start tag's attributes, in name order.
  using TAttributeList = TXmlAttributeList;

  TParseState() : phase(0) {}
  TParseState(const TParseState &) = delete;
  TParseState &operator=(const TParseState &) = delete;
  virtual ~TParseState();

  /// A child's start tag arrived while this state is on top. The default
  /// does nothing (the child is neither entered nor reported).
  virtual void ChildElement(TCIMXMLParser &parser, const std::string &name,
                            const TAttributeList &attributes);
  /// This state's end tag. The default pops the top state.
  virtual void ElementEnd(TCIMXMLParser &parser, const std::string &name);
  /// This state's own start tag, right after the push. The default does
  /// nothing.
  virtual void ElementStart(TCIMXMLParser &parser, const TAttributeList &attributes);

  /// How far through its content model the state has come.
  std::int32_t phase;
  /// The line of the element's start tag; kept by the full grammar only.
  unsigned line = 0;

protected:
  /// Builds a child's state from the state that accepts it.
  using TEnter = TParseStatePtr (*)(TCIMXMLParser &parser, TParseState &parent);

  /// Leaves phase unchanged when accepting a child.
  static constexpr std::int32_t kKeepPhase = -1;
  /// The one phase of a state whose children come in any order and number.
  static constexpr std::int32_t kAnyOrder = 0;
  /// In the full grammar, the phase after the one value child of an element
  /// whose qualifiers (from kAnyOrder on) come first.
  static constexpr std::int32_t kFullValueDone = 1;

  /// One accepted child of a content model: its lower-case element name,
  /// the phases in which it is accepted, the phase afterwards, and how its
  /// state is built (none: nothing is pushed, and the child's attributes go
  /// to the state on top).
  struct TChildRow {
    const char *name;
    std::int32_t firstPhase;
    std::int32_t lastPhase;
    std::int32_t phaseAfter;
    TEnter enter;
    /// The grammars that accept the row (kBothGrammars, kFullGrammar).
    std::uint8_t grammars = kBothGrammars;
    /// The length of name, so that most rows are passed over without
    /// looking at it.
    std::size_t nameLength = 0;
  };
  static constexpr std::size_t NameLength(const char *name) {
    return std::char_traits<char>::length(name);
  }
  static constexpr std::uint8_t kClassicGrammar = 1;
  static constexpr std::uint8_t kFullGrammar = 2;
  static constexpr std::uint8_t kBothGrammars = kClassicGrammar | kFullGrammar;

  /// The one way a child's state is built: a state whose constructor takes
  /// (parser, parent) binds the parent's fields that it writes its result
  /// into; any other state is built from nothing.
  template <class TChild, class TParent>
  static TParseStatePtr Enter(TCIMXMLParser &parser, TParseState &parent) {
    if constexpr (std::is_constructible_v<TChild, TCIMXMLParser &, TParent &>)
      return boost::make_shared<TChild>(parser, static_cast<TParent &>(parent));
    else
      return boost::make_shared<TChild>();
  }

  /// A row whose element enters a TChild state under a TParent state.
  template <class TChild, class TParent>
  static constexpr TChildRow Child(const char *name, std::int32_t firstPhase,
                                   std::int32_t lastPhase, std::int32_t phaseAfter) {
    return TChildRow{name,          firstPhase,      lastPhase, phaseAfter, &Enter<TChild, TParent>,
                     kBothGrammars, NameLength(name)};
  }
  /// A row of a state whose children come in any order and number.
  template <class TChild, class TParent> static constexpr TChildRow Child(const char *name) {
    return Child<TChild, TParent>(name, kAnyOrder, kAnyOrder, kKeepPhase);
  }
  /// A row that only the full grammar accepts.
  template <class TChild, class TParent>
  static constexpr TChildRow FullChild(const char *name, std::int32_t firstPhase,
                                       std::int32_t lastPhase, std::int32_t phaseAfter) {
    return TChildRow{name,         firstPhase,      lastPhase, phaseAfter, &Enter<TChild, TParent>,
                     kFullGrammar, NameLength(name)};
  }
  template <class TChild, class TParent> static constexpr TChildRow FullChild(const char *name) {
    return FullChild<TChild, TParent>(name, kAnyOrder, kAnyOrder, kKeepPhase);
  }
  /// A row that only the classic grammar accepts.
  template <class TChild, class TParent>
  static constexpr TChildRow ClassicChild(const char *name, std::int32_t firstPhase,
                                          std::int32_t lastPhase, std::int32_t phaseAfter) {
    return TChildRow{name,
                     firstPhase,
                     lastPhase,
                     phaseAfter,
                     &Enter<TChild, TParent>,
                     kClassicGrammar,
                     NameLength(name)};
  }
  template <class TChild, class TParent> static constexpr TChildRow ClassicChild(const char *name) {
    return ClassicChild<TChild, TParent>(name, kAnyOrder, kAnyOrder, kKeepPhase);
  }
  /// A row of the classic grammar whose element is accepted without a
  /// state of its own.
  static constexpr TChildRow ClassicIgnored(const char *name, std::int32_t firstPhase,
                                            std::int32_t lastPhase, std::int32_t phaseAfter) {
    return TChildRow{name,    firstPhase,      lastPhase,       phaseAfter,
                     nullptr, kClassicGrammar, NameLength(name)};
  }
  /// A row whose element is accepted without a state of its own.
  static constexpr TChildRow Ignored(const char *name, std::int32_t firstPhase,
                                     std::int32_t lastPhase, std::int32_t phaseAfter) {
    return TChildRow{name,    firstPhase,    lastPhase,       phaseAfter,
                     nullptr, kBothGrammars, NameLength(name)};
  }

  enum class EMiss {
    /// A child not accepted in this phase leaves the phase as it is.
    kKeepPhase,
    /// The content model is a sequence of kinds and a child of a later kind
    /// moves forward: a child that no phase accepts has moved the phase to
    /// its last value by the time it is reported.
    kFallThrough,
  };

  /// The one place that matches a child against a content model: a phase
  /// outside 0..lastPhase is "Parser state corrupt"; a name that no row
  /// accepts in the current phase goes to UnexpectedChild; otherwise the
  /// row's phase is applied, its state built and pushed, and ElementStart of
  /// the state then on top is called with the child's attributes.
  void AcceptChild(TCIMXMLParser &parser, const std::string &name, const TAttributeList &attributes,
                   const TChildRow *rows, std::size_t rowCount, std::int32_t lastPhase,
                   EMiss miss = EMiss::kKeepPhase);
  template <std::size_t N>
  void AcceptChild(TCIMXMLParser &parser, const std::string &name, const TAttributeList &attributes,
                   const TChildRow (&rows)[N], std::int32_t lastPhase,
                   EMiss miss = EMiss::kKeepPhase) {
    AcceptChild(parser, name, attributes, rows, N, lastPhase, miss);
  }
  /// A child that no row accepts in the current phase: "Unexpected element "
  /// + name. A state that gives such children to another state overrides
  /// it.
  virtual void UnexpectedChild(TCIMXMLParser &parser, const std::string &name,
                               const TAttributeList &attributes);

  /// An element that ends in another phase than its last (before its
  /// object child, say) is "CIM element syntax error".
  void RequireComplete(TCIMXMLParser &parser, std::int32_t lastPhase) const;
  /// Writes one line at the level of every parse message.
  static void Log(const std::string &text);

  /// Pushes a state and hands it its own start tag's attributes.
  static void Push(TCIMXMLParser &parser, const TParseStatePtr &state,
                   const TAttributeList &attributes);
  /// Removes the top state (what the default ElementEnd does).
  static void Pop(TCIMXMLParser &parser);

  // The parser's own data, for the states.
  static std::string &CharacterData(TCIMXMLParser &parser) { return parser.characterData; }
  static boost::shared_ptr<ICIMNamespace> Namespace(TCIMXMLParser &parser) {
    return parser.LockNamespace();
  }
  static bool QN402Mode(const TCIMXMLParser &parser) { return parser.qn402Mode; }
  static void Collect(TCIMXMLParser &parser, const boost::shared_ptr<ICIMClass> &cls) {
    parser.classesCollected.push_back(cls);
  }
  static void Collect(TCIMXMLParser &parser, const boost::shared_ptr<ICIMInstance> &instance) {
    parser.instancesCollected.push_back(instance);
  }
  // The full grammar's services.
  static bool IsFull(const TCIMXMLParser &parser) {
    return parser.readOptions.grammar == ECIMXMLGrammar::kFull;
  }
  static bool Registers(const TCIMXMLParser &parser) {
    return parser.readOptions.registration == ECIMXMLRegistration::kRegister;
  }
  /// The namespace that holds what is read only to be returned.
  static boost::shared_ptr<ICIMNamespace> Scratch(TCIMXMLParser &parser);
  /// A new, empty scratch namespace in place of the old one, whose objects
  /// live on in what holds them.
  static boost::shared_ptr<ICIMNamespace> RenewScratch(TCIMXMLParser &parser);
  /// Where a new class or qualifier declaration goes: the parser's
  /// namespace when the parse registers, else the scratch namespace.
  static boost::shared_ptr<ICIMNamespace> TargetNamespace(TCIMXMLParser &parser) {
    return Registers(parser) ? Namespace(parser) : Scratch(parser);
  }
  /// The class of that name from the scratch namespace, else from the
  /// parser's; empty when neither has it.
  static boost::shared_ptr<ICIMClass> FindClass(TCIMXMLParser &parser, const std::string &name);
  /// Hands an object to the handler (or the collections), numbered and
  /// placed in the open operation.
  static void Deliver(TCIMXMLParser &parser, TCIMXMLObject &object);
  static void Deliver(TCIMXMLParser &parser, TCIMXMLOperation &operation);
  static void Deliver(TCIMXMLParser &parser, TCIMXMLMessage &message);
  static std::size_t ObjectsDelivered(const TCIMXMLParser &parser) {
    return parser.objectsDelivered;
  }
  static std::size_t OperationsDelivered(const TCIMXMLParser &parser) {
    return parser.operationsDelivered;
  }
  static std::size_t MessagesDelivered(const TCIMXMLParser &parser) {
    return parser.messagesDelivered;
  }
  static TCIMXMLOperation *&OperationOpen(TCIMXMLParser &parser) { return parser.operationOpen; }
  static std::string &RoleOpen(TCIMXMLParser &parser) { return parser.roleOpen; }
  static bool &KeepPropagated(TCIMXMLParser &parser) { return parser.keepPropagated; }
  /// Hands over a class (committed first), an instance (committed when the
  /// parse registers and its class is the namespace's), or a path standing
  /// alone; path, when given, is the object's own.
  static void DeliverClass(TCIMXMLParser &parser, const boost::shared_ptr<ICIMClass> &cls,
                           const TCIMXMLPath *path, unsigned line);
  static void DeliverInstance(TCIMXMLParser &parser,
                              const boost::shared_ptr<ICIMInstance> &instance,
                              const TCIMXMLPath *path, unsigned line);
  static void DeliverPath(TCIMXMLParser &parser, const TCIMXMLPath &path, unsigned line);
  /// Logs "CIM-XML Parser line N:" + message without ending the element:
  /// what the full grammar reports and reads on after.
  static void Report(TCIMXMLParser &parser, const std::string &message);
  /// The full grammar's embedded objects: reads each string of value (a
  /// scalar or each element of an array) as the CIM-XML of one INSTANCE or
  /// CLASS, typed by the parser's namespace, and attaches it to the string
  /// (TCIMValue::SetEmbeddedObject). A string that holds no such object, or
  /// objects nested more than kMaxEmbedding deep, is a line naming what
  /// (e.g. "Property P"), and stays text; errors inside the embedded
  /// document are logged with their lines in its text.
  static void ReadEmbedded(TCIMXMLParser &parser, TCIMValue &value, const std::string &what);
  /// Whether a declaration marks its values as embedded objects: a true
  /// EmbeddedObject or a non-null EmbeddedInstance qualifier.
  static bool DeclaresEmbedded(ICIMQualifiedObject &declaration);
  static constexpr unsigned kMaxEmbedding = 16;
  /// The full grammar's reading of a property or method (isMethod) that a
  /// class repeats from its superclass with PROPAGATED="true": when the
  /// superclass has the member, the class's copy is removed, so that the
  /// inherited one stands, and where the copy's class origin, default or
  /// qualifiers differ a line says so. Otherwise the copy stays the class's
  /// own, with a line. Not for a class whose superclass is a stand-in.
  static void TakePropagated(TCIMXMLParser &parser, ICIMClass &cls, bool isMethod,
                             const std::string &name, const std::string &classOrigin);
  /// Whether the class's members marked propagated go to TakePropagated:
  /// not when a stand-in superclass could not give them.
  static bool TakesPropagated(TCIMXMLParser &parser, ICIMClass &cls) {
    return !KeepPropagated(parser) || cls.GetSuperClassName().empty();
  }

  /// Throws kORVStatusNullObject when an object that a failed start tag
  /// should have made is missing, so that no state calls through an empty
  /// pointer.
  template <class T> static T &Require(const boost::shared_ptr<T> &object) {
    if (!object)
      ThrowMissingObject();
    return *object;
  }
  [[noreturn]] static void ThrowMissingObject();
};

} // namespace NVRNORV20

#endif
