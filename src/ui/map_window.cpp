#include "map_window.h"

#include "desktop_notifications.h"

#include <GL/gl.h>

#include <QApplication>
#include <QBuffer>
#include <QCloseEvent>
#include <QDesktopServices>
#include <QDir>
#include <QGuiApplication>
#include <QKeySequence>
#include <QMessageBox>
#include <QOpenGLContext>
#include <QScreen>
#include <QShortcut>
#include <QUrl>

#include "app/colour_theme.h"
#include "app/window_geometry.h"
#include "common/file_io.h"
#include "common/numbers.h"
#include "launch.h"
#include "preferences_dialog.h"
#include "render/draw_scene.h"
#include "render/frame.h"
#include "sql_history_store.h"
#include "statistics_window.h"

using namespace Qt::StringLiterals;

namespace sky::ui {
namespace {

QSurfaceFormat MapFormat() {
    QSurfaceFormat format;
    format.setRenderableType(QSurfaceFormat::OpenGL);
    format.setProfile(QSurfaceFormat::CompatibilityProfile);
    format.setVersion(2, 1);
    format.setRedBufferSize(8);
    format.setGreenBufferSize(8);
    format.setBlueBufferSize(8);
    // Nothing is drawn with a depth test or a stencil: no such buffers to clear every frame.
    format.setDepthBufferSize(0);
    format.setStencilBufferSize(0);
    format.setSwapBehavior(QSurfaceFormat::DoubleBuffer);
    return format;
}

int Pixels(std::int32_t twips, double twipsPerPixel) {
    return int(RoundHalfEven(twips / twipsPerPixel));
}
std::int32_t Twips(int pixels, double twipsPerPixel) {
    return ToInt32(pixels * twipsPerPixel);
}

} // namespace

MapWindow::MapWindow(MapOptions options)
    : m_options(std::move(options)), m_http(m_options.Config.Timeout * 1000, m_options.Config.Proxy) {
    setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
    setWindowTitle(u"Skylantra"_s);
    setFormat(MapFormat());
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true); // the pointer's shape shows the resizing edges
    // The history: the home folder's own, or another kept elsewhere, to replay only.
    if (!m_options.HistoryFile.isEmpty())
        m_history = std::make_unique<store::SqlHistoryStore>(m_options.HistoryFile, 0, true);
    else if (m_options.Config.HistoryHours > 0)
        m_history = std::make_unique<store::SqlHistoryStore>(m_options.Files.HomeFile(u"history.db"_s),
                                                             m_options.Config.HistoryHours, false);
    network::HttpClient* http = &m_http;
    if (m_options.Demo) {
        m_demoFeed = std::make_unique<view::DemoLiveFeed>(
            m_http, m_options.Addresses.Json[1], [] { return QDateTime::currentMSecsSinceEpoch(); },
            [this] { return m_session && m_session->Config().Live; });
        http = m_demoFeed.get();
    }
    m_session = std::make_unique<view::MapSession>(m_options.Files, m_options.Config, m_options.FriendList,
                                                   m_gl, *this, *http, m_history.get(), m_options.Addresses);
    // A download the history could not keep is said at once, on the map's thread.
    if (m_history)
        m_history->OnWriteFailed([this](const QString& why) {
            QMetaObject::invokeMethod(this, [this, why] {
                PrintLine(stderr, u"Skylantra: "_s + why);
                makeCurrent();
                m_session->History().WriteFailed(why);
            });
        });
    if (m_options.View)
        m_session->Scene().SetView(*m_options.View);
    m_autoDownloadTimer.setInterval(1000);
    m_downloadTimer.setInterval(1000);
    connect(&m_autoDownloadTimer, &QTimer::timeout, this, [this] {
        makeCurrent();
        m_session->Downloader().AutoDownloadTimerTick();
    });
    m_settleTimer.setSingleShot(true);
    m_settleTimer.setInterval(250);
    connect(&m_settleTimer, &QTimer::timeout, this, [this] {
        makeCurrent();
        m_session->Scene().ViewSettled();
    });
    m_motionTimer.setInterval(100);
    connect(&m_motionTimer, &QTimer::timeout, this, [this] {
        if (!isVisible() || isMinimized()) {
            m_motionTimer.stop();
            return;
        }
        makeCurrent();
        if (!m_session->Motion().Step())
            m_motionTimer.stop();
        else
            m_motionTimer.setInterval(m_session->Motion().StepIntervalMs());
        update();
    });
    m_minuteTimer.setInterval(60 * 1000);
    connect(&m_minuteTimer, &QTimer::timeout, this, [this] {
        makeCurrent();
        m_session->MinuteTick();
        update();
    });
    connect(&m_downloadTimer, &QTimer::timeout, this, [this] {
        makeCurrent();
        m_session->CheckSharedFiles();
        m_session->Downloader().DownloadTimerTick();
        m_session->Live().Tick();
        // New data glide at once; a step waiting longer is brought forward.
        const int stepMs = m_session->Motion().StepIntervalMs();
        if (m_session->Motion().Active() && isVisible() &&
            (!m_motionTimer.isActive() || m_motionTimer.remainingTime() > stepMs))
            m_motionTimer.start(stepMs);
        m_session->Coming().Tick();
    });
    PlaceFromSettings();
    auto* preferences = new QShortcut(QKeySequence(u"Ctrl+,"_s), this);
    connect(preferences, &QShortcut::activated, this, [this] { OpenPreferences(); });
    m_notifications = new DesktopNotifications([this](int network, const QString& callsign) {
        // A click on a notification: the window comes up and shows the client.
        if (isMinimized())
            showNormal();
        raise();
        activateWindow();
        makeCurrent();
        m_session->GoTo(network, callsign);
        update();
    });
    m_notifications->setParent(this);
    m_search = new SearchField(
        *m_session,
        [this](const std::function<void()>& call) {
            makeCurrent();
            call();
        },
        this);
    auto* statistics = new QShortcut(QKeySequence(u"Ctrl+T"_s), this);
    connect(statistics, &QShortcut::activated, this, [this] {
        if (m_started)
            Statistics().ShowTraffic();
    });
    auto* find = new QShortcut(QKeySequence::Find, this);
    connect(find, &QShortcut::activated, this, [this] { OpenSearch(); });
    m_filterBar = new FilterBar(
        *m_session,
        [this](const std::function<void()>& call) {
            makeCurrent();
            call();
        },
        [this](const QString& text) { Report(text); }, this);
    auto* filters = new QShortcut(QKeySequence(u"Ctrl+Shift+F"_s), this);
    connect(filters, &QShortcut::activated, this, [this] { OpenFilters(); });
    m_hoverTimer.setSingleShot(true);
    m_hoverTimer.setInterval(400);
    connect(&m_hoverTimer, &QTimer::timeout, this, [this] {
        makeCurrent();
        m_session->Pointer().Hover(m_hoverAt.x(), m_hoverAt.y());
    });
}

