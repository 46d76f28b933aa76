#pragma once

#include <functional>
#include <optional>

#include <QString>
#include <QStringList>

#include "network/client_records.h"
#include "render/crowds.h"

namespace sky::render {
class GlApi;
} // namespace sky::render

namespace sky::view {

struct MapState;
class SceneControl;
class PanelControl;

// The mouse on the map: a left click on a crowd's number, an airport's label or its dot opens the
// airport's board; on an aircraft or a station (within 12 pixels) it selects it and opens its info box;
// near an airport in use it opens its board; beside everything it clears the selection;
// dragging turns the globe under the pointer; the wheel zooms. Clicks reach an open panel first.
class PointerControl {
public:
    PointerControl(MapState& state, SceneControl& scene, PanelControl& panels, render::GlApi& gl);

    // An airport's weather and runways for its hover card (empty: nothing known beyond its name).
    std::function<QStringList(const QString& airport)> AirportLines;
    // A click on the map clears this first, when it returns true (the measuring line), and does no more.
    std::function<bool()> ClickClears;

    void Click(double x, double y);
    void Drag(double fromX, double fromY, double toX, double toY);
    void Wheel(int steps);    // whole steps of the wheel, forward positive
    void Zoom(double factor); // a pinch: the zoom times factor
    void ClearSelection();
    // The pointer has rested at (x, y): the card of the client under it shows beside it (list 61); true
    // when there is one. HoverEnd takes the card away.
    bool Hover(double x, double y);
    void HoverEnd();

    // The shown client nearest (x, y) within radiusPx pixels, if any.
    std::optional<network::ClientRef> ClientAt(double x, double y, double radiusPx) const;
    // The crowd of parked aircraft whose mark lies at (x, y), if any.
    std::optional<render::Crowd> CrowdAt(double x, double y) const;
    // An airport in use within radiusPx pixels of (x, y), or empty.
    QString AirportAt(double x, double y, double radiusPx = 8.0) const;

private:
    void Select(const network::ClientRef& client);
    void ZoomTo(float viewZ);

    MapState& m_state;
    SceneControl& m_scene;
    PanelControl& m_panels;
    render::GlApi& m_gl;
};

} // namespace sky::view
