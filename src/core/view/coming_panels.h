#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>

#include "coming/coming_state.h"
#include "view/panels.h"

// What the panels show of VATSIM's coming traffic: the board's event, bookings and prefiled flights,
// a station's bookings, a prefile's box and the events page.
namespace sky::view {

// The board of an airport at moment: a line for each event in progress there ("Event: Name, until
// 2100Z"), its positions' bookings of the next 24 hours (callsign, "booked 1800-2000Z", "online" or
// "not online" while the booking runs, the booking's type when it is not a plain booking), and the
// prefiles departing there as "filed" with their filed departure time, in the order of that time.
BoardExtras ComingAtAirport(const coming::ComingState& coming, const network::NetworkData& vatsim,
                            const QString& airport, const QDateTime& moment);

// A station's lines of its bookings of the next 24 hours: "booked 1800-2000Z", with ", now" while it runs.
QStringList BookingLines(const std::vector<coming::Booking>& bookings, const QString& callsign,
                         const QDateTime& moment);

// The box of a prefiled flight: who filed it, the aircraft, departure and destination (links to their
// boards), the filed time, speed, level and time en route, route and remarks.
InfoBoxContent PrefileInfo(const network::Prefile& prefile, const ReferenceData& reference,
                           const Friends& friends);

// The rows of the events page (today and the next 7 days at moment): a first line saying how old the
// list is at clock, then day ("now" while it runs), name, time and airports, each with a Go button,
// sorted and filtered as the list's pages are; each row stands for its event (ItemRow).
void FillEventsPage(TableContent& table, const coming::ComingState& coming, const QDateTime& moment,
                    const QDateTime& clock, int pageIndex, int rowsPerPage, const SortOrder& sort,
                    const QString& filter);

} // namespace sky::view
