#include "qt_http_client.h"

#include <QEventLoop>
#include <QNetworkProxy>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace sky::net {

QtHttpClient::QtHttpClient(int timeoutMs, const QString& proxy, qint64 maxBytes)
    : m_timeoutMs(timeoutMs), m_maxBytes(maxBytes) {
    if (proxy.trimmed().size() >= 2) {
        const QUrl proxyUrl = QUrl::fromUserInput(proxy.trimmed());
        m_manager.setProxy(
            QNetworkProxy(QNetworkProxy::HttpProxy, proxyUrl.host(), quint16(proxyUrl.port(8080))));
    } else {
        QNetworkProxyFactory::setUseSystemConfiguration(true);
    }
}

network::FetchResult QtHttpClient::Fetch(const QString& url) {
    const QUrl address(url);
    if (!address.isValid() || address.scheme().isEmpty())
        return {false, {}, u"not an address: "_s + url};
    QNetworkRequest request(address);
    request.setTransferTimeout(m_timeoutMs);
    request.setHeader(QNetworkRequest::UserAgentHeader, u"Skylantra/" SKYLANTRA_VERSION ""_s);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    QNetworkReply* reply = m_manager.get(request);

    bool tooLarge = false;
    QObject::connect(reply, &QNetworkReply::downloadProgress, reply, [&](qint64 received, qint64) {
        if (received > m_maxBytes && !tooLarge) {
            tooLarge = true;
            reply->abort();
        }
    });
    QEventLoop loop;
    QObject::connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
    if (!reply->isFinished())
        loop.exec();

    network::FetchResult result;
    const int httpStatus = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (tooLarge) {
        result.Error = u"the answer is larger than the limit"_s;
    } else if (reply->error() != QNetworkReply::NoError) {
        result.Error = reply->errorString();
    } else if (httpStatus >= 400) {
        result.Error = u"HTTP status "_s + QString::number(httpStatus);
    } else {
        result.Body = reply->readAll();
        result.Ok = result.Body.size() <= m_maxBytes;
        if (!result.Ok) {
            result.Body.clear();
            result.Error = u"the answer is larger than the limit"_s;
        }
    }
    reply->deleteLater();
    return result;
}

} // namespace sky::net
