#pragma once

#include <map>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QScreen>
#include <QImage>
#include <QPixmap>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>
#include <QUrl>

#include <gtest/gtest.h>

#include "app/ini_file.h"
#include "common/file_io.h"
#include "network/whazzup_lines.h"

// The real program in a real window: run under an X server (xvfb-run), with a copy of the build's home
// folder, so nothing a test does touches the build.
namespace sky::gui {

using namespace Qt::StringLiterals;

inline const QString kBuild = QStringLiteral(SKYLANTRA_BINARY_DIR);

// True when p is within tolerance of colour in each channel.
inline bool Near(QRgb p, QRgb colour, int tolerance) {
    return std::abs(qRed(p) - qRed(colour)) <= tolerance &&
           std::abs(qGreen(p) - qGreen(colour)) <= tolerance &&
           std::abs(qBlue(p) - qBlue(colour)) <= tolerance;
}

// Counts the pixels of an area (the whole image by default) within a few units of colour.
inline int CountNear(const QImage& image, QRgb colour, int tolerance = 12, QRect area = {}) {
    if (area.isNull())
        area = image.rect();
    area &= image.rect();
    int count = 0;
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x)
            count += Near(image.pixel(x, y), colour, tolerance) ? 1 : 0;
    return count;
}

// The smallest rectangle holding every pixel near colour, or a null rectangle.
inline QRect BoundsOf(const QImage& image, QRgb colour, int tolerance, QRect area = {}) {
    if (area.isNull())
        area = image.rect();
    QRect bounds;
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x)
            if (Near(image.pixel(x, y), colour, tolerance))
                bounds |= QRect(x, y, 1, 1);
    return bounds;
}

// Where a client's info box opens in a window of 800 by 600, and how much of an area is the opaque
// black of a box or card.
inline const QRect kInfoBox(492, 62, 296, 300);
inline int BlackIn(const QImage& image, const QRect& area) {
    return CountNear(image, qRgb(0, 0, 0), 2, area);
}

// An IVAO pilot cruising east at FL350 and 450 knots at this place; more fields as given ("11=EDDF|...").
inline QString CruisingPilot(const QString& callsign, double lat, double lon, const QString& more = {}) {
    const QString place = u"5=%1|6=%2|"_s.arg(QString::number(lat, 'f', 5), QString::number(lon, 'f', 5));
    return network::testing::PilotLine(0, u"0=%1|1=200001|2=Test Pilot|7=35000|8=450|45=90|"_s.arg(callsign) +
                                              place + more);
}

class Gui : public ::testing::Test {
public:
    void SetUp() override {
        ASSERT_TRUE(m_home.isValid());
        ASSERT_EQ(
            QProcess::execute(u"cp"_s, {u"-r"_s, kBuild + u"/data"_s, kBuild + u"/colours"_s, m_home.path()}),
            0);
        if (qEnvironmentVariableIsEmpty("DISPLAY"))
            GTEST_SKIP() << "no X display: run under xvfb-run";
        // The night side follows the clock: off, so what the tests read does not depend on the hour.
        Write(u"skln.ini"_s, "[Map]\nShowNight=0\n");
    }

    // Runs the program to its end with these arguments and environment variables ("NAME=value") and a
    // snapshot of its first frame; the snapshot, and what it printed in printed when asked.
    QImage Snapshot(const QStringList& arguments, const QStringList& environment = {},
                    QString* printed = nullptr) {
        const QString path = m_home.filePath(u"shot.png"_s);
        QFile::remove(path);
        QProcess process;
        process.setProcessChannelMode(printed ? QProcess::ForwardedErrorChannel
                                              : QProcess::ForwardedChannels);
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        for (const QString& pair : environment)
            env.insert(pair.section(u'=', 0, 0), pair.section(u'=', 1));
        process.setProcessEnvironment(env);
        process.start(kBuild + u"/skylantra"_s, QStringList{u"--home"_s, m_home.path()} + arguments +
                                                    QStringList{u"--snapshot"_s, path});
        EXPECT_TRUE(process.waitForFinished(90000) && process.exitCode() == 0);
        if (printed)
            *printed = QString::fromUtf8(process.readAllStandardOutput());
        // SKYLANTRA_SNAPSHOT_DIR keeps every snapshot, named after its test, to be looked at.
        const QString keep = qEnvironmentVariable("SKYLANTRA_SNAPSHOT_DIR");
        if (!keep.isEmpty()) {
            const auto* test = ::testing::UnitTest::GetInstance()->current_test_info();
            QFile::copy(
                path, QDir(keep).filePath(QString::fromUtf8(test->name()) + u"-%1.png"_s.arg(++m_snapshots)));
        }
        return QImage(path);
    }

