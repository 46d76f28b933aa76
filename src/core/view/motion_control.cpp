#include "view/motion_control.h"

#include "view/map_state.h"
#include "view/scene_control.h"

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
    m_active = moving;
    return moving;
}

} // namespace sky::view
