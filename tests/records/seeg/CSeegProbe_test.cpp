#include "megset/records/seeg/CSeegProbe.h"

#include "megset/platform/CException.h"

#include "tests/kit/FailingAllocator.h"
#include "tests/kit/recordContract.h"

#include <cmath>
#include <limits>
#include <set>

namespace megset::CSeegProbe_test {
namespace {

struct ContactCase
{
    using Record = CSeegContactzk;
    static constexpr std::string_view tag = "SEEGCONTACTZK";
    static constexpr std::string_view page = "seeg.md";
    static constexpr std::string_view name = "CSeegContactzk";
    static Record filled()
    {
        Record contact;
        contact.m_nContactChnlID = 12;
        contact.m_dContactX = 1.0;
        contact.m_dContactY = 2.0;
        contact.m_dContactZ = 3.0;
        contact.m_dContactSize = 4.0;
        contact.m_strContactName = "A1";
        contact.m_strContactChnlName = "EEG012";
        contact.m_nContactRow = 5;
        return contact;
    }
};

struct ProbeCase
{
    using Record = CSeegProbezk;
    static constexpr std::string_view tag = "SEEGPROBEZK";
    static constexpr std::string_view page = "seeg.md";
    static constexpr std::string_view name = "CSeegProbezk";
    static Record filled()
    {
        Record probe;
        probe.m_dProbeBase = {1.0, 2.0, 3.0};
        probe.m_dBaseSize = 4.0;
        probe.m_dProbeTip = {5.0, 6.0, 7.0};
        probe.m_dTipSize = 8.0;
        probe.m_dPointing = {9.0, 10.0, 11.0};
        probe.m_dExtension = 12.0;
        probe.m_nProbeMode = 3;
        probe.m_bBaseSet = 1;
        probe.m_bTipSet = 2;
        probe.m_bProbeVisible = 3;
        probe.m_nProbeSize2D = 4;
        probe.m_bShowContacts = 0;
        probe.m_nContactSize2D = 6;
        probe.m_dContactSize3D = 7.5;
        probe.m_nPenSize = 9;
        probe.m_strProbeName = "A";
        probe.m_aContacts.addCopy(ContactCase::filled());
        probe.m_aContacts.Add(nullptr);
        probe.m_aContacts.addCopy({});
        probe.m_nCurrentContact = 2;
        probe.m_dContactDist = 5.0;
        probe.m_nProbeRow = 1;
        probe.m_nProbeColor = 0x112233;
        probe.m_nContactColor = 0x445566;
        return probe;
    }
};

using SeegTypes = ::testing::Types<ContactCase, ProbeCase>;
INSTANTIATE_TYPED_TEST_SUITE_P(Seeg, RecordContract, SeegTypes);

using Point = std::array<double, 3>;

Point placeOf(const CSeegContact& contact)
{
    return {contact.m_dContactX, contact.m_dContactY, contact.m_dContactZ};
}

// Along z, so that a contact's z is its distance from the tip.
CSeegProbezk upright(int mode)
{
    CSeegProbezk probe;
    probe.m_strProbeName = "B";
    probe.m_dProbeBase = {0.0, 0.0, 80.0};
    probe.m_dProbeTip = {0.0, 0.0, 0.0};
    probe.setProbeMode(mode);
    return probe;
}

ByteBuilder filledContact()
{
    ByteBuilder bytes;
    bytes.wide("SEEGCONTACTZK").i32(20261121).i32(12).doubles({1.0, 2.0, 3.0, 4.0}).wide("A1").wide("EEG012").i32(5);
    return bytes;
}

TEST(CSeegProbe, ContactWritesTheseBytes)
{
    EXPECT_TRUE(sameBytes(recordBytes(ContactCase::filled()), filledContact()));
}

TEST(CSeegProbe, WritesTheseBytes)
{
    ByteBuilder bytes;
    bytes.wide("SEEGPROBEZK").i32(20261121);
    for (int i = 1; i <= 12; ++i)
        bytes.f64(i);
    bytes.i32(3).i32(1).i32(2).i32(3).i32(4).i32(0).i32(6).f64(7.5).i32(9).wide("A");
    bytes.i32(3).i32(1).append(filledContact()).i32(0).i32(1).raw(recordBytes(CSeegContactzk()));
    bytes.i32(2).f64(5.0).i32(1).u32(0x112233).u32(0x445566);
    EXPECT_TRUE(sameBytes(recordBytes(ProbeCase::filled()), bytes));
}

TEST(CSeegProbe, NewProbeHasTheSetupDefaults)
{
    const CSeegProbezk probe;
    EXPECT_EQ(probe.m_dProbeBase, (Point{30.0, 30.0, 30.0}));
    EXPECT_EQ(probe.m_dProbeTip, (Point{}));
    EXPECT_EQ(probe.m_dBaseSize, 9.0);
    EXPECT_EQ(probe.m_dTipSize, 6.0);
    EXPECT_EQ(probe.m_dExtension, 10.0);
    EXPECT_EQ(probe.m_nProbeMode, 1);
    EXPECT_EQ(probe.m_bProbeVisible, 0);
    EXPECT_EQ(probe.m_nContactSize2D, 3);
    EXPECT_EQ(probe.m_dContactSize3D, 8.0);
    EXPECT_EQ(probe.m_nPenSize, 2);
    EXPECT_EQ(probe.getTotalContacts(), 0);
    EXPECT_EQ(CSeegContactzk().m_nContactChnlID, -1);
}

TEST(CSeegProbe, FileWithAnUnknownModeIsRefused)
{
    for (const int mode : {-1, 5}) {
        CSeegProbezk stored = ProbeCase::filled();
        stored.m_nProbeMode = mode;
        CSeegProbezk probe;
        EXPECT_EQ(loadRecord(probe, recordBytes(stored)), 0);
    }
}

TEST(CSeegProbe, ContactWithoutMemoryEndsLoadingWithZero)
{
    const ScriptedHost host;
    const auto bytes = recordBytes(ProbeCase::filled());
    const FailingAllocator failing(2);
    CSeegProbezk probe;
    EXPECT_EQ(loadRecord(probe, bytes), 0);
}

TEST(CSeegProbe, ContactsAreFoundByIndexAndTheCurrentByMinusOne)
{
    CSeegProbezk probe = ProbeCase::filled();
    EXPECT_EQ(probe.getContact(0), probe.m_aContacts.GetAt(0));
    EXPECT_EQ(probe.getContact(1), nullptr);
    EXPECT_EQ(probe.getContact(-1), probe.m_aContacts.GetAt(2));
    EXPECT_THROW(probe.getContact(3), CInvalidArgException);
    EXPECT_THROW(probe.getContact(-2), CInvalidArgException);
    probe.m_nCurrentContact = 3;
    EXPECT_EQ(probe.getContact(-1), nullptr);
    probe.m_nCurrentContact = -1;
    EXPECT_EQ(probe.getContact(-1), nullptr);
    EXPECT_EQ(CSeegProbezk().getContact(-1), nullptr);
}

TEST(CSeegProbe, PointsBeyondTheTipByAPartOfItsLength)
{
    CSeegProbezk probe;
    EXPECT_EQ(probe.computeExtend(), 1); // base 30, 30, 30, tip 0, 0, 0, 10 %
    EXPECT_EQ(probe.m_dPointing, (Point{-3.0, -3.0, -3.0}));
    probe.m_dProbeTip = {10.0, 30.0, 50.0};
    probe.m_dExtension = 50.0;
    EXPECT_EQ(probe.computeExtend(), 1);
    EXPECT_EQ(probe.m_dPointing, (Point{0.0, 30.0, 60.0}));
}

TEST(CSeegProbe, WithoutLengthPointsToItsTip)
{
    CSeegProbezk probe;
    probe.m_dProbeTip = probe.m_dProbeBase;
    EXPECT_EQ(probe.computeExtend(), 0);
    EXPECT_EQ(probe.m_dPointing, probe.m_dProbeTip);
    EXPECT_EQ(probe.computeContactPos(), 0);
}

TEST(CSeegProbe, ModelsTellTheirNumbersInTheirNames)
{
    for (std::size_t i = 1; i < g_aSeegProbeModel.size(); ++i) {
        const SeegProbeModel& model = g_aSeegProbeModel[i];
        const CString end =
            CString::formatted("-%dP%.1fD%.1fB%.1f", model.contacts, model.diameter, model.distance, model.length);
        EXPECT_GE(CString(model.name).Find(end), 0) << model.name;
    }
    EXPECT_EQ(g_aSeegProbeModel[0].name, "User Defined 2P+N");
}

TEST(CSeegProbe, EveryModelStandsFromTipToItsLength)
{
    const std::array<int, 5> counts{0, 8, 10, 12, 16};
    for (int mode = 1; mode <= 4; ++mode) {
        CSeegProbezk probe = upright(mode);
        ASSERT_EQ(probe.computeContactPos(), 1);
        ASSERT_EQ(probe.getTotalContacts(), counts[static_cast<std::size_t>(mode)]);
        for (int i = 0; i < probe.getTotalContacts(); ++i) {
            const Point at = placeOf(*probe.getContact(i));
            EXPECT_EQ(at[0], 0.0);
            EXPECT_EQ(at[1], 0.0);
            EXPECT_NEAR(at[2], 1.0 + 3.5 * i, 1e-12) << "contact " << i << " of mode " << mode;
        }
        // The last contact's far end: another half of a contact.
        const double length = g_aSeegProbeModel[static_cast<std::size_t>(mode)].length;
        EXPECT_NEAR(placeOf(*probe.getContact(probe.getTotalContacts() - 1))[2] + 1.0, length, 1e-12);
    }
}

TEST(CSeegProbe, ContactsLieOnASlantingLine)
{
    CSeegProbezk probe;
    probe.m_dProbeTip = {10.0, -5.0, 2.0};
    probe.m_dProbeBase = {10.0 + 30.0, -5.0 + 40.0, 2.0}; // 50 mm, direction 0.6, 0.8, 0
    ASSERT_EQ(probe.computeContactPos(), 1);
    const Point third = placeOf(*probe.getContact(2)); // 8 mm from the tip
    EXPECT_NEAR(third[0], 14.8, 1e-12);
    EXPECT_NEAR(third[1], 1.4, 1e-12);
    EXPECT_NEAR(third[2], 2.0, 1e-12);
}

TEST(CSeegProbe, NewContactsAreNamedByProbeAndNumber)
{
    CSeegProbezk probe = upright(1);
    EXPECT_EQ(probe.getContact(0)->m_strContactName, CString("B1"));
    EXPECT_EQ(probe.getContact(7)->m_strContactName, CString("B8"));
    EXPECT_EQ(probe.getContact(7)->m_dContactSize, 0.8);
}

TEST(CSeegProbe, ChangingTheModelKeepsTheContactsThatStay)
{
    CSeegProbezk probe = upright(1);
    probe.getContact(3)->m_nContactChnlID = 40;
    probe.getContact(3)->m_strContactName = "mine";
    EXPECT_EQ(probe.setProbeMode(4), 1);
    EXPECT_EQ(probe.getTotalContacts(), 16);
    EXPECT_EQ(probe.getContact(3)->m_nContactChnlID, 40);
    probe.m_nCurrentContact = 15;
    EXPECT_EQ(probe.setProbeMode(1), 1);
    EXPECT_EQ(probe.getTotalContacts(), 8);
    EXPECT_EQ(probe.getContact(3)->m_strContactName, CString("mine"));
    EXPECT_EQ(probe.m_nCurrentContact, 7);
}

TEST(CSeegProbe, UserModeKeepsTheContacts)
{
    CSeegProbezk probe = upright(2);
    EXPECT_EQ(probe.setProbeMode(0), 1);
    EXPECT_EQ(probe.m_nProbeMode, 0);
    EXPECT_EQ(probe.getTotalContacts(), 10);
}

TEST(CSeegProbe, UnknownModeAndMissingMemoryChangeNothing)
{
    CSeegProbezk probe = upright(1);
    const CSeegProbezk before = probe;
    EXPECT_EQ(probe.setProbeMode(-1), 0);
    EXPECT_EQ(probe.setProbeMode(5), 0);
    const FailingAllocator failing(3);
    EXPECT_EQ(probe.setProbeMode(4), 0);
    EXPECT_EQ(probe, before);
}

TEST(CSeegProbe, ContactsWithoutMemoryAreNotPlaced)
{
    CSeegProbezk probe;
    const FailingAllocator failing(1);
    EXPECT_EQ(probe.computeContactPos(), 0);
    EXPECT_EQ(probe.getTotalContacts(), 0);
}

TEST(CSeegProbe, UserContactsStandFromTheTipOn)
{
    CSeegProbezk probe = upright(4);
    EXPECT_EQ(probe.setUserContact(3, 5.0), 1);
    EXPECT_EQ(probe.m_nProbeMode, 0);
    ASSERT_EQ(probe.getTotalContacts(), 3);
    EXPECT_EQ(placeOf(*probe.getContact(0)), (Point{0.0, 0.0, 0.0}));
    EXPECT_EQ(placeOf(*probe.getContact(2)), (Point{0.0, 0.0, 10.0}));
    probe.m_dProbeTip = {0.0, 0.0, 20.0};
    EXPECT_EQ(probe.computeContactPos(), 1);
    EXPECT_EQ(placeOf(*probe.getContact(2)), (Point{0.0, 0.0, 30.0}));
}

TEST(CSeegProbe, UserContactsMayBeNoneAndNeedALikelyCountAndDistance)
{
    CSeegProbezk probe = upright(1);
    const CSeegProbezk before = probe;
    EXPECT_EQ(probe.setUserContact(-1, 3.5), 0);
    EXPECT_EQ(probe.setUserContact(1025, 3.5), 0);
    EXPECT_EQ(probe.setUserContact(2, 0.0), 0);
    EXPECT_EQ(probe.setUserContact(2, -1.0), 0);
    EXPECT_EQ(probe.setUserContact(2, std::numeric_limits<double>::quiet_NaN()), 0);
    EXPECT_EQ(probe.setUserContact(2, std::numeric_limits<double>::infinity()), 0);
    EXPECT_EQ(probe, before);
    {
        const FailingAllocator failing(1);
        EXPECT_EQ(probe.setUserContact(9, 3.5), 0);
        EXPECT_EQ(probe, before);
    }
    EXPECT_EQ(probe.setUserContact(0, 3.5), 1);
    EXPECT_EQ(probe.getTotalContacts(), 0);
}

TEST(CSeegProbe, UserContactsAreMadeBeforeThereIsALine)
{
    CSeegProbezk probe;
    probe.m_dProbeTip = probe.m_dProbeBase;
    EXPECT_EQ(probe.setUserContact(2, 3.5), 1);
    EXPECT_EQ(probe.getTotalContacts(), 2);
    EXPECT_EQ(placeOf(*probe.getContact(1)), (Point{0.0, 0.0, 0.0}));
}

TEST(CSeegProbe, PlacingPassesOverMissingContacts)
{
    CSeegProbezk probe = ProbeCase::filled();
    probe.m_nProbeMode = 0;
    EXPECT_EQ(probe.computeContactPos(), 1);
    EXPECT_EQ(placeOf(*probe.getContact(0)), (Point{5.0, 6.0, 7.0}));
    EXPECT_EQ(probe.getContact(1), nullptr);
}

TEST(CSeegProbe, LineThatIsNoNumberPlacesNothing)
{
    CSeegProbezk probe = upright(1);
    probe.m_dProbeTip[0] = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(probe.computeContactPos(), 0);
    EXPECT_EQ(placeOf(*probe.getContact(7)), (Point{0.0, 0.0, 0.0}));
}

TEST(CSeegProbe, ColorsGoRoundAPaletteOfSeven)
{
    CSeegProbezk probe;
    const std::uint32_t first = probe.m_nProbeColor;
    std::set<std::uint32_t> seen;
    for (int i = 0; i < 7; ++i) {
        seen.insert(probe.m_nProbeColor);
        EXPECT_EQ(probe.setupProbeColor(), 1);
    }
    EXPECT_EQ(seen.size(), 7U);
    EXPECT_EQ(probe.m_nProbeColor, first);
    probe.m_nContactColor = 0x123456; // of the user's own
    EXPECT_EQ(probe.setupContactColor(), 1);
    EXPECT_EQ(probe.m_nContactColor, first);
}

} // namespace
} // namespace megset::CSeegProbe_test
