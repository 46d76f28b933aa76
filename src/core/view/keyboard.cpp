#include "view/keyboard.h"

#include "app/friends.h"
#include "app/settings.h"
#include "view/display_state.h"
#include "view/keys.h"

using namespace Qt::StringLiterals;

namespace sky::view {
namespace {

void SetStatus(KeyContext& c, const QString& text) {
    c.Commands.SetStatus(text);
}

void StoreOrRestoreView(KeyContext& c, int index, bool store) {
    const QString number = QString::number(index + 1);
    if (store) {
        c.Config.X[index] = c.View.ViewX;
        c.Config.Y[index] = c.View.ViewY;
        c.Config.Z[index] = c.View.ViewZ;
        SetStatus(c, u"Current view stored as View "_s + number);
    } else {
        c.Commands.SetView({c.Config.X[index], c.Config.Y[index], c.Config.Z[index]});
        SetStatus(c, u"View "_s + number + u" restored"_s);
    }
}

int TotalClients(const network::ClientTables& tables) {
    int total = 0;
    for (const auto& data : tables)
        total += data.PilotCount + data.ControllerCount;
    return total;
}

// F1, F4 to F6: true when the key was one of them (handled, with or without a change).
bool LayerKey(KeyContext& c, int key, int modifiers) {
    Settings& s = c.Config;
    const bool shift = modifiers == keys::kShift;
    const bool none = modifiers == 0;
    if (key == keys::F(1)) {
        if (none) {
            const bool anyOn = s.ShowPlaneLabels || s.ShowATCLabels || s.ShowAirportLabels;
            s.ShowPlaneLabels = s.ShowATCLabels = s.ShowAirportLabels = !anyOn;
            SetStatus(c, u"All labels toggle"_s);
        }
        return true;
    }
    struct Layer {
        int Key;
        bool& Shown;
        bool& Labels;
        const char16_t* LayerText;
        const char16_t* LabelText;
    };
    Layer layers[] = {
        {keys::F(4), s.ShowAirports, s.ShowAirportLabels, u"Airport display toggle",
         u"Airport labels toggle"},
        {keys::F(5), s.ShowATC, s.ShowATCLabels, u"ATC display toggle", u"ATC labels toggle"},
        {keys::F(6), s.ShowPlanes, s.ShowPlaneLabels, u"Plane display toggle", u"Plane labels toggle"},
    };
    for (Layer& layer : layers) {
        if (key != layer.Key)
            continue;
        if (shift) {
            layer.Shown = !layer.Shown;
            if (key == keys::F(6))
                c.Commands.DeleteHighlight();
            SetStatus(c, QString::fromUtf16(layer.LayerText));
        } else if (none && layer.Shown) {
            layer.Labels = !layer.Labels;
            SetStatus(c, QString::fromUtf16(layer.LabelText));
        }
        return true;
    }
    return false;
}

} // namespace

void FriendsFilter(KeyContext& c) {
    const int network = c.Display.ShownNetwork;
    if (c.Display.FriendsOnly) {
        c.Display.FriendsOnly = false;
        SetStatus(c, u"Friends toggle"_s);
        c.Commands.RebuildScene(network);
        return;
    }
    // The filter bar turns it on in the comparison too, where both networks count.
    int online = 0;
    for (int n = 0; n < network::kNetworkCount; ++n)
        online += n == network || network == 2 ? FriendsOnline(c.Tables[n], c.FriendList) : 0;
    if (online >= 1) {
        SetStatus(c, u"Friends toggle ("_s + QString::number(online) + u" online)"_s);
        c.Display.FriendsOnly = true;
        c.Commands.RebuildScene(network);
    } else {
        SetStatus(c, u"No friends online"_s);
    }
}

int FriendsOnline(const network::NetworkData& data, const Friends& friends) {
    int count = 0;
    for (int slot = 1; slot <= data.ControllerCount; ++slot)
        count += friends.Contains(data.Controllers[slot].VID) ? 1 : 0;
    for (int slot = 1; slot <= data.PilotCount; ++slot)
        count += friends.Contains(data.Pilots[slot].VID) ? 1 : 0;
    return count;
}

void KeyDown(KeyContext& c, int key, int modifiers) {
    // While a panel is open, or the title box shows, the camera rests.
    if (c.Panels != render::PanelMode::None || modifiers == keys::kShift)
        return;
    geo::ViewState v = c.View;
    const float step = 5.0f / v.ViewZ;
    switch (key) {
    case keys::kLeft:
        v.ViewX -= step;
        break;
    case keys::kRight:
        v.ViewX += step;
        break;
    case keys::kUp:
        v.ViewY -= step;
        break;
    case keys::kDown:
        v.ViewY += step;
        break;
    case keys::F(11):
        v.ViewZ *= 1.1f;
        break;
    case keys::F(12):
        v.ViewZ /= 1.1f;
        break;
    default:
        return;
    }
    c.Commands.SetView(v);
    c.Commands.Redraw();
}

void KeyUp(KeyContext& c, int key, int modifiers) {
    if (key == keys::kSpace) {
        c.Commands.ShowCompanion();
        return;
    }
    if (key == keys::kEscape && render::AnyPanelOpen(c.Panels)) {
        c.Commands.ClosePanels();
        c.Commands.Redraw();
        return;
    }
    if (c.Panels != render::PanelMode::None)
        return;

    Settings& s = c.Config;
    const bool shift = modifiers == keys::kShift;
    switch (key) {
    case keys::Letter('I'):
        c.Commands.Download(0);
        return;
    case keys::Letter('V'):
        c.Commands.Download(1);
        return;
    case keys::Letter('B'):
        c.Commands.Download(2);
        return;
    case keys::Letter('G'):
        s.ShowLatLon = !s.ShowLatLon;
        SetStatus(c, u"Lat/Lon grid toggle"_s);
        c.Commands.Redraw();
        return;
    case keys::Letter('C'):
        if (!s.DisableCountries) {
            c.Display.ShowCountries = !c.Display.ShowCountries;
            SetStatus(c, u"Country borders toggle"_s);
            c.Commands.Redraw();
        }
        return;
    case keys::Digit(1):
    case keys::Digit(2):
    case keys::Digit(3):
        StoreOrRestoreView(c, key - keys::Digit(1), shift);
        c.Commands.Redraw();
        return;
    case keys::Letter('N'):
        s.ShowNight = !s.ShowNight;
        SetStatus(c, s.ShowNight ? u"Night side shown"_s : u"Night side off"_s);
        c.Commands.Redraw();
        return;
    case keys::Letter('W'):
        s.ShowWeather = !s.ShowWeather;
        SetStatus(c, s.ShowWeather ? u"Weather shown"_s : u"Weather off"_s);
        c.Commands.Redraw();
        return;
    case keys::Letter('D'):
        s.DeclutterLabels = !s.DeclutterLabels;
        SetStatus(c, s.DeclutterLabels ? u"Labels decluttered"_s : u"All labels shown"_s);
        c.Commands.Redraw();
        return;
    default:
        break;
    }

    if (TotalClients(c.Tables) == 0)
        return;
    if (LayerKey(c, key, modifiers)) {
        c.Commands.Redraw();
        return;
    }

    if (c.Display.ShownNetwork == 2)
        return;
    if (key == keys::F(7) || key == keys::F(8)) {
        c.Commands.ReplayStep(key == keys::F(7) ? -1 : 1);
    } else if (key == keys::F(9)) {
        c.Commands.ReplayLive();
    } else if (key == keys::Letter('T') && modifiers == 0) { // Ctrl+T is the window's Statistics
        c.Commands.ToggleTrails();
    } else if (key == keys::Letter('L')) {
        c.Commands.OpenListPanel();
    } else if (key == keys::F(3)) {
        if (modifiers == 0 && !c.Display.FriendsOnly) {
            s.ShowInbounds = !s.ShowInbounds;
            SetStatus(c, u"Inbounds toggle"_s);
            c.Commands.Redraw();
        }
    } else if (key == keys::Digit(4)) {
        CentreOnMyself(c);
    } else if (key == keys::F(2)) {
        if (modifiers == 0 && c.FriendList.Count() > 0) {
            FriendsFilter(c);
            c.Commands.Redraw();
        }
    }
}

void CentreOnMyself(KeyContext& c) {
    const int network = c.Display.ShownNetwork;
    if (network != 0 && network != 1)
        return;
    const QString& me = c.Config.MemberId(network);
    const network::NetworkData& data = c.Tables[network];
    const auto centre = [&](float lat, float lon, const QString& callsign) {
        c.Commands.SetView({lon, -lat, 16.0f});
        c.Commands.ClosePanels();
        SetStatus(c, u"Centered on myself ("_s + callsign + u')');
        c.Commands.Redraw();
    };
    for (int slot = 1; slot <= data.ControllerCount; ++slot) {
        const network::ControllerRecord& r = data.Controllers[slot];
        if (r.VID == me) {
            c.Config.ShowATC = true;
            centre(r.DisplayLatitude, r.DisplayLongitude, r.Callsign);
        }
    }
    for (int slot = 1; slot <= data.PilotCount; ++slot) {
        const network::PilotRecord& r = data.Pilots[slot];
        if (r.VID == me) {
            c.Config.ShowPlanes = true;
            centre(r.Latitude, r.Longitude, r.Callsign);
        }
    }
}

} // namespace sky::view
