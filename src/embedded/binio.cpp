#include "platform/binio.h"

#include <algorithm>
#include <exception>
#include <type_traits>
#include <vector>

#include "embedded/block_reader.h"
#include "embedded/block_writer.h"

using orvmesh::embedded::BlockEntry;
using orvmesh::embedded::BlockReader;
using orvmesh::embedded::BlockWriter;

// The vectors of each type, in the order in which their columns lie in a block.
struct BINIO_BinaryBlock::Vectors {
  std::vector<std::vector<std::int32_t>> ints;
  std::vector<std::vector<std::int64_t>> longs;
  std::vector<std::vector<float>> floats;
  std::vector<std::vector<double>> doubles;
  std::vector<std::vector<char>> bytes;

  // Calls visit(type, list) for each type.
  template <class Self, class Visit>
  static void forEachType(Self& self, Visit visit) {
    visit('I', self.ints);
    visit('L', self.longs);
    visit('F', self.floats);
    visit('D', self.doubles);
    visit('C', self.bytes);
  }
  std::size_t count() const {
    return ints.size() + longs.size() + floats.size() + doubles.size() + bytes.size();
  }
};

namespace {

bool isIn(std::int64_t index, std::size_t count) {
  return index >= 0 && static_cast<std::uint64_t>(index) < count;
}

}  // namespace

BINIO_BinaryBlock::BINIO_BinaryBlock() : vectors_(std::make_unique<Vectors>()) {}
BINIO_BinaryBlock::~BINIO_BinaryBlock() = default;
BINIO_BinaryBlock::BINIO_BinaryBlock(const BINIO_BinaryBlock& other)
    : vectors_(std::make_unique<Vectors>(*other.vectors_)) {}
BINIO_BinaryBlock& BINIO_BinaryBlock::operator=(const BINIO_BinaryBlock& other) {
  if (this != &other) *vectors_ = *other.vectors_;
  return *this;
}

void BINIO_BinaryBlock::destroy() { *vectors_ = {}; }

int BINIO_BinaryBlock::setVectorCount(char type, int count) {
  int result = 0;
  Vectors::forEachType(*vectors_, [&](char listType, auto& list) {
    if (listType != type || count < 0 || count > static_cast<int>(orvmesh::embedded::kMaxColumns)) return;
    list.assign(static_cast<std::size_t>(count), {});
    result = 1;
  });
  return result;
}

int BINIO_BinaryBlock::setVectorSize(char type, int index, std::int64_t size) {
  int result = 0;
  Vectors::forEachType(*vectors_, [&](char listType, auto& list) {
    if (listType != type || !isIn(index, list.size()) || size < 0) return;
    try {
      list[static_cast<std::size_t>(index)].resize(static_cast<std::size_t>(size));
      result = 1;
    } catch (const std::exception&) {  // more than the memory holds
    }
  });
  return result;
}

std::int64_t BINIO_BinaryBlock::getVectorSize(char type, int index) const {
  std::int64_t result = -1;
  Vectors::forEachType(*vectors_, [&](char listType, const auto& list) {
    if (listType == type && isIn(index, list.size()))
      result = static_cast<std::int64_t>(list[static_cast<std::size_t>(index)].size());
  });
  return result;
}

int BINIO_BinaryBlock::setValue(int index, std::int64_t position, std::int32_t value) {
  auto& ints = vectors_->ints;
  if (!isIn(index, ints.size()) || !isIn(position, ints[static_cast<std::size_t>(index)].size())) return 0;
  ints[static_cast<std::size_t>(index)][static_cast<std::size_t>(position)] = value;
  return 1;
}

std::int32_t BINIO_BinaryBlock::getValue(int index, std::int64_t position) const {
  const auto& ints = vectors_->ints;
  if (!isIn(index, ints.size()) || !isIn(position, ints[static_cast<std::size_t>(index)].size())) return 0;
  return ints[static_cast<std::size_t>(index)][static_cast<std::size_t>(position)];
}

struct BINIO_BinaryFile::Files {
  std::unique_ptr<BlockReader> reader;
  std::unique_ptr<BlockWriter> writer;
  std::vector<long> written;
};

BINIO_BinaryFile::BINIO_BinaryFile() : files_(std::make_shared<Files>()) {}
BINIO_BinaryFile::~BINIO_BinaryFile() = default;
BINIO_BinaryFile::BINIO_BinaryFile(const BINIO_BinaryFile&) = default;
BINIO_BinaryFile& BINIO_BinaryFile::operator=(const BINIO_BinaryFile&) = default;

BINIO_BinaryBlock& BINIO_BinaryFile::currentBlock() { return readBlock_; }

int BINIO_BinaryFile::beginReading(const char* path, int) {
  if (path == nullptr || files_->reader) return 0;
  auto reader = std::make_unique<BlockReader>();
  if (!reader->open(path)) return 0;
  files_->reader = std::move(reader);
  return 1;
}

int BINIO_BinaryFile::readBlock(long id) {
  if (!files_->reader) return 0;
  BlockReader& reader = *files_->reader;
  const BlockEntry* const block = reader.find(id);
  if (block == nullptr) return 0;
  readBlock_.destroy();
  for (std::size_t i = 0; i < block->columns.size(); ++i)
    if (!reader.verify(*block, i)) return -1;
  BINIO_BinaryBlock::Vectors::forEachType(readBlock_.vectors(), [&](char type, auto& list) {
    for (std::size_t i = 0; i < block->columns.size(); ++i) {
      if (block->columns[i].type != static_cast<std::uint32_t>(type)) continue;
      using Value = typename std::remove_reference_t<decltype(list)>::value_type::value_type;
      const auto values = reader.values<Value>(*block, i);
      list.emplace_back(values.begin(), values.end());
    }
  });
  return 1;
}

int BINIO_BinaryFile::endReading() {
  const bool wasOpen = files_->reader != nullptr;
  files_->reader.reset();
  return wasOpen ? 1 : 0;
}

int BINIO_BinaryFile::beginWriting(const char* path) {
  if (path == nullptr || files_->writer) return 0;
  auto writer = std::make_unique<BlockWriter>();
  if (!writer->open(path)) return 0;
  files_->writer = std::move(writer);
  files_->written.clear();
  return 1;
}

int BINIO_BinaryFile::writeBlock(long id) {
  if (!files_->writer) return 0;
  auto& written = files_->written;
  if (std::find(written.begin(), written.end(), id) != written.end() ||
      readBlock_.vectors().count() > orvmesh::embedded::kMaxColumns)
    return 0;
  written.push_back(id);
  BlockWriter& writer = *files_->writer;
  writer.beginBlock(id);
  BINIO_BinaryBlock::Vectors::forEachType(readBlock_.vectors(), [&writer](char type, const auto& list) {
    for (const auto& values : list) {
      writer.beginColumn(type);
      writer.append(values.data(), values.size() * sizeof values[0]);
    }
  });
  writer.endBlock();
  return writer.errorText().empty() ? 1 : 0;
}

int BINIO_BinaryFile::endWriting() {
  if (!files_->writer) return 0;
  const bool complete = files_->writer->commit();
  files_->writer.reset();
  return complete ? 1 : 0;
}
