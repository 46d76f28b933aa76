#include "companion_fixture.h"

namespace sky::companion {
namespace {

using network::testing::AtcLine;
using network::testing::PilotLine;
using testing::Companion;

const QString kHelp = CompanionConsole::HelpText() + u"\r\n"_s;

TEST_F(Companion, TheWelcomeTextOpensThePaneAndEveryLineStartsANewOne) {
    EXPECT_EQ(m_console.PaneText(),
              u"Welcome to the Skylantra Companion\r\n Refer to companion.txt for list of functions\r\n"_s);
    m_console.AddText(u"one"_s);
    m_console.AddText(u"two\r\n"_s);
    EXPECT_TRUE(m_console.PaneText().endsWith(u"functions\r\n\r\none\r\ntwo\r\n"_s));
}

// The echo tells what was carried out: aliases rewritten, argument forms checked before it; the Up key
// recalls the last line as typed, never a blank one.
TEST_F(Companion, EachCommandTakesItsArgumentFromItsOwnPlace) {
    Load(0, {AtcLine(0, u"0=EDDF_TWR|1=100001"_s)});
    const struct {
        const char16_t* line;
        const char16_t* echo; // empty: ignored in silence
    } rows[] = {
        {u"help", u"> help"},
        {u"HELP", u"> help"},
        {u"help me", u""},
        {u"hello", u""},
        {u"   ", u""},
        {u"Inf EDDF", u"> info EDDF"},
        {u"info EDDF", u"> info EDDF"}, // "info" is not rewritten again
        {u"wx eddf", u"> metar EDDF"},
        {u"STAF eddf", u"> shorttaf EDDF"},
        {u"icao eddf", u"> icao EDDF"},
        {u"icao  eddf", u""},
        {u"icao eddfx", u""},
        {u"dist a b", u"> dist A B"},
        {u"dist a  b", u""},
        {u"metar edd", u""},
        {u"metar eddf x", u""},
        {u"atis eddf_twr", u"> atis EDDF_TWR"},
        {u"atis", u""},
        {u"fp x", u"> fp X"},
        {u"fp", u""},
        {u"prof  abc", u"> prof ABC"},
        {u"vis abc", u"> vis ABC"},
        {u"members de", u"> members DE"},
        {u"members d", u""},
        {u"find Fr", u"> find fr"},
        {u"find", u""},
        {u"act eddf", u"> act EDDF"},
        {u"act edd", u""},
        {u"traffic de", u"> traffic DE"},
        {u"traffic eddf", u"> traffic EDDF"},
        {u"traffic edd", u""},
        {u"stat", u"> stat"},
        {u"stat x", u""},
        {u"sups", u"> sups"},
        {u"refresh now", u""},
    };
    QString typed;
    for (const auto& row : rows) {
        const QString line = QString::fromUtf16(row.line);
        SCOPED_TRACE(line.toStdString());
        EXPECT_EQ(Run(line).value(0), QString::fromUtf16(row.echo));
        typed = line.trimmed().isEmpty() ? typed : line;
        EXPECT_EQ(m_console.LastCommand(), typed);
    }
    EXPECT_EQ(Run(u"help"_s).value(1), kHelp);
    // The commands that answer from the traffic need one network's: none while both are compared or
    // the shown one has nothing; weather waits while a download runs.
    m_shown = 2;
    EXPECT_TRUE(Run(u"stat"_s).isEmpty());
    EXPECT_TRUE(Run(u"fp EDDF_TWR"_s).isEmpty());
    m_shown = 1;
    EXPECT_TRUE(Run(u"stat"_s).isEmpty());
    EXPECT_FALSE(Run(u"icao EDDF"_s).isEmpty());
    m_downloads.DownloadIdle = false;
    EXPECT_TRUE(Run(u"metar eddf"_s).isEmpty());
}

TEST_F(Companion, AnOutsizedArgumentIsAnsweredInFull) {
    Load(0, {PilotLine(0, u"0=DLH1"_s)});
    const QString huge(100000, u'x');
    EXPECT_EQ(Run(u"info "_s + huge).value(1), huge.toUpper() + u" is not online\r\n"_s);
}

} // namespace
} // namespace sky::companion
