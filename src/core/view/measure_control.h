#pragma once

#include <optional>

#include <QString>
#include <QStringList>

#include "geo/geodesy.h"

namespace sky::render {
class GlApi;
}

namespace sky::view {

struct MapState;
class SceneControl;
class PointerControl;

// One end of the measuring line: a place on the globe, or a client there (its callsign, and an
// aircraft's ground speed for the time to get there).
struct MeasureEnd {
    geo::LatLon Where;
    QString Callsign;
    std::optional<float> GroundSpeedKts;
};
struct MeasureLine {
    MeasureEnd From, To;
};

// The figures of a measuring line, as the map shows them, with the geodesy of the Companion's dist:
// "3341.73 nm  6188.89 km", "course 293° true" (initial, 0 to 359), and when an end is an aircraft
// moving at 40 knots or more (the first end first), "7h 25m at 450 kt".
QStringList MeasureFigures(const MeasureLine& line);

// The measuring line: a drag with Shift and the left button, or with the middle button, from a point or
// a client to a point or a client (a client within 12 pixels of the pointer is taken, at the position
// dist takes for it). The figures show beside the far end and in the status line; a click or Escape
// clears it. The one writer of the measuring line; it records list 64 through its builder.
class MeasureControl {
public:
    MeasureControl(MapState& state, SceneControl& scene, render::GlApi& gl, const PointerControl& pointer);

    // The drag began at (x, y) pixels; false beside the globe, where nothing is measured.
    bool Begin(double x, double y);
    // The drag went on to (x, y): the far end follows the pointer.
    void Follow(double x, double y);
    // Clears the line; true when there was one.
    bool Clear();
    // The line drawn again (new colours, a new GL context).
    void RecordAgain();

private:
    std::optional<MeasureEnd> EndAt(double x, double y) const;
    void Record();

    MapState& m_state;
    SceneControl& m_scene;
    render::GlApi& m_gl;
    const PointerControl& m_pointer;
};

} // namespace sky::view
