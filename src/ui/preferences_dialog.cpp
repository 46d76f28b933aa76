#include "preferences_dialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPainter>
#include <QRegularExpressionValidator>
#include <QSpinBox>
#include <QVBoxLayout>

#include "app/colour_theme.h"
#include "app/ini_file.h"

using namespace Qt::StringLiterals;

namespace sky::ui {

// A small map in a theme's colours: background, globe, coastline, a sector, an aircraft and labels.
class ThemePreview final : public QWidget {
public:
    explicit ThemePreview(QWidget* parent) : QWidget(parent) { setMinimumSize(220, 110); }
    void Show(const ColourTable& colours) {
        m_colours = colours;
        update();
    }

protected:
    void paintEvent(QPaintEvent*) override {
        const auto colour = [this](int slot) {
            return QColor::fromRgbF(m_colours.Red[slot], m_colours.Green[slot], m_colours.Blue[slot]);
        };
        QPainter p(this);
        p.setRenderHint(QPainter::Antialiasing);
        p.fillRect(rect(), colour(kSlotScreenBackground));
        const QRectF globe(10, 8, 200, 200);
        QRadialGradient shade(globe.center(), 100);
        shade.setColorAt(0, colour(kSlotGlobeEquator));
        shade.setColorAt(1, colour(kSlotGlobePoles));
        p.setBrush(shade);
        p.setPen(QPen(colour(kSlotCoastEquator), 2));
        p.drawEllipse(globe);
        QColor fill = colour(kSlotCTRFill);
        fill.setAlphaF(0.5);
        p.setBrush(fill);
        p.setPen(QPen(colour(kSlotCTRBorder), 2));
        p.drawPolygon(QPolygonF({{40, 40}, {110, 30}, {120, 80}, {50, 95}}));
        p.setPen(colour(kSlotATCLabel));
        p.drawText(QPointF(55, 62), u"EDGG_CTR"_s);
        p.setBrush(colour(kSlotPlaneFill));
        p.setPen(QPen(colour(kSlotPlaneBorder), 1));
        p.drawPolygon(QPolygonF({{150, 50},
                                 {154, 60},
                                 {166, 64},
                                 {154, 66},
                                 {152, 76},
                                 {148, 76},
                                 {146, 66},
                                 {134, 64},
                                 {146, 60}}));
        p.setPen(colour(kSlotPlaneLabel));
        p.drawText(QPointF(170, 66), u"DLH1"_s);
    }

private:
    ColourTable m_colours = DefaultColourTable();
};

namespace {

QSpinBox* Spin(int low, int high, int value, const QString& suffix = {}) {
    auto* spin = new QSpinBox;
    spin->setRange(low, high);
    spin->setValue(value);
    spin->setSuffix(suffix);
    return spin;
}

QCheckBox* Check(const QString& text, bool on) {
    auto* check = new QCheckBox(text);
    check->setChecked(on);
    return check;
}

// The themes there are: the shipped ones and any in the home folder, each once.
QStringList Themes(const Folders& folders) {
    QStringList names;
    for (const QString& root : {folders.Shipped, folders.Home})
        names += QDir(QDir(root).filePath(u"colours"_s)).entryList({u"*.dc"_s}, QDir::Files);
    names.removeDuplicates();
    names.sort(Qt::CaseInsensitive);
    return names;
}

} // namespace

PreferencesDialog::PreferencesDialog(const Settings& current, const Folders& folders,
                                     std::function<void(const Settings&)> apply, QWidget* parent)
    : QDialog(parent), m_current(current), m_folders(folders), m_apply(std::move(apply)) {
    setWindowTitle(u"Skylantra Preferences"_s);
    const auto* digits = new QRegularExpressionValidator(QRegularExpression(u"[0-9]{0,10}"_s), this);
    m_ivao = new QLineEdit(current.IVAO_ID);
    m_ivao->setValidator(digits);
    m_vatsim = new QLineEdit(current.VATSIM_ID);
    m_vatsim->setValidator(digits);
    m_theme = new QComboBox;
    m_theme->addItems(Themes(folders));
    if (m_theme->findText(current.ColourTheme) < 0)
        m_theme->addItem(current.ColourTheme);
    m_theme->setCurrentText(current.ColourTheme);
    m_preview = new ThemePreview(this);
    const auto preview = [this](const QString& theme) {
        m_preview->Show(LoadColourTheme(m_folders.Holding(u"colours/"_s + theme), theme));
    };
    connect(m_theme, &QComboBox::currentTextChanged, this, preview);
    preview(current.ColourTheme);
    m_smooth = Check(u"Smooth lines"_s, !current.DisableSmooth);
    m_countries = Check(u"Country borders (from the next start)"_s, !current.DisableCountries);
    m_declutter = Check(u"Leave out labels that would overlap (D)"_s, current.DeclutterLabels);
    m_autoDownload = Check(u"Download the shown network automatically"_s, current.AutoDownload);
    m_minutes = Spin(3, 30, current.DownloadMinutes, u" min"_s);
    m_timeout = Spin(5, 120, current.Timeout, u" s"_s);
    m_weather = new QLineEdit(current.WeatherServer);
    m_maxPilots = Spin(1400, 30000, current.MaxPilots);
    m_maxControllers = Spin(700, 30000, current.MaxControllers);

    auto* you = new QGroupBox(u"Your member numbers"_s);
    auto* youForm = new QFormLayout(you);
    youForm->addRow(u"IVAO:"_s, m_ivao);
    youForm->addRow(u"VATSIM:"_s, m_vatsim);
    auto* map = new QGroupBox(u"Map"_s);
    auto* mapForm = new QFormLayout(map);
    mapForm->addRow(u"Colour theme:"_s, m_theme);
    mapForm->addRow(QString(), m_preview);
    mapForm->addRow(
        QString(),
        new QLabel(u"The globe, grid, coastlines and borders take a new theme at the next start."_s));
    mapForm->addRow(QString(), m_smooth);
    mapForm->addRow(QString(), m_countries);
    mapForm->addRow(QString(), m_declutter);
    auto* network = new QGroupBox(u"Network"_s);
    auto* networkForm = new QFormLayout(network);
    networkForm->addRow(QString(), m_autoDownload);
    networkForm->addRow(u"Every:"_s, m_minutes);
    networkForm->addRow(u"Time-out:"_s, m_timeout);
    networkForm->addRow(u"Weather server:"_s, m_weather);
    networkForm->addRow(u"Most pilots kept:"_s, m_maxPilots);
    networkForm->addRow(u"Most controllers kept:"_s, m_maxControllers);
    auto* proxy = new QLabel(
        u"Proxy: %1    TextForce: %2\nThese are edited by hand in skln.ini ([Network] Proxy=host:port, "
        u"TextForce=1); the program reads them but never writes them."_s.arg(
            current.Proxy.size() >= 2 ? current.Proxy.left(80) : u"the system's"_s,
            current.TextForce ? u"on"_s : u"off"_s));
    proxy->setTextFormat(Qt::PlainText);
    proxy->setWordWrap(true);
    networkForm->addRow(proxy);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::accepted, this, [this] { Accept(); });
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    for (QWidget* w : {static_cast<QWidget*>(you), static_cast<QWidget*>(map), static_cast<QWidget*>(network),
                       static_cast<QWidget*>(buttons)})
        layout->addWidget(w);
}

