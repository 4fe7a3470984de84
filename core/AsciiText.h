// Letter case and whitespace as the object model's texts (names, values,
// object paths, datetimes) define them: ASCII only, whatever the process's
// locale. Internal to the core library.
#ifndef ORV_CORE_ASCIITEXT_H
#define ORV_CORE_ASCIITEXT_H

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace NVRNORV20 {

/// The byte with ASCII upper-case letters folded to lower case; every other
/// byte (UTF-8 included) is left as it is.
inline char FoldAscii(char c) {
  return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c;
}

/// FoldAscii of each of the eight bytes of a word at once: a byte whose low
/// seven bits lie in 'A'..'Z' and whose high bit is clear gains 0x20.
inline std::uint64_t AsciiLowerWord(std::uint64_t word) {
  constexpr std::uint64_t kHighBits = 0x8080808080808080u;
  const std::uint64_t low = word & ~kHighBits;
  // Each byte's high bit tells low >= 'A', then low > 'Z'; no sum carries
  // into the next byte.
  const std::uint64_t fromA = low + 0x3F3F3F3F3F3F3F3Fu;
  const std::uint64_t pastZ = low + 0x2525252525252525u;
  const std::uint64_t upper = fromA & ~pastZ & ~word & kHighBits;
  return word | (upper >> 2);
}

/// Whether two texts are the same but for the letter case of ASCII letters.
inline bool EqualsNoCase(std::string_view left, std::string_view right) {
  if (left.size() != right.size())
    return false;
  // Names are mostly written in the letter case of their declaration: a
  // plain comparison settles those a word at a time.
  if (left == right)
    return true;
  for (std::size_t i = 0; i < left.size(); ++i)
    if (FoldAscii(left[i]) != FoldAscii(right[i]))
      return false;
  return true;
}

/// Space, tab, CR and LF: the whitespace that may surround a value's text.
inline bool IsSpace(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

} // namespace NVRNORV20

#endif
