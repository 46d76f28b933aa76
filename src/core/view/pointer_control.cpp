#include "view/pointer_control.h"

#include <cmath>
#include <vector>

#include "app/friend_names.h"
#include "geo/projection.h"
#include "render/aircraft_layer.h"
#include "render/frame.h"
#include "render/panel_drawing.h"
#include "render/traffic_scene.h"
#include "view/map_state.h"
#include "view/panel_control.h"
#include "view/scene_control.h"

using namespace Qt::StringLiterals;

namespace sky::view {

namespace {

// The squared distance in pixels from (x, y) to where a place shows; none when it is out of sight.
std::optional<double> SquaredPixels(const MapState& s, float lat, float lon, double x, double y) {
    const auto point = geo::LatLonToScreen(lat, lon, s.WidthPx, s.HeightPx, s.View);
    if (!point)
        return std::nullopt;
    return (point->X - x) * (point->X - x) + (point->Y - y) * (point->Y - y);
}

} // namespace

PointerControl::PointerControl(MapState& state, SceneControl& scene, PanelControl& panels, render::GlApi& gl)
    : m_state(state), m_scene(scene), m_panels(panels), m_gl(gl) {}

std::optional<network::ClientRef> PointerControl::ClientAt(double x, double y, double radiusPx) const {
    const MapState& s = m_state;
    const int shown = s.Display.ShownNetwork;
    const std::vector<int> networks = shown == 2 ? std::vector<int>{0, 1} : std::vector<int>{shown};
    double best = radiusPx * radiusPx;
    std::optional<network::ClientRef> found;
    const filter::Visibility visible = s.Shown();
    const auto consider = [&](int n, bool pilot, int slot, bool showing, float lat, float lon) {
        if (!showing)
            return;
        if (const auto d = SquaredPixels(s, lat, lon, x, y); d && *d <= best) {
            best = *d;
            found = network::ClientRef{n, pilot, slot};
        }
    };
    for (int n : networks) {
        const network::NetworkData& data = s.AllTables()[n];
        if (s.Config.ShowATC) {
            for (int slot = 1; slot <= data.ControllerCount; ++slot) {
                const auto& c = data.Controllers[size_t(slot)];
                if (c.FacilityType > 1)
                    consider(n, false, slot, visible.Shows(c), c.DisplayLatitude, c.DisplayLongitude);
            }
        }
        if (s.Config.ShowPlanes) {
            // Aircraft are found where they are drawn: live motion may have moved them on.
            const std::vector<geo::LatLon>* drawn = m_scene.DrawnPlanes(n);
            for (int slot = 1; slot <= data.PilotCount; ++slot) {
                const auto& p = data.Pilots[size_t(slot)];
                const geo::LatLon at = drawn ? (*drawn)[size_t(slot)] : geo::LatLon{p.Latitude, p.Longitude};
                if (!m_scene.Crowds().IsGrouped(n, slot))
                    consider(n, true, slot, visible.Shows(p), at.Lat, at.Lon);
            }
        }
    }
    return found;
}

std::optional<render::Crowd> PointerControl::CrowdAt(double x, double y) const {
    const MapState& s = m_state;
    if (!s.Config.ShowPlanes)
        return std::nullopt;
    for (const render::Crowd& crowd : m_scene.Crowds().Crowds) {
        const auto point = geo::LatLonToScreen(crowd.Lat, crowd.Lon, s.WidthPx, s.HeightPx, s.View);
        if (!point)
            continue;
        const render::PixelRect box = render::CrowdMarkBox(m_gl, crowd.Count);
        if (box.Contains(int(std::lround(x - point->X)), int(std::lround(y - point->Y))))
            return crowd;
    }
    return std::nullopt;
}

QString PointerControl::AirportAt(double x, double y, double radiusPx) const {
    const MapState& s = m_state;
    const int shown = s.Display.ShownNetwork == 1 ? 1 : 0;
    if (!s.Config.ShowAirports || s.Display.ShownNetwork == 2)
        return {};
    const network::NetworkData& data = s.AllTables()[shown];
    double best = radiusPx * radiusPx;
    QString found;
    const auto consider = [&](const QString& code, float lat, float lon) {
        if (code.isEmpty() || (lat == 0.0f && lon == 0.0f))
            return;
        if (const auto d = SquaredPixels(s, lat, lon, x, y); d && *d <= best) {
            best = *d;
            found = code;
        }
    };
    const filter::Visibility visible = s.Shown();
    for (int slot = 1; slot <= data.PilotCount; ++slot) {
        const auto& p = data.Pilots[size_t(slot)];
        if (!visible.Shows(p))
            continue; // its airports are not drawn
        consider(p.DepAirport, p.DepLatitude, p.DepLongitude);
        consider(p.DestAirport, p.DestLatitude, p.DestLongitude);
    }
    return found;
}

void PointerControl::Click(double x, double y) {
    if (render::AnyPanelOpen(m_panels.Mode()) && m_panels.Click(int(x), int(y)))
        return;
    if (ClickClears && ClickClears())
        return;
    if (!geo::ScreenToLatLon(x, y, m_state.WidthPx, m_state.HeightPx, m_state.View)) {
        ClearSelection();
        return;
    }
    // A crowd's number, an airport's label or its dot open the airport's board; a symbol its client.
    if (const std::optional<render::Crowd> crowd = CrowdAt(x, y)) {
        m_panels.OpenBoard(crowd->Airport);
        return;
    }
    if (const QString airport = m_scene.AirportLabelAt(x, y); !airport.isEmpty()) {
        m_panels.OpenBoard(airport);
        return;
    }
    constexpr double kPickRadiusPx = 12.0, kAirportDotPx = 4.0;
    // The stations of an airport stand on its dot: there the airport comes first.
    const auto client = ClientAt(x, y, kPickRadiusPx);
    const QString dot = client && client->IsPilot ? QString() : AirportAt(x, y, kAirportDotPx);
    if (client && dot.isEmpty()) {
        Select(*client);
        return;
    }
    // Beside every client, an airport in use opens its traffic board.
    const QString airport = dot.isEmpty() ? AirportAt(x, y, 8.0) : dot;
    if (!airport.isEmpty())
        m_panels.OpenBoard(airport);
    else
        ClearSelection();
}

void PointerControl::Select(const network::ClientRef& client) {
    m_scene.Select(client);
    m_panels.OpenInfoBox(client);
    const network::ClientSummary selected = network::Summarise(m_state.AllTables(), client);
    m_scene.SetStatus(selected.Callsign + u" - "_s + selected.RealName);
    m_scene.Redraw();
}

void PointerControl::ClearSelection() {
    const bool boxClosed = m_panels.CloseInfoBox();
    if (!m_state.Selected && !boxClosed)
        return;
    m_scene.DeleteHighlight();
    m_scene.Redraw();
}

bool PointerControl::Hover(double x, double y) {
    MapState& s = m_state;
    const render::PanelLayout layout = render::LayoutPanels(s.WidthPx, s.HeightPx);
    const bool overPanel = render::AnyPanelOpen(m_panels.Mode()) &&
                           HitTestPanels(layout, s.Panels, int(x), int(y)).Kind != PanelHitKind::None;
    const bool onMap = !overPanel && y >= render::kTitleStripPx;
    const auto airportLines = [this](const QString& airport) {
        return AirportLines && !airport.isEmpty() ? AirportLines(airport) : QStringList();
    };
    if (const std::optional<render::Crowd> crowd = onMap ? CrowdAt(x, y) : std::nullopt) {
        render::BuildHoverCard(m_gl, s.Colours, s.WidthPx, s.HeightPx, int(x), int(y), crowd->Airport,
                               render::CrowdCard(*crowd) + airportLines(crowd->Airport), crowd->Network);
        s.Display.HoverCard = true;
        m_scene.Redraw();
        return true;
    }
    const auto client = onMap ? ClientAt(x, y, 12.0) : std::nullopt;
    // An airport's dot: the stations standing on it add to their own card what is known of it.
    const QString dot = onMap && (!client || !client->IsPilot) ? AirportAt(x, y, 4.0) : QString();
    if (!client && !dot.isEmpty()) {
        const Airport* airport = s.Reference.FindAirport(dot);
        const QStringList lines = (airport ? QStringList{airport->Name} : QStringList()) + airportLines(dot);
        render::BuildHoverCard(m_gl, s.Colours, s.WidthPx, s.HeightPx, int(x), int(y), dot, lines,
                               s.Display.ShownNetwork == 1 ? 1 : 0);
        s.Display.HoverCard = true;
        m_scene.Redraw();
        return true;
    }
    if (!client) {
        HoverEnd();
        return false;
    }
    const network::NetworkData& data = s.AllTables()[client->Network];
    QString title;
    QStringList lines;
    if (client->IsPilot) {
        const auto& p = data.Pilots[size_t(client->Slot)];
        title = p.Callsign;
        if (const QString name = NamedPerson(p.RealName, s.FriendNames.Value(p.VID)); !name.isEmpty())
            lines.append(name);
        lines.append(p.AircraftType.isEmpty() ? u"no aircraft filed"_s : p.AircraftType);
        if (!p.DestAirport.isEmpty())
            lines.append(p.DepAirport + u" - "_s + p.DestAirport);
        lines.append(render::LevelText(p.Altitude) + u", "_s + QString::number(qRound(p.GroundSpeed)) +
                     u" kt"_s);
    } else {
        const auto& c = data.Controllers[size_t(client->Slot)];
        title = c.Callsign;
        lines.append(c.Frequency);
        lines.append(NamedPerson(c.RealName, s.FriendNames.Value(c.VID)));
        lines.append(airportLines(dot));
    }
    render::BuildHoverCard(m_gl, s.Colours, s.WidthPx, s.HeightPx, int(x), int(y), title, lines,
                           client->Network);
    s.Display.HoverCard = true;
    m_scene.Redraw();
    return true;
}

void PointerControl::HoverEnd() {
    if (!m_state.Display.HoverCard)
        return;
    m_state.Display.HoverCard = false;
    render::DeleteHoverCard(m_gl);
    m_scene.Redraw();
}

void PointerControl::Drag(double fromX, double fromY, double toX, double toY) {
    const MapState& s = m_state;
    const auto from = geo::ScreenToLatLon(fromX, fromY, s.WidthPx, s.HeightPx, s.View);
    const auto to = geo::ScreenToLatLon(toX, toY, s.WidthPx, s.HeightPx, s.View);
    if (!from || !to)
        return;
    // The point under the pointer follows it; across the date line the short way round.
    float dLon = from->Lon - to->Lon;
    if (dLon > 180.0f)
        dLon -= 360.0f;
    else if (dLon < -180.0f)
        dLon += 360.0f;
    geo::ViewState view = s.View;
    view.ViewX += dLon;
    view.ViewY += to->Lat - from->Lat;
    m_scene.SetView(view);
    m_scene.Redraw();
}

void PointerControl::Zoom(double factor) {
    if (!(factor > 0.0) || !std::isfinite(factor))
        return;
    ZoomTo(float(m_state.View.ViewZ * factor));
}

void PointerControl::Wheel(int steps) {
    ZoomTo(m_state.View.ViewZ * float(std::pow(1.2, steps)));
}

void PointerControl::ZoomTo(float viewZ) {
    geo::ViewState view = m_state.View;
    view.ViewZ = viewZ;
    m_scene.SetView(view);
    m_scene.Redraw();
}

} // namespace sky::view
