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
    // Another server program of Python's that prints "port N" when it listens: a script and its
    // arguments.
    explicit LocalHttpServer(const QStringList& script);
    ~LocalHttpServer();
    LocalHttpServer(const LocalHttpServer&) = delete;
    LocalHttpServer& operator=(const LocalHttpServer&) = delete;

    bool IsRunning() const { return m_port > 0; }
    // Puts a file into the served folder.
    void Serve(const QString& name, const QByteArray& bytes);
    QString Url(const QString& name) const;
    const QTemporaryDir& Folder() const { return m_folder; }

    int Port() const { return m_port; }
    // What the server wrote since it listened (Python's server logs each request with its status).
    QString Log();

private:
    void Start(const QStringList& arguments);

    QTemporaryDir m_folder;
    QProcess m_process;
    int m_port = 0;
    QString m_log;
};

} // namespace sky::testing
