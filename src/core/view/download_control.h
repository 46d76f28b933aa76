#pragma once

#include <array>
#include <cstdint>
#include <functional>

#include <QDateTime>

#include "network/download.h"

namespace sky::network {
class HttpClient;
}

namespace sky::view {

struct MapState;
class MapHost;
class SceneControl;
class PanelControl;
struct TimerContext;

// The download button and the two one-second timers of the map: which network is shown, the
// downloads themselves, the scene built from their data, and the countdown to the next automatic
// download. Shows the download's progress through the scene's status line.
class DownloadControl final : public network::DownloadView {
public:
    DownloadControl(MapState& state, SceneControl& scene, PanelControl& panels, MapHost& host,
                    network::HttpClient& http);

    // The download button: shows network (2: both, compared), downloads, rebuilds and redraws.
    void BtnDownload(int network);
    void AutoDownloadTimerTick(); // once a second while the automatic download is enabled
    void DownloadTimerTick();     // once a second

    std::int16_t AutoDownloadCountdown() const { return m_autoCountdown; }

    // The clock and the server choice; tests fix them.
    std::function<QDateTime()> Now = [] { return QDateTime::currentDateTime(); };
    std::function<int(int)> Random;

    // DownloadView
    void ShowStatus(const QString& text) override;
    void ShowNetworkMessage(const QString& text) override;
    void ClearTraffic(int network) override;
    void MarksChanged() override;
    void Interpreted(int network, const QString& text) override;
    void PrefilesRead(int network, std::vector<network::Prefile> prefiles) override;

    // Told of every snapshot the downloads interpret (a replay ends with it).
    std::function<void(int network, const QString& text)> OnInterpreted;
    // Told of the prefiles a download's feed listed.
    std::function<void(int network, std::vector<network::Prefile> prefiles)> OnPrefiles;
    // Told when a downloaded network's new data shows, after the download's own status text.
    std::function<void(int network)> OnShown;

    // What a download of the map works with (the live fetches use it too).
    network::DownloadContext Context();

private:
    TimerContext Timers();

    MapState& m_state;
    SceneControl& m_scene;
    PanelControl& m_panels;
    MapHost& m_host;
    network::HttpClient& m_http;
    std::int16_t m_autoCountdown = 0;
    std::array<bool, 2> m_limitSaid{}; // a network's full tables were said in the status line
};

} // namespace sky::view
