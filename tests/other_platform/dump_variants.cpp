// Loads a mesh from JSON and dumps it and all its variants as JSON. Linked with another platform than the
// embedded one. Usage: dump_variants MESH.json FOLDER
#include <cstdio>

#include "base/failure.h"
#include "support/run_variant.h"
#include "view/ofe_json.h"

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  const std::string folder = argv[2];
  try {
    orvmesh::view::loadJsonFile(argv[1], "source.ofe");
    orvmesh::view::dumpJsonFile("source.ofe", folder + "/source.json");
    for (const char* name : orvmesh::test::kVariantNames) {
      COrvMeshFormatTransfer transfer;
      orvmesh::test::runVariant(transfer, name, "source.ofe", std::string(name) + ".ofe");
      if (*transfer.GetErrorMessage_Link() != '\0')
        throw orvmesh::Failure(name, transfer.GetErrorMessage_Link());
      orvmesh::view::dumpJsonFile(std::string(name) + ".ofe", folder + "/" + name + ".json");
    }
  } catch (const orvmesh::Failure& failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    return 1;
  }
  return 0;
}
