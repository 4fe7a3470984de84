// What the registry lists in the order it was committed. Internal to the
// core library.
#ifndef ORV_CORE_SEQUENCELIST_H
#define ORV_CORE_SEQUENCELIST_H

#include <boost/shared_ptr.hpp>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace NVRNORV20 {

/// Items by their commit sequence, which only grows: an item is appended,
/// and found for removal by a binary search. A removed item leaves a hole
/// that iteration passes over, until holes are half the list and it is
/// closed up. A load of 100,000 instances thus fills two vectors instead of
/// allocating two tree nodes per instance.
template <class TItem> class TSequenceList {
public:
  using TEntry = std::pair<std::uint64_t, boost::shared_ptr<TItem>>;

  /// sequence must exceed every sequence appended before.
  void Append(std::uint64_t sequence, boost::shared_ptr<TItem> item) {
    entries.emplace_back(sequence, std::move(item));
  }

  void Erase(std::uint64_t sequence) {
    const auto found = std::lower_bound(
        entries.begin(), entries.end(), sequence,
        [](const TEntry &entry, std::uint64_t wanted) { return entry.first < wanted; });
    if (found == entries.end() || found->first != sequence || !found->second)
      return;
    found->second.reset();
    if (2 * ++holes > entries.size()) {
      entries.erase(std::remove_if(entries.begin(), entries.end(),
                                   [](const TEntry &entry) { return !entry.second; }),
                    entries.end());
      holes = 0;
    }
  }

  std::size_t Size() const { return entries.size() - holes; }
  bool Empty() const { return Size() == 0; }

  /// The first item; the list must not be empty.
  const boost::shared_ptr<TItem> &Front() const {
    for (const TEntry &entry : entries)
      if (entry.second)
        return entry.second;
    return entries.front().second;
  }

  /// Calls visit(entry) for each item, in sequence.
  template <class TVisit> void ForEach(TVisit visit) const {
    for (const TEntry &entry : entries)
      if (entry.second)
        visit(entry);
  }

private:
  std::vector<TEntry> entries;
  std::size_t holes = 0;
};

} // namespace NVRNORV20

#endif