void MapWindow::OpenSearch() {
    if (m_started)
        m_search->Open();
}

void MapWindow::OpenFilters() {
    if (m_started)
        m_filterBar->Open();
}

void MapWindow::FilterChanged() {
    if (m_filterBar)
        m_filterBar->Refresh();
}

void MapWindow::OpenPreferences() {
    PreferencesDialog dialog(
        m_session->Config(), m_options.Files,
        [this](const Settings& chosen) {
            makeCurrent();
            m_http.SetTimeout(chosen.Timeout * 1000);
            m_session->ApplyPreferences(chosen);
        },
        this);
    dialog.exec();
}

MapWindow::~MapWindow() {
    ReleaseGl();
}

StatisticsWindow& MapWindow::Statistics() {
    if (!m_statistics) {
        // The file the map keeps its history in, or replays; none when it keeps none.
        const QString path = !m_options.HistoryFile.isEmpty()    ? m_options.HistoryFile
                             : m_options.Config.HistoryHours > 0 ? m_options.Files.HomeFile(u"history.db"_s)
                                                                 : QString();
        m_statistics = std::make_unique<StatisticsWindow>(
            *m_session, path, m_options.DemoHistory, [this](const std::function<void()>& call, bool bringUp) {
                makeCurrent();
                call();
                update();
                if (bringUp) {
                    raise();
                    activateWindow();
                }
            });
    }
    return *m_statistics;
}

void MapWindow::ShowAirportChart(int network, const QString& airport) {
    Statistics().ShowAirport(network, airport);
}

void MapWindow::ShowFlightChart(int network, const QString& callsign, const QString& member) {
    Statistics().ShowFlight(network, callsign, member);
}

void MapWindow::PlaceFromSettings() {
    const Settings& s = m_session->Config();
    const double tpp = m_options.TwipsPerPixel;
    // A window saved on a screen that is gone, or larger than any, comes onto the nearest screen.
    std::vector<PixelBox> screens;
    for (const QScreen* screen : QGuiApplication::screens()) {
        const QRect area = screen->availableGeometry();
        screens.push_back({area.x(), area.y(), area.width(), area.height()});
    }
    const PixelBox placed = FitOnScreens({Pixels(s.WindowLeft, tpp), Pixels(s.WindowTop, tpp),
                                          Pixels(s.WindowWidth, tpp), Pixels(s.WindowHeight, tpp)},
                                         screens);
    QSize minimum(kMinWindowWidthPx, kMinWindowHeightPx);
    if (!screens.empty())
        minimum = minimum.boundedTo(QSize(screens.front().Width, screens.front().Height));
    setMinimumSize(minimum);
    setGeometry(placed.Left, placed.Top, placed.Width, placed.Height);
}

