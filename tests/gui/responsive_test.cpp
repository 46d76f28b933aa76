#include <QTcpServer>

#include "gui_fixture.h"

using namespace Qt::StringLiterals;

// The map while a download hangs: a server that accepts and never answers.
namespace {

using namespace sky::gui;

// How many pixels of the map differ between two grabs.
int Changed(const QImage& a, const QImage& b) {
    int changed = 0;
    for (int y = 40; y < std::min(a.height(), b.height()) - 40; y += 2)
        for (int x = 10; x < std::min(a.width(), b.width()) - 10; x += 2)
            changed += !Near(a.pixel(x, y), b.pixel(x, y), 8);
    return changed;
}

TEST_F(Gui, TheGlobeTurnsAndZoomsWhileAFetchHangs) {
    QTcpServer silent; // listens, so connections are made, and never answers
    ASSERT_TRUE(silent.listen(QHostAddress::LocalHost, 0));
    Write(u"skln.ini"_s, "[Network]\nTimeout=12\n");
    QProcess program;
    QElapsedTimer started;
    started.start();
    const QString window =
        Start(program, {u"--ivao-status"_s, u"http://127.0.0.1:%1/status.txt"_s.arg(silent.serverPort()),
                        u"--download"_s, u"ivao"_s});
    ASSERT_FALSE(window.isEmpty());
    const QImage waiting = Grab(window);
    Xdotool({u"mousemove"_s, u"--window"_s, window, u"300"_s, u"300"_s, u"mousedown"_s, u"1"_s});
    for (int x : {350, 400, 450, 500})
        Xdotool({u"mousemove"_s, u"--window"_s, window, QString::number(x), u"320"_s});
    Xdotool({u"mouseup"_s, u"1"_s});
    QThread::msleep(400);
    const QImage turned = Grab(window);
    EXPECT_GT(Changed(waiting, turned), 5000) << "the drag did not turn the globe";
    Xdotool({u"click"_s, u"--repeat"_s, u"4"_s, u"--delay"_s, u"50"_s, u"4"_s});
    QThread::msleep(400);
    const QImage zoomed = Grab(window);
    EXPECT_GT(Changed(turned, zoomed), 5000) << "the wheel did not zoom";
    // All of it happened while the fetch waited for its twelve-second time-out.
    EXPECT_LT(started.elapsed(), 11000);
    ASSERT_TRUE(CloseAndWait(program, window));
}

} // namespace
