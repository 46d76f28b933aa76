#pragma once

#include <array>
#include <cstdint>

#include <QByteArray>
#include <QString>

#include "network/client_records.h"
#include "network/http_client.h"

namespace sky::network {

// The seconds a live feed waits between fetches: 15 (the networks' own cadence) to 300.
inline constexpr int kLiveSecondsMin = 15;
inline constexpr int kLiveSecondsMax = 300;
// After 1, 2, 3, 4 and more failures in a row, the next try waits this long.
inline constexpr std::array<int, 5> kLiveBackOffSeconds = {30, 60, 120, 240, 300};

// The feed's own time stamp ("update_timestamp" of VATSIM's v3 data, "updatedAt" of IVAO's v2) found by
// a scan of the raw answer, without parsing it; empty when the answer names none.
QString FeedStampOf(const QByteArray& body);

// When each network's live feed is fetched next, and whether an answer is new enough to be read. Times
// are milliseconds of a clock the caller chooses (tests use a fake one). A fetch is due when none runs and
// its time has come; a fetch that ends well waits the interval, failures back off 30 s, 1, 2, 4, then
// 5 minutes. Owned by the live control; one instance for both networks.
class LiveSchedule {
public:
    // The interval in seconds, brought into 15..300.
    void SetInterval(int seconds);
    int IntervalSeconds() const { return m_intervalS; }

    // True when network's fetch may start at nowMs: none runs and its time has come.
    bool Due(int network, qint64 nowMs) const;
    // A fetch of network starts / ended (ok: any answer, changed or not; else a failure).
    void Started(int network);
    void Finished(int network, qint64 nowMs, bool ok);
    // From now on network is fetched at once when due (live turned on, or the network newly shown).
    void Restart(int network);

    bool Running(int network) const { return m_nets[size_t(network)].Running; }
    int Failures(int network) const { return m_nets[size_t(network)].Failures; }
    qint64 NextMs(int network) const { return m_nets[size_t(network)].NextMs; }
    // The seconds the last Finished set until the next fetch.
    int WaitSeconds(int network) const { return m_nets[size_t(network)].WaitS; }

    // What the server said of the version last read: sent back so it can answer "not modified".
    const Validators& Known(int network) const { return m_nets[size_t(network)].Known; }
    // An answer received for network: true when it must be read (a new version); false for "not
    // modified" and for an answer whose stamp (or, without one, whose bytes) equal the last one read.
    // Remembers what it was told, so the same answer is never read twice.
    bool IsNew(int network, const FetchResult& fetched);
    // The last answer read could not be used: the next one is read whatever it holds.
    void Forget(int network);

private:
    struct Net {
        qint64 NextMs = 0;
        bool Running = false;
        int Failures = 0;
        int WaitS = 0;
        Validators Known;
        QString Stamp;       // of the last answer read
        size_t BodyHash = 0; // the same, for answers without a stamp
    };
    std::array<Net, kNetworkCount> m_nets{};
    int m_intervalS = kLiveSecondsMin;
};

} // namespace sky::network
