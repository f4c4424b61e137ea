#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "view/json_mesh.h"
#include "view/json_scalar.h"

namespace orvmesh::view {

// Takes a JSON parser's events between the key of a block and the end of its list, and packs the entries. The
// parser's brackets match, so one end event serves lists and objects.
class JsonBlockReader {
 public:
  JsonBlockReader(JsonMesh& mesh, const std::string& name) : mesh_(mesh), name_(name) {}

  void open(int block);
  bool isOpen() const { return at_ != At::Outside; }
  void begin(bool object);
  void end();
  void key(const std::string& key);
  void scalar(const JsonScalar& value);

 private:
  enum class At { Outside, Key, Entries, Row, Object, List, Dictionary };

  void beginEntry();
  void beginArgument(bool object);
  void endRow();
  void endObject();
  void endList();
  void endEntry();
  void argumentKey(const std::string& key);
  void putValue(ValueType type, const JsonScalar& value, EntryWords& words);
  void putPair(const JsonScalar& value);
  void appendArgument(std::size_t index);

  const BlockShape& shape() const { return *shape_; }
  const Argument& argument() const { return shape().arguments[argument_]; }
  EntryWords& words() { return mesh_.blocks[static_cast<std::size_t>(block_)]; }
  std::int64_t entry() const;
  std::string path() const;
  std::string expected() const;
  [[noreturn]] void refuseHere(const std::string& found, const std::string& legal) const;

  JsonMesh& mesh_;
  const std::string& name_;
  At at_ = At::Outside;
  int block_ = 0;
  const BlockShape* shape_ = nullptr;
  std::size_t place_ = 0;     // in the row or list
  std::size_t argument_ = 0;  // of the object, the one whose key came last
  unsigned seen_ = 0;         // a bit for each argument that the object has had
  std::array<EntryWords, 8> slots_;
  std::string pairKey_;
  std::map<std::string, std::string> pairs_;
};

}  // namespace orvmesh::view
