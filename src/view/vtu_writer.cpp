#include "view/vtu_writer.h"

#include <bit>
#include <stdexcept>

#include "base/failure.h"

namespace orvmesh::view {
namespace {

static_assert(std::endian::native == std::endian::little, "the files say LittleEndian");

struct TypeText {
  const char* name;
  std::uint64_t size;
};
constexpr TypeText kTypes[] = {{"Int8", 1},  {"UInt8", 1},   {"Int32", 4},  {"UInt32", 4},
                               {"Int64", 8}, {"Float32", 4}, {"Float64", 8}};

constexpr const TypeText& textOf(VtuType type) { return kTypes[static_cast<std::size_t>(type)]; }

// Each array's bytes follow an eight-byte count of them.
class XmlHead {
 public:
  explicit XmlHead(const VtuGrid& grid) {
    text_ =
        "<?xml version=\"1.0\"?>\n"
        "<VTKFile type=\"UnstructuredGrid\" version=\"1.0\" byte_order=\"LittleEndian\" "
        "header_type=\"UInt64\">\n<UnstructuredGrid>\n<Piece NumberOfPoints=\"" +
        std::to_string(grid.points) + "\" NumberOfCells=\"" + std::to_string(grid.cells) + "\">\n";
    addSection("PointData", grid.pointData);
    addSection("CellData", grid.cellData);
    addSection("Points", grid.coordinates);
    addSection("Cells", grid.topology);
    text_ += "</Piece>\n</UnstructuredGrid>\n<AppendedData encoding=\"raw\">\n_";
  }
  const std::string& text() const { return text_; }

 private:
  void addSection(const std::string& name, const std::vector<VtuArray>& arrays) {
    text_ += "<" + name + ">\n";
    for (const VtuArray& array : arrays) {
      text_ += std::string("<DataArray type=\"") + textOf(array.type).name + "\" Name=\"" + array.name +
               "\" NumberOfComponents=\"" + std::to_string(array.components) +
               "\" format=\"appended\" offset=\"" + std::to_string(offset_) + "\"/>\n";
      offset_ += sizeof(std::uint64_t) + array.bytes();
    }
    text_ += "</" + name + ">\n";
  }

  std::string text_;
  std::uint64_t offset_ = 0;
};

void writeArrays(VtuSink& sink, const std::vector<VtuArray>& arrays) {
  for (const VtuArray& array : arrays) {
    sink.put(array.bytes());
    const std::uint64_t start = sink.written();
    array.write(sink);
    if (sink.written() - start != array.bytes())
      throw std::logic_error(std::string("array ") + array.name + " has another size than announced");
  }
}

}  // namespace

std::uint64_t VtuArray::bytes() const {
  return tuples * static_cast<std::uint64_t>(components) * textOf(type).size;
}

void VtuSink::write(const void* bytes, std::size_t size) {
  if (!file_.append(bytes, size)) throw Failure(path_, file_.errorText());
}

void VtuSink::raw(std::span<const std::byte> bytes) {
  if (bytes.empty()) return;
  const bool isLarge = bytes.size() > buffer_.size() / 4;
  if (isLarge || used_ + bytes.size() > buffer_.size()) flush();
  if (isLarge) return write(bytes.data(), bytes.size());
  std::memcpy(buffer_.data() + used_, bytes.data(), bytes.size());
  used_ += bytes.size();
}

void VtuSink::flush() {
  write(buffer_.data(), used_);
  used_ = 0;
}

void writeVtu(const VtuGrid& grid, AtomicFile& file, const std::string& path) {
  VtuSink sink(file, path);
  sink.text(XmlHead(grid).text());
  for (const auto* arrays : {&grid.pointData, &grid.cellData, &grid.coordinates, &grid.topology})
    writeArrays(sink, *arrays);
  sink.text("\n</AppendedData>\n</VTKFile>\n");
  sink.flush();
}

}  // namespace orvmesh::view
