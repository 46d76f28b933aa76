#include "search_field.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QVBoxLayout>

#include "view/map_session.h"

using namespace Qt::StringLiterals;

namespace sky::ui {

SearchField::SearchField(view::MapSession& session, std::function<void(const std::function<void()>&)> runOnMap,
                         QWidget* parent)
    : QWidget(parent), m_session(session), m_runOnMap(std::move(runOnMap)), m_input(new QLineEdit(this)),
      m_results(new QListWidget(this)) {
    m_input->setPlaceholderText(u"Callsign, member, name, airport or FIR"_s);
    m_input->installEventFilter(this);
    m_results->setFocusPolicy(Qt::NoFocus);
    m_results->setUniformItemSizes(true);
    m_results->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_results->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_results->setTextElideMode(Qt::ElideRight);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_input);
    layout->addWidget(m_results);
    connect(m_input, &QLineEdit::textEdited, this, [this](const QString& text) { Update(text); });
    connect(m_results, &QListWidget::itemClicked, this, [this](QListWidgetItem* item) { Choose(m_results->row(item)); });
    hide();
}

void SearchField::Open() {
    const int width = std::min(440, parentWidget()->width() - 100);
    setGeometry(70, 24, std::max(200, width), 24);
    show();
    raise();
    m_input->setFocus();
    m_input->selectAll();
    Update(m_input->text());
}

void SearchField::Close() {
    hide();
    m_runOnMap([this] { m_session.Search(QString()); }); // the list shows all its rows again
    parentWidget()->setFocus();
}

void SearchField::Update(const QString& text) {
    m_runOnMap([&] { m_found = m_session.Search(text); });
    m_results->clear();
    const ColourTable& colours = m_session.Colours();
    for (const search::SearchResult& r : m_found) {
        auto* item = new QListWidgetItem(r.Text, m_results);
        if (r.Network == 0 || r.Network == 1)
            item->setForeground(QColor::fromRgbF(colours.Red[r.Network], colours.Green[r.Network], colours.Blue[r.Network]));
    }
    m_results->setCurrentRow(m_found.empty() ? -1 : 0);
    const int rows = int(m_found.size());
    m_results->setVisible(rows > 0);
    const int rowHeight = rows > 0 ? m_results->sizeHintForRow(0) : 0;
    resize(width(), m_input->sizeHint().height() + (rows > 0 ? rows * rowHeight + 2 * m_results->frameWidth() : 0));
}

void SearchField::Choose(int row) {
    if (row < 0 || row >= int(m_found.size()))
        return;
    const search::SearchResult chosen = m_found[size_t(row)];
    hide();
    parentWidget()->setFocus();
    m_runOnMap([&] { m_session.ChooseSearchResult(chosen); });
}

bool SearchField::eventFilter(QObject* watched, QEvent* event) {
    if (watched != m_input || event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    const auto* key = static_cast<QKeyEvent*>(event);
    const int current = m_results->currentRow(), count = m_results->count();
    switch (key->key()) {
    case Qt::Key_Escape:
        Close();
        return true;
    case Qt::Key_Down:
        m_results->setCurrentRow(count == 0 ? -1 : std::min(current + 1, count - 1));
        return true;
    case Qt::Key_Up:
        m_results->setCurrentRow(count == 0 ? -1 : std::max(current - 1, 0));
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        Choose(current);
        return true;
    default:
        return QWidget::eventFilter(watched, event);
    }
}

} // namespace sky::ui
