#include <array>

#include "transfer/rules/header_rules.h"

namespace orvmesh::transfer {
namespace {

using T = Tally;

// The channel elements become the plastic elements of the target.
constexpr std::array kChannelRows{
    copied(0, 3),
    copiedFrom(m_HEADER_NElemP, m_HEADER_NElemP, m_HEADER_NElemC),
    is(m_HEADER_NElemM, m_HEADER_NElemC, 0),
    tally(m_HEADER_NElemS, T::ChannelFaces),
    is(8, 9, 0),
    copied(m_HEADER_NElemSC, m_HEADER_NNode),
    is(13, 14, 0),
    copiedFrom(m_HEADER_NMatP, m_HEADER_NMatP, m_HEADER_NMatC),
    is(m_HEADER_NMatM, m_HEADER_NMatC, 0),
    copied(m_HEADER_NMatI),
    is(19, 22, 0),
    copied(23, 26),
    is(27, 28, 0),
    copied(m_HEADER_ScaleFactor),
    tally(30, T::SecondLengthFactor),
    is(31, 32, 0),
    is(36, 41, 0),
    tally(m_HEADER_NCCGroup, T::ChannelGroups),
};
static_assert(ascendingAndDisjoint(kChannelRows));

constexpr std::array kPartInsertRows{
    source(m_HEADER_NElemP, plus(T::InsertElements)),
    source(m_HEADER_NElemM, minus(T::InsertElements)),
    source(m_HEADER_NElemS, plus(T::OtherContacts), minus(T::InteriorContacts)),
    is(8, 9, 0),
    tally(27, T::NumberedWithList),
    tally(48, T::BadPlastic),
    tally(49, T::BadMold),
    tally(50, T::BadChannel),
};
static_assert(ascendingAndDisjoint(kPartInsertRows));

constexpr std::array kPartInsertAndChannelRows{
    source(m_HEADER_NElemP, plus(T::InsertElements)),
    source(m_HEADER_NElemM, minus(T::InsertElements), plus(T::HeaterElements)),
    source(m_HEADER_NElemC, minus(T::HeaterElements)),
    source(m_HEADER_NElemS, plus(T::OtherContacts), minus(T::InteriorContacts), minus(T::HeaterWallFaces)),
    is(8, 9, 0),
    source(m_HEADER_NElemSC, minus(T::HeaterWallFaces)),
    source(m_HEADER_NMatM, plus(T::HeaterGroups)),
    tally(27, T::NumberedWithList),
    tally(48, T::BadPlastic),
    tally(49, T::BadMold),
    tally(50, T::BadChannel),
};
static_assert(ascendingAndDisjoint(kPartInsertAndChannelRows));

constexpr std::array kHotRunnerRows{
    copied(0, 3),
    tally(m_HEADER_NElemP, T::HotRunnerElements),
    is(m_HEADER_NElemM, m_HEADER_NElemC, 0),
    tally(m_HEADER_NElemS, T::HotRunnerFaces),
    is(8, 11, 0),
    copied(m_HEADER_NNode),
    is(13, 14, 0),
    copied(m_HEADER_NMatP),
    is(m_HEADER_NMatM, 22, 0),
    copied(23, 26),
    tally(27, T::HotRunnerNodeEntries),
    tally(28, T::HotRunnerNodes),
    copied(m_HEADER_ScaleFactor),
    copiedFrom(30, 30, 33),
    is(31, 41, 0),
    copied(42, 48),
    is(49, 50, 0),
    copied(51, 54),
    is(m_HEADER_NLayerMM, m_HEADER_NLayerCC, 0),
    copied(59, 62),
    bytesFrom(63, 37),  // nine fields and the first byte of field 72 (quirk 5)
    is(m_HEADER_NCCGroup, 1),
    copied(75, 77),
    is(108, 1),
    copied(118),
};
static_assert(ascendingAndDisjoint(kHotRunnerRows));

constexpr std::array kStreamLineRows{
    is(8, 9, 0),
    tally(48, T::BadPlastic),
    tally(49, T::BadMold),
    tally(50, T::BadChannel),
};
static_assert(ascendingAndDisjoint(kStreamLineRows));

// The mold elements become the plastic elements of the target, mold metals become part inserts.
constexpr std::array kMoldBaseRows{
    atLeast(m_HEADER_Version, 2009),
    copied(1, 3),
    copiedFrom(m_HEADER_NElemP, m_HEADER_NElemP, m_HEADER_NElemM),
    is(m_HEADER_NElemM, m_HEADER_NElemC, 0),
    tally(m_HEADER_NElemS, T::MoldBaseFaces),
    is(8, 9, 0),
    is(11, 0),
    copied(m_HEADER_NNode, 14),
    copiedFrom(m_HEADER_NMatP, m_HEADER_NMatP, m_HEADER_NMatM),
    is(m_HEADER_NMatM, m_HEADER_NMatC, 0),
    copiedFrom(m_HEADER_NMatI, m_HEADER_NMatI, m_HEADER_NMatM),
    copied(19, 26),
    copied(m_HEADER_ScaleFactor),
    copiedFrom(30, 30, 31),
    copied(31, 41),
    copiedFrom(42, 47, 36),  // a second time
    tally(48, T::BadPlastic),
    is(49, 50, 0),
    copied(51, 54),
    is(m_HEADER_NLayerMM, 0),
    copiedFrom(m_HEADER_NLayerPI, m_HEADER_NLayerPI, m_HEADER_NLayerMM),
    copied(m_HEADER_NLayerCC),
    copied(59, 62),
    bytesFrom(63, 37),
    copiedFrom(m_HEADER_NCCGroup, m_HEADER_NCCGroup, 20),
    copied(75, 77),
    copied(118),
};
static_assert(ascendingAndDisjoint(kMoldBaseRows));

}  // namespace

constinit const HeaderRule kChannelHeader{Unlisted::CopySource, kChannelRows};
constinit const HeaderRule kPartInsertHeader{Unlisted::CopySource, kPartInsertRows};
constinit const HeaderRule kPartInsertAndChannelHeader{Unlisted::CopySource, kPartInsertAndChannelRows};
constinit const HeaderRule kHotRunnerHeader{Unlisted::KeepWriter, kHotRunnerRows};
constinit const HeaderRule kStreamLineHeader{Unlisted::CopySource, kStreamLineRows};
constinit const HeaderRule kMoldBaseHeader{Unlisted::KeepWriter, kMoldBaseRows};

}  // namespace orvmesh::transfer
