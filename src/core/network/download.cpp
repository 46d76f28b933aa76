#include "network/download.h"

#include <QDir>
#include <QRandomGenerator>
#include <QUrl>

#include "common/file_io.h"
#include "common/text_codec.h"
#include "network/gunzip.h"
#include "network/http_client.h"
#include "common/numbers.h"
#include "network/json_feeds.h"
#include "network/live_schedule.h"
#include "network/lines.h"
#include "network/whazzup.h"

using namespace Qt::StringLiterals;

namespace sky::network {
namespace {

int PickIndex(const DownloadContext& context, int count) {
    const int index =
        context.Random ? context.Random(count) : int(QRandomGenerator::global()->bounded(count));
    return std::clamp(index, 0, count - 1);
}

DownloadOutcome Fail(DownloadContext& context, const QString& text, DownloadOutcome outcome) {
    context.View.ShowStatus(text);
    return outcome;
}

} // namespace

QString DefaultStatusFileAddress(int network) {
    return network == 0 ? u"https://www.ivao.aero/whazzup/status.txt"_s
                        : u"https://status.vatsim.net/status.txt"_s;
}

QString DefaultJsonAddress(int network) {
    return network == 0 ? u"https://api.ivao.aero/v2/tracker/whazzup"_s : QString();
}

FeedAddresses DefaultStatusFiles() {
    FeedAddresses addresses;
    for (int n = 0; n < kNetworkCount; ++n)
        addresses.Status[size_t(n)] = DefaultStatusFileAddress(n);
    return addresses;
}

std::optional<int> NetworkNamed(const QString& name) {
    if (name == u"ivao")
        return 0;
    if (name == u"vatsim")
        return 1;
    if (name == u"both")
        return 2;
    return std::nullopt;
}

QString ChooseJsonAddress(int network, bool statusFromCommandLine, bool demo, const QString& setting,
                          const QString& home) {
    if (!setting.trimmed().isEmpty())
        return setting.trimmed();
    if (demo && network == 1 && !statusFromCommandLine)
        return QUrl::fromLocalFile(QDir(home).filePath(u"data/demo/vatsim/vatsim-data.json"_s)).toString();
    if (statusFromCommandLine || demo)
        return {};
    return DefaultJsonAddress(network);
}

QString DefaultBookingsAddress() {
    return u"https://atc-bookings.vatsim.net/api/booking"_s;
}

QString DefaultEventsAddress() {
    return u"https://my.vatsim.net/api/v2/events/latest"_s;
}

QString ChooseServiceAddress(const QString& setting, bool demo, const QString& demoFile,
                             bool statusFromCommandLine, const QString& defaultAddress) {
    if (!setting.trimmed().isEmpty())
        return setting.trimmed();
    if (demo)
        return QUrl::fromLocalFile(demoFile).toString();
    return statusFromCommandLine ? QString() : defaultAddress;
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
    state.StatusFileRead = true;
    context.View.ShowStatus(u"Locating "_s + NetworkName(network) + u" server..."_s);
    const FetchResult fetched = context.Http.Fetch(state.StatusFileAddress);
    if (!fetched.Ok)
        return;
    ParseStatusFile(DecodeText(fetched.Body).Text, state.StatusFileAddress, state.Servers,
                    [&](const QString& message) { context.View.ShowNetworkMessage(message); });
    if (context.TextForce)
        state.Servers.GzServerCount = 0;
}

namespace {

// VATSIM's transceivers stand beside its data: the stations' positions.
QHash<QString, geo::LatLon> FetchTransceivers(DownloadContext& context, const QString& dataAddress) {
    const QString address = QUrl(dataAddress).resolved(QUrl(u"transceivers-data.json"_s)).toString();
    const FetchResult fetched = context.Http.Fetch(address);
    return fetched.Ok ? ParseVatsimTransceivers(fetched.Body) : QHash<QString, geo::LatLon>();
}

DownloadOutcome Interpret(DownloadContext& context, int network, const QString& text, const QDateTime& now) {
    NetworkData& data = context.Tables[network];
    const InterpretResult result =
        InterpretWhazzup(network, text, context.Reference, data, now,
                         [&](const QString& status) { context.View.ShowStatus(status); });
    if (!result.HasClients) {
        context.View.ShowStatus(u"No data to display"_s);
        return DownloadOutcome::NoClients;
    }
    context.View.ShowStatus(result.StatusText);
    context.View.Interpreted(network, text);
    return DownloadOutcome::Interpreted;
}

// True when a whazzup text counts clients at all; a retired feed's stub does not.
bool HoldsClients(const QString& text) {
    for (QStringView line : SplitNetworkLines(text)) {
        if (line.startsWith(u"CONNECTED CLIENTS"))
            return LeadingNumber(line.sliced(std::min<qsizetype>(20, line.size()))) > 0;
    }
    return false;
}

// One fetch of address and what it holds: whazzup text, or a JSON feed translated into it. With
// jsonToFollow, a text without clients is passed over without touching the tables.
DownloadOutcome ReadAnswer(DownloadContext& context, int network, const QString& address, QByteArray body,
                           bool compressed, const QDateTime& now, bool jsonToFollow) {
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
    const FeedKind kind = DetectFeed(body);
    if (kind == FeedKind::UnknownJson) // an older or newer layout: said, and the tables kept
        return Fail(context, u"Unsupported "_s + NetworkName(network) + u" data format"_s,
                    DownloadOutcome::NoClients);
    if (kind == FeedKind::Text) {
        const QString text = DecodeText(body).Text;
        if (jsonToFollow && !HoldsClients(text))
            return DownloadOutcome::NoClients;
        return Interpret(context, network, text, now);
    }
    TranslatedFeed feed;
    if (kind == FeedKind::VatsimV3)
        feed = TranslateVatsimV3(body, FetchTransceivers(context, address));
    else if (kind == FeedKind::IvaoV2)
        feed = TranslateIvaoV2(body);
    // A feed that cannot be read leaves the tables as they were.
    if (!feed.Ok)
        return Fail(context, u"No data to display"_s, DownloadOutcome::NoClients);
    // The networks' caches can hand out an older copy after a newer one.
    NetworkData& data = context.Tables[network];
    if (data.ConnectedClients > 0 && feed.UpdateStamp.size() == 14 && feed.UpdateStamp <= data.UpdateStamp) {
        data.LastDownload = now;
        return Fail(context,
                    NetworkName(network) + u" data of "_s + StampTime(data.UpdateStamp) +
                        u"Z is the newest"_s,
                    DownloadOutcome::Unchanged);
    }
    const DownloadOutcome outcome = Interpret(context, network, feed.Text, now);
    if (outcome == DownloadOutcome::Interpreted && kind == FeedKind::VatsimV3)
        context.View.PrefilesRead(network, std::move(feed.Prefiles));
    return outcome;
}

DownloadOutcome Attempt(DownloadContext& context, int network, const QString& address, bool compressed,
                        const QDateTime& now, bool jsonToFollow = false) {
    context.View.ShowStatus(u"Downloading "_s + NetworkName(network) + u" data from "_s + address + u"..."_s);
    const FetchResult fetched = context.Http.Fetch(address);
    if (!fetched.Ok)
        return Fail(context, u"Could not contact server"_s, DownloadOutcome::FetchFailed);
    return ReadAnswer(context, network, address, fetched.Body, compressed, now, jsonToFollow);
}

} // namespace

QString LiveAddress(const NetworkDownloadState& state) {
    return state.JsonAddress.isEmpty() ? state.Servers.JsonUrl : state.JsonAddress;
}

DownloadOutcome DownloadLive(DownloadContext& context, int network, LiveSchedule& schedule) {
    if (!context.State.DownloadIdle)
        return DownloadOutcome::Busy;
    NetworkDownloadState& state = context.State.Networks[network];
    const BusyGuard busy(context.State);
    if (!state.StatusFileRead && (LiveAddress(state).isEmpty() || !state.JsonAddress.isEmpty()))
        ReadStatusFile(context, network);
    const QString address = LiveAddress(state);
    if (address.isEmpty())
        return DownloadOutcome::NoServer;
    const QDateTime now = context.Now ? context.Now() : QDateTime::currentDateTime();
    const FetchResult fetched = context.Http.FetchIfChanged(address, schedule.Known(network));
    // A failure shows as the network's mark only; the data shown stay.
    if (state.DownloadFailed != !fetched.Ok) {
        state.DownloadFailed = !fetched.Ok;
        context.View.MarksChanged();
    }
    if (!fetched.Ok)
        return DownloadOutcome::FetchFailed;
    if (!schedule.IsNew(network, fetched))
        return DownloadOutcome::Unchanged;
    return ReadAnswer(context, network, address, fetched.Body, false, now, false);
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

    const BusyGuard busy(context.State);
    context.View.ClearTraffic(network);
    const auto noServer = [&] {
        return state.JsonAddress.isEmpty() && state.Servers.ServerCount + state.Servers.GzServerCount == 0 &&
               state.Servers.JsonUrl.isEmpty();
    };
    // A feed read directly still has its status file read once, for the profile address and the
    // broadcast message.
    if (noServer() || (!state.JsonAddress.isEmpty() && !state.StatusFileRead))
        ReadStatusFile(context, network);
    if (noServer()) {
        state.DownloadFailed = true;
        context.View.MarksChanged();
        return Fail(context, u"Could not contact server"_s, DownloadOutcome::NoServer);
    }

    QString address;
    bool compressed = false;
    if (!state.JsonAddress.isEmpty()) {
        address = state.JsonAddress;
    } else if (state.Servers.ServerCount + state.Servers.GzServerCount > 0) {
        compressed = state.Servers.GzServerCount >= 1;
        address = compressed ? state.Servers.GzServerUrl[PickIndex(context, state.Servers.GzServerCount)]
                             : state.Servers.ServerUrl[PickIndex(context, state.Servers.ServerCount)];
    } else {
        address = state.Servers.JsonUrl;
    }
    const bool jsonToFollow = address != state.Servers.JsonUrl && !state.Servers.JsonUrl.isEmpty();
    DownloadOutcome outcome = Attempt(context, network, address, compressed, now, jsonToFollow);
    // A text server that gives nothing (today's networks answer the old address with a stub) is
    // followed by the network's JSON data, when the status file names it.
    const bool fallBack = outcome == DownloadOutcome::FetchFailed || outcome == DownloadOutcome::NoClients;
    if (fallBack && jsonToFollow)
        outcome = Attempt(context, network, state.Servers.JsonUrl, false, now);
    if (outcome == DownloadOutcome::NoClients) {
        state.DownloadFailed = true;
        context.View.MarksChanged();
    }
    return outcome;
}

QString DefaultProfileAddress(int network) {
    return network == 0 ? u"https://www.ivao.aero/Member.aspx"_s : u"https://stats.vatsim.net/stats/{id}"_s;
}

QString ProfileAddress(const NetworkDownloadState& network, const QString& vid) {
    const QString base =
        network.Servers.ProfileUrl.isEmpty() ? network.FallbackProfileUrl : network.Servers.ProfileUrl;
    // An address with "{id}" takes the member number there; any other is followed by "?ID=" and it.
    QString address = base;
    if (base.contains(u"{id}"_s))
        address.replace(u"{id}"_s, QString::fromLatin1(QUrl::toPercentEncoding(vid)));
    else
        address += u"?ID="_s + vid;
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
