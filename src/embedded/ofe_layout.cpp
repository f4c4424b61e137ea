#include "embedded/ofe_layout.h"

#include <array>

namespace orvmesh::embedded {
namespace {

using C = ColumnLayout;

constexpr C kHeader[] = {{'I', Per::Free, 0, "words"},  {'I', Per::Free, 0, "version"},
                         {'C', Per::Free, 0, "source"}, {'C', Per::Free, 0, "dateTime"},
                         {'C', Per::Free, 0, "unit"},   {'C', Per::Free, 0, "remark"}};
constexpr C kNodes[] = {{'F', Per::Entry, 3, "xyz"}};
constexpr C kElements[] = {{'I', Per::Pool, 0, "connectivity"},
                           {'I', Per::Entry, 1, "fieldA"},
                           {'I', Per::Entry, 1, "fieldB"},
                           {'F', Per::Entry, 1, "value"},
                           {'L', Per::OffsetsIfMixed, 0, "offsets"}};
constexpr C kSurfaces[] = {{'I', Per::Entry, 4, "nodes"},        {'I', Per::Entry, 1, "interfaceId"},
                           {'I', Per::Entry, 1, "ownerCode"},    {'I', Per::Entry, 1, "contactCode"},
                           {'I', Per::Entry, 1, "boundaryType"}, {'I', Per::Entry, 1, "elementNo"},
                           {'I', Per::Entry, 1, "tag"}};
constexpr C kConditions[] = {
    {'I', Per::Entry, 1, "entityNo"}, {'I', Per::Entry, 1, "type"}, {'F', Per::Entry, 1, "value"}};
constexpr C kBad[] = {{'I', Per::Entry, 1, "elementNo"}, {'I', Per::Entry, 1, "code"}};
constexpr C kDiameters[] = {{'I', Per::Entry, 8, "nodes"}, {'F', Per::Entry, 1, "diameter"}};
constexpr C kLines[] = {{'F', Per::Entry, 4, "values"}, {'I', Per::Entry, 4, "codes"}};
constexpr C kLayout[] = {{'F', Per::Entry, 13, "values"}, {'I', Per::Entry, 7, "codes"}};
constexpr C kSensors[] = {
    {'I', Per::Entry, 4, "ids"}, {'I', Per::Entry, 1, "type"}, {'F', Per::Entry, 3, "position"}};
constexpr C kGeometry[] = {{'I', Per::Entry, 4, "nodes"},
                           {'I', Per::Entry, 1, "isPoint"},
                           {'F', Per::Entry, 3, "position"},
                           {'I', Per::Entry, 2, "codes"}};
constexpr C kLists[] = {
    {'I', Per::Pool, 0, "list"}, {'I', Per::Entry, 1, "surfaceNo"}, {'L', Per::Offsets, 0, "offsets"}};
constexpr C kNames[] = {{'C', Per::Pool, 0, "texts"},
                        {'I', Per::Entry, 2, "typeAndDictionarySize"},
                        {'L', Per::TextOffsets, 0, "offsets"}};
constexpr C kLayers[] = {
    {'C', Per::Pool, 0, "names"}, {'I', Per::Entry, 6, "values"}, {'L', Per::Offsets, 0, "offsets"}};
constexpr C kChannelLayers[] = {
    {'C', Per::Pool, 0, "names"}, {'I', Per::Entry, 2, "values"}, {'L', Per::Offsets, 0, "offsets"}};
constexpr C kDirection[] = {{'F', Per::Entry, 3, "direction"}};

constexpr std::array<BlockLayout, kBlockCount> kLayouts{{
    {Block::Header, 100, "header", false, kHeader},
    {Block::Nodes, 200, "nodes", false, kNodes},
    {Block::ElementsPlastic, 310, "elementsPlastic", false, kElements},
    {Block::ElementsMoldBase, 320, "elementsMoldBase", false, kElements},
    {Block::ElementsCoolChannel, 330, "elementsCoolChannel", false, kElements},
    {Block::ElementSurfaces, 400, "elementSurfaces", false, kSurfaces},
    {Block::BoundaryConditions, 500, "boundaryConditions", false, kConditions},
    {Block::BadElementsPlastic, 610, "badElementsPlastic", false, kBad},
    {Block::BadElementsMoldBase, 620, "badElementsMoldBase", false, kBad},
    {Block::BadElementsCoolChannel, 630, "badElementsCoolChannel", false, kBad},
    {Block::CoolantChannelDiameters, 710, "coolantChannelDiameters", true, kDiameters},
    {Block::CoolantChannelLines, 720, "coolantChannelLines", true, kLines},
    {Block::CoolantChannelLayout, 730, "coolantChannelLayout", true, kLayout},
    {Block::Sensors, 800, "sensors", true, kSensors},
    {Block::MoldMetal, 910, "moldMetal", true, kGeometry},
    {Block::CoolingChannelSurface, 920, "coolingChannelSurface", true, kGeometry},
    {Block::SurfaceBoundaryConditions, 1010, "surfaceBoundaryConditions", true, kLists},
    {Block::SurfaceBoundaryConditionNames, 1020, "surfaceBoundaryConditionNames", true, kNames},
    {Block::MoldMetalLayers, 1110, "moldMetalLayers", true, kLayers},
    {Block::PartInsertLayers, 1120, "partInsertLayers", true, kLayers},
    {Block::CoolantChannelLayers, 1130, "coolantChannelLayers", true, kChannelLayers},
    {Block::PartingDirection, 1200, "partingDirection", true, kDirection},
}};

constexpr bool inEnumOrder() {
  for (std::size_t i = 0; i < kLayouts.size(); ++i)
    if (static_cast<std::size_t>(kLayouts[i].block) != i) return false;
  return true;
}
static_assert(inEnumOrder());

constexpr int kVersions[] = {2002, 2008, 2009, 2010, 2011, 2012, 13001, 14001, 14002, 14003};

}  // namespace

const BlockLayout& layoutOf(Block block) { return kLayouts[static_cast<std::size_t>(block)]; }
std::span<const BlockLayout> allLayouts() { return kLayouts; }
std::span<const int> writableVersions() { return kVersions; }
const char* writableVersionsAsText() { return "2002, 2008 to 2012, 13001, 14001 to 14003"; }

}  // namespace orvmesh::embedded
