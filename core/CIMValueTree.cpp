#include "core/CIMValueTree.h"

#include "core/AsciiText.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <string_view>

namespace NVRNORV20 {

namespace {

constexpr std::size_t kNoLength = std::numeric_limits<std::size_t>::max();

bool IsEscaped(char c) {
  return c == '"' || c == '\\';
}

// Key values of a path that are written bare; every other value is quoted.
bool IsBareKeyType(ECIMType type) {
  switch (type) {
  case kCIMTypeBoolean:
  case kCIMTypeUint8:
  case kCIMTypeSint8:
  case kCIMTypeUint16:
  case kCIMTypeSint16:
  case kCIMTypeUint32:
  case kCIMTypeSint32:
  case kCIMTypeUint64:
  case kCIMTypeSint64:
  case kCIMTypeReal32:
  case kCIMTypeReal64:
    return true;
  default:
    return false;
  }
}

// A text quoted depth times over has (2^depth - 1) backslashes before each
// of its quotes and backslashes: every quoting escapes the backslashes that
// the ones inside it wrote. The texts are written and measured in one pass
// from that count, instead of quoting each level's text anew.

/// Counts the length of the text.
struct TLengthSink {
  void Write(std::string_view bytes, unsigned depth) {
    std::size_t escaped = 0;
    if (depth != 0)
      for (char c : bytes)
        escaped += IsEscaped(c) ? 1 : 0;
    Add(bytes.size());
    if (escaped == 0)
      return;
    if (depth >= std::numeric_limits<std::size_t>::digits) {
      length = kNoLength;
      return;
    }
    const std::size_t run = (std::size_t{1} << depth) - 1;
    if (escaped > kNoLength / run) {
      length = kNoLength;
      return;
    }
    Add(escaped * run);
  }
  void Add(std::size_t count) { length = count > kNoLength - length ? kNoLength : length + count; }

  std::size_t length = 0;
};

/// Writes the text; its length has been found to fit first, so every run of
/// backslashes fits too.
struct TTextSink {
  void Write(std::string_view bytes, unsigned depth) {
    if (depth == 0) {
      out.append(bytes.data(), bytes.size());
      return;
    }
    const std::size_t run = (std::size_t{1} << depth) - 1;
    for (char c : bytes) {
      if (IsEscaped(c))
        out.append(run, '\\');
      out += c;
    }
  }

  std::string &out;
};

} // namespace

/// Bytes, a path, a key value of a path (quoted unless a boolean or a
/// number; null writes nothing) or a value's own text, quoted depth times.
struct TCIMValueTree::TPiece {
  enum class EKind : std::uint8_t { kBytes, kPath, kKeyValue, kValue };

  static TPiece Bytes(std::string_view bytes, unsigned depth) {
    return {EKind::kBytes, depth, bytes, nullptr, nullptr};
  }
  static TPiece Path(const TCIMReference &path, unsigned depth) {
    return {EKind::kPath, depth, {}, nullptr, &path};
  }
  static TPiece Value(EKind kind, const TCIMValue &value, unsigned depth) {
    return {kind, depth, {}, &value, nullptr};
  }

