#include "local_http_server.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace sky::testing {

LocalHttpServer::LocalHttpServer() {
    Start(
        {u"-m"_s, u"http.server"_s, u"0"_s, u"--bind"_s, u"127.0.0.1"_s, u"--directory"_s, m_folder.path()});
}

LocalHttpServer::LocalHttpServer(const QStringList& script) {
    Start(script);
}

void LocalHttpServer::Start(const QStringList& arguments) {
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    m_process.start(u"python3"_s, QStringList{u"-u"_s} + arguments);
    if (!m_process.waitForStarted(10000))
        return;
    // The server names its port in its first line: "Serving HTTP on 127.0.0.1 port 40123 ...".
    const QRegularExpression portPattern(u"port (\\d+)"_s);
    QByteArray output;
    const QDeadlineTimer deadline(15000);
    while (!deadline.hasExpired() && m_process.state() == QProcess::Running) {
        m_process.waitForReadyRead(200);
        output += m_process.readAll();
        const auto match = portPattern.match(QString::fromUtf8(output));
        if (match.hasMatch()) {
            m_port = match.captured(1).toInt();
            return;
        }
    }
}

LocalHttpServer::~LocalHttpServer() {
    m_process.kill();
    m_process.waitForFinished(5000);
}

void LocalHttpServer::Serve(const QString& name, const QByteArray& bytes) {
    QFile file(m_folder.filePath(name));
    if (file.open(QIODevice::WriteOnly))
        file.write(bytes);
}

QString LocalHttpServer::Log() {
    while (m_process.waitForReadyRead(100))
        m_log += QString::fromUtf8(m_process.readAll());
    return m_log;
}

QString LocalHttpServer::Url(const QString& name) const {
    return u"http://127.0.0.1:%1/"_s.arg(m_port) + name;
}

} // namespace sky::testing
