// Documents cut at a byte load the way the file loader loads them and end in
// a result or a TORVException: never a crash, a hang or a leak (the
// sanitizers of the test build watch every load, and the leak check runs when
// the process ends). A cut may only lose objects from the document's end,
// every message it causes is one of the parser's own, and only a cut after
// the root element's end tag loads without one.
#include "cimxml/CIMXMLParser.h"
#include "core_api/CIMInterfaces.h"
#include "core_api/ORVStatusCode.h"
#include "support/CapturingLogger.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fstream>
#include <iterator>
#include <memory>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace orvtest {
namespace {

using TNamespacePtr = boost::shared_ptr<NVRNORV20::ICIMNamespace>;

std::string ReadFile(const std::string &path) {
  std::ifstream stream(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
}

enum class ECollect { kClasses, kInstances };

/// What one load left: what the parser collected and what the namespace
/// holds afterwards (class names, in order), the log and how it ended.
struct TOutcome {
  std::vector<std::string> collected;
  std::vector<std::string> classes;
  std::vector<std::string> instances;
  std::vector<std::pair<int, std::string>> log;
  bool threw = false;
  int status = 0;

  bool Clean() const { return !threw && log.empty(); }
};

/// Loads the first `length` bytes of text into ns as the file loader does:
/// one parser over a writable copy of exactly length + 1 bytes ending in the
/// NUL, so that AddressSanitizer sees a read past it.
TOutcome Load(const TNamespacePtr &ns, const std::string &text, std::size_t length,
              ECollect collect) {
  TCapturingLogger logger;
  TOutcome outcome;
  std::unique_ptr<char[]> buffer(new char[length + 1]);
  std::memcpy(buffer.get(), text.data(), length);
  buffer[length] = '\0';
  {
    NVRNORV20::TCIMXMLParser parser(ns);
    try {
      parser.Parse(buffer.get());
    } catch (NVRNORV20::TORVException &ex) {
      outcome.threw = true;
      outcome.status = ex.GetStatusCode();
    }
    // Also after an exception: what was collected up to the cut must be a
    // beginning of the whole document's list.
    if (collect == ECollect::kClasses) {
      for (const auto &cls : parser.GetClassesCollected())
        outcome.collected.push_back(cls->GetName());
    } else {
      for (const auto &instance : parser.GetInstancesCollected())
        outcome.collected.push_back(instance->GetClassName());
    }
  }
  for (const auto &cls : ns->GetClasses())
    outcome.classes.push_back(cls->GetName());
  for (const auto &instance : ns->GetInstances("", false))
    outcome.instances.push_back(instance->GetClassName());
  outcome.log = std::move(logger.entries);
  return outcome;
}

bool IsPrefixOf(const std::vector<std::string> &part, const std::vector<std::string> &whole) {
  return part.size() <= whole.size() && std::equal(part.begin(), part.end(), whole.begin());
}

bool StartsWith(const std::string &text, const char *prefix) {
  return text.compare(0, std::strlen(prefix), prefix) == 0;
}

const char kSyntaxPrefix[] = "CIM-XML Parser line ";

/// The beginnings of every line that the parser writes while it reads.
const char *const kMessagePrefixes[] = {
    kSyntaxPrefix,
    "TCIMXMLParser: EndElement: Threw exception ",
    "TCIMXMLParser: Couldn't find qualifier ",
    "Invalid datetime found on line ",
};

/// The document's text and what loading it whole gave.
struct TReference {
  std::string text;
  TOutcome whole;
  /// Just past the root element's end tag: only blanks follow.
  std::size_t rootEnd = 0;
};

/// Everything that a cut of `length` bytes must satisfy.
::testing::AssertionResult CheckCut(const TOutcome &cut, const TReference &reference,
                                    std::size_t length) {
  const TOutcome &whole = reference.whole;
  if (cut.threw && cut.status != NVRNORV20::kORVStatusInvalidDocument &&
      cut.status != NVRNORV20::kORVStatusParserStateMissing)
    return ::testing::AssertionFailure() << "unexpected status " << cut.status;
  if (cut.threw && cut.status == NVRNORV20::kORVStatusInvalidDocument &&
      (cut.log.empty() || !StartsWith(cut.log.back().second, kSyntaxPrefix)))
    return ::testing::AssertionFailure() << "status 9 without its syntax error line last";
  const auto lines =
      1 + std::count(reference.text.begin(),
                     reference.text.begin() + static_cast<std::ptrdiff_t>(length), '\n');
  for (const auto &entry : cut.log) {
    const auto known =
        std::find_if(std::begin(kMessagePrefixes), std::end(kMessagePrefixes),
                     [&entry](const char *prefix) { return StartsWith(entry.second, prefix); });
    if (entry.first != 3 || known == std::end(kMessagePrefixes))
      return ::testing::AssertionFailure()
             << "unknown message [" << entry.first << "] " << entry.second;
    if (StartsWith(entry.second, kSyntaxPrefix) &&
        std::strtol(entry.second.c_str() + std::strlen(kSyntaxPrefix), nullptr, 10) > lines)
      return ::testing::AssertionFailure()
             << "line beyond the cut's " << lines << " lines: " << entry.second;
  }
  if (!IsPrefixOf(cut.collected, whole.collected) || !IsPrefixOf(cut.classes, whole.classes) ||
      !IsPrefixOf(cut.instances, whole.instances))
    return ::testing::AssertionFailure()
           << "objects that the whole document does not make at that place: "
           << cut.collected.size() << " collected, " << cut.classes.size() << " classes, "
           << cut.instances.size() << " instances";
  if (length < reference.rootEnd && cut.Clean())
    return ::testing::AssertionFailure() << "a cut inside the root element loads without a message";
  if (length >= reference.rootEnd &&
      (!cut.Clean() || cut.collected != whole.collected || cut.classes != whole.classes ||
       cut.instances != whole.instances))
    return ::testing::AssertionFailure() << "a cut after the root element differs from the whole";
  return ::testing::AssertionSuccess();
}

/// How the cuts ended, for the summary line.
struct TTally {
  std::size_t invalidDocument = 0;
  std::size_t stateMissing = 0;
  std::size_t loggedOnly = 0;
  std::size_t clean = 0;

  void Add(const TOutcome &outcome) {
    if (outcome.threw)
      ++(outcome.status == NVRNORV20::kORVStatusInvalidDocument ? invalidDocument : stateMissing);
    else
      ++(outcome.log.empty() ? clean : loggedOnly);
  }
};

void PrintTally(const std::string &what, std::size_t cuts, const TTally &tally, double seconds) {
  std::printf("%s: %zu cuts in %.1f s of processor time: %zu ended by status 9, %zu by status 3, "
              "%zu with logged "
              "errors only, %zu clean\n",
              what.c_str(), cuts, seconds, tally.invalidDocument, tally.stateMissing,
              tally.loggedOnly, tally.clean);
}

std::size_t RootEnd(const std::string &text) {
  const std::size_t last = text.rfind('>');
  return last == std::string::npos ? 0 : last + 1;
}

/// More failures than this in one run say the same thing again.
const int kFailuresShown = 10;

// --- The example documents, cut at every byte -----------------------------

struct TExample {
  const char *document;
  ECollect collect;
  /// Loaded whole, in order, into each cut's fresh namespace first.
  std::vector<const char *> before;
};

void PrintTo(const TExample &example, std::ostream *out) {
  *out << example.document;
}

class ExamplePrefixTest : public ::testing::TestWithParam<TExample> {
protected:
  TNamespacePtr Prepared(const std::vector<std::string> &texts) const {
    auto ns = NVRNORV20::CreateCIMNamespace("root/example");
    for (const std::string &text : texts)
      Load(ns, text, text.size(), ECollect::kInstances);
    return ns;
  }
};

TEST_P(ExamplePrefixTest, EveryCutEndsInAResultOrAnException) {
  const TExample &example = GetParam();
  const std::string directory = ORV_EXAMPLES_DIR;
  std::vector<std::string> before;
  for (const char *name : example.before)
    before.push_back(ReadFile(directory + "/" + name));
  TReference reference;
  reference.text = ReadFile(directory + "/" + example.document);
  ASSERT_FALSE(reference.text.empty()) << example.document;
  reference.rootEnd = RootEnd(reference.text);
  ASSERT_EQ(reference.text.find_first_not_of(" \t\r\n", reference.rootEnd), std::string::npos);
  reference.whole = Load(Prepared(before), reference.text, reference.text.size(), example.collect);
  ASSERT_TRUE(reference.whole.Clean())
      << (reference.whole.log.empty() ? "threw" : reference.whole.log.front().second);
  // Something to lose: the document itself makes objects.
  const TOutcome empty = Load(Prepared(before), reference.text, 0, example.collect);
  ASSERT_GT(reference.whole.classes.size() + reference.whole.instances.size(),
            empty.classes.size() + empty.instances.size());

  TTally tally;
  int failures = 0;
  const std::clock_t start = std::clock();
  for (std::size_t length = 0; length <= reference.text.size(); ++length) {
    const TOutcome cut = Load(Prepared(before), reference.text, length, example.collect);
    tally.Add(cut);
    const auto result = CheckCut(cut, reference, length);
    EXPECT_TRUE(result) << "cut after " << length << " bytes";
    if (!result && ++failures == kFailuresShown)
      break;
  }
  const double seconds = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
  PrintTally(example.document, reference.text.size() + 1, tally, seconds);
  // Only the blanks after the root element's end tag can be cut cleanly.
  EXPECT_EQ(tally.clean, reference.text.size() + 1 - reference.rootEnd);
}

const TExample kExamples[] = {
    {"schema.xml", ECollect::kClasses, {}},
    {"instances.xml", ECollect::kInstances, {"schema.xml"}},
    {"message.xml", ECollect::kInstances, {"schema.xml", "instances.xml"}},
};

std::string ExampleName(const ::testing::TestParamInfo<TExample> &example) {
  const std::string name = example.param.document;
  return name.substr(0, name.find('.'));
}

INSTANTIATE_TEST_SUITE_P(Examples, ExamplePrefixTest, ::testing::ValuesIn(kExamples), ExampleName);

// --- The corpus's largest class document, cut at spread places -----------

const char kLargestClassDocument[] = "/dmtf-cim-2.49.0-compiled/cim_schema_2.49.0.xml";

/// Cuts made over all shards unless ORV_PREFIX_CUTS says otherwise; sized
/// to about two minutes of one core in the sanitizer build.
const std::size_t kDefaultCorpusCuts = 200;
const int kShards = 8;

std::size_t CorpusCuts() {
  const char *text = std::getenv("ORV_PREFIX_CUTS");
  if (text == nullptr || *text == '\0')
    return kDefaultCorpusCuts;
  return static_cast<std::size_t>(std::strtoull(text, nullptr, 10));
}

/// A fixed scramble of the cut's index (a splitmix step), so that cuts land
/// at every kind of place, inside names, values, text and tags alike, and
/// the same ones every run.
std::uint64_t Scramble(std::uint64_t index) {
  std::uint64_t z = index + 0x9E3779B97F4A7C15ULL;
  z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
  z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
  return z ^ (z >> 31);
}

/// Cut `index` of `cuts`: somewhere in the index'th of `cuts` equal slices.
std::size_t CutOffset(std::size_t index, std::size_t cuts, std::size_t size) {
  const std::size_t begin =
      static_cast<std::size_t>(static_cast<unsigned long long>(size) * index / cuts);
  const std::size_t end =
      static_cast<std::size_t>(static_cast<unsigned long long>(size) * (index + 1) / cuts);
  return end > begin ? begin + static_cast<std::size_t>(Scramble(index) % (end - begin)) : begin;
}

// Shards take every kShards'th cut, so each spans the whole document and
// costs about the same; ctest runs them side by side.
class CorpusPrefixTest : public ::testing::TestWithParam<int> {};

TEST_P(CorpusPrefixTest, SpreadCutsEndInAResultOrAnException) {
  const std::string path = std::string(ORV_CORPUS_DIR) + kLargestClassDocument;
  TReference reference;
  reference.text = ReadFile(path);
  if (reference.text.empty())
    GTEST_SKIP() << "The CIM-XML corpus is missing (no " << path << ")";
  reference.rootEnd = RootEnd(reference.text);
  reference.whole = Load(NVRNORV20::CreateCIMNamespace("root/cimv2"), reference.text,
                         reference.text.size(), ECollect::kClasses);
  ASSERT_TRUE(reference.whole.Clean())
      << (reference.whole.log.empty() ? "threw" : reference.whole.log.front().second);
  ASSERT_GT(reference.whole.collected.size(), 1000u);

  const std::size_t cuts = CorpusCuts();
  TTally tally;
  std::size_t done = 0;
  int failures = 0;
  const std::clock_t start = std::clock();
  for (std::size_t index = static_cast<std::size_t>(GetParam()); index < cuts; index += kShards) {
    const std::size_t length = CutOffset(index, cuts, reference.text.size());
    const TOutcome cut = Load(NVRNORV20::CreateCIMNamespace("root/cimv2"), reference.text, length,
                              ECollect::kClasses);
    tally.Add(cut);
    ++done;
    const auto result = CheckCut(cut, reference, length);
    EXPECT_TRUE(result) << "cut after " << length << " bytes";
    if (!result && ++failures == kFailuresShown)
      break;
  }
  const double seconds = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
  PrintTally("shard " + std::to_string(GetParam()) + " of " + std::to_string(kShards), done, tally,
             seconds);
}

INSTANTIATE_TEST_SUITE_P(Shards, CorpusPrefixTest, ::testing::Range(0, kShards));

} // namespace
} // namespace orvtest
