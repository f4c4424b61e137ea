#include "transfer/prepass/part_inserts.h"

#include "base/ranges.h"

namespace orvmesh::transfer {
namespace {

// New number of every element of a table when those for which `first` holds and the others are numbered
// apart.
template <class Predicate>
OneBasedArray<std::int32_t> splitNumbering(const ElementTable& elements, std::int32_t firstOffset,
                                           std::int32_t otherOffset, Predicate first) {
  OneBasedArray<std::int32_t> numbers(elements.count());
  for (std::int32_t e = 1; e <= elements.count(); ++e)
    numbers[e] = first(elements.material(e)) ? ++firstOffset : ++otherOffset;
  return numbers;
}

bool isWrittenInsert(std::int32_t material) { return kInsertWritten.holds(material); }
bool isHeater(std::int32_t kind) { return kind == kChannelKindHeater; }

// The block an element goes to follows the written range, the list its bad mark joins the typed one (quirk
// 1).
void renumberBadMold(const MeshModel& model, BadElements& bad) {
  if (model.badM.count() == 0) return;
  const auto numbers = splitNumbering(model.elemM, model.elemP.count(), 0, isWrittenInsert);
  for (std::size_t i = 0; i < model.badM.elementNo.size(); ++i) {
    const std::int32_t e = model.badM.elementNo[i];
    if (!model.elemM.holds(e)) continue;
    auto& list = kInsertTyped.holds(model.elemM.material(e)) ? bad.plastic : bad.mold;
    list.push_back({numbers[e], model.badM.code[i]});
  }
}

std::int32_t moldElementsLeft(const MeshModel& model) {
  std::int32_t left = 0;
  for (const std::int32_t material : model.elemM.fieldA) left += !isWrittenInsert(material);
  return left;
}

void renumberBadChannel(const MeshModel& model, bool heatersMove, BadElements& bad) {
  if (model.badC.count() == 0) return;
  const auto numbers = heatersMove ? splitNumbering(model.elemC, moldElementsLeft(model), 0, isHeater)
                                   : splitNumbering(model.elemC, 0, 0, [](std::int32_t) { return true; });
  for (std::size_t i = 0; i < model.badC.elementNo.size(); ++i) {
    const std::int32_t e = model.badC.elementNo[i];
    if (!model.elemC.holds(e)) continue;
    const bool moves = heatersMove && isHeater(model.elemC.material(e));
    (moves ? bad.mold : bad.channel).push_back({numbers[e], model.badC.code[i]});
  }
}

}  // namespace

ContactCounts countContacts(const std::vector<ContactFaceRecord>& contacts) {
  ContactCounts counts;
  for (const auto& record : contacts) {
    if (record.faceType == 3) continue;
    ++(record.faceType == 0 ? counts.interior : counts.other);
  }
  return counts;
}

SurfaceNumbering numberSurfaces(const SurfaceTable& surfaces,
                                const std::vector<ContactFaceRecord>& contacts) {
  const std::int32_t count = surfaces.count();
  OneBasedArray<std::uint8_t> named(count);
  for (const auto& record : contacts)
    if (1 <= record.surfaceNo && record.surfaceNo <= count) named[record.surfaceNo] = 1;

  SurfaceNumbering numbering;
  numbering.newNumber = OneBasedArray<std::int32_t>(count);
  std::int32_t next = 0;
  for (std::int32_t s = 1; s <= count; ++s) {
    const auto i = static_cast<std::size_t>(s) - 1;
    const bool heaterWall = surfaces.interfaceId[i] == 3 && surfaces.ownerCode[i] == 2;
    if (named[s] != 0 || heaterWall) continue;  // quirk 3
    numbering.newNumber[s] = ++next;
    numbering.numberedWithList += surfaces.hasList(s);
  }
  return numbering;
}

BadElements renumberBadElements(const MeshModel& model, bool heatersMove) {
  BadElements bad;
  for (std::size_t i = 0; i < model.badP.elementNo.size(); ++i)
    if (model.elemP.holds(model.badP.elementNo[i]))
      bad.plastic.push_back({model.badP.elementNo[i], model.badP.code[i]});
  renumberBadMold(model, bad);
  renumberBadChannel(model, heatersMove, bad);
  return bad;
}

}  // namespace orvmesh::transfer
