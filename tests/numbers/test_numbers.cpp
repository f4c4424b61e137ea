#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <iostream>
#include <span>
#include <sstream>

#include "dmpio/dump_content.h"
#include "support/long_run.h"
#include "support/random_mold.h"
#include "support/recorded_numbers.h"
#include "support/run_variant.h"
#include "support/temp_dir.h"

// The numbers that a transfer gives lead from the source to the target, what stands in the target leads back,
// and both ways are one: for every entity that the variant keeps, and for no other.
namespace orvmesh::test {
namespace {

using Mold = RandomMold;
using Numbers = std::span<const int>;  // entry i - 1: of number i

bool isIn(int n, int first, int last) { return first <= n && n <= last; }
bool bit(const Mold::Face& face, int n) { return (face.tag >> n & 1U) != 0; }
unsigned groupOf(const Mold::Face& face) { return face.tag >> 8 & 0xFFFFFU; }
bool isCommonGate(const Mold::Face& face) { return bit(face, 0) && (bit(face, 1) || bit(face, 2)); }

bool isOwnedByRunner(const Mold& mold, const Mold::Face& face, int lastGroup) {
  return face.interfaceId == 1 && isIn(face.element, 1, static_cast<int>(mold.elements[0].size())) &&
         isIn(mold.elements[0][static_cast<std::size_t>(face.element) - 1].b, 201, lastGroup);
}

// What the places of the nodes are, whatever the nodes' numbers.
std::set<std::array<float, 3>> placesOf(const Mold& mold, const auto& nodes) {
  std::set<std::array<float, 3>> places;
  for (const int n : nodes) places.insert(mold.nodes[static_cast<std::size_t>(n) - 1]);
  return places;
}

int elementsOnFace(const Mold& mold, const Mold::Face& face, int list, int firstA, int lastA) {
  const auto places = placesOf(mold, face.nodes);
  int count = 0;
  for (const auto& element : mold.elements[list])
    for (const LocalFace& local : facesOf(static_cast<int>(element.nodes.size()))) {
      std::vector<int> nodes(static_cast<std::size_t>(local.nodeCount));
      for (std::size_t k = 0; k < nodes.size(); ++k)
        nodes[k] = element.nodes[static_cast<std::size_t>(local.nodes[k])];
      count += isIn(element.a, firstA, lastA) && placesOf(mold, nodes) == places;
    }
  return count;
}

bool isInsideJoinedPart(const Mold& mold, const Mold::Face& face) {
  return isIn(face.interfaceId, 1, 2) && elementsOnFace(mold, face, 1, 5002, 10001) == 1 &&
         elementsOnFace(mold, face, 0, -1000, 1000) > 0;
}

bool isHotRunnerFace(const Mold& mold, const Mold::Face& face) {
  const bool kept = std::set{1, 2, 4, 5, 13}.contains(face.type) || (bit(face, 1) && bit(face, 2));
  if (face.interfaceId != 1 || !kept) return false;
  if (face.type == 1) return true;
  if (isCommonGate(face))
    return std::ranges::any_of(mold.faces, [&](const Mold::Face& other) {
      return isCommonGate(other) && groupOf(other) == groupOf(face) && isOwnedByRunner(mold, other, 300);
    });
  return (bit(face, 1) && bit(face, 2)) || face.type != 5 || isOwnedByRunner(mold, face, 299);
}

struct Variant {
  const char* name;
  const char* lists;  // P, M, C: whose elements are kept
  std::function<bool(const Mold&, const Mold::Face&)> keepsFace;
  std::set<int> sensorKinds;
};
const std::set<int> kNumberedKinds{1, 2, 4, 5, 6};
const Variant kVariants[] = {
    {"channels", "C", [](const Mold&, const auto& f) { return isIn(f.interfaceId, 3, 4); }, {}},
    {"hot-runner", "P", isHotRunnerFace, {}},
    {"stream-line", "P", [](const Mold&, const auto&) { return true; }, {}},
    {"moldbase",
     "M",
     [](const Mold&, const auto& f) {
       return f.interfaceId != 1 || (f.contactCode != 0 && f.type != 1 && f.type < 6);
     },
     {4, 5}},
    {"part-inserts", "PMC", [](const Mold& m, const auto& f) { return !isInsideJoinedPart(m, f); },
     kNumberedKinds},
    {"part-inserts-channels", "PMC",
     [](const Mold& m, const auto& f) {
       return !(f.interfaceId == 3 && f.ownerCode == 2) && !isInsideJoinedPart(m, f);
     },
     kNumberedKinds}};

bool keepsElement(const Variant& variant, int list, const Mold::Element& element) {
  if (std::string(variant.lists).find("PMC"[list]) == std::string::npos) return false;
  return std::string("hot-runner") != variant.name || isIn(element.b, 201, 300);
}

// What tells the entities of the target, by number.
struct Target {
  Target(const std::string& path, bool isJoined) {
    OFEIO_Manipulator file;
    if (file.beginReading(path.c_str(), nullptr, 0) != 1) ADD_FAILURE() << file.errorText();
    int count = 0, nodes[8], a = 0, b = 0, c = 0, d = 0, e = 0, tag = 0;
    float value = 0, x = 0, y = 0, z = 0;
    while (file.readNodeBlockEntry(x, y, z) >= 0) places.push_back({x, y, z});
    for (const auto read :
         {&OFEIO_Manipulator::readElementPlasticBlockEntry, &OFEIO_Manipulator::readElementMoldBaseBlockEntry,
          &OFEIO_Manipulator::readElementCoolChannelBlockEntry})
      while ((file.*read)(count, nodes, a, b, value) >= 0) elements.push_back(value);
    while (file.readElementSurfaceBlockEntry(nodes, a, b, c, d, e, tag) >= 0)
      if (e != 0 || !isJoined)
        faces.push_back({nodes[0], nodes[1], nodes[2], nodes[3]});  // not those of the join
    std::map<int, std::vector<float>> byKind;
    for (; file.readSensorInfoBlockEntry(a, nodes, x, y, z) >= 0; ++sensorCount) byKind[a].push_back(x);
    for (const int kind : kNumberedKinds)
      sensors.insert(sensors.end(), byKind[kind].begin(), byKind[kind].end());
  }
  std::vector<std::array<float, 3>> places;
  std::vector<float> elements, sensors;
  std::size_t sensorCount = 0;  // of all kinds
  std::vector<std::array<int, 4>> faces;
};

// There and back: number[i - 1] of each source entity leads to what tells it. Counts those kept.
template <class Entity, class Tell, class Kept, class Told>
std::size_t expectThereAndBack(const std::vector<Entity>& source, Numbers numbers, Kept kept, Tell tell,
                               const std::vector<Told>& target) {
  EXPECT_EQ(numbers.size(), source.size());
  std::size_t count = 0;
  for (std::size_t i = 0; i < std::min(source.size(), numbers.size()); ++i) {
    const int number = numbers[i];
    EXPECT_EQ(number != 0, kept(source[i])) << i + 1;
    if (number == 0) continue;
    ++count;
    if (!isIn(number, 1, static_cast<int>(target.size()))) {
      ADD_FAILURE() << i + 1 << " became " << number;
      continue;
    }
    const Told& told = target[static_cast<std::size_t>(number) - 1];
    EXPECT_EQ(told, tell(source[i])) << i + 1 << " became " << number;
    EXPECT_EQ(std::ranges::count(target, told), 1);
  }
  return count;
}

// The sum of what the transfer tells of dropped sensors, or of all else.
std::size_t droppedOf(const COrvMeshFormatTransfer& transfer, bool sensors) {
  std::size_t sum = 0;
  std::istringstream lines(transfer.GetDropped_Link());
  for (std::string line; std::getline(lines, line);)
    if (line.starts_with("sensors") == sensors) sum += std::stoul(line.substr(line.rfind(' ')));
  return sum;
}

// A dump holds the same numbers.
void expectRecorded(const COrvMeshFormatTransfer& transfer, const std::string& path, int version) {
  const dmpio::NumberMaps maps = numberMapsOf(transfer);
  dmpio::writeNumberMaps(maps, path, version);
  Content expected;
  for (int n = 1; n <= static_cast<int>(maps.nodes.size()); ++n) expected.nodes.emplace_back(n, n);
  const Numbers lists[] = {maps.plastic, maps.moldBase, maps.coolChannel};
  for (std::size_t i = 0; i < 3; ++i) expected.ints[i].assign(lists[i].begin(), lists[i].end());
  if (version >= 1023) expected.ints[4].assign(maps.sensors.begin(), maps.sensors.end());
  for (const int end : maps.channelEnds)
    if (const int number = maps.surfaces[static_cast<std::size_t>(end) - 1]; number != 0)
      expected.ends.emplace_back(end, number);
  EXPECT_EQ(readFile(path), expected) << version;
}

class Tally {
 public:
  void check(const Mold& mold, const Variant& variant, const std::string& dir);
  std::size_t kept = 0, all = 0;
};

void Tally::check(const Mold& mold, const Variant& variant, const std::string& dir) {
  COrvMeshFormatTransfer transfer;
  transfer.SetKeepTargetNumbers(true);
  if (runVariant(transfer, variant.name, dir + "/source", dir + "/target") < 1) return;
  ASSERT_STREQ(transfer.GetErrorMessage_Link(), "");
  const Target target(dir + "/target", std::string_view(variant.lists) == "PMC");
  EXPECT_EQ(target.places, mold.nodes);
  const auto nodes = numbersOf(transfer, TargetNumbering_Node);
  for (std::size_t n = 0; n < nodes.size(); ++n) EXPECT_EQ(nodes[n], n + 1);
  EXPECT_EQ(nodes.size(), mold.nodes.size());

  std::size_t elements = 0;
  for (int list = 0; list < 3; ++list)
    elements += expectThereAndBack(
        mold.elements[list],
        numbersOf(transfer, static_cast<TargetNumbering>(TargetNumbering_ElementPlastic + list)),
        [&](const auto& element) { return keepsElement(variant, list, element); },
        [](const auto& element) { return element.value; }, target.elements);
  EXPECT_EQ(elements, target.elements.size());
  const auto faces = expectThereAndBack(
      mold.faces, numbersOf(transfer, TargetNumbering_ElementSurface),
      [&](const auto& face) { return variant.keepsFace(mold, face); },
      [](const auto& face) { return face.nodes; }, target.faces);
  std::vector<Mold::Sensor> numbered;
  for (const int kind : kNumberedKinds)
    std::ranges::copy_if(mold.sensors, std::back_inserter(numbered),
                         [&](const auto& s) { return s.kind == kind; });
  const auto sensors = expectThereAndBack(
      numbered, numbersOf(transfer, TargetNumbering_Sensor),
      [&](const auto& sensor) { return variant.sensorKinds.contains(sensor.kind); },
      [](const auto& sensor) { return sensor.x; }, target.sensors);
  EXPECT_EQ(sensors, target.sensors.size());
  EXPECT_EQ(faces + droppedOf(transfer, false), mold.faces.size());
  EXPECT_EQ(target.sensorCount + droppedOf(transfer, true), mold.sensors.size());
  kept += elements + faces + sensors;
  constexpr int kVersions[] = {1020, 1022, 1023, 2001, 2003, 2004, 2005};
  expectRecorded(transfer, dir + "/map", kVersions[all++ % std::size(kVersions)]);
}

TEST(Numbers, SurviveInRandomMolds) {
  const TempDir dir;
  std::filesystem::current_path(dir.path());
  const unsigned molds = isLong() ? 20000 : 200;
  Tally tally;
  for (unsigned seed = 1; seed <= molds && !::testing::Test::HasFailure(); ++seed) {
    const Mold mold(seed);
    mold.write(dir / "source");
    for (const Variant& variant : kVariants) {
      SCOPED_TRACE(std::string(variant.name) + ", mold " + std::to_string(seed));
      tally.check(mold, variant, dir);
    }
  }
  std::filesystem::current_path("/");
  std::cout << tally.kept << " numbers of elements, surfaces and sensors in " << tally.all << " transfers\n";
  EXPECT_GT(tally.all, 5 * molds);
}

}  // namespace
}  // namespace orvmesh::test
