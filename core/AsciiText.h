// Letter case and whitespace as the object model's texts (names, values,
// object paths, datetimes) define them: ASCII only, whatever the process's
// locale. Internal to the core library.
#ifndef ORV_CORE_ASCIITEXT_H
#define ORV_CORE_ASCIITEXT_H

#include <cstddef>
#include <string_view>

namespace NVRNORV20 {

/// The byte with ASCII upper-case letters folded to lower case; every other
/// byte (UTF-8 included) is left as it is.
inline char FoldAscii(char c) {
  return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c;
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
