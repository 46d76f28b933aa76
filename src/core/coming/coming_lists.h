#pragma once

#include <vector>

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QStringList>

// What is coming on VATSIM besides the traffic: controller bookings and events, as their public
// services publish them. Parsers take the answer's bytes and return values; they never fail.
namespace sky::coming {

// A controller's booking of a position: callsign, member, from Start to End (UTC).
struct Booking {
    qint64 Id = 0;
    QString Callsign; // upper case, "EDDF_TWR"
    QString Member;
    QString Type; // "booking", "event", "training", "exam", as the service names it
    QDateTime Start;
    QDateTime End;
    QString Division;
    QString Subdivision;
};

struct EventRoute {
    QString Departure;
    QString Arrival;
    QString Route;
};

// An event of the network: its name, from Start to End (UTC), its airports (ICAO, upper case) in the
// service's order, routes, and the addresses of its banner and page.
struct Event {
    qint64 Id = 0;
    QString Name;
    QDateTime Start;
    QDateTime End;
    QStringList Airports;
    std::vector<EventRoute> Routes;
    QString Banner;
    QString Link;
};

// A list read from a service's answer. Ok false: the answer was no such list at all (Problem says
// why, e.g. an HTML page) and nothing was read. Else Items holds the entries that could be read,
// soonest first, at most the list's limit; Entries counts what the answer held, LeftOut the entries
// that could not be read (a missing or wrong field, a time without a zone, an end before the start).
template <typename Item> struct ParsedList {
    bool Ok = false;
    QString Problem;
    std::vector<Item> Items;
    int Entries = 0;
    int LeftOut = 0;
};

inline constexpr int kMostBookings = 10000;
inline constexpr int kMostEvents = 1000;

// The bookings service's answer: an array of {id, callsign, cid, type, start, end, division,
// subdivision}. An entry needs a callsign (a text) and a start before its end.
ParsedList<Booking> ParseBookings(const QByteArray& json);

// The events service's answer: {data: [{id, name, start_time, end_time, airports: [{icao}], routes:
// [{departure, arrival, route}], banner, link}]}. An event needs a name (a text) and a start before
// its end.
ParsedList<Event> ParseEvents(const QByteArray& json);

} // namespace sky::coming
