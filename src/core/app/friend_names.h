#pragma once

#include <QString>

#include "common/keyed_lines.h"

namespace sky {

// The names the user gave friends, by member number, kept beside the friends list in a file of their
// own (data/friendnames.dat, "member<TAB>name" a line), so the friends list keeps its own format.
QString FriendNamesPath(const QString& home);
// The longest name kept, in characters.
inline constexpr int kFriendNameChars = 40;

// A callsign with a friend's chosen name: "DLH12 Anna" beside it, or "Anna" in its place; the callsign
// alone when there is no name.
QString NamedCallsign(const QString& callsign, const QString& name, bool instead);
// A real name with a friend's chosen name before it: "Anna (Anna Berg)", "Anna", or the real name.
QString NamedPerson(const QString& realName, const QString& name);

} // namespace sky
