#include "map_window.h"

#include <cstdio>

#include <GL/gl.h>

#include <QApplication>
#include <QCloseEvent>
#include <QContextMenuEvent>
#include <QDesktopServices>
#include <QDir>
#include <QUrl>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QKeySequence>
#include <QMenu>
#include <QOpenGLContext>
#include <QMessageBox>
#include <QMouseEvent>
#include <QScreen>
#include <QWheelEvent>
#include <QWindow>

#include "app/colour_theme.h"
#include "app/window_geometry.h"
#include "common/numbers.h"
#include "key_codes.h"
#include "view/camera.h"
#include "view/keys.h"

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
    format.setDepthBufferSize(16);
    format.setStencilBufferSize(1); // for the sector fills
    format.setSwapBehavior(QSurfaceFormat::DoubleBuffer);
    return format;
}

int Pixels(std::int32_t twips, double twipsPerPixel) {
    return int(RoundHalfEven(twips / twipsPerPixel));
}
std::int32_t Twips(int pixels, double twipsPerPixel) {
    return ToInt32(pixels * twipsPerPixel);
}

void PrintError(const QString& text) {
    const QByteArray bytes = text.toUtf8() + '\n';
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stderr);
}

} // namespace

MapWindow::MapWindow(MapOptions options)
    : m_options(std::move(options)), m_http(m_options.Config.Timeout * 1000, m_options.Config.Proxy) {
    setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
    setWindowTitle(u"Skylantra"_s);
    setFormat(MapFormat());
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(false);
    m_session = std::make_unique<view::MapSession>(m_options.Files, m_options.Config, m_options.FriendList,
                                                   m_gl, *this, m_http);
    for (int n = 0; n < network::kNetworkCount; ++n) {
        m_session->Downloads().Networks[n].StatusFileAddress = m_options.StatusAddresses[n];
        m_session->Downloads().Networks[n].JsonAddress = m_options.JsonAddresses[n];
    }
    if (m_options.View)
        m_session->View() = *m_options.View;
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
    connect(&m_downloadTimer, &QTimer::timeout, this, [this] {
        makeCurrent();
        m_session->Downloader().DownloadTimerTick();
    });
    PlaceFromSettings();
}

MapWindow::~MapWindow() = default;

void MapWindow::PlaceFromSettings() {
    const Settings& s = m_session->Config();
    const double tpp = m_options.TwipsPerPixel;
    setGeometry(Pixels(s.WindowLeft, tpp), Pixels(s.WindowTop, tpp), Pixels(s.WindowWidth, tpp),
                Pixels(s.WindowHeight, tpp));
}

void MapWindow::initializeGL() {
    m_gl.InitialiseText(devicePixelRatioF());
    const ColourTable& c = m_session->Colours();
    glClearColor(c.Red[kSlotScreenBackground], c.Green[kSlotScreenBackground], c.Blue[kSlotScreenBackground],
                 0.0f);
    glEnable(GL_BLEND);
    glHint(GL_POINT_SMOOTH_HINT, GL_NICEST);
    glMatrixMode(GL_MODELVIEW);
    glLineStipple(1, 0x0F0F);
    if (!m_started)
        QTimer::singleShot(0, this, [this] { StartUp(); });
}

void MapWindow::StartUp() {
    if (m_started)
        return;
    m_started = true;
    if (!context() || !context()->isValid()) {
        QMessageBox::critical(nullptr, u"Error"_s, u"Could not enable OpenGL"_s);
        std::exit(1);
    }
    makeCurrent();
    m_session->Scene().Resize(width(), height());
    const QString missing = m_session->StartUp();
    if (!missing.isEmpty())
        Report(u"Cannot read "_s + QDir::toNativeSeparators(missing) + u": the map is drawn without it."_s);
    m_downloadTimer.start();
    const QString which = m_options.DownloadNetworks;
    if (which == u"ivao")
        m_session->Downloader().BtnDownload(0);
    else if (which == u"vatsim")
        m_session->Downloader().BtnDownload(1);
    else if (which == u"both")
        m_session->Downloader().BtnDownload(2);
    ApplyInput(m_options.Input);
    if (!m_options.SnapshotPath.isEmpty())
        SaveSnapshotAndExit();
}

void MapWindow::ApplyInput(const QString& sequence) {
    for (const QString& step : sequence.split(u';', Qt::SkipEmptyParts)) {
        const QStringList words = step.trimmed().split(u' ', Qt::SkipEmptyParts);
        if (words.isEmpty())
            continue;
        makeCurrent();
        if (words[0] == u"click" && words.size() == 3) {
            m_session->Pointer().Click(words[1].toInt(), words[2].toInt());
            continue;
        }
        // A key by its name as Qt knows it, with "shift+", "ctrl+" or "alt+" before it.
        const QKeySequence key = QKeySequence::fromString(words[0]);
        if (key.isEmpty())
            continue;
        const int code = ClassicKeyCode(key[0].key());
        const int modifiers = ClassicModifiers(key[0].keyboardModifiers());
        if (code == 0)
            continue;
        m_session->KeyDown(code, modifiers);
        m_session->KeyUp(code, modifiers);
    }
}

