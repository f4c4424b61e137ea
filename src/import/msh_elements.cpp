#include <limits>

#include "import/msh_sections.h"

namespace orvmesh::importing {
namespace {

const char* const kElementTag = "an element tag";
const char* const kNodeTag = "a node tag";

// Appends elements to the mesh, run by run.
class ElementSink {
 public:
  explicit ElementSink(MshMesh& mesh) : mesh_(mesh) {}

  // What the following elements are. `room` of them will come; their corners go to the result.
  template <class Source>
  std::int32_t* begin(Source& in, const ElementType& type, std::int32_t entity, std::int32_t group,
                      std::uint64_t room) {
    if ((total_ += room) > kMaxEntities) in.fail("more than 2147483647 elements");
    if (mesh_.runs.empty() || current_.type != &type || current_.entity != entity || current_.group != group)
      open_ = false;
    current_.type = &type;
    current_.entity = entity;
    current_.group = group;
    if (!type.taken()) return nullptr;
    const auto shape = static_cast<std::size_t>(type.shape);
    const auto corners = static_cast<std::size_t>(cornersOf(type.shape));
    auto& column = mesh_.corners[shape];
    const auto before = column.size();
    current_.first = static_cast<std::uint32_t>(before / corners);
    column.resize(before + room * corners);
    return column.data() + before;
  }
  void add(std::uint64_t tag) {
    if (open_ && tag == nextTag_) {
      ++mesh_.runs.back().count;
    } else {
      openRun(tag);
    }
    ++current_.first;
    ++nextTag_;
  }

 private:
  void openRun(std::uint64_t tag) {
    current_.firstTag = tag;
    current_.count = 1;
    mesh_.runs.push_back(current_);
    nextTag_ = tag;
    open_ = true;
  }

