#include "qt_http_client.h"

#include <algorithm>
#include <memory>

#include <QEventLoop>
#include <QNetworkProxy>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QTimer>
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

network::FetchResult QtHttpClient::Get(const QString& url, const network::Validators& known) {
    const QUrl address(url);
    if (!address.isValid() || address.scheme().isEmpty())
        return {false, {}, u"not an address: "_s + url};
    QNetworkRequest request(address);
    request.setTransferTimeout(m_timeoutMs);
    request.setHeader(QNetworkRequest::UserAgentHeader, u"Skylantra/" SKYLANTRA_VERSION ""_s);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::UserVerifiedRedirectPolicy);
    request.setMaximumRedirectsAllowed(kMostRedirects);
    if (!known.ETag.isEmpty())
        request.setRawHeader("If-None-Match", known.ETag.toLatin1());
    if (!known.LastModified.isEmpty())
        request.setRawHeader("If-Modified-Since", known.LastModified.toLatin1());
    QNetworkReply* reply = m_manager.get(request);
    reply->setReadBufferSize(qint64(1) << 20);

    // What the reply's handlers share; they may still run after Fetch returned (a queued read), so
    // they hold it, not the stack.
    struct Transfer {
        QString Refused; // why the fetch was ended here
        QByteArray Body;
    };
    const auto transfer = std::make_shared<Transfer>();
    const auto refuse = [reply, transfer](const QString& why) {
        if (transfer->Refused.isEmpty()) {
            transfer->Refused = why;
            reply->abort();
        }
    };
    QObject::connect(reply, &QNetworkReply::redirected, reply, [reply, refuse](const QUrl& target) {
        const QString scheme = target.scheme().toLower();
        const bool downgrade =
            reply->url().scheme().compare(u"https"_s, Qt::CaseInsensitive) == 0 && scheme == u"http";
        if ((scheme == u"http" || scheme == u"https") && !downgrade)
            Q_EMIT reply->redirectAllowed();
        else
            refuse(u"a redirect to "_s + target.toDisplayString(QUrl::RemoveUserInfo) + u" was refused"_s);
    });
    const qint64 maxBytes = m_maxBytes;
    QObject::connect(reply, &QNetworkReply::readyRead, reply, [reply, transfer, refuse, maxBytes] {
        if (!transfer->Refused.isEmpty())
            return;
        transfer->Body += reply->readAll();
        if (transfer->Body.size() > maxBytes) {
            transfer->Body.clear();
            refuse(u"the answer is larger than the limit"_s);
        }
    });
    QTimer deadline;
    deadline.setSingleShot(true);
    QObject::connect(&deadline, &QTimer::timeout, reply,
                     [refuse] { refuse(u"the server sends too slowly"_s); });
    deadline.start(std::max(m_timeoutMs, 1) * 4);
    QEventLoop loop;
    QObject::connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
    if (!reply->isFinished())
        loop.exec();
    const QString refused = transfer->Refused;
    QByteArray body = std::move(transfer->Body);
    if (refused.isEmpty())
        body += reply->readAll();
    transfer->Refused = u"done"_s; // a late read keeps nothing

    network::FetchResult result;
    const int httpStatus = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (!refused.isEmpty()) {
        result.Error = refused;
    } else if (httpStatus == 304 && (!known.ETag.isEmpty() || !known.LastModified.isEmpty())) {
        result.Ok = true; // the copy the caller holds is still the server's
        result.NotModified = true;
        result.Version = known;
    } else if (reply->error() != QNetworkReply::NoError) {
        result.Error = reply->errorString();
    } else if (reply->url().scheme().startsWith(u"http"_s, Qt::CaseInsensitive) &&
               (httpStatus < 200 || httpStatus >= 300)) { // an error, or a redirect not followed to its end
        result.Error = u"HTTP status "_s + QString::number(httpStatus);
    } else if (body.size() > m_maxBytes) {
        result.Error = u"the answer is larger than the limit"_s;
    } else {
        result.Ok = true;
        result.Body = std::move(body);
        result.Version = {QString::fromLatin1(reply->rawHeader("ETag")),
                          QString::fromLatin1(reply->rawHeader("Last-Modified"))};
    }
    reply->deleteLater();
    return result;
}

} // namespace sky::net