void MapWindow::SaveSnapshotAndExit() {
    makeCurrent();
    const QImage image = grabFramebuffer();
    if (!image.save(m_options.SnapshotPath, "PNG")) { // whatever the file is called
        PrintError(u"Skylantra: cannot write the snapshot "_s + m_options.SnapshotPath);
        std::exit(1);
    }
    // A snapshot leaves the settings as they were.
    m_shutDown = true;
    QCoreApplication::exit(0);
}

void MapWindow::resizeGL(int w, int h) {
    if (!m_started)
        return;
    // On a screen of another scale the glyphs are made again at its size, and what prints text with them.
    const bool rescaled = devicePixelRatioF() != m_gl.DevicePixelRatio();
    if (rescaled)
        m_gl.InitialiseText(devicePixelRatioF());
    m_session->Scene().Resize(w, h);
    if (rescaled)
        m_session->Scene().TextChanged();
}

void MapWindow::paintGL() {
    const view::FrameInputs inputs{m_session->Config(), m_session->Display(), m_session->Colours(), width(),
                                   height()};
    view::DrawScene(m_gl, inputs, m_session->View());
}

void MapWindow::Report(const QString& text) {
    if (m_options.Report)
        m_options.Report(text);
    else
        PrintError(u"Skylantra: "_s + text);
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

void MapWindow::OpenUrl(const QString& address) {
    const QUrl url(address);
    if (url.scheme() == u"http" || url.scheme() == u"https")
        QDesktopServices::openUrl(url);
}

void MapWindow::ShowNetworkMessage(const QString& text) {
    if (!m_options.SnapshotPath.isEmpty()) {
        PrintError(u"Important Network Message: "_s + text);
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

void MapWindow::RunKey(int keyCode, int modifiers) {
    if (!m_started)
        return;
    makeCurrent();
    m_session->KeyUp(keyCode, modifiers);
    m_settleTimer.start(); // a stored view may have been restored
}

void MapWindow::keyPressEvent(QKeyEvent* event) {
    const int code = ClassicKeyCode(event->key());
    if (code == 0 || !m_started) {
        QOpenGLWidget::keyPressEvent(event);
        return;
    }
    const int modifiers = ClassicModifiers(event->modifiers());
    if (!event->isAutoRepeat())
        m_pressModifiers[code] = modifiers;
    makeCurrent();
    m_session->KeyDown(code, modifiers);
    m_settleTimer.start();
}

void MapWindow::keyReleaseEvent(QKeyEvent* event) {
    const int code = ClassicKeyCode(event->key());
    if (code == 0 || event->isAutoRepeat()) {
        QOpenGLWidget::keyReleaseEvent(event);
        return;
    }
    // A chord counts as pressed: Shift+1 stores a view even when Shift is let go before the 1.
    const auto pressed = m_pressModifiers.find(code);
    const int modifiers =
        pressed != m_pressModifiers.end() ? pressed->second : ClassicModifiers(event->modifiers());
    if (pressed != m_pressModifiers.end())
        m_pressModifiers.erase(pressed);
    RunKey(code, modifiers);
}

void MapWindow::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    const QPoint p = event->position().toPoint();
    switch (TitleStripZone(p.x(), p.y(), width())) {
    case TitleZone::Close:
        close();
        return;
    case TitleZone::Maximise:
        ToggleMaximised();
        return;
    case TitleZone::Minimise:
        showMinimized();
        return;
    case TitleZone::Caption:
        if (!m_maximised && windowHandle())
            windowHandle()->startSystemMove();
        return;
    case TitleZone::None:
        break;
    }
    m_pressPosition = m_lastPosition = p;
    m_dragging = false;
}

void MapWindow::mouseMoveEvent(QMouseEvent* event) {
    if (!(event->buttons() & Qt::LeftButton) || !m_started)
        return;
    const QPoint p = event->position().toPoint();
    if (!m_dragging && (p - m_pressPosition).manhattanLength() < 4)
        return;
    m_dragging = true;
    makeCurrent();
    m_session->Pointer().Drag(m_lastPosition.x(), m_lastPosition.y(), p.x(), p.y());
    m_lastPosition = p;
}

void MapWindow::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !m_started)
        return;
    const QPoint p = event->position().toPoint();
    if (TitleStripZone(m_pressPosition.x(), m_pressPosition.y(), width()) != TitleZone::None)
        return;
    makeCurrent();
    if (!m_dragging)
        m_session->Pointer().Click(p.x(), p.y());
    else
        m_session->Scene().ViewSettled();
    m_dragging = false;
}

