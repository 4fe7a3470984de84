// The interfaces' destructors, defined once here so that their virtual
// tables and type information live in this library.
#include "core_api/CIMInterfaces.h"

namespace NVRNORV20 {

ICIMQualifierDecl::~ICIMQualifierDecl() = default;
ICIMQualifier::~ICIMQualifier() = default;
ICIMQualifiedObject::~ICIMQualifiedObject() = default;
ICIMPropertyDecl::~ICIMPropertyDecl() = default;
ICIMProperty::~ICIMProperty() = default;
ICIMParameter::~ICIMParameter() = default;
ICIMMethod::~ICIMMethod() = default;
ICIMObject::~ICIMObject() = default;
ICIMClass::~ICIMClass() = default;
ICIMInstance::~ICIMInstance() = default;
ICIMNamespace::~ICIMNamespace() = default;

} // namespace NVRNORV20
