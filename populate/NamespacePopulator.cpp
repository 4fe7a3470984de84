#include "populate/NamespacePopulator.h"

#include "cimxml/CIMXMLParser.h"
#include "core_api/Logger.h"
#include "core_api/ORVStatusCode.h"
#include "core_api/OSSpecific.h"

#include <boost/checked_delete.hpp>
#include <boost/shared_ptr.hpp>

#include <zlib.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <locale>
#include <memory>
#include <new>
#include <stdexcept>

namespace NVRNORV20 {

namespace {

/// What a document larger than the parser's limit is cut to. It is smaller
/// than the limit on purpose: a document past the limit is taken for a
/// mistake, and the first 100 MiB are enough to show what it is.
const std::uint32_t kCutDocumentSize = 104857600;

using TBuffer = boost::shared_ptr<char>;

[[noreturn]] void Fail(EORVStatusCode code) {
  throw TORVException(TORVStatusCode(code));
}

std::uint32_t CapSize(std::uint64_t size) {
  if (size > TCIMXMLParser::kMaxSpecificationDocumentSize)
    return kCutDocumentSize;
  return static_cast<std::uint32_t>(size);
}

/// size + 1 bytes, the last one for the terminator.
TBuffer AllocateBuffer(std::uint32_t size) {
  const std::uint32_t length = size + 1U;
  char *bytes = new (std::nothrow) char[length];
  if (bytes == nullptr)
    Fail(kORVStatusOutOfMemory);
  return TBuffer(bytes, boost::checked_array_deleter<char>());
}

/// Zeroes from the count actually read up to and including the terminator at
/// index size, so that a short read never shows the tokenizer stale memory.
void Terminate(const TBuffer &buffer, std::size_t read, std::uint32_t size) {
  if (read > size)
    read = size;
  std::memset(buffer.get() + read, 0, size + 1U - read);
}

/// ".gz" (or the other given suffix) anywhere in the name, searched from
/// three characters before its end backwards.
bool NameContains(const std::string &fileName, const char *suffix) {
  if (fileName.size() < 3)
    return false;
  return fileName.rfind(suffix, fileName.size() - 3) != std::string::npos;
}

struct TFileCloser {
  void operator()(std::FILE *file) const { std::fclose(file); }
};

TBuffer ReadPlainFile(const std::string &fileName, std::uint64_t fileSize) {
  const std::uint32_t size = CapSize(fileSize);
  TBuffer buffer = AllocateBuffer(size);
  // Text mode as the loaders always did: where it translates line ends the
  // count read is smaller than the size, and the rest is zeroed below.
  std::unique_ptr<std::FILE, TFileCloser> file(std::fopen(fileName.c_str(), "r"));
  if (!file)
    Fail(kORVStatusFileAccess);
  const std::size_t read = std::fread(buffer.get(), 1, size, file.get());
  if (std::ferror(file.get()) != 0)
    Fail(kORVStatusFileAccess);
  Terminate(buffer, read, size);
  return buffer;
}

/// The gzip trailer's size field: the uncompressed length modulo 2^32,
/// little-endian whatever the host's order.
std::uint32_t LittleEndian32(const unsigned char (&bytes)[4]) {
  return static_cast<std::uint32_t>(bytes[0]) | static_cast<std::uint32_t>(bytes[1]) << 8 |
         static_cast<std::uint32_t>(bytes[2]) << 16 | static_cast<std::uint32_t>(bytes[3]) << 24;
}

/// The uncompressed size that the file's trailer claims, after its magic was
/// checked. switchLocale opens the stream under the environment's locale.
std::uint32_t ReadGzipSize(const std::string &fileName, bool switchLocale) {
  std::locale previous;
  bool switched = false;
  if (switchLocale) {
    // An environment naming a locale that this system cannot make keeps the
    // current one: the locale is no reason to refuse a document.
    try {
      previous = std::locale::global(std::locale(""));
      switched = true;
    } catch (const std::runtime_error &) {
    }
  }
  std::ifstream stream(fileName.c_str(), std::ios::in | std::ios::binary);
  // Thrown before the old locale is back: a file that cannot be opened
  // leaves the environment's locale in force, as it always has.
  if (!stream)
    Fail(kORVStatusFileAccess);
  if (switched)
    std::locale::global(previous);

  char magic[2];
  if (!stream.read(magic, sizeof magic))
    Fail(kORVStatusFileAccess);
  if (static_cast<unsigned char>(magic[0]) != 0x1F || static_cast<unsigned char>(magic[1]) != 0x8B)
    Fail(kORVStatusNotGzip);
  if (!stream.seekg(-4, std::ios::end))
    Fail(kORVStatusFileAccess);
  unsigned char trailer[4];
  if (!stream.read(reinterpret_cast<char *>(trailer), sizeof trailer))
    Fail(kORVStatusFileAccess);
  return LittleEndian32(trailer);
}

struct TGzipCloser {
  void operator()(gzFile file) const { gzclose(file); }
};

TBuffer ReadGzipFile(const std::string &fileName, bool switchLocale) {
  const std::uint32_t size = CapSize(ReadGzipSize(fileName, switchLocale));
  TBuffer buffer = AllocateBuffer(size);
  std::unique_ptr<gzFile_s, TGzipCloser> file(gzopen(fileName.c_str(), "rb"));
  if (!file)
    Fail(kORVStatusFileAccess);
  // A payload shorter than the trailer claims (a cut or concatenated file)
  // reads short and the rest is zeroed; nothing at all, or a broken
  // stream, fails.
  const int read = gzread(file.get(), buffer.get(), size);
  if (read < 1)
    Fail(kORVStatusGzipRead);
  Terminate(buffer, static_cast<std::size_t>(read), size);
  return buffer;
}

/// Steps shared by both entry points; upperCaseGzip also takes ".GZ" as
/// gzip, which only the class loader does.
template <class TResult>
TResult Populate(const boost::shared_ptr<ICIMNamespace> &ns, const std::string &fileName,
                 bool upperCaseGzip, TResult (TCIMXMLParser::*collected)() const) {
  try {
    // Without a namespace every state would fail on its own: one failure
    // for the call says it better.
    if (!ns)
      throw TORVException(TORVStatusCode(kORVStatusNullObject));
    const std::uint64_t fileSize = TOSSpecific::GetFileSize(fileName);
    const bool gzip =
        NameContains(fileName, ".gz") || (upperCaseGzip && NameContains(fileName, ".GZ"));
    const TBuffer buffer =
        gzip ? ReadGzipFile(fileName, upperCaseGzip) : ReadPlainFile(fileName, fileSize);
    TCIMXMLParser parser(ns);
    parser.Parse(buffer.get());
    return (parser.*collected)();
  } catch (TORVException &ex) {
    TRootObject::GetCoreLogger()->Log(0,
                                      "Previous error was while parsing file '" + fileName + "'");
    throw TORVException(ex);
  } catch (std::bad_alloc &) {
    // The library fails with TORVException only: memory running out inside
    // the parse is reported like a buffer that could not be had.
    TRootObject::GetCoreLogger()->Log(0,
                                      "Previous error was while parsing file '" + fileName + "'");
    Fail(kORVStatusOutOfMemory);
  }
}

} // namespace

// Both arguments are taken by value as the exported interface always had
// them.
// NOLINTBEGIN(performance-unnecessary-value-param)
std::vector<boost::shared_ptr<ICIMClass>>
TNamespacePopulator::PopulateFromXMLFile(boost::shared_ptr<ICIMNamespace> ns,
                                         std::string fileName) {
  return Populate(ns, fileName, true, &TCIMXMLParser::GetClassesCollected);
}

std::vector<boost::shared_ptr<ICIMInstance>>
TNamespacePopulator::PopulateFromRegXMLFile(boost::shared_ptr<ICIMNamespace> ns,
                                            std::string fileName) {
  return Populate(ns, fileName, false, &TCIMXMLParser::GetInstancesCollected);
}
// NOLINTEND(performance-unnecessary-value-param)

} // namespace NVRNORV20
