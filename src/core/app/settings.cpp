#include "app/settings.h"

#include <cmath>

#include <QDir>

#include "app/friends.h"
#include "app/ini_file.h"
#include "common/numbers.h"

using namespace Qt::StringLiterals;

namespace sky {
namespace {

constexpr int kMinWidthPx = kMinWindowWidthPx;
constexpr int kMinHeightPx = kMinWindowHeightPx;
// The stored default of a window position that was never saved; it asks for a centred window.
constexpr double kCentredPosition = 0.1;

double Number(const IniFile& ini, QStringView section, QStringView key, const QString& fallback) {
    return LeadingNumber(ini.Value(section, key, fallback));
}

bool Boolean(const IniFile& ini, QStringView section, QStringView key, bool fallback) {
    return ToBoolean(ini.Value(section, key, fallback ? u"1"_s : u"0"_s), fallback);
}

std::int32_t SizeInTwips(double pixels, int minimumPx, float twipsPerPixel) {
    double whole = RoundHalfEven(pixels);
    if (whole < minimumPx)
        whole = minimumPx;
    return ToInt32(whole * twipsPerPixel);
}

std::int32_t PositionInTwips(double pixels, int screenPx, std::int32_t sizeTwips, float twipsPerPixel) {
    if (pixels == kCentredPosition)
        return ToInt32((double(screenPx) * twipsPerPixel - sizeTwips) / 2.0);
    return ToInt32(pixels * twipsPerPixel);
}

// The whole-number part of value, kept within low to high.
std::int16_t WholeInRange(double value, int low, int high) {
    const double whole = std::trunc(value);
    if (whole < low)
        return std::int16_t(low);
    if (whole > high)
        return std::int16_t(high);
    return std::int16_t(whole);
}

QString BooleanText(bool value) {
    return value ? u"1"_s : u"0"_s;
}

QString ZoomText(float value) {
    return QString::number(ToInt32(double(value) * 100.0));
}

// Pixels from twips: a double while maximised (the remembered restore geometry), else a single, each
// in its shortest decimal form.
QString GeometryText(std::int32_t twips, float twipsPerPixel, bool asDouble) {
    const double pixels = double(twips) / double(twipsPerPixel);
    return asDouble ? ShortestDecimal(pixels) : ShortestDecimal(ToSingle(pixels));
}

} // namespace

Settings ReadSettings(const IniFile& ini, const ScreenMetrics& screen) {
    Settings s;
    const float tpp = screen.TwipsPerPixel;
    s.IVAO_ID = ini.Value(u"User", u"IVAO_ID", u"100000"_s);
    s.VATSIM_ID = ini.Value(u"User", u"VATSIM_ID", u"800000"_s);
    s.ColourTheme = ini.Value(u"Display", u"ColourTheme", u"default.dc"_s);
    s.DisableSmooth = Boolean(ini, u"Display", u"DisableSmooth", false);
    s.DisableCountries = Boolean(ini, u"Display", u"DisableCountries", false);
    s.WindowWidth = SizeInTwips(Number(ini, u"Display", u"WindowWidth", u"800"_s), kMinWidthPx, tpp);
    s.WindowHeight = SizeInTwips(Number(ini, u"Display", u"WindowHeight", u"600"_s), kMinHeightPx, tpp);
    s.WindowLeft =
        PositionInTwips(Number(ini, u"Display", u"WindowLeft", u"0.1"_s), screen.WidthPx, s.WindowWidth, tpp);
    s.WindowTop = PositionInTwips(Number(ini, u"Display", u"WindowTop", u"0.1"_s), screen.HeightPx,
                                  s.WindowHeight, tpp);
    s.AutoDownload = Boolean(ini, u"Network", u"AutoDownload", false);
    s.DownloadMinutes = WholeInRange(Number(ini, u"Network", u"DownloadMinutes", u"5"_s), 3, 30);
    s.Timeout = WholeInRange(Number(ini, u"Network", u"Timeout", u"15"_s), 5, 120);
    s.Live = Boolean(ini, u"Network", u"Live", false);
    s.LiveSeconds = WholeInRange(Number(ini, u"Network", u"LiveSeconds", u"15"_s), 15, 300);
    s.Proxy = ini.Value(u"Network", u"Proxy", u"0"_s);
    s.TextForce = Boolean(ini, u"Network", u"TextForce", false);
    s.IVAOStatusURL = ini.Value(u"Network", u"IVAOStatusURL", QString()).trimmed();
    s.VATSIMStatusURL = ini.Value(u"Network", u"VATSIMStatusURL", QString()).trimmed();
    s.IVAOJsonURL = ini.Value(u"Network", u"IVAOJsonURL", QString()).trimmed();
    s.VATSIMJsonURL = ini.Value(u"Network", u"VATSIMJsonURL", QString()).trimmed();
    s.VATSIMBookingsURL = ini.Value(u"Network", u"VATSIMBookingsURL", QString()).trimmed();
    s.VATSIMEventsURL = ini.Value(u"Network", u"VATSIMEventsURL", QString()).trimmed();
    s.MaxPilots = WholeInRange(Number(ini, u"Network", u"MaxPilots", u"10000"_s), 1400, 30000);
    s.MaxControllers = WholeInRange(Number(ini, u"Network", u"MaxControllers", u"3000"_s), 700, 30000);
    s.IVAOProfileURL = ini.Value(u"Network", u"IVAOProfileURL", QString()).trimmed();
    s.VATSIMProfileURL = ini.Value(u"Network", u"VATSIMProfileURL", QString()).trimmed();
    s.HistoryHours = WholeInRange(Number(ini, u"Network", u"HistoryHours", u"24"_s), 0, 24 * 366);
    s.WeatherServer = ini.Value(u"Network", u"WeatherServer", u"https://tgftp.nws.noaa.gov"_s).trimmed();
    s.MetarListURL = ini.Value(u"Network", u"MetarListURL", s.MetarListURL).trimmed();
    const std::array<std::array<QString, 3>, 3> zoomDefaults = {{
        {u"1334"_s, u"-5415"_s, u"149"_s},
        {u"-9772"_s, u"-4623"_s, u"75"_s},
        {u"-2768"_s, u"-3671"_s, u"43"_s},
    }};
    for (int view = 0; view < 3; ++view) {
        const QString n = QString::number(view + 1);
        s.X[view] = ToSingle(Number(ini, u"Zoom", QString(u'X' + n), zoomDefaults[view][0]) / 100.0);
        s.Y[view] = ToSingle(Number(ini, u"Zoom", QString(u'Y' + n), zoomDefaults[view][1]) / 100.0);
        s.Z[view] = ToSingle(Number(ini, u"Zoom", QString(u'Z' + n), zoomDefaults[view][2]) / 100.0);
    }
    s.ShowLatLon = Boolean(ini, u"Map", u"ShowLatLon", true);
    s.ShowPlanes = Boolean(ini, u"Map", u"ShowPlanes", true);
    s.ShowPlaneLabels = Boolean(ini, u"Map", u"ShowPlaneLabels", true);
    s.ShowATC = Boolean(ini, u"Map", u"ShowATC", true);
    s.ShowATCLabels = Boolean(ini, u"Map", u"ShowATCLabels", true);
    s.ShowAirports = Boolean(ini, u"Map", u"ShowAirports", true);
    s.ShowAirportLabels = Boolean(ini, u"Map", u"ShowAirportLabels", true);
    s.ShowInbounds = Boolean(ini, u"Map", u"ShowInbounds", false);
    s.ShowActualHeading = Boolean(ini, u"Map", u"ShowActualHeading", false);
    s.DeclutterLabels = Boolean(ini, u"Map", u"DeclutterLabels", true);
    s.ShowNight = Boolean(ini, u"Map", u"ShowNight", true);
    s.ShowWeather = Boolean(ini, u"Map", u"ShowWeather", false);
    s.FriendNamesInstead = Boolean(ini, u"Map", u"FriendNamesInstead", false);
    return s;
}

void WriteSettings(const Settings& s, const WindowPlacement& window, float twipsPerPixel, IniFile& ini) {
    ini.SetValue(u"User"_s, u"IVAO_ID"_s, s.IVAO_ID);
    ini.SetValue(u"User"_s, u"VATSIM_ID"_s, s.VATSIM_ID);

    ini.SetValue(u"Display"_s, u"ColourTheme"_s, s.ColourTheme);
    ini.SetValue(u"Display"_s, u"DisableSmooth"_s, BooleanText(s.DisableSmooth));
    ini.SetValue(u"Display"_s, u"DisableCountries"_s, BooleanText(s.DisableCountries));
    const bool restore = window.Maximised;
    const auto geometry = [&](std::int32_t stored, std::int32_t current) {
        return GeometryText(restore ? stored : current, twipsPerPixel, restore);
    };
    ini.SetValue(u"Display"_s, u"WindowLeft"_s, geometry(s.WindowLeft, window.Left));
    ini.SetValue(u"Display"_s, u"WindowTop"_s, geometry(s.WindowTop, window.Top));
    ini.SetValue(u"Display"_s, u"WindowWidth"_s, geometry(s.WindowWidth, window.Width));
    ini.SetValue(u"Display"_s, u"WindowHeight"_s, geometry(s.WindowHeight, window.Height));

    ini.SetValue(u"Network"_s, u"AutoDownload"_s, BooleanText(s.AutoDownload));
    ini.SetValue(u"Network"_s, u"DownloadMinutes"_s, QString::number(s.DownloadMinutes));
    ini.SetValue(u"Network"_s, u"Timeout"_s, QString::number(s.Timeout));
    ini.SetValue(u"Network"_s, u"Live"_s, BooleanText(s.Live));
    ini.SetValue(u"Network"_s, u"LiveSeconds"_s, QString::number(s.LiveSeconds));

    for (int view = 0; view < 3; ++view) {
        const QString n = QString::number(view + 1);
        ini.SetValue(u"Zoom"_s, u'X' + n, ZoomText(s.X[view]));
        ini.SetValue(u"Zoom"_s, u'Y' + n, ZoomText(s.Y[view]));
        ini.SetValue(u"Zoom"_s, u'Z' + n, ZoomText(s.Z[view]));
    }

    ini.SetValue(u"Map"_s, u"ShowLatLon"_s, BooleanText(s.ShowLatLon));
    ini.SetValue(u"Map"_s, u"ShowPlanes"_s, BooleanText(s.ShowPlanes));
    ini.SetValue(u"Map"_s, u"ShowPlaneLabels"_s, BooleanText(s.ShowPlaneLabels));
    ini.SetValue(u"Map"_s, u"ShowATC"_s, BooleanText(s.ShowATC));
    ini.SetValue(u"Map"_s, u"ShowATCLabels"_s, BooleanText(s.ShowATCLabels));
    ini.SetValue(u"Map"_s, u"ShowAirports"_s, BooleanText(s.ShowAirports));
    ini.SetValue(u"Map"_s, u"ShowAirportLabels"_s, BooleanText(s.ShowAirportLabels));
    ini.SetValue(u"Map"_s, u"ShowInbounds"_s, BooleanText(s.ShowInbounds));
    ini.SetValue(u"Map"_s, u"ShowActualHeading"_s, BooleanText(s.ShowActualHeading));
    ini.SetValue(u"Map"_s, u"DeclutterLabels"_s, BooleanText(s.DeclutterLabels));
    ini.SetValue(u"Map"_s, u"ShowNight"_s, BooleanText(s.ShowNight));
    ini.SetValue(u"Map"_s, u"ShowWeather"_s, BooleanText(s.ShowWeather));
    ini.SetValue(u"Map"_s, u"FriendNamesInstead"_s, BooleanText(s.FriendNamesInstead));
}

void WriteChangedPreferences(const Settings& before, const Settings& after, IniFile& ini) {
    const auto write = [&](auto Settings::*field, const QString& section, const QString& key, auto text) {
        if (before.*field != after.*field)
            ini.SetValue(section, key, text(after.*field));
    };
    const auto plain = [](const QString& v) { return v; };
    const auto number = [](std::int16_t v) { return QString::number(v); };
    write(&Settings::IVAO_ID, u"User"_s, u"IVAO_ID"_s, plain);
    write(&Settings::VATSIM_ID, u"User"_s, u"VATSIM_ID"_s, plain);
    write(&Settings::ColourTheme, u"Display"_s, u"ColourTheme"_s, plain);
    write(&Settings::DisableSmooth, u"Display"_s, u"DisableSmooth"_s, BooleanText);
    write(&Settings::DisableCountries, u"Display"_s, u"DisableCountries"_s, BooleanText);
    write(&Settings::AutoDownload, u"Network"_s, u"AutoDownload"_s, BooleanText);
    write(&Settings::DownloadMinutes, u"Network"_s, u"DownloadMinutes"_s, number);
    write(&Settings::Timeout, u"Network"_s, u"Timeout"_s, number);
    write(&Settings::Live, u"Network"_s, u"Live"_s, BooleanText);
    write(&Settings::LiveSeconds, u"Network"_s, u"LiveSeconds"_s, number);
    write(&Settings::WeatherServer, u"Network"_s, u"WeatherServer"_s, plain);
    write(&Settings::MaxPilots, u"Network"_s, u"MaxPilots"_s, number);
    write(&Settings::MaxControllers, u"Network"_s, u"MaxControllers"_s, number);
    write(&Settings::DeclutterLabels, u"Map"_s, u"DeclutterLabels"_s, BooleanText);
    write(&Settings::FriendNamesInstead, u"Map"_s, u"FriendNamesInstead"_s, BooleanText);
}

QString SettingsPath(const QString& home) {
    return QDir(home).filePath(u"skln.ini"_s);
}

QString FriendsPath(const QString& home) {
    return QDir(home).filePath(u"data/friends.dat"_s);
}

Settings LoadSettings(const QString& home, const ScreenMetrics& screen, Friends& friends) {
    friends = Friends::Load(FriendsPath(home));
    return ReadSettings(IniFile::Load(SettingsPath(home)), screen);
}

WriteResult SaveSettings(const QString& home, const Settings& settings, const WindowPlacement& window,
                         float twipsPerPixel) {
    IniFile ini = IniFile::Load(SettingsPath(home));
    WriteSettings(settings, window, twipsPerPixel, ini);
    return ini.Save(SettingsPath(home));
}

} // namespace sky
