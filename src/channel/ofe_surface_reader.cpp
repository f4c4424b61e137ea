#include "channel/ofe_surface_reader.h"

namespace orvmesh::channel {

void FileNodes::addPiece() {
  pieces_.push_back(std::make_unique_for_overwrite<float[]>(3 * kPieceNodes));
  next_ = pieces_.back().get();
  end_ = next_ + 3 * kPieceNodes;
}

int OfeSurfaceReader::open() {
  const int result = file_.beginReading(path_.empty() ? nullptr : path_.c_str(), nullptr, 0);
  tell(console_.progress, "ofeReader return ", result);
  if (result <= 0) refuse();
  const float factor = file_.header.floatField(m_HEADER_ScaleFactor);
  scale_ = factor == 0 ? 1 : factor;
  return result;
}

int OfeSurfaceReader::close() {
  const bool isDamaged = !file_.errorText().empty();
  if (isDamaged) refuse();
  file_.endReading();
  return isDamaged ? 0 : 1;
}

void OfeSurfaceReader::refuse() {
  error_ = (path_.empty() ? "no path" : path_) + ": " + file_.errorText();
  tell(console_.errors, " can not open mesh file at :", path_);
}

FileNodes OfeSurfaceReader::readNodes() {
  FileNodes nodes;
  float x = 0, y = 0, z = 0;
  while (file_.readNodeBlockEntry(x, y, z) >= 0) nodes.append(x * scale_, y * scale_, z * scale_);
  return nodes;
}

bool ChannelFace::read(OFEIO_Manipulator& file) {
  int element = 0;
  int tag = 0;
  while (file.readElementSurfaceBlockEntry(nodes, interfaceId, surfaceCode, endCode, group, element, tag) >=
         0) {
    ++entriesRead;
    if (interfaceId != kWall && interfaceId != kEnd) continue;
    if (nodes[3] == 0) nodes[3] = nodes[2];
    return true;
  }
  return false;
}

void FaceCounts::tellExcess(const Console& console) const {
  tell(console.errors, "Error! count_CCSurfElmt(", total(), ") > NTotSurfElmt");
}

void FaceCounts::tellProgress(const Console& console) const {
  tell(console.progress, "m_NTotCCSurfElmt=", total());
  tell(console.progress, "Moldbase to coolant channel interface(ID=3):");
  tell(console.progress, "We got ", walls, " faces in [Element Surface].");
  tell(console.progress, "coolant channel ends and hoses(ID=4):");
  tell(console.progress, "We got ", ends, " faces in [Element Surface].");
}

}  // namespace orvmesh::channel
