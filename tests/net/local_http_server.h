#pragma once

#include <QProcess>
#include <QString>
#include <QTcpServer>
#include <QTemporaryDir>

namespace sky::testing {

// A real HTTP server on 127.0.0.1 serving the files of a temporary folder: Python's http.server on an
// ephemeral port, started by the constructor and stopped by the destructor.
class LocalHttpServer {
public:
    LocalHttpServer();
    ~LocalHttpServer();
    LocalHttpServer(const LocalHttpServer&) = delete;
    LocalHttpServer& operator=(const LocalHttpServer&) = delete;

    bool IsRunning() const { return m_port > 0; }
    // Puts a file into the served folder.
    void Serve(const QString& name, const QByteArray& bytes);
    QString Url(const QString& name) const;
    const QTemporaryDir& Folder() const { return m_folder; }

private:
    QTemporaryDir m_folder;
    QProcess m_process;
    int m_port = 0;
};

// A server that accepts connections and never answers, for time-outs.
class SilentServer {
public:
    SilentServer() { m_server.listen(QHostAddress::LocalHost, 0); }
    QString Url() const {
        return QStringLiteral("http://127.0.0.1:%1/whazzup.txt").arg(m_server.serverPort());
    }

private:
    QTcpServer m_server;
};

} // namespace sky::testing
