#include "filter_bar.h"

#include <QHBoxLayout>
#include <QInputDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QToolButton>
#include <QVBoxLayout>

#include "filter/traffic_filter.h"
#include "view/map_session.h"

using namespace Qt::StringLiterals;

namespace sky::ui {
namespace {

constexpr int kTypingPauseMs = 350;

struct Switch {
    const char16_t* Label;
    const char16_t* Term;
};
constexpr Switch kSwitches[] = {{u"Air", u"airborne"}, {u"Ground", u"ground"}, {u"CTR", u"atc:ctr"},
                                {u"APP", u"atc:app"},  {u"TWR", u"atc:twr"},   {u"GND", u"atc:gnd"},
                                {u"DEL", u"atc:del"},  {u"ATIS", u"atc:atis"}, {u"Friends", u"friends"}};

// Whether a switch's term is in force in a parsed filter.
bool IsOn(const filter::ParsedFilter& parsed, const QString& term) {
    const filter::TrafficFilter& f = parsed.Filter;
    if (term == u"airborne")
        return f.Position == filter::Where::Airborne;
    if (term == u"ground")
        return f.Position == filter::Where::OnGround;
    if (term == u"friends")
        return parsed.FriendsOnly;
    const unsigned bit = filter::ParseFilter(term).Filter.Stations;
    return f.Stations != filter::kAllStations && (f.Stations & bit) != 0;
}

} // namespace

FilterBar::FilterBar(view::MapSession& session, std::function<void(const std::function<void()>&)> runOnMap,
                     std::function<void(const QString&)> report, QWidget* parent)
    : QWidget(parent), m_session(session), m_runOnMap(std::move(runOnMap)), m_report(std::move(report)),
      m_input(new QLineEdit(this)), m_saved(new QToolButton(this)) {
    m_input->setPlaceholderText(u"DLH EWG  type:A320  from:EDDF  to:KJFK  FL100-FL300  (Enter, Esc)"_s);
    m_input->setClearButtonEnabled(true);
    m_input->installEventFilter(this);
    m_saved->setText(u"Saved"_s);
    m_saved->setPopupMode(QToolButton::InstantPopup);
    m_saved->setFocusPolicy(Qt::NoFocus);
    auto* savedMenu = new QMenu(m_saved);
    m_saved->setMenu(savedMenu);
    connect(savedMenu, &QMenu::aboutToShow, this, [this, savedMenu] {
        savedMenu->clear();
        FillSavedMenu(savedMenu);
    });
    auto* top = new QHBoxLayout;
    top->setSpacing(2);
    top->addWidget(m_input, 1);
    top->addWidget(m_saved);
    auto* switches = new QHBoxLayout;
    switches->setSpacing(2);
    for (const Switch& s : kSwitches) {
        auto* button = new QToolButton(this);
        button->setText(QString::fromUtf16(s.Label));
        button->setCheckable(true);
        button->setFocusPolicy(Qt::NoFocus);
        const QString term = QString::fromUtf16(s.Term);
        connect(button, &QToolButton::clicked, this, [this, term] { Toggle(term); });
        m_switches.emplace_back(term, button);
        switches->addWidget(button);
    }
    switches->addStretch(1);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(1);
    layout->addLayout(top);
    layout->addLayout(switches);
    m_typed.setSingleShot(true);
    m_typed.setInterval(kTypingPauseMs);
    connect(&m_typed, &QTimer::timeout, this, [this] { Apply(); });
    connect(m_input, &QLineEdit::textEdited, this, [this] { m_typed.start(); });
    // The clear button empties the text without an edit of the user's own.
    connect(m_input, &QLineEdit::textChanged, this, [this](const QString& text) {
        if (text.isEmpty() && !m_typed.isActive())
            m_typed.start();
    });
    setAutoFillBackground(true);
    hide();
}

void FilterBar::Open() {
    const int width = std::min(600, parentWidget()->width() - 100);
    setGeometry(70, 24, std::max(300, width), sizeHint().height());
    Refresh();
    show();
    raise();
    m_input->setFocus();
    m_input->selectAll();
}

void FilterBar::Close() {
    if (m_typed.isActive()) {
        m_typed.stop();
        Apply();
    }
    hide();
    parentWidget()->setFocus();
}

void FilterBar::Refresh() {
    if (!m_typed.isActive() && !m_input->hasFocus())
        m_input->setText(m_session.Filters().Text());
    const filter::ParsedFilter parsed = filter::ParseFilter(m_session.Filters().Text());
    for (auto& [term, button] : m_switches)
        button->setChecked(IsOn(parsed, term));
}

void FilterBar::Apply() {
    m_typed.stop();
    QStringList problems;
    m_runOnMap([&] { problems = m_session.Filters().Apply(m_input->text()); });
    ShowProblems(problems);
    Refresh();
}

void FilterBar::ShowProblems(const QStringList& problems) {
    m_input->setToolTip(problems.isEmpty() ? QString() : u"Not understood: "_s + problems.join(u", "_s));
    QPalette palette = m_input->palette();
    palette.setColor(QPalette::Text, problems.isEmpty() ? QPalette().color(QPalette::Text) : QColor(Qt::red));
    m_input->setPalette(palette);
}

void FilterBar::Toggle(const QString& term) {
    filter::ParsedFilter parsed = filter::ParseFilter(m_input->text());
    filter::TrafficFilter& f = parsed.Filter;
    if (term == u"airborne" || term == u"ground") {
        const filter::Where where = term == u"airborne" ? filter::Where::Airborne : filter::Where::OnGround;
        f.Position = f.Position == where ? filter::Where::Both : where;
    } else if (term == u"friends") {
        parsed.FriendsOnly = !parsed.FriendsOnly;
    } else {
        const unsigned bit = filter::ParseFilter(term).Filter.Stations;
        // From every kind shown, a switch turned on shows its kind alone.
        f.Stations = f.Stations == filter::kAllStations ? bit : f.Stations ^ bit;
        if ((f.Stations | filter::kObserver) == filter::kAllStations || f.Stations == 0)
            f.Stations = filter::kAllStations;
    }
    m_input->setText(filter::FilterText(f, parsed.FriendsOnly));
    Apply();
}

void FilterBar::FillSavedMenu(QMenu* menu) {
    const KeyedLines& saved = m_session.Filters().Saved();
    for (const auto& [name, text] : saved.Entries()) {
        QAction* pick = menu->addAction(name, this, [this, name = name] {
            m_runOnMap([&] { m_session.Filters().Pick(name); });
            Refresh();
        });
        pick->setToolTip(text);
    }
    if (!saved.IsEmpty())
        menu->addSeparator();
    QAction* save = menu->addAction(u"Save current filter..."_s, this, [this] {
        bool ok = false;
        const QString name = QInputDialog::getText(
            parentWidget(), u"Save filter"_s, u"Name for the filter "_s + m_session.Filters().Text() + u':',
            QLineEdit::Normal, QString(), &ok);
        if (ok && !name.trimmed().isEmpty())
            m_runOnMap([&] {
                const WriteResult result = m_session.Filters().Save(name);
                if (!result.Ok)
                    m_report(result.Message);
            });
    });
    save->setEnabled(!m_session.Filters().Text().isEmpty());
    if (saved.IsEmpty())
        return;
    QMenu* forget = menu->addMenu(u"Forget"_s);
    for (const auto& [name, text] : saved.Entries())
        forget->addAction(name, this, [this, name = name] {
            m_runOnMap([&] {
                const WriteResult result = m_session.Filters().Forget(name);
                if (!result.Ok)
                    m_report(result.Message);
            });
        });
}

bool FilterBar::eventFilter(QObject* watched, QEvent* event) {
    if (watched != m_input || event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    const auto* key = static_cast<QKeyEvent*>(event);
    switch (key->key()) {
    case Qt::Key_Escape:
        Close();
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        Apply();
        return true;
    default:
        return QWidget::eventFilter(watched, event);
    }
}

} // namespace sky::ui
