#include "view/coming_panels.h"

#include <algorithm>

#include "app/friends.h"
#include "coming/whats_on.h"
#include "refdata/reference_data.h"
#include "search/text_fold.h"

using namespace Qt::StringLiterals;

namespace sky::view {
namespace {

constexpr int kWrapColumns = 44; // characters of the small font across the info box

QString AirportText(const QString& code, const ReferenceData& reference) {
    const Airport* airport = reference.FindAirport(code);
    return airport ? code + u' ' + airport->Name : code;
}

QString Filed(const QString& hhmm) {
    return hhmm.isEmpty() ? u"-"_s : hhmm + u'Z';
}

} // namespace

BoardExtras ComingAtAirport(const coming::ComingState& coming, const network::NetworkData& vatsim,
                            const QString& airport, const QDateTime& moment) {
    BoardExtras extras;
    for (const coming::Event* event : coming::EventsInProgress(coming.Events, moment)) {
        if (event->Airports.contains(airport, Qt::CaseInsensitive))
            extras.Top.push_back(
                {u"Event: "_s + event->Name + u", until "_s + coming::ClockText(event->End)});
    }
    for (const coming::Booking* b : coming::BookingsAt(coming.Bookings, airport, moment)) {
        const bool running = b->Start <= moment;
        const QString online =
            running ? (coming::StationOnline(vatsim, b->Callsign) ? u"online"_s : u"not online"_s)
                    : QString();
        extras.Top.push_back(
            {b->Callsign, coming::BookedText(*b), online, b->Type == u"booking" ? QString() : b->Type});
    }
    std::vector<int> departing;
    for (int i = 0; i < int(coming.Prefiles.size()); ++i) {
        if (coming.Prefiles[size_t(i)].Departure.compare(airport, Qt::CaseInsensitive) == 0)
            departing.push_back(i);
    }
    std::stable_sort(departing.begin(), departing.end(), [&](int a, int b) {
        return coming.Prefiles[size_t(a)].DepTime < coming.Prefiles[size_t(b)].DepTime;
    });
    for (int i : departing) {
        const network::Prefile& f = coming.Prefiles[size_t(i)];
        extras.Filed.push_back({f.Callsign, u"to "_s + f.Arrival, u"filed"_s, u"dep "_s + Filed(f.DepTime)});
        extras.FiledRows.push_back(ItemRow(1, i));
    }
    return extras;
}

QStringList BookingLines(const std::vector<coming::Booking>& bookings, const QString& callsign,
                         const QDateTime& moment) {
    QStringList lines;
    for (const coming::Booking* b : coming::BookingsOf(bookings, callsign, moment))
        lines.append(coming::BookedText(*b) + (b->Start <= moment ? u", now"_s : QString()));
    return lines;
}

InfoBoxContent PrefileInfo(const network::Prefile& f, const ReferenceData& reference,
                           const Friends& friends) {
    InfoBoxContent info;
    info.NetworkSlot = 1;
    info.Title = f.Callsign;
    info.IsFriend = friends.Contains(f.Member);
    info.Lines.append(f.Name);
    info.Lines.append(u"Member "_s + f.Member);
    info.Lines.append(u"Prefiled, not connected"_s);
    info.Lines.append(u"Aircraft "_s + (f.Aircraft.isEmpty() ? u"-"_s : f.Aircraft) +
                      (f.FlightRules.isEmpty() ? QString() : u", rules "_s + f.FlightRules));
    info.DepartureLine = int(info.Lines.size());
    info.DepartureAirport = f.Departure;
    info.Lines.append(u"From "_s + AirportText(f.Departure, reference));
    if (!f.Arrival.isEmpty()) {
        info.DestinationLine = int(info.Lines.size());
        info.DestinationAirport = f.Arrival;
        info.Lines.append(u"To   "_s + AirportText(f.Arrival, reference));
    }
    info.Lines.append(
        u"Departure "_s + Filed(f.DepTime) + u", en route "_s +
        (f.EnrouteTime.isEmpty() ? u"-"_s : f.EnrouteTime.left(2) + u'h' + f.EnrouteTime.mid(2) + u'm'));
    info.Lines.append(u"Speed "_s + (f.CruiseSpeed.isEmpty() ? u"-"_s : f.CruiseSpeed) + u", level "_s +
                      (f.Altitude.isEmpty() ? u"-"_s : f.Altitude));
    for (const auto& [label, text] : {std::pair{u"Route "_s, f.Route}, std::pair{u"Remarks "_s, f.Remarks}}) {
        if (!text.trimmed().isEmpty())
            info.Lines.append(WrapText(label + text, kWrapColumns));
    }
    return info;
}

void FillEventsPage(TableContent& table, const coming::ComingState& coming, const QDateTime& moment,
                    const QDateTime& clock, int pageIndex, int rowsPerPage, const SortOrder& sort,
                    const QString& filter) {
    table.Headers = {u"Day"_s, u"Event"_s, u"Time"_s, u"Airports"_s};
    table.SortColumn = sort.Column;
    table.Descending = sort.Descending;
    table.GoButtons = true;
    const QString wanted = search::Fold(filter);
    std::vector<QStringList> rows;
    std::vector<ClientRef> items;
    for (const coming::Event* e : coming::EventsAhead(coming.Events, moment)) {
        const bool running = e->Start <= moment && moment < e->End;
        QStringList row{running ? u"now"_s : e->Start.toUTC().toString(u"ddd d MMM"_s), e->Name,
                        e->Start.toUTC().toString(u"HHmm"_s) + u'-' + coming::ClockText(e->End),
                        e->Airports.join(u' ')};
        if (!wanted.isEmpty() && !search::Fold(row.join(u' ')).contains(wanted))
            continue;
        rows.push_back(std::move(row));
        items.push_back(ItemRow(1, int(e - coming.Events.data())));
    }
    SortRows(rows, items, sort);
    const QDateTime& had = coming.EventsFetched;
    rows.insert(rows.begin(), {had.isValid() ? u"VATSIM events today and in the next 7 days, list of "_s +
                                                   coming::ClockText(had) + u" ("_s +
                                                   coming::AgeText(had, clock) + u" ago)"_s
                                             : u"No list of VATSIM events yet"_s});
    items.insert(items.begin(), ClientRef{1, false, 0});
    Paginate(table, rows, items, pageIndex, rowsPerPage);
}

} // namespace sky::view