void MapWindow::mouseDoubleClickEvent(QMouseEvent* event) {
    const QPoint p = event->position().toPoint();
    if (TitleStripZone(p.x(), p.y(), width()) == TitleZone::Caption)
        ToggleMaximised();
    else
        mousePressEvent(event);
}

void MapWindow::wheelEvent(QWheelEvent* event) {
    const int steps = event->angleDelta().y() / 120;
    if (steps == 0 || !m_started)
        return;
    makeCurrent();
    m_session->Pointer().Wheel(steps);
    m_settleTimer.start();
}

void MapWindow::contextMenuEvent(QContextMenuEvent* event) {
    if (!m_started)
        return;
    namespace keys = view::keys;
    QMenu menu(this);
    const auto key = [&](QMenu* into, const QString& text, int code, int modifiers = 0) {
        return into->addAction(text, this, [this, code, modifiers] { RunKey(code, modifiers); });
    };
    // A switch shows whether it is on.
    const auto toggle = [&](QMenu* into, const QString& text, bool on, int code, int modifiers = 0) {
        QAction* action = key(into, text, code, modifiers);
        action->setCheckable(true);
        action->setChecked(on);
    };
    const Settings& s = m_session->Config();
    const view::DisplayState& d = m_session->Display();
    key(&menu, u"Download IVAO\tI"_s, keys::Letter('I'));
    key(&menu, u"Download VATSIM\tV"_s, keys::Letter('V'));
    key(&menu, u"Download both (compare)\tB"_s, keys::Letter('B'));
    QAction* automatic = menu.addAction(u"Automatic download"_s);
    automatic->setCheckable(true);
    automatic->setChecked(s.AutoDownload);
    connect(automatic, &QAction::toggled, this, [this](bool on) {
        m_session->Config().AutoDownload = on;
        EnableAutoDownload(on);
    });
    menu.addSeparator();
    QMenu* layers = menu.addMenu(u"Layers"_s);
    toggle(layers, u"Lat/Lon grid\tG"_s, s.ShowLatLon, keys::Letter('G'));
    if (!s.DisableCountries)
        toggle(layers, u"Country borders\tC"_s, d.ShowCountries, keys::Letter('C'));
    toggle(layers, u"Airports\tShift+F4"_s, s.ShowAirports, keys::F(4), keys::kShift);
    toggle(layers, u"ATC\tShift+F5"_s, s.ShowATC, keys::F(5), keys::kShift);
    toggle(layers, u"Planes\tShift+F6"_s, s.ShowPlanes, keys::F(6), keys::kShift);
    toggle(layers, u"Inbound lines\tF3"_s, s.ShowInbounds, keys::F(3));
    QMenu* labels = menu.addMenu(u"Labels"_s);
    key(labels, u"All labels\tF1"_s, keys::F(1));
    toggle(labels, u"Airport labels\tF4"_s, s.ShowAirportLabels, keys::F(4));
    toggle(labels, u"ATC labels\tF5"_s, s.ShowATCLabels, keys::F(5));
    toggle(labels, u"Plane labels\tF6"_s, s.ShowPlaneLabels, keys::F(6));
    toggle(labels, u"Declutter labels\tD"_s, s.DeclutterLabels, keys::Letter('D'));
    toggle(&menu, u"Friends only\tF2"_s, d.FriendsOnly, keys::F(2));
    QMenu* views = menu.addMenu(u"Views"_s);
    for (int k = 1; k <= 3; ++k)
        key(views, u"Restore view %1\t%1"_s.arg(k), keys::Digit(k));
    for (int k = 1; k <= 3; ++k)
        key(views, u"Store view %1\tShift+%1"_s.arg(k), keys::Digit(k), keys::kShift);
    key(&menu, u"Centre on myself\t4"_s, keys::Digit(4));
    key(&menu, u"Companion\tSpace"_s, keys::kSpace);
    menu.addSeparator();
    menu.addAction(u"Exit"_s, this, [this] { close(); });
    menu.exec(event->globalPos());
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
    m_session->Display().PanelMode = 0;
    const TwipsRect next =
        sky::ToggleMaximised(m_maximised, current, info, m_options.TwipsPerPixel, m_session->Config());
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
    QStringList failures;
    for (const WriteResult& result :
         SaveSettings(m_options.Files.Home, config, m_session->FriendList(), placement, m_options.TwipsPerPixel)) {
        if (!result.Ok) {
            PrintError(u"Skylantra: "_s + result.Message);
            failures.append(result.Message);
        }
    }
    if (!failures.isEmpty()) {
        QMessageBox box(QMessageBox::Warning, u"Skylantra"_s, failures.join(u'\n'), QMessageBox::Ok);
        box.setTextFormat(Qt::PlainText);
        box.exec();
    }
    QCoreApplication::quit();
}

} // namespace sky::ui
