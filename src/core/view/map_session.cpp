#include "view/map_session.h"

#include <QDir>

#include "render/frame.h"
#include "render/geography.h"
#include "render/gl_api.h"
#include "render/list_numbers.h"

using namespace Qt::StringLiterals;

namespace sky::view {

MapSession::MapSession(Folders files, Settings settings, Friends friends, render::GlApi& gl, MapHost& host,
                       network::HttpClient& http)
    : m_state(std::move(files), std::move(settings), std::move(friends)), m_gl(gl), m_host(host),
      m_http(http), m_scene(m_state, gl, host), m_download(m_state, m_scene, host, http),
      m_panelControl(
          m_state, m_scene, gl, [this](int network, const QString& vid) { OpenProfile(network, vid); },
          [this] { SaveFriends(); }),
      m_pointer(m_state, m_scene, m_panelControl) {
    const QString theme = m_state.Config.ColourTheme;
    m_state.Colours = LoadColourTheme(m_state.Files.Holding(u"colours/"_s + theme), theme);
    const Settings& s = m_state.Config;
    m_state.View = {s.X[0], s.Y[0], s.Z[0]};
    for (int n = 0; n < network::kNetworkCount; ++n) {
        m_state.Downloads.Networks[n].StatusFileAddress = network::DefaultStatusFileAddress(n);
        const QString& profile = n == 0 ? s.IVAOProfileURL : s.VATSIMProfileURL;
        m_state.Downloads.Networks[n].FallbackProfileUrl =
            profile.isEmpty() ? network::DefaultProfileAddress(n) : profile;
        m_state.AllTables()[n].SetLimits(s.MaxPilots, s.MaxControllers);
    }
}

QString MapSession::StartUp() {
    // The reference data and geography as shipped, unless the home folder holds its own.
    const QString data = QDir(m_state.Files.Holding(u"data/airports.dat"_s)).filePath(u"data"_s);
    const int w = m_state.WidthPx, h = m_state.HeightPx;
    render::BuildFrame(m_gl, m_state.Colours, w, h, m_state.Display.StatusText);
    render::BuildTitleBox(m_gl, m_state.Colours, w, h);
    m_scene.MarksChanged();
    m_scene.ClientCountChanged();
    m_scene.SetStatus(u"Loading components..."_s);
    m_state.Outlines = FirOutlines::Load(data);
    m_scene.SetStatus(u"Loading aeronautical data..."_s);
    m_state.Reference = ReferenceData::Load(data);
    m_scene.SetStatus(u"Loading geographical data..."_s);
    m_scene.Redraw();
    const render::GeographyResult geography = render::LoadGeography(
        m_gl, m_state.Colours, data, m_state.Config.DisableCountries, [this] { m_scene.Redraw(); });
    m_scene.SetStatus(u"Ready"_s);
    m_state.Display.ShowAbout = false;
    m_gl.DeleteList(render::lists::kTitleBox);
    m_scene.Redraw();
    m_state.Display.PanelMode = 0;
    m_state.Downloads.DownloadIdle = true;
    return geography.MissingFile;
}

KeyContext MapSession::Keys() {
    return KeyContext{m_state.Config,     m_state.Display,     m_state.View,
                      m_state.FriendList, m_state.AllTables(), *this};
}

void MapSession::KeyDown(int keyCode, int modifiers) {
    KeyContext context = Keys();
    view::KeyDown(context, keyCode, modifiers);
}

void MapSession::KeyUp(int keyCode, int modifiers) {
    // With the list or the board open, the arrows and page keys turn its pages.
    const unsigned char mode = m_state.Display.PanelMode;
    if (mode != 0 && mode != 8 && m_panelControl.Key(keyCode))
        return;
    KeyContext context = Keys();
    view::KeyUp(context, keyCode, modifiers);
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
                                      {}};
    return m_companion.Enter(input, context);
}

void MapSession::ApplyPreferences(const Settings& changed) {
    const Settings before = m_state.Config;
    m_state.Config = changed;
    for (int n = 0; n < network::kNetworkCount; ++n)
        m_state.AllTables()[n].SetLimits(changed.MaxPilots, changed.MaxControllers);
    if (changed.AutoDownload != before.AutoDownload)
        m_host.EnableAutoDownload(changed.AutoDownload);
    if (changed.ColourTheme != before.ColourTheme) {
        m_state.Colours =
            LoadColourTheme(m_state.Files.Holding(u"colours/"_s + changed.ColourTheme), changed.ColourTheme);
        m_scene.ThemeChanged();
    }
    m_scene.Redraw();
}

void MapSession::SaveFriends() {
    // Kept as soon as they change, so a friend added is not lost when the program ends another way.
    const WriteResult saved = m_state.FriendList.Save(FriendsPath(m_state.Home));
    if (!saved.Ok)
        m_host.Report(saved.Message);
}

void MapSession::ShowCompanion() {
    m_host.ShowCompanion();
}

void MapSession::CentreOn(float latitude, float longitude, const QString& name) {
    m_scene.CentreOn(latitude, longitude, name);
}

void MapSession::MarkAirport(float latitude, float longitude, const QString& code) {
    m_scene.MarkAirport(latitude, longitude, code);
}

void MapSession::OpenProfile(int network, const QString& vid) {
    network::OpenProfile(m_state.Downloads.Networks[network == 1 ? 1 : 0], vid,
                         [this](const QString& address) { m_host.OpenUrl(address); });
}

} // namespace sky::view
