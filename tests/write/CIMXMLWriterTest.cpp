// The CIM-XML writer: each element form written as expected, and documents
// that read back in the full grammar into the same model and write the same
// bytes again.
#include "write/CIMXMLWriter.h"

#include "populate/NamespacePopulator.h"
#include "support/Fixtures.h"

#include <algorithm>
#include <limits>
#include <map>

namespace orvtest {
namespace {

const TCIMXMLReadOptions kFullRegister{ECIMXMLGrammar::kFull, ECIMXMLRegistration::kRegister};

std::string TypeText(TCIMType type) {
  return type.GetName() + (type.IsArray() ? "[]" : "");
}

/// Type, nullness and contents: reals by their text, which is exact.
std::string Describe(const TCIMValue &value) {
  std::string text = TypeText(value.GetType());
  if (value.IsNull())
    return text + " null[" + std::to_string(value.GetCount()) + "]";
  if (!value.IsArray())
    return text + " '" + value.ToString() + "'";
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
    model["qualifier " + d->GetName()] =
        TypeText(d->GetType()) + " size " + std::to_string(d->GetArraySize()) + " default " +
        Describe(d->GetDefaultValue()) + " scope " + std::to_string(d->GetScope()) + " flavor " +
        std::to_string(d->GetFlavor());
  for (const auto &cls : ns.GetClasses()) {
    std::string text = "super " + cls->GetSuperClassName() + Qualifiers(*cls);
    for (const auto &p : cls->GetProperties())
      text += "\n property " + p->GetName() + " " + Describe(p->GetValue()) + " ref " +
              p->GetReferenceClassName() + " origin " + p->GetClassOrigin() + Qualifiers(*p);
    for (const auto &m : cls->GetMethods()) {
      text += "\n method " + m->GetName() + " " + TypeText(m->GetReturnType()) + " origin " +
              m->GetClassOrigin() + Qualifiers(*m);
      for (const auto &p : m->GetParameters())
        text += "\n parameter " + p->GetName() + " " + TypeText(p->GetType()) + " ref " +
                p->GetReferenceClassName() + " size " + std::to_string(p->GetArraySize()) +
                Qualifiers(*p);
    }
    model["class " + cls->GetName()] = text;
  }
  for (const auto &instance : ns.GetInstances("", false)) {
    std::string text;
    for (const auto &p : instance->GetProperties())
      text += "\n " + p->GetName() + " " + Describe(p->GetValue());
    model["instance " + instance->GetPath().ToString()] = text;
  }
  return model;
}

/// The objects that differ between the models, each with its first
/// differing line; at most a few.
std::vector<std::string> Differences(const std::map<std::string, std::string> &before,
                                     const std::map<std::string, std::string> &after) {
  std::vector<std::string> differences;
  std::map<std::string, std::string> all = before;
  all.insert(after.begin(), after.end());
  for (const auto &entry : all) {
    const auto was = before.find(entry.first), is = after.find(entry.first);
    if (was == before.end() || is == after.end()) {
      differences.push_back(entry.first + (was == before.end() ? " added" : " lost"));
    } else if (was->second != is->second) {
      std::size_t at = 0;
      while (at < was->second.size() && was->second[at] == is->second[at])
        ++at;
      const std::size_t line = was->second.rfind('\n', at) + 1;
      differences.push_back(entry.first + ": '" + was->second.substr(line, 160) + "' became '" +
                            is->second.substr(line, 160) + "'");
    }
    if (differences.size() == 8)
      break;
  }
  return differences;
}

std::string Written(const std::function<void(std::ostream &)> &write) {
  std::ostringstream out;
  write(out);
  return out.str();
}

TCIMValue Reference(const std::string &className,
                    const std::vector<std::pair<std::string, TCIMValue>> &keys,
                    const std::string &ns = "", const std::string &host = "") {
  TCIMReference reference;
  reference.SetClassName(className);
  reference.SetNamespaceName(ns);
  reference.SetHost(host);
  for (const auto &key : keys)
    reference.AddKeyValue(key.first, key.second);
  return TCIMValue(reference);
}

TCIMValue Array(TCIMType type, const std::vector<TCIMValue> &elements) {
  TCIMValue array;
  array.Set(type, 0, elements);
  return array;
}

/// One element form: what writes it, the XML, the log lines.
struct TForm {
  const char *what;
  std::function<void(std::ostream &)> write;
  std::string xml;
  std::vector<std::string> log = {};
};

/// Writes the value alone.
std::function<void(std::ostream &)> Of(const TCIMValue &value) {
  return [value](std::ostream &out) { TCIMXMLWriter::WriteValue(out, value); };
}

class CIMXMLWriterTest : public TParserFixture {
protected:
  /// Loads the files in the full grammar, writes, reads that into a fresh
  /// namespace: the same model, read without a line; written again, the
  /// same bytes.
  void RoundTrip(const std::vector<std::string> &files) {
    SCOPED_TRACE(files.back());
    auto loaded = CreateCIMNamespace("root/cimv2");
    TCIMXMLResult ignored;
    for (const std::string &file : files)
      TNamespacePopulator::Populate(loaded, file, kFullRegister, ignored);
    logger.entries.clear();
    const std::string first =
        Written([&](std::ostream &out) { TCIMXMLWriter::WriteDocument(out, *loaded); });
    auto reread = CreateCIMNamespace("root/cimv2");
    TNamespacePopulator::Populate(reread, scratch.Write("first.xml", first), kFullRegister,
                                  ignored);
    EXPECT_EQ(Log(), std::vector<std::string>{});
    EXPECT_EQ(Differences(Model(*loaded), Model(*reread)), std::vector<std::string>{});
    const std::string second =
        Written([&](std::ostream &out) { TCIMXMLWriter::WriteDocument(out, *reread); });
    EXPECT_TRUE(first == second) << "the second write differs from the first";
  }