// Called for every context the window gets: the first at start, and a new one when Qt makes the
// context anew (the window moved into another top-level window, say). GL objects belong to it.
void MapWindow::initializeGL() {
    if (context())
        connect(context(), &QOpenGLContext::aboutToBeDestroyed, this, &MapWindow::ReleaseGl,
                Qt::UniqueConnection);
    m_gl.Initialise(devicePixelRatioF());
    glEnable(GL_BLEND);
    glHint(GL_POINT_SMOOTH_HINT, GL_NICEST);
    glMatrixMode(GL_MODELVIEW);
    glLineStipple(1, 0x0F0F);
    render::SetBackground(m_gl, m_session->Colours());
    if (!m_started)
        QTimer::singleShot(0, this, [this] { StartUp(); });
    else
        m_session->RecordAllLists();
}

void MapWindow::ReleaseGl() {
    if (!context())
        return;
    makeCurrent();
    m_gl.Release();
    doneCurrent();
    // The next context connects again; the window's own end must not be told twice.
    disconnect(context(), &QOpenGLContext::aboutToBeDestroyed, this, &MapWindow::ReleaseGl);
}

void MapWindow::RemakeGlContext() {
    const QRect placed = geometry();
    const Qt::WindowFlags flags = windowFlags();
    {
        QWidget holder;
        setParent(&holder);
        setParent(nullptr, flags);
    }
    setGeometry(placed);
    show();
    QCoreApplication::processEvents(); // the new context is made and the lists recorded in it
    makeCurrent();
}

void MapWindow::Quit(int status) {
    m_shutDown = true;
    m_autoDownloadTimer.stop();
    m_downloadTimer.stop();
    m_motionTimer.stop();
    m_history.reset(); // its writer finishes what it was given
    QCoreApplication::exit(status);
}

void MapWindow::StartUp() {
    if (m_started)
        return;
    m_started = true;
    if (!context() || !context()->isValid()) {
        QMessageBox::critical(nullptr, u"Error"_s, u"Could not enable OpenGL"_s);
        Quit(1);
        return;
    }
    makeCurrent();
    m_session->Resize(width(), height());
    const QString missing = m_session->StartUp();
    if (!missing.isEmpty())
        Report(u"Cannot read "_s + QDir::toNativeSeparators(missing) + u": the map is drawn without it."_s);
    if (!m_options.StartNotice.isEmpty()) {
        m_session->Scene().SetStatus(m_options.StartNotice);
        m_session->Scene().Redraw();
    }
    // A history given to replay opens on its newest snapshot.
    if (!m_options.HistoryFile.isEmpty())
        m_session->History().ShowNewest();
    m_downloadTimer.start();
    m_minuteTimer.start();
    m_session->DownloadOnStart(m_options.DownloadNetworks);
    if (!m_options.Filter.isEmpty()) {
        const QStringList problems = m_session->Filters().Apply(m_options.Filter);
        if (!problems.isEmpty())
            Report(u"--filter: not understood: "_s + problems.join(u", "_s));
    }
    ApplyInput(m_options.Input);
    if (!m_options.SnapshotPath.isEmpty()) {
        SaveSnapshotAndExit();
        return;
    }
    // The kept traffic is counted in the background a little after start-up, so Ctrl+T opens at once.
    QTimer::singleShot(3000, this, [this] {
        if (!m_shutDown)
            Statistics().Prepare();
    });
}

void MapWindow::SaveSnapshotAndExit() {
    makeCurrent();
    if (m_options.PrintPanel) {
        const render::TableContent table = m_session->PanelController().ShownTable();
        QStringList text{table.Title, table.Headers.join(u'|')};
        for (const QStringList& row : table.Rows)
            text.append(row.join(u'|'));
        PrintLine(stdout, text.join(u'\n'));
    }
    if (m_options.PrintStatus)
        PrintLine(stdout, m_session->Display().StatusText);
    // PNG whatever the file is called, saved as every file is: a full disk keeps what was there.
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    const WriteResult saved = grabFramebuffer().save(&buffer, "PNG")
                                  ? WriteFileAtomically(m_options.SnapshotPath, png)
                                  : WriteResult{false, u"cannot make the snapshot's image"_s};
    if (!saved.Ok) {
        PrintLine(stderr, u"Skylantra: "_s + saved.Message);
        Quit(1);
        return;
    }
    // A snapshot leaves the settings as they were.
    Quit(0);
}

