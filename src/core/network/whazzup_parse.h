#pragma once

// The whazzup parse, generic over the way a line's fields are reached, so that the benchmark can hold
// the interpreter against a field reader that splits the line anew for every field. Everything else
// uses it through whazzup.h, with LineFields.

#include <algorithm>

#include <QString>
#include <QStringView>

#include "common/numbers.h"
#include "geo/geodesy.h"
#include "network/classification.h"
#include "network/lines.h"
#include "network/whazzup.h"
#include "refdata/reference_data.h"

namespace sky::network::detail {

using namespace Qt::StringLiterals;

// Field numbers that differ between the networks' layouts.
struct Layout {
    int Rating;
    int AdminRating;
    int Heading;
};
inline constexpr Layout kLayouts[kNetworkCount] = {{41, 40, 45}, {16, 16, 38}};

// Copies a field into a record's string, reusing the string's buffer when it has room: the tables are
// refilled on every download, so most slots already do, and the interpreter allocates little.
inline void Assign(QString& target, QStringView source) {
    if (target.isDetached() && target.capacity() >= source.size()) {
        target.resize(source.size());
        std::copy(source.begin(), source.end(), target.data());
    } else {
        target = source.toString();
    }
}

inline const Layout& LayoutOf(int network) {
    return kLayouts[network == 0 ? 0 : 1];
}

inline float Single(QStringView field) {
    return ToSingle(LeadingNumber(field));
}
inline std::int16_t Whole16(QStringView field) {
    return ToInt16(LeadingNumber(field));
}

inline float Limited(QStringView field, double low, double high, double aboveHigh) {
    const double value = LeadingNumber(field);
    if (value > high)
        return ToSingle(aboveHigh);
    if (value < low)
        return ToSingle(low);
    return ToSingle(value);
}

// The client software: name and version on IVAO, nothing on VATSIM.
template <typename Fields> void ReadSoftware(int network, const Fields& fields, QString& software) {
    if (network != 0) {
        software.clear();
        return;
    }
    software = QString(fields[38] + u' ' + fields[39]).trimmed();
}

inline bool HasLowerCase(QStringView text) {
    return std::any_of(text.begin(), text.end(), [](QChar c) { return c.isLower(); });
}

inline QString LeftPadded(QStringView text, qsizetype width) {
    return QString(std::max<qsizetype>(0, width - text.size()), u'0') + text;
}

// "Name Surname EDDF": a blank and four capital letters at the end of a name are a home base.
inline bool EndsWithHomeBase(QStringView name) {
    if (name.size() <= 5 || name[name.size() - 5] != u' ')
        return false;
    for (qsizetype i = name.size() - 4; i < name.size(); ++i) {
        if (name[i] < u'A' || name[i] > u'Z')
            return false;
    }
    return true;
}

inline void ReadName(QStringView name, PilotRecord& pilot) {
    const qsizetype degree = name.indexOf(u'°');
    if (degree >= 0)
        name = name.first(degree).trimmed();
    const qsizetype dash = name.indexOf(u" -");
    if (dash >= 0)
        name = name.first(dash);
    if (EndsWithHomeBase(name)) {
        Assign(pilot.HomeBase, name.last(4));
        name = name.first(name.size() - 5).trimmed();
    } else {
        pilot.HomeBase.clear();
    }
    Assign(pilot.RealName, name);
}

// "H/B744/F" is the type "B744/F" and the code "B744"; "B73/G" the code "B73".
inline void ReadAircraft(QStringView field, PilotRecord& pilot) {
    const bool prefixed = field.size() >= 2 && field[1] == u'/';
    Assign(pilot.AircraftType, prefixed ? field.sliced(2) : field);
    QStringView code = prefixed ? field.sliced(2) : field;
    code = code.first(std::min<qsizetype>(4, code.size()));
    if (code.endsWith(u'/'))
        code = code.first(std::min<qsizetype>(3, code.size()));
    if (code.size() >= 3 && code[2] == u'/')
        code = code.first(2);
    Assign(pilot.AircraftCode, code);
}

inline void ReadPosition(const ReferenceData& reference, QStringView code, float& latitude,
                         float& longitude) {
    const Airport* airport = reference.FindAirport(code);
    latitude = airport ? airport->Latitude : 0.0f;
    longitude = airport ? airport->Longitude : 0.0f;
}

template <typename Fields>
void ParsePilotFields(int network, const Fields& f, const ReferenceData& reference, PilotRecord& pilot) {
    const Layout& layout = LayoutOf(network);
    Assign(pilot.Callsign, f[0]);
    Assign(pilot.VID, f[1]);
    ReadName(f[2], pilot);
    pilot.Rating = Whole16(f[layout.Rating]);
    pilot.AdminRating = Whole16(f[layout.AdminRating]);
    pilot.Latitude = Single(f[5]);
    pilot.Longitude = Single(f[6]);
    pilot.Altitude = Limited(f[7], 0.0, 99999.0, 100000.0);
    pilot.GroundSpeed = Limited(f[8], 0.0, 9999.0, 9999.0);
    ReadAircraft(f[9], pilot);
    pilot.POB = network == 0 ? Whole16(f[44]) : std::int16_t(0);
    Assign(pilot.DepAirport, f[11]);
    ReadPosition(reference, pilot.DepAirport, pilot.DepLatitude, pilot.DepLongitude);
    Assign(pilot.DestAirport, f[13]);
    ReadPosition(reference, pilot.DestAirport, pilot.DestLatitude, pilot.DestLongitude);
    Assign(pilot.AltAirport, f[28]);
    pilot.Heading = Whole16(f[layout.Heading]);
    if (pilot.DepAirport.size() != 4)
        pilot.Course = 0;
    else if (pilot.DestLatitude != 0.0f || pilot.DestLongitude != 0.0f)
        pilot.Course = geo::Course(pilot.Latitude, pilot.Longitude, pilot.DestLatitude, pilot.DestLongitude);
    else
        pilot.Course = geo::Course(pilot.DepLatitude, pilot.DepLongitude, pilot.Latitude, pilot.Longitude);
    Assign(pilot.Transponder, f[17]);
    Assign(pilot.CruiseSpeed, f[10]);
    Assign(pilot.PlannedAltitude, f[12]);
    Assign(pilot.FlightRules, f[21]);
    Assign(pilot.Remarks, f[29]);
    Assign(pilot.Route, f[30]);
    if (network == 0)
        Assign(pilot.FlightType, f[43]);
    else
        pilot.FlightType.clear();
    // A departure time or flight time the fields cannot give leaves the slot's earlier value.
    if (f[22].size() < 5)
        pilot.DepTime = LeftPadded(f[22], 4);
    if (f[24].size() < 3 && f[25].size() < 3)
        pilot.EnrouteTime = LeftPadded(f[24], 2) + LeftPadded(f[25], 2);
    Assign(pilot.TimeConnected, f[37]);
    Assign(pilot.ReportedAt, f[kReportedAtField]);
    Assign(pilot.Server, f[14]);
    ReadSoftware(network, f, pilot.Software);
    // Beyond VATSIM's text layout: the pilot certificate of its JSON feed.
    pilot.PilotCertificate = network == 1 && !f[42].isEmpty() ? Whole16(f[42]) : std::int16_t(-1);
    Assign(pilot.PilotCertificateName, network == 1 ? f[43] : QStringView());
    Assign(pilot.PilotCertificateLongName, network == 1 ? f[44] : QStringView());
}

// The drawn position of a centre or flight service station: the FIR centre its callsign names.
inline void PlaceAreaStation(const ReferenceData& reference, ControllerRecord& c) {
    QString key = c.Callsign.first(c.Callsign.size() - 4);
    if (c.FacilityType == kFacilityFlightService) {
        const QString oceanic = key.first(std::min<qsizetype>(4, key.size())) + u"_O"_s;
        if (reference.HasFirCentre(oceanic))
            key = oceanic;
        if (reference.HasFirCentre(QString(key + u"_O"_s)))
            key += u"_O"_s;
    }
    const FirCentre* centre = reference.FindFirCentre(key);
    if (!centre) {
        key.truncate(c.Station.size());
        centre = reference.FindFirCentre(key);
    }
    if (centre) {
        c.DisplayLatitude = centre->Latitude;
        c.DisplayLongitude = centre->Longitude;
    }
    c.Station = key;
}

// The drawn position of an airport station; "JFK" stands for "KJFK" when the airports know it.
inline void PlaceAirportStation(const ReferenceData& reference, ControllerRecord& c) {
    if (c.Station.size() == 3 && reference.HasAirport(QString(u'K' + c.Station)))
        c.Station.prepend(u'K');
    if (const Airport* airport = reference.FindAirport(c.Station)) {
        c.DisplayLatitude = airport->Latitude;
        c.DisplayLongitude = airport->Longitude;
    }
}

template <typename Fields>
void ParseControllerFields(int network, const Fields& f, const ReferenceData& reference, ControllerRecord& c,
                           NetworkData& data) {
    const Layout& layout = LayoutOf(network);
    Assign(c.Callsign, f[0]);
    if (HasLowerCase(c.Callsign))
        c.Callsign = c.Callsign.toUpper();
    Assign(c.VID, f[1]);
    QStringView name = f[2];
    const qsizetype degree = name.indexOf(u'°');
    if (degree >= 0)
        name = name.first(degree);
    Assign(c.RealName, name.trimmed());
    c.Rating = Whole16(f[layout.Rating]);
    c.AdminRating = Whole16(f[layout.AdminRating]);
    c.Latitude = Single(f[5]);
    c.Longitude = Single(f[6]);
    c.DisplayLatitude = c.Latitude;
    c.DisplayLongitude = c.Longitude;
    Assign(c.AtisMessage, f[35]);
    Assign(c.Frequency, f[4]);
    c.VisualRange = Single(f[19]);
    Assign(c.TimeConnected, f[37]);
    Assign(c.Server, f[14]);
    ReadSoftware(network, f, c.Software);

    c.FacilityType = FacilityFromCallsign(c.Callsign);
    c.Station.clear();
    if (c.FacilityType == kFacilityAtis && data.ConnectedClients > 0)
        --data.ConnectedClients; // an ATIS is a machine, not a person online
    if (c.FacilityType >= kFacilityAtis) {
        const qsizetype underscore = c.Callsign.indexOf(u'_');
        if (underscore >= 0) {
            c.Station = c.Callsign.first(underscore);
            if (c.Station.size() < 2)
                c.FacilityType = kFacilityObserver;
        }
    }
    if (c.FacilityType < kFacilityAtis) {
        ++data.ObserverCount;
        return;
    }
    if (c.FacilityType == kFacilityCentre || c.FacilityType == kFacilityFlightService)
        PlaceAreaStation(reference, c);
    else
        PlaceAirportStation(reference, c);
}

template <typename Fields>
InterpretResult InterpretLines(int network, QStringView text, const ReferenceData& reference,
                               NetworkData& data, const QDateTime& now, const StatusCallback& showStatus) {
    data.PilotCount = 0;
    data.ControllerCount = 0;
    data.ObserverCount = 0;
    data.ConnectedClients = 0;
    data.DroppedPilots = 0;
    data.DroppedControllers = 0;
    InterpretResult result;
    const QList<QStringView> lines = SplitNetworkLines(text);
    if (lines.isEmpty())
        return result;
    result.Read = true;
    if (showStatus)
        showStatus(NetworkName(network) + u" data downloaded, interpreting data..."_s);

    for (QStringView line : lines) {
        const Fields fields(line);
        const QStringView clientType = fields[3];
        if (clientType == u"PILOT") {
            if (data.PilotCount < data.MaxPilots()) {
                ParsePilotFields(network, fields, reference, data.AddPilot());
            } else {
                ++data.DroppedPilots;
            }
        } else if (clientType == u"ATC") {
            if (data.ControllerCount < data.MaxControllers()) {
                ParseControllerFields(network, fields, reference, data.AddController(), data);
            } else {
                ++data.DroppedControllers;
            }
        } else if (clientType == u"FOLME") {
            if (data.ConnectedClients > 0)
                --data.ConnectedClients;
        } else {
            // Header values without the blanks or carriage returns some files leave at the end.
            line = line.trimmed();
            if (line.startsWith(u"UPDATE"))
                data.UpdateStamp = line.last(std::min<qsizetype>(14, line.size())).toString();
            if (line.startsWith(u"CONNECTED CLIENTS"))
                data.ConnectedClients = Whole16(line.sliced(std::min<qsizetype>(20, line.size())));
            if (line.startsWith(u"RELOAD"))
                data.ReloadMinutes = Whole16(line.sliced(std::min<qsizetype>(9, line.size())));
        }
    }

    result.HasClients = data.ConnectedClients > 0;
    if (result.HasClients) {
        result.StatusText = NetworkName(network) + u" data interpreted"_s;
        data.LastDownload = now;
    } else {
        result.StatusText = u"No data to display"_s;
    }
    return result;
}

} // namespace sky::network::detail
