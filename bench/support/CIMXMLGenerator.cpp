#include "support/CIMXMLGenerator.h"

#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <string_view>

namespace orvbench {

namespace {

// Deterministic word stream for descriptions, so that every run of a
// benchmark sees the same bytes.
class TWords {
public:
  explicit TWords(std::uint64_t seed) : state(seed * 2654435761u + 1) {}

  std::string Sentence(std::size_t words) {
    static const std::string_view kWords[] = {
        "the",   "managed", "element", "instance",  "property", "describes", "value",
        "of",    "a",       "system",  "device",    "when",     "is",        "set",
        "to",    "state",   "enabled", "reported",  "by",       "provider",  "and",
        "which", "may",     "be",      "null",      "if",       "unknown",   "&lt;",
        "&gt;",  "&amp;",   "&quot;",  "interface", "network",  "storage",   "capacity"};
    std::string text;
    for (std::size_t i = 0; i < words; ++i) {
      if (i != 0)
        text += ' ';
      text += kWords[Next() % std::size(kWords)];
    }
    text += '.';
    return text;
  }

  std::uint64_t Next() {
    state = state * 6364136223846793005u + 1442695040888963407u;
    return state >> 33;
  }

private:
  std::uint64_t state;
};

void Qualifier(std::string &out, std::string_view name, std::string_view type,
               std::string_view value, bool translatable = false) {
  out += "<QUALIFIER NAME=\"";
  out += name;
  out += "\" TYPE=\"";
  out += type;
  out += translatable ? "\" TRANSLATABLE=\"true\"><VALUE>" : "\"><VALUE>";
  out += value;
  out += "</VALUE></QUALIFIER>\n";
}

void ArrayQualifier(std::string &out, std::string_view name,
                    std::initializer_list<std::string_view> values) {
  out += "<QUALIFIER NAME=\"";
  out += name;
  out += "\" TYPE=\"string\"><VALUE.ARRAY>";
  for (std::string_view value : values) {
    out += "<VALUE>";
    out += value;
    out += "</VALUE>";
  }
  out += "</VALUE.ARRAY></QUALIFIER>\n";
}

void QualifierDeclaration(std::string &out, std::string_view name, std::string_view type,
                          bool isArray, std::string_view scope, std::string_view value) {
  out += "<QUALIFIER.DECLARATION NAME=\"";
  out += name;
  out += "\" TYPE=\"";
  out += type;
  out += isArray ? "\" ISARRAY=\"true\"" : "\" ISARRAY=\"false\"";
  out += " OVERRIDABLE=\"true\" TOSUBCLASS=\"true\">";
  static const std::string_view kScopes[] = {"CLASS",  "ASSOCIATION", "REFERENCE", "PROPERTY",
                                             "METHOD", "PARAMETER",   "INDICATION"};
  out += "<SCOPE";
  for (std::string_view each : kScopes) {
    out += ' ';
    out += each;
    out += scope.find(each) != std::string_view::npos ? "=\"true\"" : "=\"false\"";
  }
  out += "/>";
  if (!value.empty()) {
    out += "<VALUE>";
    out += value;
    out += "</VALUE>";
  }
  out += "</QUALIFIER.DECLARATION>\n";
}

void Head(std::string &out) {
  out += "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
         "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\">\n"
         "<DECLARATION>\n<DECLGROUP>\n";
}

void Tail(std::string &out) {
  out += "</DECLGROUP>\n</DECLARATION>\n</CIM>\n";
}

void KeyReference(std::string &out, std::string_view name, TWords &words) {
  out += "<PROPERTY.REFERENCE NAME=\"";
  out += name;
  out += "\" REFERENCECLASS=\"";
  out += kGeneratedBaseClass;
  out += "\">\n";
  Qualifier(out, "Key", "boolean", "true");
  Qualifier(out, "Description", "string", words.Sentence(18), true);
  out += "</PROPERTY.REFERENCE>\n";
}

void BaseClass(std::string &out) {
  TWords words(0);
  out += "<VALUE.OBJECT>\n<CLASS NAME=\"";
  out += kGeneratedBaseClass;
  out += "\">\n";
  Qualifier(out, "Abstract", "boolean", "true");
  Qualifier(out, "Description", "string", words.Sentence(40), true);
  out += "<PROPERTY NAME=\"InstanceID\" TYPE=\"string\">\n";
  Qualifier(out, "Key", "boolean", "true");
  Qualifier(out, "Description", "string", words.Sentence(30), true);
  out += "</PROPERTY>\n<PROPERTY NAME=\"Caption\" TYPE=\"string\">\n";
  Qualifier(out, "MaxLen", "uint32", "64");
  out += "</PROPERTY>\n</CLASS>\n</VALUE.OBJECT>\n";
}

void OrdinaryClassBody(std::string &out, std::size_t index, TWords &words) {
  const std::string count = std::to_string(index * 7 % 1000);
  out += "<PROPERTY NAME=\"ElementName\" TYPE=\"string\">\n";
  Qualifier(out, "Description", "string", words.Sentence(25), true);
  Qualifier(out, "MaxLen", "uint32", "256");
  out += "</PROPERTY>\n<PROPERTY NAME=\"ElementCount\" TYPE=\"uint32\">\n";
  Qualifier(out, "Description", "string", words.Sentence(15), true);
  out += "<VALUE>" + count + "</VALUE>\n</PROPERTY>\n";
  out += "<PROPERTY NAME=\"Ratio\" TYPE=\"real64\"><VALUE>0.25</VALUE></PROPERTY>\n";
  out += "<PROPERTY NAME=\"Enabled\" TYPE=\"boolean\"><VALUE>true</VALUE></PROPERTY>\n";
  out += "<PROPERTY NAME=\"InstallDate\" TYPE=\"datetime\">\n";
  Qualifier(out, "Description", "string", words.Sentence(12), true);
  out += "</PROPERTY>\n<PROPERTY.ARRAY NAME=\"OperationalStatus\" TYPE=\"uint16\">\n";
  Qualifier(out, "Description", "string", words.Sentence(30), true);
  ArrayQualifier(out, "ValueMap", {"0", "1", "2", "3", "4", "5", ".."});
  ArrayQualifier(out, "Values",
                 {"Unknown", "Other", "OK", "Degraded", "Stressed", "Error", "Vendor Reserved"});
  out += "<VALUE.ARRAY><VALUE>2</VALUE></VALUE.ARRAY>\n</PROPERTY.ARRAY>\n";
  out += "<PROPERTY.ARRAY NAME=\"Labels\" TYPE=\"string\">\n";
  Qualifier(out, "Description", "string", words.Sentence(10), true);
  out += "</PROPERTY.ARRAY>\n";

  out += "<METHOD NAME=\"RequestStateChange\" TYPE=\"uint32\">\n";
  Qualifier(out, "Description", "string", words.Sentence(35), true);
  ArrayQualifier(out, "ValueMap", {"0", "1", "2", "4096", "4097"});
  ArrayQualifier(out, "Values",
                 {"Completed", "Not Supported", "Failed", "Job Started", "Invalid State"});
  out += "<PARAMETER NAME=\"RequestedState\" TYPE=\"uint16\">\n";
  Qualifier(out, "In", "boolean", "true");
  Qualifier(out, "Description", "string", words.Sentence(20), true);
  out += "</PARAMETER>\n<PARAMETER.REFERENCE NAME=\"Job\" REFERENCECLASS=\"";
  out += kGeneratedBaseClass;
  out += "\">\n";
  Qualifier(out, "In", "boolean", "false");
  Qualifier(out, "Out", "boolean", "true");
  out += "</PARAMETER.REFERENCE>\n<PARAMETER.ARRAY NAME=\"Options\" TYPE=\"string\">\n";
  Qualifier(out, "In", "boolean", "true");
  out += "</PARAMETER.ARRAY>\n</METHOD>\n";
  out += "<METHOD NAME=\"Reset\" TYPE=\"uint32\">\n";
  Qualifier(out, "Description", "string", words.Sentence(20), true);
  out += "</METHOD>\n";
}

void GeneratedClass(std::string &out, std::size_t index, const std::string &superClass) {
  TWords words(index + 1);
  out += "<VALUE.OBJECT>\n<CLASS NAME=\"" + GeneratedClassName(index) + "\" SUPERCLASS=\"" +
         superClass + "\">\n";
  if (IsGeneratedAssociation(index))
    Qualifier(out, "Association", "boolean", "true");
  Qualifier(out, "Description", "string", words.Sentence(60), true);
  Qualifier(out, "Version", "string", "2.19.0", true);
  if (IsGeneratedAssociation(index)) {
    KeyReference(out, "Antecedent", words);
    KeyReference(out, "Dependent", words);
  } else {
    OrdinaryClassBody(out, index, words);
  }
  out += "</CLASS>\n</VALUE.OBJECT>\n";
}

void KeyBindingReference(std::string &out, std::string_view name, std::size_t target,
                         std::size_t classCount) {
  out += "<PROPERTY.REFERENCE NAME=\"";
  out += name;
  out += "\" REFERENCECLASS=\"";
  out += kGeneratedBaseClass;
  out += "\"><VALUE.REFERENCE><INSTANCENAME CLASSNAME=\"" +
         GeneratedClassName(target % classCount) +
         "\"><KEYBINDING NAME=\"InstanceID\"><KEYVALUE VALUETYPE=\"string\">"
         "orv:bench:" +
         std::to_string(target) +
         "</KEYVALUE></KEYBINDING></INSTANCENAME></VALUE.REFERENCE>"
         "</PROPERTY.REFERENCE>\n";
}

void OrdinaryInstanceProperties(std::string &out, std::size_t j) {
  TWords words(j + 7);
  const std::string id = std::to_string(j);
  out += "<PROPERTY NAME=\"InstanceID\" TYPE=\"string\"><VALUE>orv:bench:" + id +
         "</VALUE></PROPERTY>\n";
  out += "<PROPERTY NAME=\"Caption\" TYPE=\"string\"><VALUE>" + words.Sentence(6) +
         "</VALUE></PROPERTY>\n";
  out += "<PROPERTY NAME=\"ElementName\" TYPE=\"string\"><VALUE>element " + id +
         "</VALUE></PROPERTY>\n";
  out += "<PROPERTY NAME=\"ElementCount\" TYPE=\"uint32\"><VALUE>" + std::to_string(j % 65536) +
         "</VALUE></PROPERTY>\n";
  out += "<PROPERTY NAME=\"Enabled\" TYPE=\"boolean\"><VALUE>" +
         std::string(j % 2 == 0 ? "true" : "false") + "</VALUE></PROPERTY>\n";
  out += "<PROPERTY NAME=\"InstallDate\" TYPE=\"datetime\"><VALUE>"
         "20240102030405.000000+000</VALUE></PROPERTY>\n";
  out += "<PROPERTY.ARRAY NAME=\"OperationalStatus\" TYPE=\"uint16\">"
         "<VALUE.ARRAY><VALUE>2</VALUE><VALUE>" +
         std::to_string(j % 6) + "</VALUE></VALUE.ARRAY></PROPERTY.ARRAY>\n";
}

} // namespace

std::string GeneratedClassName(std::size_t index) {
  return "ORV_Bench" + std::to_string(index);
}

bool IsGeneratedAssociation(std::size_t index) {
  return index % 4 == 3;
}

std::string GenerateClassDocument(std::size_t classCount, std::size_t chainDepth) {
  std::string out;
  out.reserve(2048 + classCount * 6500);
  Head(out);
  QualifierDeclaration(out, "Abstract", "boolean", false, "CLASS ASSOCIATION INDICATION", "false");
  QualifierDeclaration(out, "Association", "boolean", false, "ASSOCIATION", "false");
  QualifierDeclaration(out, "Key", "boolean", false, "PROPERTY REFERENCE", "false");
  QualifierDeclaration(out, "Description", "string", false,
                       "CLASS ASSOCIATION REFERENCE PROPERTY METHOD PARAMETER INDICATION", "");
  QualifierDeclaration(out, "Version", "string", false, "CLASS ASSOCIATION INDICATION", "");
  QualifierDeclaration(out, "MaxLen", "uint32", false, "PROPERTY METHOD PARAMETER", "");
  QualifierDeclaration(out, "ValueMap", "string", true, "PROPERTY METHOD PARAMETER", "");
  QualifierDeclaration(out, "Values", "string", true, "PROPERTY METHOD PARAMETER", "");
  QualifierDeclaration(out, "In", "boolean", false, "PARAMETER", "true");
  QualifierDeclaration(out, "Out", "boolean", false, "PARAMETER", "false");
  BaseClass(out);
  // Ordinary classes form chains of chainDepth, each deriving from the
  // ordinary class before it; associations derive from the base.
  std::string previousOrdinary;
  std::size_t ordinary = 0;
  for (std::size_t i = 0; i < classCount; ++i) {
    if (IsGeneratedAssociation(i)) {
      GeneratedClass(out, i, kGeneratedBaseClass);
      continue;
    }
    const bool chained = chainDepth > 1 && ordinary % chainDepth != 0;
    GeneratedClass(out, i, chained ? previousOrdinary : kGeneratedBaseClass);
    previousOrdinary = GeneratedClassName(i);
    ++ordinary;
  }
  Tail(out);
  return out;
}

std::string GenerateInstanceDocument(std::size_t instanceCount, std::size_t classCount) {
  std::string out;
  out.reserve(1024 + instanceCount * 900);
  Head(out);
  for (std::size_t j = 0; j < instanceCount; ++j) {
    const std::size_t index = j % classCount;
    out += "<VALUE.OBJECT>\n<INSTANCE CLASSNAME=\"" + GeneratedClassName(index) + "\">\n";
    if (IsGeneratedAssociation(index)) {
      // index >= 3, so j-1 and j-2 are instances of the two ordinary
      // classes just before this one.
      KeyBindingReference(out, "Antecedent", j - 2, classCount);
      KeyBindingReference(out, "Dependent", j - 1, classCount);
    } else {
      OrdinaryInstanceProperties(out, j);
    }
    out += "</INSTANCE>\n</VALUE.OBJECT>\n";
  }
  Tail(out);
  return out;
}

std::string GenerateEnumerationResponse(std::size_t instanceCount, std::size_t classCount) {
  std::string out;
  out.reserve(1024 + instanceCount * 1100);
  out += "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<CIM CIMVERSION=\"2.0\" "
         "DTDVERSION=\"2.4\">\n<MESSAGE ID=\"1\" PROTOCOLVERSION=\"1.0\">\n<SIMPLERSP>\n"
         "<IMETHODRESPONSE NAME=\"EnumerateInstances\">\n<IRETURNVALUE>\n";
  for (std::size_t j = 0; j < instanceCount; ++j) {
    // Ordinary classes only: the ones before each association.
    const std::string className = GeneratedClassName((j % classCount) / 4 * 4 + j % 3);
    out += "<VALUE.NAMEDINSTANCE>\n<INSTANCENAME CLASSNAME=\"" + className +
           "\"><KEYBINDING NAME=\"InstanceID\"><KEYVALUE VALUETYPE=\"string\">orv:bench:" +
           std::to_string(j) + "</KEYVALUE></KEYBINDING></INSTANCENAME>\n<INSTANCE CLASSNAME=\"" +
           className + "\">\n";
    OrdinaryInstanceProperties(out, j);
    out += "</INSTANCE>\n</VALUE.NAMEDINSTANCE>\n";
  }
  out += "</IRETURNVALUE>\n</IMETHODRESPONSE>\n</SIMPLERSP>\n</MESSAGE>\n</CIM>\n";
  return out;
}

std::size_t ClassCountForSize(std::size_t bytes) {
  const std::size_t sample = 64;
  const std::size_t perClass =
      (GenerateClassDocument(2 * sample).size() - GenerateClassDocument(sample).size()) / sample;
  return bytes / perClass + 1;
}

} // namespace orvbench
