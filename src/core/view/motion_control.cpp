#include "view/motion_control.h"

#include <algorithm>

#include "network/client_records.h"
#include "view/map_state.h"
#include "view/scene_control.h"

using namespace Qt::StringLiterals;

namespace sky::view {

MotionControl::MotionControl(MapState& state, SceneControl& scene) : m_state(state), m_scene(scene) {}

void MotionControl::Reported(int network) {
    const network::NetworkData& data = m_state.AllTables()[size_t(network)];
    const int intervalS = m_state.Config.LiveSeconds;
    const qint64 nowMs = NowMs();
    AircraftMotion& motion = m_motion[size_t(network)];
    motion.Reported(data, ReportTimeMs(data.UpdateStamp, nowMs, qint64(intervalS) * 2000), nowMs, intervalS);
    m_active = motion.Step(nowMs) || m_active;
    Keep(network);
}

void MotionControl::Keep(int network) {
    m_state.DrawnPlanes[size_t(network)] = m_motion[size_t(network)].Drawn();
    m_state.DrawnStamp[size_t(network)] = m_state.AllTables()[size_t(network)].UpdateStamp;
}

int MotionControl::StepIntervalMs() const {
    const qint64 nowMs = NowMs();
    float fastestKt = 0;
    for (const AircraftMotion& motion : m_motion) {
        if (motion.Gliding(nowMs) && !motion.Drawn().empty())
            return 100;
        fastestKt = std::max(fastestKt, motion.FastestKt());
    }
    // The globe's radius is ViewZ window heights.
    const double pixelsPerNm = double(m_state.View.ViewZ) * m_state.HeightPx / geo::kEarthRadiusNm;
    const double pixelsPerS = pixelsPerNm * fastestKt / 3600.0;
    return int(std::clamp(pixelsPerS > 0 ? 500.0 / pixelsPerS : 1000.0, 100.0, 1000.0));
}

bool MotionControl::Step() {
    if (!m_state.Config.Live || m_state.Display.Replaying) {
        if (m_active)
            m_scene.RebuildScene(m_state.Display.ShownNetwork); // where they were reported
        for (int n = 0; n < network::kNetworkCount; ++n) {
            m_motion[size_t(n)].Clear();
            m_state.DrawnPlanes[size_t(n)].clear();
        }
        m_active = false;
        return false;
    }
    const int shown = m_state.Display.ShownNetwork;
    const qint64 nowMs = NowMs();
    bool moving = false;
    for (int n = 0; n < network::kNetworkCount; ++n) {
        if ((shown == n || shown == 2) && m_scene.DrawnPlanes(n)) {
            moving = m_motion[size_t(n)].Step(nowMs) || moving;
            Keep(n);
        }
    }
    m_scene.RecordMotion();
    if (m_follow) {
        const geo::ViewState& v = m_state.View;
        if (v.ViewX != m_followView.ViewX || v.ViewY != m_followView.ViewY || !m_state.Selected) {
            m_follow = false; // the user moved the map, or the aircraft went
            m_scene.SetStatus(u"Follow off"_s);
        } else {
            Centre();
        }
    }
    m_active = moving;
    return moving;
}

void MotionControl::ToggleFollow() {
    const bool aircraft = m_state.Selected && m_state.Selected->IsPilot;
    m_follow = !m_follow && aircraft;
    if (m_follow)
        Centre();
    if (m_follow)
        m_scene.SetStatus(u"Following "_s +
                          network::Summarise(m_state.AllTables(), *m_state.Selected).Callsign);
    else
        m_scene.SetStatus(aircraft ? u"Follow off"_s : u"Select an aircraft to follow"_s);
    m_scene.Redraw();
}

void MotionControl::Centre() {
    const Selection& s = *m_state.Selected;
    const network::ClientSummary reported = network::Summarise(m_state.AllTables(), s);
    geo::LatLon at{reported.Latitude, reported.Longitude};
    if (const std::vector<geo::LatLon>* drawn = m_scene.DrawnPlanes(s.Network);
        drawn && size_t(s.Slot) < drawn->size())
        at = (*drawn)[size_t(s.Slot)];
    m_scene.SetView({at.Lon, -at.Lat, m_state.View.ViewZ});
    m_followView = m_state.View;
}

} // namespace sky::view
