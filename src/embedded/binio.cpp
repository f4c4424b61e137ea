#include "platform/binio.h"

#include <sys/mman.h>

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <memory>
#include <new>
#include <span>
#include <type_traits>
#include <utility>
#include <vector>

#include "embedded/block_reader.h"
#include "embedded/block_writer.h"

using orvmesh::embedded::BlockEntry;
using orvmesh::embedded::BlockReader;
using orvmesh::embedded::BlockWriter;

namespace {

// Asks for pages of 2 MiB; a hint only, and of use only where a column spans some of them.
void preferLargePages(void* memory, std::size_t size) {
  constexpr std::size_t kPage = std::size_t{1} << 21;
  void* at = memory;
  std::size_t room = size;
  if (std::align(kPage, kPage, at, room) != nullptr) (void)::madvise(at, room / kPage * kPage, MADV_HUGEPAGE);
}

struct Free {
  void operator()(void* memory) const { std::free(memory); }
};

// Values in place of a mapped file until they are changed, else memory of its own. Copies share nothing that
// can be changed.
template <class T>
class Column {
 public:
  using Value = T;
  Column() = default;
  Column(std::span<const T> values, std::shared_ptr<const void> file)
      : view_(values), file_(std::move(file)) {}
  Column(const Column& other) : view_(other.view_), file_(other.file_) {
    if (other.owned_) own(other.size());
  }
  Column& operator=(const Column& other) {
    if (this != &other) *this = Column(other);
    return *this;
  }
  Column(Column&&) noexcept = default;
  Column& operator=(Column&&) noexcept = default;
  ~Column() = default;

  std::size_t size() const { return view_.size(); }
  const T* data() const { return view_.data(); }
  T* change() {
    if (!owned_) own(size());
    return owned_.get();
  }
  // Keeps values and zeroes new ones.
  void resize(std::size_t size) { own(size); }

 private:
  // Untouched pages of new memory cost nothing until they are written, large ones little when they are.
  void own(std::size_t size) {
    std::unique_ptr<T[], Free> memory(
        static_cast<T*>(std::calloc(std::max<std::size_t>(size, 1), sizeof(T))));
    if (!memory) throw std::bad_alloc();
    preferLargePages(memory.get(), size * sizeof(T));
    std::copy_n(view_.data(), std::min(size, view_.size()), memory.get());
    owned_ = std::move(memory);
    file_.reset();
    view_ = {owned_.get(), size};
  }

  std::span<const T> view_;
  std::shared_ptr<const void> file_;
  std::unique_ptr<T[], Free> owned_;
};

}  // namespace

// The vectors of each type, in the order in which their columns lie in a block.
struct BINIO_BinaryBlock::Vectors {
  std::vector<Column<std::int32_t>> ints;
  std::vector<Column<std::int64_t>> longs;
  std::vector<Column<float>> floats;
  std::vector<Column<double>> doubles;
  std::vector<Column<char>> bytes;

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

// More than any memory holds; allocators differ in how they refuse such a size.
constexpr std::int64_t kMostValues = std::int64_t{1} << 36;

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
    list.clear();
    list.resize(static_cast<std::size_t>(count));
    result = 1;
  });
  return result;
}

int BINIO_BinaryBlock::setVectorSize(char type, int index, std::int64_t size) {
  int result = 0;
  Vectors::forEachType(*vectors_, [&](char listType, auto& list) {
    if (listType != type || !isIn(index, list.size()) || size < 0 || size > kMostValues) return;
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
  ints[static_cast<std::size_t>(index)].change()[position] = value;
  return 1;
}

std::int32_t BINIO_BinaryBlock::getValue(int index, std::int64_t position) const {
  const auto& ints = vectors_->ints;
  if (!isIn(index, ints.size()) || !isIn(position, ints[static_cast<std::size_t>(index)].size())) return 0;
  return ints[static_cast<std::size_t>(index)].data()[position];
}

std::int32_t* BINIO_BinaryBlock::setValues(int index) {
  auto& ints = vectors_->ints;
  if (!isIn(index, ints.size()) || ints[static_cast<std::size_t>(index)].size() == 0) return nullptr;
  return ints[static_cast<std::size_t>(index)].change();
}

const std::int32_t* BINIO_BinaryBlock::getValues(int index) const {
  const auto& ints = vectors_->ints;
  if (!isIn(index, ints.size()) || ints[static_cast<std::size_t>(index)].size() == 0) return nullptr;
  return ints[static_cast<std::size_t>(index)].data();
}

struct BINIO_BinaryFile::Files {
  std::shared_ptr<BlockReader> reader;  // shared with the values that are used in place
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
  auto reader = std::make_shared<BlockReader>();
  if (!reader->open(path)) return 0;
  files_->reader = std::move(reader);
  return 1;
}

int BINIO_BinaryFile::readBlock(long id) {
  if (!files_->reader) return 0;
  BlockReader& reader = *files_->reader;
  const BlockEntry* const block = reader.find(id);
  if (block == nullptr) return 0;
  for (std::size_t i = 0; i < block->columns.size(); ++i)
    if (!reader.verify(*block, i)) return -1;
  readBlock_.destroy();
  BINIO_BinaryBlock::Vectors::forEachType(readBlock_.vectors(), [&](char type, auto& list) {
    for (std::size_t i = 0; i < block->columns.size(); ++i) {
      if (block->columns[i].type != static_cast<std::uint32_t>(type)) continue;
      using Value = typename std::remove_reference_t<decltype(list)>::value_type::Value;
      list.emplace_back(reader.values<Value>(*block, i), files_->reader);
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
      writer.append(values.data(), values.size() * sizeof *values.data());
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
