#pragma once

#include <array>
#include <functional>
#include <optional>

#include <QDateTime>
#include <QString>

#include "network/client_records.h"
#include "network/prefiles.h"
#include "network/status_file.h"

namespace sky {
class ReferenceData;
}

namespace sky::network {

class HttpClient;

// The download state of one network: where its status file is, the servers it named, and the two
// flags the map shows as the network's mark.
struct NetworkDownloadState {
    QString StatusFileAddress;
    QString JsonAddress; // a JSON feed read directly, without a status file; empty: none
    ServerLists Servers;
    bool DownloadFailed = false; // the last download produced no clients
    bool DownloadReady = false;  // a download was refused because the reload interval has not passed
    bool StatusFileRead = false; // once read (or tried), a feed read directly does not read it again
    // The profile address where the status file names none: the settings' or the network's default.
    QString FallbackProfileUrl;
};

struct DownloadState {
    std::array<NetworkDownloadState, kNetworkCount> Networks;
    // True while no fetch runs; false until start-up has finished.
    bool DownloadIdle = false;
};

// Clears DownloadIdle for the length of a fetch (a download, a weather report), and sets it back on
// every way out. Every fetch of the program runs under one.
class BusyGuard {
public:
    explicit BusyGuard(DownloadState& state) : m_idle(state.DownloadIdle) { m_idle = false; }
    ~BusyGuard() { m_idle = true; }
    BusyGuard(const BusyGuard&) = delete;
    BusyGuard& operator=(const BusyGuard&) = delete;

private:
    bool& m_idle;
};

// The default status file addresses of the two networks, and the JSON feed read directly (IVAO's).
QString DefaultStatusFileAddress(int network);
QString DefaultJsonAddress(int network);

// Where each network's data come from: its status file, and a JSON feed read directly (empty: none);
// and VATSIM's bookings and events services (empty: none read).
struct FeedAddresses {
    std::array<QString, kNetworkCount> Status;
    std::array<QString, kNetworkCount> Json;
    QString Bookings;
    QString Events;
};
// The networks' default status files and no feed read directly.
FeedAddresses DefaultStatusFiles();

// The network a name on the command line stands for: "ivao" 0, "vatsim" 1, "both" 2; none otherwise.
std::optional<int> NetworkNamed(const QString& name);

// The JSON feed a network reads directly: the address of the settings file, else the default, but
// none when the status file was chosen on the command line; with the demo feeds, VATSIM's demo data
// under home (so the demo reads VATSIM as today's network is read) and none for IVAO.
QString ChooseJsonAddress(int network, bool statusFromCommandLine, bool demo, const QString& setting,
                          const QString& home = {});

// VATSIM's bookings and events services today.
QString DefaultBookingsAddress();
QString DefaultEventsAddress();
// Where one of them is read from: the address of the settings file, else the demo's file when demo is
// set, else none when a status file was chosen on the command line (a run on feeds of its own reads no
// live service beside them), else the default.
QString ChooseServiceAddress(const QString& setting, bool demo, const QString& demoFile,
                             bool statusFromCommandLine, const QString& defaultAddress);

// Where a network's status file is read from: an address given on the command line, else the bundled
// demo feed under home when demo is set, else the address of the settings file, else the default.
QString ChooseStatusFileAddress(int network, const QString& commandLine, bool demo, const QString& setting,
                                const QString& home);

// What the download shows while it runs. The map implements it; the console and tests use their own.
class DownloadView {
public:
    virtual ~DownloadView() = default;
    // Sets the status text and shows it at once.
    virtual void ShowStatus(const QString& text) = 0;
    // The network's broadcast message, shown as plain text in a box titled "Important Network Message";
    // returns when the user has closed it.
    virtual void ShowNetworkMessage(const QString& text) = 0;
    // The network's traffic is about to be replaced: its display lists go.
    virtual void ClearTraffic(int network) = 0;
    // A network's failure or ready flag changed.
    virtual void MarksChanged() = 0;
    // The tables of network now hold this text's clients (the whazzup text, a JSON feed translated).
    virtual void Interpreted(int network, const QString& text) {
        (void)network;
        (void)text;
    }
    // The feed just interpreted for network also listed these prefiles (VATSIM's v3 data).
    virtual void PrefilesRead(int network, std::vector<Prefile> prefiles) {
        (void)network;
        (void)prefiles;
    }
};

enum class DownloadOutcome {
    Busy,        // another fetch is running, or start-up has not finished
    TooEarly,    // the network's reload interval has not passed; DownloadReady is set
    NoServer,    // "Could not contact server" before any data server was tried
    FetchFailed, // "Could not contact server"
    FileError,   // "Error creating file"
    UnzipError,  // "Error unzipping data"
    NoClients,   // downloaded, but the file holds no clients (or could not be read)
    Unchanged,   // the feed was not newer than the data shown; the tables stay
    Interpreted, // the tables hold the new data
};

// What a download needs from the rest of the program.
struct DownloadContext {
    DownloadState& State;
    ClientTables& Tables;
    const ReferenceData& Reference;
    HttpClient& Http;
    DownloadView& View;
    QString DataFolder;                   // where whazzup.txt(.gz) are kept
    bool TextForce = false;               // never use the compressed servers
    std::function<QDateTime()> Now;       // local time
    std::function<int(int count)> Random; // uniform in 0 ... count - 1; empty: a real random choice
};

// Fetches and reads the status file of network, refilling its server lists.
void ReadStatusFile(DownloadContext& context, int network);

// One whole download of network: the reload guard, the status file when no server is known yet, a
// random server (compressed ones preferred), unpacking, and the interpretation into the tables. The
// previous tables stay when anything fails before the interpretation.
DownloadOutcome DownloadNetwork(DownloadContext& context, int network);

class LiveSchedule;

// The JSON feed a network is followed live on: the one read directly, else the one its status file
// names; empty when it has none (its text feed keeps the reload guard and the automatic download).
QString LiveAddress(const NetworkDownloadState& state);

// One live fetch of network's JSON feed, asking for it only if changed since the version schedule
// knows: Unchanged (and nothing read) for "not modified" or the same stamp, FetchFailed (the network's
// failure mark set, the data kept), NoServer without a JSON feed. No reload guard: the schedule paces it.
DownloadOutcome DownloadLive(DownloadContext& context, int network, LiveSchedule& schedule);

// Today's member pages, for networks whose status file names no profile address.
QString DefaultProfileAddress(int network);

// The member's profile page: the network's profile address (the status file's, else the fallback), "?ID="
// and the member number, or the number in place of "{id}" in the address; empty when that is not an
// http or https address, which is then never opened.
QString ProfileAddress(const NetworkDownloadState& network, const QString& vid);

// Opens the member's profile page through openUrl when it is an http or https address.
void OpenProfile(const NetworkDownloadState& network, const QString& vid,
                 const std::function<void(const QString&)>& openUrl);

} // namespace sky::network
