#pragma once

#include <functional>

#include <QDateTime>
#include <QHash>
#include <QObject>
#include <QString>

namespace sky::store {

// The side of the history store that writes, on a thread of its own with a database connection of its
// own: one transaction a snapshot (the snapshot row, any new client lines and flights, every client's
// position), so a crash loses at most the snapshot being written. Snapshots older than the hours kept
// go now and then. A write that fails stops the writing and is said through failed.
class HistoryWriter final : public QObject {
public:
    HistoryWriter(QString path, int keepHours, std::function<void(const QString&)> failed);
    ~HistoryWriter() override;

    // Opens the connection; called on the writer's thread before anything else.
    void Open();
    void Write(int network, const QString& text, const QDateTime& taken);

private:
    bool WriteSnapshot(int network, const QString& text, qint64 takenUtc);
    qint64 LineId(const QString& line);
    qint64 FlightId(int network, const QString& callsign, const QString& member);
    void Prune(qint64 nowUtc);
    // Lines and flights that no kept snapshot uses any longer go; once a run.
    void ForgetUnusedRows();
    void Fail(const QString& what);

    QString m_path;
    QString m_connection;
    int m_keepHours;
    std::function<void(const QString&)> m_failed;
    bool m_broken = false;
    int m_sincePrune = 0;
    QHash<QString, qint64> m_lines;   // a kept client line -> its row
    QHash<QString, qint64> m_flights; // "network:callsign:member" -> its row
};

} // namespace sky::store
