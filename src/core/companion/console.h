#pragma once

#include <functional>

#include <QString>

#include "companion/command_context.h"

namespace sky::companion {

// The Companion console: its output pane, the last command, and the dispatch of a command line to
// the commands. Malformed or unknown commands are ignored in silence. The window and the terminal
// mode are thin shells around it.
class CompanionConsole {
public:
    CompanionConsole();

    // "Welcome to the Skylantra Companion", CR LF, " Refer to companion.txt for list of functions", CR LF.
    static QString WelcomeText();
    // "Commands: act atis dist ..."
    static QString HelpText();

    // Appends one line to the pane: every call starts a new line. The sink, when set, sees each text.
    void AddText(const QString& text);
    void SetSink(std::function<void(const QString&)> sink) { m_sink = std::move(sink); }
    const QString& PaneText() const { return m_pane; }

    // Enter in the input line: a line that is blank after trimming does nothing; any other is carried
    // out. Returns true when a command was carried out.
    bool Enter(const QString& input, CommandContext& context);
    // The last command line as typed (before aliases), for the Up key; empty at first.
    const QString& LastCommand() const { return m_lastCommand; }

    // Carries out one trimmed, non-empty command line.
    void ReadText(const QString& line, CommandContext& context);

private:
    QString m_pane;
    QString m_lastCommand;
    std::function<void(const QString&)> m_sink;
};

} // namespace sky::companion
