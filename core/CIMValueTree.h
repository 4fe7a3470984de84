// Operations over a value and the values nested in it: the elements of an
// array, and the key values of a reference, which may hold references again
// as deep as a document nests them. Each operation keeps a stack of its own,
// so that depth costs memory rather than call frames. Internal to the core
// library.
#ifndef ORV_CORE_CIMVALUETREE_H
#define ORV_CORE_CIMVALUETREE_H

#include "core/CIMValue.h"

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace NVRNORV20 {

class TCIMValueTree {
public:
  /// The path of a reference value that is not null; null for any other
  /// value.
  static const TCIMReference *PathOf(const TCIMValue &value);
  /// The elements of an array value that is not null; null for any other
  /// value.
  static const std::vector<TCIMValue> *ElementsOf(const TCIMValue &value);

  /// Takes out the payloads that payload alone holds, and theirs in turn,
  /// and releases them one after the other.
  static void ReleaseNested(TCIMValue::TPayload &payload) noexcept;

  /// The equality of TCIMValue and of TCIMReference.
  static bool Equal(const TCIMValue &left, const TCIMValue &right);
  static bool Equal(const TCIMReference &left, const TCIMReference &right);

  /// Appends the text of TCIMValue::ToString, of TCIMReference::ToString.
  /// A text longer than the string can hold throws kORVStatusOutOfMemory.
  static void AppendText(std::string &out, const TCIMValue &value);
  static void AppendText(std::string &out, const TCIMReference &path);
  /// The length of that text; the largest std::size_t when it is longer.
  static std::size_t TextLength(const TCIMReference &path);

private:
  /// A part of a text still to be written (see CIMValueTree.cpp).
  struct TPiece;
  using TPairs = std::vector<std::pair<const TCIMValue *, const TCIMValue *>>;

  /// Whether the pairs are equal; pairs of elements and keys still to
  /// compare are pushed onto the same list.
  static bool EqualPairs(TPairs &pending);
  /// Compares what the paths hold themselves and pushes their key values.
  static bool SamePathParts(const TCIMReference &left, const TCIMReference &right, TPairs &pending);
  /// Two scalar values of the same type, neither null nor a reference.
  static bool SameScalar(const TCIMValue &left, const TCIMValue &right);

  template <class TSink> static void Walk(TSink &sink, const TPiece &first);
  static void AppendPiece(std::string &out, const TPiece &first);
  static std::size_t PieceLength(const TPiece &first);
};

} // namespace NVRNORV20

#endif