Settings PreferencesDialog::Chosen() const {
    Settings s = m_current;
    s.IVAO_ID = m_ivao->text().isEmpty() ? m_current.IVAO_ID : m_ivao->text();
    s.VATSIM_ID = m_vatsim->text().isEmpty() ? m_current.VATSIM_ID : m_vatsim->text();
    s.ColourTheme = m_theme->currentText();
    s.DisableSmooth = !m_smooth->isChecked();
    s.DisableCountries = !m_countries->isChecked();
    s.DeclutterLabels = m_declutter->isChecked();
    s.AutoDownload = m_autoDownload->isChecked();
    s.DownloadMinutes = std::int16_t(m_minutes->value());
    s.Timeout = std::int16_t(m_timeout->value());
    s.WeatherServer =
        m_weather->text().trimmed().isEmpty() ? m_current.WeatherServer : m_weather->text().trimmed();
    s.MaxPilots = std::int16_t(m_maxPilots->value());
    s.MaxControllers = std::int16_t(m_maxControllers->value());
    return s;
}

void PreferencesDialog::Accept() {
    const Settings chosen = Chosen();
    m_apply(chosen);
    IniFile ini = IniFile::Load(SettingsPath(m_folders.Home));
    WriteChangedPreferences(m_current, chosen, ini);
    const WriteResult written = ini.Save(SettingsPath(m_folders.Home));
    if (!written.Ok) {
        QMessageBox box(QMessageBox::Warning, u"Skylantra"_s, written.Message, QMessageBox::Ok, this);
        box.setTextFormat(Qt::PlainText);
        box.exec();
    }
    accept();
}

} // namespace sky::ui
