#include "cimxml/CIMXMLDocument.h"

#include <algorithm>

namespace NVRNORV20 {

ICIMXMLHandler::~ICIMXMLHandler() = default;

void ICIMXMLHandler::Operation(const TCIMXMLOperation &) {}

void ICIMXMLHandler::Message(const TCIMXMLMessage &) {}

void TCIMXMLResult::Object(const TCIMXMLObject &object) {
  objects.push_back(object);
}

void TCIMXMLResult::Operation(const TCIMXMLOperation &operation) {
  operations.push_back(operation);
}

void TCIMXMLResult::Message(const TCIMXMLMessage &message) {
  messages.push_back(message);
}

std::size_t TCIMXMLResult::Count(TCIMXMLObject::EKind kind) const {
  return static_cast<std::size_t>(
      std::count_if(objects.begin(), objects.end(),
                    [kind](const TCIMXMLObject &object) { return object.kind == kind; }));
}

} // namespace NVRNORV20
