#pragma once

#include <cstdint>
#include <cstring>
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "support/files.h"

// One mesh in the four encodings that the reader knows, written without any of its code.
namespace orvmesh::test {

struct MshNode {
  std::uint64_t tag;
  double x, y, z;
};
struct MshElement {
  std::uint64_t tag;
  int type, dimension, entity, group;  // group 0: none
  std::vector<std::uint64_t> nodes;
};
struct Msh {
  std::vector<std::tuple<int, int, std::string>> names;
  std::vector<MshNode> nodes;
  std::vector<MshElement> elements;
};

enum class Encoding { text22, binary22, text41, binary41 };
inline constexpr Encoding kEncodings[] = {Encoding::text22, Encoding::binary22, Encoding::text41,
                                          Encoding::binary41};

class MshWriter {
 public:
  MshWriter(const Msh& mesh, Encoding encoding)
      : mesh_(mesh),
        binary_(encoding == Encoding::binary22 || encoding == Encoding::binary41),
        is41_(encoding == Encoding::text41 || encoding == Encoding::binary41) {}

  std::string write() {
    out_ = "$MeshFormat\n" + std::string(is41_ ? "4.1" : "2.2") + (binary_ ? " 1 8\n" : " 0 8\n");
    if (binary_) ints({1});
    end("$EndMeshFormat");
    out_ += "$PhysicalNames\n" + std::to_string(mesh_.names.size()) + "\n";
    for (const auto& [dimension, tag, name] : mesh_.names)
      out_ += std::to_string(dimension) + " " + std::to_string(tag) + " \"" + name + "\"\n";
    out_ += "$EndPhysicalNames\n";
    is41_ ? write41() : write22();
    return out_;
  }

 private:
  template <class Value>
  void put(Value value) {
    char bytes[sizeof value];
    std::memcpy(bytes, &value, sizeof value);
    out_.append(bytes, sizeof value);
  }
  void ints(const std::vector<int>& values) {
    for (const int v : values) binary_ ? put<std::int32_t>(v) : text(std::to_string(v));
  }
  void sizes(const std::vector<std::uint64_t>& values) {
    for (const auto v : values) binary_ ? put(v) : text(std::to_string(v));
  }
  void reals(const std::vector<double>& values) {
    for (const double v : values) {
      char digits[40];
      std::snprintf(digits, sizeof digits, "%.17g", v);
      binary_ ? put(v) : text(digits);
    }
  }
  void text(const std::string& word) { out_ += word + " "; }
  void newLine() {
    if (!binary_) out_.back() = '\n';
  }
  void end(const char* mark) { out_ += std::string(binary_ ? "\n" : "") + mark + "\n"; }

  void write22() {
    out_ += "$Nodes\n" + std::to_string(mesh_.nodes.size()) + "\n";
    for (const auto& node : mesh_.nodes) {
      ints({static_cast<int>(node.tag)});
      reals({node.x, node.y, node.z});
      newLine();
    }
    end("$EndNodes");
    out_ += "$Elements\n" + std::to_string(mesh_.elements.size()) + "\n";
    for (const auto& element : mesh_.elements) {
      const int tag = static_cast<int>(element.tag);
      binary_ ? ints({element.type, 1, 2, tag}) : ints({tag, element.type, 2});
      ints({element.group, element.entity});
      for (const auto node : element.nodes) ints({static_cast<int>(node)});
      newLine();
    }
    end("$EndElements");
  }

  void writeEntities() {
    std::map<std::pair<int, int>, int> entities;
    std::uint64_t counts[4] = {};
    for (const auto& element : mesh_.elements) entities[{element.dimension, element.entity}] = element.group;
    for (const auto& [key, group] : entities) ++counts[key.first];
    out_ += "$Entities\n";
    sizes({counts[0], counts[1], counts[2], counts[3]});
    newLine();
    for (const auto& [key, group] : entities) {
      ints({key.second});
      reals(std::vector<double>(key.first == 0 ? 3 : 6, 0.5));
      sizes({group == 0 ? 0U : 1U});
      if (group != 0) ints({group});
      if (key.first > 0) {
        sizes({2});
        ints({7, -7});
      }
      newLine();
    }
    end("$EndEntities");
  }

  void write41() {
    writeEntities();
    out_ += "$Nodes\n";
    sizes({2, mesh_.nodes.size(), 1, 1});
    newLine();
    // Two blocks, the second one with parametric coordinates.
    const auto half = mesh_.nodes.size() / 2;
    writeNodes(0, half, false);
    writeNodes(half, mesh_.nodes.size(), true);
    end("$EndNodes");
    std::vector<std::vector<const MshElement*>> blocks;
    for (const auto& element : mesh_.elements) {
      const auto* last = blocks.empty() ? nullptr : blocks.back().front();
      if (last == nullptr || last->type != element.type || last->entity != element.entity)
        blocks.emplace_back();
      blocks.back().push_back(&element);
    }
    out_ += "$Elements\n";
    sizes({blocks.size(), mesh_.elements.size(), 1, 1});
    newLine();
    for (const auto& block : blocks) {
      ints({block[0]->dimension, block[0]->entity, block[0]->type});
      sizes({block.size()});
      newLine();
      for (const auto* element : block) {
        sizes({element->tag});
        sizes(element->nodes);
        newLine();
      }
    }
    end("$EndElements");
  }
  void writeNodes(std::size_t first, std::size_t last, bool parametric) {
    ints({2, 1, parametric ? 1 : 0});
    sizes({last - first});
    newLine();
    for (auto k = first; k < last; ++k) {
      sizes({mesh_.nodes[k].tag});
      newLine();
    }
    for (auto k = first; k < last; ++k) {
      reals({mesh_.nodes[k].x, mesh_.nodes[k].y, mesh_.nodes[k].z});
      if (parametric) reals({0.25, 0.75});
      newLine();
    }
  }

  const Msh& mesh_;
  bool binary_;
  bool is41_;
  std::string out_;
};

inline std::string writeMsh(const Msh& mesh, Encoding encoding) { return MshWriter(mesh, encoding).write(); }

}  // namespace orvmesh::test
