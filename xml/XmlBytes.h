// Byte helpers that the tokenizer, its caches and the parse states share.
// Internal to the parser library: nothing outside it includes this header.
#ifndef ORV_XML_XMLBYTES_H
#define ORV_XML_XMLBYTES_H

#include "core/AsciiText.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace NVRNORV20 {

/// The byte's value (0 to 255) with ASCII upper-case letters folded to lower
/// case; every other byte is left as it is. For ASCII bytes this is what the
/// C library's tolower does in any locale.
inline int AsciiLower(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte >= 'A' && byte <= 'Z' ? byte + ('a' - 'A') : byte;
}

/// Whether two texts are equal with ASCII letters in either case, as CIM
/// names are compared.
inline bool EqualsAsciiNoCase(std::string_view left, std::string_view right) {
  if (left.size() != right.size())
    return false;
  for (std::size_t i = 0; i < left.size(); ++i)
    if (AsciiLower(left[i]) != AsciiLower(right[i]))
      return false;
  return true;
}

/// The characters of XML 1.0's Char production.
inline bool IsXmlChar(std::uint32_t code) {
  return code == 0x9 || code == 0xA || code == 0xD || (code >= 0x20 && code <= 0xD7FF) ||
         (code >= 0xE000 && code <= 0xFFFD) || (code >= 0x10000 && code <= 0x10FFFF);
}

/// The UTF-8 bytes of a code point up to U+10FFFF into out; their count.
inline unsigned EncodeUtf8(std::uint32_t code, char (&out)[4]) {
  if (code < 0x80) {
    out[0] = static_cast<char>(code);
    return 1;
  }
  if (code < 0x800) {
    out[0] = static_cast<char>(0xC0 | (code >> 6));
    out[1] = static_cast<char>(0x80 | (code & 0x3F));
    return 2;
  }
  if (code < 0x10000) {
    out[0] = static_cast<char>(0xE0 | (code >> 12));
    out[1] = static_cast<char>(0x80 | ((code >> 6) & 0x3F));
    out[2] = static_cast<char>(0x80 | (code & 0x3F));
    return 3;
  }
  out[0] = static_cast<char>(0xF0 | (code >> 18));
  out[1] = static_cast<char>(0x80 | ((code >> 12) & 0x3F));
  out[2] = static_cast<char>(0x80 | ((code >> 6) & 0x3F));
  out[3] = static_cast<char>(0x80 | (code & 0x3F));
  return 4;
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

inline bool SameText(std::string_view a, std::string_view b) {
  return a.size() == b.size() && SameBytes(a.data(), b.data(), a.size());
}

/// Byte-wise order, shorter first on a tie, without a library call: the
/// names compared are a few bytes long.
inline bool BytesBefore(std::string_view a, std::string_view b) {
  const std::size_t common = a.size() < b.size() ? a.size() : b.size();
  for (std::size_t i = 0; i < common; ++i)
    if (a[i] != b[i])
      return static_cast<unsigned char>(a[i]) < static_cast<unsigned char>(b[i]);
  return a.size() < b.size();
}

} // namespace NVRNORV20

#endif
