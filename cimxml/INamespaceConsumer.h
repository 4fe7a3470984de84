// The base of objects that take the contents of a namespace from the loaders.
// It has no operations of its own: it marks a role, and the destructor is
// pure so that only subclasses exist.
#ifndef ORV_CIMXML_INAMESPACECONSUMER_H
#define ORV_CIMXML_INAMESPACECONSUMER_H

#include "core_api/ORVExport.h"

namespace NVRNORV20 {

class ORVCIMXML_API INamespaceConsumer {
public:
  INamespaceConsumer() = default;
  INamespaceConsumer(const INamespaceConsumer &) = default;
  INamespaceConsumer &operator=(const INamespaceConsumer &) = default;
  virtual ~INamespaceConsumer() = 0;
};

} // namespace NVRNORV20

#endif
