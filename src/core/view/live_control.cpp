#include "view/live_control.h"

#include "network/download.h"
#include "view/download_control.h"
#include "view/map_state.h"
#include "view/panel_control.h"
#include "view/scene_control.h"

using namespace Qt::StringLiterals;

namespace sky::view {

std::optional<network::ClientRef> FindAgain(const network::ClientTables& tables, int network, bool isPilot,
                                            const QString& callsign, const QString& vid) {
    const network::NetworkData& data = tables[size_t(network)];
    const int count = isPilot ? data.PilotCount : data.ControllerCount;
    for (int slot = 1; slot <= count; ++slot) {
        const network::ClientRef ref{network, isPilot, slot};
        const network::ClientSummary found = network::Summarise(tables, ref);
        if (found.Callsign == callsign && found.VID == vid)
            return ref;
    }
    return std::nullopt;
}

LiveControl::LiveControl(MapState& state, SceneControl& scene, PanelControl& panels,
                         DownloadControl& download)
    : m_state(state), m_scene(scene), m_panels(panels), m_download(download) {}

void LiveControl::SetLive(bool on) {
    m_state.Config.Live = on;
    for (int n = 0; n < network::kNetworkCount; ++n)
        m_schedule.Restart(n);
    m_scene.SetStatus(on ? u"Live: every "_s + QString::number(m_state.Config.LiveSeconds) + u" s"_s
                         : u"Live off"_s);
    m_scene.Redraw();
}

void LiveControl::Tick() {
    if (!m_state.Config.Live || m_state.Display.Replaying || !m_state.Downloads.DownloadIdle)
        return;
    m_panels.AgeInfoBox();
    m_schedule.SetInterval(m_state.Config.LiveSeconds);
    const int shown = m_state.Display.ShownNetwork;
    const std::vector<int> networks = shown == 2 ? std::vector<int>{0, 1} : std::vector<int>{shown};
    // The selection as who it is, for it moves to another slot with new data.
    std::optional<network::ClientSummary> selected;
    if (m_state.Selected)
        selected = network::Summarise(m_state.AllTables(), *m_state.Selected);
    const std::optional<Selection> before = m_state.Selected;
    bool changed = false, fetched = false;
    std::vector<int> interpreted;
    for (int n : networks) {
        if (!m_schedule.Due(n, NowMs()))
            continue;
        m_schedule.Started(n);
        fetched = true;
        network::DownloadContext context = m_download.Context();
        const network::DownloadOutcome outcome = network::DownloadLive(context, n, m_schedule);
        const bool failed = outcome == network::DownloadOutcome::FetchFailed;
        m_schedule.Finished(n, NowMs(), !failed);
        if (failed)
            m_scene.SetStatus(network::NetworkName(n) + u" live: no answer, next try in "_s +
                              QString::number(m_schedule.WaitSeconds(n)) + u" s"_s);
        if (outcome == network::DownloadOutcome::Interpreted)
            interpreted.push_back(n);
        changed = changed || outcome == network::DownloadOutcome::Interpreted ||
                  outcome == network::DownloadOutcome::NoClients;
    }
    if (!changed) {
        if (fetched) // the marks or the status line may have changed
            m_scene.Redraw();
        return;
    }
    if (before && selected)
        m_state.Selected = FindAgain(m_state.AllTables(), before->Network, before->IsPilot,
                                     selected->Callsign, selected->VID);
    if (OnNewData)
        for (int n : interpreted)
            OnNewData(n);
    m_scene.MarkStale(shown);
    m_scene.Refilter();
    m_scene.ClientCountChanged();
    const PanelMode mode = m_panels.Mode();
    if (render::ShowsInfoBox(mode) && m_state.Selected)
        m_panels.OpenInfoBox(*m_state.Selected);
    else if (render::ShowsInfoBox(mode))
        m_panels.CloseAll();
    else if (render::ShowsTable(mode))
        m_panels.RecordAgain();
    if (m_download.OnShown)
        for (int n : interpreted)
            m_download.OnShown(n);
    m_scene.Redraw();
}

} // namespace sky::view
