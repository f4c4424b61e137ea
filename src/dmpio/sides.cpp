#include "dmpio/sides.h"

namespace orvmesh::dmpio {

void Sides::copyBlock(Block block, Header header) {
  int first = 0;
  int second = 0;
  int itemCount = 0;
  bool newGroup = false;
  switch (kBlockRows[block].shape) {
    case Shape::One:
      while (reader.readOne(block, header, first) >= 0) writer.writeOne(block, header, first);
      break;
    case Shape::Pair:
      while (reader.readPair(block, header, first, second) >= 0)
        writer.writePair(block, header, first, second);
      break;
    case Shape::Groups:
      while (reader.readItem(header, newGroup, itemCount, first, second) >= 0)
        writer.writeItem(header, newGroup, itemCount, first, second);
  }
}

// The sensor map and the surface maps stay behind; their counts in the header do not (quirk 39).
int Sides::copyBlocks(Header header) {
  for (const Block block :
       {kNodeMap, kPlasticMap, kMoldBaseMap, kCoolChannelMap, kCoolantEndMap, kFaceToLineMap, kLineToFaceMap})
    copyBlock(block, header);
  error = reader.errorText();
  return error.empty() ? 1 : 0;
}

}  // namespace orvmesh::dmpio
