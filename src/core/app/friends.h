#pragma once

#include <QSet>
#include <QString>
#include <QStringList>

#include "common/file_io.h"
#include "common/shared_file.h"

namespace sky {

// The user's friends: member numbers in the order they were added, each at most once. The same number
// counts on both networks. Like the classic keyed collection, keys ignore case.
class Friends {
public:
    // Reads data/friends.dat; a missing file gives an empty list.
    static Friends Load(const QString& path);
    // The entries of a friends file: comma-separated fields, surrounding double quotes removed, empty
    // entries and repeated numbers skipped.
    static Friends Parse(const QString& text);

    bool Contains(const QString& memberId) const;
    // Adds memberId at the end; false when it is empty or already there.
    bool Add(const QString& memberId);
    // Removes memberId; false when it was not there.
    bool Remove(const QString& memberId);

    const QStringList& Entries() const { return m_entries; }
    qsizetype Count() const { return m_entries.size(); }

    // One member number per line, in order.
    QByteArray ToBytes() const;

    // What this program made of base, applied to theirs (the list as another program left it): theirs
    // with the entries added since base, without those removed since base.
    static Friends Merged(const Friends& base, const Friends& mine, const Friends& theirs);

private:
    QStringList m_entries;
    QSet<QString> m_keys;
};

// The friends file as the map and the terminal Companion on one home folder share it: each saves its
// own changes merged with the other's, and takes up the other's when it notices them.
class FriendsFile {
public:
    explicit FriendsFile(const QString& path); // reads the file as the list both start from
    // Saves list as this program changed it since it last read or saved the file, merged under the
    // file's lock with what changed there meanwhile; list becomes the merged one.
    WriteResult Save(Friends& list);
    // When another program changed the file since: list becomes what it holds; true then.
    bool Reload(Friends& list);

private:
    SharedFile m_file;
    Friends m_base; // the list as last read or saved
};

// What ToggleFriend did, for the caller to show and to rebuild what depends on the list: the scene
// when only friends are shown, the friends page of an open list panel, the open info box.
struct FriendToggle {
    bool Added = false;
    QString StatusText;
};

// Adds the client to the friends list or removes it, and says so in the status text.
FriendToggle ToggleFriend(Friends& friends, const QString& realName, const QString& memberId);

} // namespace sky
