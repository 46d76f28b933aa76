#pragma once

#include <vector>

#include <QJsonValue>
#include <QString>

namespace sky::network {

// A flight plan filed by a VATSIM member who is not connected yet (the v3 feed's prefiles[]). A table
// of its own: prefiles are no clients, so nothing that counts or answers about clients sees them.
struct Prefile {
    QString Callsign; // upper case
    QString Member;   // the member number (cid)
    QString Name;
    QString FlightRules;
    QString Aircraft;
    QString Departure; // ICAO codes, upper case
    QString Arrival;
    QString Alternate;
    QString CruiseSpeed; // as filed, e.g. "450"
    QString Altitude;    // as filed, e.g. "35000" or "FL350"
    QString DepTime;     // "hhmm" UTC as filed; empty when it is none
    QString EnrouteTime; // "hhmm"
    QString Route;
    QString Remarks;
};

// The most prefiles kept; a feed with more is cut there.
inline constexpr int kMostPrefiles = 5000;

// The prefiles of the feed's prefiles[] array in its order, at most kMostPrefiles: an entry without a
// callsign (a text) or without a flight plan object that names a departure is left out; a departure
// time that is no time of day, or a time en route that is no hhmm, reads as none. Anything that is no
// array gives none.
std::vector<Prefile> ParsePrefiles(const QJsonValue& prefiles);

} // namespace sky::network
