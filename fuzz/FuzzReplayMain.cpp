// Stands in for libFuzzer where the fuzz targets are built without it: runs
// the target once on every file named on the command line, or found in a
// directory named there, so that ctest replays the corpus under the
// sanitizers of an ordinary build.
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace {

void Replay(const std::filesystem::path &file) {
  std::ifstream stream(file, std::ios::binary);
  const std::vector<char> bytes((std::istreambuf_iterator<char>(stream)),
                                std::istreambuf_iterator<char>());
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(bytes.data()), bytes.size());
}

} // namespace

int main(int argc, char **argv) {
  std::size_t replayed = 0;
  for (int i = 1; i < argc; ++i) {
    const std::filesystem::path path(argv[i]);
    if (std::filesystem::is_directory(path)) {
      for (const auto &entry : std::filesystem::directory_iterator(path)) {
        if (entry.is_regular_file()) {
          Replay(entry.path());
          ++replayed;
        }
      }
    } else {
      Replay(path);
      ++replayed;
    }
  }
  std::cout << "Replayed " << replayed << " inputs\n";
  return replayed == 0 ? 1 : 0;
}
