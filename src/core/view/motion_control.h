#pragma once

#include <array>
#include <functional>

#include <QDateTime>

#include "view/aircraft_motion.h"

namespace sky::view {

struct MapState;
class SceneControl;

// Live motion: after each live update the aircraft of that network move between reports (AircraftMotion:
// along their heading at their ground speed, gliding to each new report). Step() works out where they are
// now and records the moved symbols, labels and selection ring, not the scene. The window calls it at most
// ten times a second while Active() and the map is visible. Owned by the map session.
class MotionControl {
public:
    MotionControl(MapState& state, SceneControl& scene);

    // New live data of network are about to be shown.
    void Reported(int network);
    // The positions now, recorded; true while anything still moves. Off with Live or while replaying.
    bool Step();
    bool Active() const { return m_active; }
    // How long the window waits for the next step: a tenth of a second while gliding, else until the
    // fastest aircraft has moved about half a pixel at the zoom shown (at most a second).
    int StepIntervalMs() const;

    // Follow (the F key): the map stays centred on the selected aircraft as it moves, until the view is
    // moved another way (a drag, the arrow keys). Said in the status line; nothing without a selected
    // aircraft.
    void ToggleFollow();
    bool Following() const { return m_follow; }

    // A steady clock in milliseconds; tests fix it.
    std::function<qint64()> NowMs = [] { return QDateTime::currentMSecsSinceEpoch(); };

private:
    void Keep(int network); // the drawn positions into the state, for the data they were worked out for
    void Centre();          // the view onto the selected aircraft where it is drawn

    MapState& m_state;
    SceneControl& m_scene;
    std::array<AircraftMotion, 2> m_motion;
    bool m_active = false;
    bool m_follow = false;
    geo::ViewState m_followView; // as Follow last set it
};

} // namespace sky::view
