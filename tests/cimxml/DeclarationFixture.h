// Shared pieces of the tests of the declaration and instance states: a set
// of qualifier declarations, documents built around classes and instances,
// and the log lines that the frame writes.
#ifndef ORV_TESTS_CIMXML_DECLARATIONFIXTURE_H
#define ORV_TESTS_CIMXML_DECLARATIONFIXTURE_H

#include "cimxml/ParserFixture.h"
#include "core_api/ORVStatusCode.h"

#include <initializer_list>
#include <string>

namespace orvtest {

/// The qualifiers that the test documents use, in one declaration group.
inline const char *QualifierDeclarations() {
  return "<QUALIFIER.DECLARATION NAME=\"Key\" TYPE=\"boolean\" OVERRIDABLE=\"false\">"
         "<SCOPE PROPERTY=\"true\" REFERENCE=\"true\"/><VALUE>false</VALUE>"
         "</QUALIFIER.DECLARATION>"
         "<QUALIFIER.DECLARATION NAME=\"Description\" TYPE=\"string\" TRANSLATABLE=\"true\">"
         "<SCOPE CLASS=\"true\" PROPERTY=\"true\" METHOD=\"true\" PARAMETER=\"true\"/>"
         "</QUALIFIER.DECLARATION>"
         "<QUALIFIER.DECLARATION NAME=\"Association\" TYPE=\"boolean\">"
         "<SCOPE ASSOCIATION=\"true\"/><VALUE>false</VALUE></QUALIFIER.DECLARATION>"
         "<QUALIFIER.DECLARATION NAME=\"ValueMap\" TYPE=\"string\" ISARRAY=\"true\">"
         "<SCOPE PROPERTY=\"true\" PARAMETER=\"true\"/></QUALIFIER.DECLARATION>"
         "<QUALIFIER.DECLARATION NAME=\"MaxValue\" TYPE=\"sint64\">"
         "<SCOPE PROPERTY=\"true\"/></QUALIFIER.DECLARATION>"
         "<QUALIFIER.DECLARATION NAME=\"In\" TYPE=\"boolean\">"
         "<SCOPE PARAMETER=\"true\"/><VALUE>true</VALUE></QUALIFIER.DECLARATION>";
}

/// Each object (a CLASS or an INSTANCE element) in a VALUE.OBJECT of one
/// declaration group.
inline std::string ObjectDocument(std::initializer_list<std::string> objects) {
  std::string body;
  for (const std::string &object : objects)
    body += "<VALUE.OBJECT>" + object + "</VALUE.OBJECT>";
  return InDeclGroup(body);
}

/// The line that the frame logs for an exception out of an end handler.
inline std::string EndElementError(NVRNORV20::EORVStatusCode status, unsigned line = 1) {
  return std::string("TCIMXMLParser: EndElement: Threw exception ") +
         NVRNORV20::TORVException(NVRNORV20::TORVStatusCode(status)).what() + " on line " +
         std::to_string(line);
}

/// The parser fixture with the test qualifiers declared in its namespace.
class TDeclarationFixture : public TParserFixture {
protected:
  TDeclarationFixture() { Load(InDeclGroup(QualifierDeclarations())); }

  /// Loads one class, which must load cleanly, and returns it.
  boost::shared_ptr<NVRNORV20::ICIMClass> LoadClass(const std::string &classElement) {
    TParseResult result = Load(ObjectDocument({classElement}));
    EXPECT_EQ(result.classes.size(), 1u);
    return result.classes.empty() ? boost::shared_ptr<NVRNORV20::ICIMClass>()
                                  : result.classes.front();
  }
};

} // namespace orvtest

#endif
