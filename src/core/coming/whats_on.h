#pragma once

#include <functional>
#include <vector>

#include <QDateTime>
#include <QString>

#include "coming/coming_lists.h"
#include "network/client_records.h"
#include "network/prefiles.h"

// What the bookings, events and prefiles mean at a moment: what the boards, boxes, the events page, the
// map's marks and the watch list show of them. All times are UTC.
namespace sky::coming {

// How far ahead a board and a station's box show bookings, and the events page shows events.
inline constexpr qint64 kBookingsAheadSeconds = 24 * 3600;
inline constexpr qint64 kEventsAheadDays = 7;
// A watched position's booking is told as missed when the station is not online this long after its start.
inline constexpr qint64 kMissedAfterSeconds = 10 * 60;

// The moment the lists are read for: the time of VATSIM's data when it holds any (so a replay and the
// demo read them as of their data), else the clock.
QDateTime Moment(const network::NetworkData& vatsim, const QDateTime& clock);

// "booked 1800-2000Z".
QString BookedText(const Booking& booking);
// "EDDF_TWR booked from 1800Z, not online".
QString MissedText(const Booking& booking);
// How long ago, roughly: "5 min", "3 h", "2 days"; "0 min" for a time not before now.
QString AgeText(const QDateTime& then, const QDateTime& now);
// "1800Z" of a time.
QString ClockText(const QDateTime& time);

// True when a station of this callsign is online in data.
bool StationOnline(const network::NetworkData& data, const QString& callsign);

// The bookings of a position (its callsign, any case) that have not ended at moment and start within
// kBookingsAheadSeconds of it, soonest first.
std::vector<const Booking*> BookingsOf(const std::vector<Booking>& bookings, const QString& callsign,
                                       const QDateTime& moment);
// The same for every position of an airport: callsigns whose part before the first "_" is the airport's
// code, or, for a code of the United States ("KJFK"), its three letters.
std::vector<const Booking*> BookingsAt(const std::vector<Booking>& bookings, const QString& airport,
                                       const QDateTime& moment);
// Bookings whose position should be online by now and is not: started kMissedAfterSeconds or more
// before moment and not yet ended, their callsign watched, no station of that callsign online.
std::vector<const Booking*> MissedBookings(const std::vector<Booking>& bookings,
                                           const network::NetworkData& data, const QDateTime& moment,
                                           const std::function<bool(const QString&)>& watched);

// Events in progress at moment.
std::vector<const Event*> EventsInProgress(const std::vector<Event>& events, const QDateTime& moment);
// The events page: events not ended by the start of moment's day that start within kEventsAheadDays of
// moment, soonest first.
std::vector<const Event*> EventsAhead(const std::vector<Event>& events, const QDateTime& moment);

// Takes out the prefiles whose member is online in data as a pilot with that callsign; how many went.
int DropConnected(std::vector<network::Prefile>& prefiles, const network::NetworkData& data);
// The prefile with this callsign, or null.
const network::Prefile* FindPrefile(const std::vector<network::Prefile>& prefiles, const QString& callsign);

// True for an http or https address with a host: the only addresses opened in the browser.
bool IsWebAddress(const QString& address);

} // namespace sky::coming
