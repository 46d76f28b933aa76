#include <set>

#include <gtest/gtest.h>

#include "common/file_io.h"
#include "common/text_codec.h"
#include "network/classification.h"
#include "network/gunzip.h"
#include "network/whazzup.h"
#include "refdata/reference_data.h"

using namespace Qt::StringLiterals;

namespace sky::network {
namespace {

// The bundled demo feeds are what a user without internet sees: both files of a network read alike, in
// the network's own encoding, with traffic in every phase and stations where the map puts real ones.
// Their figures and flight plans are the terminal's tests, which answer from them.
TEST(DemoFeed, BothNetworksReadLikeTheRealThingInEveryPhase) {
    const QString data = QStringLiteral(SKYLANTRA_SOURCE_DIR) + u"/data"_s;
    const ReferenceData reference = ReferenceData::Load(data);
    for (int network : {0, 1}) {
        SCOPED_TRACE(network);
        const QString folder = data + (network == 0 ? u"/demo/ivao/"_s : u"/demo/vatsim/"_s);
        const auto packed = ReadWholeFile(folder + u"whazzup.txt.gz"_s);
        const auto plain = ReadWholeFile(folder + u"whazzup.txt"_s);
        ASSERT_TRUE(packed && plain);
        EXPECT_EQ(GunzipBytes(*packed), *plain);
        const DecodedText text = DecodeText(*plain);
        EXPECT_EQ(text.Encoding, network == 0 ? TextEncoding::Windows1252 : TextEncoding::Utf8);

        NetworkData tables;
        EXPECT_TRUE(InterpretWhazzup(network, text.Text, reference, tables, {}).HasClients);
        std::set<QString> statuses;
        for (int slot = 1; slot <= tables.PilotCount; ++slot)
            statuses.insert(FlightStatus(tables.Pilots[slot]));
        EXPECT_EQ(statuses, (std::set<QString>{u"Boarding"_s, u"Departing"_s, u"Climbing"_s, u"En route"_s,
                                               u"Descending"_s, u"Approach"_s, u"Landed"_s, u"On blocks"_s,
                                               u"Diverted"_s, u"Unknown"_s}));
        int placed = 0, stations = 0;
        for (int slot = 1; slot <= tables.ControllerCount; ++slot) {
            const ControllerRecord& c = tables.Controllers[slot];
            stations += c.FacilityType >= kFacilityAtis ? 1 : 0;
            placed += c.FacilityType >= kFacilityAtis && c.DisplayLatitude != c.Latitude ? 1 : 0;
        }
        EXPECT_GT(placed, stations * 9 / 10); // at their airport or FIR centre
    }
}

} // namespace
} // namespace sky::network
