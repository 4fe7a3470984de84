#include "core/CIMValue.h"

#include "core/Mof.h"
#include "core_api/CIMInterfaces.h"
#include "core_api/Logger.h"

#include <cmath>
#include <string>
#include <utility>
#include <vector>

namespace NVRNORV20 {

namespace {

const char kHex[] = "0123456789ABCDEF";

void AppendHexEscape(std::string &out, unsigned char byte) {
  out += "\\x00";
  out += kHex[byte >> 4];
  out += kHex[byte & 0xF];
}

// A MOF string or character body: quotes and backslashes escaped, control
// characters by name or as \xHHHH, UTF-8 characters as they are. MOF text is
// UTF-8, so a byte that begins no UTF-8 character is written as the escape
// of its Latin-1 character, the usual origin of such bytes. False when
// there was one.
bool AppendMOFEscaped(std::string &out, const std::string &text, char quote) {
  bool allUtf8 = true;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (static_cast<unsigned char>(c) >= 0x80) {
      std::uint32_t codePoint = 0;
      const std::size_t length = DecodeUtf8(text, i, codePoint);
      if (length == 0) {
        AppendHexEscape(out, static_cast<unsigned char>(c));
        allUtf8 = false;
      } else {
        out.append(text, i, length);
        i += length - 1;
      }
      continue;
    }
    switch (c) {
    case '\b':
      out += "\\b";
      break;
    case '\t':
      out += "\\t";
      break;
    case '\n':
      out += "\\n";
      break;
    case '\f':
      out += "\\f";
      break;
    case '\r':
      out += "\\r";
      break;
    case '\\':
      out += "\\\\";
      break;
    default:
      if (c == quote) {
        out += '\\';
        out += c;
      } else if (c < 0x20 || c == 0x7F) {
        AppendHexEscape(out, static_cast<unsigned char>(c));
      } else {
        out += c;
      }
      break;
    }
  }
  return allUtf8;
}

void AppendMOFQuoted(std::string &out, const std::string &text, char quote) {
  out += quote;
  if (!AppendMOFEscaped(out, text, quote))
    TRootObject::Log(3, "MOF: bytes that are not UTF-8 in a string, each written as the escape "
                        "of its Latin-1 character");
  out += quote;
}

} // namespace

std::string TCIMValue::ToMOF() const {
  std::string out;
  // Arrays are written with a stack of those open, so that an array whose
  // elements are arrays again (which only a program builds) costs no call
  // frame per level.
  std::vector<std::pair<const std::vector<TCIMValue> *, std::size_t>> open;
  const TCIMValue *next = this;
  for (;;) {
    if (next != nullptr && next->IsArray() && !next->null) {
      out += '{';
      open.emplace_back(&next->payload->elements, 0);
    } else if (next != nullptr) {
      next->AppendScalarMOF(out);
    }
    if (open.empty())
      return out;
    auto &top = open.back();
    if (top.second == top.first->size()) {
      out += '}';
      open.pop_back();
      next = nullptr;
      continue;
    }
    if (top.second != 0)
      out += ", ";
    next = &(*top.first)[top.second++];
  }
}

void TCIMValue::AppendScalarMOF(std::string &out) const {
  if (null) {
    out += "NULL";
    return;
  }
  switch (type) {
  case kCIMTypeString:
    // An embedded object is written as the string of its own MOF, which a
    // MOF compiler reads back as the object.
    if (payload && payload->embeddedInstance)
      AppendMOFQuoted(out, payload->embeddedInstance->ToMOF(), '"');
    else if (payload && payload->embeddedClass)
      AppendMOFQuoted(out, payload->embeddedClass->ToMOF(), '"');
    else
      AppendMOFQuoted(out, text, '"');
    break;
  case kCIMTypeChar16:
    AppendMOFQuoted(out, ToString(), '\'');
    break;
  case kCIMTypeReal32:
  case kCIMTypeReal64: {
    // The CIM-XML text is the shortest that reads back as the same real; a
    // MOF real also needs its decimal point: "1e+20" becomes "1.0e+20".
    std::string real = ToString();
    if (!std::isfinite(scalar.realValue)) {
      TRootObject::Log(3, "MOF: the real " + real + " has no MOF form; written as NULL");
      out += "NULL";
      break;
    }
    if (real.find('.') == std::string::npos) {
      const auto exponent = real.find('e');
      real.insert(exponent == std::string::npos ? real.size() : exponent, ".0");
    }
    out += real;
    break;
  }
  case kCIMTypeDateTime:
  case kCIMTypeReference:
    AppendMOFQuoted(out, ToString(), '"');
    break;
  default:
    // Booleans and integers are written as in CIM-XML.
    out += ToString();
    break;
  }
}

} // namespace NVRNORV20
