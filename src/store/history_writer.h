#pragma once

#include <functional>

#include <QDateTime>
#include <QHash>
#include <QObject>
#include <QString>

class QSqlQuery;
class QTimer;

namespace sky::store {

// The side of the history store that writes, on a thread of its own with a database connection of its
// own: one transaction a snapshot (the snapshot row, any new client lines and flights, every client's
// position), so a crash loses at most the snapshot being written. Another program may write the same
// file (the terminal Companion beside the map): each transaction takes the write lock first and reads
// again what the other changed. Snapshots older than the hours kept go when the writer opens and then
// every pruneEveryMs, with the lines and flights no kept snapshot uses, and the file gives the space
// back. A connection that cannot be opened is said through broken and stops the writing; a write or
// a clean-up that fails is said through failed (once, until a write works again) and the next goes on.
class HistoryWriter final : public QObject {
public:
    struct Report {
        std::function<void(const QString&)> Broken;
        std::function<void(const QString&)> Failed;
    };
    HistoryWriter(QString path, int keepHours, int pruneEveryMs, Report report);
    ~HistoryWriter() override;

    // Opens the connection and lets old snapshots go; called on the writer's thread before anything else.
    void Open();
    void Write(int network, const QString& text, const QDateTime& taken);
    // Lets go the snapshots older than the hours kept before the later of now and the newest snapshot,
    // and what only they used; gives the space back.
    void Prune();

private:
    bool WriteSnapshot(int network, const QString& text, qint64 takenUtc);
    qint64 LineId(const QString& line);
    qint64 FlightId(int network, const QString& callsign, const QString& member);
    // Lines and flights that no kept snapshot uses any longer go; in the prune's transaction.
    bool ForgetUnusedRows();
    // What the file already holds, so a line or flight seen before is written once; read again when
    // another program changed the file.
    void LoadKnownRows();
    qint64 DataVersion();
    // A statement run, or a query's outcome, kept in m_error when it failed.
    bool Exec(const QString& statement);
    bool Run(const QSqlQuery& q, bool ok);
    void Failed(const QString& what);

    QString m_path;
    QString m_connection;
    int m_keepHours;
    int m_pruneEveryMs;
    Report m_report;
    bool m_broken = false;
    bool m_failing = false;    // the last write failed and was said
    qint64 m_dataVersion = -1; // the file as this connection last saw it
    QTimer* m_pruneTimer = nullptr;
    QString m_error;                  // why the last statement failed
    QHash<QString, qint64> m_lines;   // a kept client line -> its row
    QHash<QString, qint64> m_flights; // "network:callsign:member" -> its row
};

} // namespace sky::store
