// Gives a fuzz target every file of the folders named, without libFuzzer and with any compiler.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int argc, char** argv) {
  int files = 0;
  for (int i = 1; i < argc; ++i) {
    for (const auto& entry : std::filesystem::directory_iterator(argv[i])) {
      std::ifstream in(entry.path(), std::ios::binary);
      const std::string bytes{std::istreambuf_iterator<char>(in), {}};
      std::printf("%s\n", entry.path().c_str());
      (void)std::fflush(stdout);  // the last line names the input that ends the program
      (void)LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
      ++files;
    }
  }
  std::printf("%d files\n", files);
  return files > 0 ? 0 : 1;
}
