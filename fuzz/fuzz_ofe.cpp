// OFE files: whatever the model accepts goes through every variant. Most mutations are sealed again, so that
// they get past the checksums.
#include <orvmesh/mesh_format_transfer.h>

#include <cstring>

#include "embedded/block_format.h"
#include "embedded/checksum.h"
#include "fuzz/scratch.h"
#include "platform/cofedata.h"

using namespace orvmesh::embedded;

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

namespace {

template <class T>
bool load(const std::uint8_t* data, std::size_t size, std::uint64_t at, T& out) {
  if (at > size || size - at < sizeof out) return false;
  std::memcpy(&out, data + at, sizeof out);
  return true;
}

void sealColumn(std::uint8_t* data, std::size_t size, std::uint64_t at, std::uint64_t seed) {
  ColumnRecord column{};
  if (!load(data, size, at, column) || column.count > size) return;
  const std::uint64_t bytes = column.count * valueSize(static_cast<char>(column.type));
  const std::uint64_t whole = bytes + paddingAfter(bytes);
  if (column.offset > size || whole > size - column.offset) return;
  column.hash = checksumOf(data + column.offset, whole, seed);
  std::memcpy(data + at, &column, sizeof column);
}

void seal(std::uint8_t* data, std::size_t size) {
  BlockFileHeader header{};
  if (!load(data, size, 0, header)) return;
  std::uint64_t at = header.directoryOffset;
  for (std::uint32_t b = 0; b < header.blockCount && b < 64; ++b) {
    BlockRecord block{};
    if (!load(data, size, at, block) || block.columnCount > 64) break;
    at += sizeof block;
    for (std::uint32_t c = 0; c < block.columnCount; ++c, at += sizeof(ColumnRecord))
      sealColumn(data, size, at, columnSeed(block.id, c));
  }
  if (header.directoryOffset <= size && header.directoryLength <= size - header.directoryOffset)
    header.directoryHash = checksumOf(data + header.directoryOffset, header.directoryLength, 0);
  std::memcpy(data, &header, sizeof header);
  header.headerHash = checksumOf(data, offsetof(BlockFileHeader, headerHash), 0);
  std::memcpy(data, &header, sizeof header);
}

}  // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize,
                                               unsigned seed) {
  size = LLVMFuzzerMutate(data, size, maxSize);
  if (seed % 8 != 0) seal(data, size);
  return size;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static std::string source = orvmesh::fuzzing::scratchPath("source.ofe");
  static std::string target = orvmesh::fuzzing::scratchPath("target.ofe");
  orvmesh::fuzzing::writeBytes(source, data, size);
  {
    COFEData model;
    if (model.ReadDataBin(source.c_str(), nullptr, 0, false) != 1) return 0;
  }
  COrvMeshFormatTransfer transfer;
  transfer.TransferMesh_OnlyChannel(source.data(), target.data());
  transfer.TransferMesh_OnlyHotRunner(source.data(), target.data());
  transfer.TransferMesh_StreamLineMesh(source.data(), target.data());
  transfer.TransferMesh_OnlyMoldbase(source.data(), target.data());
  transfer.TransferMesh_CombinePI(source.data(), target.data());
  transfer.TransferMesh_CombinePIAndChannel(source.data(), target.data());
  return 0;
}
