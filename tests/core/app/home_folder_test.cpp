#include "app/home_folder.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace sky {
namespace {

TEST(ResolveFolders, HomeByOptionEnvironmentProgramFolderOrTheUsersDataFolder) {
    const QString exe = u"/opt/sky/bin"_s, user = u"/home/u/.local/share/Skylantra"_s,
                  installed = u"/opt/sky/share/skylantra"_s;
    const struct {
        const char* name;
        QString option, environment;
        bool writable, hasData;
        QString home, shipped;
    } rows[] = {
        {"option first", u"/a"_s, u"/b"_s, true, true, u"/a"_s, exe},
        {"then the environment", QString(), u"/b/./c/.."_s, true, true, u"/b"_s, exe},
        {"a build tree or portable copy", QString(), QString(), true, true, exe, exe},
        {"installed, read-only", QString(), QString(), false, false, user, installed},
        {"installed into a folder the user may write", QString(), QString(), true, false, user, installed},
        {"a read-only copy with its data", QString(), QString(), false, true, user, exe},
        {"an option with an installed program", u"/a"_s, QString(), false, false, u"/a"_s, installed},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const Folders f =
            ResolveFolders({row.option, row.environment, exe, row.writable, row.hasData, user, installed});
        EXPECT_EQ(f.Home, row.home);
        EXPECT_EQ(f.Shipped, QDir::cleanPath(row.shipped));
    }
    EXPECT_EQ(ResolveHomeFolder(u"rel"_s, QString(), exe), QDir::current().absoluteFilePath(u"rel"_s));
}

TEST(FirstWritableFolder, PassesOverFoldersThatCannotBeMadeOrWritten) {
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    QFile file(dir.filePath(u"file"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)); // a file where a folder would be
    const QString blocked = dir.filePath(u"file/data"_s), cache = dir.filePath(u"cache/Skylantra"_s);
    EXPECT_EQ(FirstWritableFolder({blocked, QString(), cache}), cache);
    EXPECT_TRUE(QDir(cache).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot)); // no probe left
    EXPECT_EQ(FirstWritableFolder({blocked}), QString());
}

} // namespace
} // namespace sky
