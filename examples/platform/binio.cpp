// Block files on disk, since their readers look at the first byte themselves: "0", then per block its id and,
// for each type, the vectors with their sizes.
#include "platform/binio.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#include "base/atomic_file.h"

namespace {

constexpr char kTypes[] = {'I', 'L', 'F', 'D', 'C'};
constexpr std::size_t kSizes[] = {4, 8, 4, 8, 1};

std::size_t placeOf(char type) {
  return static_cast<std::size_t>(std::find(kTypes, kTypes + 5, type) - kTypes);
}

}  // namespace

// Bytes of every vector, by type.
struct BINIO_BinaryBlock::Vectors {
  std::array<std::vector<std::vector<char>>, 5> bytes;

  std::vector<char>* find(char type, int index) {
    const std::size_t place = placeOf(type);
    if (place == 5 || index < 0 || static_cast<std::size_t>(index) >= bytes[place].size()) return nullptr;
    return &bytes[place][static_cast<std::size_t>(index)];
  }
};

BINIO_BinaryBlock::BINIO_BinaryBlock() : vectors_(std::make_unique<Vectors>()) {}
BINIO_BinaryBlock::~BINIO_BinaryBlock() = default;
BINIO_BinaryBlock::BINIO_BinaryBlock(const BINIO_BinaryBlock& other)
    : vectors_(std::make_unique<Vectors>(*other.vectors_)) {}
BINIO_BinaryBlock& BINIO_BinaryBlock::operator=(const BINIO_BinaryBlock& other) {
  *vectors_ = Vectors(*other.vectors_);
  return *this;
}

void BINIO_BinaryBlock::destroy() { *vectors_ = {}; }

int BINIO_BinaryBlock::setVectorCount(char type, int count) {
  const std::size_t place = placeOf(type);
  if (place == 5 || count < 0) return 0;
  vectors_->bytes[place].assign(static_cast<std::size_t>(count), {});
  return 1;
}
int BINIO_BinaryBlock::setVectorSize(char type, int index, std::int64_t size) {
  auto* const bytes = vectors_->find(type, index);
  if (bytes == nullptr || size < 0 || size > PTRDIFF_MAX / 8) return 0;
  bytes->resize(static_cast<std::size_t>(size) * kSizes[placeOf(type)]);
  return 1;
}
std::int64_t BINIO_BinaryBlock::getVectorSize(char type, int index) const {
  const auto* const bytes = vectors_->find(type, index);
  return bytes == nullptr ? -1 : static_cast<std::int64_t>(bytes->size() / kSizes[placeOf(type)]);
}
std::int32_t* BINIO_BinaryBlock::setValues(int index) {
  auto* const bytes = vectors_->find('I', index);
  return bytes == nullptr || bytes->empty() ? nullptr : reinterpret_cast<std::int32_t*>(bytes->data());
}
const std::int32_t* BINIO_BinaryBlock::getValues(int index) const {
  return const_cast<BINIO_BinaryBlock*>(this)->setValues(index);
}
int BINIO_BinaryBlock::setValue(int index, std::int64_t position, std::int32_t value) {
  if (position < 0 || position >= getVectorSize('I', index)) return 0;
  setValues(index)[position] = value;
  return 1;
}
std::int32_t BINIO_BinaryBlock::getValue(int index, std::int64_t position) const {
  return position < 0 || position >= getVectorSize('I', index) ? 0 : getValues(index)[position];
}

struct BINIO_BinaryFile::Files {
  bool isReading = false;
  std::map<std::int64_t, BINIO_BinaryBlock::Vectors> read;
  orvmesh::AtomicFile target;
  std::map<std::int64_t, bool> written;

  // Numbers stand as eight bytes. False at the first thing that is not as the writer left it.
  bool parse(const std::string& file) {
    std::size_t at = 1;
    const auto number = [&](std::int64_t& out) {
      if (file.size() - at < sizeof out) return false;
      std::memcpy(&out, file.data() + at, sizeof out);
      at += sizeof out;
      return true;
    };
    if (file.empty() || file[0] != '0') return false;
    while (at < file.size()) {
      std::int64_t id = 0, count = 0, size = 0;
      if (!number(id) || read.contains(id)) return false;
      for (std::size_t place = 0; place < 5; ++place) {
        if (!number(count) || count < 0) return false;
        for (auto& vectors = read[id].bytes[place]; count > 0; --count) {
          if (!number(size) || size < 0 || static_cast<std::size_t>(size) > file.size() - at) return false;
          if (static_cast<std::size_t>(size) % kSizes[place] != 0) return false;
          vectors.emplace_back(&file[at], &file[at] + size);
          at += static_cast<std::size_t>(size);
        }
      }
    }
    return true;
  }
};

BINIO_BinaryFile::BINIO_BinaryFile() : files_(std::make_shared<Files>()) {}
BINIO_BinaryFile::~BINIO_BinaryFile() = default;
BINIO_BinaryFile::BINIO_BinaryFile(const BINIO_BinaryFile&) = default;
BINIO_BinaryFile& BINIO_BinaryFile::operator=(const BINIO_BinaryFile&) = default;
BINIO_BinaryBlock& BINIO_BinaryFile::currentBlock() { return readBlock_; }

int BINIO_BinaryFile::beginReading(const char* path, int) {
  if (path == nullptr || files_->isReading) return 0;
  std::ifstream in(path, std::ios::binary);
  files_->read.clear();
  files_->isReading = in && files_->parse(std::string(std::istreambuf_iterator<char>(in), {}));
  return files_->isReading ? 1 : 0;
}
int BINIO_BinaryFile::readBlock(long id) {
  const auto block = files_->read.find(id);
  if (!files_->isReading || block == files_->read.end()) return 0;
  readBlock_.vectors() = block->second;
  return 1;
}
int BINIO_BinaryFile::endReading() {
  const bool wasReading = files_->isReading;
  files_->isReading = false;
  return wasReading ? 1 : 0;
}

int BINIO_BinaryFile::beginWriting(const char* path) {
  if (path == nullptr || files_->target.isOpen()) return 0;
  files_->written.clear();
  return files_->target.open(path) && files_->target.append("0", 1) ? 1 : 0;
}
int BINIO_BinaryFile::writeBlock(long id) {
  if (!files_->target.isOpen() || !files_->written.emplace(id, true).second) return 0;
  bool written = true;
  const auto put = [&](std::int64_t number) {
    written = written && files_->target.append(&number, sizeof number);
  };
  put(id);
  for (const auto& vectors : readBlock_.vectors().bytes) {
    put(static_cast<std::int64_t>(vectors.size()));
    for (const auto& bytes : vectors) {
      put(static_cast<std::int64_t>(bytes.size()));
      written = written && files_->target.append(bytes.data(), bytes.size());
    }
  }
  return written ? 1 : 0;
}
int BINIO_BinaryFile::endWriting() { return files_->target.isOpen() && files_->target.commit() ? 1 : 0; }
