// Fuzz target for the whole road of a document: tokenizer, parse states and
// object model. Every input is loaded into a fresh namespace that already
// holds the example schema (qualifier declarations, keyed classes, an
// association), so that instance data, paths and references reach the
// object model instead of stopping at unknown names. The input is loaded
// three times: in the classic grammar as the loaders do, with the instance
// property type check turned off, and in the full grammar registering what
// it reads. Whatever a load built is then printed as MOF and, for
// instances, looked up again by path: objects that loaded must be usable,
// not merely built.
#include "cimxml/CIMXMLParser.h"
#include "core_api/CIMInterfaces.h"
#include "core_api/CIMReference.h"
#include "core_api/Logger.h"
#include "core_api/ORVStatusCode.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <memory>
#include <new>
#include <string>

namespace {

using namespace NVRNORV20;

class TQuietLogger : public ILogger {
public:
  void Log(int level, const std::string &text) override { sink += text.size() + unsigned(level); }
  std::size_t sink = 0;
};

TQuietLogger quietLogger;

std::string ReadSchema() {
  std::ifstream stream(ORV_EXAMPLES_DIR "/schema.xml", std::ios::binary);
  std::string text((std::istreambuf_iterator<char>(stream)), std::istreambuf_iterator<char>());
  if (text.empty())
    std::abort(); // without the schema the target would fuzz far less than it claims
  return text;
}

/// Parses text as the loaders do: from a writable copy ending in its NUL,
/// exactly sized so that AddressSanitizer sees any read beyond it.
void Load(TCIMXMLParser &parser, const char *text, std::size_t size) {
  std::unique_ptr<char[]> buffer(new char[size + 1]);
  if (size != 0)
    std::memcpy(buffer.get(), text, size);
  buffer[size] = '\0';
  try {
    parser.Parse(buffer.get());
  } catch (const TORVException &) {
  } catch (const std::bad_alloc &) {
  }
}

boost::shared_ptr<ICIMNamespace> SchemaNamespace() {
  static const std::string schema = ReadSchema();
  boost::shared_ptr<ICIMNamespace> ns = CreateCIMNamespace("root/fuzz");
  TCIMXMLParser parser(ns);
  Load(parser, schema.data(), schema.size());
  return ns;
}

void Use(const boost::shared_ptr<ICIMNamespace> &ns, TCIMXMLParser &parser) {
  std::size_t sink = 0;
  try {
    for (const auto &cimClass : parser.GetClassesCollected())
      sink += cimClass->ToMOF().size();
    for (const auto &instance : parser.GetInstancesCollected()) {
      sink += instance->ToMOF().size();
      if (instance->IsCommitted())
        sink += ns->GetInstance(instance->GetPath()).get() == instance.get();
    }
    sink += ns->ToMOF().size();
  } catch (const TORVException &) {
  }
  quietLogger.sink += sink;
}

enum class EMode { kClassic, kQN402, kFull };

void LoadOnce(const std::uint8_t *data, std::size_t size, EMode mode) {
  boost::shared_ptr<ICIMNamespace> ns = SchemaNamespace();
  TCIMXMLParser parser(ns);
  if (mode == EMode::kQN402)
    parser.SetQN402Mode();
  if (mode == EMode::kFull)
    parser.SetReadOptions({ECIMXMLGrammar::kFull, ECIMXMLRegistration::kRegister});
  Load(parser, reinterpret_cast<const char *>(data), size);
  Use(ns, parser);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  TRootObject::SetCoreLogger(&quietLogger);
  LoadOnce(data, size, EMode::kClassic);
  LoadOnce(data, size, EMode::kQN402);
  LoadOnce(data, size, EMode::kFull);
  return 0;
}