  TTemporaryFolder scratch;

  void Check(const std::vector<TForm> &forms) {
    for (const TForm &form : forms) {
      SCOPED_TRACE(form.what);
      logger.entries.clear();
      EXPECT_EQ(form.xml, Written(form.write));
      EXPECT_EQ(form.log, Log());
    }
  }
};

const std::string kUnwritable = "CIM-XML writer: ";

TEST_F(CIMXMLWriterTest, ValuesAndPaths) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double inf = std::numeric_limits<double>::infinity();
  const TCIMValue key = TCIMValue(std::string("a\"b"));
  std::vector<std::pair<std::string, TCIMValue>> deep = {{"k", key}};
  for (int level = 0; level < 16; ++level)
    deep = {{"r", Reference("R", deep)}};
  Check({
      {"escapes", Of(TCIMValue("<a & \"b\">'\r\n\t")),
       "<VALUE>&lt;a &amp; \"b\"&gt;'&#13;\n\t</VALUE>\n"},
      {"not in XML",
       Of(TCIMValue("a\x01"
                    "b\xEF\xBF\xBE"
                    "c\x02")),
       "<VALUE>abc</VALUE>\n",
       {kUnwritable + "U+0001, which XML 1.0 cannot carry, left out of the text of a value (with "
                      "any other such character there)"}},
      {"not UTF-8",
       Of(TCIMValue("caf\xE9")),
       "<VALUE>caf&#233;</VALUE>\n",
       {kUnwritable + "bytes that are not UTF-8 in the text of a value, each written as its "
                      "Latin-1 character"}},
      {"UTF-8", Of(TCIMValue("\xC3\xA9\xF0\x9F\x98\x80")),
       "<VALUE>\xC3\xA9\xF0\x9F\x98\x80</VALUE>\n"},
      {"boolean", Of(TCIMValue(true)), "<VALUE>true</VALUE>\n"},
      {"sint64",
       Of(TCIMValue::MakeSigned(kCIMTypeSint64, std::numeric_limits<std::int64_t>::min())),
       "<VALUE>-9223372036854775808</VALUE>\n"},
      {"real32", Of(TCIMValue::MakeReal(kCIMTypeReal32, 0.1f)), "<VALUE>0.1</VALUE>\n"},
      {"real64 array",
       Of(Array(kCIMTypeReal64,
                {TCIMValue::MakeReal(kCIMTypeReal64, 0.1), TCIMValue::MakeReal(kCIMTypeReal64, nan),
                 TCIMValue::MakeReal(kCIMTypeReal64, -inf),
                 TCIMValue(TCIMType(kCIMTypeReal64), 0)})),
       "<VALUE.ARRAY>\n <VALUE>0.1</VALUE>\n <VALUE>NaN</VALUE>\n <VALUE>-INF</VALUE>\n"
       " <VALUE.NULL/>\n</VALUE.ARRAY>\n"},
      {"interval", Of(TCIMValue(TCIMDateTime::MakeInterval(3, 4, 5, 6, 7))),
       "<VALUE>00000003040506.000007:000</VALUE>\n"},
      {"char16", Of(TCIMValue::MakeUnsigned(kCIMTypeChar16, 0xE9)), "<VALUE>\xC3\xA9</VALUE>\n"},
      {"char16 not in XML",
       Of(Array(kCIMTypeChar16, {TCIMValue::MakeUnsigned(kCIMTypeChar16, 0)})),
       "<VALUE.ARRAY>\n <VALUE.NULL/>\n</VALUE.ARRAY>\n",
       {kUnwritable + "the char16 U+0000 of a value, which XML 1.0 cannot carry, written as null"}},
      {"null", Of(TCIMValue(TCIMType(kCIMTypeString), 0)), ""},
      {"class name", Of(Reference("C", {})),
       "<VALUE.REFERENCE>\n <CLASSNAME NAME=\"C\"/>\n</VALUE.REFERENCE>\n"},
      {"class path", Of(Reference("C", {}, "root/x", "h")),
       "<VALUE.REFERENCE>\n <CLASSPATH>\n  <NAMESPACEPATH>\n   <HOST>h</HOST>\n"
       "   <LOCALNAMESPACEPATH>\n    <NAMESPACE NAME=\"root\"/>\n    <NAMESPACE NAME=\"x\"/>\n"
       "   </LOCALNAMESPACEPATH>\n  </NAMESPACEPATH>\n  <CLASSNAME NAME=\"C\"/>\n </CLASSPATH>\n"
       "</VALUE.REFERENCE>\n"},
      {"local instance path",
       Of(Reference("C",
                    {{"s", key},
                     {"n", TCIMValue::MakeSigned(kCIMTypeSint8, -1)},
                     {"b", TCIMValue(false)},
                     {"t", TCIMValue(TCIMDateTime::MakeInterval(1, 0, 0, 0, 0))},
                     {"r", Reference("D", {{"c", TCIMValue::MakeUnsigned(kCIMTypeChar16, 'x')}})}},
                    "ns")),
       "<VALUE.REFERENCE>\n <LOCALINSTANCEPATH>\n  <LOCALNAMESPACEPATH>\n"
       "   <NAMESPACE NAME=\"ns\"/>\n  </LOCALNAMESPACEPATH>\n  <INSTANCENAME CLASSNAME=\"C\">\n"
       "   <KEYBINDING NAME=\"s\">\n    <KEYVALUE VALUETYPE=\"string\" "
       "TYPE=\"string\">a\"b</KEYVALUE>\n"
       "   </KEYBINDING>\n   <KEYBINDING NAME=\"n\">\n"
       "    <KEYVALUE VALUETYPE=\"numeric\" TYPE=\"sint8\">-1</KEYVALUE>\n   </KEYBINDING>\n"
       "   <KEYBINDING NAME=\"b\">\n    <KEYVALUE VALUETYPE=\"boolean\" "
       "TYPE=\"boolean\">false</KEYVALUE>\n"
       "   </KEYBINDING>\n   <KEYBINDING NAME=\"t\">\n"
       "    <KEYVALUE VALUETYPE=\"string\" TYPE=\"datetime\">00000001000000.000000:000</KEYVALUE>\n"
       "   </KEYBINDING>\n   <KEYBINDING NAME=\"r\">\n    <VALUE.REFERENCE>\n"
       "     <INSTANCENAME CLASSNAME=\"D\">\n      <KEYBINDING NAME=\"c\">\n"
       "       <KEYVALUE VALUETYPE=\"string\" TYPE=\"char16\">x</KEYVALUE>\n      </KEYBINDING>\n"
       "     </INSTANCENAME>\n    </VALUE.REFERENCE>\n   </KEYBINDING>\n  </INSTANCENAME>\n"
       " </LOCALINSTANCEPATH>\n</VALUE.REFERENCE>\n"},
      {"host without namespace, keys that cannot be",
       Of(Reference("C", {{"a", Array(kCIMTypeUint8, {})}, {"n", TCIMValue()}}, "", "h")),
       "<VALUE.REFERENCE>\n <INSTANCENAME CLASSNAME=\"C\"/>\n</VALUE.REFERENCE>\n",
       {kUnwritable + "the host 'h' of a path in a value left out: a path without namespace has no "
                      "place for it",
        kUnwritable + "key 'a' left out: a key cannot be an array",
        kUnwritable + "key 'n' left out: it has no value"}},
      {"reference array", Of(Array(kCIMTypeReference, {Reference("C", {}), TCIMValue()})),
       "<VALUE.REFARRAY>\n <VALUE.REFERENCE>\n  <CLASSNAME NAME=\"C\"/>\n </VALUE.REFERENCE>\n"
       " <VALUE.NULL/>\n</VALUE.REFARRAY>\n"},
  });
  // 16 references nest; the 17th is left out.
  logger.entries.clear();
  const std::string nested = Written(Of(Reference("R", deep)));
  std::size_t references = 0;
  for (std::size_t at = 0; (at = nested.find("<VALUE.REFERENCE>", at)) != std::string::npos; ++at)
    ++references;
  EXPECT_EQ(16U, references);
  EXPECT_EQ(std::string::npos, nested.find("KEYVALUE"));
  std::string where = "key 'r'";
  for (int level = 1; level < 16; ++level)
    where += " of key 'r'";
  EXPECT_EQ(Log(), std::vector<std::string>{kUnwritable + where +
                                            " left out: references nest more than 16 deep"});
}

// Each member form, qualifier flavors against the declaration's, inherited
// members and propagated qualifiers left out; the document reads back.
TEST_F(CIMXMLWriterTest, ObjectsAndTheirMembers) {
  const std::string document = InDeclGroup(
      "<QUALIFIER.DECLARATION NAME=\"Key\" TYPE=\"boolean\" OVERRIDABLE=\"false\">"
      "<SCOPE PROPERTY=\"true\" REFERENCE=\"true\"/><VALUE>false</VALUE></QUALIFIER.DECLARATION>"
      "<QUALIFIER.DECLARATION NAME=\"Values\" TYPE=\"string\" ISARRAY=\"true\" ARRAYSIZE=\"2\" "
      "TRANSLATABLE=\"true\"><SCOPE CLASS=\"true\"/></QUALIFIER.DECLARATION>"
      "<QUALIFIER.DECLARATION NAME=\"EmbeddedInstance\" TYPE=\"string\"><SCOPE PROPERTY=\"true\"/>"
      "</QUALIFIER.DECLARATION><VALUE.OBJECT><CLASS NAME=\"A\"><QUALIFIER NAME=\"Values\" "
      "TYPE=\"string\" TOSUBCLASS=\"false\"><VALUE.ARRAY><VALUE>x</VALUE><VALUE.NULL/>"
      "</VALUE.ARRAY></QUALIFIER><PROPERTY NAME=\"k\" TYPE=\"string\"><QUALIFIER NAME=\"Key\" "
      "TYPE=\"boolean\" OVERRIDABLE=\"true\"><VALUE>true</VALUE></QUALIFIER></PROPERTY>"
      "<PROPERTY.ARRAY NAME=\"a\" TYPE=\"uint8\" ARRAYSIZE=\"4\"/><PROPERTY.REFERENCE NAME=\"r\" "
      "REFERENCECLASS=\"A\"/><PROPERTY NAME=\"e\" TYPE=\"string\"><QUALIFIER "
      "NAME=\"EmbeddedInstance\" TYPE=\"string\"><VALUE>A</VALUE></QUALIFIER></PROPERTY>"
      "<METHOD NAME=\"m\"><PARAMETER NAME=\"p\" TYPE=\"real32\"/><PARAMETER.ARRAY NAME=\"pa\" "
      "TYPE=\"string\" ARRAYSIZE=\"3\"/><PARAMETER.REFERENCE NAME=\"pr\" REFERENCECLASS=\"A\"/>"
      "<PARAMETER.REFARRAY NAME=\"pra\"/></METHOD></CLASS></VALUE.OBJECT><VALUE.OBJECT>"
      "<CLASS NAME=\"B\" SUPERCLASS=\"A\"><PROPERTY NAME=\"k\" TYPE=\"string\"><VALUE>d</VALUE>"
      "</PROPERTY></CLASS></VALUE.OBJECT><VALUE.OBJECT><INSTANCE CLASSNAME=\"B\"><PROPERTY "
      "NAME=\"k\" TYPE=\"string\"><VALUE> &lt;&#13;&#10;</VALUE></PROPERTY><PROPERTY.REFERENCE "
      "NAME=\"r\"><VALUE.REFERENCE><INSTANCENAME CLASSNAME=\"B\"><KEYBINDING NAME=\"k\">"
      "<KEYVALUE>z</KEYVALUE></KEYBINDING></INSTANCENAME></VALUE.REFERENCE></PROPERTY.REFERENCE>"
      "</INSTANCE></VALUE.OBJECT>");
  ParseFull(document);
  ASSERT_EQ(Log(), std::vector<std::string>{});
  const auto instance = ns->GetInstances("B", false).at(0);
  const auto cls = [&](const char *name) {
    return [this, name](std::ostream &out) { TCIMXMLWriter::WriteClass(out, *ns->GetClass(name)); };
  };
  Check({
      {"qualifier declaration",
       [&](std::ostream &out) {
         TCIMXMLWriter::WriteQualifierDecl(out, *ns->GetQualifierDecl("Values"));
       },
       R"(<QUALIFIER.DECLARATION NAME="Values" TYPE="string" ISARRAY="true" ARRAYSIZE="2" OVERRIDABLE="true" TOSUBCLASS="true" TRANSLATABLE="true">
 <SCOPE CLASS="true" ASSOCIATION="false" REFERENCE="false" PROPERTY="false" METHOD="false" PARAMETER="false" INDICATION="false"/>
</QUALIFIER.DECLARATION>
)"},
      // Values is translatable as declared, Key overridable against it.
      {"class", cls("A"), R"(<CLASS NAME="A">
 <QUALIFIER NAME="Values" TYPE="string" TOSUBCLASS="false" TRANSLATABLE="true">
  <VALUE.ARRAY>
   <VALUE>x</VALUE>
   <VALUE.NULL/>
  </VALUE.ARRAY>
 </QUALIFIER>
 <PROPERTY NAME="k" TYPE="string" CLASSORIGIN="A">
  <QUALIFIER NAME="Key" TYPE="boolean" OVERRIDABLE="true">
   <VALUE>true</VALUE>
  </QUALIFIER>
 </PROPERTY>
 <PROPERTY.ARRAY NAME="a" TYPE="uint8" ARRAYSIZE="4" CLASSORIGIN="A"/>
 <PROPERTY.REFERENCE NAME="r" REFERENCECLASS="A" CLASSORIGIN="A"/>
 <PROPERTY NAME="e" TYPE="string" CLASSORIGIN="A" EmbeddedObject="instance">
  <QUALIFIER NAME="EmbeddedInstance" TYPE="string">
   <VALUE>A</VALUE>
  </QUALIFIER>
 </PROPERTY>
 <METHOD NAME="m" CLASSORIGIN="A">
  <PARAMETER NAME="p" TYPE="real32"/>
  <PARAMETER.ARRAY NAME="pa" TYPE="string" ARRAYSIZE="3"/>
  <PARAMETER.REFERENCE NAME="pr" REFERENCECLASS="A"/>
  <PARAMETER.REFARRAY NAME="pra"/>
 </METHOD>
</CLASS>
)"},
      // The override without its propagated Key.
      {"subclass", cls("B"), R"(<CLASS NAME="B" SUPERCLASS="A">
 <PROPERTY NAME="k" TYPE="string" CLASSORIGIN="B">
  <VALUE>d</VALUE>
 </PROPERTY>
</CLASS>
)"},
      {"instance", [&](std::ostream &out) { TCIMXMLWriter::WriteInstance(out, *instance); },
       "<INSTANCE CLASSNAME=\"B\">\n <PROPERTY NAME=\"k\" TYPE=\"string\">\n"
       "  <VALUE> &lt;&#13;\n</VALUE>\n </PROPERTY>\n"
       R"( <PROPERTY.ARRAY NAME="a" TYPE="uint8" ARRAYSIZE="4"/>
 <PROPERTY.REFERENCE NAME="r" REFERENCECLASS="A">
  <VALUE.REFERENCE>
   <LOCALINSTANCEPATH>
    <LOCALNAMESPACEPATH>
     <NAMESPACE NAME="root"/>
     <NAMESPACE NAME="test"/>
    </LOCALNAMESPACEPATH>
    <INSTANCENAME CLASSNAME="B">
     <KEYBINDING NAME="k">
      <KEYVALUE VALUETYPE="string" TYPE="string">z</KEYVALUE>
     </KEYBINDING>
    </INSTANCENAME>
   </LOCALINSTANCEPATH>
  </VALUE.REFERENCE>
 </PROPERTY.REFERENCE>
 <PROPERTY NAME="e" TYPE="string" EmbeddedObject="instance"/>
</INSTANCE>
)"},
  });
  RoundTrip({scratch.Write("objects.xml", document)});
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
  base->AddProperty("references", Array(kCIMTypeReference, {}));
  base->AddMethod("m", TCIMType(kCIMTypeUint8).GetArrayType());
  const auto standalone = CreateStandaloneInstance("S", nullptr);
  standalone->SetPropertyValue("k", TCIMValue("v"), {{"KEY", TCIMValue(true)}});
  declaration.classes = {ns->CreateClass("Sub", base), base,
                         CreateCIMNamespace("y")->CreateClass("base", nullptr)};
  declaration.instances = {standalone};
  const std::string path = R"(   <LOCALNAMESPACEPATH>
    <NAMESPACE NAME="a"/>
    <NAMESPACE NAME=""/>
    <NAMESPACE NAME="b"/>
   </LOCALNAMESPACEPATH>
)";
  EXPECT_EQ(
      R"(<?xml version="1.0" encoding="utf-8"?>
<CIM CIMVERSION="2.0" DTDVERSION="2.4">
 <DECLARATION>
  <DECLGROUP>
)" + path +
          R"(   <QUALIFIER.DECLARATION NAME="Q" TYPE="boolean" ISARRAY="false" OVERRIDABLE="true" TOSUBCLASS="true" TRANSLATABLE="false">
    <SCOPE CLASS="true" ASSOCIATION="true" REFERENCE="true" PROPERTY="true" METHOD="true" PARAMETER="true" INDICATION="true"/>
    <VALUE>true</VALUE>
   </QUALIFIER.DECLARATION>
   <VALUE.OBJECT>
    <CLASS NAME="Base"/>
   </VALUE.OBJECT>
   <VALUE.OBJECT>
    <CLASS NAME="Sub" SUPERCLASS="Base"/>
   </VALUE.OBJECT>
  </DECLGROUP>
  <DECLGROUP.WITHNAME>
)" + path +
          R"(   <VALUE.NAMEDOBJECT>
    <INSTANCENAME CLASSNAME="S">
     <KEYBINDING NAME="k">
      <KEYVALUE VALUETYPE="string" TYPE="string">v</KEYVALUE>
     </KEYBINDING>
    </INSTANCENAME>
    <INSTANCE CLASSNAME="S">
     <PROPERTY NAME="k" TYPE="string">
      <VALUE>v</VALUE>
     </PROPERTY>
    </INSTANCE>
   </VALUE.NAMEDOBJECT>
  </DECLGROUP.WITHNAME>
 </DECLARATION>
</CIM>
)",
      Written([&](std::ostream &out) { TCIMXMLWriter::WriteDocument(out, declaration); }));
  // The same declaration twice is written once without a line.
  const std::string left = kUnwritable + "qualifier declaration 'R' left out: CIM-XML has no ";
  EXPECT_EQ(Log(),
            (std::vector<std::string>{
                kUnwritable + "qualifier declaration 'Q' left out: another of that name came first",
                left + "qualifier of type reference",
                kUnwritable + "class 'base' left out: another of that name came first",
                kUnwritable + "property 'untyped' of class 'Base' left out: CIM-XML has no "
                              "property of type none",
                kUnwritable + "property 'references' of class 'Base' left out: CIM-XML has no "
                              "property of type reference[]",
                kUnwritable + "method 'm' of class 'Base' left out: CIM-XML has no method that "
                              "returns uint8[]"}));
}

TEST_F(CIMXMLWriterTest, ExamplesReadBackIntoTheSameModel) {
  const std::string examples = std::string(ORV_EXAMPLES_DIR) + "/";
  RoundTrip({examples + "schema.xml"});
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
