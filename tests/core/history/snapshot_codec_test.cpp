#include "history/snapshot_codec.h"

#include <gtest/gtest.h>

#include "common/file_io.h"
#include "history/history_store.h"
#include "network/whazzup.h"
#include "refdata/reference_data.h"

using namespace Qt::StringLiterals;

namespace sky::history {
namespace {

// A snapshot taken apart and put together again reads as the one downloaded: every client where it was.
TEST(SnapshotCodec, AJoinedSnapshotReadsAsTheOriginal) {
    const QString demo = QStringLiteral(SKYLANTRA_SOURCE_DIR) + u"/data/demo/"_s;
    ReferenceData reference;
    for (int n : {0, 1}) {
        SCOPED_TRACE(n);
        const QString text =
            QString::fromUtf8(ReadWholeFile(demo + (n == 0 ? u"ivao/whazzup.txt"_s : u"vatsim/whazzup.txt"_s))
                                  .value_or(QByteArray()));
        const SplitSnapshot split = Split(n, text);
        ASSERT_EQ(split.Positions.size(), size_t(split.StaticLines.size()));
        EXPECT_GT(split.Positions.size(), 1000u);
        network::NetworkData original, again;
        network::InterpretWhazzup(n, text, reference, original, {});
        network::InterpretWhazzup(n, Join(n, split), reference, again, {});
        ASSERT_EQ(again.PilotCount, original.PilotCount);
        ASSERT_EQ(again.ControllerCount, original.ControllerCount);
        EXPECT_EQ(again.ConnectedClients, original.ConnectedClients);
        EXPECT_EQ(again.UpdateStamp, original.UpdateStamp);
        for (int slot = 1; slot <= original.PilotCount; ++slot) {
            const auto &a = original.Pilots[size_t(slot)], &b = again.Pilots[size_t(slot)];
            ASSERT_EQ(a.Callsign, b.Callsign);
            EXPECT_FLOAT_EQ(a.Latitude, b.Latitude);
            EXPECT_FLOAT_EQ(a.Longitude, b.Longitude);
            EXPECT_EQ(a.Altitude, b.Altitude);
            EXPECT_EQ(a.Heading, b.Heading);
            EXPECT_EQ(a.Route, b.Route);
        }
        for (int slot = 1; slot <= original.ControllerCount; ++slot)
            EXPECT_EQ(original.Controllers[size_t(slot)].AtisMessage,
                      again.Controllers[size_t(slot)].AtisMessage);
    }
}

TEST(SplitTrack, CutsWhereTheFlightWasGoneForMoreThanHalfAnHour) {
    const std::vector<TrackPoint> track = {{0}, {180}, {360}, {360 + 1800}, {360 + 1800 + 1801}, {4400}};
    const auto pieces = SplitTrack(track);
    ASSERT_EQ(pieces.size(), 2u);
    EXPECT_EQ(pieces[0].size(), 4u);
    EXPECT_EQ(pieces[1].size(), 2u);
    EXPECT_TRUE(SplitTrack({}).empty());
}

} // namespace
} // namespace sky::history
