// Names of the object model: classes, properties, methods, parameters and
// qualifiers are matched without regard to ASCII letter case and keep the
// case in which they were declared.
#ifndef ORV_CORE_CIMNAME_H
#define ORV_CORE_CIMNAME_H

#include "core/AsciiText.h"

#include <boost/shared_ptr.hpp>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace NVRNORV20 {

/// The name with ASCII letters in lower case.
inline std::string FoldName(std::string_view name) {
  std::string folded(name.size(), '\0');
  for (std::size_t i = 0; i < name.size(); ++i)
    folded[i] = FoldAscii(name[i]);
  return folded;
}

/// Hashes and compares the folded bytes in place, so that a look-up by any
/// spelling of a name builds no lower-cased copy of it.
struct TNameHash {
  // Deliberately not noexcept: the standard library then keeps each entry's
  // hash code in its node, so that walking a bucket compares stored codes
  // instead of hashing every neighbouring name again.
  std::size_t operator()(std::string_view name) const {
    // The folded name is mixed eight bytes at a time; the last few bytes
    // are read as the end of the name's last word, or one by one when the
    // name is shorter than a word.
    constexpr std::uint64_t kMultiplier = 0x9E3779B97F4A7C15ull;
    std::uint64_t hash = 0xCBF29CE484222325ull ^ name.size();
    const char *data = name.data();
    const std::size_t size = name.size();
    std::size_t at = 0;
    for (; at + sizeof(std::uint64_t) <= size; at += sizeof(std::uint64_t))
      hash = Mix(hash, ReadWord(data + at), kMultiplier);
    const std::size_t rest = size - at;
    if (rest != 0) {
      std::uint64_t word = 0;
      if (size >= sizeof(std::uint64_t)) {
        word =
            ReadWord(data + size - sizeof(std::uint64_t)) >> (8 * (sizeof(std::uint64_t) - rest));
      } else {
        for (std::size_t i = 0; i < rest; ++i)
          word |= std::uint64_t{static_cast<unsigned char>(data[i])} << (8 * i);
      }
      hash = Mix(hash, word, kMultiplier);
    }
    hash ^= hash >> 33;
    hash *= 0xFF51AFD7ED558CCDull;
    hash ^= hash >> 33;
    return static_cast<std::size_t>(hash);
  }

private:
  static std::uint64_t ReadWord(const char *at) {
    std::uint64_t word;
    std::memcpy(&word, at, sizeof word);
    return word;
  }
  static std::uint64_t Mix(std::uint64_t hash, std::uint64_t word, std::uint64_t multiplier) {
    hash = (hash ^ AsciiLowerWord(word)) * multiplier;
    return hash ^ (hash >> 29);
  }
};

struct TNameEqual {
  bool operator()(std::string_view left, std::string_view right) const noexcept {
    return EqualsNoCase(left, right);
  }
};

/// A map whose keys are names: any letter case finds the entry.
template <class TValue>
using TNameMap = std::unordered_map<std::string, TValue, TNameHash, TNameEqual>;

/// Like TNameMap, for keys that are views of names owned by the objects the
/// map indexes (which must outlive the map): an index of many entries then
/// holds no copies of the names.
template <class TValue>
using TNameViewMap = std::unordered_map<std::string_view, TValue, TNameHash, TNameEqual>;

/// Positions in a list of items whose names are unique in any letter case.
/// Most such lists (the keys of a path, the qualifiers of an element) hold a
/// handful of items, which a scan finds faster than any index would; a list
/// that grows past kScanLimit is indexed from then on, so that adding n
/// items never costs n squared.
class TNamePositions {
public:
  static constexpr std::size_t kScanLimit = 16;

  /// The position of name among the size names that nameAt(i) gives; size
  /// when none matches.
  template <class TNameAt>
  std::size_t Find(const std::string &name, std::size_t size, const TNameAt &nameAt) const {
    if (positions.empty()) {
      for (std::size_t i = 0; i < size; ++i)
        if (EqualsNoCase(nameAt(i), name))
          return i;
      return size;
    }
    auto found = positions.find(name);
    return found == positions.end() ? size : found->second;
  }

  /// After one item was appended, making the list size long.
  template <class TNameAt> void Appended(std::size_t size, const TNameAt &nameAt) {
    if (size <= kScanLimit)
      return;
    if (positions.empty()) {
      for (std::size_t i = 0; i < size; ++i)
        positions.emplace(nameAt(i), i);
      return;
    }
    positions.emplace(nameAt(size - 1), size - 1);
  }

  void Clear() { positions.clear(); }

private:
  TNameMap<std::size_t> positions;
};

/// Named objects in the order added, found by name in constant time. TItem
/// has GetName().
template <class TItem> class TNamedList {
public:
  /// False, and nothing added, when the name is taken.
  bool Add(boost::shared_ptr<TItem> item) {
    const std::string &name = item->GetName();
    if (!index.emplace(name, items.size()).second)
      return false;
    items.push_back(std::move(item));
    return true;
  }

  /// Empty when no item has the name.
  boost::shared_ptr<TItem> Find(const std::string &name) const {
    auto found = index.find(name);
    return found == index.end() ? boost::shared_ptr<TItem>() : items[found->second];
  }

  bool Contains(const std::string &name) const { return index.count(name) != 0; }

  /// False when no item has the name. Removal is rare (schema edits), so it
  /// renumbers the items after the removed one.
  bool Remove(const std::string &name) {
    auto found = index.find(name);
    if (found == index.end())
      return false;
    const std::size_t position = found->second;
    index.erase(found);
    items.erase(items.begin() + static_cast<std::ptrdiff_t>(position));
    for (std::size_t i = position; i < items.size(); ++i)
      index[items[i]->GetName()] = i;
    return true;
  }

  const std::vector<boost::shared_ptr<TItem>> &Items() const { return items; }
  bool Empty() const { return items.empty(); }

private:
  std::vector<boost::shared_ptr<TItem>> items;
  TNameMap<std::size_t> index;
};

} // namespace NVRNORV20

#endif
