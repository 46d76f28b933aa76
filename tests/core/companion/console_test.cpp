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

TEST_F(Companion, HelpAnswersOnlyTheWholeWordInAnyCase) {
    EXPECT_EQ(Run(u"help"_s), (QStringList{u"> help"_s, kHelp}));
    EXPECT_EQ(Run(u"HELP"_s), (QStringList{u"> help"_s, kHelp}));
    EXPECT_TRUE(Run(u"help me"_s).isEmpty());
    EXPECT_TRUE(Run(u"hello"_s).isEmpty());
    EXPECT_TRUE(Run(u"   "_s).isEmpty());
    EXPECT_TRUE(m_console.LastCommand() == u"hello"); // a blank line is not a command
}

TEST_F(Companion, AliasesAreRewrittenButTheLastCommandStaysAsTyped) {
    Run(u"Inf EDDF"_s);
    EXPECT_EQ(m_console.LastCommand(), u"Inf EDDF");
    Load(0, {PilotLine(0, {{0, u"EDDF"_s}, {1, u"1"_s}})});
    EXPECT_EQ(Run(u"Inf EDDF"_s).value(0), u"> info EDDF");
    EXPECT_EQ(Run(u"wx eddf"_s).value(0), u"> metar EDDF");
    EXPECT_EQ(Run(u"STAF eddf"_s).value(0), u"> shorttaf EDDF");
    EXPECT_EQ(Run(u"info EDDF"_s).value(0), u"> info EDDF"); // "info" is not rewritten again
}

TEST_F(Companion, ArgumentFormsAreCheckedBeforeAnyEcho) {
    EXPECT_EQ(Run(u"icao eddf"_s).value(0), u"> icao EDDF");
    EXPECT_TRUE(Run(u"icao  eddf"_s).isEmpty());
    EXPECT_TRUE(Run(u"icao eddfx"_s).isEmpty());
    EXPECT_EQ(Run(u"dist a b"_s).value(0), u"> dist A B");
    EXPECT_TRUE(Run(u"dist a  b"_s).isEmpty());
    EXPECT_TRUE(Run(u"metar edd"_s).isEmpty());
    EXPECT_TRUE(Run(u"metar eddf x"_s).isEmpty());
    m_downloads.DownloadIdle = false; // a download is running: weather is ignored too
    EXPECT_TRUE(Run(u"metar eddf"_s).isEmpty());
}

TEST_F(Companion, DataCommandsNeedTheTrafficOfOneNetwork) {
    EXPECT_TRUE(Run(u"stat"_s).isEmpty()); // nothing downloaded yet
    EXPECT_FALSE(Run(u"help"_s).isEmpty());
    EXPECT_FALSE(Run(u"icao EDDF"_s).isEmpty());
    EXPECT_FALSE(Run(u"dist EDDF KJFK"_s).isEmpty());
    Load(1, {PilotLine(1, {{0, u"DLH1"_s}})});
    EXPECT_EQ(Run(u"stat"_s).value(0), u"> stat");
    m_shown = 2; // both networks compared
    EXPECT_TRUE(Run(u"stat"_s).isEmpty());
    EXPECT_TRUE(Run(u"fp DLH1"_s).isEmpty());
}

TEST_F(Companion, EachCommandTakesItsArgumentFromItsOwnPlace) {
    Load(0, {AtcLine(0, {{0, u"EDDF_TWR"_s}, {1, u"100001"_s}})});
    struct Row {
        const char16_t* line;
        const char16_t* echo; // empty: ignored in silence
    };
    const Row rows[] = {
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
        {u"stat x", u""},
        {u"sups", u"> sups"},
        {u"refresh now", u""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(QString::fromUtf16(row.line).toStdString());
        const QStringList printed = Run(QString::fromUtf16(row.line));
        EXPECT_EQ(printed.value(0), QString::fromUtf16(row.echo));
    }
}

TEST_F(Companion, AnOutsizedArgumentIsAnsweredInFull) {
    Load(0, {PilotLine(0, {{0, u"DLH1"_s}})});
    const QString huge(100000, u'x');
    EXPECT_EQ(Run(u"info "_s + huge).value(1), huge.toUpper() + u" is not online\r\n"_s);
}

} // namespace
} // namespace sky::companion
