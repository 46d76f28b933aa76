#include "view/map_session.h"

#include <QDir>

#include "app/friend_names.h"
#include "render/frame.h"
#include "render/geography.h"
#include "coming/whats_on.h"
#include "common/text_codec.h"
#include "companion/weather_commands.h"
#include "conditions/runways.h"
#include "network/http_client.h"
#include "route/route_resolver.h"
#include "view/keys.h"

using namespace Qt::StringLiterals;

namespace sky::view {

namespace {

// A FIR is seen whole from this zoom.
constexpr float kFirZoom = 4.0f;

// The part of the map right of the list panel or board.
render::PixelRect FreeOfTable(int widthPx, int heightPx) {
    const render::PixelRect table = render::LayoutPanels(widthPx, heightPx).ListPanel;
    const int left = table.X + table.Width;
    return {left, render::kTitleStripPx, std::max(1, widthPx - left),
            std::max(1, heightPx - 2 * render::kTitleStripPx)};
}

} // namespace

MapSession::MapSession(Folders files, Settings settings, Friends friends, render::GlApi& gl, MapHost& host,
                       network::HttpClient& http, history::HistoryStore* history,
                       const network::FeedAddresses& addresses)
    : m_state(std::move(files), std::move(settings), std::move(friends)), m_gl(gl), m_host(host),
      m_http(http), m_scene(m_state, gl, host),
      m_panelControl(
          m_state, m_scene, gl,
          {[this](int network, const QString& vid) { OpenProfile(network, vid); }, [this] { SaveFriends(); },
           [this](const QString& icao) { return Metar(icao); },
           [this](const network::ClientRef& c) { return m_history.Paths(c).RoutePoints; },
           [this](const QString& callsign) {
               return m_alerts.Watches().Patterns().contains(alerts::WatchList::Normalised(callsign));
           },
           [this](const QString& callsign) {
               QString problem;
               m_scene.SetStatus(m_alerts.ToggleWatch(callsign, problem));
               if (!problem.isEmpty())
                   m_host.Report(problem);
           },
           [this](const network::ClientRef& c) { GoTo(c); }, [this] { return m_coming.Moment(); },
           [this](const QString& callsign) { return MarkPlan(callsign); },
           [this](const QString& address) { m_host.OpenUrl(address); },
           [this](const network::ClientRef& c) { ChartFlight(c); },
           [this](const QString& airport) { ChartAirport(airport); }, [this] { return m_download.Now(); },
           [this] { return m_motion.Following(); }, [this] { m_motion.ToggleFollow(); }}),
      m_download(m_state, m_scene, m_panelControl, host, http),
      m_live(m_state, m_scene, m_panelControl, m_download), m_motion(m_state, m_scene),
      m_pointer(m_state, m_scene, m_panelControl, gl),
      m_history(m_state, m_scene, history, m_state.NavaidList),
      m_alerts(m_state,
               [this](const alerts::OnlineChange& change) {
                   Tell(change.Network, change.Client.Callsign, change.Text());
               }),
      m_coming(m_state, m_scene, gl, http,
               [this](int network, const QString& callsign, const QString& text) {
                   Tell(network, callsign, text);
               }),
      m_filters(
          m_state, m_scene,
          [this] {
              KeyContext keys = Keys();
              FriendsFilter(keys);
          },
          [this] {
              m_panelControl.RecordAgain();
              m_weather.Record();
              m_host.FilterChanged();
          }),
      m_measure(m_state, m_scene, gl, m_pointer), m_weather(m_state, gl, http, [this](const QString& text) {
          m_scene.SetStatus(text);
          m_scene.Redraw();
      }) {
    m_weather.Clock = [this] { return m_download.Now().toUTC(); };
    m_pointer.AirportLines = [this](const QString& airport) { return AirportLines(airport); };
    m_state.FriendNames = KeyedLines::Load(FriendNamesPath(m_state.Home));
    m_filters.Load();
    m_pointer.ClickClears = [this] { return m_measure.Clear(); };
    m_download.OnShown = [this](int network) {
        m_alerts.Downloaded(network);
        m_weather.Follow();
        if (network == 1)
            m_coming.VatsimShown(
                [this](const QString& callsign) { return m_alerts.Watches().Matches(callsign); });
    };
    m_live.OnNewData = [this](int network) { m_motion.Reported(network); };
    m_download.OnPrefiles = [this](int network, std::vector<network::Prefile> prefiles) {
        if (network == 1)
            m_coming.PrefilesRead(std::move(prefiles));
    };
    m_coming.SetAddresses(addresses.Bookings, addresses.Events);
    m_coming.OnChanged = [this] {
        m_panelControl.RecordAgain();
        m_scene.Redraw();
    };
    m_scene.SetPathSource([this](const network::ClientRef& client) { return m_history.Paths(client); });
    m_download.OnInterpreted = [this](int network, const QString& text) {
        m_history.Interpreted(network, text, m_download.Now());
        if (const QString problem = m_history.TakeProblem(); !problem.isEmpty())
            m_host.Report(u"Skylantra keeps no history: "_s + problem);
        if (m_state.Display.ShowTrails)
            m_scene.RecordAllTrails(m_history.AllTracks());
    };
    const QString theme = m_state.Config.ColourTheme;
    m_state.Colours = LoadColourTheme(m_state.Files.Holding(u"colours/"_s + theme), theme);
    const Settings& s = m_state.Config;
    m_state.View = {s.X[0], s.Y[0], s.Z[0]};
    for (int n = 0; n < network::kNetworkCount; ++n) {
        m_state.Downloads.Networks[n].StatusFileAddress = addresses.Status[size_t(n)];
        m_state.Downloads.Networks[n].JsonAddress = addresses.Json[size_t(n)];
        const QString& profile = n == 0 ? s.IVAOProfileURL : s.VATSIMProfileURL;
        m_state.Downloads.Networks[n].FallbackProfileUrl =
            profile.isEmpty() ? network::DefaultProfileAddress(n) : profile;
        m_state.AllTables()[n].SetLimits(s.MaxPilots, s.MaxControllers);
    }
}

QString MapSession::DataFolder() const {
    // The reference data and geography as shipped, unless the home folder holds its own.
    return QDir(m_state.Files.Holding(u"data/airports.dat"_s)).filePath(u"data"_s);
}

QString MapSession::StartUp() {
    const QString data = DataFolder();
    const int w = m_state.WidthPx, h = m_state.HeightPx;
    render::BuildFrame(m_gl, m_state.Colours, w, h, m_state.Display.StatusText);
    render::BuildTitleBox(m_gl, m_state.Colours, w, h);
    m_scene.MarksChanged();
    m_scene.ClientCountChanged();
    m_scene.SetStatus(u"Loading components..."_s);
    m_state.Outlines = FirOutlines::Load(data);
    m_scene.SetStatus(u"Loading aeronautical data..."_s);
    m_state.Reference = ReferenceData::Load(data);
    m_state.NavaidList = Navaids::Load(data);
    m_search.SetPlaces(m_state.Reference);
    m_scene.SetStatus(u"Loading geographical data..."_s);
    m_scene.Redraw();
    const render::GeographyResult geography = render::LoadGeography(
        m_gl, m_state.Colours, data, m_state.Config.DisableCountries, [this] { m_scene.Redraw(); });
    m_scene.SetLand(geography.Land);
    m_scene.RecordNight(m_download.Now());
    m_scene.SetStatus(u"Ready"_s);
    m_state.Display.ShowAbout = false;
    render::DeleteTitleBox(m_gl);
    m_scene.Redraw();
    m_panelControl.Ready();
    m_state.Downloads.DownloadIdle = true;
    if (const QString problem = m_history.TakeProblem(); !problem.isEmpty())
        m_host.Report(u"Skylantra keeps no history: "_s + problem);
    if (const QString problem = m_alerts.TakeProblem(); !problem.isEmpty())
        m_host.Report(problem);
    // Automatic download runs from the start, so alerts come without a first download by hand.
    if (m_state.Config.AutoDownload)
        m_host.EnableAutoDownload(true);
    m_coming.StartUp();
    return geography.MissingFile;
}

void MapSession::RecordAllLists() {
    m_scene.SetLand(
        render::LoadGeography(m_gl, m_state.Colours, DataFolder(), m_state.Config.DisableCountries, {}).Land);
    if (m_state.Display.ShowAbout)
        render::BuildTitleBox(m_gl, m_state.Colours, m_state.WidthPx, m_state.HeightPx);
    m_scene.ThemeChanged();
    m_scene.RecordNight(m_download.Now(), true);
    m_measure.RecordAgain();
    if (m_state.Display.ShowTrails)
        m_scene.RecordAllTrails(m_history.AllTracks());
    m_panelControl.RecordAgain();
    m_coming.RecordMarks();
    m_weather.Record();
}

void MapSession::DownloadOnStart(const QString& networks) {
    const std::optional<int> network = network::NetworkNamed(networks);
    if (!network)
        return;
    // Live, the feed is fetched by the live control at once; a network without a JSON feed (or whose
    // feed gave nothing) is downloaded as always.
    if (m_state.Config.Live) {
        m_scene.ShowNetwork(*network);
        m_live.Tick();
        const network::ClientTables& tables = m_state.AllTables();
        if ((*network == 2 ? tables[0].ConnectedClients * tables[1].ConnectedClients
                           : tables[size_t(*network)].ConnectedClients) > 0)
            return;
    }
    m_download.BtnDownload(*network);
}

void MapSession::Resize(int widthPx, int heightPx) {
    m_scene.Resize(widthPx, heightPx);
    if (m_panelControl.Mode() != PanelMode::Starting)
        m_panelControl.CloseAll();
}

KeyContext MapSession::Keys() {
    return KeyContext{m_state.Config,     m_state.Display,     m_state.View, m_panelControl.Mode(),
                      m_state.FriendList, m_state.AllTables(), *this};
}

void MapSession::KeyDown(int keyCode, int modifiers) {
    KeyContext context = Keys();
    view::KeyDown(context, keyCode, modifiers);
}

void MapSession::KeyUp(int keyCode, int modifiers) {
    // Follow acts beside the selected aircraft's info box too.
    if (keyCode == keys::Letter('F') && modifiers == 0 && m_panelControl.Mode() != PanelMode::Table &&
        m_panelControl.Mode() != PanelMode::TableAndInfoBox) {
        m_motion.ToggleFollow();
        return;
    }
    // With the list or the board open, the arrows and page keys turn its pages.
    if (render::AnyPanelOpen(m_panelControl.Mode()) && m_panelControl.Key(keyCode))
        return;
    // Keys of our own on the bare map: Escape takes the measuring line away, X every filter.
    if (m_panelControl.Mode() == PanelMode::None) {
        if (keyCode == keys::kEscape && m_measure.Clear())
            return;
        if (keyCode == keys::Letter('X') && modifiers == 0) {
            m_filters.Clear();
            return;
        }
        if (keyCode == keys::Letter('L') && modifiers == keys::kCtrl) {
            m_live.SetLive(!m_state.Config.Live);
            return;
        }
    }
    KeyContext context = Keys();
    view::KeyUp(context, keyCode, modifiers);
    m_weather.Follow(); // the layer turned on, or other traffic shown
}

bool MapSession::CompanionEnter(const QString& input) {
    companion::CommandContext context{m_state.AllTables(),
                                      m_state.Downloads,
                                      m_state.Reference,
                                      m_state.Display.ShownNetwork,
                                      *this,
                                      m_http,
                                      m_state.Config.WeatherServer,
                                      m_download.Now,
                                      {},
                                      m_state.Config.Live && !m_state.Display.Replaying};
    return m_companion.Enter(input, context);
}

void MapSession::ApplyPreferences(const Settings& changed) {
    const Settings before = m_state.Config;
    m_state.Config = changed;
    for (int n = 0; n < network::kNetworkCount; ++n)
        m_state.AllTables()[n].SetLimits(changed.MaxPilots, changed.MaxControllers);
    if (changed.AutoDownload != before.AutoDownload)
        m_host.EnableAutoDownload(changed.AutoDownload);
    if (changed.FriendNamesInstead != before.FriendNamesInstead)
        m_scene.Refilter(); // the labels with the names as now chosen
    if (changed.ColourTheme != before.ColourTheme) {
        m_state.Colours =
            LoadColourTheme(m_state.Files.Holding(u"colours/"_s + changed.ColourTheme), changed.ColourTheme);
        m_panelControl.CloseAll();
        RecordAllLists();
    }
    m_scene.Redraw();
}

void MapSession::NameFriend(const QString& member, const QString& name) {
    const QString chosen = name.trimmed().left(kFriendNameChars);
    // Changed in the file as it is now, so names another program gave meanwhile stay.
    const WriteResult saved = KeyedLines::Update(
        FriendNamesPath(m_state.Home), [&](KeyedLines& names) { names.Set(member, chosen); },
        m_state.FriendNames);
    if (!saved.Ok) {
        m_state.FriendNames.Set(member, chosen);
        m_host.Report(saved.Message);
    }
    ++m_namesChanged;
    m_scene.Refilter();
    m_panelControl.RecordAgain();
    m_scene.SetStatus(u"Member "_s + member +
                      (chosen.isEmpty() ? u" has no name of yours"_s : u" named "_s + chosen));
    m_scene.Redraw();
}

void MapSession::SaveFriends() {
    // Kept as soon as they change, so a friend added is not lost when the program ends another way.
    if (const QString problem = m_alerts.SaveFriends(); !problem.isEmpty())
        m_host.Report(problem);
}

void MapSession::CheckSharedFiles() {
    const AlertControl::Reloaded changed = m_alerts.ReloadChangedLists();
    if (!changed.Friends && !changed.Watches)
        return;
    if (changed.Friends && m_state.Display.FriendsOnly)
        m_scene.RebuildScene(m_state.Display.ShownNetwork);
    m_scene.SetStatus(changed.Friends ? u"Friends list changed by another program"_s
                                      : u"Watch list changed by another program"_s);
    m_scene.Redraw();
}

std::vector<search::SearchResult> MapSession::Search(const QString& text) {
    const int shown = m_state.Display.ShownNetwork;
    const network::ClientTables& tables = m_state.AllTables();
    // The clients are indexed again when the data or the network shown changed.
    const QString data =
        m_filters.Text() + u'/' + QString::number(m_namesChanged) + u'/' + QString::number(shown) + u'/' +
        tables[0].UpdateStamp + u'/' + QString::number(tables[0].PilotCount) + u'/' + tables[1].UpdateStamp +
        u'/' + QString::number(tables[1].PilotCount) + u'/' + tables[0].LastDownload.toString() +
        tables[1].LastDownload.toString() + u'/' + QString::number(m_state.Coming.PrefilesRevision);
    if (data != m_searchData) {
        m_search.SetClients(tables, shown == 2 ? std::vector<int>{0, 1} : std::vector<int>{shown},
                            m_state.Shown(), &m_state.FriendNames);
        m_search.SetPrefiles(shown == 0 ? std::vector<network::Prefile>() : m_state.Coming.Prefiles,
                             m_state.Reference);
        m_searchData = data;
    }
    m_panelControl.SetFilter(text);
    return m_search.Find(text);
}

void MapSession::ChooseSearchResult(const search::SearchResult& result) {
    m_panelControl.SetFilter({}); // the search's text filters the list only while the field is open
    switch (result.Kind) {
    case search::ResultKind::Client:
        CentreAndClose(result.Latitude, result.Longitude, result.Code);
        m_scene.Select(result.Client);
        m_panelControl.OpenInfoBox(result.Client);
        break;
    case search::ResultKind::Airport:
        m_scene.MarkAirport(result.Latitude, result.Longitude, result.Code);
        CentreAndClose(result.Latitude, result.Longitude, result.Code);
        m_panelControl.OpenBoard(result.Code);
        // The airport shows beside its board, not under it.
        m_scene.CentreIn(FreeOfTable(m_state.WidthPx, m_state.HeightPx));
        break;
    case search::ResultKind::Fir:
        CentreAndClose(result.Latitude, result.Longitude, result.Code, kFirZoom);
        break;
    case search::ResultKind::Prefile:
        CentreAndClose(result.Latitude, result.Longitude, result.Code, kFirZoom);
        m_panelControl.OpenPrefileBox(result.Code);
        break;
    }
}

bool MapSession::GoTo(int network, const QString& callsign) {
    if (network != 0 && network != 1)
        return false;
    const network::NetworkData& data = m_state.AllTables()[network];
    for (int slot = 1; slot <= data.PilotCount; ++slot) {
        if (data.Pilots[size_t(slot)].Callsign.compare(callsign, Qt::CaseInsensitive) == 0) {
            GoTo({network, true, slot});
            return true;
        }
    }
    for (int slot = 1; slot <= data.ControllerCount; ++slot) {
        if (data.Controllers[size_t(slot)].Callsign.compare(callsign, Qt::CaseInsensitive) == 0) {
            GoTo({network, false, slot});
            return true;
        }
    }
    return false;
}

void MapSession::GoTo(const network::ClientRef& client) {
    if (m_state.Display.ShownNetwork != client.Network && m_state.Display.ShownNetwork != 2) {
        m_scene.ShowNetwork(client.Network);
        m_scene.RebuildScene(client.Network);
    }
    // The list closes, so the map shows where it went.
    const network::ClientSummary found = network::Summarise(m_state.AllTables(), client);
    CentreAndClose(found.Latitude, found.Longitude, found.Callsign);
    m_scene.Select(client);
    m_panelControl.OpenInfoBox(client);
    m_scene.Redraw();
}

void MapSession::Tell(int network, const QString& callsign, const QString& text) {
    m_companion.AddText(text);
    m_scene.SetStatus(text);
    m_host.Notify(network, callsign, text);
}

int MapSession::MarkPlan(const QString& callsign) {
    const network::Prefile* prefile = coming::FindPrefile(m_state.Coming.Prefiles, callsign);
    const Airport* departure = prefile ? m_state.Reference.FindAirport(prefile->Departure) : nullptr;
    if (!departure)
        return 0;
    const auto route = route::ResolveRoute(prefile->Departure, prefile->Arrival, prefile->Route,
                                           m_state.Reference, m_state.NavaidList);
    render::FlightPaths paths;
    paths.RoutePoints = int(route.size());
    paths.Ahead.push_back({departure->Latitude, departure->Longitude});
    for (const route::RoutePoint& point : route)
        paths.Ahead.push_back({point.Latitude, point.Longitude});
    m_scene.MarkPlan({departure->Latitude, departure->Longitude}, prefile->Callsign, paths);
    return paths.RoutePoints;
}

QStringList MapSession::Watch(const QString& line) {
    QString problem;
    QStringList answer = m_alerts.WatchCommand(line, problem);
    if (!problem.isEmpty()) {
        // The change holds for this run; where it was typed, the answer says it was not kept.
        answer.append(u"Not saved: "_s + problem);
        m_host.Report(problem);
    }
    return answer;
}

QString MapSession::Metar(const QString& icao) {
    if (const conditions::StationMetar* known = m_weather.Find(icao))
        return known->Text;
    if (!m_state.Downloads.DownloadIdle || !m_state.Reference.HasAirport(icao))
        return {};
    network::FetchResult fetched;
    {
        const network::BusyGuard busy(m_state.Downloads);
        fetched = m_http.Fetch(companion::StationFileAddress(m_state.Config.WeatherServer, u"metar"_s, icao));
    }
    return fetched.Ok ? companion::ReportFromStationFile(DecodeText(fetched.Body).Text, icao) : QString();
}

QStringList MapSession::AirportLines(const QString& airport) const {
    QStringList lines;
    for (const QString& line : m_weather.Lines(airport))
        lines += WrapText(line, 40); // a report is long for a card
    const int shown = m_state.Display.ShownNetwork == 1 ? 1 : 0;
    if (const QString runways = conditions::RunwaysLine(m_state.AllTables()[shown], airport);
        !runways.isEmpty())
        lines.append(runways);
    return lines;
}

void MapSession::ReplayStep(int direction) {
    if (!m_history.Step(direction))
        m_scene.SetStatus(direction < 0 ? u"No earlier data kept"_s : u"Showing the newest data"_s);
    m_scene.Redraw();
}

void MapSession::ReplaySnapshot(int network, qint64 snapshotId) {
    if (!m_history.ShowSnapshot(network, snapshotId))
        m_scene.SetStatus(u"That moment is no longer kept"_s);
    m_scene.Redraw();
}

void MapSession::ChartFlight(const network::ClientRef& client) {
    const network::PilotRecord& p = m_state.AllTables()[client.Network].Pilots[size_t(client.Slot)];
    m_host.ShowFlightChart(client.Network, p.Callsign, p.VID);
}

void MapSession::ChartAirport(const QString& airport) {
    m_host.ShowAirportChart(m_state.Display.ShownNetwork == 1 ? 1 : 0, airport);
}

void MapSession::ReplayLive() {
    m_history.Live();
    m_scene.Redraw();
}

void MapSession::ToggleTrails() {
    DisplayState& d = m_state.Display;
    d.ShowTrails = !d.ShowTrails;
    if (d.ShowTrails)
        m_scene.RecordAllTrails(m_history.AllTracks());
    m_scene.SetStatus(d.ShowTrails ? u"Trails of every aircraft"_s : u"Trails off"_s);
    m_scene.Redraw();
}

void MapSession::ShowCompanion() {
    m_host.ShowCompanion();
}

void MapSession::CentreOn(float latitude, float longitude, const QString& name) {
    CentreAndClose(latitude, longitude, name);
}

void MapSession::CentreAndClose(float latitude, float longitude, const QString& name, float zoom) {
    m_panelControl.CloseAll();
    m_scene.CentreOn(latitude, longitude, name, zoom);
}

void MapSession::MarkAirport(float latitude, float longitude, const QString& code) {
    m_scene.MarkAirport(latitude, longitude, code);
}

void MapSession::OpenProfile(int network, const QString& vid) {
    network::OpenProfile(m_state.Downloads.Networks[network == 1 ? 1 : 0], vid,
                         [this](const QString& address) { m_host.OpenUrl(address); });
}

} // namespace sky::view
