#include "companion/query_commands.h"

#include <cmath>

#include "common/numbers.h"
#include "geo/geodesy.h"
#include "geo/text_format.h"
#include "network/classification.h"
#include "network/download.h"
#include "refdata/reference_data.h"

using namespace Qt::StringLiterals;

namespace sky::companion {
namespace {

using network::ControllerRecord;
using network::NetworkData;
using network::PilotRecord;

// The numeric worth of a text: its leading digits, so a text starting with a letter is worth 0.
double Worth(const QString& text) {
    return LeadingNumber(text);
}

QString Hhmm(const NetworkData& data) {
    return network::StampTime(data.UpdateStamp);
}

QString Name(int network) {
    return network::NetworkName(network == 1 ? 1 : 0);
}

} // namespace

void Dist(CommandContext& c, const QString& a, const QString& b) {
    c.AddText(u"> dist "_s + a + u' ' + b);
    float aLat = 0, aLon = 0, bLat = 0, bLon = 0;
    if (const Airport* airport = c.Reference.FindAirport(a)) {
        aLat = airport->Latitude;
        aLon = airport->Longitude;
    }
    if (const Airport* airport = c.Reference.FindAirport(b)) {
        bLat = airport->Latitude;
        bLon = airport->Longitude;
    }
    if ((c.ShownNetwork == 0 || c.ShownNetwork == 1) && c.Shown().ConnectedClients != 0) {
        const NetworkData& d = c.Shown();
        const auto match = [&](const QString& callsign, float lat, float lon) {
            if (callsign == a) {
                aLat = lat;
                aLon = lon;
            } else if (callsign == b) {
                bLat = lat;
                bLon = lon;
            }
        };
        for (int slot = 1; slot <= d.PilotCount; ++slot)
            match(d.Pilots[slot].Callsign, d.Pilots[slot].Latitude, d.Pilots[slot].Longitude);
        for (int slot = 1; slot <= d.ControllerCount; ++slot)
            match(d.Controllers[slot].Callsign, d.Controllers[slot].Latitude, d.Controllers[slot].Longitude);
    }
    // A coordinate of exactly 0 counts as not found, on the equator and the prime meridian too.
    if (aLat == 0 || aLon == 0 || bLat == 0 || bLon == 0) {
        c.AddText(u"Callsigns / codes not found"_s + kCrLf);
        return;
    }
    c.AddText(u"Distance: "_s + QString::number(geo::Distance(aLat, aLon, bLat, bLon), 'f', 2) + u" nm"_s +
              kCrLf);
}

void Icao(CommandContext& c, const QString& code) {
    c.AddText(u"> icao "_s + code);
    const Airport* airport = c.Reference.FindAirport(code);
    if (!airport) {
        c.AddText(u"Unrecognized ICAO code"_s + kCrLf);
        return;
    }
    c.AddText(code + u" is "_s + airport->Name + u" ("_s + airport->City + u", "_s + airport->CountryCode +
              u')' + kCrLf);
    c.Host.MarkAirport(airport->Latitude, airport->Longitude, code);
    c.Host.CentreOn(airport->Latitude, airport->Longitude, code);
}

void Atis(CommandContext& c, const QString& callsign) {
    c.AddText(u"> atis "_s + callsign);
    const NetworkData& d = c.Shown();
    for (int slot = 1; slot <= d.ControllerCount; ++slot) {
        const ControllerRecord& r = d.Controllers[slot];
        if (r.Callsign != callsign)
            continue;
        if (r.AtisMessage.isEmpty()) {
            c.AddText(u"No ATIS available"_s + kCrLf);
            return;
        }
        // "^§" is how the networks send a line break; lines starting with "$" are the voice server.
        for (const QString& piece : r.AtisMessage.split(u"^§"_s)) {
            if (!piece.isEmpty() && !piece.startsWith(u'$'))
                c.AddText(piece);
        }
        c.AddText(QString());
        return;
    }
    c.AddText(callsign + u" is not online"_s + kCrLf);
}

QString FlightPlanLevel(const QString& plannedAltitude) {
    QString p = plannedAltitude;
    if (Worth(p) <= 0)
        return p;
    if (Worth(p) > 9999)
        p = u'F' + QString::number(ToInt32(Worth(p) / 1000.0));
    if (Worth(p) > 999)
        p = u"F0"_s + QString::number(ToInt32(Worth(p) / 1000.0));
    if (Worth(p) > 99)
        p = u'F' + p;
    if (Worth(p) > 9)
        p = u"F0"_s + p;
    return p;
}

QString FlightPlanSpeed(const QString& cruiseSpeed) {
    QString s = cruiseSpeed;
    if (Worth(s) <= 0)
        return s;
    if (Worth(s) > 9999)
        s = u"N9999"_s;
    if (Worth(s) > 999)
        s = u'N' + s;
    if (Worth(s) > 99)
        s = u"N0"_s + s;
    if (Worth(s) > 9)
        s = u"N00"_s + s;
    return s;
}

void Fp(CommandContext& c, const QString& callsign) {
    c.AddText(u"> fp "_s + callsign);
    const NetworkData& d = c.Shown();
    for (int slot = 1; slot <= d.PilotCount; ++slot) {
        const PilotRecord& p = d.Pilots[slot];
        if (p.Callsign != callsign)
            continue;
        if (p.DestAirport.isEmpty()) {
            c.AddText(u"Flight plan not sent yet"_s + kCrLf);
            return;
        }
        c.AddText(u"(FPL-"_s + p.Callsign + u'-' + p.FlightRules + p.FlightType);
        c.AddText(u'-' + p.AircraftType);
        c.AddText(u'-' + p.DepAirport + p.DepTime);
        c.AddText(u'-' + FlightPlanSpeed(p.CruiseSpeed) + FlightPlanLevel(p.PlannedAltitude) + u' ' +
                  p.Route);
        c.AddText(u'-' + p.DestAirport + p.EnrouteTime + u' ' + p.AltAirport);
        c.AddText(u'-' + p.Remarks + u')');
        c.AddText(QString());
        return;
    }
    c.AddText(callsign + u" is not online"_s + kCrLf);
}

void Info(CommandContext& c, const QString& argument) {
    c.AddText(u"> info "_s + argument);
    const NetworkData& d = c.Shown();
    const int network = c.ShownNetwork;
    bool found = false;
    for (int slot = 1; slot <= d.ControllerCount; ++slot) {
        const ControllerRecord& r = d.Controllers[slot];
        if (r.VID != argument && r.Callsign != argument)
            continue;
        found = true;
        c.AddText(r.Callsign + u" is "_s + r.RealName + u' ' +
                  network::ControllerRatingText(network, r.Rating) + u" ("_s + r.VID + u')');
        c.AddText(u" On "_s + r.Frequency + u", range "_s + QString::number(ToInt32(r.VisualRange)) +
                  u" nm, online for "_s + geo::OnlineTime(r.TimeConnected, d.UpdateStamp) + kCrLf);
        c.Host.CentreOn(r.DisplayLatitude, r.DisplayLongitude, r.Callsign);
    }
    for (int slot = 1; slot <= d.PilotCount; ++slot) {
        const PilotRecord& p = d.Pilots[slot];
        if (p.VID != argument && p.Callsign != argument)
            continue;
        found = true;
        if (network == 1)
            c.AddText(p.Callsign + u" is "_s + p.RealName + u" ("_s + p.VID + u')');
        else
            c.AddText(p.Callsign + u" is "_s + p.RealName + u' ' +
                      network::PilotRatingText(network, p.Rating) + u" ("_s + p.VID + u')');
        if (!p.DestAirport.isEmpty()) {
            QString route = u" Route "_s + p.DepAirport + u'-' + p.DestAirport + u" with "_s + p.AircraftCode;
            if (p.POB >= 1)
                route += u", "_s + QString::number(p.POB) + u" POB"_s;
            c.AddText(route);
        }
        c.AddText(u' ' + QString::number(double(p.Altitude), 'f', 0) + u" ft, "_s +
                  QString::number(double(p.GroundSpeed), 'f', 0) + u" kts, hdg "_s +
                  u"%1"_s.arg(int(p.Heading), 3, 10, QChar(u'0')) + u"º, online for "_s +
                  geo::OnlineTime(p.TimeConnected, d.UpdateStamp) + (c.Live ? QString() : kCrLf));
        if (c.Live)
            c.AddText(u' ' +
                      geo::ReportedText(p.Latitude, p.Longitude, p.ReportStamp(d.UpdateStamp), c.Now()) +
                      kCrLf);
        c.Host.CentreOn(p.Latitude, p.Longitude, p.Callsign);
    }
    if (!found)
        c.AddText(argument + u" is not online"_s + kCrLf);
}

void Prof(CommandContext& c, const QString& argument) {
    c.AddText(u"> prof "_s + argument);
    const NetworkData& d = c.Shown();
    const auto open = [&](const QString& vid) {
        c.Host.OpenProfile(c.ShownNetwork, vid);
        c.AddText(u"Opened profile of "_s + vid + kCrLf);
    };
    for (int slot = 1; slot <= d.ControllerCount; ++slot) {
        if (d.Controllers[slot].VID == argument || d.Controllers[slot].Callsign == argument)
            return open(d.Controllers[slot].VID);
    }
    for (int slot = 1; slot <= d.PilotCount; ++slot) {
        if (d.Pilots[slot].VID == argument || d.Pilots[slot].Callsign == argument)
            return open(d.Pilots[slot].VID);
    }
    const double number = Worth(argument);
    if (number < 100000 || number >= 3000000) {
        c.AddText(argument + u" is not online"_s + kCrLf);
        return;
    }
    // A member number that matched nobody opens the slot after the last pilot, whatever an earlier,
    // larger download left there; kept as designed.
    open(d.Pilots[size_t(d.PilotCount) + 1].VID);
}

void Stat(CommandContext& c) {
    c.AddText(u"> stat"_s);
    const NetworkData& d = c.Shown();
    c.AddText(Name(c.ShownNetwork) + u" data of "_s + Hhmm(d) + u"Z - "_s +
              QString::number(d.ConnectedClients) + u" clients"_s);
    const int controllers = d.ConnectedClients - d.ObserverCount - d.PilotCount;
    c.AddText(u" ("_s + QString::number(controllers) + u" ATC, "_s + QString::number(d.PilotCount) +
              u" planes, "_s + QString::number(d.ObserverCount) + u" observers)"_s + kCrLf);
}

void Sups(CommandContext& c) {
    c.AddText(u"> sups"_s);
    const NetworkData& d = c.Shown();
    int count = 0;
    for (int slot = 1; slot <= d.ControllerCount; ++slot) {
        if (d.Controllers[slot].AdminRating > 10) {
            c.AddText(d.Controllers[slot].Callsign + u' ' + d.Controllers[slot].RealName);
            ++count;
        }
    }
    for (int slot = 1; slot <= d.PilotCount; ++slot) {
        if (d.Pilots[slot].AdminRating > 10) {
            c.AddText(d.Pilots[slot].Callsign + u' ' + d.Pilots[slot].RealName);
            ++count;
        }
    }
    if (count >= 1)
        c.AddText(kCrLf + u"Total: "_s + QString::number(count) + u" SUP/ADM on "_s + Name(c.ShownNetwork) +
                  kCrLf);
    else
        c.AddText(u"No SUP/ADM on "_s + Name(c.ShownNetwork) + kCrLf);
}

void Refresh(CommandContext& c) {
    c.AddText(u"> refresh"_s);
    const int network = c.ShownNetwork == 1 ? 1 : 0;
    const NetworkData& d = c.Tables[network];
    const qint64 minimum = qint64(d.ReloadMinutes) * 60;
    if (d.LastDownload.isValid() && d.LastDownload.secsTo(c.Now()) < minimum) {
        c.AddText(u"Please wait at least "_s + QString::number(minimum) +
                  u" seconds between two downloads"_s + kCrLf);
        return;
    }
    c.AddText(u"Downloading "_s + Name(network) + u" data..."_s);
    c.Host.Download(network);
    if (d.ControllerCount + d.PilotCount != 0)
        c.AddText(u' ' + Name(network) + u" data of "_s + Hhmm(d) + u"Z downloaded - "_s +
                  QString::number(d.ConnectedClients) + u" clients online"_s + kCrLf);
    else
        c.AddText(u" Error downloading "_s + Name(network) + u" data"_s + kCrLf);
}

} // namespace sky::companion
