#pragma once

#include <QString>

namespace sky::view {

// What the map needs from the window it runs in.
class MapHost {
public:
    virtual ~MapHost() = default;
    // Draws a frame now (DrawScene), so a status text shows while work goes on.
    virtual void Redraw() = 0;
    virtual void ShowCompanion() = 0;
    // The network's broadcast message, as plain text in a box.
    virtual void ShowNetworkMessage(const QString& text) = 0;
    // The automatic download timer runs while enabled.
    virtual void EnableAutoDownload(bool enabled) = 0;
    // Opens a web address (only ever http or https) in the user's browser.
    virtual void OpenUrl(const QString& address) = 0;
    // A problem the map runs on with (a file it could not write), said to the user.
    virtual void Report(const QString& text) { (void)text; }
    // A friend or a watched station came or went: told on the desktop, where the desktop can; a click
    // on it comes back as MapSession::GoTo(network, callsign).
    virtual void Notify(int network, const QString& callsign, const QString& text) {
        (void)network, (void)callsign, (void)text;
    }
    // The chart buttons: the movements per hour at an airport, the profile of a flight (a callsign and
    // member number), from the history; the network is the one shown.
    virtual void ShowAirportChart(int network, const QString& airport) { (void)network, (void)airport; }
    virtual void ShowFlightChart(int network, const QString& callsign, const QString& member) {
        (void)network, (void)callsign, (void)member;
    }
    // The filter changed (the bar, a key, a saved filter): what shows it besides the map catches up.
    virtual void FilterChanged() {}
};

} // namespace sky::view
