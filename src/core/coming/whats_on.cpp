#include "coming/whats_on.h"

#include <QSet>
#include <QTimeZone>
#include <QUrl>

#include "geo/text_format.h"

using namespace Qt::StringLiterals;

namespace sky::coming {
namespace {

// The airport a position's callsign belongs to: its part before the first "_".
bool OfAirport(const QString& callsign, const QString& airport) {
    const QString place = callsign.section(u'_', 0, 0);
    if (place.isEmpty() || !callsign.contains(u'_'))
        return false;
    return place.compare(airport, Qt::CaseInsensitive) == 0 ||
           (place.size() == 3 && airport.size() == 4 && airport.startsWith(u'K', Qt::CaseInsensitive) &&
            place.compare(airport.mid(1), Qt::CaseInsensitive) == 0);
}

bool Ahead(const Booking& b, const QDateTime& moment) {
    return b.End > moment && b.Start < moment.addSecs(kBookingsAheadSeconds);
}

} // namespace

QDateTime Moment(const network::NetworkData& vatsim, const QDateTime& clock) {
    if (vatsim.ConnectedClients > 0) {
        if (const auto data = geo::ParseTimeStamp(vatsim.UpdateStamp))
            return data->toUTC();
    }
    return clock.toUTC();
}

QString ClockText(const QDateTime& time) {
    return time.toUTC().toString(u"HHmm"_s) + u'Z';
}

QString BookedText(const Booking& booking) {
    return u"booked "_s + booking.Start.toUTC().toString(u"HHmm"_s) + u'-' + ClockText(booking.End);
}

QString MissedText(const Booking& booking) {
    return booking.Callsign + u" booked from "_s + ClockText(booking.Start) + u", not online"_s;
}

QString AgeText(const QDateTime& then, const QDateTime& now) {
    const qint64 minutes = std::max<qint64>(0, then.secsTo(now) / 60);
    if (minutes < 60)
        return QString::number(minutes) + u" min"_s;
    if (minutes < 48 * 60)
        return QString::number(minutes / 60) + u" h"_s;
    return QString::number(minutes / (24 * 60)) + u" days"_s;
}

bool StationOnline(const network::NetworkData& data, const QString& callsign) {
    for (int slot = 1; slot <= data.ControllerCount; ++slot) {
        if (data.Controllers[size_t(slot)].Callsign.compare(callsign, Qt::CaseInsensitive) == 0)
            return true;
    }
    return false;
}

std::vector<const Booking*> BookingsOf(const std::vector<Booking>& bookings, const QString& callsign,
                                       const QDateTime& moment) {
    std::vector<const Booking*> found;
    for (const Booking& b : bookings) {
        if (Ahead(b, moment) && b.Callsign.compare(callsign, Qt::CaseInsensitive) == 0)
            found.push_back(&b);
    }
    return found;
}

std::vector<const Booking*> BookingsAt(const std::vector<Booking>& bookings, const QString& airport,
                                       const QDateTime& moment) {
    std::vector<const Booking*> found;
    for (const Booking& b : bookings) {
        if (Ahead(b, moment) && OfAirport(b.Callsign, airport))
            found.push_back(&b);
    }
    return found;
}

std::vector<const Booking*> MissedBookings(const std::vector<Booking>& bookings,
                                           const network::NetworkData& data, const QDateTime& moment,
                                           const std::function<bool(const QString&)>& watched) {
    std::vector<const Booking*> missed;
    for (const Booking& b : bookings) {
        if (b.Start.addSecs(kMissedAfterSeconds) <= moment && moment < b.End && watched(b.Callsign) &&
            !StationOnline(data, b.Callsign))
            missed.push_back(&b);
    }
    return missed;
}

std::vector<const Event*> EventsInProgress(const std::vector<Event>& events, const QDateTime& moment) {
    std::vector<const Event*> found;
    for (const Event& e : events) {
        if (e.Start <= moment && moment < e.End)
            found.push_back(&e);
    }
    return found;
}

std::vector<const Event*> EventsAhead(const std::vector<Event>& events, const QDateTime& moment) {
    const QDateTime dayStart(moment.toUTC().date(), QTime(0, 0), Qt::UTC);
    std::vector<const Event*> found;
    for (const Event& e : events) {
        if (e.End > dayStart && e.Start < moment.addDays(kEventsAheadDays))
            found.push_back(&e);
    }
    return found;
}

int DropConnected(std::vector<network::Prefile>& prefiles, const network::NetworkData& data) {
    QSet<QString> online;
    for (int slot = 1; slot <= data.PilotCount; ++slot)
        online.insert(data.Pilots[size_t(slot)].VID + u'|' + data.Pilots[size_t(slot)].Callsign.toUpper());
    const auto before = prefiles.size();
    std::erase_if(prefiles,
                  [&](const network::Prefile& f) { return online.contains(f.Member + u'|' + f.Callsign); });
    return int(before - prefiles.size());
}

const network::Prefile* FindPrefile(const std::vector<network::Prefile>& prefiles, const QString& callsign) {
    for (const network::Prefile& f : prefiles) {
        if (f.Callsign.compare(callsign, Qt::CaseInsensitive) == 0)
            return &f;
    }
    return nullptr;
}

bool IsWebAddress(const QString& address) {
    const QUrl url(address.trimmed(), QUrl::StrictMode);
    const QString scheme = url.scheme().toLower();
    return url.isValid() && (scheme == u"http" || scheme == u"https") && !url.host().isEmpty();
}

} // namespace sky::coming
