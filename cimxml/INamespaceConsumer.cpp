#include "cimxml/INamespaceConsumer.h"

namespace NVRNORV20 {

// Defined although pure: a subclass's destructor calls it.
INamespaceConsumer::~INamespaceConsumer() = default;

} // namespace NVRNORV20
