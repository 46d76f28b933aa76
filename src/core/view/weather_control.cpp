#include "view/weather_control.h"

#include <QDir>
#include <QUrl>

#include "coming/answer_cache.h"
#include "common/file_io.h"
#include "common/text_codec.h"
#include "conditions/flight_category.h"
#include "network/download.h"
#include "network/gunzip.h"
#include "network/http_client.h"
#include "render/weather_layer.h"
#include "view/map_state.h"

using namespace Qt::StringLiterals;

namespace sky::view {
namespace {

const QString kCacheFile = QStringLiteral("data/metars.cache");

// Only what came over the network is kept; a local file is its own copy.
bool Cached(const QString& address) {
    const QString scheme = QUrl(address).scheme().toLower();
    return scheme == u"http" || scheme == u"https";
}

} // namespace

WeatherControl::WeatherControl(MapState& state, render::GlApi& gl, network::HttpClient& http,
                               std::function<void(const QString&)> say)
    : m_state(state), m_gl(gl), m_http(http), m_say(std::move(say)) {}

QStringList WeatherControl::Airports(bool shownOnly) const {
    const int shown = m_state.Display.ShownNetwork;
    const filter::Visibility visible = m_state.Shown();
    QSet<QString> codes;
    for (int n = 0; n < network::kNetworkCount; ++n) {
        if (shown != 2 && n != shown)
            continue;
        const network::NetworkData& data = m_state.AllTables()[n];
        for (int slot = 1; slot <= data.PilotCount; ++slot) {
            const network::PilotRecord& p = data.Pilots[size_t(slot)];
            if (!shownOnly || visible.Shows(p))
                codes << p.DepAirport << p.DestAirport;
        }
        for (int slot = 1; slot <= data.ControllerCount; ++slot) {
            const network::ControllerRecord& c = data.Controllers[size_t(slot)];
            if (c.FacilityType > 1 && (!shownOnly || visible.Shows(c)))
                codes << c.Callsign.section(u'_', 0, 0);
        }
    }
    QStringList airports;
    for (const QString& code : codes)
        if (m_state.Reference.HasAirport(code))
            airports.append(code);
    airports.sort();
    return airports;
}

void WeatherControl::Follow() {
    if (!m_state.Config.ShowWeather)
        return;
    if (!m_cacheRead)
        LoadCache();
    const QDateTime now = Clock();
    if (!m_lastTry.isValid() || m_lastTry.secsTo(now) >= kRefreshSeconds || m_lastTry > now)
        Refresh();
    Record();
}

void WeatherControl::Record() {
    if (!m_state.Config.ShowWeather)
        return;
    std::vector<render::WeatherDot> dots;
    for (const QString& code : Airports(true)) {
        const auto metar = m_metars.constFind(code);
        const Airport* airport = m_state.Reference.FindAirport(code);
        if (metar != m_metars.cend() && airport)
            dots.push_back({{airport->Latitude, airport->Longitude},
                            conditions::CategoryOf(conditions::ReadConditions(metar->Text))});
    }
    render::BuildWeatherDots(m_gl, dots);
}

const conditions::StationMetar* WeatherControl::Find(const QString& icao) const {
    const auto found = m_metars.constFind(icao.toUpper());
    return m_state.Config.ShowWeather && found != m_metars.cend() ? &*found : nullptr;
}

QStringList WeatherControl::Lines(const QString& icao) const {
    const conditions::StationMetar* metar = Find(icao);
    if (!metar)
        return {};
    const QString category =
        conditions::CategoryName(conditions::CategoryOf(conditions::ReadConditions(metar->Text)));
    return {u"Flight category "_s + (category.isEmpty() ? u"unknown"_s : category),
            u"METAR "_s + metar->Text};
}

void WeatherControl::LoadCache() {
    m_cacheRead = true;
    const QString address = m_state.Config.MetarListURL;
    if (!Cached(address))
        return;
    const auto bytes = ReadWholeFile(QDir(m_state.Home).filePath(kCacheFile));
    const auto cached = bytes ? coming::ReadCache(*bytes) : std::nullopt;
    // A list of another service (the address was changed) is not this one's.
    if (!cached || cached->Address != address)
        return;
    Take(cached->Body);
    m_lastTry = cached->Fetched;
}

bool WeatherControl::Take(const QByteArray& body) {
    // A whole cache file comes packed.
    const std::optional<QByteArray> unpacked =
        body.startsWith("\x1f\x8b") ? network::GunzipBytes(body) : std::optional<QByteArray>(body);
    if (!unpacked)
        return false;
    conditions::MetarList list =
        conditions::ReadMetarList(DecodeText(*unpacked).Text, Clock(),
                                  [this](const QString& code) { return m_state.Reference.HasAirport(code); });
    // Lines and not one report (a page of the server's own): the list known stays.
    if (list.Metars.isEmpty() && list.LeftOut > 0)
        return false;
    m_metars = std::move(list.Metars);
    return true;
}

void WeatherControl::Refresh() {
    const QString address = m_state.Config.MetarListURL;
    const QStringList airports = Airports(false);
    // Another fetch is running, or nothing to ask for yet: the next call tries again.
    if (address.isEmpty() || !m_state.Downloads.DownloadIdle ||
        (address.contains(u"{ids}"_s) && airports.isEmpty()))
        return;
    const QDateTime now = Clock();
    m_lastTry = now;
    network::FetchResult fetched;
    {
        const network::BusyGuard busy(m_state.Downloads);
        fetched = m_http.Fetch(conditions::MetarListAddress(address, airports));
    }
    if (!fetched.Ok) {
        m_say(u"Weather not updated ("_s + (fetched.Error.isEmpty() ? u"no answer"_s : fetched.Error) + u')');
        return;
    }
    if (!Take(fetched.Body)) {
        m_say(u"Weather not updated (no reports in the answer)"_s);
        return;
    }
    if (!Cached(address))
        return;
    const WriteResult saved = WriteFileMakingFolder(QDir(m_state.Home).filePath(kCacheFile),
                                                    coming::CacheBytes({address, now, {}, fetched.Body}));
    if (!saved.Ok)
        m_say(u"Weather not kept for the next start: "_s + saved.Message);
}

} // namespace sky::view
