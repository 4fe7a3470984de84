// The CIM-XML writer: each element form written as expected, and documents
// that read back in the full grammar into the same model and write the same
// bytes again.
#include "write/CIMXMLWriter.h"

#include "populate/NamespacePopulator.h"
#include "support/Fixtures.h"

#include <algorithm>
#include <iterator>
#include <map>

namespace orvtest {
namespace {

const TCIMXMLReadOptions kFullRegister{ECIMXMLGrammar::kFull, ECIMXMLRegistration::kRegister};
const std::string kLine = "CIM-XML writer: ";

std::string TypeText(TCIMType type) {
  return type.GetName() + (type.IsArray() ? "[]" : "");
}

/// Type, nullness and contents: reals by their text, which is exact.
std::string Describe(const TCIMValue &value) {
  std::string text = TypeText(value.GetType());
  if (value.IsNull() || !value.IsArray())
    return text + (value.IsNull() ? " null" + std::to_string(value.GetCount())
                                  : " '" + value.ToString() + "'");
  for (const TCIMValue &element : value.GetElements())
    text += " {" + Describe(element) + "}";
  return text;
}

std::string Qualifiers(ICIMQualifiedObject &object) {
  std::string text;
  for (const auto &q : object.GetQualifiers())
    text += "\n  [" + q->GetName() + " " + Describe(q->GetValue()) + " flavor " +
            std::to_string(q->GetFlavor()) + (q->IsPropagated() ? " propagated]" : "]");
  return text;
}

/// Every object of the namespace by its kind and name, with all it holds
/// (inherited members and propagated qualifiers too, which the reader
/// makes again), one line per part.
std::map<std::string, std::string> Model(ICIMNamespace &ns) {
  std::map<std::string, std::string> model;
  for (const auto &d : ns.GetQualifierDecls())
    model["qualifier " + d->GetName()] = TypeText(d->GetType()) +
                                         std::to_string(d->GetArraySize()) +
                                         Describe(d->GetDefaultValue()) + " scope " +
                                         std::to_string(d->GetScope() * 8 + d->GetFlavor());
  for (const auto &cls : ns.GetClasses()) {
    std::string &text = model["class " + cls->GetName()];
    text = "super " + cls->GetSuperClassName() + Qualifiers(*cls);
    for (const auto &p : cls->GetProperties())
      text += "\n property " + p->GetName() + " " + Describe(p->GetValue()) + " size " +
              std::to_string(p->GetArraySize()) + " ref " + p->GetReferenceClassName() +
              " origin " + p->GetClassOrigin() + Qualifiers(*p);
    for (const auto &m : cls->GetMethods()) {
      text += "\n method " + m->GetName() + " " + TypeText(m->GetReturnType()) + " origin " +
              m->GetClassOrigin() + Qualifiers(*m);
      for (const auto &p : m->GetParameters())
        text += "\n parameter " + p->GetName() + " " + TypeText(p->GetType()) + " ref " +
                p->GetReferenceClassName() + std::to_string(p->GetArraySize()) + Qualifiers(*p);
    }
  }
  for (const auto &instance : ns.GetInstances("", false))
    for (const auto &p : instance->GetProperties())
      model["instance " + instance->GetPath().ToString()] +=
          "\n " + p->GetName() + " " + Describe(p->GetValue());
  return model;
}

/// The first few objects whose entries differ between the models, as each
/// model has them.
std::vector<std::pair<std::string, std::string>>
Differences(const std::map<std::string, std::string> &before,
            const std::map<std::string, std::string> &after) {
  std::vector<std::pair<std::string, std::string>> differences;
  std::set_symmetric_difference(before.begin(), before.end(), after.begin(), after.end(),
                                std::back_inserter(differences));
  differences.resize(std::min<std::size_t>(differences.size(), 4));
  return differences;
}

/// The XML without the line ends and indentation between elements.
std::string Flat(const std::string &xml) {
  std::string flat;
  for (std::size_t i = 0; i < xml.size(); ++i) {
    std::size_t next = i + 1;
    while (xml[i] == '>' && next < xml.size() && (xml[next] == '\n' || xml[next] == ' '))
      ++next;
    flat += xml[i];
    if (next == xml.size() || xml[next] == '<')
      i = next - 1;
  }
  return flat;
}

class CIMXMLWriterTest : public TParserFixture {
protected:
  /// Loads the files in the full grammar, writes, reads that into a fresh
  /// namespace: the same model, read without a line; written again, the
  /// same bytes.
  void RoundTrip(const std::vector<std::string> &files) {
    SCOPED_TRACE(files.back());
    auto loaded = CreateCIMNamespace("root/cimv2"), reread = CreateCIMNamespace("root/cimv2");
    TCIMXMLResult ignored;
    for (const std::string &file : files)
      TNamespacePopulator::Populate(loaded, file, kFullRegister, ignored);
    logger.entries.clear();
    std::ostringstream first, second;
    TCIMXMLWriter::WriteDocument(first, *loaded);
    TNamespacePopulator::Populate(reread, scratch.Write("first.xml", first.str()), kFullRegister,
                                  ignored);
    EXPECT_EQ(Log(), std::vector<std::string>{});
    EXPECT_EQ(Differences(Model(*loaded), Model(*reread)),
              (std::vector<std::pair<std::string, std::string>>{}));
    const TCIMOptions flavors{{"FLAVORS", TCIMValue(true)}};
    EXPECT_EQ(loaded->ToMOF(flavors), reread->ToMOF(flavors)) << "the MOF differs";
    TCIMXMLWriter::WriteDocument(second, *reread);
    EXPECT_TRUE(first.str() == second.str()) << "the second write differs from the first";
  }

