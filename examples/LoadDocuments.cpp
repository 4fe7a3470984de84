// LoadDocuments: loads a class document, then instance documents, into one
// namespace and says what each file defined.
//
//   LoadDocuments SCHEMA.xml [INSTANCES.xml...]
#include "core_api/CIMInterfaces.h"
#include "core_api/ORVStatusCode.h"
#include "populate/NamespacePopulator.h"

#include <iostream>
#include <string>

using namespace NVRNORV20;

int main(int argc, char **argv) {
  if (argc < 2) {
    std::cerr << "Usage: LoadDocuments SCHEMA.xml [INSTANCES.xml...]\n";
    return 2;
  }

  // The loader's messages go to the core logger. The default one writes
  // "[LEVEL] TEXT" lines to standard error, which is what we want here.
  boost::shared_ptr<ICIMNamespace> ns = CreateCIMNamespace("root/cimv2");

  std::string fileName = argv[1];
  try {
    // The first file holds the classes (and the qualifier declarations).
    auto classes = TNamespacePopulator::PopulateFromXMLFile(ns, fileName);
    std::cout << fileName << ": " << classes.size() << " classes\n";

    // Every further file holds instances of those classes.
    for (int i = 2; i < argc; ++i) {
      fileName = argv[i];
      auto instances = TNamespacePopulator::PopulateFromRegXMLFile(ns, fileName);
      std::cout << fileName << ": " << instances.size() << " instances\n";
    }

    // Each class that has instances: its key properties, then the object
    // path of each instance, made of the values of those keys.
    for (const auto &cls : ns->GetClasses()) {
      if (cls->GetInstances().empty())
        continue;
      std::cout << cls->GetName() << " keys:";
      for (const auto &key : cls->GetKeyProperties())
        std::cout << ' ' << key->GetName();
      std::cout << '\n';
      for (const auto &instance : cls->GetInstances())
        std::cout << "  " << instance->GetPath().ToString() << '\n';
    }
  } catch (const TORVException &ex) {
    // The details were logged already; the exception carries the status.
    std::cerr << fileName << ": " << ex.what() << " (status " << ex.GetStatusCode() << ")\n";
    return 1;
  }
  return 0;
}
