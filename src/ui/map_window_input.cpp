#include "map_window.h"

#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QKeySequence>
#include <QMenu>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QWheelEvent>
#include <QWindow>

#include "app/window_geometry.h"
#include "key_codes.h"
#include "statistics_window.h"
#include "view/keys.h"
#include "view/physical_keys.h"

using namespace Qt::StringLiterals;

// The map window's keys, mouse, wheel, gestures and menu, turned into calls of the map session.
namespace sky::ui {
namespace {

// The classic code of a key: by its place on the keyboard where the platform tells it (X11 and Wayland
// key codes), so a view key is the same key on every layout; else by what it prints.
int KeyOf(const QKeyEvent* event) {
    static const bool xkb =
        QGuiApplication::platformName() == u"xcb" || QGuiApplication::platformName().startsWith(u"wayland");
    const int physical =
        xkb && event->nativeScanCode() != 0 ? view::ClassicKeyFromKeycode(event->nativeScanCode()) : 0;
    return physical != 0 ? physical : ClassicKeyCode(event->key());
}

Qt::Edges EdgesOf(int edges) {
    Qt::Edges result;
    if (edges & kResizeLeft)
        result |= Qt::LeftEdge;
    if (edges & kResizeRight)
        result |= Qt::RightEdge;
    if (edges & kResizeTop)
        result |= Qt::TopEdge;
    if (edges & kResizeBottom)
        result |= Qt::BottomEdge;
    return result;
}

Qt::CursorShape CursorFor(int edges) {
    const bool horizontal = edges & (kResizeLeft | kResizeRight),
               vertical = edges & (kResizeTop | kResizeBottom);
    if (horizontal && vertical)
        return ((edges & kResizeLeft) != 0) == ((edges & kResizeTop) != 0) ? Qt::SizeFDiagCursor
                                                                           : Qt::SizeBDiagCursor;
    if (horizontal)
        return Qt::SizeHorCursor;
    return vertical ? Qt::SizeVerCursor : Qt::ArrowCursor;
}

} // namespace

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
        // "wheel 30": the wheel turned by so many units (120 a notch), as a touchpad sends it.
        if (words[0] == u"wheel" && words.size() == 2) {
            const QPointF centre(width() / 2.0, height() / 2.0);
            QWheelEvent wheel(centre, mapToGlobal(centre), QPoint(), QPoint(0, words[1].toInt()),
                              Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
            wheelEvent(&wheel);
            continue;
        }
        // "drag 100 200 300 400 shift": the mouse dragged from one pixel to another, with Shift and the left
        // button, the middle button ("middle") or the left alone.
        if (words[0] == u"drag" && words.size() >= 5) {
            const QPointF from(words[1].toInt(), words[2].toInt()), to(words[3].toInt(), words[4].toInt());
            const QString how = words.value(5);
            const Qt::MouseButton button = how == u"middle" ? Qt::MiddleButton : Qt::LeftButton;
            const Qt::KeyboardModifiers modifiers = how == u"shift" ? Qt::ShiftModifier : Qt::NoModifier;
            const auto send = [&](QEvent::Type type, QPointF at, Qt::MouseButtons held) {
                QMouseEvent mouse(type, at, mapToGlobal(at),
                                  type == QEvent::MouseMove ? Qt::NoButton : button, held, modifiers);
                if (type == QEvent::MouseButtonPress)
                    mousePressEvent(&mouse);
                else if (type == QEvent::MouseMove)
                    mouseMoveEvent(&mouse);
                else
                    mouseReleaseEvent(&mouse);
            };
            send(QEvent::MouseButtonPress, from, button);
            for (int i = 1; i <= 8; ++i)
                send(QEvent::MouseMove, from + (to - from) * (i / 8.0), button);
            send(QEvent::MouseButtonRelease, to, Qt::NoButton);
            continue;
        }
        // "paint": a frame drawn now, as the window would between two inputs.
        if (words[0] == u"paint") {
            grabFramebuffer();
            continue;
        }
        // "newcontext": the map goes into another window and back, and Qt makes its GL context anew.
        if (words[0] == u"newcontext") {
            RemakeGlContext();
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

void MapWindow::RunKey(int keyCode, int modifiers) {
    if (!m_started)
        return;
    makeCurrent();
    m_session->KeyUp(keyCode, modifiers);
    m_settleTimer.start(); // a stored view may have been restored
}

void MapWindow::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Slash && m_started) {
        OpenSearch();
        return;
    }
    if (event->key() == Qt::Key_Backslash && m_started) {
        OpenFilters();
        return;
    }
    const int code = KeyOf(event);
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
    const int code = KeyOf(event);
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
    m_hoverTimer.stop();
    if (MeasurePress(event) || event->button() != Qt::LeftButton)
        return;
    const QPoint p = event->position().toPoint();
    m_pressOnMap = false;
    // The frameless window is resized from its edges and corners by the platform, as framed ones are.
    const int edges = ResizeEdgesAt(p.x(), p.y(), width(), height(), m_maximised);
    if (edges != kResizeNone) {
        // Without a window manager to do it, the window follows the pointer itself.
        if (!windowHandle() || !windowHandle()->startSystemResize(EdgesOf(edges))) {
            m_resizeEdges = edges;
            m_resizeFrom = event->globalPosition().toPoint();
            m_resizeGeometry = geometry();
        }
        return;
    }
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
    // Only a press on the map drags it or clicks on it; one in the title strip or on an edge never does.
    m_pressOnMap = true;
    m_pressPosition = m_lastPosition = p;
    m_dragging = false;
}

void MapWindow::mouseMoveEvent(QMouseEvent* event) {
    if (MeasureMove(event))
        return;
    const QPoint p = event->position().toPoint();
    if (!(event->buttons() & Qt::LeftButton)) {
        setCursor(CursorFor(ResizeEdgesAt(p.x(), p.y(), width(), height(), m_maximised)));
        // A card goes when the pointer leaves its client; the pointer resting anew shows another.
        if (m_started && m_session->Display().HoverCard && (p - m_hoverAt).manhattanLength() > 10) {
            makeCurrent();
            m_session->Pointer().HoverEnd();
        }
        if (m_started && (p - m_hoverAt).manhattanLength() > 2) {
            m_hoverAt = p;
            m_hoverTimer.start();
        }
        return;
    }
    if (m_resizeEdges != kResizeNone) {
        ResizeBy(event->globalPosition().toPoint() - m_resizeFrom);
        return;
    }
    if (!m_started || !m_pressOnMap)
        return;
    if (!m_dragging && (p - m_pressPosition).manhattanLength() < 4)
        return;
    m_dragging = true;
    makeCurrent();
    m_session->Pointer().Drag(m_lastPosition.x(), m_lastPosition.y(), p.x(), p.y());
    m_lastPosition = p;
}

void MapWindow::ResizeBy(const QPoint& moved) {
    QRect r = m_resizeGeometry;
    const QSize least = minimumSize();
    if (m_resizeEdges & kResizeLeft)
        r.setLeft(std::min(r.left() + moved.x(), r.right() - least.width() + 1));
    if (m_resizeEdges & kResizeRight)
        r.setRight(std::max(r.right() + moved.x(), r.left() + least.width() - 1));
    if (m_resizeEdges & kResizeTop)
        r.setTop(std::min(r.top() + moved.y(), r.bottom() - least.height() + 1));
    if (m_resizeEdges & kResizeBottom)
        r.setBottom(std::max(r.bottom() + moved.y(), r.top() + least.height() - 1));
    setGeometry(r);
}

void MapWindow::mouseReleaseEvent(QMouseEvent* event) {
    if (MeasureRelease(event))
        return;
    if (event->button() == Qt::LeftButton)
        m_resizeEdges = kResizeNone;
    if (event->button() != Qt::LeftButton || !m_started || !m_pressOnMap)
        return;
    m_pressOnMap = false;
    const QPoint p = event->position().toPoint();
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

void MapWindow::leaveEvent(QEvent* event) {
    m_hoverTimer.stop();
    if (m_started) {
        makeCurrent();
        m_session->Pointer().HoverEnd();
    }
    QOpenGLWidget::leaveEvent(event);
}

void MapWindow::wheelEvent(QWheelEvent* event) {
    if (!m_started)
        return;
    // Touchpads and smooth wheels send small deltas: they add up, and each full notch zooms one step.
    m_wheelRemainder += event->angleDelta().y();
    const int steps = m_wheelRemainder / 120;
    m_wheelRemainder -= steps * 120;
    if (steps == 0)
        return;
    makeCurrent();
    m_session->Pointer().Wheel(steps);
    m_settleTimer.start();
}

bool MapWindow::event(QEvent* event) {
    if (event->type() == QEvent::NativeGesture && m_started) {
        const auto* gesture = static_cast<QNativeGestureEvent*>(event);
        if (gesture->gestureType() == Qt::ZoomNativeGesture) { // pinch
            makeCurrent();
            m_session->Pointer().Zoom(1.0 + gesture->value());
            m_settleTimer.start();
            return true;
        }
    }
    return QOpenGLWidget::event(event);
}

void MapWindow::contextMenuEvent(QContextMenuEvent* event) {
    if (!m_started || FriendMenu(event->pos(), event->globalPos()))
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
        Settings changed = m_session->Config();
        changed.AutoDownload = on;
        m_session->ApplyPreferences(changed);
    });
    toggle(&menu, u"Live\tCtrl+L"_s, s.Live, keys::Letter('L'), keys::kCtrl);
    menu.addSeparator();
    QMenu* layers = menu.addMenu(u"Layers"_s);
    toggle(layers, u"Lat/Lon grid\tG"_s, s.ShowLatLon, keys::Letter('G'));
    toggle(layers, u"Night side\tN"_s, s.ShowNight, keys::Letter('N'));
    toggle(layers, u"Weather\tW"_s, s.ShowWeather, keys::Letter('W'));
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
    QAction* names = labels->addAction(u"Friends' names instead of callsigns"_s);
    names->setCheckable(true);
    names->setChecked(s.FriendNamesInstead);
    connect(names, &QAction::toggled, this, [this](bool on) {
        makeCurrent();
        Settings changed = m_session->Config();
        changed.FriendNamesInstead = on;
        m_session->ApplyPreferences(changed);
    });
    toggle(&menu, u"Friends only\tF2"_s, d.FriendsOnly, keys::F(2));
    AddFilterMenu(menu);
    QMenu* history = menu.addMenu(u"History"_s);
    key(history, u"Earlier data\tF7"_s, keys::F(7));
    key(history, u"Later data\tF8"_s, keys::F(8));
    key(history, u"Newest data\tF9"_s, keys::F(9));
    toggle(history, u"Trails of every aircraft\tT"_s, d.ShowTrails, keys::Letter('T'));
    QMenu* views = menu.addMenu(u"Views"_s);
    for (int k = 1; k <= 3; ++k)
        key(views, u"Restore view %1\t%1"_s.arg(k), keys::Digit(k));
    for (int k = 1; k <= 3; ++k)
        key(views, u"Store view %1\tShift+%1"_s.arg(k), keys::Digit(k), keys::kShift);
    key(&menu, u"Centre on myself\t4"_s, keys::Digit(4));
    key(&menu, u"Companion\tSpace"_s, keys::kSpace);
    menu.addAction(u"Search...\tCtrl+F"_s, this, [this] { OpenSearch(); });
    menu.addAction(u"Statistics...\tCtrl+T"_s, this, [this] { Statistics().ShowTraffic(); });
    menu.addAction(u"Preferences...\tCtrl+,"_s, this, [this] { OpenPreferences(); });
    menu.addSeparator();
    menu.addAction(u"Exit"_s, this, [this] { close(); });
    menu.exec(event->globalPos());
}

} // namespace sky::ui
