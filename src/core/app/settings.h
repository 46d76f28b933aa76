#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include <QString>

#include "common/file_io.h"

namespace sky {

class Friends;
class IniFile;

// Every user setting of skln.ini, named after its key. The window geometry is held in twips (pixels
// times TwipsPerPixel) and written in pixels.
struct Settings {
    // [User]
    QString IVAO_ID = QStringLiteral("100000");
    QString VATSIM_ID = QStringLiteral("800000");
    // [Display]
    QString ColourTheme = QStringLiteral("default.dc");
    bool DisableSmooth = false;
    bool DisableCountries = false;
    std::int32_t WindowWidth = 0; // twips
    std::int32_t WindowHeight = 0;
    std::int32_t WindowLeft = 0;
    std::int32_t WindowTop = 0;
    // [Network]
    bool AutoDownload = false;
    std::int16_t DownloadMinutes = 5;
    std::int16_t Timeout = 15; // seconds
    // Live: the JSON feeds of the shown network followed every LiveSeconds (15 to 300).
    bool Live = false;
    std::int16_t LiveSeconds = 15;
    QString Proxy = QStringLiteral("0");
    bool TextForce = false;
    // Where the networks' status files are; empty means the built-in addresses. Read, never written.
    QString IVAOStatusURL;
    QString VATSIMStatusURL;
    // JSON feeds read directly, without a status file; empty: the built-in choice. Read, never written.
    QString IVAOJsonURL;
    QString VATSIMJsonURL;
    // VATSIM's controller bookings and events services; empty: the built-in addresses. Read, never written.
    QString VATSIMBookingsURL;
    QString VATSIMEventsURL;
    // How many hours of what it saw the program keeps in its history (0: none). Read, never written.
    std::int16_t HistoryHours = 24;
    // The most pilots and controllers (observers included) kept per network: by default what today's
    // feeds carry, at least 1400 and 700; the Preferences write them.
    std::int16_t MaxPilots = 10000;
    std::int16_t MaxControllers = 3000;
    // Member profile pages where a status file names none: "{id}" stands for the member number, else
    // "?ID=" and it follow. Empty: the network's own page. Read, never written.
    QString IVAOProfileURL;
    QString VATSIMProfileURL;
    // The weather server: the address before "/data/..." of its station files; the Preferences write it.
    QString WeatherServer = QStringLiteral("https://tgftp.nws.noaa.gov");
    // The weather layer's one request for many stations' METARs: "{ids}" stands for their codes joined
    // by commas; an address without it is a whole list (a cycle or cache file). Read, never written.
    QString MetarListURL = QStringLiteral("https://aviationweather.gov/api/data/metar?ids={ids}&format=raw");
    // [Zoom]: the three stored views, index 0 to 2 for views 1 to 3.
    std::array<float, 3> X = {13.34f, -97.72f, -27.68f};
    std::array<float, 3> Y = {-54.15f, -46.23f, -36.71f};
    std::array<float, 3> Z = {1.49f, 0.75f, 0.43f};
    // [Map]
    bool ShowLatLon = true;
    bool ShowPlanes = true;
    bool ShowPlaneLabels = true;
    bool ShowATC = true;
    bool ShowATCLabels = true;
    bool ShowAirports = true;
    bool ShowAirportLabels = true;
    bool ShowInbounds = false;
    bool ShowActualHeading = false;
    bool ShowNight = true; // the night side of the globe shaded (N)
    // Airports' dots in their flight category's colour (W).
    bool ShowWeather = false;
    // Labels that would overlap are left out by priority (the D key); off, every label is drawn.
    bool DeclutterLabels = true;
    // A friend's chosen name replaces the callsign in labels instead of standing beside it.
    bool FriendNamesInstead = false;

    // The member number on network 0 (IVAO) or 1 (VATSIM).
    const QString& MemberId(int network) const { return network == 0 ? IVAO_ID : VATSIM_ID; }
};

// The smallest window the settings keep, in pixels.
inline constexpr int kMinWindowWidthPx = 720;
inline constexpr int kMinWindowHeightPx = 540;

// What the settings need to know of the screen: its twips per pixel and its size in pixels.
struct ScreenMetrics {
    float TwipsPerPixel = 15.0f;
    int WidthPx = 1024;
    int HeightPx = 768;
};

// The window as it is at shut-down, in twips. While Maximised, Settings keeps the geometry to restore.
struct WindowPlacement {
    bool Maximised = false;
    std::int32_t Left = 0;
    std::int32_t Top = 0;
    std::int32_t Width = 0;
    std::int32_t Height = 0;
};

// Reads every setting from ini, applying the defaults, clamps and the conversion of the geometry to
// twips (a window position of 0.1 centres the window on the screen).
Settings ReadSettings(const IniFile& ini, const ScreenMetrics& screen);

// Writes the settings into ini in their fixed order. Proxy, TextForce and the status addresses are never
// written, so a line the user added by hand stays as it is.
void WriteSettings(const Settings& settings, const WindowPlacement& window, float twipsPerPixel,
                   IniFile& ini);

// What the Preferences changed, written into ini at once: each key whose value differs between before
// and after, in the form the settings are written in; the keys that are read but never written
// (weather server, table limits) only when the user changed them there. Proxy and TextForce never.
void WriteChangedPreferences(const Settings& before, const Settings& after, IniFile& ini);

// The paths of the files the settings live in, under the home folder.
QString SettingsPath(const QString& home);
QString FriendsPath(const QString& home);

// Start-up: reads the friends list, then skln.ini.
Settings LoadSettings(const QString& home, const ScreenMetrics& screen, Friends& friends);

// Shut-down: writes skln.ini atomically; a file that cannot be written keeps its previous content and
// the message says so. The friends list is not written here: it is kept as soon as it changes, merged
// with what another program on the same home changed (FriendsFile), which a rewrite at exit would undo.
WriteResult SaveSettings(const QString& home, const Settings& settings, const WindowPlacement& window,
                         float twipsPerPixel);

} // namespace sky
