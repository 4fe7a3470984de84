// The object model as CIM-XML (DSP0201): a qualifier declaration, a class,
// an instance or a value as its element, or a whole declaration document
// that the full grammar reads back into the same model.
#ifndef ORV_WRITE_CIMXMLWRITER_H
#define ORV_WRITE_CIMXMLWRITER_H

#include "core_api/CIMInterfaces.h"
#include "core_api/CIMValue.h"
#include "core_api/ORVExport.h"

#include <boost/shared_ptr.hpp>

#include <iosfwd>
#include <string>
#include <vector>

namespace NVRNORV20 {

/// What one declaration document holds, in the order given (classes are
/// put in superclass order when written).
struct TCIMXMLDeclaration {
  /// The LOCALNAMESPACEPATH of the document, its parts apart by "/";
  /// empty for none.
  std::string namespaceName;
  std::vector<boost::shared_ptr<ICIMQualifierDecl>> qualifierDecls;
  std::vector<boost::shared_ptr<ICIMClass>> classes;
  std::vector<boost::shared_ptr<ICIMInstance>> instances;
};

/// Writers of CIM-XML, valid against the DSP0201 2.4 document type. Each
/// element goes on its own line, indented by one space per level.
///
/// What XML 1.0 or the document type cannot carry is left out, never
/// written invalid, and a line at level 3 of the core logger says what:
/// a character that XML cannot hold (U+0001, U+FFFE) is left out of its
/// text; a byte that begins no UTF-8 character is written as its Latin-1
/// character; a member, qualifier or value of a type the element cannot
/// have (a property without type, an array of references as a property, a
/// qualifier of type reference) is left out with what it holds; so are a
/// key binding of an array or of no value, and a reference nested more than
/// 16 deep (as deep as the parser reads them). A path with a host but no
/// namespace is written without its host.
class ORVWRITE_API TCIMXMLWriter {
public:
  /// QUALIFIER.DECLARATION with TYPE, ISARRAY, ARRAYSIZE when fixed, its
  /// three flavors, SCOPE with each of its seven attributes, the default.
  static void WriteQualifierDecl(std::ostream &out, ICIMQualifierDecl &declaration);
  /// CLASS with the qualifiers, properties and methods the class declares
  /// itself; inherited ones come back from the superclass when read.
  static void WriteClass(std::ostream &out, ICIMClass &cls);
  /// INSTANCE with every property it shows, in its class's order.
  static void WriteInstance(std::ostream &out, ICIMInstance &instance);
  /// VALUE, VALUE.ARRAY, VALUE.REFERENCE or VALUE.REFARRAY; nothing for
  /// null.
  static void WriteValue(std::ostream &out, const TCIMValue &value);
  /// A whole document: the XML declaration, then CIM, DECLARATION and a
  /// DECLGROUP with the namespace path, the qualifier declarations, the
  /// classes (a superclass before its subclasses) and the instances of
  /// those classes, each in a VALUE.OBJECT. Other instances (read without
  /// their class, or typed by a schema the document does not hold) follow
  /// in a DECLGROUP.WITHNAME as VALUE.NAMEDOBJECT with their INSTANCENAME:
  /// a reader without the class learns their keys from the name alone. A
  /// qualifier declaration or class whose name (in any letter case) came
  /// before is left out, with a line unless it is the same declaration.
  static void WriteDocument(std::ostream &out, const TCIMXMLDeclaration &declaration);
  /// The namespace as one document: its qualifier declarations, classes
  /// and instances.
  static void WriteDocument(std::ostream &out, ICIMNamespace &ns);
};

} // namespace NVRNORV20

#endif
