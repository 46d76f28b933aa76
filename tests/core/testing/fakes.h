#pragma once

#include <chrono>
#include <limits>
#include <map>
#include <thread>

#include <QStringList>

#include "history/history_store.h"
#include "history/snapshot_codec.h"
#include "network/download.h"
#include "network/http_client.h"
#include "view/map_host.h"

namespace sky::testing {

// An HTTP client that answers from a table of addresses and remembers what was asked.
class FakeHttp : public network::HttpClient {
public:
    network::FetchResult Fetch(const QString& url) override {
        Requests.append(url);
        const auto it = Answers.find(url);
        if (it == Answers.end())
            return {false, {}, QStringLiteral("no such address")};
        return {true, it->second, {}};
    }
    std::map<QString, QByteArray> Answers;
    QStringList Requests;
};

// What a download showed, in order.
class RecordingDownloadView : public network::DownloadView {
public:
    void ShowStatus(const QString& text) override { Statuses.append(text); }
    void ShowNetworkMessage(const QString& text) override { Messages.append(text); }
    void ClearTraffic(int network) override { Cleared.append(network); }
    void MarksChanged() override {}
    QStringList Statuses, Messages;
    QList<int> Cleared;
};

// The window around a map session, recording what the session asked of it.
class FakeMapHost : public view::MapHost {
public:
    void Redraw() override {}
    void ShowCompanion() override {}
    void ShowNetworkMessage(const QString& text) override { Messages.append(text); }
    void EnableAutoDownload(bool enabled) override { AutoDownload = enabled; }
    void OpenUrl(const QString& address) override { Opened.append(address); }
    void Notify(int network, const QString& callsign, const QString& text) override {
        Notified.append(QString::number(network) + u'|' + callsign + u'|' + text);
    }
    void ShowFlightChart(int network, const QString& callsign, const QString& member) override {
        Charts.append(QString::number(network) + u'|' + callsign + u'|' + member);
    }
    QStringList Opened;
    QStringList Charts;   // "network|callsign|member"
    QStringList Notified; // "network|callsign|text"
    QStringList Messages;
    bool AutoDownload = false;
};

// A history kept in memory, written at once; while WriterBusy, what is recorded waits unwritten and a
// Flush waits two seconds (a writer held on a latch) before writing it.
class MemoryHistory : public history::HistoryStore {
public:
    void Record(int network, const QString& text, const QDateTime& taken) override {
        Pending.push_back({0, network, text, taken.toSecsSinceEpoch()});
        if (!WriterBusy)
            Flush();
    }
    void Flush() override {
        if (WriterBusy)
            std::this_thread::sleep_for(std::chrono::seconds(2));
        for (Snapshot& s : Pending) {
            s.Id = qint64(Kept.size() + 1);
            Kept.push_back(s);
        }
        Pending.clear();
    }
    std::vector<history::TrackPoint> Track(int network, const QString& callsign,
                                           const QString& member) override {
        for (auto& [key, points] : Tracks(network, std::numeric_limits<qint64>::min()))
            if (key == callsign + u':' + member)
                return points;
        return {};
    }
    std::vector<std::pair<QString, std::vector<history::TrackPoint>>> Tracks(int network,
                                                                             qint64 since) override {
        std::map<QString, std::vector<history::TrackPoint>> tracks;
        for (const Snapshot& s : Kept)
            for (const history::ClientPosition& p : history::Split(network, s.Text).Positions)
                if (s.Network == network && s.Taken >= since)
                    tracks[p.Callsign + u':' + p.Member].push_back(
                        {s.Taken, float(p.LatMicro / 1e6), float(p.LonMicro / 1e6), float(p.AltitudeFt)});
        return {tracks.begin(), tracks.end()};
    }
    std::vector<history::StoredSnapshot> Snapshots(int network) override {
        std::vector<history::StoredSnapshot> list;
        for (const Snapshot& s : Kept)
            if (s.Network == network)
                list.push_back({s.Id, network, Stamp(s.Text), s.Taken});
        return list;
    }
    QString SnapshotText(qint64 id) override {
        return id >= 1 && id <= qint64(Kept.size()) ? Kept[size_t(id - 1)].Text : QString();
    }
    QString Problem() const override { return {}; }
    // The data's time, as the store reads it from the "UPDATE = ..." line.
    static QString Stamp(const QString& text) {
        const qsizetype at = text.indexOf(u"UPDATE = ");
        return at < 0 ? QString() : text.mid(at + 9, 14);
    }

    struct Snapshot {
        qint64 Id;
        int Network;
        QString Text;
        qint64 Taken;
    };
    std::vector<Snapshot> Kept, Pending;
    bool WriterBusy = false;
};

} // namespace sky::testing
