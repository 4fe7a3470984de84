// The registry's index of committed instances by the text of their class
// name and key values. Internal to the core library.
#ifndef ORV_CORE_INSTANCEPATHINDEX_H
#define ORV_CORE_INSTANCEPATHINDEX_H

#include <boost/shared_ptr.hpp>

#include <cstddef>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace NVRNORV20 {

/// One flat table, probed linearly from the key's hash: filing 100,000
/// instances costs no allocation per instance, and a look-up or a growth
/// reads neighbouring slots instead of chasing scattered nodes. The table is
/// at most half full; an erased slot is filled by shifting back the slots
/// after it, so that no marker of a former entry lengthens later searches.
template <class TItem> class TInstancePathIndex {
public:
  /// Files the item under the key; false, and nothing filed, when the key is
  /// filed already.
  bool Insert(std::string key, boost::shared_ptr<TItem> item) {
    if (2 * (count + 1) > slots.size())
      Grow();
    const std::size_t hash = std::hash<std::string>()(key);
    const std::size_t at = Probe(hash, key);
    if (slots[at].item)
      return false;
    slots[at] = TSlot{hash, std::move(key), std::move(item)};
    ++count;
    return true;
  }

  /// The item filed under the key; empty when there is none.
  boost::shared_ptr<TItem> Find(const std::string &key) const {
    if (count == 0)
      return boost::shared_ptr<TItem>();
    return slots[Probe(std::hash<std::string>()(key), key)].item;
  }

  void Erase(const std::string &key) {
    if (count == 0)
      return;
    const std::size_t mask = slots.size() - 1;
    std::size_t hole = Probe(std::hash<std::string>()(key), key);
    if (!slots[hole].item)
      return;
    // Each later slot of the run moves into the hole unless its own home
    // lies cyclically after the hole, up to the slot itself.
    for (std::size_t next = (hole + 1) & mask; slots[next].item; next = (next + 1) & mask) {
      const std::size_t home = slots[next].hash & mask;
      const bool staysReachable =
          hole <= next ? (hole < home && home <= next) : (hole < home || home <= next);
      if (staysReachable)
        continue;
      slots[hole] = std::move(slots[next]);
      hole = next;
    }
    slots[hole] = TSlot();
    --count;
  }

private:
  struct TSlot {
    std::size_t hash = 0;
    std::string key;
    /// Empty in a free slot.
    boost::shared_ptr<TItem> item;
  };

  /// The slot holding the key, else the free slot where it would go.
  std::size_t Probe(std::size_t hash, const std::string &key) const {
    const std::size_t mask = slots.size() - 1;
    std::size_t at = hash & mask;
    while (slots[at].item && (slots[at].hash != hash || slots[at].key != key))
      at = (at + 1) & mask;
    return at;
  }

  void Grow() {
    std::vector<TSlot> old(slots.empty() ? kFirstSize : 2 * slots.size());
    old.swap(slots);
    const std::size_t mask = slots.size() - 1;
    for (TSlot &slot : old) {
      if (!slot.item)
        continue;
      std::size_t at = slot.hash & mask;
      while (slots[at].item)
        at = (at + 1) & mask;
      slots[at] = std::move(slot);
    }
  }

  static constexpr std::size_t kFirstSize = 16;
  std::vector<TSlot> slots;
  std::size_t count = 0;
};

} // namespace NVRNORV20

#endif
