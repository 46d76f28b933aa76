#pragma once

#include <vector>

#include <QString>

#include "history/snapshot_codec.h"

namespace sky {
class ReferenceData;
}

namespace sky::stats {

// A made-up day of one network, built from its demo feed, so the charts show the shapes of a real day
// without a network: fewer people online at night, more in the evening (UTC). Every pilot with a
// known departure and destination flies legs between the two, back and forth, each from boarding at
// the gate through climb, cruise at its filed level, descent and taxi-in, with a break offline between
// legs (a flight of more than four hours flown faster); a pilot flies a leg, and a station opens for a
// block of hours, with a chance that grows with the hour's Activity (its square). The same feed and
// time always give the same text.
class DemoDay {
public:
    DemoDay(int network, const QString& feedText, const ReferenceData& reference);

    // The network's whazzup text at utc (seconds since 1970): its UPDATE line the time, the clients
    // online then, where they are.
    QString At(qint64 utc) const;

    // The share of the network's people online at utc: from 0.1 at 06Z to 1 at 18Z.
    static double Activity(qint64 utc);

private:
    struct Client {
        int Index = 0;      // in the feed's clients
        QString ReturnLine; // a pilot's line flying back: departure and destination swapped
        bool Flies = false; // a pilot with both airports known
        float DepLat = 0, DepLon = 0, DestLat = 0, DestLon = 0;
        int CruiseFt = 0, CruiseKt = 0;
        qint64 LegSeconds = 0; // a leg from boarding to on blocks, and the break after it
        qint64 BreakSeconds = 0;
        qint64 PhaseSeconds = 0;
        quint32 Seed = 0;
    };
    // Whether the client is online at utc; where it is then.
    bool Place(const Client& c, qint64 utc, history::ClientPosition& p, bool& returning) const;

    int m_network;
    history::SplitSnapshot m_feed;
    std::vector<Client> m_clients;
};

} // namespace sky::stats
