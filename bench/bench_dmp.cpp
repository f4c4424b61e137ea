// Ten million node map entries in both forms: the block form written and read back against a bare copy of the
// file, the text form against fprintf and fscanf of the same lines.
#include <orvmesh/dmpio_manipulator.h>

#include <cstdio>
#include <cstdlib>
#include <memory>

#include "files.h"
#include "peer.h"

namespace {

using namespace orvmesh::bench;

constexpr int kEntries = 10'000'000;
constexpr int kText = 1023;
constexpr int kBlock = 2004;

int targetOf(int i) { return static_cast<int>(2654435761U * static_cast<unsigned>(i) >> 8U); }

void require(bool good) {
  if (!good) std::abort();
}

void writeDump(const std::string& path, int version) {
  DMPIO_Manipulator_C dump;
  dump.m_HEADER_NNodeMap = kEntries;
  require(dump.beginWriting(path.c_str(), version) == 1);
  for (int i = 0; i < kEntries; ++i) dump.writeNodeMapBlockEntry(i + 1, targetOf(i));
  require(dump.endWriting() == 1);
}

void readDump(const std::string& path) {
  DMPIO_Manipulator_C dump;
  require(dump.beginReading(path.c_str(), nullptr) == 1);
  int entries = 0;
  int last = 0;
  for (int first = 0, second = 0; dump.readNodeMapBlockEntry(first, second) >= 0; ++entries) last = second;
  require(entries == kEntries && last == targetOf(kEntries - 1));
}

using Stream = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

void writeLines(const std::string& path) {
  const Stream out(std::fopen(path.c_str(), "w"), &std::fclose);
  require(out != nullptr);
  for (int i = 0; i < kEntries; ++i) require(std::fprintf(out.get(), "%d %d\n", i + 1, targetOf(i)) > 0);
}

void readLines(const std::string& path) {
  const Stream in(std::fopen(path.c_str(), "r"), &std::fclose);
  require(in != nullptr);
  int first = 0;
  int second = 0;
  int entries = 0;
  while (std::fscanf(in.get(), "%d %d", &first, &second) == 2) ++entries;  // NOLINT(cert-err34-c)
  require(entries == kEntries && second == targetOf(kEntries - 1));
}

void blockForm(benchmark::State& state) {
  const Folder folder;
  const std::string path = folder.file("map.dmp");
  const std::string copy = folder.file("copy.dmp");
  writeDump(path, kBlock);
  const auto job = [&] {
    writeDump(path, kBlock);
    readDump(path);
  };
  compare(state, job, [&] { copyFile(path, copy); });
}
BENCHMARK(blockForm)->Iterations(1)->Unit(benchmark::kMillisecond);

void textForm(benchmark::State& state) {
  const Folder folder;
  const std::string path = folder.file("map.dmp");
  const std::string lines = folder.file("lines");
  const auto job = [&] {
    writeDump(path, kText);
    readDump(path);
  };
  const auto peer = [&] {
    writeLines(lines);
    readLines(lines);
  };
  compare(state, job, peer);
}
BENCHMARK(textForm)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
