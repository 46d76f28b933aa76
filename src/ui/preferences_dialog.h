#pragma once

#include <functional>

#include <QDialog>

#include "app/home_folder.h"
#include "app/settings.h"

class QCheckBox;
class QComboBox;
class QLineEdit;
class QSpinBox;

namespace sky::ui {

class ThemePreview;

// The Preferences: what a user changes of skln.ini without editing it. OK hands the changed settings
// to apply (the map takes them at once) and writes the changed keys into skln.ini through the INI
// module, keeping every other line. Proxy and TextForce, which the program never writes, are shown
// with a note on editing them by hand.
class PreferencesDialog final : public QDialog {
public:
    PreferencesDialog(const Settings& current, const Folders& folders,
                      std::function<void(const Settings&)> apply, QWidget* parent = nullptr);

    // The settings as the dialog's fields say.
    Settings Chosen() const;

private:
    void Accept();

    Settings m_current;
    Folders m_folders;
    std::function<void(const Settings&)> m_apply;
    QLineEdit* m_ivao;
    QLineEdit* m_vatsim;
    QComboBox* m_theme;
    ThemePreview* m_preview;
    QCheckBox* m_smooth;
    QCheckBox* m_countries;
    QCheckBox* m_autoDownload;
    QSpinBox* m_minutes;
    QSpinBox* m_timeout;
    QLineEdit* m_weather;
    QSpinBox* m_maxPilots;
    QSpinBox* m_maxControllers;
    QCheckBox* m_declutter;
};

} // namespace sky::ui
