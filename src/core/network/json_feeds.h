#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

#include "geo/geodesy.h"
#include "network/prefiles.h"

// Today's networks publish JSON. These translations turn a feed into the lines of that network's
// whazzup text layout, so the one interpreter reads both.
namespace sky::network {

// UnknownJson: a JSON document of another layout; Unreadable: one that is no whole JSON document.
enum class FeedKind { Text, VatsimV3, IvaoV2, UnknownJson, Unreadable };

// What a downloaded body is: whazzup text, or one of the JSON feeds.
FeedKind DetectFeed(const QByteArray& body);

struct TranslatedFeed {
    bool Ok = false;               // the document was a feed of its kind
    QString Text;                  // whazzup lines, CR LF between them
    QString UpdateStamp;           // yyyymmddhhmmss of the feed's own time
    int ReloadMinutes = 1;         // the feed's reload, else 1
    std::vector<Prefile> Prefiles; // VATSIM's flight plans of members not yet connected
};

// Station positions from VATSIM's transceivers file: the centre of each callsign's transceivers.
QHash<QString, geo::LatLon> ParseVatsimTransceivers(const QByteArray& json);

// VATSIM's v3 data: pilots, controllers and ATIS stations as lines of network 1's layout; controllers
// stand at the centre of their transceivers when known.
TranslatedFeed TranslateVatsimV3(const QByteArray& json,
                                 const QHash<QString, geo::LatLon>& transceivers = {});

// IVAO's v2 whazzup: pilots, controllers, observers and follow-me cars as lines of network 0's layout.
TranslatedFeed TranslateIvaoV2(const QByteArray& json);

// An ISO 8601 time ("2026-11-21T14:23:05.123Z") as yyyymmddhhmmss in UTC; empty when unreadable.
QString StampFromIso(const QString& iso);

} // namespace sky::network
