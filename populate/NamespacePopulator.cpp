#include "populate/NamespacePopulator.h"

#include "cimxml/CIMXMLParser.h"
#include "core_api/Logger.h"
#include "core_api/ORVStatusCode.h"

#include <boost/shared_ptr.hpp>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zlib.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <new>
#include <utility>

namespace NVRNORV20 {

namespace {

/// What a document larger than the parser's limit is cut to. It is smaller
/// than the limit on purpose: a document past the limit is taken for a
/// mistake, and the first 100 MiB are enough to show what it is.
const std::uint32_t kCutDocumentSize = 104857600;

/// The first room given to a document whose length is not known for sure
/// (gzip, a pipe); it doubles from there.
const std::size_t kFirstCapacity = 65536;

/// Deflate rarely makes CIM-XML smaller than a sixth (a ninth at most in
/// the DMTF schemas), so a gzip file's trailer is taken at its word up to
/// this many times the file's size: an honest file gets its buffer in one
/// allocation, as before, and a damaged one costs at most this multiple of
/// its size before its data asks for more.
const std::uint64_t kTrustedRatio = 16;

/// The level of the loader's own error lines, that of the parser's.
const int kErrorLevel = 3;

[[noreturn]] void Fail(EORVStatusCode code) {
  throw TORVException(TORVStatusCode(code));
}

std::uint32_t CapSize(std::uint64_t size) {
  if (size > TCIMXMLParser::kMaxSpecificationDocumentSize)
    return kCutDocumentSize;
  return static_cast<std::uint32_t>(size);
}

struct TFree {
  void operator()(char *bytes) const { std::free(bytes); }
};

/// The document in memory, its bytes followed by the terminator. One block
/// from malloc, so that growing a large one can move its pages rather than
/// copy them.
class TDocument {
public:
  char *Bytes() const { return bytes.get(); }
  std::size_t Capacity() const { return capacity; }
  /// Room for newCapacity bytes and the terminator, keeping the bytes held;
  /// status 4 when memory runs out.
  void Resize(std::size_t newCapacity) {
    char *moved = static_cast<char *>(std::realloc(bytes.get(), newCapacity + 1U));
    if (moved == nullptr)
      Fail(kORVStatusOutOfMemory);
    static_cast<void>(bytes.release());
    bytes.reset(moved);
    capacity = newCapacity;
  }
  void End(std::size_t length) { bytes.get()[length] = '\0'; }

private:
  std::unique_ptr<char, TFree> bytes;
  std::size_t capacity = 0;
};

/// Reads a source of unknown length, read(to, room) giving 0 at its end,
/// into a buffer of first bytes that doubles as it fills (the copies stay
/// linear in the length) and never holds more than limit bytes. With
/// cutBeyond, a source that still has a byte after limit is oversized and
/// keeps only its first kCutDocumentSize bytes, as a file known to be that
/// large does. Returns the length kept.
template <class TRead>
std::size_t ReadGrowing(TDocument &document, std::size_t first, std::size_t limit, bool cutBeyond,
                        TRead read) {
  document.Resize(std::min(limit, std::max<std::size_t>(first, 1)));
  std::size_t length = 0;
  while (length < limit) {
    if (length == document.Capacity())
      document.Resize(std::min(limit, 2 * document.Capacity()));
    const std::size_t got = read(document.Bytes() + length, document.Capacity() - length);
    if (got == 0)
      break;
    length += got;
  }
  char beyond = 0;
  if (cutBeyond && length == limit && read(&beyond, 1) != 0) {
    length = kCutDocumentSize;
    document.Resize(length);
  }
  document.End(length);
  return length;
}

/// ".gz" (or the other given suffix) anywhere in the name, searched from
/// three characters before its end backwards.
bool NameContains(const std::string &fileName, const char *suffix) {
  if (fileName.size() < 3)
    return false;
  return fileName.rfind(suffix, fileName.size() - 3) != std::string::npos;
}

/// An open file descriptor, closed with its owner unless handed on.
class TDescriptor {
public:
  explicit TDescriptor(int descriptor) : fd(descriptor) {}
  TDescriptor(TDescriptor &&other) noexcept : fd(other.Release()) {}
  TDescriptor(const TDescriptor &) = delete;
  TDescriptor &operator=(const TDescriptor &) = delete;
  TDescriptor &operator=(TDescriptor &&) = delete;
  ~TDescriptor() {
    if (fd >= 0)
      ::close(fd);
  }
  int Get() const { return fd; }
  int Release() { return std::exchange(fd, -1); }

private:
  int fd;
};

/// What stat says a file is, for the refusal of anything but a regular file
/// or a pipe.
const char *KindOf(mode_t mode) {
  if (S_ISDIR(mode))
    return "a directory";
  if (S_ISCHR(mode))
    return "a character device";
  if (S_ISBLK(mode))
    return "a block device";
  if (S_ISSOCK(mode))
    return "a socket";
  return "neither a regular file nor a pipe";
}

void RequireReadable(const std::string &fileName, mode_t mode) {
  if (S_ISREG(mode) || S_ISFIFO(mode))
    return;
  // A device may never end (/dev/zero) or reports no size (/dev/null); a
  // directory yields no bytes: none of them is a document.
  TRootObject::Log(kErrorLevel, "TNamespacePopulator: '" + fileName + "' is " + KindOf(mode) +
                                    "; only regular files and pipes are read");
  Fail(kORVStatusFileAccess);
}

/// Opens the document for blocking reads. A FIFO is opened without waiting
/// for a writer: one that has none reads as empty at once instead of
/// holding the call for ever. Anything but a regular file or a pipe is
/// refused before it is opened, since opening a device may act on it.
TDescriptor Open(const std::string &fileName, struct stat &status) {
  if (::stat(fileName.c_str(), &status) != 0)
    Fail(kORVStatusFileAccess);
  RequireReadable(fileName, status.st_mode);
  TDescriptor file(::open(fileName.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  if (file.Get() < 0 || ::fstat(file.Get(), &status) != 0)
    Fail(kORVStatusFileAccess);
  // Replaced between the two looks: the open file decides.
  RequireReadable(fileName, status.st_mode);
  const int flags = ::fcntl(file.Get(), F_GETFL);
  if (flags < 0 || ::fcntl(file.Get(), F_SETFL, flags & ~O_NONBLOCK) != 0)
    Fail(kORVStatusFileAccess);
  return file;
}

struct TFileCloser {
  void operator()(std::FILE *file) const { std::fclose(file); }
};

void ReadPlainFile(TDocument &document, TDescriptor &descriptor, std::uint64_t fileSize) {
  const std::uint32_t size = CapSize(fileSize);
  document.Resize(size);
  // Text mode as the loaders always did: where it translates line ends the
  // count read is smaller than the size.
  std::unique_ptr<std::FILE, TFileCloser> file(::fdopen(descriptor.Get(), "r"));
  if (!file)
    Fail(kORVStatusFileAccess);
  descriptor.Release();
  const std::size_t read = std::fread(document.Bytes(), 1, size, file.get());
  if (std::ferror(file.get()) != 0)
    Fail(kORVStatusFileAccess);
  document.End(std::min<std::size_t>(read, size));
}

/// A pipe has no size to go by: it is read to its end, and one that goes on
/// past the limit is cut like a file of that size.
void ReadPlainPipe(TDocument &document, const TDescriptor &descriptor) {
  ReadGrowing(document, kFirstCapacity, TCIMXMLParser::kMaxSpecificationDocumentSize, true,
              [&descriptor](char *to, std::size_t room) {
                for (;;) {
                  const ssize_t got = ::read(descriptor.Get(), to, room);
                  if (got >= 0)
                    return static_cast<std::size_t>(got);
                  if (errno != EINTR)
                    Fail(kORVStatusFileAccess);
                }
              });
}

/// The gzip trailer's size field: the uncompressed length modulo 2^32,
/// little-endian whatever the host's order.
std::uint32_t LittleEndian32(const unsigned char (&bytes)[4]) {
  return static_cast<std::uint32_t>(bytes[0]) | static_cast<std::uint32_t>(bytes[1]) << 8 |
         static_cast<std::uint32_t>(bytes[2]) << 16 | static_cast<std::uint32_t>(bytes[3]) << 24;
}

bool ReadAt(const TDescriptor &descriptor, unsigned char *to, std::size_t count,
            std::uint64_t offset) {
  return ::pread(descriptor.Get(), to, count, static_cast<off_t>(offset)) ==
         static_cast<ssize_t>(count);
}

/// The uncompressed size that the file's trailer claims, after its magic was
/// checked.
std::uint32_t ReadGzipSize(const TDescriptor &descriptor, std::uint64_t fileSize) {
  unsigned char magic[2];
  if (!ReadAt(descriptor, magic, sizeof magic, 0))
    Fail(kORVStatusFileAccess);
  if (magic[0] != 0x1F || magic[1] != 0x8B)
    Fail(kORVStatusNotGzip);
  unsigned char trailer[4];
  if (fileSize < sizeof trailer || !ReadAt(descriptor, trailer, sizeof trailer, fileSize - 4))
    Fail(kORVStatusFileAccess);
  return LittleEndian32(trailer);
}

struct TGzipCloser {
  void operator()(gzFile file) const { gzclose(file); }
};
using TGzipFile = std::unique_ptr<gzFile_s, TGzipCloser>;

TGzipFile OpenGzip(TDescriptor &descriptor) {
  TGzipFile file(gzdopen(descriptor.Get(), "rb"));
  if (!file)
    Fail(kORVStatusFileAccess);
  descriptor.Release();
  return file;
}

/// Inflates up to limit bytes into a buffer grown as they come from first
/// bytes, so that a trailer claiming more than the file holds costs no more
/// memory than the file yields. A broken stream, or nothing at all, fails.
void Inflate(TDocument &document, const TGzipFile &file, std::size_t first, std::size_t limit,
             bool cutBeyond) {
  const std::size_t length =
      ReadGrowing(document, first, limit, cutBeyond, [&file](char *to, std::size_t room) {
        const int got = gzread(file.get(), to, static_cast<unsigned>(room));
        if (got < 0)
          Fail(kORVStatusGzipRead);
        return static_cast<std::size_t>(got);
      });
  if (length == 0)
    Fail(kORVStatusGzipRead);
}

/// A payload shorter than the trailer claims (a cut or concatenated file)
/// reads short; a trailer beyond the limit reads only the cut size.
void ReadGzipFile(TDocument &document, TDescriptor &descriptor, std::uint64_t fileSize) {
  const std::uint32_t size = CapSize(ReadGzipSize(descriptor, fileSize));
  const std::uint64_t trusted = std::max<std::uint64_t>(kFirstCapacity, fileSize * kTrustedRatio);
  Inflate(document, OpenGzip(descriptor),
          static_cast<std::size_t>(std::min<std::uint64_t>(size, trusted)), size, false);
}

/// A pipe cannot be searched for its trailer: its magic is checked as it
/// comes, and it is inflated to its end, cut past the limit like a plain
/// pipe.
void ReadGzipPipe(TDocument &document, TDescriptor &descriptor) {
  const TGzipFile file = OpenGzip(descriptor);
  if (gzdirect(file.get()) != 0) {
    // zlib passes what is not gzip through as it is: fewer than the two
    // magic bytes fail as a short file does.
    char magic[2];
    Fail(gzread(file.get(), magic, sizeof magic) == 2 ? kORVStatusNotGzip : kORVStatusFileAccess);
  }
  Inflate(document, file, kFirstCapacity, TCIMXMLParser::kMaxSpecificationDocumentSize, true);
}

void ReadDocument(TDocument &document, const std::string &fileName, bool gzip) {
  struct stat status {};
  TDescriptor descriptor = Open(fileName, status);
  const auto fileSize = static_cast<std::uint64_t>(status.st_size);
  const bool pipe = S_ISFIFO(status.st_mode);
  if (gzip)
    pipe ? ReadGzipPipe(document, descriptor) : ReadGzipFile(document, descriptor, fileSize);
  else
    pipe ? ReadPlainPipe(document, descriptor) : ReadPlainFile(document, descriptor, fileSize);
}

/// Steps shared by the entry points: reads the document and runs the
/// parser that prepare set up over it, then hands the parser to finish;
/// upperCaseGzip also takes ".GZ" as gzip.
template <class TPrepare, class TFinish>
auto Load(const boost::shared_ptr<ICIMNamespace> &ns, const std::string &fileName,
          bool upperCaseGzip, const TPrepare &prepare, const TFinish &finish) {
  try {
    // Without a namespace every state would fail on its own: one failure
    // for the call says it better.
    if (!ns)
      throw TORVException(TORVStatusCode(kORVStatusNullObject));
    const bool gzip =
        NameContains(fileName, ".gz") || (upperCaseGzip && NameContains(fileName, ".GZ"));
    TDocument document;
    ReadDocument(document, fileName, gzip);
    TCIMXMLParser parser(ns);
    prepare(parser);
    parser.Parse(document.Bytes());
    return finish(parser);
  } catch (TORVException &ex) {
    TRootObject::Log(0, "Previous error was while parsing file '" + fileName + "'");
    throw TORVException(ex);
  } catch (std::bad_alloc &) {
    // The library fails with TORVException only: memory running out inside
    // the parse is reported like a buffer that could not be had.
    TRootObject::Log(0, "Previous error was while parsing file '" + fileName + "'");
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
  return Load(
      ns, fileName, true, [](TCIMXMLParser &) {},
      [](const TCIMXMLParser &parser) { return parser.GetClassesCollected(); });
}

std::vector<boost::shared_ptr<ICIMInstance>>
TNamespacePopulator::PopulateFromRegXMLFile(boost::shared_ptr<ICIMNamespace> ns,
                                            std::string fileName) {
  return Load(
      ns, fileName, false, [](TCIMXMLParser &) {},
      [](const TCIMXMLParser &parser) { return parser.GetInstancesCollected(); });
}
// NOLINTEND(performance-unnecessary-value-param)

void TNamespacePopulator::Populate(const boost::shared_ptr<ICIMNamespace> &ns,
                                   const std::string &fileName, const TCIMXMLReadOptions &options,
                                   ICIMXMLHandler &handler) {
  const bool full = options.grammar == ECIMXMLGrammar::kFull;
  Load(
      ns, fileName, true,
      [&](TCIMXMLParser &parser) {
        parser.SetReadOptions(options);
        if (full)
          parser.SetHandler(&handler);
      },
      [&](const TCIMXMLParser &parser) {
        if (full)
          return 0;
        TCIMXMLObject object;
        object.registered = true;
        object.kind = TCIMXMLObject::EKind::kClass;
        for (const auto &cls : parser.GetClassesCollected()) {
          object.cimClass = cls;
          handler.Object(object);
          ++object.sequence;
        }
        object.cimClass.reset();
        object.kind = TCIMXMLObject::EKind::kInstance;
        for (const auto &instance : parser.GetInstancesCollected()) {
          object.instance = instance;
          handler.Object(object);
          ++object.sequence;
        }
        return 0;
      });
}

} // namespace NVRNORV20
