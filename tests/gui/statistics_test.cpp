#include "gui_fixture.h"

using namespace Qt::StringLiterals;

// The Statistics window on a made-up demo day, as a user opens each chart: Ctrl+T, the airport board's
// and the info box's Chart buttons, its tabs; and the numbers saved where the user says.
namespace {

using namespace sky::gui;

const QRgb kIvao = qRgb(0x28, 0x8D, 0xFF), kVatsim = qRgb(0x00, 0xFF, 0x4E),
           kHighlight = qRgb(0xFF, 0xFF, 0x1F);

class Statistics : public Gui {
protected:
    // The window as it shows, kept under its name with SKYLANTRA_SNAPSHOT_DIR.
    static QImage Look(const QString& window, const QString& name) {
        QThread::msleep(1500); // the history is read, the chart drawn
        const QImage shot = Grab(window);
        if (!qEnvironmentVariableIsEmpty("SKYLANTRA_SNAPSHOT_DIR"))
            shot.save(QDir(qEnvironmentVariable("SKYLANTRA_SNAPSHOT_DIR"))
                          .filePath(u"statistics-"_s + name + u".png"_s));
        return shot;
    }
};

// The made-up day keeps the demo feeds' names as they are spelt, the IVAO feed's Windows-1252 too.
TEST_F(Statistics, TheDemoDayListsNamesWithTheirAccents) {
    QString list;
    Snapshot({u"--demo-history"_s, u"--keys"_s, u"L"_s, u"--print-panel"_s}, {}, &list);
    EXPECT_GT(list.count(u'|'), 40);
    EXPECT_FALSE(list.contains(QChar::ReplacementCharacter));
    EXPECT_TRUE(list.contains(u"Chlo\u00e9"_s) || list.contains(u"M\u00fcller"_s)) << list.toStdString();
}

TEST_F(Statistics, EachChartOfTheDemoDayOpensWhereTheUserAsksAndItsNumbersAreSaved) {
    QProcess program;
    QString map = Start(program, {u"--demo-history"_s, u"--download"_s, u"vatsim"_s});
    for (int more = 0; more < 2 && map.isEmpty();
         ++more) // the demo day is written first: slow on a busy machine
        map = FindWindow(u"^Skylantra$"_s);
    ASSERT_FALSE(map.isEmpty());
    Keys(FindWindow(u"^Important Network Message$"_s), {u"Return"_s}); // the demo feed says it is one
    Keys(map, {u"ctrl+t"_s});
    const QString window = FindWindow(u"^Skylantra Statistics"_s);
    ASSERT_FALSE(window.isEmpty());
    // Without a window manager the later window stays on top: the charts in the screen's top left corner,
    // the map in the bottom right one, so a click on the map never lands on the charts.
    const QStringList screen = Xdotool({u"getdisplaygeometry"_s}).split(u' ');
    Xdotool({u"windowmove"_s, window, u"0"_s, u"0"_s});
    Xdotool({u"windowmove"_s, map, QString::number(screen.value(0).toInt() - 820),
             QString::number(screen.value(1).toInt() - 620)});
    QThread::msleep(300);
    const QImage traffic = Look(window, u"traffic"_s);
    EXPECT_GT(CountNear(traffic, kIvao, 40), 800) << "no IVAO lines";
    EXPECT_GT(CountNear(traffic, kVatsim, 40), 800) << "no VATSIM lines";
    EXPECT_GT(CountNear(traffic, kHighlight, 40), 30) << "no mark at what the map shows";

    // Doha's board on the map, its Chart button: arrivals in VATSIM's colour, departures highlighted.
    Keys(map, {u"ctrl+f"_s});
    Type(u"OTHH"_s);
    Keys(map, {u"Return"_s});
    Click(map, 490, 40);
    const QImage airport = Look(window, u"airport"_s);
    EXPECT_GT(CountNear(airport, kVatsim, 40), 300) << "no arrivals";
    EXPECT_GT(CountNear(airport, kHighlight, 40), 300) << "no departures";

    // A flight's info box, its Chart button: altitude in VATSIM's colour, speed highlighted.
    Keys(map, {u"Escape"_s, u"ctrl+f"_s});
    Type(u"DAL5880"_s);
    Keys(map, {u"Return"_s});
    Click(map, 750, 70);
    const QImage flight = Look(window, u"flight"_s);
    EXPECT_GT(CountNear(flight, kVatsim, 40), 300) << "no altitude";
    EXPECT_GT(CountNear(flight, kHighlight, 40), 300) << "no ground speed";

    // The busiest places now; the numbers saved through the file dialog and read back.
    Keys(window, {u"ctrl+Tab"_s});
    const QImage busiest = Look(window, u"busiest"_s);
    EXPECT_GT(CountNear(busiest, kVatsim, 40), 2000) << "no bars";
    Keys(map, {u"Escape"_s});
    Click(window, 300, 110); // the busiest airport's bar: its board on the map
    EXPECT_GT(BlackIn(Grab(map), QRect(20, 60, 480, 450)), 100000) << "the airport's board did not open";
    const auto save = [&](const QString& keys, const QString& title, const QString& file) {
        Keys(window, {keys});
        const QString dialog = FindWindow(title);
        ASSERT_FALSE(dialog.isEmpty());
        Keys(dialog, {u"ctrl+a"_s});
        Type(m_home.filePath(file));
        Keys(dialog, {u"Return"_s});
        QThread::msleep(800);
    };
    save(u"alt+p"_s, u"^Save the chart as a picture$"_s, u"busiest.png"_s);
    EXPECT_GT(QImage(m_home.filePath(u"busiest.png"_s)).width(), 600) << "no picture of both charts saved";
    save(u"alt+n"_s, u"^Save the chart's numbers$"_s, u"busiest.csv"_s);
    const QString csv =
        QString::fromUtf8(sky::ReadWholeFile(m_home.filePath(u"busiest.csv"_s)).value_or(QByteArray()));
    EXPECT_TRUE(csv.startsWith(u"kind,code,name,ivao,vatsim,total\r\nairport,"_s))
        << csv.left(200).toStdString();
    EXPECT_EQ(csv.count(u"\r\nfir,"_s), 10);

    // A click on the traffic in the evening: the map replays that moment, and the mark moves there.
    Click(window, 40, 24);
    const QRect plot(100, 90, 820, 360);
    EXPECT_GT(BoundsOf(traffic, kHighlight, 40, plot).left(), 850);
    Click(window, 330, 300);
    EXPECT_LT(BoundsOf(Look(window, u"replayed"_s), kHighlight, 40, plot).left(), 400);
    Keys(window, {u"Escape"_s});
    QThread::msleep(400);
    EXPECT_TRUE(Xdotool({u"search"_s, u"--onlyvisible"_s, u"--name"_s, u"^Skylantra Statistics"_s}).isEmpty())
        << "Escape left the Statistics window open";
    ASSERT_TRUE(CloseAndWait(program, map));
}

} // namespace
