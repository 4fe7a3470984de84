// CountInstances: reads operation messages in the full grammar, without
// their classes, and counts the instances of each class as they arrive,
// keeping none of them: an enumeration of any size costs the memory of the
// document and of one instance.
//
//   CountInstances RESPONSE.xml...
#include "cimxml/CIMXMLDocument.h"
#include "core_api/CIMInterfaces.h"
#include "core_api/ORVStatusCode.h"
#include "populate/NamespacePopulator.h"

#include <cstddef>
#include <iostream>
#include <map>
#include <string>

using namespace NVRNORV20;

// Each object reaches Object() once its end tag is read; once the call
// returns, the parser holds nothing of it.
class TInstanceCounter : public ICIMXMLHandler {
public:
  void Object(const TCIMXMLObject &object) override {
    if (object.kind == TCIMXMLObject::EKind::kInstance)
      ++counts[object.instance->GetClassName()];
  }
  // Each operation arrives after its objects, with how many it returned.
  void Operation(const TCIMXMLOperation &operation) override {
    std::cout << operation.method << ": " << operation.returnValue.objectCount
              << " objects returned\n";
  }

  std::map<std::string, std::size_t> counts;
};

int main(int argc, char **argv) {
  if (argc < 2) {
    std::cerr << "Usage: CountInstances RESPONSE.xml...\n";
    return 2;
  }
  // The namespace only lends classes for typing; with kReturnOnly nothing
  // is added to it.
  boost::shared_ptr<ICIMNamespace> ns = CreateCIMNamespace("root/cimv2");
  TCIMXMLReadOptions options;
  options.grammar = ECIMXMLGrammar::kFull;
  options.registration = ECIMXMLRegistration::kReturnOnly;

  TInstanceCounter counter;
  for (int i = 1; i < argc; ++i) {
    try {
      TNamespacePopulator::Populate(ns, argv[i], options, counter);
    } catch (const TORVException &ex) {
      std::cerr << argv[i] << ": " << ex.what() << " (status " << ex.GetStatusCode() << ")\n";
      return 1;
    }
  }
  for (const auto &count : counter.counts)
    std::cout << count.first << ": " << count.second << " instances\n";
  return 0;
}
