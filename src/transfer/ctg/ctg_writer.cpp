#include "transfer/ctg/ctg_writer.h"

#include <algorithm>

#include "transfer/ctg/ctg_text.h"
#include "transfer/ctg/element_walk.h"

namespace orvmesh::transfer {
namespace {

constexpr std::size_t kNodeSlots = 27;
constexpr char kEmptySlots[] = " 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0";
static_assert(sizeof kEmptySlots - 1 == 2 * kNodeSlots);

class Writer {
 public:
  Writer(const CtgMesh& mesh, AtomicFile& file) : mesh_(mesh), elements_(mesh.model.elemM), text_(file) {}

  bool write() {
    text_.section("Header", [this] { header(); });
    text_.section("Node", [this] { nodes(); });
    text_.section("Element Node", [this] { elementNodes(); });
    text_.section("Element Property", [this] { elementProperties(); });
    text_.section("Element Face", [this] { elementFaces(); });
    text_.section("Face", [this] { faces(); });
    boundaryNodes();
    boundaryFaces();
    for (const char* empty :
         {"OFE Part Insert Node", "Boundary Element", "Moldbase Sensor Mapping", "Inlet Face", "Outlet Face"})
      text_.section(empty, [] {});
    return text_.flush();
  }

 private:
  void header();
  void nodes();
  void elementNodes();
  void elementProperties();
  void elementFaces();
  void faces();
  void boundaryNodes();
  void boundaryFaces();

