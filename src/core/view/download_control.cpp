#include "view/download_control.h"

#include <QDir>

#include "view/download_timers.h"
#include "view/map_host.h"
#include "view/map_state.h"
#include "view/panel_control.h"
#include "view/scene_control.h"

using namespace Qt::StringLiterals;

namespace sky::view {

DownloadControl::DownloadControl(MapState& state, SceneControl& scene, PanelControl& panels, MapHost& host,
                                 network::HttpClient& http)
    : m_state(state), m_scene(scene), m_panels(panels), m_host(host), m_http(http) {}

network::DownloadContext DownloadControl::Context() {
    return network::DownloadContext{m_state.Downloads,
                                    m_state.AllTables(),
                                    m_state.Reference,
                                    m_http,
                                    *this,
                                    m_state.Files.DownloadFolder(),
                                    m_state.Config.TextForce,
                                    Now,
                                    Random};
}

void DownloadControl::BtnDownload(int network) {
    if (!m_state.Downloads.DownloadIdle)
        return;
    m_scene.ShowNetwork(network);
    m_panels.CloseAll();
    const std::vector<int> networks = network == 2 ? std::vector<int>{0, 1} : std::vector<int>{network};
    bool attempted = false;
    QString failure;
    std::vector<int> interpreted;
    for (int n : networks) {
        network::DownloadContext context = Context();
        using network::DownloadOutcome;
        const DownloadOutcome outcome = network::DownloadNetwork(context, n);
        if (outcome != DownloadOutcome::Busy && outcome != DownloadOutcome::TooEarly)
            attempted = true;
        if (outcome == DownloadOutcome::Interpreted)
            interpreted.push_back(n);
        if (outcome == DownloadOutcome::Interpreted || outcome == DownloadOutcome::NoClients)
            m_scene.MarkStale(n);
        else if (outcome != DownloadOutcome::TooEarly && outcome != DownloadOutcome::Busy)
            failure = m_state.Display.StatusText;
    }
    if (network == 2) {
        m_scene.MarkStale(2);
        m_scene.BuildComparisonScene();
    } else {
        m_scene.BuildTrafficScene(network);
    }
    // The old traffic is drawn again after a failed download; the failure stays in the status line.
    if (!failure.isEmpty())
        m_scene.SetStatus(failure);
    // Clients left out by full tables are said once a run for each network; the count panel marks it.
    for (int n : interpreted) {
        const QString notice = network::LimitNotice(m_state.AllTables()[n], n);
        if (!notice.isEmpty() && !m_limitSaid[size_t(n)]) {
            m_limitSaid[size_t(n)] = true;
            m_scene.SetStatus(notice);
        }
    }
    m_scene.ClientCountChanged();
    if (attempted)
        m_autoCountdown = std::int16_t(m_state.Config.DownloadMinutes * 60);
    if (m_state.Config.AutoDownload)
        m_host.EnableAutoDownload(true);
    if (OnShown)
        for (int n : interpreted)
            OnShown(n);
    m_scene.Redraw();
}

TimerContext DownloadControl::Timers() {
    return TimerContext{m_autoCountdown,
                        m_state.Display.ShownNetwork,
                        m_state.AllTables(),
                        m_state.Downloads,
                        Now(),
                        [this](int n) { BtnDownload(n); },
                        [this] {
                            MarksChanged();
                            m_scene.Redraw();
                        }};
}

void DownloadControl::AutoDownloadTimerTick() {
    // While a stored snapshot is replayed, no automatic download replaces it; a feed followed live
    // needs none.
    const int shown = m_state.Display.ShownNetwork == 1 ? 1 : 0;
    if (m_state.Display.Replaying ||
        (m_state.Config.Live && !network::LiveAddress(m_state.Downloads.Networks[size_t(shown)]).isEmpty()))
        return;
    TimerContext context = Timers();
    AutoDownloadTick(context);
}

void DownloadControl::DownloadTimerTick() {
    TimerContext context = Timers();
    DownloadTick(context);
}

void DownloadControl::ShowStatus(const QString& text) {
    m_scene.SetStatus(text);
    m_host.Redraw();
}

void DownloadControl::ShowNetworkMessage(const QString& text) {
    m_host.ShowNetworkMessage(text);
}

void DownloadControl::ClearTraffic(int network) {
    m_scene.ClearTraffic(network);
}

void DownloadControl::Interpreted(int network, const QString& text) {
    if (OnInterpreted)
        OnInterpreted(network, text);
}

void DownloadControl::PrefilesRead(int network, std::vector<network::Prefile> prefiles) {
    if (OnPrefiles)
        OnPrefiles(network, std::move(prefiles));
}

void DownloadControl::MarksChanged() {
    m_scene.MarksChanged();
}

} // namespace sky::view
