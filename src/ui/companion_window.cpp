#include "companion_window.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScrollBar>

#include "view/map_session.h"

using namespace Qt::StringLiterals;

namespace sky::ui {
namespace {

QString PlainLines(QString text) {
    return text.replace(u"\r\n"_s, u"\n"_s);
}

} // namespace

CompanionWindow::CompanionWindow(view::MapSession& session, std::function<bool(const QString&)> runCommand)
    : QWidget(nullptr, Qt::Tool | Qt::WindowStaysOnTopHint), m_session(session),
      m_runCommand(std::move(runCommand)), m_response(new QPlainTextEdit(this)),
      m_input(new QLineEdit(this)) {
    setWindowTitle(u"Skylantra Companion"_s);
    resize(258, 268);
    QFont font(u"Liberation Sans"_s);
    font.setPointSizeF(8.25);
    m_response->setFont(font);
    m_response->setReadOnly(true);
    m_response->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    m_response->setStyleSheet(u"QPlainTextEdit { background: white; color: black; }"_s);
    m_input->setStyleSheet(u"QLineEdit { background: #E0E0E0; color: black; }"_s);
    m_input->installEventFilter(this);
    // The pane shows what the console holds, and grows with every line the console appends.
    m_response->setPlainText(PlainLines(m_session.Companion().PaneText()));
    m_session.Companion().SetSink([this](const QString& text) { Append(text); });
    ArrangeControls();
}

void CompanionWindow::Append(const QString& text) {
    m_response->appendPlainText(PlainLines(text));
    m_response->verticalScrollBar()->setValue(m_response->verticalScrollBar()->maximum());
}

void CompanionWindow::ShowBeside(const QRect& map) {
    if (!isVisible())
        move(map.left() + 8, map.top() + map.height() - height() - 8);
    show();
    raise();
    activateWindow();
    QCoreApplication::processEvents();
    m_input->setFocus();
}

void CompanionWindow::ArrangeControls() {
    const int inputHeight = m_input->sizeHint().height();
    m_response->setGeometry(0, 0, width(),
                            height() > inputHeight ? height() - inputHeight : m_response->height());
    m_input->setGeometry(0, m_response->height(), width(), inputHeight);
}

void CompanionWindow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    ArrangeControls();
}

void CompanionWindow::closeEvent(QCloseEvent* event) {
    // Closing only hides the window; its text and last command stay.
    event->ignore();
    hide();
}

bool CompanionWindow::eventFilter(QObject* watched, QEvent* event) {
    if (watched != m_input || event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    const auto* key = static_cast<QKeyEvent*>(event);
    if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
        m_input->setReadOnly(true);
        m_runCommand(m_input->text());
        QCoreApplication::processEvents();
        m_input->clear();
        m_input->setReadOnly(false);
        return true;
    }
    if (key->key() == Qt::Key_Up && !m_session.Companion().LastCommand().isEmpty()) {
        m_input->setText(m_session.Companion().LastCommand());
        m_input->end(false);
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace sky::ui
