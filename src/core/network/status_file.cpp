#include "network/status_file.h"

#include <QUrl>

#include "network/lines.h"

namespace sky::network {
namespace {

QString Resolved(QStringView address, const QString& baseUrl) {
    const QString text = address.trimmed().toString();
    const QUrl url(text);
    if (text.isEmpty() || baseUrl.isEmpty() || !url.isValid() || !url.isRelative())
        return text;
    return QUrl(baseUrl).resolved(url).toString();
}

void Keep(QStringView address, const QString& baseUrl, std::array<QString, kMaxServers>& urls,
          std::int16_t& count) {
    if (count < kMaxServers)
        urls[count++] = Resolved(address, baseUrl);
}

} // namespace

bool ParseStatusFile(QStringView text, const QString& baseUrl, ServerLists& servers,
                     const std::function<void(const QString&)>& showMessage) {
    servers.ServerCount = 0;
    servers.GzServerCount = 0;
    servers.JsonUrl.clear();
    const QList<QStringView> lines = SplitNetworkLines(text);
    if (lines.isEmpty())
        return false;
    for (QStringView line : lines) {
        if (line.startsWith(u"url0"))
            Keep(line.sliced(std::min<qsizetype>(5, line.size())), baseUrl, servers.ServerUrl,
                 servers.ServerCount);
        else if (line.startsWith(u"gzurl0"))
            Keep(line.sliced(std::min<qsizetype>(7, line.size())), baseUrl, servers.GzServerUrl,
                 servers.GzServerCount);
        else if (line.startsWith(u"json3="))
            servers.JsonUrl = Resolved(line.sliced(6), baseUrl);
        else if (line.startsWith(u"user0"))
            servers.ProfileUrl = line.sliced(std::min<qsizetype>(6, line.size())).trimmed().toString();
        else if (line.startsWith(u"msg0") && showMessage)
            showMessage(line.sliced(std::min<qsizetype>(5, line.size())).toString());
    }
    return true;
}

} // namespace sky::network
