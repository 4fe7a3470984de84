#include "xml/XmlCaches.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <tuple>
#include <utility>

namespace NVRNORV20 {

namespace {

/// A value longer than this is not worth keeping a map's storage for.
constexpr std::size_t kLongestKeptValue = 256;

} // namespace

// ---------------------------------------------------------------------------
// Name folding.

void TXmlNameFolder::TakeGlobalLocale() {
  locale = std::locale();
  facet = &std::use_facet<std::ctype<char>>(locale);
  // Names hold only these bytes. Where the locale folds them as ASCII does
  // (every locale but a few), folding inline gives the same bytes.
  static const char kNameBytes[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZ"
                                   "abcdefghijklmnopqrstuvwxyz0123456789_:-.";
  asciiFolding = true;
  for (const char *p = kNameBytes; *p != '\0'; ++p)
    if (facet->tolower(*p) != static_cast<char>(AsciiLower(*p)))
      asciiFolding = false;
}

void TXmlNameFolder::FoldWithFacet(char *name, char *nameEnd) {
  if (facet == nullptr)
    TakeGlobalLocale();
  facet->tolower(name, nameEnd);
}

// ---------------------------------------------------------------------------
// Attribute maps.

bool TXmlAttributeMaps::Add(std::string_view name, std::string_view value) {
  if (pending.size() < kScannedAttributes) {
    for (const TXmlAttribute &earlier : pending)
      if (SameText(earlier.name, name))
        return false;
  } else {
    if (seenNames.empty())
      for (const TXmlAttribute &earlier : pending)
        seenNames.emplace(earlier.name);
    if (!seenNames.emplace(name).second)
      return false;
  }
  pending.push_back({name, value});
  return true;
}

void TXmlAttributeMaps::Sort() {
  const std::size_t count = pending.size();
  const auto before = [](const TXmlAttribute &left, const TXmlAttribute &right) {
    return BytesBefore(left.name, right.name); // the map's own order
  };
  if (count > kScannedAttributes) {
    std::sort(pending.begin(), pending.end(), before); // names are distinct
    return;
  }
  // Insertion sort: a tag has a handful of attributes, often in order.
  for (std::size_t i = 1; i < count; ++i) {
    const TXmlAttribute moving = pending[i];
    std::size_t j = i;
    for (; j > 0 && !before(pending[j - 1], moving); --j)
      pending[j] = pending[j - 1];
    pending[j] = moving;
  }
}

TXmlAttributeMaps::TAttributes TXmlAttributeMaps::Build() {
  takenMap = kKeptMaps;
  const std::size_t count = pending.size();
  if (count == 0)
    return TAttributes();
  keepBuiltMap = true;
  for (const TXmlAttribute &attribute : pending)
    if (attribute.value.size() > kLongestKeptValue)
      keepBuiltMap = false;
  Sort();

  // One pass per kept map compares its names and overwrites its values: a
  // map that turns out to differ has lost nothing it needs.
  for (std::size_t slot = 0; slot < kKeptMaps; ++slot) {
    TAttributes &kept = keptMaps[slot];
    if (kept.size() != count)
      continue;
    auto entry = kept.begin();
    for (const TXmlAttribute &attribute : pending) {
      if (!SameText(entry->first, attribute.name))
        break;
      std::string &keptValue = entry->second;
      keptValue.clear();
      keptValue.append(attribute.value.data(), attribute.value.size());
      ++entry;
    }
    if (entry != kept.end())
      continue;
    takenMap = slot;
    return std::move(kept);
  }

  TAttributes attributes;
  for (const TXmlAttribute &attribute : pending)
    attributes.emplace_hint(attributes.end(), std::piecewise_construct,
                            std::forward_as_tuple(attribute.name),
                            std::forward_as_tuple(attribute.value));
  return attributes;
}

// The map goes back to where it came from, or takes the place of the
// oldest kept one. Moving a map neither allocates nor throws. A map that
// held a long value is let go rather than keep that storage.
void TXmlAttributeMaps::Keep(TAttributes &attributes) noexcept {
  std::size_t slot = takenMap;
  takenMap = kKeptMaps;
  if (attributes.empty() || !keepBuiltMap)
    return;
  if (slot >= kKeptMaps) {
    slot = nextKeptMap;
    nextKeptMap = (nextKeptMap + 1) % kKeptMaps;
  }
  keptMaps[slot] = std::move(attributes);
}

} // namespace NVRNORV20
