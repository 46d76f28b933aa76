#pragma once

#include <memory>

#include <QMutex>
#include <QThread>

#include "history/history_store.h"

namespace sky::store {

class HistoryWriter;

// The history in one SQLite file, through Qt SQL, in write-ahead-log mode: written on a thread of its
// own (the map never waits for it), read on the map's thread with a connection of its own; another
// program on the same home (the terminal Companion) may write it at the same time. Snapshots older than
// keepHours go when the store opens and every pruneEveryMs after. The file is looked at before anything
// in it is changed: one that cannot be opened, is damaged, comes from a newer version of the program or
// is another program's is left as it is, and the store says why once in Problem() and answers empty. A
// write that fails (a full disk, a read-only file, a lock held too long) is said through OnWriteFailed.
// A store opened readOnly (another machine's, to replay) is never written.
class SqlHistoryStore final : public history::HistoryStore {
public:
    static constexpr int kPruneEveryMs = 5 * 60 * 1000;

    SqlHistoryStore(const QString& path, int keepHours, bool readOnly, int pruneEveryMs = kPruneEveryMs);
    ~SqlHistoryStore() override;

    void Record(int network, const QString& text, const QDateTime& taken) override;
    std::vector<history::TrackPoint> Track(int network, const QString& callsign,
                                           const QString& member) override;
    std::vector<std::pair<QString, std::vector<history::TrackPoint>>> Tracks(int network,
                                                                             qint64 sinceUtc) override;
    std::vector<history::StoredSnapshot> Snapshots(int network) override;
    QString SnapshotText(qint64 id) override;
    QString Problem() const override;
    void OnWriteFailed(std::function<void(const QString&)> failed) override;
    void Flush() override;

private:
    void SetProblem(const QString& text);
    void WriteFailed(const QString& why); // on the writer's thread
    bool OpenReader(bool readOnly);

    QString m_path;
    QString m_connection;
    bool m_open = false; // the reader's connection answers
    QThread m_thread;
    HistoryWriter* m_writer = nullptr; // lives on m_thread
    mutable QMutex m_mutex;
    QString m_problem;
    std::function<void(const QString&)> m_writeFailed;
};

} // namespace sky::store
