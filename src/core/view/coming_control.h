#pragma once

#include <functional>
#include <vector>

#include <QDateTime>
#include <QSet>
#include <QString>

#include "network/http_client.h"
#include "network/prefiles.h"

namespace sky::render {
class GlApi;
}

namespace sky::view {

struct MapState;
class SceneControl;

// What is coming on VATSIM: the prefiles each download of its v3 data brings, and the bookings and
// events of their services, fetched at start-up and every 30 minutes while VATSIM is shown, with
// conditional requests, and kept in the home folder (data/vatsim-*.cache) so a start without the
// network shows the last known lists. A fetch that fails or brings no list keeps the last good one and
// says so in one line of the status band. The one writer of MapState::Coming; also records the marks
// of the airports with an event in progress (list 62), and tells of watched positions booked but not
// online. Owned by the map session.
class ComingControl {
public:
    // tell says a watched position's missed booking (network, callsign, text) as the alerts are said.
    ComingControl(MapState& state, SceneControl& scene, render::GlApi& gl, network::HttpClient& http,
                  std::function<void(int network, const QString& callsign, const QString& text)> tell);

    // The services' addresses (empty: that service is not read).
    void SetAddresses(const QString& bookings, const QString& events);
    // Start-up, once the map is ready: the kept lists, then a fetch of each service.
    void StartUp();
    // Once a second: a list whose last fetch is 30 minutes old is fetched again while VATSIM is shown
    // (alone or compared).
    void Tick();
    // The v3 data just interpreted listed these prefiles.
    void PrefilesRead(std::vector<network::Prefile> prefiles);
    // VATSIM's new data shows: the prefiles of members now online with that callsign go, watched
    // positions booked but not online are told (each booking once), the event marks follow.
    void VatsimShown(const std::function<bool(const QString& callsign)>& watched);
    // The event marks recorded again (a new GL context, another theme, other data).
    void RecordMarks();
    // The moment the lists are read for (see coming::Moment).
    QDateTime Moment() const;

    // The clock (UTC); tests fix it.
    std::function<QDateTime()> Clock = [] { return QDateTime::currentDateTimeUtc(); };
    // Told when a list changed, so what shows it is recorded again.
    std::function<void()> OnChanged;

    static constexpr qint64 kRefreshSeconds = 30 * 60;

private:
    enum class Kind { Bookings, Events };
    struct Service {
        Kind Of = Kind::Bookings;
        QString Address;
        QString CacheFile;         // under the home folder
        network::Validators Known; // of the list held
        QDateTime LastTry;         // invalid: not yet fetched in this run
    };
    void LoadCache(Service& service);
    void Refresh(Service& service);
    // Reads an answer into the list; false (and why) when it is no list.
    bool Take(Service& service, const QByteArray& body, QString& problem, QString& note);
    QDateTime& Fetched(Kind kind);
    void Say(const QString& text);

    MapState& m_state;
    SceneControl& m_scene;
    render::GlApi& m_gl;
    network::HttpClient& m_http;
    std::function<void(int, const QString&, const QString&)> m_tell;
    Service m_bookings{Kind::Bookings, {}, QStringLiteral("data/vatsim-bookings.cache"), {}, {}};
    Service m_events{Kind::Events, {}, QStringLiteral("data/vatsim-events.cache"), {}, {}};
    QSet<QString> m_told; // the missed bookings told in this run
};

} // namespace sky::view
