#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "embedded/ofe_reader.h"
#include "platform/mesh_records.h"

namespace orvmesh::embedded {

// Fills a mesh model from an open file: large columns in place, small blocks as records. Every number that a
// later pass may use as an index is proven first; load() stops at the first one that is out of its range.
class ModelLoader {
 public:
  // The model's spans look into the reader's file.
  ModelLoader(OfeReader& file, MeshModel& model) : file_(file), model_(model) {}

  bool load();
  // Only header, nodes, surface elements, and elements of part and channels; the rest stays empty and unread.
  bool loadContactSides();
  const std::string& errorText() const { return error_; }
  const std::vector<std::string>& warnings() const { return warnings_; }

 private:
  using Step = bool (ModelLoader::*)();
  bool run(std::span<const Step> steps);
  bool fail(std::string text);
  // "block entry 17: field is value (legal: legal)"; entries are counted from 0 here and from 1 in the text.
  bool violation(Block block, std::size_t entry, const std::string& field, const std::string& value,
                 const std::string& legal);
  bool violation(Block block, std::size_t entry, const std::string& field, std::int64_t value,
                 std::int64_t first, std::int64_t last);
  // All values finite, `names` being the names of an entry's values.
  bool allFinite(Block block, std::span<const float> values, std::span<const char* const> names);

  bool loadHeader();
  bool loadNodes();
  bool loadAllElements();
  bool loadPlastic() { return loadElements(Block::ElementsPlastic, model_.elemP); }
  bool loadChannels() { return loadElements(Block::ElementsCoolChannel, model_.elemC); }
  bool loadElements(Block block, ElementTable& table);
  bool checkConnectivity(Block block, const ElementTable& table);
  void listMoldMaterials();
  bool loadSurfaces();
  void warnOfForeignElements();
  void warnOfOutsiders(Block block, std::size_t count, std::size_t first, std::int32_t element);
  bool loadConditions();
  bool loadAllBad();
  bool loadBad(Block block, BadElementTable& table, std::int32_t elementCount);

  bool loadDiameters();
  bool loadLines();
  bool loadLayout();
  // Adds to coarse the values that the model cannot hold to 0.1 %.
  bool loadBeam(std::size_t entry, const float values[13], const std::int32_t codes[7], std::int32_t points,
                std::int32_t& coarse);
  bool loadSensors();
  bool loadAllGeometry();
  bool loadGeometry(Block block, Geometry& geometry);
  bool loadGeometryFace(Block block, std::size_t entry, const std::int32_t nodes[4], std::int32_t lastNode,
                        GeometryFace& face);
  bool loadLists();
  bool loadNames();
  bool loadNameEntry(const BlockView& view, std::int32_t entry, std::int64_t& nextText);
  bool loadAllLayers();
  bool loadLayers(Block block, std::vector<LayerMaterial>& layers, int width);
  bool loadDirection();

  OfeReader& file_;
  MeshModel& model_;
  std::vector<std::string> warnings_;
  std::string error_;
};

}  // namespace orvmesh::embedded