void MapWindow::resizeGL(int w, int h) {
    if (!m_started)
        return;
    // On a screen of another scale the glyphs are made again at its size, and what prints text with them.
    const bool rescaled = devicePixelRatioF() != m_gl.DevicePixelRatio();
    if (rescaled)
        m_gl.SetDevicePixelRatio(devicePixelRatioF());
    m_session->Resize(w, h);
    if (rescaled)
        m_session->Scene().TextChanged();
    m_settleTimer.start(); // labels are placed again once the size stops changing
}

void MapWindow::paintGL() {
    m_gl.SetDrawableSize(int(std::lround(width() * devicePixelRatioF())),
                         int(std::lround(height() * devicePixelRatioF())));
    render::DrawScene(m_gl, m_session->Frame());
}

void MapWindow::Report(const QString& text) {
    if (m_options.Report)
        m_options.Report(text);
    else
        PrintLine(stderr, u"Skylantra: "_s + text);
}

void MapWindow::Redraw() {
    if (isVisible())
        repaint();
}

void MapWindow::ShowCompanion() {
    if (!m_companion) {
        m_companion = std::make_unique<CompanionWindow>(*m_session, [this](const QString& input) {
            makeCurrent();
            return m_session->CompanionEnter(input);
        });
    }
    m_companion->ShowBeside(geometry());
}

void MapWindow::Notify(int network, const QString& callsign, const QString& text) {
    if (m_notifications)
        m_notifications->Show(network, callsign, text);
}

void MapWindow::OpenUrl(const QString& address) {
    const QUrl url(address);
    if (url.scheme() == u"http" || url.scheme() == u"https")
        QDesktopServices::openUrl(url);
}

void MapWindow::ShowNetworkMessage(const QString& text) {
    if (!m_options.SnapshotPath.isEmpty()) {
        PrintLine(stderr, u"Important Network Message: "_s + text);
        return;
    }
    QMessageBox box(QMessageBox::Information, u"Important Network Message"_s, text, QMessageBox::Ok, this);
    box.setTextFormat(Qt::PlainText);
    box.exec();
}

void MapWindow::EnableAutoDownload(bool enabled) {
    if (enabled)
        m_autoDownloadTimer.start();
    else
        m_autoDownloadTimer.stop();
}

void MapWindow::ToggleMaximised() {
    const double tpp = m_options.TwipsPerPixel;
    QScreen* screen = this->screen() ? this->screen() : QGuiApplication::primaryScreen();
    const QRect monitor = screen->geometry();
    const MonitorInfo info{monitor.left(), monitor.top(), monitor.right() + 1, monitor.bottom() + 1,
                           screen->availableGeometry().height()};
    const QRect now = geometry();
    const TwipsRect current{Twips(now.x(), tpp), Twips(now.y(), tpp), Twips(now.width(), tpp),
                            Twips(now.height(), tpp)};
    m_session->PanelController().CloseAll();
    // Maximising keeps the window's place in the settings, to restore it.
    Settings settings = m_session->Config();
    const TwipsRect next =
        sky::ToggleMaximised(m_maximised, current, info, m_options.TwipsPerPixel, settings);
    m_session->ApplyPreferences(settings);
    setGeometry(Pixels(next.Left, tpp), Pixels(next.Top, tpp), Pixels(next.Width, tpp),
                Pixels(next.Height, tpp));
}

void MapWindow::closeEvent(QCloseEvent* event) {
    ShutDown();
    event->accept();
}

void MapWindow::ShutDown() {
    if (m_shutDown)
        return;
    m_shutDown = true;
    m_autoDownloadTimer.stop();
    m_downloadTimer.stop();
    const double tpp = m_options.TwipsPerPixel;
    const QRect now = geometry();
    const WindowPlacement placement{m_maximised, Twips(now.x(), tpp), Twips(now.y(), tpp),
                                    Twips(now.width(), tpp), Twips(now.height(), tpp)};
    const Settings& config = m_session->Config();
    // The stored views are those of the session, which the keys may have changed.
    const WriteResult saved = SaveSettings(m_options.Files.Home, config, placement, m_options.TwipsPerPixel);
    if (!saved.Ok) {
        PrintLine(stderr, u"Skylantra: "_s + saved.Message);
        QMessageBox box(QMessageBox::Warning, u"Skylantra"_s, saved.Message, QMessageBox::Ok);
        box.setTextFormat(Qt::PlainText);
        box.exec();
    }
    QCoreApplication::quit();
}

} // namespace sky::ui
