// A fixture for parse-state tests: small documents go through the real
// tokenizer and parser into a real in-memory namespace, with a capturing
// logger installed as core logger. Parse(xml) returns what was collected
// and whether the parse ended early.
#ifndef ORV_TESTS_CIMXML_PARSERFIXTURE_H
#define ORV_TESTS_CIMXML_PARSERFIXTURE_H

#include "cimxml/CIMXMLParser.h"
#include "core_api/CIMInterfaces.h"
#include "core_api/ORVStatusCode.h"
#include "support/CapturingLogger.h"

#include <boost/shared_ptr.hpp>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace orvtest {

/// What one parse left behind.
struct TParseResult {
  std::vector<boost::shared_ptr<NVRNORV20::ICIMClass>> classes;
  std::vector<boost::shared_ptr<NVRNORV20::ICIMInstance>> instances;
  /// True when an exception ended the parse (tokenizer errors and the
  /// like); errors that the states contain leave it false.
  bool aborted = false;
};

/// The text of the log line that FatalError writes for a message on a line.
inline std::string ParserError(unsigned line, const std::string &message) {
  return "CIM-XML Parser line " + std::to_string(line) + ":" + message;
}

/// A document holding body inside CIM, DECLARATION and DECLGROUP.
inline std::string InDeclGroup(const std::string &body) {
  return "<CIM><DECLARATION><DECLGROUP>" + body + "</DECLGROUP></DECLARATION></CIM>";
}

/// A document holding body inside CIM and MESSAGE.
inline std::string InMessage(const std::string &body) {
  return "<CIM><MESSAGE ID=\"1\" PROTOCOLVERSION=\"1.0\">" + body + "</MESSAGE></CIM>";
}

class TParserFixture : public ::testing::Test {
protected:
  TParserFixture() : ns(NVRNORV20::CreateCIMNamespace("root/test")) {}

  /// Parses a whole document, held in a buffer of its own, into ns.
  TParseResult Parse(const std::string &xml, bool qn402Mode = false) {
    std::vector<char> buffer(xml.begin(), xml.end());
    buffer.push_back('\0');
    NVRNORV20::TCIMXMLParser parser(ns);
    if (qn402Mode)
      parser.SetQN402Mode();
    TParseResult result;
    try {
      parser.Parse(buffer.data());
    } catch (const NVRNORV20::TORVException &) {
      result.aborted = true;
    }
    result.classes = parser.GetClassesCollected();
    result.instances = parser.GetInstancesCollected();
    return result;
  }

  /// Parses a document that must load without any log line, then forgets
  /// the log, so that a test sees only the lines of its own document.
  TParseResult Load(const std::string &xml) {
    TParseResult result = Parse(xml);
    EXPECT_FALSE(result.aborted);
    EXPECT_TRUE(logger.entries.empty()) << "first: " << logger.entries.front().second;
    logger.entries.clear();
    return result;
  }

  /// The logged texts, in order.
  std::vector<std::string> Log() const { return logger.Texts(); }

  TCapturingLogger logger;
  boost::shared_ptr<NVRNORV20::ICIMNamespace> ns;
};

} // namespace orvtest

#endif
