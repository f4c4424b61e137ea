#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <string>

// The header of an OFE file: 32-bit words counted from 0, some of them named, and four strings.
// Words 29..33 and 36..47 hold floats, every other word an integer. Words 0..119 are the mesh file's own; 120
// and above are counts that the block writers set.
class OFEHeader {
 public:
  static constexpr int kWords = 160;
  static constexpr int kFirstBlockCount = 120;

  std::int32_t& operator[](int field) { return words[static_cast<std::size_t>(field)]; }
  std::int32_t operator[](int field) const { return words[static_cast<std::size_t>(field)]; }
  float floatField(int field) const { return std::bit_cast<float>((*this)[field]); }
  void setFloatField(int field, float value) { (*this)[field] = std::bit_cast<std::int32_t>(value); }
  static constexpr bool isFloatField(int field) {
    return (29 <= field && field <= 33) || (36 <= field && field <= 47);
  }

  std::array<std::int32_t, kWords> words{};
  std::string source, dateTime, unit, remark;

  bool operator==(const OFEHeader&) const = default;
};

// The named words. The first group has fixed places; the counts from 120 on are this platform's own.
enum OFEHeaderField : int {
  m_HEADER_Version = 0,
  m_HEADER_NElemP = 4,
  m_HEADER_NElemM = 5,
  m_HEADER_NElemC = 6,
  m_HEADER_NElemS = 7,
  m_HEADER_NElemSC = 10,
  m_HEADER_NNode = 12,
  m_HEADER_NMatP = 15,
  m_HEADER_NMatM = 16,
  m_HEADER_NMatC = 17,
  m_HEADER_NMatI = 18,
  m_HEADER_ScaleFactor = 29,
  m_HEADER_NLayerMM = 55,
  m_HEADER_NLayerPI = 56,
  m_HEADER_NLayerCC = 57,
  m_HEADER_NCCGroup = 73,
  m_HEADER_NSensor1 = 120,  // kinds 1 to 6 follow one another
  m_HEADER_NSensor2,
  m_HEADER_NSensor3,
  m_HEADER_NSensor4,
  m_HEADER_NSensor5,
  m_HEADER_NSensor6,
  m_HEADER_NCCDiameter,
  m_HEADER_NCCLine,
  m_HEADER_NLayoutPoint,
  m_HEADER_NLayoutSegment,
  m_HEADER_NLayoutEntry,
  m_HEADER_NMIPoint,
  m_HEADER_NMIFace,
  m_HEADER_NMIEntry,
  m_HEADER_NCCSurfacePoint,
  m_HEADER_NCCSurfaceFace,
  m_HEADER_NCCSurfaceEntry,
  m_HEADER_NBoundaryCondition,
  m_HEADER_NSurfaceBC,
  m_HEADER_NSurfaceBCName,
  m_HEADER_NBadP,
  m_HEADER_NBadM,
  m_HEADER_NBadC,
};