  TTemporaryFolder scratch;
};

// Each object reads and writes as itself: every member form, flavors stated
// where they differ from the document type's or the declaration's (Key is
// overridable against it), inherited members and propagated qualifiers
// (B's Key) left out, every property of an instance.
TEST_F(CIMXMLWriterTest, ObjectsWriteAsTheyRead) {
  const std::string flavors = R"( OVERRIDABLE="true" TOSUBCLASS="true" TRANSLATABLE=)";
  const std::string scope =
      R"(<SCOPE CLASS="false" ASSOCIATION="false" REFERENCE="false")"
      R"( PROPERTY="true" METHOD="false" PARAMETER="false" INDICATION="false"/>)";
  const std::string objects[] = {
      R"(<QUALIFIER.DECLARATION NAME="Key" TYPE="boolean" ISARRAY="false" OVERRIDABLE="false")"
      R"( TOSUBCLASS="true" TRANSLATABLE="false">)" +
          scope + "<VALUE>false</VALUE></QUALIFIER.DECLARATION>",
      R"(<QUALIFIER.DECLARATION NAME="Values" TYPE="string" ISARRAY="true" ARRAYSIZE="2")" +
          flavors + "\"true\">" + scope +
          "<VALUE.ARRAY><VALUE>v</VALUE></VALUE.ARRAY></QUALIFIER.DECLARATION>",
      R"(<QUALIFIER.DECLARATION NAME="EmbeddedInstance" TYPE="string" ISARRAY="false")" + flavors +
          "\"false\">" + scope + "</QUALIFIER.DECLARATION>",
      R"(<CLASS NAME="A"><QUALIFIER NAME="Values" TYPE="string" TOSUBCLASS="false")"
      R"( TRANSLATABLE="true"><VALUE.ARRAY><VALUE>x</VALUE><VALUE.NULL/></VALUE.ARRAY></QUALIFIER>)"
      R"(<PROPERTY NAME="k" TYPE="string" CLASSORIGIN="A"><QUALIFIER NAME="Key" TYPE="boolean")"
      R"( OVERRIDABLE="true"><VALUE>true</VALUE></QUALIFIER></PROPERTY><PROPERTY.ARRAY NAME="a")"
      R"( TYPE="uint8" ARRAYSIZE="4" CLASSORIGIN="A"><VALUE.ARRAY><VALUE>1</VALUE></VALUE.ARRAY>)"
      R"(</PROPERTY.ARRAY><PROPERTY.REFERENCE NAME="r")"
      R"( REFERENCECLASS="A" CLASSORIGIN="A"/><PROPERTY NAME="e" TYPE="string" CLASSORIGIN="A")"
      R"( EmbeddedObject="instance"><QUALIFIER NAME="EmbeddedInstance" TYPE="string"><VALUE>A</VALUE>)"
      R"(</QUALIFIER></PROPERTY><METHOD NAME="m" CLASSORIGIN="A"><PARAMETER NAME="p" TYPE="real32"/>)"
      R"(<PARAMETER.ARRAY NAME="pa" TYPE="string" ARRAYSIZE="3"/><PARAMETER.REFERENCE NAME="pr")"
      R"( REFERENCECLASS="A"/><PARAMETER.REFARRAY NAME="pra"/></METHOD></CLASS>)",
      R"(<CLASS NAME="B" SUPERCLASS="A"><PROPERTY NAME="k" TYPE="string" CLASSORIGIN="B">)"
      R"(<VALUE>d</VALUE></PROPERTY></CLASS>)",
      "<INSTANCE CLASSNAME=\"B\"><PROPERTY NAME=\"k\" TYPE=\"string\"><VALUE> &lt;&#13;\n</VALUE>"
      R"(</PROPERTY><PROPERTY.ARRAY NAME="a" TYPE="uint8" ARRAYSIZE="4"/><PROPERTY.REFERENCE)"
      R"( NAME="r" REFERENCECLASS="A"><VALUE.REFERENCE><LOCALINSTANCEPATH><LOCALNAMESPACEPATH>)"
      R"(<NAMESPACE NAME="root"/><NAMESPACE NAME="test"/></LOCALNAMESPACEPATH><INSTANCENAME)"
      R"( CLASSNAME="B"><KEYBINDING NAME="k"><KEYVALUE VALUETYPE="string" TYPE="string">z</KEYVALUE>)"
      R"(</KEYBINDING></INSTANCENAME></LOCALINSTANCEPATH></VALUE.REFERENCE></PROPERTY.REFERENCE>)"
      R"(<PROPERTY NAME="e" TYPE="string" EmbeddedObject="instance"/></INSTANCE>)"};
  std::string document;
  for (const std::string &object : objects)
    document += object[1] == 'Q' ? object : "<VALUE.OBJECT>" + object + "</VALUE.OBJECT>";
  Parse(InDeclGroup(document), kFull);
  ASSERT_EQ(Log(), std::vector<std::string>{});
  std::ostringstream out;
  TCIMXMLWriter::WriteQualifierDecl(out, *ns->GetQualifierDecl("Values"));
  TCIMXMLWriter::WriteClass(out, *ns->GetClass("A"));
  TCIMXMLWriter::WriteClass(out, *ns->GetClass("B"));
  TCIMXMLWriter::WriteInstance(out, *ns->GetInstances("B", false).at(0));
  EXPECT_EQ(objects[1] + objects[3] + objects[4] + objects[5], Flat(out.str()));
  EXPECT_EQ(Log(), std::vector<std::string>{});
  RoundTrip({scratch.Write("objects.xml", InDeclGroup(document))});
}

// A document puts superclasses first and each name once; an instance
// without a class goes with its name. What the document type has no form
// for is left out, each with a line.
TEST_F(CIMXMLWriterTest, DocumentsAndWhatCannotBeWritten) {
  using D = ICIMQualifierDecl;
  TCIMXMLDeclaration declaration;
  declaration.namespaceName = "a//b";
  for (const auto flavor : {D::kFlavorDefault, D::kFlavorDefault, D::kFlavorNone})
    declaration.qualifierDecls.push_back(
        CreateCIMNamespace("x")->CreateQualifierDecl("Q", TCIMValue(true), D::kScopeAny, flavor));
  declaration.qualifierDecls.push_back(ns->CreateQualifierDecl(
      "R", TCIMValue(TCIMType(kCIMTypeReference), 0), D::kScopeAny, D::kFlavorDefault));
  const auto base = ns->CreateClass("Base", nullptr);
  base->AddProperty("untyped", TCIMValue());
  base->AddProperty("references", TCIMValue(TCIMType(kCIMTypeReference).GetArrayType(), 0));
  base->AddMethod("m", TCIMType(kCIMTypeUint8).GetArrayType());
  const auto standalone = CreateStandaloneInstance("S", nullptr);
  standalone->SetPropertyValue("k", TCIMValue("v"), {{"KEY", TCIMValue(true)}});
  declaration.classes = {ns->CreateClass("Sub", base), base,
                         CreateCIMNamespace("y")->CreateClass("base", nullptr)};
  declaration.instances = {standalone};
  // A name with an empty part keeps it; the layout is the writer's.
  const std::string path = "<LOCALNAMESPACEPATH><NAMESPACE NAME=\"a\"/><NAMESPACE NAME=\"\"/>"
                           "<NAMESPACE NAME=\"b\"/></LOCALNAMESPACEPATH>";
  std::ostringstream out;
  TCIMXMLWriter::WriteDocument(out, declaration);
  const std::string written = out.str();
  const std::string head = R"(<?xml version="1.0" encoding="utf-8"?>
<CIM CIMVERSION="2.0" DTDVERSION="2.4">
 <DECLARATION>
  <DECLGROUP>
   <LOCALNAMESPACEPATH>
    <NAMESPACE NAME="a"/>
)";
  EXPECT_EQ(head, written.substr(0, head.size()));
  EXPECT_EQ(
      "<?xml version=\"1.0\" encoding=\"utf-8\"?><CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.4\">"
      "<DECLARATION><DECLGROUP>" +
          path +
          R"(<QUALIFIER.DECLARATION NAME="Q" TYPE="boolean" ISARRAY="false" OVERRIDABLE="true")"
          R"( TOSUBCLASS="true" TRANSLATABLE="false"><SCOPE CLASS="true" ASSOCIATION="true")"
          R"( REFERENCE="true" PROPERTY="true" METHOD="true" PARAMETER="true" INDICATION="true"/>)"
          R"(<VALUE>true</VALUE></QUALIFIER.DECLARATION><VALUE.OBJECT><CLASS NAME="Base"/>)"
          R"(</VALUE.OBJECT><VALUE.OBJECT><CLASS NAME="Sub" SUPERCLASS="Base"/></VALUE.OBJECT>)"
          R"(</DECLGROUP><DECLGROUP.WITHNAME>)" +
          path +
          R"(<VALUE.NAMEDOBJECT><INSTANCENAME CLASSNAME="S"><KEYBINDING NAME="k"><KEYVALUE)"
          R"( VALUETYPE="string" TYPE="string">v</KEYVALUE></KEYBINDING></INSTANCENAME><INSTANCE)"
          R"( CLASSNAME="S"><PROPERTY NAME="k" TYPE="string"><VALUE>v</VALUE></PROPERTY></INSTANCE>)"
          R"(</VALUE.NAMEDOBJECT></DECLGROUP.WITHNAME></DECLARATION></CIM>)",
      Flat(written));
  // The same declaration twice is written once without a line.
  const std::string left = kLine + "qualifier declaration 'R' left out: CIM-XML has no ";
  EXPECT_EQ(Log(),
            (std::vector<std::string>{
                kLine + "qualifier declaration 'Q' left out: another of that name came first",
                left + "qualifier of type reference",
                kLine + "class 'base' left out: another of that name came first",
                kLine + "property 'untyped' of class 'Base' left out: CIM-XML has no "
                        "property of type none",
                kLine + "property 'references' of class 'Base' left out: CIM-XML has no "
                        "property of type reference[]",
                kLine + "method 'm' of class 'Base' left out: CIM-XML has no method that "
                        "returns uint8[]"}));
}

TEST_F(CIMXMLWriterTest, ExamplesReadBackIntoTheSameModel) {
  const std::string examples = std::string(ORV_EXAMPLES_DIR) + "/";
  RoundTrip({examples + "schema.xml", examples + "instances.xml"});
}

// The 2.49 schema as one document, and 2.42's flattened classes, whose
// inherited members the reader takes from their superclasses.
TEST_F(CIMXMLWriterTest, CorpusSchemasReadBackIntoTheSameModel) {
  const std::string corpus = std::string(ORV_CORPUS_DIR) + "/";
  const std::string qualifiers = corpus + "dmtf-cim-2.49.0-compiled/cim_qualifiers_2.49.0.xml";
  if (!std::filesystem::exists(qualifiers))
    GTEST_SKIP() << "The CIM-XML corpus is missing (no " << qualifiers << ")";
  RoundTrip({qualifiers, corpus + "dmtf-cim-2.49.0-compiled/cim_schema_2.49.0.xml"});
  RoundTrip({qualifiers, corpus + "dmtf-cim-2.42.0-xml/cim_schema_2.42.0_all_classes.xml.gz"});
}

} // namespace
} // namespace orvtest
