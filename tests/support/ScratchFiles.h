// Real files for tests of the loaders and the tool: a scratch folder made
// when the test starts and removed with everything in it when it ends, and
// gzip members made in memory, to be written whole or damaged.
#ifndef ORV_TESTS_SUPPORT_SCRATCHFILES_H
#define ORV_TESTS_SUPPORT_SCRATCHFILES_H

#include <zlib.h>

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>
#include <vector>

namespace orvtest {

/// One gzip member holding bytes; level 0 stores them uncompressed.
inline std::string Gzipped(const std::string &bytes, int level = Z_DEFAULT_COMPRESSION) {
  std::vector<Bytef> out(compressBound(static_cast<uLong>(bytes.size())) + 64);
  z_stream stream{};
  deflateInit2(&stream, level, Z_DEFLATED, 15 + 16, 8, Z_DEFAULT_STRATEGY);
  stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(bytes.data()));
  stream.avail_in = static_cast<uInt>(bytes.size());
  stream.next_out = out.data();
  stream.avail_out = static_cast<uInt>(out.size());
  deflate(&stream, Z_FINISH);
  deflateEnd(&stream);
  return std::string(reinterpret_cast<char *>(out.data()), stream.total_out);
}

class TTemporaryFolder {
public:
  /// prefix names the folder, so that one left behind says whose it was.
  explicit TTemporaryFolder(const std::string &prefix) {
    std::string pattern = (std::filesystem::temp_directory_path() / (prefix + "XXXXXX")).string();
    if (mkdtemp(&pattern[0]) != nullptr)
      path = pattern;
  }
  ~TTemporaryFolder() {
    std::error_code ignored;
    if (!path.empty())
      std::filesystem::remove_all(path, ignored);
  }
  TTemporaryFolder(const TTemporaryFolder &) = delete;
  TTemporaryFolder &operator=(const TTemporaryFolder &) = delete;

  /// Empty when the folder could not be made.
  const std::string &Path() const { return path; }
  std::string PathOf(const std::string &name) const { return path + "/" + name; }

  std::string Write(const std::string &name, const std::string &bytes) const {
    const std::string file = PathOf(name);
    std::ofstream(file, std::ios::binary)
        .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return file;
  }

  /// The bytes gzip compressed by zlib's own file writer.
  std::string WriteGzip(const std::string &name, const std::string &bytes) const {
    const std::string file = PathOf(name);
    gzFile out = gzopen(file.c_str(), "wb");
    if (out != nullptr) {
      if (!bytes.empty())
        gzwrite(out, bytes.data(), static_cast<unsigned>(bytes.size()));
      gzclose(out);
    }
    return file;
  }

private:
  std::string path;
};

} // namespace orvtest

#endif
