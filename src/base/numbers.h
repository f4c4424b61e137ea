#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>

namespace orvmesh {

// A 1-based 32-bit number of one kind of thing; 0 means "none". Different kinds do not mix.
template <class Tag>
struct Number {
  std::int32_t value = 0;

  constexpr Number() = default;
  constexpr explicit Number(std::int32_t v) : value(v) {}
  constexpr auto operator<=>(const Number&) const = default;
  // Position in an array whose entry 0 is the thing number 1. Only for numbers of at least 1.
  constexpr std::size_t position() const { return static_cast<std::size_t>(value) - 1; }
  constexpr Number& operator++() {
    ++value;
    return *this;
  }
};

using NodeNo = Number<struct NodeTag>;
using ElemNo = Number<struct ElemTag>;
using SurfNo = Number<struct SurfTag>;
using SensorNo = Number<struct SensorTag>;

}  // namespace orvmesh
