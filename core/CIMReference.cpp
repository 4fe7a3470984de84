#include "core_api/CIMReference.h"

#include "core/AsciiText.h"
#include "core/CIMName.h"
#include "core/CIMValueTree.h"
#include "core_api/CIMInterfaces.h"
#include "core_api/ORVStatusCode.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace NVRNORV20 {

namespace {

bool IsNameChar(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

[[noreturn]] void ThrowBadPath() {
  throw TORVException(kORVStatusInvalidValueText);
}

// Reads an unquoted key value: a boolean, a number, or nothing (null).
TCIMValue ReadBareKeyValue(const char *text, std::size_t length) {
  if (length == 0)
    return TCIMValue();
  const std::string token(text, length);
  if (EqualsNoCase({text, length}, "true"))
    return TCIMValue(true);
  if (EqualsNoCase({text, length}, "false"))
    return TCIMValue(false);
  ECIMType type = text[0] == '-' ? kCIMTypeSint64 : kCIMTypeUint64;
  const bool hex = token.find_first_of("xX") != std::string::npos;
  if (!hex && token.find_first_of(".eEnN") != std::string::npos)
    type = kCIMTypeReal64;
  try {
    return TCIMValue(TCIMType(type), token, nullptr);
  } catch (const TORVException &) {
    // A path is either readable as a whole or not at all; the number's own
    // status would hide that the path is what failed.
    ThrowBadPath();
  }
}

} // namespace

/// Looking a key up by scanning made a path of n keys cost n squared to
/// build; a path past a handful of keys looks them up here instead.
struct TCIMReference::TKeyIndex {
  TNamePositions positions;
};

namespace {

/// The name of each key binding, for TNamePositions.
struct TKeyNames {
  const std::vector<TCIMReference::TKeyBinding> &keys;
  const std::string &operator()(std::size_t i) const { return keys[i].first; }
};

} // namespace

TCIMReference::TCIMReference() = default;

TCIMReference::TCIMReference(boost::shared_ptr<ICIMNamespace> ns,
                             const std::map<std::string, TCIMValue> &keyBindings) {
  SetNamespace(std::move(ns));
  keys.reserve(keyBindings.size());
  for (const auto &binding : keyBindings)
    AddKeyValue(binding.first, binding.second);
}

TCIMReference::TCIMReference(const TCIMReference &other)
    : cimNamespace(other.cimNamespace), namespaceName(other.namespaceName),
      className(other.className), host(other.host), keys(other.keys) {
  if (other.keyIndex)
    keyIndex = std::make_unique<TKeyIndex>(*other.keyIndex);
}

TCIMReference &TCIMReference::operator=(const TCIMReference &other) {
  if (this == &other)
    return *this;
  // Copied first, so that a failed allocation leaves this path as it was.
  std::unique_ptr<TKeyIndex> index;
  if (other.keyIndex)
    index = std::make_unique<TKeyIndex>(*other.keyIndex);
  std::vector<TKeyBinding> copied(other.keys);
  cimNamespace = other.cimNamespace;
  namespaceName = other.namespaceName;
  className = other.className;
  host = other.host;
  keys.swap(copied);
  keyIndex = std::move(index);
  return *this;
}

TCIMReference::~TCIMReference() = default;

// By value in the exported interface, which callers are built against.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
void TCIMReference::SetNamespace(boost::shared_ptr<ICIMNamespace> ns) {
  cimNamespace = ns;
  if (ns)
    namespaceName = ns->GetName();
  else
    namespaceName.clear();
}

boost::shared_ptr<ICIMNamespace> TCIMReference::GetNamespace() const {
  return cimNamespace.lock();
}

std::size_t TCIMReference::FindKey(const std::string &name) const {
  if (keyIndex)
    return keyIndex->positions.Find(name, keys.size(), TKeyNames{keys});
  for (std::size_t i = 0; i < keys.size(); ++i)
    if (EqualsNoCase(keys[i].first, name))
      return i;
  return keys.size();
}

void TCIMReference::AddKeyValue(const std::string &name, const TCIMValue &value) {
  const std::size_t position = FindKey(name);
  if (position != keys.size()) {
    keys[position].second = value;
    return;
  }
  keys.emplace_back(name, value);
  if (!keyIndex && keys.size() > TNamePositions::kScanLimit)
    keyIndex = std::make_unique<TKeyIndex>();
  if (keyIndex)
    keyIndex->positions.Appended(keys.size(), TKeyNames{keys});
}

TCIMValue TCIMReference::GetKeyValue(const std::string &name) const {
  const std::size_t position = FindKey(name);
  return position == keys.size() ? TCIMValue() : keys[position].second;
}

std::string TCIMReference::ToString() const {
  std::string out;
  TCIMValueTree::AppendText(out, *this);
  return out;
}

std::size_t TCIMReference::GetTextLength() const {
  return TCIMValueTree::TextLength(*this);
}

TCIMReference TCIMReference::Parse(const char *text, std::size_t length,
                                   boost::shared_ptr<ICIMNamespace> ns) {
  const char *pos = text;
  const char *end = text + length;
  while (pos < end && IsSpace(*pos))
    ++pos;
  while (end > pos && IsSpace(end[-1]))
    --end;

  TCIMReference result;
  // "//host/" first, when the path names a host.
  if (end - pos > 2 && pos[0] == '/' && pos[1] == '/') {
    const char *hostEnd = std::find(pos + 2, end, '/');
    if (hostEnd == end || hostEnd == pos + 2)
      ThrowBadPath();
    result.host.assign(pos + 2, hostEnd);
    pos = hostEnd + 1;
  }
  // "ns:" ends at the first colon before the class name's dot; key values
  // may hold colons of their own.
  const char *nameStart = pos;
  for (const char *p = pos; p < end && *p != '.' && *p != '"'; ++p) {
    if (*p == ':') {
      if (p == pos)
        ThrowBadPath();
      result.namespaceName.assign(pos, p);
      nameStart = p + 1;
      break;
    }
  }
  const char *p = nameStart;
  while (p < end && IsNameChar(*p))
    ++p;
  if (p == nameStart || (p < end && *p != '.'))
    ThrowBadPath();
  result.className.assign(nameStart, p);

  if (p < end) {
    ++p; // the dot
    for (;;) {
      // key=value
      const char *keyStart = p;
      while (p < end && IsNameChar(*p))
        ++p;
      if (p == keyStart || p == end || *p != '=')
        ThrowBadPath();
      std::string key(keyStart, p);
      ++p;
      if (p < end && *p == '"') {
        // "quoted"
        std::string value;
        ++p;
        for (;;) {
          if (p == end)
            ThrowBadPath();
          if (*p == '"')
            break;
          if (*p == '\\' && p + 1 < end)
            ++p;
          value += *p++;
        }
        ++p;
        result.AddKeyValue(key, TCIMValue(value));
      } else {
        const char *valueStart = p;
        while (p < end && *p != ',')
          ++p;
        result.AddKeyValue(key,
                           ReadBareKeyValue(valueStart, static_cast<std::size_t>(p - valueStart)));
      }
      if (p == end)
        break;
      if (*p != ',')
        ThrowBadPath();
      ++p;
    }
  }

  if (ns && (result.namespaceName.empty() || EqualsNoCase(result.namespaceName, ns->GetName())))
    result.SetNamespace(std::move(ns));
  return result;
}

bool TCIMReference::operator==(const TCIMReference &other) const {
  return TCIMValueTree::Equal(*this, other);
}

} // namespace NVRNORV20
