#include "companion/activity_commands.h"

#include "geo/geodesy.h"
#include "network/classification.h"
#include "refdata/reference_data.h"

using namespace Qt::StringLiterals;

namespace sky::companion {
namespace {

QString Nm(float distanceNm) {
    return QString::number(double(distanceNm), 'f', 0) + u" nm"_s;
}

} // namespace

void Act(CommandContext& c, const QString& code) {
    c.AddText(u"> act "_s + code);
    const Airport* airport = c.Reference.FindAirport(code);
    if (!airport) {
        c.AddText(u"Unrecognized ICAO code"_s + kCrLf);
        return;
    }
    const network::NetworkData& d = c.Shown();
    const auto near = [&](float lat, float lon) {
        return geo::Distance(lat, lon, airport->Latitude, airport->Longitude) <= kVicinityNm;
    };
    int atc = 0, pilots = 0, observers = 0;
    for (int slot = 1; slot <= d.ControllerCount; ++slot) {
        const auto& r = d.Controllers[slot];
        if (r.FacilityType < network::kFacilityAtis)
            continue;
        if (r.Station == code || near(r.DisplayLatitude, r.DisplayLongitude)) {
            c.AddText(r.Callsign + u' ' + r.RealName);
            ++atc;
        }
    }
    for (int slot = 1; slot <= d.PilotCount; ++slot) {
        const auto& p = d.Pilots[slot];
        if (!near(p.Latitude, p.Longitude))
            continue;
        QString line = p.Callsign + u' ' + p.RealName;
        if (p.DepAirport == code)
            line += u" (outbound)"_s;
        else if (p.DestAirport == code)
            line += u" (inbound)"_s;
        c.AddText(line);
        ++pilots;
    }
    for (int slot = 1; slot <= d.ControllerCount; ++slot) {
        const auto& r = d.Controllers[slot];
        if (r.FacilityType < network::kFacilityAtis && near(r.Latitude, r.Longitude)) {
            c.AddText(r.Callsign + u' ' + r.RealName);
            ++observers;
        }
    }
    const int total = atc + pilots + observers;
    if (total > 0)
        c.AddText(kCrLf + u"Total: "_s + QString::number(total) + u" clients in vicinity of "_s + code +
                  u" ("_s + QString::number(atc) + u" ATC, "_s + QString::number(pilots) + u" pilots, "_s +
                  QString::number(observers) + u" observers)"_s + kCrLf);
    else
        c.AddText(u"No clients in vicinity of "_s + code + kCrLf);
    c.Host.MarkAirport(airport->Latitude, airport->Longitude, code);
    c.Host.CentreOn(airport->Latitude, airport->Longitude, code);
}

namespace {

void AirportTraffic(CommandContext& c, const QString& code, const Airport& airport) {
    const network::NetworkData& d = c.Shown();
    int outbound = 0, inbound = 0, listed = 0;
    for (int slot = 1; slot <= d.PilotCount; ++slot) {
        const auto& p = d.Pilots[slot];
        const float distanceNm = geo::Distance(p.Latitude, p.Longitude, airport.Latitude, airport.Longitude);
        const bool onGround = p.GroundSpeed < kGroundSpeedKts;
        const bool here = distanceNm <= kAirportRadiusNm;
        QString line;
        if (p.DepAirport == code) {
            if (onGround && here)
                line = p.Callsign + u" to "_s + p.DestAirport + u" (departing)"_s;
            else if (!onGround)
                line = p.Callsign + u" to "_s + p.DestAirport + u" ("_s + Nm(distanceNm) + u" out)"_s;
            outbound += line.isEmpty() ? 0 : 1;
        } else if (p.DestAirport == code) {
            if (onGround && here)
                line = p.Callsign + u" from "_s + p.DepAirport + u" (landed)"_s;
            else if (!onGround)
                line = p.Callsign + u" from "_s + p.DepAirport + u" ("_s + Nm(distanceNm) + u" to go)"_s;
            inbound += line.isEmpty() ? 0 : 1;
        } else if (p.DestAirport.isEmpty() && here) {
            line = p.Callsign + u' ' + p.RealName + u" (no fp)"_s;
        }
        if (!line.isEmpty()) {
            c.AddText(line);
            ++listed;
        }
    }
    if (listed == 0) {
        c.AddText(u"No traffic at "_s + code + kCrLf);
        return;
    }
    c.AddText(kCrLf + u"Total: "_s + QString::number(listed) + u" aircraft ("_s + QString::number(outbound) +
              u" outbound, "_s + QString::number(inbound) + u" inbound)"_s + kCrLf);
}

void CountryTraffic(CommandContext& c, const QString& country) {
    const network::NetworkData& d = c.Shown();
    const auto inCountry = [&](const QString& code) {
        const Airport* airport = c.Reference.FindAirport(code);
        return airport && airport->CountryCode == country;
    };
    int movements = 0;
    for (int slot = 1; slot <= d.PilotCount; ++slot) {
        const auto& p = d.Pilots[slot];
        const bool departs = inCountry(p.DepAirport), arrives = inCountry(p.DestAirport);
        if (!departs && !arrives)
            continue;
        c.AddText(p.Callsign + u' ' + p.DepAirport + u'-' + p.DestAirport + u" ("_s +
                  network::FlightStatus(p) + u')');
        ++movements;
    }
    if (movements > 0)
        c.AddText(kCrLf + u"Total: "_s + QString::number(movements) + u" movements in "_s + country + kCrLf);
    else
        c.AddText(u"No movements in "_s + country + kCrLf);
}

} // namespace

void Traffic(CommandContext& c, const QString& code) {
    c.AddText(u"> traffic "_s + code);
    if (code.size() == 2) {
        CountryTraffic(c, code);
        return;
    }
    const Airport* airport = c.Reference.FindAirport(code);
    if (!airport) {
        c.AddText(u"Unrecognized ICAO code"_s + kCrLf);
        return;
    }
    AirportTraffic(c, code, *airport);
}

} // namespace sky::companion
