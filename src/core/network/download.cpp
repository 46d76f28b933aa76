#include "network/download.h"

#include <QDir>
#include <QUrl>

#include "common/file_io.h"
#include "common/text_codec.h"
#include "network/gunzip.h"
#include "network/http_client.h"
#include "network/whazzup.h"

using namespace Qt::StringLiterals;

namespace sky::network {
namespace {

// Clears DownloadIdle for the length of a fetch, and sets it back on every way out.
class BusyGuard {
public:
    explicit BusyGuard(bool& idle) : m_idle(idle) { m_idle = false; }
    ~BusyGuard() { m_idle = true; }
    BusyGuard(const BusyGuard&) = delete;
    BusyGuard& operator=(const BusyGuard&) = delete;

private:
    bool& m_idle;
};

int PickIndex(const DownloadContext& context, int count) {
    const int index = context.Random ? context.Random(count) : 0;
    return std::clamp(index, 0, count - 1);
}

DownloadOutcome Fail(DownloadContext& context, const QString& text, DownloadOutcome outcome) {
    context.View.ShowStatus(text);
    return outcome;
}

} // namespace

QString DefaultStatusFileAddress(int network) {
    return network == 0 ? u"https://www.ivao.aero/whazzup/status.txt"_s
                        : u"https://www.vatsim.net/data/status.txt"_s;
}

QString ChooseStatusFileAddress(int network, const QString& commandLine, bool demo, const QString& setting,
                                const QString& home) {
    if (!commandLine.trimmed().isEmpty())
        return commandLine.trimmed();
    if (demo) {
        const QString folder = network == 0 ? u"data/demo/ivao"_s : u"data/demo/vatsim"_s;
        return QUrl::fromLocalFile(QDir(home).filePath(folder + u"/status.txt"_s)).toString();
    }
    if (!setting.trimmed().isEmpty())
        return setting.trimmed();
    return DefaultStatusFileAddress(network);
}

void ReadStatusFile(DownloadContext& context, int network) {
    NetworkDownloadState& state = context.State.Networks[network];
    state.Servers.ServerCount = 0;
    state.Servers.GzServerCount = 0;
    state.DownloadFailed = false;
    context.View.ShowStatus(u"Locating "_s + NetworkName(network) + u" server..."_s);
    const FetchResult fetched = context.Http.Fetch(state.StatusFileAddress);
    if (!fetched.Ok)
        return;
    ParseStatusFile(DecodeText(fetched.Body).Text, state.StatusFileAddress, state.Servers,
                    [&](const QString& message) { context.View.ShowNetworkMessage(message); });
    if (context.TextForce)
        state.Servers.GzServerCount = 0;
}

DownloadOutcome DownloadNetwork(DownloadContext& context, int network) {
    if (!context.State.DownloadIdle)
        return DownloadOutcome::Busy;
    NetworkDownloadState& state = context.State.Networks[network];
    NetworkData& data = context.Tables[network];
    state.DownloadFailed = false;
    state.DownloadReady = false;

    const QDateTime now = context.Now ? context.Now() : QDateTime::currentDateTime();
    if (data.LastDownload.isValid() && data.LastDownload.secsTo(now) < qint64(data.ReloadMinutes) * 60) {
        state.DownloadReady = true;
        context.View.MarksChanged();
        return DownloadOutcome::TooEarly;
    }

    const BusyGuard busy(context.State.DownloadIdle);
    context.View.ClearTraffic(network);
    if (state.Servers.ServerCount + state.Servers.GzServerCount == 0)
        ReadStatusFile(context, network);
    if (state.Servers.ServerCount + state.Servers.GzServerCount == 0) {
        state.DownloadFailed = true;
        context.View.MarksChanged();
        return Fail(context, u"Could not contact server"_s, DownloadOutcome::NoServer);
    }

    const bool compressed = state.Servers.GzServerCount >= 1;
    const QString address = compressed
                                ? state.Servers.GzServerUrl[PickIndex(context, state.Servers.GzServerCount)]
                                : state.Servers.ServerUrl[PickIndex(context, state.Servers.ServerCount)];
    context.View.ShowStatus(u"Downloading "_s + NetworkName(network) + u" data from "_s + address + u"..."_s);

    const FetchResult fetched = context.Http.Fetch(address);
    if (!fetched.Ok)
        return Fail(context, u"Could not contact server"_s, DownloadOutcome::FetchFailed);
    QByteArray body = fetched.Body;
    if (compressed) {
        const QString gzPath = QDir(context.DataFolder).filePath(u"whazzup.txt.gz"_s);
        QDir().mkpath(context.DataFolder);
        if (!WriteFileAtomically(gzPath, body).Ok)
            return Fail(context, u"Error creating file"_s, DownloadOutcome::FileError);
        if (!GunzipFile(gzPath))
            return Fail(context, u"Error unzipping data"_s, DownloadOutcome::UnzipError);
        const auto unpacked = ReadWholeFile(gzPath.chopped(3), kMaxUnzippedBytes);
        if (!unpacked)
            return Fail(context, u"Error unzipping data"_s, DownloadOutcome::UnzipError);
        body = *unpacked;
    }

    const InterpretResult result =
        InterpretWhazzup(network, DecodeText(body).Text, context.Reference, data, now,
                         [&](const QString& text) { context.View.ShowStatus(text); });
    if (!result.HasClients) {
        state.DownloadFailed = true;
        context.View.MarksChanged();
        context.View.ShowStatus(u"No data to display"_s);
        return DownloadOutcome::NoClients;
    }
    context.View.ShowStatus(result.StatusText);
    return DownloadOutcome::Interpreted;
}

QString ProfileAddress(const NetworkDownloadState& network, const QString& vid) {
    const QString address = network.Servers.ProfileUrl + u"?ID="_s + vid;
    const QUrl url(address, QUrl::StrictMode);
    const QString scheme = url.scheme().toLower();
    if (!url.isValid() || (scheme != u"http" && scheme != u"https") || url.host().isEmpty())
        return {};
    return address;
}

void OpenProfile(const NetworkDownloadState& network, const QString& vid,
                 const std::function<void(const QString&)>& openUrl) {
    const QString address = ProfileAddress(network, vid);
    if (!address.isEmpty() && openUrl)
        openUrl(address);
}

} // namespace sky::network
