#include "transfer/rules/header_rules.h"

#include <algorithm>
#include <cstring>

#include "base/checked.h"
#include "transfer/rules/tallies.h"
#include "transfer/solver_mesh_writer.h"

namespace orvmesh::transfer {
namespace {

// Header arithmetic wraps like the 32-bit words it is done on: a hostile source must not trap.
std::int32_t sumOf(std::int32_t value, const Term (&terms)[3], const COrvSolverMeshWriter& worker) {
  for (const Term& term : terms) {
    const std::int32_t part = tallyValue(term.tally, worker);
    value = term.sign < 0 ? wrappingDifference(value, part) : wrappingSum(value, part);
  }
  return value;
}

void applyRow(const HeaderRow& row, const OFEHeader& source, OFEHeader& target,
              const COrvSolverMeshWriter& worker) {
  const auto at = [](int field) { return static_cast<std::ptrdiff_t>(field); };
  switch (row.action) {
    case HeaderAction::Copy:
      std::copy_n(source.words.begin() + at(row.sourceFirst), row.last - row.first + 1,
                  target.words.begin() + at(row.first));
      break;
    case HeaderAction::Set:
      std::fill(target.words.begin() + at(row.first), target.words.begin() + at(row.last) + 1, row.constant);
      break;
    case HeaderAction::AtLeast:
      target[row.first] = std::max(source[row.sourceFirst], row.constant);
      break;
    case HeaderAction::Add:
      target[row.first] = sumOf(row.sourceFirst < 0 ? 0 : source[row.sourceFirst], row.terms, worker);
      break;
    case HeaderAction::CopyBytes:
      std::memcpy(&target.words[static_cast<std::size_t>(row.first)],
                  &source.words[static_cast<std::size_t>(row.sourceFirst)],
                  static_cast<std::size_t>(row.constant));
      break;
  }
}

std::string fieldRange(int first, int last) {
  return first == last ? std::to_string(first) : std::to_string(first) + ".." + std::to_string(last);
}

std::string describeRow(const HeaderRow& row) {
  std::string text = fieldRange(row.first, row.last) + " = ";
  switch (row.action) {
    case HeaderAction::Copy:
      return text + "source " + fieldRange(row.sourceFirst, row.sourceFirst + row.last - row.first);
    case HeaderAction::Set:
      return text + std::to_string(row.constant);
    case HeaderAction::AtLeast:
      return text + "source " + std::to_string(row.sourceFirst) + ", at least " +
             std::to_string(row.constant);
    case HeaderAction::CopyBytes:
      return text + std::to_string(row.constant) + " bytes from source " + std::to_string(row.sourceFirst) +
             " on";
    case HeaderAction::Add:
      break;
  }
  if (row.sourceFirst >= 0) text += "source " + std::to_string(row.sourceFirst);
  for (const Term& term : row.terms) {
    if (term.tally == Tally::None) continue;
    if (term.sign < 0 || &term != row.terms || row.sourceFirst >= 0) text += term.sign < 0 ? " - " : " + ";
    text += tallyName(term.tally);
  }
  return text;
}

}  // namespace

bool names(const HeaderRule& rule, int field) {
  return std::any_of(rule.rows.begin(), rule.rows.end(),
                     [field](const HeaderRow& row) { return row.first <= field && field <= row.last; });
}

void applyHeaderRule(const HeaderRule& rule, COrvSolverMeshWriter& worker) {
  const OFEHeader& source = worker.sourceHeader();
  OFEHeader& target = worker.writer.header;
  if (rule.unlisted == Unlisted::CopySource)
    std::copy_n(source.words.begin(), OFEHeader::kFirstBlockCount, target.words.begin());
  for (const HeaderRow& row : rule.rows) applyRow(row, source, target, worker);
  worker.writer.setHeaderSourceString(source.source);
  worker.writer.setHeaderDateTimeString(source.dateTime);
  worker.writer.setHeaderUnitString(source.unit);
  worker.writer.setHeaderRemarkString(source.remark);
}

std::string describeHeaderRule(const HeaderRule& rule) {
  std::string text;
  for (const HeaderRow& row : rule.rows) text += "| " + describeRow(row) + " |\n";
  text += rule.unlisted == Unlisted::CopySource ? "| other fields below 120 = source |\n"
                                                : "| other fields = 0 |\n";
  return text;
}

void traceChannelHeader(COrvSolverMeshWriter& worker) {
  const OFEHeader& source = worker.sourceHeader();
  const OFEHeader& target = worker.writer.header;
  worker.trace("m_oOFE.m_ofeReader.m_HEADER_NElemS =", source[m_HEADER_NElemS]);
  worker.trace("m_oOFE.m_ofeReader.m_HEADER_NElemSC =", source[m_HEADER_NElemSC]);
  worker.trace("m_HEADER_NElemS = ", target[m_HEADER_NElemS],
               "m_ofeWriter.m_HEADER_NElemSC = ", target[m_HEADER_NElemSC]);
  worker.trace("Ori NMatM=", source[m_HEADER_NMatM], "C Number=", source[m_HEADER_NMatC],
               ",m_NGroupHeater=", tallyValue(Tally::HeaterGroups, worker));
}

void traceMoldBaseHeader(COrvSolverMeshWriter& worker) {
  const OFEHeader& source = worker.sourceHeader();
  const OFEHeader& target = worker.writer.header;
  worker.trace("m_HEADER_NElemS = ", source[m_HEADER_NElemS], ",iCount = ", target[m_HEADER_NElemS]);
  worker.trace("m_oOFE.m_ofeReader.m_HEADER_NElemS  =", source[m_HEADER_NElemS]);
  worker.trace("m_oOFE.m_ofeReader.m_HEADER_NElemSC =", source[m_HEADER_NElemSC]);
  worker.trace("m_HEADER_NElemS = ", target[m_HEADER_NElemS],
               ", m_ofeWriter.m_HEADER_NElemSC = ", target[m_HEADER_NElemSC]);
  worker.trace("Ori NMatM=", source[m_HEADER_NMatM], ", C Number=", source[m_HEADER_NMatC],
               ", m_NGroupHeater=", tallyValue(Tally::HeaterGroups, worker));
  worker.trace("m_ofeWriter.m_HEADER_NMatP=", target[m_HEADER_NMatP],
               ",m_ofeWriter.m_HEADER_NMatM=", target[m_HEADER_NMatM]);
  worker.trace("m_ofeWriter.m_HEADER_NMatC=", target[m_HEADER_NMatC],
               ",m_ofeWriter.m_HEADER_NMatI=", target[m_HEADER_NMatI]);
  worker.trace("Write m_HEADER_NLayerPI = ", target[m_HEADER_NLayerPI],
               ",m_oOFE.m_ofeReader.m_HEADER_NLayerCC=", source[m_HEADER_NLayerCC]);
}

}  // namespace orvmesh::transfer
