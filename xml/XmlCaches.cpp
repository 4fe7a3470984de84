#include "xml/XmlCaches.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <tuple>
#include <utility>

namespace NVRNORV20 {

namespace {

/// The map's own order: plain byte-wise comparison, shorter first on a tie.
int CompareNames(const char *left, std::size_t leftLength, const char *right,
                 std::size_t rightLength) {
  const int order = std::memcmp(left, right, std::min(leftLength, rightLength));
  if (order != 0)
    return order;
  return leftLength < rightLength ? -1 : (leftLength > rightLength ? 1 : 0);
}

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

bool TXmlAttributeMaps::Add(const char *name, std::size_t nameLength, const char *value,
                            std::size_t valueLength) {
  if (pending.size() < kScannedAttributes) {
    for (const TPendingAttribute &earlier : pending)
      if (earlier.nameLength == nameLength && SameBytes(earlier.name, name, nameLength))
        return false;
  } else {
    if (seenNames.empty())
      for (const TPendingAttribute &earlier : pending)
        seenNames.emplace(earlier.name, earlier.nameLength);
    if (!seenNames.emplace(name, nameLength).second)
      return false;
  }
  pending.push_back({name, nameLength, value, valueLength});
  return true;
}

TXmlAttributeMaps::TAttributes TXmlAttributeMaps::Build() {
  takenMap = kKeptMaps;
  const std::size_t count = pending.size();
  if (count == 0)
    return TAttributes();
  keepBuiltMap = true;
  for (const TPendingAttribute &attribute : pending)
    if (attribute.valueLength > kLongestKeptValue)
      keepBuiltMap = false;
  const auto before = [](const TPendingAttribute &left, const TPendingAttribute &right) {
    return CompareNames(left.name, left.nameLength, right.name, right.nameLength) < 0;
  };
  if (count > kScannedAttributes) {
    std::sort(pending.begin(), pending.end(), before); // names are distinct
  } else {
    // Insertion sort: a tag has a handful of attributes, often in order.
    for (std::size_t i = 1; i < count; ++i) {
      const TPendingAttribute moving = pending[i];
      std::size_t j = i;
      for (; j > 0 && !before(pending[j - 1], moving); --j)
        pending[j] = pending[j - 1];
      pending[j] = moving;
    }
  }

  // One pass per kept map compares its names and overwrites its values: a
  // map that turns out to differ has lost nothing it needs.
  for (std::size_t slot = 0; slot < kKeptMaps; ++slot) {
    TAttributes &kept = keptMaps[slot];
    if (kept.size() != count)
      continue;
    auto entry = kept.begin();
    for (const TPendingAttribute &attribute : pending) {
      const std::string &keptName = entry->first;
      if (keptName.size() != attribute.nameLength ||
          !SameBytes(keptName.data(), attribute.name, attribute.nameLength))
        break;
      std::string &keptValue = entry->second;
      keptValue.clear();
      keptValue.append(attribute.value, attribute.valueLength);
      ++entry;
    }
    if (entry != kept.end())
      continue;
    takenMap = slot;
    return std::move(kept);
  }

  TAttributes attributes;
  for (const TPendingAttribute &attribute : pending)
    attributes.emplace_hint(attributes.end(), std::piecewise_construct,
                            std::forward_as_tuple(attribute.name, attribute.nameLength),
                            std::forward_as_tuple(attribute.value, attribute.valueLength));
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