  MshMesh& mesh_;
  ElementRun current_{};
  std::uint64_t nextTag_ = 0;
  std::uint64_t total_ = 0;
  bool open_ = false;
};

template <class Source>
const ElementType& typeOf(Source& in, std::int32_t code) {
  const auto* type = elementType(code);
  if (type == nullptr) in.fail("element type " + std::to_string(code) + " is unknown");
  return *type;
}

template <class Source>
[[noreturn]] void failMissingNode(Source& in, std::uint64_t element, const std::string& node) {
  in.fail("element " + std::to_string(element) + " names node " + node + ", which $Nodes does not have");
}

// Elements of a type with this many corners to keep; their node numbers go to `out`.
template <int Corners, class Source>
void readElements41(Source& in, const NodeTags& tags, ElementSink& sink, const ElementType& type,
                    std::uint64_t elements, std::int32_t* out) {
  const auto rest = static_cast<std::uint64_t>(type.nodes - Corners);
  for (std::uint64_t k = 0; k < elements; ++k) {
    std::uint64_t tagAndNodes[1 + Corners];
    in.sizes(tagAndNodes, kElementTag);
    sink.add(tagAndNodes[0]);
    for (int c = 1; c <= Corners; ++c) {
      const auto number = tags.numberOf(tagAndNodes[c]);
      if (number == 0) [[unlikely]]
        failMissingNode(in, tagAndNodes[0], std::to_string(tagAndNodes[c]));
      *out++ = number;
    }
    if (rest > 0) in.skipSizes(rest, kNodeTag);
  }
}

// Those of types that are not taken keep no corners.
template <class Source>
void readElements41(Source& in, const NodeTags& tags, ElementSink& sink, const ElementType& type,
                    std::uint64_t elements, std::int32_t* out) {
  using Read =
      void (*)(Source&, const NodeTags&, ElementSink&, const ElementType&, std::uint64_t, std::int32_t*);
  static constexpr Read kByCorners[] = {readElements41<0, Source>, readElements41<1, Source>,
                                        readElements41<2, Source>, readElements41<3, Source>,
                                        readElements41<4, Source>, readElements41<5, Source>,
                                        readElements41<6, Source>, nullptr,
                                        readElements41<8, Source>};
  kByCorners[type.taken() ? cornersOf(type.shape) : 0](in, tags, sink, type, elements, out);
}

template <class Source>
void readBlock41(Source& in, MshMesh& mesh, ElementSink& sink) {
  const auto dimension = in.int32("an entity dimension");
  const auto entity = in.int32("an entity tag");
  const auto& type = typeOf(in, in.int32("an element type"));
  if (dimension != dimensionOf(type.shape))
    in.fail("a block of dimension " + std::to_string(dimension) + " holds elements of type " +
            std::to_string(type.code) + " (" + nameOf(type.shape) + ")");
  const auto elements = in.size("a number of elements");
  in.require(elements, 0, 1 + static_cast<std::uint64_t>(type.nodes), 0, "elements");
  if (elements == 0) return;
  auto* out = sink.begin(in, type, entity, 0, elements);
  readElements41(in, mesh.tags, sink, type, elements, out);
}

template <class Source>
void readElements41(Source& in, MshMesh& mesh) {
  const auto blocks = in.size("a number of entity blocks");
  const auto announced = in.size("a number of elements");
  in.size("the smallest element tag");
  in.size("the largest element tag");
  ElementSink sink(mesh);
  for (std::uint64_t k = 0; k < blocks; ++k) readBlock41(in, mesh, sink);
  std::uint64_t found = 0;
  for (const auto& run : mesh.runs) found += run.count;
  if (found != announced)
    in.fail("$Elements announces " + std::to_string(announced) + " elements and holds " +
            std::to_string(found));
}

// Tags and nodes of one element; the first tag is its physical group, the second its entity.
template <class Source>
void readElement22(Source& in, MshMesh& mesh, ElementSink& sink, std::int32_t tag, const ElementType& type,
                   std::int32_t tagCount) {
  if (tag < 0) in.fail("element tag " + std::to_string(tag) + " is negative");
  std::int32_t groupAndEntity[2] = {0, 0};
  for (std::int32_t k = 0; k < tagCount; ++k) {
    const auto value = in.int32("a tag of an element");
    if (k < 2) groupAndEntity[k] = value;
  }
  if (groupAndEntity[0] < 0) in.fail("physical group " + std::to_string(groupAndEntity[0]) + " is negative");
  auto* out = sink.begin(in, type, groupAndEntity[1], groupAndEntity[0], 1);
  sink.add(static_cast<std::uint64_t>(tag));
  const int corners = out == nullptr ? 0 : cornersOf(type.shape);
  for (int k = 0; k < type.nodes; ++k) {
    const auto node = in.int32(kNodeTag);
    if (k >= corners) continue;
    const auto number = node < 1 ? 0 : mesh.tags.numberOf(static_cast<std::uint64_t>(node));
    if (number == 0) failMissingNode(in, static_cast<std::uint64_t>(tag), std::to_string(node));
    *out++ = number;
  }
}

void readElements22(TextSource& in, MshMesh& mesh) {
  const auto elements = in.size("a number of elements");
  constexpr int kFewestValues = 4;
  in.require(elements, kFewestValues, 0, 0, "elements");
  ElementSink sink(mesh);
  for (std::uint64_t k = 0; k < elements; ++k) {
    const auto tag = in.int32(kElementTag);
    const auto& type = typeOf(in, in.int32("an element type"));
    readElement22(in, mesh, sink, tag, type, in.int32("a number of tags"));
  }
}

// Binary elements come in batches of one type and one number of tags.
void readElements22(BinarySource& in, MshMesh& mesh) {
  const auto elements = readCount22(in, "a number of elements");
  ElementSink sink(mesh);
  for (std::uint64_t done = 0; done < elements;) {
    const auto& type = typeOf(in, in.int32("an element type"));
    const auto batch = in.int32("a number of elements");
    const auto tagCount = in.int32("a number of tags");
    if (batch < 1 || static_cast<std::uint64_t>(batch) > elements - done || tagCount < 0)
      in.fail("a batch of " + std::to_string(batch) + " elements with " + std::to_string(tagCount) +
              " tags; " + std::to_string(elements - done) + " elements are left");
    for (std::int32_t k = 0; k < batch; ++k) {
      const auto tag = in.int32(kElementTag);
      readElement22(in, mesh, sink, tag, type, tagCount);
    }
    done += static_cast<std::uint64_t>(batch);
  }
}

}  // namespace

template <class Source>
void readElements(Source& in, MshReading& reading) {
  if (reading.version == MshVersion::v41) {
    readElements41(in, reading.mesh);
  } else {
    readElements22(in, reading.mesh);
  }
}

template void readElements(TextSource&, MshReading&);
template void readElements(BinarySource&, MshReading&);

}  // namespace orvmesh::importing
