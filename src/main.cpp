#include <cstdio>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include "app/colour_theme.h"
#include "app/friends.h"
#include "app/home_folder.h"
#include "app/settings.h"

using namespace Qt::StringLiterals;

namespace {

void Print(std::FILE* stream, const QString& text) {
    const QByteArray bytes = text.toLocal8Bit() + '\n';
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stream);
}

} // namespace

int main(int argc, char* argv[]) {
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(u"Skylantra"_s);
    QCoreApplication::setApplicationVersion(QStringLiteral(SKYLANTRA_VERSION));

    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Skylantra shows the live traffic of the IVAO and VATSIM flight-simulation networks on a globe."_s);
    const QCommandLineOption homeOption(
        u"home"_s, u"Read data, colour themes and skln.ini from DIR instead of the program's folder."_s,
        u"DIR"_s);
    const QCommandLineOption helpOption(QStringList{u"h"_s, u"help"_s}, u"Show this help and exit."_s);
    const QCommandLineOption versionOption(u"version"_s, u"Show the version and exit."_s);
    parser.addOption(homeOption);
    parser.addOption(helpOption);
    parser.addOption(versionOption);
    if (!parser.parse(QCoreApplication::arguments())) {
        Print(stderr, parser.errorText() + u"\nTry skylantra --help."_s);
        return 2;
    }
    if (parser.isSet(helpOption)) {
        Print(stdout,
              parser.helpText().trimmed() +
                  u"\n\nThe home folder can also be set with the SKYLANTRA_HOME environment variable."_s);
        return 0;
    }
    if (parser.isSet(versionOption)) {
        Print(stdout, u"Skylantra "_s + QCoreApplication::applicationVersion());
        return 0;
    }

    const QString home =
        sky::ResolveHomeFolder(parser.value(homeOption), qEnvironmentVariable("SKYLANTRA_HOME"),
                               QCoreApplication::applicationDirPath());
    if (!QFileInfo(home).isDir()) {
        Print(stderr, u"Skylantra: the home folder "_s + home + u" does not exist."_s);
        return 1;
    }
    sky::Friends friends;
    const sky::Settings settings = sky::LoadSettings(home, sky::ScreenMetrics{}, friends);
    const QString themePath = QDir(home).filePath(u"colours/"_s + settings.ColourTheme);
    Print(stdout, u"Skylantra "_s + QCoreApplication::applicationVersion());
    Print(stdout, u"Home folder: "_s + home);
    Print(stdout,
          u"Settings:    "_s + sky::SettingsPath(home) +
              (QFileInfo::exists(sky::SettingsPath(home)) ? QString() : u" (not yet written: defaults)"_s));
    Print(stdout, u"Theme:       "_s + themePath +
                      (QFileInfo::exists(themePath) ? QString() : u" (missing: built-in colours)"_s));
    Print(stdout, u"Friends:     "_s + QString::number(friends.Count()));
    Print(stdout, u"The map window is not part of this build yet."_s);
    return 0;
}
