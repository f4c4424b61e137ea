#include "platform/binio.h"

#include "embedded/mesh.h"

namespace orvmesh::test {
namespace {

TEST(Binio, BlocksComeBackById) {
  const TempDir dir;
  const std::string path = dir / "dump";
  BINIO_BinaryFile file;
  ASSERT_EQ(file.beginWriting(path.c_str()), 1);
  EXPECT_EQ(file.beginWriting(path.c_str()), 0);
  BINIO_BinaryBlock& block = file.currentBlock();
  for (const char type : {'I', 'L', 'F', 'D', 'C'}) {
    ASSERT_EQ(block.setVectorCount(type, 2), 1);
    ASSERT_EQ(block.setVectorSize(type, 1, 3), 1);
  }
  block.setValue(1, 2, -7);
  const BINIO_BinaryBlock copy = block;
  EXPECT_EQ(file.writeBlock(20000), 1);
  block.destroy();
  EXPECT_EQ(file.writeBlock(-5), 1);
  EXPECT_EQ(file.writeBlock(20000), 0);
  EXPECT_EQ(BINIO_BinaryFile(file).endWriting(), 1);  // copies share the open file
  EXPECT_EQ(file.endWriting(), 0);
  EXPECT_EQ(copy.getValue(1, 2), -7);
  EXPECT_EQ(bytesOf(path)[0], '0');

  ASSERT_EQ(file.beginReading(path.c_str(), 0), 1);
  EXPECT_EQ(file.readBlock(30000), 0);
  EXPECT_EQ(file.readBlock(20000), 1);
  for (const auto& [index, size] : {std::pair{0, 0}, {1, 3}, {2, -1}})
    for (const char type : {'I', 'L', 'F', 'D', 'C'}) EXPECT_EQ(block.getVectorSize(type, index), size);
  EXPECT_EQ(block.getValue(1, 2), -7);
  EXPECT_EQ(block.getValue(1, 3) + block.getValue(1, -1) + block.getValue(2, 0) + block.getValue(-1, 0), 0);
  EXPECT_EQ(file.readBlock(-5), 1);
  EXPECT_EQ(block.getVectorSize('I', 0), -1);
  EXPECT_EQ(file.endReading(), 1);
  EXPECT_EQ(file.readBlock(20000), 0);
}

TEST(Binio, ImpossibleSizesAreRefused) {
  BINIO_BinaryBlock block;
  EXPECT_EQ(block.setVectorCount('X', 1) + block.setVectorCount('I', -1), 0);
  ASSERT_EQ(block.setVectorCount('I', 1), 1);
  EXPECT_EQ(block.setVectorSize('I', 0, -1) + block.setVectorSize('I', 0, std::int64_t{1} << 62), 0);
  EXPECT_EQ(block.setVectorSize('I', 1, 1) + block.setValue(0, 0, 1), 0);
}

}  // namespace
}  // namespace orvmesh::test
