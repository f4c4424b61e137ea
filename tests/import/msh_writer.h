#pragma once

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <map>
#include <span>
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
    if (binary_) row(1);
    end("$EndMeshFormat");
    out_ += "$PhysicalNames\n" + std::to_string(mesh_.names.size()) + "\n";
    for (const auto& [dimension, tag, name] : mesh_.names)
      out_ += std::to_string(dimension) + " " + std::to_string(tag) + " \"" + name + "\"\n";
    out_ += "$EndPhysicalNames\n";
    is41_ ? write41() : write22();
    return out_;
  }

 private:
  // A number or a range of them; int, std::uint64_t and double are the file's own widths.
  template <class Value>
  void put(const Value& value) {
    if constexpr (requires { value.begin(); }) {
      for (const auto& each : value) put(each);
    } else {
      char piece[40];
      std::size_t size = sizeof value;
      if (binary_)
        std::memcpy(piece, &value, size);
      else
        size = static_cast<std::size_t>(std::snprintf(piece, sizeof piece, "%.17g ", double(value)));
      out_.append(piece, size);
    }
  }
  void row(const auto&... values) {
    (put(values), ...);
    if (!binary_) out_.back() = '\n';
  }
  void end(const char* mark) { out_ += std::string(binary_ ? "\n" : "") + mark + "\n"; }

  void write22() {
    out_ += "$Nodes\n" + std::to_string(mesh_.nodes.size()) + "\n";
    for (const auto& node : mesh_.nodes) row(static_cast<int>(node.tag), node.x, node.y, node.z);
    end("$EndNodes");
    out_ += "$Elements\n" + std::to_string(mesh_.elements.size()) + "\n";
    for (const auto& element : mesh_.elements) {
      const int tag = static_cast<int>(element.tag);
      const std::vector<int> head =
          binary_ ? std::vector{element.type, 1, 2, tag} : std::vector{tag, element.type, 2};
      const std::vector<int> nodes(element.nodes.begin(), element.nodes.end());
      row(head, element.group, element.entity, nodes);
    }
    end("$EndElements");
  }

  void write41() {
    out_ += "$Entities\n";
    std::map<std::pair<int, int>, int> entities;
    std::array<std::uint64_t, 4> counts{};
    for (const auto& element : mesh_.elements) entities[{element.dimension, element.entity}] = element.group;
    for (const auto& [key, group] : entities) ++counts[static_cast<std::size_t>(key.first)];
    row(counts);
    for (const auto& [key, group] : entities) {
      const std::vector<double> box(key.first == 0 ? 3 : 6, 0.5);
      const std::vector<int> groups(group == 0 ? 0 : 1, group);
      if (key.first == 0)
        row(key.second, box, groups.size(), groups);
      else
        row(key.second, box, groups.size(), groups, std::uint64_t{2}, 7, -7);
    }
    end("$EndEntities");
    out_ += "$Nodes\n";
    row(std::uint64_t{2}, mesh_.nodes.size(), std::uint64_t{1}, std::uint64_t{1});
    const std::span<const MshNode> nodes(mesh_.nodes);
    writeNodes(nodes.first(nodes.size() / 2), false);
    writeNodes(nodes.subspan(nodes.size() / 2), true);
    end("$EndNodes");
    std::vector<std::vector<MshElement>> blocks;
    for (const auto& element : mesh_.elements) {
      if (blocks.empty() || blocks.back()[0].type != element.type ||
          blocks.back()[0].entity != element.entity)
        blocks.emplace_back();
      blocks.back().push_back(element);
    }
    out_ += "$Elements\n";
    row(blocks.size(), mesh_.elements.size(), std::uint64_t{1}, std::uint64_t{1});
    for (const auto& block : blocks) {
      row(block[0].dimension, block[0].entity, block[0].type, block.size());
      for (const auto& element : block) row(element.tag, element.nodes);
    }
    end("$EndElements");
  }
  void writeNodes(std::span<const MshNode> nodes, bool parametric) {
    row(2, 1, parametric ? 1 : 0, nodes.size());
    for (const auto& node : nodes) row(node.tag);
    const std::vector<double> parameters(parametric ? 2 : 0, 0.25);
    for (const auto& node : nodes) row(node.x, node.y, node.z, parameters);
  }

  const Msh& mesh_;
  bool binary_;
  bool is41_;
  std::string out_;
};

inline std::string writeMsh(const Msh& mesh, Encoding encoding) { return MshWriter(mesh, encoding).write(); }

}  // namespace orvmesh::test
