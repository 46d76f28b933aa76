#include "map_window.h"

#include <QInputDialog>
#include <QMouseEvent>

#include "app/friend_names.h"
#include "app/window_geometry.h"
#include "view/keys.h"

using namespace Qt::StringLiterals;

// The map window's tools beside the plain keys and mouse: the measuring drag, the filters' menu and the
// naming of friends.
namespace sky::ui {

bool MapWindow::MeasurePress(QMouseEvent* event) {
    const QPoint p = event->position().toPoint();
    const bool shiftLeft = event->button() == Qt::LeftButton && (event->modifiers() & Qt::ShiftModifier);
    if (!m_started || (event->button() != Qt::MiddleButton && !shiftLeft) ||
        ResizeEdgesAt(p.x(), p.y(), width(), height(), m_maximised) != kResizeNone ||
        TitleStripZone(p.x(), p.y(), width()) != TitleZone::None)
        return false;
    m_measureButton = event->button();
    m_measuring = false;
    m_measureFrom = p;
    return true;
}

bool MapWindow::MeasureMove(QMouseEvent* event) {
    if (m_measureButton == Qt::NoButton || !(event->buttons() & m_measureButton))
        return false;
    const QPoint p = event->position().toPoint();
    if (!m_measuring && (p - m_measureFrom).manhattanLength() < 4)
        return true;
    makeCurrent();
    if (!m_measuring) {
        m_measuring = m_session->Measurer().Begin(m_measureFrom.x(), m_measureFrom.y());
        if (!m_measuring) {
            m_measureButton = Qt::NoButton; // it began beside the globe: nothing to measure
            return true;
        }
    }
    m_session->Measurer().Follow(p.x(), p.y());
    return true;
}

bool MapWindow::MeasureRelease(QMouseEvent* event) {
    if (m_measureButton == Qt::NoButton || event->button() != m_measureButton)
        return false;
    const bool moved = m_measuring;
    m_measureButton = Qt::NoButton;
    m_measuring = false;
    if (moved)
        return true;
    // A click without a drag: Shift+click is a click; the middle button clears the line.
    const QPoint p = event->position().toPoint();
    makeCurrent();
    if (event->button() == Qt::LeftButton)
        m_session->Pointer().Click(p.x(), p.y());
    else
        m_session->Measurer().Clear();
    return true;
}

void MapWindow::AddFilterMenu(QMenu& menu) {
    QMenu* filters = menu.addMenu(u"Filters"_s);
    filters->addAction(u"Filter bar...\tCtrl+Shift+F"_s, this, [this] { OpenFilters(); });
    QAction* clear =
        filters->addAction(u"Clear filters\tX"_s, this, [this] { RunKey(view::keys::Letter('X'), 0); });
    clear->setEnabled(!m_session->Filters().Text().isEmpty());
    filters->addSeparator();
    m_filterBar->FillSavedMenu(filters);
}

void MapWindow::AskFriendName(const QString& member) {
    bool ok = false;
    const QString name = QInputDialog::getText(
        this, u"Friend's name"_s,
        u"Your name for member %1 (at most %2 characters; empty: none):"_s.arg(member).arg(kFriendNameChars),
        QLineEdit::Normal, m_session->FriendName(member), &ok);
    if (!ok)
        return;
    makeCurrent();
    m_session->NameFriend(member, name);
}

bool MapWindow::FriendMenu(const QPoint& at, const QPoint& global) {
    const view::PanelState& panels = m_session->Panels();
    const view::PanelHit hit =
        view::HitTestPanels(render::LayoutPanels(width(), height()), panels, at.x(), at.y());
    QString member;
    bool infoBox = false;
    if (hit.Kind == view::PanelHitKind::Friend || hit.Kind == view::PanelHitKind::InfoBox ||
        hit.Kind == view::PanelHitKind::InfoLine) {
        member = network::Summarise(m_session->Tables(), *panels.InfoClient).VID;
        infoBox = true;
    } else if ((hit.Kind == view::PanelHitKind::Row || hit.Kind == view::PanelHitKind::Go) &&
               panels.ListOpen && panels.Page == view::ListPage::Friends) {
        member = m_session->PanelController().ShownTable().RowMembers.value(hit.Index);
    }
    if (member.isEmpty())
        return false;
    QMenu menu(this);
    const bool isFriend = m_session->FriendList().Contains(member);
    if (infoBox)
        menu.addAction(isFriend ? u"Remove from friends"_s : u"Add to friends"_s, this, [this] {
            makeCurrent();
            m_session->PanelController().ToggleInfoClientFriend();
        });
    QAction* name =
        menu.addAction(u"Name member %1..."_s.arg(member), this, [this, member] { AskFriendName(member); });
    name->setEnabled(isFriend);
    menu.exec(global);
    return true;
}

} // namespace sky::ui
