#include "gui_fixture.h"

using namespace Qt::StringLiterals;

// What the map remembers, as a user meets it: a selected aircraft's trail and filed route, kept across
// a restart.
namespace {

using namespace sky::gui;

const QRgb kIvao = qRgb(0x28, 0x8D, 0xFF);

// The pilot a little further north at each download, filed to Copenhagen.
QString Pilot(double lat) {
    return CruisingPilot(u"DLH1"_s, lat, 10, u"11=EDDF|13=EKCH|30=DCT"_s);
}

class History : public Gui {
protected:
    // Pixels of the network's colour south of the aircraft (its trail) and north of it (its route).
    static std::pair<int, int> TrailAndRoute(const QImage& shot) {
        return {CountNear(shot, kIvao, 40, QRect(380, 320, 40, 200)),
                CountNear(shot, kIvao, 40, QRect(380, 80, 60, 200))};
    }
    QStringList View() const { return {u"--view"_s, u"10,51,8"_s}; }
};

TEST_F(History, ThreeDownloadsDrawTheSelectedAircraftsTrailAndRouteAndARestartKeepsThem) {
    QProcess program;
    const QStringList feed = LocalFeed({Pilot(50.0)}, u"20261121142300"_s, 0);
    QString window = Start(program, feed + View());
    ASSERT_FALSE(window.isEmpty());
    for (double lat : {50.5, 51.0}) {
        LocalFeed({Pilot(lat)}, lat > 50.9 ? u"20261121142900"_s : u"20261121142600"_s, 0);
        Keys(window, {u"i"_s});
        QThread::msleep(1000);
    }
    Click(window, 400, 300, 500);
    const QImage shot = Grab(window);
    if (!qEnvironmentVariableIsEmpty("SKYLANTRA_SNAPSHOT_DIR"))
        shot.save(QDir(qEnvironmentVariable("SKYLANTRA_SNAPSHOT_DIR")).filePath(u"history-trail.png"_s));
    const auto [trail, route] = TrailAndRoute(shot);
    EXPECT_GT(trail, 60) << "no trail south of the aircraft";
    EXPECT_GT(route, 60) << "no route north of it";
    ASSERT_TRUE(CloseAndWait(program, window));

    // The next run downloads the aircraft where it was last; its trail comes from what the last run kept.
    QProcess again;
    window = Start(again, feed + View());
    ASSERT_FALSE(window.isEmpty());
    Click(window, 400, 300, 500);
    EXPECT_GT(TrailAndRoute(Grab(window)).first, 60) << "the trail was forgotten";
    ASSERT_TRUE(CloseAndWait(again, window));

    // The file given to replay alone opens on its newest snapshot: the aircraft, without a download.
    const QImage replay = Snapshot(View() + QStringList{u"--history"_s, m_home.filePath(u"history.db"_s)});
    EXPECT_GT(CountNear(replay, qRgb(0xFF, 0xFF, 0x2A), 40, QRect(385, 288, 30, 24)), 20)
        << "nothing replayed";
}

} // namespace
