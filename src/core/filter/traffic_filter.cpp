#include "filter/traffic_filter.h"

#include <QRegularExpression>

#include "app/friends.h"

using namespace Qt::StringLiterals;

namespace sky::filter {
namespace {

struct StationName {
    QStringView Name;
    StationBit Bit;
};
// In the order the canonical text names them; "fss" and "dep" are read as their kinds too.
constexpr StationName kStationNames[] = {{u"CTR", kCentre},   {u"APP", kApproach}, {u"TWR", kTower},
                                         {u"GND", kGround},   {u"DEL", kDelivery}, {u"ATIS", kAtis},
                                         {u"OBS", kObserver}, {u"FSS", kCentre},   {u"DEP", kApproach}};
constexpr int kCanonicalStations = 7;

bool StartsWithAny(const QString& text, const QStringList& prefixes) {
    if (prefixes.isEmpty())
        return true;
    for (const QString& prefix : prefixes) {
        if (text.startsWith(prefix, Qt::CaseInsensitive))
            return true;
    }
    return false;
}

// One end of a level band, in feet: "FL100" (hundreds of feet), "3000ft" or "3000"; nullopt when
// empty. The lengths are bounded by the pattern, so the numbers fit.
std::optional<int> LevelFt(const QString& text) {
    if (text.isEmpty())
        return std::nullopt;
    if (text.startsWith(u"FL"))
        return text.mid(2).toInt() * 100;
    return (text.endsWith(u"FT") ? text.chopped(2) : text).toInt();
}

QString LevelText(int feet) {
    if (feet >= 10000 && feet % 100 == 0)
        return u"FL%1"_s.arg(feet / 100, 3, 10, QChar(u'0'));
    return QString::number(feet) + u"ft"_s;
}

void AppendList(QStringList& into, const QString& values) {
    for (const QString& value : values.split(u',', Qt::SkipEmptyParts))
        if (!into.contains(value))
            into.append(value);
}

// "atc:ctr,app": the stations named; false when a name is unknown.
bool ReadStations(const QString& values, unsigned& stations) {
    if (values == u"NONE") {
        stations = 0;
        return true;
    }
    unsigned bits = 0;
    for (const QString& value : values.split(u',', Qt::SkipEmptyParts)) {
        const auto known = std::find_if(std::begin(kStationNames), std::end(kStationNames),
                                        [&](const StationName& s) { return s.Name == value; });
        if (known == std::end(kStationNames))
            return false;
        bits |= known->Bit;
    }
    if (bits == 0)
        return false;
    // A second atc: term adds to the first.
    stations = stations == kAllStations ? bits : stations | bits;
    return true;
}

} // namespace

StationBit StationOf(const network::ControllerRecord& c) {
    switch (c.FacilityType) {
    case network::kFacilityAtis:
        return kAtis;
    case network::kFacilityGround:
        return c.Callsign.endsWith(u"_DEL", Qt::CaseInsensitive) ? kDelivery : kGround;
    case network::kFacilityTower:
        return kTower;
    case network::kFacilityApproach:
        return kApproach;
    default:
        return c.FacilityType > network::kFacilityApproach ? kCentre : kObserver;
    }
}

bool TrafficFilter::Passes(const network::PilotRecord& p) const {
    if (Position != Where::Both && (p.GroundSpeed < kGroundKts) != (Position == Where::OnGround))
        return false;
    if ((LowestFt && p.Altitude < float(*LowestFt)) || (HighestFt && p.Altitude > float(*HighestFt)))
        return false;
    if (!StartsWithAny(p.Callsign, Callsigns) || !StartsWithAny(p.DepAirport, From) ||
        !StartsWithAny(p.DestAirport, To))
        return false;
    if (!At.isEmpty() && !StartsWithAny(p.DepAirport, At) && !StartsWithAny(p.DestAirport, At))
        return false;
    return StartsWithAny(p.AircraftCode.isEmpty() ? p.AircraftType : p.AircraftCode, Types);
}

bool TrafficFilter::Passes(const network::ControllerRecord& c) const {
    return (Stations & StationOf(c)) != 0;
}

ParsedFilter ParseFilter(const QString& text) {
    static const QRegularExpression commas(u"\\s*,\\s*"_s);
    static const QRegularExpression band(u"^(FL\\d{1,3}|\\d{1,6}(FT)?)?-(FL\\d{1,3}|\\d{1,6}(FT)?)?$"_s);
    static const QRegularExpression blanks(u"\\s+"_s);
    ParsedFilter parsed;
    TrafficFilter& f = parsed.Filter;
    QString normal = text.toUpper();
    normal.replace(commas, u","_s);
    bool airborne = false, ground = false;
    for (const QString& term : normal.split(blanks, Qt::SkipEmptyParts)) {
        const qsizetype colon = term.indexOf(u':');
        if (colon > 0) {
            const QString key = term.left(colon), values = term.mid(colon + 1);
            if (values.isEmpty()) {
                parsed.Problems.append(term.toLower());
            } else if (key == u"TYPE") {
                AppendList(f.Types, values);
            } else if (key == u"FROM") {
                AppendList(f.From, values);
            } else if (key == u"TO") {
                AppendList(f.To, values);
            } else if (key == u"AT") {
                AppendList(f.At, values);
            } else if (key != u"ATC" || !ReadStations(values, f.Stations)) {
                parsed.Problems.append(term.toLower());
            }
            continue;
        }
        if (const QRegularExpressionMatch m = band.match(term); m.hasMatch() && term != u"-") {
            f.LowestFt = LevelFt(m.captured(1));
            f.HighestFt = LevelFt(m.captured(3));
            if (f.LowestFt && f.HighestFt && *f.LowestFt > *f.HighestFt)
                std::swap(f.LowestFt, f.HighestFt);
        } else if (term == u"AIRBORNE" || term == u"AIR") {
            airborne = true;
        } else if (term == u"GROUND") {
            ground = true;
        } else if (term == u"FRIENDS") {
            parsed.FriendsOnly = true;
        } else if (colon == 0 || term.startsWith(u',') || term.contains(u'-')) {
            // Callsigns hold no dash: a term with one is a level band that could not be read.
            parsed.Problems.append(term.toLower());
        } else {
            AppendList(f.Callsigns, term);
        }
    }
    // Both or neither: anywhere.
    if (airborne != ground)
        f.Position = airborne ? Where::Airborne : Where::OnGround;
    return parsed;
}

QString FilterText(const TrafficFilter& f, bool friendsOnly) {
    QStringList terms = f.Callsigns;
    const auto list = [&](const char16_t* key, const QStringList& values) {
        if (!values.isEmpty())
            terms.append(QString::fromUtf16(key) + values.join(u','));
    };
    list(u"type:", f.Types);
    list(u"from:", f.From);
    list(u"to:", f.To);
    list(u"at:", f.At);
    if (f.LowestFt || f.HighestFt)
        terms.append((f.LowestFt ? LevelText(*f.LowestFt) : QString()) + u'-' +
                     (f.HighestFt ? LevelText(*f.HighestFt) : QString()));
    if (f.Position != Where::Both)
        terms.append(f.Position == Where::Airborne ? u"airborne"_s : u"ground"_s);
    if (f.Stations != kAllStations) {
        QStringList names;
        for (int i = 0; i < kCanonicalStations; ++i)
            if (f.Stations & kStationNames[i].Bit)
                names.append(kStationNames[i].Name.toString().toLower());
        terms.append(u"atc:"_s + (names.isEmpty() ? u"none"_s : names.join(u',')));
    }
    if (friendsOnly)
        terms.append(u"friends"_s);
    return terms.join(u' ');
}

bool Visibility::Shows(const network::PilotRecord& p) const {
    if (FriendsOnly && (!FriendList || !FriendList->Contains(p.VID)))
        return false;
    return !Filter || Filter->Passes(p);
}

bool Visibility::Shows(const network::ControllerRecord& c) const {
    if (FriendsOnly && (!FriendList || !FriendList->Contains(c.VID)))
        return false;
    return !Filter || Filter->Passes(c);
}

bool Visibility::Shows(const network::ClientTables& tables, const network::ClientRef& client) const {
    if (client.Network < 0 || client.Network >= network::kNetworkCount || client.Slot < 1)
        return false;
    const network::NetworkData& data = tables[size_t(client.Network)];
    if (client.IsPilot)
        return client.Slot <= data.PilotCount && Shows(data.Pilots[size_t(client.Slot)]);
    return client.Slot <= data.ControllerCount && Shows(data.Controllers[size_t(client.Slot)]);
}

int ShownPilots(const Visibility& visibility, const network::NetworkData& data) {
    int shown = 0;
    for (int slot = 1; slot <= data.PilotCount; ++slot)
        shown += visibility.Shows(data.Pilots[size_t(slot)]) ? 1 : 0;
    return shown;
}

} // namespace sky::filter
