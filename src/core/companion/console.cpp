#include "companion/console.h"

#include "companion/activity_commands.h"
#include "companion/conditions_commands.h"
#include "companion/query_commands.h"
#include "companion/search_commands.h"
#include "companion/weather_commands.h"
#include "network/download.h"

using namespace Qt::StringLiterals;

namespace sky::companion {
namespace {

// Rewrites the line when its start is the alias, compared without regard to case.
void Alias(QString& line, QStringView alias, QStringView replacement) {
    if (QStringView(line).first(std::min(line.size(), alias.size())).compare(alias, Qt::CaseInsensitive) == 0)
        line = replacement.toString() + line.sliced(alias.size());
}

QString CommandWord(const QString& line) {
    const qsizetype blank = line.indexOf(u' ');
    if (blank <= 0)
        return line.trimmed().toLower();
    return line.first(blank + 1).trimmed().toLower();
}

QString Last(const QString& line, qsizetype count) {
    return line.right(count).toUpper();
}
QString After(const QString& line, qsizetype count) {
    return line.mid(count).trimmed().toUpper();
}

} // namespace

CompanionConsole::CompanionConsole() : m_pane(WelcomeText()) {}

QString CompanionConsole::WelcomeText() {
    return u"Welcome to the Skylantra Companion"_s + kCrLf +
           u" Refer to companion.txt for list of functions"_s + kCrLf;
}

QString CompanionConsole::HelpText() {
    return u"Commands: act atis dist find fp help icao info members metar prof refresh staf stat sups taf traffic vis"_s;
}

void CompanionConsole::AddText(const QString& text) {
    m_pane += kCrLf + text;
    if (m_sink)
        m_sink(text);
}

bool CompanionConsole::Enter(const QString& input, CommandContext& context) {
    const QString line = input.trimmed();
    if (line.isEmpty())
        return false;
    ReadText(line, context);
    return true;
}

void CompanionConsole::ReadText(const QString& typed, CommandContext& c) {
    m_lastCommand = typed;
    QString line = typed;
    Alias(line, u"inf ", u"info ");
    Alias(line, u"wx ", u"metar ");
    Alias(line, u"staf ", u"shorttaf ");
    const QString word = CommandWord(line);
    const qsizetype length = line.size();
    c.AddText = [this](const QString& text) { AddText(text); };

    if (word == u"metar" || word == u"taf" || word == u"shorttaf") {
        if (c.Downloads.DownloadIdle && length == word.size() + 5)
            Weather(c, word, Last(line, 4));
        return;
    }
    if (word == u"help") {
        if (length == 4) {
            AddText(u"> help"_s);
            AddText(HelpText() + kCrLf);
        }
        return;
    }
    if (word == u"icao") {
        if (length == 9)
            Icao(c, Last(line, 4));
        return;
    }
    if (word == u"dist") {
        const QStringList words = line.split(u' ');
        if (words.size() == 3)
            Dist(c, words[1].toUpper(), words[2].toUpper());
        return;
    }
    if (word == u"watch" || word == u"unwatch") {
        for (const QString& answer : c.Host.Watch(line))
            AddText(answer);
        return;
    }
    // The rest answer from the traffic of one network.
    if (c.ShownNetwork == 2 || c.Shown().ConnectedClients == 0)
        return;
    if (word == u"atis" && length >= 6)
        Atis(c, After(line, 5));
    else if (word == u"fp" && length >= 4)
        Fp(c, After(line, 3));
    else if (word == u"info" && length >= 6)
        Info(c, After(line, 5));
    else if (word == u"prof" && length >= 6)
        Prof(c, After(line, 5));
    else if (word == u"stat" && length == 4)
        Stat(c);
    else if (word == u"sups" && length == 4)
        Sups(c);
    else if (word == u"refresh" && length == 7 && c.Downloads.DownloadIdle)
        Refresh(c);
    else if (word == u"vis" && length >= 5)
        Vis(c, After(line, 4));
    else if (word == u"members" && length == 10)
        Members(c, Last(line, 2));
    else if (word == u"find" && length >= 7)
        Find(c, line.mid(5).toLower());
    else if (word == u"act" && length == 8)
        Act(c, Last(line, 4));
    else if (word == u"traffic" && (length == 10 || length == 12))
        Traffic(c, line.mid(8).toUpper());
    else if (word == u"rwy" && length == 8)
        Rwy(c, Last(line, 4).toUpper());
}

} // namespace sky::companion
