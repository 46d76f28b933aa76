#include "view/panels.h"

#include <cmath>

#include <QSet>

#include "app/friend_names.h"
#include "app/friends.h"
#include "common/numbers.h"
#include "conditions/flight_category.h"
#include "conditions/runways.h"
#include "geo/geodesy.h"
#include "geo/text_format.h"
#include "network/classification.h"
#include "refdata/reference_data.h"
#include "search/text_fold.h"

using namespace Qt::StringLiterals;

namespace sky::view {
namespace {

using network::ControllerRecord;
using network::NetworkData;
using network::PilotRecord;

constexpr int kWrapColumns = 44; // characters of the small font across the info box

QString AirportText(const QString& code, const ReferenceData& reference) {
    const Airport* airport = reference.FindAirport(code);
    return airport ? code + u' ' + airport->Name : code;
}

QString FacilityName(int facility) {
    switch (facility) {
    case network::kFacilityAtis:
        return u"ATIS"_s;
    case network::kFacilityGround:
        return u"Delivery / ground"_s;
    case network::kFacilityTower:
        return u"Tower"_s;
    case network::kFacilityApproach:
        return u"Approach / departure"_s;
    case network::kFacilityCentre:
        return u"Centre"_s;
    case network::kFacilityFlightService:
        return u"Flight service"_s;
    default:
        return u"Observer"_s;
    }
}

QString Whole(float value) {
    return QString::number(ToInt32(value));
}

// "Member 123456", and the name the user gave a friend: "Member 123456, named Anna".
QString MemberLine(const QString& vid, const KeyedLines* names) {
    const QString name = names ? names->Value(vid) : QString();
    return u"Member "_s + vid + (name.isEmpty() ? QString() : u", named "_s + name);
}

void AddWrapped(QStringList& lines, const QString& label, const QString& text) {
    if (text.trimmed().isEmpty())
        return;
    const QStringList wrapped = WrapText(label + text, kWrapColumns);
    for (const QString& line : wrapped)
        lines.append(line);
}

} // namespace

PanelMode PanelModeOf(const PanelState& p) {
    if (p.Starting)
        return PanelMode::Starting;
    const bool table = p.ListOpen || p.BoardOpen;
    if (p.InfoClient || !p.InfoPrefile.isEmpty())
        return table ? PanelMode::TableAndInfoBox : PanelMode::InfoBox;
    return table ? PanelMode::Table : PanelMode::None;
}

PanelHit HitTestPanels(const PanelLayout& l, const PanelState& p, int x, int y) {
    if ((p.InfoClient || !p.InfoPrefile.isEmpty()) && l.InfoBox.Contains(x, y)) {
        if (l.CentreButton.Contains(x, y))
            return {PanelHitKind::Centre};
        if (l.ProfileButton.Contains(x, y))
            return {PanelHitKind::Profile};
        if (l.FriendButton.Contains(x, y))
            return {PanelHitKind::Friend};
        if (p.InfoClient && !p.InfoClient->IsPilot && l.WatchButton.Contains(x, y))
            return {PanelHitKind::Watch};
        if (p.InfoClient->IsPilot && l.ChartButton.Contains(x, y))
            return {PanelHitKind::Chart};
        const int line = (y - l.InfoBox.Y - 24) / PanelLayout::kLineHeight;
        if (y >= l.InfoBox.Y + 24)
            return {PanelHitKind::InfoLine, line};
        return {PanelHitKind::InfoBox};
    }
    if ((p.ListOpen || p.BoardOpen) && l.ListPanel.Contains(x, y)) {
        if (!p.ListOpen && l.BoardChartButton.Contains(x, y))
            return {PanelHitKind::Chart};
        if (p.ListOpen) {
            for (size_t tab = 0; tab < l.Tabs.size(); ++tab) {
                if (l.Tabs[tab].Contains(x, y))
                    return {PanelHitKind::Tab, int(tab)};
            }
        }
        for (size_t column = 0; column < l.Headers.size(); ++column) {
            if (l.Headers[column].Contains(x, y))
                return {PanelHitKind::Header, int(column)};
        }
        if (l.PreviousPage.Contains(x, y))
            return {PanelHitKind::PreviousPage};
        if (l.NextPage.Contains(x, y))
            return {PanelHitKind::NextPage};
        for (size_t row = 0; row < l.Rows.size(); ++row) {
            if (!l.Rows[row].Contains(x, y))
                continue;
            const bool go = p.ListOpen && (p.Page == ListPage::Friends || p.Page == ListPage::Events) &&
                            PanelLayout::GoButton(l.Rows[row]).Contains(x, y);
            return {go ? PanelHitKind::Go : PanelHitKind::Row, int(row)};
        }
        return {PanelHitKind::ListPanel};
    }
    return {};
}

QStringList WrapText(const QString& text, int width) {
    QStringList lines;
    QString line;
    for (const QString& word : text.split(u' ', Qt::SkipEmptyParts)) {
        QString piece = word;
        while (piece.size() > width) { // a word longer than a line is cut
            if (!line.isEmpty()) {
                lines.append(line);
                line.clear();
            }
            lines.append(piece.left(width));
            piece = piece.mid(width);
        }
        if (line.isEmpty())
            line = piece;
        else if (line.size() + 1 + piece.size() <= width)
            line += u' ' + piece;
        else {
            lines.append(line);
            line = piece;
        }
    }
    if (!line.isEmpty())
        lines.append(line);
    return lines;
}

QString EstimatedArrival(const PilotRecord& p, const QString& updateStamp) {
    const auto now = geo::ParseTimeStamp(updateStamp);
    if (!now || p.GroundSpeed < 40.0f || (p.DestLatitude == 0.0f && p.DestLongitude == 0.0f))
        return u"-"_s;
    const double toGoNm = geo::Distance(p.Latitude, p.Longitude, p.DestLatitude, p.DestLongitude);
    const qint64 seconds = qint64(std::llround(toGoNm / p.GroundSpeed * 3600.0));
    return now->addSecs(seconds).toString(u"HHmm"_s) + u'Z';
}

InfoBoxContent PilotInfo(int network, const NetworkData& data, int slot, const ReferenceData& reference,
                         const Friends& friends, const KeyedLines* names) {
    const PilotRecord& p = data.Pilots[size_t(slot)];
    InfoBoxContent info;
    info.NetworkSlot = network;
    info.Title = p.Callsign;
    info.IsFriend = friends.Contains(p.VID);
    // IVAO's pilot rating, or VATSIM's pilot certificate: a VATSIM pilot has no rating of its own.
    const QString rating =
        network == 1 ? network::PilotCertificateText(p) : network::PilotRatingText(network, p.Rating);
    info.Lines.append(p.RealName + (rating.isEmpty() ? QString() : u" ("_s + rating + u')') +
                      (p.HomeBase.isEmpty() ? QString() : u", home "_s + p.HomeBase));
    info.Lines.append(MemberLine(p.VID, names));
    info.Lines.append(u"Aircraft "_s + (p.AircraftType.isEmpty() ? u"-"_s : p.AircraftType));
    if (p.DestAirport.isEmpty()) {
        info.Lines.append(u"No flight plan"_s);
    } else {
        info.DepartureLine = int(info.Lines.size());
        info.DepartureAirport = p.DepAirport;
        info.Lines.append(u"From "_s + AirportText(p.DepAirport, reference));
        info.DestinationLine = int(info.Lines.size());
        info.DestinationAirport = p.DestAirport;
        info.Lines.append(u"To   "_s + AirportText(p.DestAirport, reference));
    }
    info.Lines.append(u"Status "_s + network::FlightStatus(p));
    info.Lines.append(u"Altitude "_s + Whole(p.Altitude) + u" ft, speed "_s + Whole(p.GroundSpeed) +
                      u" kts"_s);
    info.Lines.append(u"Heading "_s + u"%1"_s.arg(int(p.Heading), 3, 10, QChar(u'0')) + u"°"_s);
    const bool depKnown = p.DepLatitude != 0.0f || p.DepLongitude != 0.0f;
    const bool destKnown = p.DestLatitude != 0.0f || p.DestLongitude != 0.0f;
    if (depKnown || destKnown) {
        const QString flown =
            depKnown ? Whole(geo::Distance(p.DepLatitude, p.DepLongitude, p.Latitude, p.Longitude)) : u"-"_s;
        const QString toGo =
            destKnown ? Whole(geo::Distance(p.Latitude, p.Longitude, p.DestLatitude, p.DestLongitude))
                      : u"-"_s;
        info.Lines.append(u"Flown "_s + flown + u" nm, to go "_s + toGo + u" nm"_s);
        info.Lines.append(u"ETA "_s + EstimatedArrival(p, data.UpdateStamp));
    }
    AddWrapped(info.Lines, u"Route "_s, p.Route);
    AddWrapped(info.Lines, u"Remarks "_s, p.Remarks);
    info.Lines.append(u"Online "_s + geo::OnlineTime(p.TimeConnected, data.UpdateStamp));
    return info;
}

InfoBoxContent ControllerInfo(int network, const NetworkData& data, int slot, const Friends& friends,
                              const KeyedLines* names) {
    const ControllerRecord& c = data.Controllers[size_t(slot)];
    InfoBoxContent info;
    info.NetworkSlot = network;
    info.Title = c.Callsign;
    info.IsFriend = friends.Contains(c.VID);
    const QString rating = network::ControllerRatingText(network, c.Rating);
    info.Lines.append(c.RealName + (rating.isEmpty() ? QString() : u" ("_s + rating + u')'));
    info.Lines.append(MemberLine(c.VID, names));
    info.Lines.append(u"Facility "_s + FacilityName(c.FacilityType) +
                      (c.Station.isEmpty() ? QString() : u", "_s + c.Station));
    info.Lines.append(u"Frequency "_s + c.Frequency);
    info.Lines.append(u"Visual range "_s + Whole(c.VisualRange) + u" nm"_s);
    info.Lines.append(u"Online "_s + geo::OnlineTime(c.TimeConnected, data.UpdateStamp));
    // The ATIS as the Companion prints it: its lines, without the voice server's.
    for (const QString& piece : c.AtisMessage.split(u"^§"_s)) {
        if (!piece.isEmpty() && !piece.startsWith(u'$'))
            AddWrapped(info.Lines, QString(), piece);
    }
    return info;
}

std::vector<ClientRef> ListClients(int network, const NetworkData& data, ListPage page,
                                   const Friends& friends, const filter::Visibility& shown) {
    std::vector<ClientRef> clients;
    for (int slot = 1; slot <= data.ControllerCount; ++slot) {
        const ControllerRecord& c = data.Controllers[size_t(slot)];
        const bool observer = c.FacilityType < network::kFacilityAtis;
        if (((page == ListPage::Friends && friends.Contains(c.VID)) ||
             (page == ListPage::Controllers && !observer) || (page == ListPage::Observers && observer)) &&
            shown.Shows(c))
            clients.push_back({network, false, slot});
    }
    for (int slot = 1; slot <= data.PilotCount; ++slot) {
        const PilotRecord& p = data.Pilots[size_t(slot)];
        if ((page == ListPage::Pilots || (page == ListPage::Friends && friends.Contains(p.VID))) &&
            shown.Shows(p))
            clients.push_back({network, true, slot});
    }
    return clients;
}

int PageCount(size_t clients, int rowsPerPage) {
    return std::max(1, int((clients + size_t(rowsPerPage) - 1) / size_t(std::max(1, rowsPerPage))));
}

namespace {

// Texts compared as people read them: the numbers inside (AAL198, AAL1784, "Member 99") by their
// value, everything else ignoring case.
int CompareNatural(QStringView x, QStringView y) {
    const auto digit = [](QChar c) { return c >= u'0' && c <= u'9'; };
    qsizetype i = 0, j = 0;
    while (i < x.size() && j < y.size()) {
        if (digit(x[i]) && digit(y[j])) {
            while (i < x.size() - 1 && x[i] == u'0' && digit(x[i + 1]))
                ++i;
            while (j < y.size() - 1 && y[j] == u'0' && digit(y[j + 1]))
                ++j;
            qsizetype endX = i, endY = j;
            while (endX < x.size() && digit(x[endX]))
                ++endX;
            while (endY < y.size() && digit(y[endY]))
                ++endY;
            // Without leading zeros the longer run is the larger number; of equal length, the first
            // digit that differs decides.
            if (endX - i != endY - j)
                return endX - i < endY - j ? -1 : 1;
            if (const int digits = x.sliced(i, endX - i).compare(y.sliced(j, endY - j)); digits != 0)
                return digits < 0 ? -1 : 1;
            i = endX;
            j = endY;
            continue;
        }
        const char32_t a = x[i].toCaseFolded().unicode(), b = y[j].toCaseFolded().unicode();
        if (a != b)
            return a < b ? -1 : 1;
        ++i;
        ++j;
    }
    return i < x.size() ? 1 : (j < y.size() ? -1 : 0);
}

} // namespace

void SortRows(std::vector<QStringList>& rows, std::vector<ClientRef>& clients, const SortOrder& sort) {
    if (sort.Column < 0)
        return;
    std::vector<size_t> order(rows.size());
    for (size_t i = 0; i < order.size(); ++i)
        order[i] = i;
    const auto cell = [&](size_t row) { return rows[row].value(sort.Column); };
    std::stable_sort(order.begin(), order.end(), [&](size_t a, size_t b) {
        const QString x = cell(a), y = cell(b);
        int compared = 0;
        if (!x.isEmpty() && !y.isEmpty() && x[0].isDigit() && y[0].isDigit()) {
            const double dx = LeadingNumber(x), dy = LeadingNumber(y);
            compared = dx < dy ? -1 : (dx > dy ? 1 : 0);
        }
        if (compared == 0)
            compared = CompareNatural(x, y);
        return sort.Descending ? compared > 0 : compared < 0;
    });
    std::vector<QStringList> sortedRows;
    std::vector<ClientRef> sortedClients;
    for (size_t i : order) {
        sortedRows.push_back(rows[i]);
        sortedClients.push_back(clients[i]);
    }
    rows = std::move(sortedRows);
    clients = std::move(sortedClients);
}

void Paginate(TableContent& table, const std::vector<QStringList>& rows,
              const std::vector<ClientRef>& clients, int pageIndex, int rowsPerPage,
              const QStringList* members) {
    const int pages = PageCount(rows.size(), rowsPerPage);
    pageIndex = std::clamp(pageIndex, 0, pages - 1);
    table.PageText = u"Page %1/%2"_s.arg(pageIndex + 1).arg(pages);
    const size_t first = size_t(pageIndex) * size_t(rowsPerPage);
    for (size_t i = first; i < rows.size() && i < first + size_t(rowsPerPage); ++i) {
        table.Rows.push_back(rows[i]);
        table.RowClients.push_back(clients[i]);
        if (members)
            table.RowMembers.append(members->value(qsizetype(i)));
    }
}

namespace {

QString NameOf(const KeyedLines* names, const QString& realName, const QString& vid) {
    return names ? NamedPerson(realName, names->Value(vid)) : realName;
}

QStringList ClientRow(int network, const NetworkData& data, const ClientRef& ref, const KeyedLines* names) {
    if (ref.IsPilot) {
        const PilotRecord& p = data.Pilots[size_t(ref.Slot)];
        return {p.Callsign, NameOf(names, p.RealName, p.VID),
                p.DestAirport.isEmpty() ? u"no flight plan"_s : p.DepAirport + u'-' + p.DestAirport,
                network::FlightStatus(p)};
    }
    const ControllerRecord& c = data.Controllers[size_t(ref.Slot)];
    return {c.Callsign, NameOf(names, c.RealName, c.VID), c.Frequency,
            network::ControllerRatingText(network, c.Rating)};
}

} // namespace

TableContent ListPageContent(int network, const NetworkData& data, ListPage page, int pageIndex,
                             int rowsPerPage, const Friends& friends, const SortOrder& sort,
                             const QString& filter, const filter::Visibility& shown,
                             const KeyedLines* names) {
    TableContent table;
    table.Title = network::NetworkName(network);
    const ListPage pages[] = {ListPage::Friends, ListPage::Controllers, ListPage::Pilots,
                              ListPage::Observers};
    const QString tabNames[] = {u"Friends"_s, u"ATC"_s, u"Pilots"_s, u"Observers"_s};
    for (int i = 0; i < 4; ++i) {
        table.Tabs.append(tabNames[i] + u" ("_s +
                          QString::number(ListClients(network, data, pages[i], friends, shown).size()) +
                          u')');
        if (pages[i] == page)
            table.ActiveTab = i;
    }
    table.Tabs.append(u"Events"_s);
    if (page == ListPage::Events) {
        table.ActiveTab = 4;
        return table;
    }
    table.Headers = page == ListPage::Pilots ? QStringList{u"Callsign"_s, u"Name"_s, u"Route"_s, u"Status"_s}
                    : page == ListPage::Friends
                        ? QStringList{u"Callsign"_s, u"Name"_s, u"Route / frequency"_s, u"Status / rating"_s}
                        : QStringList{u"Callsign"_s, u"Name"_s, u"Frequency"_s, u"Rating"_s};
    table.SortColumn = sort.Column;
    table.Descending = sort.Descending;
    const QString wanted = search::Fold(filter);
    std::vector<QStringList> rows;
    std::vector<ClientRef> clients;
    for (const ClientRef& ref : ListClients(network, data, page, friends, shown)) {
        QStringList row = ClientRow(network, data, ref, names);
        if (!wanted.isEmpty() && !search::Fold(row.join(u' ')).contains(wanted))
            continue;
        rows.push_back(std::move(row));
        clients.push_back(ref);
    }
    SortRows(rows, clients, sort);
    if (page == ListPage::Friends) {
        // Who is online comes first, each a click from the map; then the friends who are not.
        table.GoButtons = true;
        const auto vid = [&](const ClientRef& ref) {
            return ref.IsPilot ? data.Pilots[size_t(ref.Slot)].VID : data.Controllers[size_t(ref.Slot)].VID;
        };
        QStringList members;
        for (const ClientRef& ref : clients)
            members.append(vid(ref));
        // A friend online whom the filter holds back is not offline: not listed at all.
        QSet<QString> online;
        for (const ClientRef& ref : ListClients(network, data, page, friends))
            online.insert(vid(ref).toCaseFolded());
        for (const QString& member : friends.Entries()) {
            const QString name = names ? names->Value(member) : QString();
            const QString who =
                name.isEmpty() ? QString(u"Member "_s + member) : QString(name + u" ("_s + member + u')');
            QStringList row{QString(), who, QString(), u"Offline"_s};
            if (online.contains(member.toCaseFolded()) ||
                (!wanted.isEmpty() && !search::Fold(row.join(u' ')).contains(wanted)))
                continue;
            rows.push_back(std::move(row));
            clients.push_back({network, true, 0});
            members.append(member);
        }
        Paginate(table, rows, clients, pageIndex, rowsPerPage, &members);
        return table;
    }
    Paginate(table, rows, clients, pageIndex, rowsPerPage);
    return table;
}

TableContent AirportBoardContent(int network, const NetworkData& data, const QString& airport,
                                 const ReferenceData& reference, int pageIndex, int rowsPerPage,
                                 const SortOrder& sort, const QString& weather, const BoardExtras& extras,
                                 const filter::Visibility& shown) {
    TableContent table;
    table.Title = u"Traffic at "_s + AirportText(airport, reference);
    table.Headers = {u"Callsign"_s, u"From / to"_s, u"Status"_s, u"ETA / distance"_s};
    table.SortColumn = sort.Column;
    table.Descending = sort.Descending;
    const Airport* place = reference.FindAirport(airport);
    std::vector<ClientRef> clients;
    std::vector<QStringList> rows;
    const auto within = [&](const PilotRecord& p) {
        return place && shown.Shows(p) &&
               geo::Distance(p.Latitude, p.Longitude, place->Latitude, place->Longitude) <= kBoardRadiusNm;
    };
    for (int slot = 1; slot <= data.PilotCount; ++slot) {
        const PilotRecord& p = data.Pilots[size_t(slot)];
        if (p.DepAirport == airport && within(p)) {
            const float away = geo::Distance(p.Latitude, p.Longitude, place->Latitude, place->Longitude);
            rows.push_back(
                {p.Callsign, u"to "_s + p.DestAirport, network::FlightStatus(p), Whole(away) + u" nm"_s});
            clients.push_back({network, true, slot});
        }
    }
    rows.insert(rows.end(), extras.Filed.begin(), extras.Filed.end());
    clients.insert(clients.end(), extras.FiledRows.begin(), extras.FiledRows.end());
    for (int slot = 1; slot <= data.PilotCount; ++slot) {
        const PilotRecord& p = data.Pilots[size_t(slot)];
        if (p.DestAirport == airport && within(p)) {
            rows.push_back({p.Callsign, u"from "_s + p.DepAirport, network::FlightStatus(p),
                            u"ETA "_s + EstimatedArrival(p, data.UpdateStamp)});
            clients.push_back({network, true, slot});
        }
    }
    SortRows(rows, clients, sort);
    // Above the traffic: the weather, then the airport's own stations, whatever the order.
    std::vector<QStringList> top;
    std::vector<ClientRef> topClients;
    if (!weather.isEmpty()) {
        top.push_back({u"METAR "_s + weather.simplified()});
        topClients.push_back({network, false, 0});
        const QString category =
            conditions::CategoryName(conditions::CategoryOf(conditions::ReadConditions(weather)));
        if (!category.isEmpty()) {
            top.push_back({u"Flight category "_s + category});
            topClients.push_back({network, false, 0});
        }
    }
    if (const QString runways = conditions::RunwaysLine(data, airport); !runways.isEmpty()) {
        top.push_back({runways});
        topClients.push_back({network, false, 0});
    }
    for (int slot = 1; slot <= data.ControllerCount; ++slot) {
        const ControllerRecord& c = data.Controllers[size_t(slot)];
        if (c.FacilityType >= network::kFacilityAtis && shown.Shows(c) &&
            c.Station.compare(airport, Qt::CaseInsensitive) == 0) {
            top.push_back({c.Callsign, c.Frequency, FacilityName(c.FacilityType), c.RealName});
            topClients.push_back({network, false, slot});
        }
    }
    for (const QStringList& row : extras.Top) {
        top.push_back(row);
        topClients.push_back({network, false, 0});
    }
    if (rows.empty()) {
        rows.push_back({u"No arrivals or departures within 100 nm"_s});
        clients.push_back({network, false, 0});
    }
    top.insert(top.end(), rows.begin(), rows.end());
    topClients.insert(topClients.end(), clients.begin(), clients.end());
    Paginate(table, top, topClients, pageIndex, rowsPerPage);
    return table;
}

} // namespace sky::view
