#pragma once

#include <compare>
#include <cstdint>
#include <string>
#include <string_view>

namespace orvmesh::importing {

// Volumes first and in the order in which they are written.
enum class RoleKind : std::uint8_t {
  part,
  hotRunner,
  insert,
  moldBase,
  coolant,
  heater,
  inlet,
  outlet,
  hose,
  commonGate,
  hotColdGate,
  sensor,
  ignore
};

// What a physical group stands for. `number` is the material (part, insert, mold base), the group (hot
// runner, channels, ends, gates) or the type (sensor).
struct Role {
  RoleKind kind = RoleKind::ignore;
  std::int32_t number = 0;
  std::int32_t display = 0;  // of a sensor
  auto operator<=>(const Role&) const = default;
};

// The parts of an OFE file that volume elements go to.
enum class Block : std::uint8_t { plastic, mold, channel };
constexpr Block blockOf(RoleKind kind) {
  return kind <= RoleKind::hotRunner ? Block::plastic
                                     : (kind <= RoleKind::moldBase ? Block::mold : Block::channel);
}
constexpr bool isVolume(RoleKind kind) { return kind <= RoleKind::heater; }
constexpr bool isEnd(RoleKind kind) { return RoleKind::inlet <= kind && kind <= RoleKind::hose; }
constexpr bool isGate(RoleKind kind) { return kind == RoleKind::commonGate || kind == RoleKind::hotColdGate; }

// Dimension of the groups that can have the role; -1 for ignore, which suits all.
int dimensionOf(RoleKind kind);

// The role in words: "insert:5002".
std::string textOf(const Role& role);

// A role text read. `problem` says in words why it is none; `unknown` that its first word is no role at all.
struct RoleText {
  Role role;
  std::string problem;
  bool unknown = false;
};
RoleText parseRole(std::string_view text);

}  // namespace orvmesh::importing
