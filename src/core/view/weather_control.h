#pragma once

#include <functional>

#include <QDateTime>
#include <QHash>
#include <QString>
#include <QStringList>

#include "conditions/metar_list.h"

namespace sky::network {
class HttpClient;
}
namespace sky::render {
class GlApi;
}

namespace sky::view {

struct MapState;

// The weather layer (W): while it is on, the METARs of the airports with traffic (departure or
// arrival of a shown flight, or a station online) come in one request to the service of MetarListURL,
// at most every 10 minutes, kept in the home folder (data/metars.cache) so a start within those
// minutes asks nothing; each such airport's dot takes its flight category's colour (list 68). Nothing
// is fetched while the layer is off. Owned by the map session.
class WeatherControl {
public:
    // say puts a line in the status band (a fetch that failed).
    WeatherControl(MapState& state, render::GlApi& gl, network::HttpClient& http,
                   std::function<void(const QString&)> say);

    // After keys, downloads and once a minute: with the layer on, the kept list is read once, a new one
    // asked for when due (and no other fetch runs), and the dots recorded for what the map shows.
    void Follow();
    // The dots recorded again (a new GL context, other traffic or filter), while the layer is on.
    void Record();
    // An airport's newest METAR while the layer is on; null when none is known.
    const conditions::StationMetar* Find(const QString& icao) const;
    // An airport's weather for its hover card: the category and the report ("Flight category IFR",
    // "METAR EGLL ..."), while the layer is on; empty when unknown.
    QStringList Lines(const QString& icao) const;

    // The clock (UTC); tests fix it.
    std::function<QDateTime()> Clock = [] { return QDateTime::currentDateTimeUtc(); };

    static constexpr qint64 kRefreshSeconds = 10 * 60;

private:
    QStringList Airports(bool shownOnly) const; // of the shown network's traffic, sorted
    void LoadCache();
    void Refresh();
    bool Take(const QByteArray& body); // false: no list in it, the one known stays

    MapState& m_state;
    render::GlApi& m_gl;
    network::HttpClient& m_http;
    std::function<void(const QString&)> m_say;
    QHash<QString, conditions::StationMetar> m_metars;
    QDateTime m_lastTry;
    bool m_cacheRead = false;
};

} // namespace sky::view