    // What the terminal Companion on this home, with these arguments, answers to this typed input.
    QString Console(const QStringList& arguments, const QByteArray& input) {
        QProcess console;
        console.start(kBuild + u"/skylantra"_s,
                      QStringList{u"--home"_s, m_home.path(), u"--console"_s} + arguments);
        console.write(input);
        console.closeWriteChannel();
        EXPECT_TRUE(console.waitForFinished(60000));
        return QString::fromUtf8(console.readAllStandardOutput());
    }

    // Values of the settings file the program wrote, the keys and the values blank-separated.
    QString Setting(const QString& section, const QString& keys) const {
        const IniFile ini = IniFile::Load(m_home.filePath(u"skln.ini"_s));
        QStringList values;
        for (const QString& key : keys.split(u' '))
            values.append(ini.Value(section, key, QString()));
        return values.join(u' ');
    }

    // Writes a file of the home folder.
    void Write(const QString& name, const QByteArray& bytes) {
        ASSERT_TRUE(WriteFileMakingFolder(m_home.filePath(name), bytes).Ok);
    }

    // A feed of its own for IVAO: a status file and a whazzup file with these client lines, of this
    // time, to be downloaded again after reload minutes; the options that download it once the map is
    // ready.
    QStringList LocalFeed(const QStringList& clientLines, const QString& update = u"20261121142300"_s,
                          int reload = 1) {
        Write(u"feed/whazzup.txt"_s, network::testing::WhazzupText(clientLines, update, reload).toUtf8());
        Write(u"feed/status.txt"_s,
              "url0=whazzup.txt\n\n\n\n\n"); // a status file has five lines or more
        return {u"--ivao-status"_s, QUrl::fromLocalFile(m_home.filePath(u"feed/status.txt"_s)).toString(),
                u"--download"_s, u"ivao"_s};
    }

    // The first window of that name that shows, waiting up to 20 seconds for it to appear.
    static QString FindWindow(const QString& name) {
        QString window;
        QElapsedTimer waited;
        waited.start();
        while (window.isEmpty() && waited.elapsed() < 20000) {
            QThread::msleep(200);
            window = Xdotool({u"search"_s, u"--onlyvisible"_s, u"--name"_s, name}).section(u'\n', 0, 0);
        }
        return window;
    }

    // Starts the program with these arguments; its map window, once it shows and is ready.
    QString Start(QProcess& program, const QStringList& arguments) {
        program.setProcessChannelMode(QProcess::ForwardedChannels);
        program.start(kBuild + u"/skylantra"_s, QStringList{u"--home"_s, m_home.path()} + arguments);
        if (!program.waitForStarted(10000))
            return {};
        const QString window = FindWindow(u"^Skylantra$"_s);
        QThread::msleep(1500); // start-up to "Ready"
        return window;
    }

    // Closes the map with the close button of its title strip and waits for the program to end.
    static bool CloseAndWait(QProcess& program, const QString& window) {
        Xdotool({u"mousemove"_s, u"--window"_s, window, QString::number(Geometry(window).width() - 5), u"8"_s,
                 u"click"_s, u"1"_s});
        return program.waitForFinished(20000) && program.exitCode() == 0;
    }

    // A click at this point of a window, and a pause for what it opens.
    static void Click(const QString& window, int x, int y, int pauseMs = 600) {
        Xdotool({u"mousemove"_s, u"--window"_s, window, QString::number(x), QString::number(y), u"click"_s,
                 u"1"_s});
        QThread::msleep(pauseMs);
    }
    // Types a text into the window that has the focus.
    static void Type(const QString& text) {
        Xdotool({u"type"_s, u"--delay"_s, u"60"_s, text});
        QThread::msleep(300);
    }

    static void Keys(const QString& window, const QStringList& keys) {
        Xdotool({u"windowfocus"_s, u"--sync"_s, window});
        for (const QString& key : keys) {
            Xdotool({u"key"_s, u"--delay"_s, u"80"_s, key});
            QThread::msleep(150);
        }
    }

    // Where a window is on the screen.
    static QRect Geometry(const QString& window) {
        std::map<QString, int> values;
        for (const QString& line : Xdotool({u"getwindowgeometry"_s, u"--shell"_s, window}).split(u'\n'))
            values[line.section(u'=', 0, 0)] = line.section(u'=', 1).toInt();
        return QRect(values[u"X"_s], values[u"Y"_s], values[u"WIDTH"_s], values[u"HEIGHT"_s]);
    }

    // What the screen shows of a window now, as the user sees it.
    static QImage Grab(const QString& window) {
        const QRect where = Geometry(window);
        QScreen* screen = QGuiApplication::primaryScreen();
        return screen ? screen->grabWindow(0, where.x(), where.y(), where.width(), where.height()).toImage()
                      : QImage();
    }

    static QString Xdotool(const QStringList& arguments) {
        QProcess process;
        process.start(u"xdotool"_s, arguments);
        process.waitForFinished(10000);
        return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
    }

    QTemporaryDir m_home;
    int m_snapshots = 0;
};

} // namespace sky::gui
