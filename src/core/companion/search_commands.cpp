#include "companion/search_commands.h"

#include "geo/geodesy.h"
#include "refdata/reference_data.h"

using namespace Qt::StringLiterals;

namespace sky::companion {
namespace {

// Pilots around another pilot count within this distance.
constexpr float kPilotAllowanceNm = 40.0f;

QString Name(int network) {
    return network::NetworkName(network == 1 ? 1 : 0);
}

} // namespace

void Vis(CommandContext& c, const QString& callsign) {
    c.AddText(u"> vis "_s + callsign);
    const network::NetworkData& d = c.Shown();
    float lat = 0, lon = 0, range = 0, allowance = 0;
    bool found = false;
    for (int slot = 1; slot <= d.ControllerCount && !found; ++slot) {
        const auto& r = d.Controllers[slot];
        if (r.Callsign == callsign) {
            found = true;
            lat = r.Latitude;
            lon = r.Longitude;
            range = r.VisualRange;
        }
    }
    for (int slot = 1; slot <= d.PilotCount && !found; ++slot) {
        const auto& p = d.Pilots[slot];
        if (p.Callsign == callsign) {
            found = true;
            lat = p.Latitude;
            lon = p.Longitude;
            allowance = kPilotAllowanceNm;
        }
    }
    if (!found) {
        c.AddText(callsign + u" is not online"_s + kCrLf);
        return;
    }
    int count = 0;
    const auto print = [&](const QString& other, const QString& name, float distanceNm) {
        c.AddText(other + u' ' + name + u" ("_s + QString::number(double(distanceNm), 'f', 1) + u" nm)"_s);
        ++count;
    };
    for (int slot = 1; slot <= d.ControllerCount; ++slot) {
        const auto& r = d.Controllers[slot];
        if (r.Callsign == callsign)
            continue;
        const float distanceNm = geo::Distance(r.Latitude, r.Longitude, lat, lon);
        if (distanceNm < range + r.VisualRange)
            print(r.Callsign, r.RealName, distanceNm);
    }
    for (int slot = 1; slot <= d.PilotCount; ++slot) {
        const auto& p = d.Pilots[slot];
        if (p.Callsign == callsign)
            continue;
        const float distanceNm = geo::Distance(p.Latitude, p.Longitude, lat, lon);
        if (distanceNm < range + allowance)
            print(p.Callsign, p.RealName, distanceNm);
    }
    if (count >= 1)
        c.AddText(kCrLf + u"Total: "_s + QString::number(count) + u" clients in visual range of "_s +
                  callsign + kCrLf);
    else
        c.AddText(u"No clients in visual range of "_s + callsign + kCrLf);
}

void Members(CommandContext& c, const QString& cc) {
    c.AddText(u"> members "_s + cc);
    const network::NetworkData& d = c.Shown();
    int count = 0;
    for (int slot = 1; slot <= d.ControllerCount; ++slot) {
        const auto& r = d.Controllers[slot];
        QString key = r.Station;
        if (r.Station.size() >= 4)
            key = r.Station.first(4);
        else if (r.Callsign.size() > 3)
            key = r.Callsign.first(4);
        bool member = false;
        if (const Airport* airport = c.Reference.FindAirport(key))
            member = airport->CountryCode == cc;
        else if (const FirCentre* fir = c.Reference.FindFirCentre(key))
            member = fir->CountryCode == cc;
        if (member) {
            c.AddText(r.Callsign + u' ' + r.RealName + u" ("_s + r.VID + u')');
            ++count;
        }
    }
    for (int slot = 1; slot <= d.PilotCount; ++slot) {
        const auto& p = d.Pilots[slot];
        if (p.HomeBase.size() != 4)
            continue;
        const Airport* airport = c.Reference.FindAirport(p.HomeBase);
        if (airport && airport->CountryCode == cc) {
            c.AddText(p.Callsign + u' ' + p.RealName + u' ' + p.HomeBase + u" ("_s + p.VID + u')');
            ++count;
        }
    }
    if (count >= 1)
        c.AddText(kCrLf + u"Total: "_s + QString::number(count) + u" members from "_s + cc + u" on "_s +
                  Name(c.ShownNetwork) + kCrLf);
    else
        c.AddText(u"No members from "_s + cc + u" on "_s + Name(c.ShownNetwork) + kCrLf);
}

void Find(CommandContext& c, const QString& text) {
    c.AddText(u"> find "_s + text);
    const network::NetworkData& d = c.Shown();
    int count = 0;
    const auto consider = [&](const QString& callsign, const QString& name, const QString& vid) {
        if (name.toLower().contains(text) || callsign.toLower().contains(text)) {
            c.AddText(callsign + u' ' + name + u" ("_s + vid + u')');
            ++count;
        }
    };
    for (int slot = 1; slot <= d.ControllerCount; ++slot)
        consider(d.Controllers[slot].Callsign, d.Controllers[slot].RealName, d.Controllers[slot].VID);
    for (int slot = 1; slot <= d.PilotCount; ++slot)
        consider(d.Pilots[slot].Callsign, d.Pilots[slot].RealName, d.Pilots[slot].VID);
    if (count >= 1)
        c.AddText(kCrLf + u"Total: "_s + QString::number(count) + u" matches found"_s + kCrLf);
    else
        c.AddText(u"Search string does not match with any callsign / name"_s + kCrLf);
}

} // namespace sky::companion
