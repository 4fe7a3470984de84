// The members of a class over those of its superclass, shared.
#ifndef ORV_CORE_CIMNAMETRIE_H
#define ORV_CORE_CIMNAMETRIE_H

#include "core/CIMName.h"

#include <boost/shared_ptr.hpp>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

namespace NVRNORV20 {

/// Items found by name in any letter case, each with its position. A trie
/// made from another shares every node that it does not change: a class's
/// members are its superclass's plus its own, and adding n names to a trie
/// of N copies about n times log32 N entries, not N. A chain of classes
/// 10,000 deep thus costs what its own members cost, and so do 10,000
/// subclasses of one class with many properties. TItem has GetName().
///
/// A trie is changed only through the object that made it; a trie made
/// from another (Derived) must not be changed once something was derived
/// from it.
template <class TItem> class TNameTrie {
public:
  struct TEntry {
    boost::shared_ptr<TItem> item;
    std::size_t position;
    std::size_t hash;
  };

  TNameTrie() : owner(NextOwner()) {}
  TNameTrie(const TNameTrie &) = delete;
  TNameTrie &operator=(const TNameTrie &) = delete;
  TNameTrie(TNameTrie &&) noexcept = default;
  TNameTrie &operator=(TNameTrie &&) noexcept = default;
  ~TNameTrie() = default;

  /// A trie holding the same entries, sharing every node with this one.
  TNameTrie Derived() const {
    TNameTrie derived;
    derived.root = root;
    derived.size = size;
    return derived;
  }

  std::size_t Size() const { return size; }

  /// The entry of that name; null when there is none.
  const TEntry *Find(std::string_view name) const {
    const std::size_t hash = TNameHash()(name);
    const TNode *node = root.get();
    for (unsigned shift = 0; node != nullptr; shift += kBitsPerLevel) {
      if (shift >= kHashBits)
        return FindInBucket(*node, name);
      const std::uint32_t bit = BitAt(hash, shift);
      if (node->entryBits & bit) {
        const TEntry &entry = node->entries[IndexOf(node->entryBits, bit)];
        return entry.hash == hash && TNameEqual()(entry.item->GetName(), name) ? &entry : nullptr;
      }
      node =
          (node->childBits & bit) ? node->children[IndexOf(node->childBits, bit)].get() : nullptr;
    }
    return nullptr;
  }

  /// Gives the item's name this item and position, added or in place of
  /// the entry that had the name.
  void Set(boost::shared_ptr<TItem> item, std::size_t position) {
    const std::size_t hash = TNameHash()(item->GetName());
    TEntry added{std::move(item), position, hash};
    std::shared_ptr<TNode> *slot = &root;
    for (unsigned shift = 0;; shift += kBitsPerLevel) {
      TNode &node = Own(*slot);
      if (shift >= kHashBits) {
        for (TEntry &entry : node.entries)
          if (TNameEqual()(entry.item->GetName(), added.item->GetName())) {
            entry = std::move(added);
            return;
          }
        node.entries.push_back(std::move(added));
        ++size;
        return;
      }
      const std::uint32_t bit = BitAt(hash, shift);
      if (node.childBits & bit) {
        slot = &node.children[IndexOf(node.childBits, bit)];
        continue;
      }
      const std::size_t index = IndexOf(node.entryBits, bit);
      if (!(node.entryBits & bit)) {
        node.entries.insert(node.entries.begin() + static_cast<std::ptrdiff_t>(index),
                            std::move(added));
        node.entryBits |= bit;
        ++size;
        return;
      }
      TEntry &present = node.entries[index];
      if (present.hash == hash && TNameEqual()(present.item->GetName(), added.item->GetName())) {
        present = std::move(added);
        return;
      }
      // Two names on one bit: the one present moves a level down, and the
      // new one follows it there.
      auto child = std::make_shared<TNode>();
      child->owner = owner;
      PlaceAlone(*child, std::move(present), shift + kBitsPerLevel);
      node.entries.erase(node.entries.begin() + static_cast<std::ptrdiff_t>(index));
      node.entryBits &= ~bit;
      const std::size_t childIndex = IndexOf(node.childBits, bit);
      node.children.insert(node.children.begin() + static_cast<std::ptrdiff_t>(childIndex),
                           std::move(child));
      node.childBits |= bit;
      slot = &node.children[childIndex];
    }
  }

  /// The items in the order of their positions, which must be 0 to
  /// Size() - 1.
  std::vector<boost::shared_ptr<TItem>> Ordered() const {
    std::vector<boost::shared_ptr<TItem>> items(size);
    // The trie is at most kLevels deep: an explicit stack of that bound.
    std::vector<const TNode *> pending;
    if (root)
      pending.push_back(root.get());
    while (!pending.empty()) {
      const TNode *node = pending.back();
      pending.pop_back();
      for (const TEntry &entry : node->entries)
        items[entry.position] = entry.item;
      for (const auto &child : node->children)
        pending.push_back(child.get());
    }
    return items;
  }

private:
  static constexpr unsigned kBitsPerLevel = 5;
  static constexpr unsigned kHashBits = 8 * sizeof(std::size_t);

  /// Below the last level that the hash reaches, a node is a bucket of
  /// entries whose whole hashes are equal, scanned.
  struct TNode {
    std::uint32_t entryBits = 0;
    std::uint32_t childBits = 0;
    std::vector<TEntry> entries;
    std::vector<std::shared_ptr<TNode>> children;
    /// The trie that made this node and may change it in place.
    std::uint64_t owner = 0;
  };

  static std::uint64_t NextOwner() {
    static std::atomic<std::uint64_t> last{0};
    return ++last;
  }

  static std::uint32_t BitAt(std::size_t hash, unsigned shift) {
    return std::uint32_t{1} << ((hash >> shift) & 31u);
  }

  /// The place among a node's entries or children of the one on bit.
  /// The bits below bit are counted in the word itself: without a
  /// population-count instruction in the target's baseline, the library's
  /// count is a call per look-up.
  static std::size_t IndexOf(std::uint32_t bits, std::uint32_t bit) {
    std::uint32_t below = bits & (bit - 1);
    below -= (below >> 1) & 0x55555555u;
    below = (below & 0x33333333u) + ((below >> 2) & 0x33333333u);
    below = (below + (below >> 4)) & 0x0F0F0F0Fu;
    return (below * 0x01010101u) >> 24;
  }

  static const TEntry *FindInBucket(const TNode &node, std::string_view name) {
    for (const TEntry &entry : node.entries)
      if (TNameEqual()(entry.item->GetName(), name))
        return &entry;
    return nullptr;
  }

  static void PlaceAlone(TNode &node, TEntry entry, unsigned shift) {
    if (shift < kHashBits)
      node.entryBits = BitAt(entry.hash, shift);
    node.entries.push_back(std::move(entry));
  }

  /// The node in slot, made first or copied first when another trie owns
  /// it.
  TNode &Own(std::shared_ptr<TNode> &slot) {
    if (!slot) {
      slot = std::make_shared<TNode>();
      slot->owner = owner;
    } else if (slot->owner != owner) {
      slot = std::make_shared<TNode>(*slot);
      slot->owner = owner;
    }
    return *slot;
  }

  std::shared_ptr<TNode> root;
  std::size_t size = 0;
  std::uint64_t owner;
};

} // namespace NVRNORV20

#endif
