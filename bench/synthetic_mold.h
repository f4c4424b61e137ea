#pragma once

#include <cstdint>
#include <string>

#include "platform/ofeio.h"

namespace orvmesh::bench {

// A block of cells^3 cubes of six tetrahedra each: a slab of part, a slab of insert on it, mold around, a
// channel along one edge. No surfaces but the ones between slab and mold.
class SyntheticMold {
 public:
  explicit SyntheticMold(int cells) : cells_(cells) {}

  std::int64_t elements() const { return std::int64_t{6} * cells_ * cells_ * cells_; }

  bool write(const std::string& path) const {
    OFEIO_Manipulator writer;
    writer.header[m_HEADER_Version] = 14001;
    writer.header.setFloatField(m_HEADER_ScaleFactor, 1.0F);
    writer.header[m_HEADER_NMatI] = 1;
    writer.header[m_HEADER_NMatC] = 1;
    if (writer.beginWriting(path.c_str(), 14001, 0) != 1) return false;
    const int n = cells_ + 1;
    for (int i = 0; i < n * n * n; ++i)
      writer.writeNodeBlockEntry(static_cast<float>(i % n), static_cast<float>(i / n % n),
                                 static_cast<float>(i / n / n));
    writeBlock(writer, Kind::Plastic, &OFEIO_Manipulator::writeElementPlasticBlockEntry);
    writeBlock(writer, Kind::Mold, &OFEIO_Manipulator::writeElementMoldBaseBlockEntry);
    writeBlock(writer, Kind::Channel, &OFEIO_Manipulator::writeElementCoolChannelBlockEntry);
    return writer.endWriting() == 1;
  }

 private:
  enum class Kind { Plastic, Mold, Channel };
  using Write = int (OFEIO_Manipulator::*)(int, const int[], int, int, float);

  // Layers of z in eighths: part in [3,4), insert in [4,5), mold elsewhere; the channel is the edge x = y =
  // 0.
  Kind kindOf(int x, int y, int z) const {
    if (x == 0 && y == 0) return Kind::Channel;
    return z * 8 / cells_ == 3 ? Kind::Plastic : Kind::Mold;
  }
  int materialOf(Kind kind, int z) const { return kind == Kind::Mold && z * 8 / cells_ == 4 ? 5002 : 1; }

  void writeBlock(OFEIO_Manipulator& writer, Kind kind, Write writeEntry) const {
    static constexpr int kTets[6][4] = {{0, 1, 3, 7}, {0, 3, 2, 7}, {0, 2, 6, 7},
                                        {0, 6, 4, 7}, {0, 4, 5, 7}, {0, 5, 1, 7}};
    const int n = cells_ + 1;
    for (int z = 0; z < cells_; ++z)
      for (int y = 0; y < cells_; ++y)
        for (int x = 0; x < cells_; ++x) {
          if (kindOf(x, y, z) != kind) continue;
          for (const auto& tet : kTets) {
            int nodes[4];
            for (int k = 0; k < 4; ++k)
              nodes[k] = 1 + (x + (tet[k] & 1)) + n * ((y + (tet[k] >> 1 & 1)) + n * (z + (tet[k] >> 2)));
            (writer.*writeEntry)(4, nodes, materialOf(kind, z), 1, 0.0F);
          }
        }
  }

  int cells_;
};

}  // namespace orvmesh::bench