  EKind kind;
  unsigned depth;
  std::string_view bytes;
  const TCIMValue *value;
  const TCIMReference *path;
};

const TCIMReference *TCIMValueTree::PathOf(const TCIMValue &value) {
  if (value.type != kCIMTypeReference || value.null)
    return nullptr;
  return &value.payload->Reference();
}

const std::vector<TCIMValue> *TCIMValueTree::ElementsOf(const TCIMValue &value) {
  if (!value.IsArray() || value.null)
    return nullptr;
  return &value.payload->elements;
}

// ---- release ---------------------------------------------------------------

void TCIMValueTree::ReleaseNested(TCIMValue::TPayload &payload) noexcept {
  // A payload that no one else holds is taken out of its value and put on
  // the list; one held elsewhere stays, as releasing the value only counts
  // it down. The list runs through the payloads themselves, so a release
  // allocates nothing.
  using TPayloadPtr = boost::shared_ptr<TCIMValue::TPayload>;
  TPayloadPtr pending;
  auto takeSole = [&pending](TCIMValue::TPayload &holder) {
    auto take = [&pending](TCIMValue &value) {
      if (value.payload && value.payload.use_count() == 1) {
        value.payload->nextReleased = std::move(pending);
        pending = std::move(value.payload);
      }
    };
    for (TCIMValue &element : holder.elements)
      take(element);
    if (holder.path)
      for (auto &binding : holder.path->keys)
        take(binding.second);
  };
  takeSole(payload);
  while (pending) {
    TPayloadPtr next = std::move(pending);
    pending = std::move(next->nextReleased);
    takeSole(*next);
    // next goes here, holding no payload of its own any more.
  }
}

// ---- equality --------------------------------------------------------------

bool TCIMValueTree::Equal(const TCIMValue &left, const TCIMValue &right) {
  TPairs pending{{&left, &right}};
  return EqualPairs(pending);
}

bool TCIMValueTree::Equal(const TCIMReference &left, const TCIMReference &right) {
  TPairs pending;
  return SamePathParts(left, right, pending) && EqualPairs(pending);
}

bool TCIMValueTree::EqualPairs(TPairs &pending) {
  while (!pending.empty()) {
    const TCIMValue &left = *pending.back().first;
    const TCIMValue &right = *pending.back().second;
    pending.pop_back();
    if (left.type != right.type || left.null != right.null)
      return false;
    if (left.null)
      continue;
    // A payload shared by both holds the same elements or path.
    const bool nested = left.IsArray() || left.type == kCIMTypeReference;
    if (nested && left.payload == right.payload)
      continue;
    if (left.IsArray()) {
      const auto &elements = left.payload->elements;
      const auto &others = right.payload->elements;
      if (elements.size() != others.size())
        return false;
      for (std::size_t i = 0; i < elements.size(); ++i)
        pending.emplace_back(&elements[i], &others[i]);
    } else if (left.type == kCIMTypeReference) {
      if (!SamePathParts(left.payload->Reference(), right.payload->Reference(), pending))
        return false;
    } else if (!SameScalar(left, right)) {
      return false;
    }
  }
  return true;
}

bool TCIMValueTree::SamePathParts(const TCIMReference &left, const TCIMReference &right,
                                  TPairs &pending) {
  if (!EqualsNoCase(left.className, right.className) ||
      !EqualsNoCase(left.namespaceName, right.namespaceName) ||
      !EqualsNoCase(left.host, right.host) || left.keys.size() != right.keys.size())
    return false;
  for (std::size_t i = 0; i < left.keys.size(); ++i) {
    if (!EqualsNoCase(left.keys[i].first, right.keys[i].first))
      return false;
    pending.emplace_back(&left.keys[i].second, &right.keys[i].second);
  }
  return true;
}

bool TCIMValueTree::SameScalar(const TCIMValue &left, const TCIMValue &right) {
  switch (left.type) {
  case kCIMTypeBoolean:
    return left.scalar.boolean == right.scalar.boolean;
  case kCIMTypeString:
    return left.text == right.text;
  case kCIMTypeReal32:
  case kCIMTypeReal64:
    // NaN equals NaN here, so that a value equals its own copy.
    return left.scalar.realValue == right.scalar.realValue ||
           (std::isnan(left.scalar.realValue) && std::isnan(right.scalar.realValue));
  case kCIMTypeDateTime:
    return left.dateTime == right.dateTime;
  case kCIMTypeSint8:
  case kCIMTypeSint16:
  case kCIMTypeSint32:
  case kCIMTypeSint64:
    return left.scalar.signedValue == right.scalar.signedValue;
  default:
    return left.scalar.unsignedValue == right.scalar.unsignedValue;
  }
}

// ---- text ------------------------------------------------------------------

template <class TSink> void TCIMValueTree::Walk(TSink &sink, const TPiece &first) {
  using EKind = TPiece::EKind;
  std::vector<TPiece> pending{first};
  while (!pending.empty()) {
    const TPiece piece = pending.back();
    pending.pop_back();
    const unsigned depth = piece.depth;
    if (piece.kind == EKind::kBytes) {
      sink.Write(piece.bytes, depth);
    } else if (piece.kind == EKind::kPath) {
      // ns:Class.k1=v1,k2=v2, the pieces after the class name pushed last
      // first.
      const TCIMReference &path = *piece.path;
      if (!path.host.empty()) {
        sink.Write("//", depth);
        sink.Write(path.host, depth);
        sink.Write("/", depth);
      }
      if (!path.namespaceName.empty()) {
        sink.Write(path.namespaceName, depth);
        sink.Write(":", depth);
      }
      sink.Write(path.className, depth);
      for (std::size_t i = path.keys.size(); i-- > 0;) {
        pending.push_back(TPiece::Value(EKind::kKeyValue, path.keys[i].second, depth));
        pending.push_back(TPiece::Bytes("=", depth));
        pending.push_back(TPiece::Bytes(path.keys[i].first, depth));
        pending.push_back(TPiece::Bytes(i == 0 ? "." : ",", depth));
      }
    } else {
      const TCIMValue &value = *piece.value;
      if (value.null)
        continue;
      if (piece.kind == EKind::kKeyValue && !IsBareKeyType(value.type)) {
        pending.push_back(TPiece::Bytes("\"", depth));
        pending.push_back(TPiece::Value(EKind::kValue, value, depth + 1));
        pending.push_back(TPiece::Bytes("\"", depth));
      } else if (value.IsArray()) {
        const auto &elements = value.payload->elements;
        for (std::size_t i = elements.size(); i-- > 0;) {
          pending.push_back(TPiece::Value(EKind::kValue, elements[i], depth));
          if (i != 0)
            pending.push_back(TPiece::Bytes(", ", depth));
        }
      } else if (value.type == kCIMTypeReference) {
        pending.push_back(TPiece::Path(value.payload->Reference(), depth));
      } else {
        sink.Write(value.ToString(), depth); // a scalar: no nesting
      }
    }
  }
}

std::size_t TCIMValueTree::PieceLength(const TPiece &first) {
  TLengthSink sink;
  Walk(sink, first);
  return sink.length;
}

void TCIMValueTree::AppendPiece(std::string &out, const TPiece &first) {
  const std::size_t length = PieceLength(first);
  if (length == kNoLength || length > out.max_size() - out.size())
    throw TORVException(kORVStatusOutOfMemory);
  out.reserve(out.size() + length);
  TTextSink sink{out};
  Walk(sink, first);
}

void TCIMValueTree::AppendText(std::string &out, const TCIMValue &value) {
  AppendPiece(out, TPiece::Value(TPiece::EKind::kValue, value, 0));
}

void TCIMValueTree::AppendText(std::string &out, const TCIMReference &path) {
  AppendPiece(out, TPiece::Path(path, 0));
}

std::size_t TCIMValueTree::TextLength(const TCIMReference &path) {
  return PieceLength(TPiece::Path(path, 0));
}

} // namespace NVRNORV20
