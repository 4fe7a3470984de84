// Documents cut at a byte load as the file loader loads them and end in a
// result or a TORVException: never a crash, a hang or a leak (the sanitizers
// watch every load). A cut may only lose objects from the document's end,
// its lines are the parser's own errors, and only a cut after the root
// element's end tag loads without one. Each example is cut at every byte.
#include "support/Fixtures.h"

#include <algorithm>
#include <cstring>
#include <memory>

namespace orvtest {
namespace {

/// What one load left: what the namespace holds (names, in order), the log
/// and the status that ended it.
struct TOutcome {
  std::vector<std::string> classes, instances;
  std::vector<std::pair<int, std::string>> log;
  EORVStatusCode status = kORVStatusOK;
  bool Clean() const { return status == kORVStatusOK && log.empty(); }
};

/// Loads the first length bytes (all by default) into ns from a copy of
/// exactly length + 1 bytes ending in the NUL, so that AddressSanitizer sees
/// a read past it.
TOutcome Load(const boost::shared_ptr<ICIMNamespace> &ns, const std::string &text,
              std::size_t length = std::string::npos) {
  length = std::min(length, text.size());
  TCapturingLogger logger;
  TOutcome outcome;
  std::unique_ptr<char[]> buffer(new char[length + 1]);
  std::memcpy(buffer.get(), text.data(), length);
  buffer[length] = '\0';
  TCIMXMLParser parser(ns);
  outcome.status = StatusOf([&] { parser.Parse(buffer.get()); });
  for (const auto &cls : ns->GetClasses())
    outcome.classes.push_back(cls->GetName());
  for (const auto &instance : ns->GetInstances("", false))
    outcome.instances.push_back(instance->GetClassName());
  outcome.log = std::move(logger.entries);
  return outcome;
}

bool IsPrefix(const std::vector<std::string> &part, const std::vector<std::string> &whole) {
  return part.size() <= whole.size() && std::equal(part.begin(), part.end(), whole.begin());
}

/// Everything that a cut of length bytes of text must satisfy.
::testing::AssertionResult CheckCut(const TOutcome &cut, const TOutcome &whole,
                                    const std::string &text, std::size_t length) {
  const std::size_t rootEnd = text.rfind('>') + 1;
  const char *syntax = "CIM-XML Parser line ";
  if (cut.status != kORVStatusOK && cut.status != kORVStatusInvalidDocument &&
      cut.status != kORVStatusParserStateMissing)
    return ::testing::AssertionFailure() << "status " << cut.status;
  if (cut.status == kORVStatusInvalidDocument &&
      (cut.log.empty() || cut.log.back().second.rfind(syntax, 0) != 0))
    return ::testing::AssertionFailure() << "status 9 without its syntax error line last";
  for (const auto &entry : cut.log)
    if (entry.first != 3)
      return ::testing::AssertionFailure() << "line [" << entry.first << "] " << entry.second;
  if (!IsPrefix(cut.classes, whole.classes) || !IsPrefix(cut.instances, whole.instances))
    return ::testing::AssertionFailure() << "objects that the whole document does not make there";
  if (length < rootEnd && cut.Clean())
    return ::testing::AssertionFailure() << "a cut inside the root element loads cleanly";
  if (length >= rootEnd &&
      (!cut.Clean() || cut.classes != whole.classes || cut.instances != whole.instances))
    return ::testing::AssertionFailure() << "a cut after the root element differs from the whole";
  return ::testing::AssertionSuccess();
}

// Each example is loaded into a namespace that holds the examples before it.
class ExamplePrefixTest : public ::testing::TestWithParam<int> {};

TEST_P(ExamplePrefixTest, EveryCutEndsInAResultOrAnException) {
  const char *const examples[] = {"schema.xml", "instances.xml", "message.xml"};
  const std::string directory = std::string(ORV_EXAMPLES_DIR) + "/";
  const std::string text = ReadFile(directory + examples[GetParam()]);
  const auto prepared = [&] {
    auto ns = CreateCIMNamespace("root/example");
    for (int before = 0; before < GetParam(); ++before)
      Load(ns, ReadFile(directory + examples[before]));
    return ns;
  };
  const TOutcome whole = Load(prepared(), text);
  ASSERT_TRUE(whole.Clean());
  // Something to lose: the document itself makes objects.
  ASSERT_GT(whole.classes.size() + whole.instances.size(),
            Load(prepared(), text, 0).classes.size() + Load(prepared(), text, 0).instances.size());
  int failures = 0;
  for (std::size_t length = 0; length <= text.size() && failures < 10; ++length) {
    const auto result = CheckCut(Load(prepared(), text, length), whole, text, length);
    EXPECT_TRUE(result) << "cut after " << length << " bytes";
    failures += result ? 0 : 1;
  }
}

INSTANTIATE_TEST_SUITE_P(Examples, ExamplePrefixTest, ::testing::Range(0, 3));

} // namespace
} // namespace orvtest
