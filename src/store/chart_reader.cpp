#include "chart_reader.h"

#include <QSqlDatabase>

using namespace Qt::StringLiterals;

namespace sky::store {
namespace {

// Holds the connection, made on the reader's thread at the first read and closed there at the end.
class Worker final : public QObject {
public:
    explicit Worker(QString path)
        : m_path(std::move(path)), m_connection(u"skylantra-charts-%1"_s.arg(quintptr(this))) {}
    ~Worker() override {
        if (!m_queries)
            return;
        m_queries.reset();
        QSqlDatabase::database(m_connection, false).close();
        QSqlDatabase::removeDatabase(m_connection);
    }
    ChartQueries& Queries() {
        if (!m_queries) {
            QSqlDatabase db = QSqlDatabase::addDatabase(u"QSQLITE"_s, m_connection);
            db.setDatabaseName(m_path);
            db.setConnectOptions(u"QSQLITE_OPEN_READONLY;QSQLITE_BUSY_TIMEOUT=2000"_s);
            db.open(); // a file that is not there answers nothing
            m_queries = std::make_unique<ChartQueries>(db);
        }
        return *m_queries;
    }

private:
    QString m_path;
    QString m_connection;
    std::unique_ptr<ChartQueries> m_queries; // made at the first read; remembers what it counted
};

} // namespace

ChartReader::ChartReader(QString path) {
    auto* worker = new Worker(std::move(path));
    worker->moveToThread(&m_thread);
    QObject::connect(&m_thread, &QThread::finished, worker, &QObject::deleteLater);
    m_worker = worker;
    m_thread.start(QThread::LowPriority); // the map's thread comes first
}

ChartReader::~ChartReader() {
    m_thread.requestInterruption();
    m_thread.quit();
    m_thread.wait();
}

void ChartReader::Run(std::function<std::function<void()>(ChartQueries&)> work, QObject* context) {
    QMetaObject::invokeMethod(
        m_worker,
        [worker = static_cast<Worker*>(m_worker), work = std::move(work), context] {
            if (QThread::currentThread()->isInterruptionRequested())
                return;
            QMetaObject::invokeMethod(context, work(worker->Queries()), Qt::QueuedConnection);
        },
        Qt::QueuedConnection);
}

} // namespace sky::store
