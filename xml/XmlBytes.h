// Byte helpers that the tokenizer, its caches and the parse states share.
// Internal to the parser library: nothing outside it includes this header.
#ifndef ORV_XML_XMLBYTES_H
#define ORV_XML_XMLBYTES_H

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace NVRNORV20 {

/// The byte's value (0 to 255) with ASCII upper-case letters folded to lower
/// case; every other byte is left as it is. For ASCII bytes this is what the
/// C library's tolower does in any locale.
inline int AsciiLower(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte >= 'A' && byte <= 'Z' ? byte + ('a' - 'A') : byte;
}

/// Space, tab, CR and LF: the only whitespace that XML knows.
inline bool IsXmlSpace(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

/// Short runs are compared in a plain loop, longer ones a word at a time:
/// element names such as "qualifier.declaration" are long enough for a byte
/// loop to show.
inline bool SameBytes(const char *a, const char *b, std::size_t length) {
  if (length < sizeof(std::uint64_t)) {
    for (std::size_t i = 0; i < length; ++i)
      if (a[i] != b[i])
        return false;
    return true;
  }
  std::uint64_t left = 0;
  std::uint64_t right = 0;
  std::size_t i = 0;
  for (; i + sizeof left <= length; i += sizeof left) {
    std::memcpy(&left, a + i, sizeof left);
    std::memcpy(&right, b + i, sizeof right);
    if (left != right)
      return false;
  }
  // The last word overlaps the one before.
  std::memcpy(&left, a + length - sizeof left, sizeof left);
  std::memcpy(&right, b + length - sizeof right, sizeof right);
  return left == right;
}

} // namespace NVRNORV20

#endif
