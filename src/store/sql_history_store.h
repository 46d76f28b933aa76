#pragma once

#include <memory>

#include <QMutex>
#include <QThread>

#include "history/history_store.h"

namespace sky::store {

class HistoryWriter;

// The history in one SQLite file, through Qt SQL, in write-ahead-log mode: written on a thread of its
// own (the map never waits for it), read on the map's thread with a connection of its own. Snapshots
// older than keepHours go. A file that cannot be opened, is locked by another program, is damaged or
// comes from a newer version of the program, a full disk or a read-only folder: the store works no
// more and says why once in Problem(); nothing else of the program is touched. A store opened
// readOnly (another machine's, to replay) is never written.
class SqlHistoryStore final : public history::HistoryStore {
public:
    SqlHistoryStore(const QString& path, int keepHours, bool readOnly);
    ~SqlHistoryStore() override;

    void Record(int network, const QString& text, const QDateTime& taken) override;
    std::vector<history::TrackPoint> Track(int network, const QString& callsign,
                                           const QString& member) override;
    std::vector<std::pair<QString, std::vector<history::TrackPoint>>> Tracks(int network,
                                                                             qint64 sinceUtc) override;
    std::vector<history::StoredSnapshot> Snapshots(int network) override;
    QString SnapshotText(qint64 id) override;
    QString Problem() const override;
    void Flush() override;

private:
    void SetProblem(const QString& text);
    bool OpenReader(bool readOnly);

    QString m_path;
    QString m_connection;
    bool m_readOnly;
    QThread m_thread;
    HistoryWriter* m_writer = nullptr; // lives on m_thread
    mutable QMutex m_mutex;
    QString m_problem;
};

} // namespace sky::store
