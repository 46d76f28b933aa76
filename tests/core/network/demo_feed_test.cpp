#include <set>

#include <gtest/gtest.h>

#include "common/file_io.h"
#include "common/text_codec.h"
#include "network/classification.h"
#include "network/gunzip.h"
#include "network/status_file.h"
#include "network/whazzup.h"
#include "refdata/reference_data.h"

using namespace Qt::StringLiterals;

namespace sky::network {
namespace {

// The bundled demo feeds are what a user without internet sees: they must read like the real thing.
class DemoFeed : public ::testing::TestWithParam<int> {
protected:
    static void SetUpTestSuite() {
        s_reference =
            new ReferenceData(ReferenceData::Load(QStringLiteral(SKYLANTRA_SOURCE_DIR) + u"/data"_s));
    }
    static void TearDownTestSuite() {
        delete s_reference;
        s_reference = nullptr;
    }

    static QString Folder(int network) {
        return QStringLiteral(SKYLANTRA_SOURCE_DIR) +
               (network == 0 ? u"/data/demo/ivao/"_s : u"/data/demo/vatsim/"_s);
    }

    static inline ReferenceData* s_reference = nullptr;
};

TEST_P(DemoFeed, HoldsRealisticTrafficInEveryPhase) {
    const int network = GetParam();
    const auto packed = ReadWholeFile(Folder(network) + u"whazzup.txt.gz"_s);
    const auto plain = ReadWholeFile(Folder(network) + u"whazzup.txt"_s);
    ASSERT_TRUE(packed && plain);
    EXPECT_EQ(GunzipBytes(*packed), *plain);
    const DecodedText text = DecodeText(*plain);
    EXPECT_EQ(text.Encoding, network == 0 ? TextEncoding::Windows1252 : TextEncoding::Utf8);

    NetworkData data;
    const InterpretResult result =
        InterpretWhazzup(network, text.Text, *s_reference, data, QDateTime::currentDateTime());
    EXPECT_TRUE(result.HasClients);
    EXPECT_EQ(data.UpdateStamp, u"20261121142300");
    EXPECT_EQ(data.PilotCount, network == 0 ? 900 : 1300);
    EXPECT_EQ(data.ControllerCount, network == 0 ? 300 : 450);
    EXPECT_GE(data.ObserverCount, 6);

    std::set<QString> statuses;
    int homeBases = 0, withoutPlan = 0;
    for (int slot = 1; slot <= data.PilotCount; ++slot) {
        const PilotRecord& pilot = data.Pilots[slot];
        statuses.insert(FlightStatus(pilot));
        homeBases += pilot.HomeBase.isEmpty() ? 0 : 1;
        withoutPlan += pilot.DestAirport.isEmpty() ? 1 : 0;
        EXPECT_FALSE(pilot.RealName.contains(u'°'));
    }
    EXPECT_EQ(statuses,
              (std::set<QString>{u"Boarding"_s, u"Departing"_s, u"Climbing"_s, u"En route"_s, u"Descending"_s,
                                 u"Approach"_s, u"Landed"_s, u"On blocks"_s, u"Diverted"_s, u"Unknown"_s}));
    EXPECT_GT(homeBases, 50);
    EXPECT_GT(withoutPlan, 10);

    int atisWithBreaks = 0, placed = 0, supervisors = 0, stations = 0;
    for (int slot = 1; slot <= data.ControllerCount; ++slot) {
        const ControllerRecord& c = data.Controllers[slot];
        atisWithBreaks += c.AtisMessage.contains(u"^§"_s) ? 1 : 0;
        supervisors += c.AdminRating > 10 ? 1 : 0;
        if (c.FacilityType >= kFacilityAtis) {
            ++stations;
            placed += c.DisplayLatitude != c.Latitude ? 1 : 0;
        }
    }
    EXPECT_GT(atisWithBreaks, 10);
    EXPECT_GE(supervisors, 3);
    EXPECT_GT(placed, stations * 9 / 10); // stations are drawn at their airport or FIR centre
}

INSTANTIATE_TEST_SUITE_P(BothNetworks, DemoFeed, ::testing::Values(0, 1),
                         [](const auto& test) { return test.param == 0 ? "IVAO" : "VATSIM"; });

} // namespace
} // namespace sky::network
