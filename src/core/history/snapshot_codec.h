#pragma once

#include <cstdint>
#include <vector>

#include <QString>
#include <QStringList>

namespace sky::history {

// Where a client was in one snapshot: the fields of its line that move from one download to the next.
// Positions in millionths of a degree, altitude in feet, speed in knots, heading in whole degrees.
struct ClientPosition {
    QString Callsign;
    QString Member;
    bool Pilot = true;
    std::int32_t LatMicro = 0;
    std::int32_t LonMicro = 0;
    std::int32_t AltitudeFt = 0;
    std::int32_t SpeedKt = 0;
    std::int32_t Heading = 0;
};

// A snapshot taken apart for keeping: the lines that are no client lines as they are, with a mark
// where each client line stood; each client line, a pilot's without its moving fields (which change at
// every download, while the rest of the line seldom does, so it can be kept once for many snapshots);
// and where each client was, in the same order.
struct SplitSnapshot {
    QStringList Frame;       // other lines, and kClientMark for each client line
    QStringList StaticLines; // the client lines, a pilot's moving fields empty
    std::vector<ClientPosition> Positions;
};
inline const QString kClientMark = QStringLiteral("\x1F");

// Takes a whazzup text of network (0 or 1) apart. A pilot's moving fields are the latitude, longitude,
// altitude, ground speed and heading; a station's line is kept whole.
SplitSnapshot Split(int network, const QString& text);

// One client line put together again from its kept line and its position.
QString JoinLine(int network, const QString& staticLine, const ClientPosition& position);

// Puts a snapshot together again: the text the interpreter reads as it read the first, but for
// fractions beyond a millionth of a degree, a foot or a knot. Lines end in CR LF.
QString Join(int network, const SplitSnapshot& snapshot);

} // namespace sky::history
