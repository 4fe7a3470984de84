#include "core_api/CIMValue.h"

#include <cmath>
#include <string>

namespace NVRNORV20 {

namespace {

// A MOF string or character body: quotes and backslashes escaped, control
// characters by name or as \xHHHH; other bytes pass unchanged.
void AppendMOFEscaped(std::string &out, const std::string &text, char quote) {
  static const char kHex[] = "0123456789ABCDEF";
  for (char c : text) {
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
      } else if ((c >= 0 && c < 0x20) || c == 0x7F) {
        out += "\\x00";
        out += kHex[(c >> 4) & 0xF];
        out += kHex[c & 0xF];
      } else {
        out += c;
      }
      break;
    }
  }
}

void AppendMOFQuoted(std::string &out, const std::string &text, char quote) {
  out += quote;
  AppendMOFEscaped(out, text, quote);
  out += quote;
}

} // namespace

std::string TCIMValue::ToMOF() const {
  if (null)
    return "NULL";
  std::string out;
  if (IsArray()) {
    out += '{';
    bool first = true;
    for (const auto &element : GetElements()) {
      if (!first)
        out += ", ";
      first = false;
      out += element.ToMOF();
    }
    out += '}';
    return out;
  }
  switch (type) {
  case kCIMTypeString:
    AppendMOFQuoted(out, text, '"');
    break;
  case kCIMTypeChar16:
    AppendMOFQuoted(out, ToString(), '\'');
    break;
  case kCIMTypeReal32:
  case kCIMTypeReal64: {
    // The CIM-XML text is the shortest that reads back as the same real; a
    // MOF real also needs its decimal point: "1e+20" becomes "1.0e+20".
    out = ToString();
    if (std::isfinite(scalar.realValue) && out.find('.') == std::string::npos) {
      const auto exponent = out.find('e');
      out.insert(exponent == std::string::npos ? out.size() : exponent, ".0");
    }
    break;
  }
  case kCIMTypeDateTime:
  case kCIMTypeReference:
    AppendMOFQuoted(out, ToString(), '"');
    break;
  default:
    // Booleans and integers are written as in CIM-XML.
    out = ToString();
    break;
  }
  return out;
}

} // namespace NVRNORV20