  const CtgMesh& mesh_;
  const ElementTable& elements_;
  CtgText text_;
};

void Writer::header() {
  const BoundaryCounts& nodes = mesh_.boundaryNodes.surfaces;
  const BoundaryCounts& faces = mesh_.boundaryFaces.faces;
  text_.line("Version = 1004");
  text_.line("Source = Test.ofe");
  text_.line("SourceID = 0f3c2a71-5b8e-4d26-9a41-c7e09b35d812");
  text_.line("Initial Level = 4");
  text_.line("Plastic Level = 5");
  text_.line("Cool Level = 3");
  text_.line("HT Level = 0");
  text_.line("VP Level = 0");
  text_.line("SE Level = 0");
  text_.line("Element = ", elements_.count());
  text_.line("Node = ", mesh_.nodes.count);
  text_.line("Face = ", mesh_.faces.faceCount);
  text_.line("Plastic Boundary Node = ", nodes.part);
  text_.line("Cool Boundary Node = ", nodes.coolant);
  text_.line("Air Boundary Node = ", nodes.air);
  text_.line("Plastic Boundary Face = ", faces.part);
  text_.line("Cool Boundary Face = ", faces.coolant);
  text_.line("Air Boundary Face = ", faces.air);
  text_.line("OFE Plastic Boundary Face = ", faces.part);
  text_.line("OFE Part Insert Node = 0");
  text_.line("Boundary Element = 0");
  text_.line("Sensor in Moldbase Number = 0");
  text_.line("Inlet Boundary Face = 0");
  text_.line("Outlet Boundary Face = 0");
  text_.line("Part Kernel Veriosn = 0");  // readers know the key in this spelling
}

void Writer::nodes() {
  const NodeTable& nodes = mesh_.model.nodes;
  const double factor = mesh_.model.lengthFactor;
  std::int32_t k = 0;
  for (std::int32_t n = 1; n <= nodes.count(); ++n) {
    if (mesh_.nodes.newNumber[n] == 0) continue;
    // The model's coordinates have the factor in them already; the file has it twice (quirk 29).
    const COFE_Node node = nodes[n];
    text_.line(++k, " = ", node.x * factor, " ", node.y * factor, " ", node.z * factor);
  }
}

void Writer::elementNodes() {
  for (std::int32_t e = 1; e <= elements_.count(); ++e) {
    const auto nodes = elements_.nodes(e);
    const std::size_t used = std::min(nodes.size(), kNodeSlots);
    text_.line(e, " =", [&](char* at) {
      for (std::size_t i = 0; i < used; ++i) {
        *at++ = ' ';
        at = CtgText::put(at, mesh_.nodes.newNumber[nodes[i]]);
      }
      std::memcpy(at, kEmptySlots, sizeof kEmptySlots);
      return at + 2 * (kNodeSlots - used);
    });
  }
}

void Writer::elementProperties() {
  for (std::int32_t e = 1; e <= elements_.count(); ++e) text_.line(e, " = ", elements_.material(e), " 0");
}

void Writer::elementFaces() {
  const std::int32_t* entry = mesh_.faces.entries.get();
  std::int32_t e = 0;
  eachElement(elements_, [&]<int N>(const std::int32_t*) {
    text_.line(++e, " = ", static_cast<std::int32_t>(kFacesOf<N>), [&](char* at) {
      for (std::size_t j = 0; j < kFacesOf<N>; ++j) {
        *at++ = ' ';
        at = CtgText::put(at, entry[j]);
      }
      return at;
    });
    entry += kFacesOf<N>;
  });
}

// Unlike the nodes of elements, those of faces keep their numbers in the model (quirk 30).
void Writer::faces() {
  const std::int32_t* entry = mesh_.faces.entries.get();
  eachElement(elements_, [&]<int N>(const std::int32_t* nodes) {
    eachFaceOf<N>(nodes, [&](const auto& face) {
      const std::int32_t number = *entry++;
      if (number < 0) return;
      text_.line(number, " =", [&](char* at) {
        for (const std::int32_t node : face) {
          *at++ = ' ';
          at = CtgText::put(at, node);
        }
        return std::size(face) == 3 ? CtgText::put(at, " 0") : at;
      });
    });
  });
}

// A node of a boundary that no mold element uses has no new number and is listed as 0 (quirk 31).
void Writer::boundaryNodes() {
  const auto list = [this](const char* name, auto isType, auto number) {
    text_.section(name, [&] {
      const OneBasedArray<std::int32_t>& type = mesh_.boundaryNodes.type;
      std::int32_t k = 0;
      for (std::int32_t n = 1; n <= type.count(); ++n)
        if (isType(type[n])) text_.line(++k, " = ", mesh_.nodes.newNumber[n], " ", number(type[n]));
    });
  };
  const auto zero = [](std::int32_t) { return 0; };
  list(
      "Plastic Boundary Node", [](std::int32_t type) { return type == kPartBoundary; }, zero);
  list(
      "Cool Boundary Node", [](std::int32_t type) { return type >= kFirstCoolantBoundary; },
      [](std::int32_t type) { return type - 2; });
  list(
      "Air Boundary Node", [](std::int32_t type) { return type == kAirBoundary; }, zero);
}

void Writer::boundaryFaces() {
  const auto list = [this](const char* name, auto isType, auto writeLine) {
    text_.section(name, [&] {
      const BoundaryFaces& found = mesh_.boundaryFaces;
      std::int32_t k = 0;
      for (std::size_t i = 0; i < found.face.size(); ++i)
        if (isType(found.type[i])) writeLine(++k, found.face[i], found.type[i]);
    });
  };
  const auto isPart = [](std::int32_t type) { return type == kPartBoundary; };
  const auto partLine = [this](std::int32_t k, std::int32_t face, std::int32_t) {
    text_.line(k, " = ", face, " 1 ", face);
  };
  list("Plastic Boundary Face", isPart, partLine);
  list(
      "Cool Boundary Face", [](std::int32_t type) { return type >= kFirstCoolantBoundary; },
      [this](std::int32_t k, std::int32_t face, std::int32_t type) {
        text_.line(k, " = ", face, " ", type - 2);
      });
  list(
      "Air Boundary Face", [](std::int32_t type) { return type == kAirBoundary; },
      [this](std::int32_t k, std::int32_t face, std::int32_t) { text_.line(k, " = ", face, " 0"); });
  list("OFE Plastic Boundary Face", isPart, partLine);
}

}  // namespace

std::string writeCtg(const CtgMesh& mesh, const std::string& path) {
  AtomicFile file;
  if (file.open(path) && Writer(mesh, file).write() && file.commit()) return {};
  return file.errorText();
}

}  // namespace orvmesh::transfer
