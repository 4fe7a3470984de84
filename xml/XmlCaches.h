// The tokenizer's caches: what it keeps from earlier work so as not to do
// that work again. None of them changes what a document reads as; each only
// saves time. Internal to the parser library: the tokenizer's public header
// names them only through a forward declaration.
#ifndef ORV_XML_XMLCACHES_H
#define ORV_XML_XMLCACHES_H

#include "xml/XmlBytes.h"
#include "xml/XmlParser.h"

#include <algorithm>
#include <cstddef>
#include <locale>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace NVRNORV20 {

/// Folds attribute names to lower case with the global locale as it stands
/// when a document starts (or, outside a document, when the first name is
/// folded).
class TXmlNameFolder {
public:
  /// Takes the global locale as it stands now.
  void TakeGlobalLocale();
  /// Folds [name, nameEnd) in place.
  void Fold(char *name, char *nameEnd) {
    if (facet == nullptr || !asciiFolding) {
      FoldWithFacet(name, nameEnd);
      return;
    }
    for (; name != nameEnd; ++name)
      *name = static_cast<char>(AsciiLower(*name));
  }

private:
  void FoldWithFacet(char *name, char *nameEnd);

  std::locale locale;
  const std::ctype<char> *facet = nullptr;
  /// The locale folds every byte a name may hold as ASCII does.
  bool asciiFolding = false;
};

/// A tag's attributes are gathered first, then sorted by name, and handed
/// over as a list of spans or built into a map. The maps of recent tags are
/// kept, and a tag whose names are those of a kept map takes that map and
/// overwrites its values: CIM-XML repeats a few sets of attribute names, so
/// most maps cost no allocation and no tree work.
class TXmlAttributeMaps {
public:
  using TAttributes = TXmlParser::TAttributes;

  /// Starts gathering the attributes of a new tag.
  void Clear() {
    pending.clear();
    seenNames.clear();
  }
  /// Gathers one attribute (spans into the buffer, which must stay as they
  /// are until the tag is handed over). False, and nothing gathered, when
  /// the tag already has an attribute of that name.
  bool Add(std::string_view name, std::string_view value);
  /// The attributes gathered, sorted by name.
  TXmlAttributeList List() {
    Sort();
    return TXmlAttributeList(pending.data(), pending.size());
  }
  /// The map of the attributes gathered, taken from a kept map where one
  /// has the same names.
  TAttributes Build();
  /// Hands back the map last built, once its tag is done with it.
  void Keep(TAttributes &attributes) noexcept;

private:
  void Sort();

  static constexpr std::size_t kKeptMaps = 8;
  /// Up to this many attributes, a tag is checked for repeated names and
  /// sorted by plain scans; beyond it a set and a sort keep a tag of
  /// 100,000 attributes linear.
  static constexpr std::size_t kScannedAttributes = 16;
  std::vector<TXmlAttribute> pending;
  /// The names gathered, once a tag has more than kScannedAttributes.
  std::unordered_set<std::string_view> seenNames;
  TAttributes keptMaps[kKeptMaps];
  std::size_t nextKeptMap = 0;
  /// Where the map being built came from, or kKeptMaps for a new one.
  std::size_t takenMap = kKeptMaps;
  bool keepBuiltMap = true;
};

/// Where a search for one terminator last failed: no occurrence starts in
/// [from, stop - length + 1), and [from, stop) holds no NUL. Without it,
/// unterminated comments or instructions at many nesting levels would each
/// rescan the rest of the document.
class TXmlFailedSearch {
public:
  void Clear() {
    from = nullptr;
    stop = nullptr;
  }
  /// Where a search for a terminator of the given length, starting at
  /// start, needs to begin looking.
  const char *Resume(const char *start, std::size_t length) const {
    if (from <= start && start < stop)
      return std::max(start, stop - (length - 1));
    return start;
  }
  /// Notes that no terminator starts in [searchFrom, searchStop), where
  /// searchStop is the first NUL.
  void Fail(const char *searchFrom, const char *searchStop) {
    from = searchFrom;
    stop = searchStop;
  }
  /// A NUL now stands at position: the failed range ends there.
  void NulWritten(const char *position) {
    if (from <= position && position < stop)
      stop = position;
  }

private:
  const char *from = nullptr;
  const char *stop = nullptr;
};

struct TXmlParser::TCaches {
  TXmlNameFolder names;
  TXmlAttributeMaps attributeMaps;
  TXmlFailedSearch failedSearches[kTerminatorCount];
  /// Numeric references as XML 1.0 reads them (see SetXmlCharacters).
  bool xmlCharacters = false;
  /// The handler reads attribute lists (see ReadsAttributeLists), as asked
  /// when the document started.
  bool attributeLists = false;
};

} // namespace NVRNORV20

#endif
