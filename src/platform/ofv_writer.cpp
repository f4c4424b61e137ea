#include "platform/ofv_writer.h"

int writeWholeOFV(COrvOFVWriter& writer, const char* path, const orvmesh::OFVMesh& mesh) {
  const bool written = writer.beginWriting(path) == 1 && writer.writePoints(mesh.xyz) == 1 &&
                       writer.writeCavities(mesh.cavityNumber, mesh.cavityKind) == 1 &&
                       writer.writeCells(mesh.cellCavity) == 1 &&
                       writer.writeFaces(mesh.faceOffsets, mesh.faceNodes, mesh.owner, mesh.neighbour) == 1 &&
                       writer.writeInletGroups(mesh.inletID, mesh.inletGroup) == 1;
  return written && writer.endWriting() == 1 ? 1 : 0;
}
