#include "view/coming_control.h"

#include <QDir>
#include <QUrl>

#include "coming/answer_cache.h"
#include "coming/whats_on.h"
#include "common/file_io.h"
#include "network/download.h"
#include "render/event_marks.h"
#include "view/map_state.h"
#include "view/scene_control.h"

using namespace Qt::StringLiterals;

namespace sky::view {
namespace {

QString NameOf(bool bookings) {
    return bookings ? u"VATSIM bookings"_s : u"VATSIM events"_s;
}

// Only what came over the network is kept; a local file is its own copy.
bool Cached(const QString& address) {
    const QString scheme = QUrl(address).scheme().toLower();
    return scheme == u"http" || scheme == u"https";
}

} // namespace

ComingControl::ComingControl(MapState& state, SceneControl& scene, render::GlApi& gl,
                             network::HttpClient& http,
                             std::function<void(int, const QString&, const QString&)> tell)
    : m_state(state), m_scene(scene), m_gl(gl), m_http(http), m_tell(std::move(tell)) {}

void ComingControl::SetAddresses(const QString& bookings, const QString& events) {
    for (auto [service, address] :
         {std::pair{&m_bookings, bookings.trimmed()}, std::pair{&m_events, events.trimmed()}}) {
        // A version of another address says nothing of this one's.
        if (service->Address != address)
            service->Known = {};
        service->Address = address;
    }
}

QDateTime& ComingControl::Fetched(Kind kind) {
    return kind == Kind::Bookings ? m_state.Coming.BookingsFetched : m_state.Coming.EventsFetched;
}

QDateTime ComingControl::Moment() const {
    return coming::Moment(m_state.AllTables()[1], Clock());
}

void ComingControl::Say(const QString& text) {
    m_scene.SetStatus(text);
    m_scene.Redraw();
}

void ComingControl::StartUp() {
    for (Service* service : {&m_bookings, &m_events}) {
        LoadCache(*service);
        Refresh(*service);
    }
    RecordMarks();
}

void ComingControl::Tick() {
    if (m_state.Display.ShownNetwork == 0)
        return;
    const QDateTime now = Clock();
    for (Service* service : {&m_bookings, &m_events}) {
        if (!service->LastTry.isValid() || service->LastTry.secsTo(now) >= kRefreshSeconds)
            Refresh(*service);
    }
}

void ComingControl::LoadCache(Service& service) {
    if (!Cached(service.Address))
        return;
    const auto bytes = ReadWholeFile(QDir(m_state.Home).filePath(service.CacheFile));
    const auto cached = bytes ? coming::ReadCache(*bytes) : std::nullopt;
    // A copy of another service's answer (the address was changed) is not this list.
    if (!cached || cached->Address != service.Address)
        return;
    QString problem, note;
    if (Take(service, cached->Body, problem, note)) {
        service.Known = cached->Version;
        Fetched(service.Of) = cached->Fetched;
    }
}

bool ComingControl::Take(Service& service, const QByteArray& body, QString& problem, QString& note) {
    const bool bookings = service.Of == Kind::Bookings;
    int entries = 0, leftOut = 0, kept = 0;
    if (bookings) {
        coming::ParsedList<coming::Booking> list = coming::ParseBookings(body);
        if (!list.Ok) {
            problem = list.Problem;
            return false;
        }
        entries = list.Entries, leftOut = list.LeftOut, kept = int(list.Items.size());
        m_state.Coming.Bookings = std::move(list.Items);
    } else {
        coming::ParsedList<coming::Event> list = coming::ParseEvents(body);
        if (!list.Ok) {
            problem = list.Problem;
            return false;
        }
        entries = list.Entries, leftOut = list.LeftOut, kept = int(list.Items.size());
        m_state.Coming.Events = std::move(list.Items);
    }
    if (leftOut > 0)
        note = NameOf(bookings) + u": %1 of %2 unreadable, left out"_s.arg(leftOut).arg(entries);
    else if (kept < entries)
        note = NameOf(bookings) + u": the first %1 of %2 kept"_s.arg(kept).arg(entries);
    return true;
}

void ComingControl::Refresh(Service& service) {
    // Another fetch is running: the next tick tries again.
    if (service.Address.isEmpty() || !m_state.Downloads.DownloadIdle)
        return;
    const QDateTime now = Clock();
    service.LastTry = now;
    network::FetchResult fetched;
    {
        const network::BusyGuard busy(m_state.Downloads);
        fetched = m_http.FetchIfChanged(service.Address, service.Known);
    }
    const bool bookings = service.Of == Kind::Bookings;
    QDateTime& had = Fetched(service.Of);
    const auto keep = [&](const QString& why) {
        Say(NameOf(bookings) + u" not updated ("_s + why + u"), "_s +
            (had.isValid() ? u"list of "_s + coming::AgeText(had, now) + u" ago kept"_s : u"none known"_s));
    };
    if (!fetched.Ok)
        return keep(fetched.Error.isEmpty() ? u"no answer"_s : fetched.Error);
    if (fetched.NotModified) {
        had = now;
        return;
    }
    QString problem, note;
    if (!Take(service, fetched.Body, problem, note))
        return keep(problem);
    had = now;
    service.Known = fetched.Version;
    if (!note.isEmpty())
        Say(note);
    if (Cached(service.Address)) {
        const WriteResult saved =
            WriteFileMakingFolder(QDir(m_state.Home).filePath(service.CacheFile),
                                  coming::CacheBytes({service.Address, now, fetched.Version, fetched.Body}));
        if (!saved.Ok)
            Say(NameOf(bookings) + u" not kept for the next start: "_s + saved.Message);
    }
    if (!bookings)
        RecordMarks();
    if (OnChanged)
        OnChanged();
}

void ComingControl::PrefilesRead(std::vector<network::Prefile> prefiles) {
    m_state.Coming.Prefiles = std::move(prefiles);
    ++m_state.Coming.PrefilesRevision;
}

void ComingControl::VatsimShown(const std::function<bool(const QString&)>& watched) {
    const network::NetworkData& vatsim = m_state.AllTables()[1];
    if (coming::DropConnected(m_state.Coming.Prefiles, vatsim) > 0)
        ++m_state.Coming.PrefilesRevision;
    const QDateTime moment = Moment();
    for (const coming::Booking* missed :
         coming::MissedBookings(m_state.Coming.Bookings, vatsim, moment, watched)) {
        const QString key = missed->Callsign + u'@' + missed->Start.toString(Qt::ISODate);
        if (m_told.contains(key))
            continue;
        m_told.insert(key);
        if (m_tell)
            m_tell(1, missed->Callsign, coming::MissedText(*missed));
    }
    RecordMarks();
}

void ComingControl::RecordMarks() {
    std::vector<geo::LatLon> places;
    for (const coming::Event* event : coming::EventsInProgress(m_state.Coming.Events, Moment())) {
        for (const QString& icao : event->Airports) {
            if (const Airport* airport = m_state.Reference.FindAirport(icao))
                places.push_back({airport->Latitude, airport->Longitude});
        }
    }
    render::BuildEventMarks(m_gl, m_state.Colours, places);
}

} // namespace sky::view
