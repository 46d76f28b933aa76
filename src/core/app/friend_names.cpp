#include "app/friend_names.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace sky {

QString FriendNamesPath(const QString& home) {
    return QDir(home).filePath(u"data/friendnames.dat"_s);
}

QString NamedCallsign(const QString& callsign, const QString& name, bool instead) {
    if (name.isEmpty())
        return callsign;
    return instead ? name : callsign + u' ' + name;
}

QString NamedPerson(const QString& realName, const QString& name) {
    if (name.isEmpty() || name == realName)
        return realName;
    return realName.isEmpty() ? name : name + u" ("_s + realName + u')';
}

} // namespace sky
