#include "common/file_io.h"

#include <csignal>
#include <thread>

#include <sys/resource.h>

#include <QDir>
#include <QLockFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "app/friends.h"
#include "common/shared_file.h"

using namespace Qt::StringLiterals;

namespace sky {
namespace {

// A save the disk refuses part-way keeps the old file, leaves no temporary file and names the file: here
// refused by the process's file size limit (the kernel's answer past it is what a full disk gives; the
// terminal's test meets a real full disk).
TEST(CheckedSave, AWriteTheDiskRefusesKeepsTheOldFile) {
    QTemporaryDir home;
    const QString path = home.filePath(u"watch.dat"_s);
    ASSERT_TRUE(WriteFileAtomically(path, "OLD_*\n").Ok);
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit limit = before;
    limit.rlim_cur = 4096;
    setrlimit(RLIMIT_FSIZE, &limit);
    // Small enough to wait in the file's buffer until the flush, as a list's few lines do.
    const WriteResult saved =
        SharedFile(path).Update([](const QByteArray& now) { return QByteArray(now + QByteArray(8000, 'X')); });
    setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_FALSE(saved.Ok);
    EXPECT_TRUE(saved.Message.startsWith(u"Could not write "_s + path + u": "_s))
        << saved.Message.toStdString();
    EXPECT_EQ(ReadWholeFile(path), QByteArray("OLD_*\n"));
    EXPECT_EQ(QDir(home.path()).entryList(QDir::Files), QStringList{u"watch.dat"_s});
}

// Two programs on one home change one list, each from what it read before the other's change: both
// changes are kept, a lock held for a moment is waited for, and each notices the other's change.
TEST(SharedFile, TwoProgramsLoseNoChangeAndNoticeEachOther) {
    QTemporaryDir home;
    const QString path = home.filePath(u"data/watch.dat"_s);
    SharedFile map(path), terminal(path);
    EXPECT_EQ(map.Read(), QByteArray());
    terminal.Read();
    const auto append = [](const QByteArray& line) {
        return [line](const QByteArray& now) { return std::optional(now + line); };
    };
    ASSERT_TRUE(map.Update(append("AAA_*\n")).Ok); // its folder is made
    QLockFile held(path + u".lock"_s);
    ASSERT_TRUE(held.lock());
    std::thread release([&held] {
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        held.unlock();
    });
    const WriteResult saved = terminal.Update(append("BBB_*\n"));
    release.join();
    ASSERT_TRUE(saved.Ok) << saved.Message.toStdString();
    EXPECT_EQ(ReadWholeFile(path), QByteArray("AAA_*\nBBB_*\n"));
    EXPECT_EQ(map.ReadIfChanged(), QByteArray("AAA_*\nBBB_*\n"));
    EXPECT_EQ(map.ReadIfChanged(), std::nullopt);
    EXPECT_EQ(terminal.ReadIfChanged(), std::nullopt); // its own save
    EXPECT_TRUE(terminal.Update([](const QByteArray&) { return std::nullopt; }).Ok);
    EXPECT_EQ(map.ReadIfChanged(), std::nullopt); // nothing written

    // The friends list: each program's additions and removals since it last read, merged.
    const QString friendsPath = home.filePath(u"data/friends.dat"_s);
    ASSERT_TRUE(WriteFileAtomically(friendsPath, "100001\n100002\n").Ok);
    FriendsFile mapFile(friendsPath), terminalFile(friendsPath);
    Friends mapList = Friends::Parse(u"100001\n100002\n100003\n"_s); // added one
    Friends terminalList = Friends::Parse(u"100002\n100004\n"_s);    // removed one, added one
    ASSERT_TRUE(mapFile.Save(mapList).Ok);
    ASSERT_TRUE(terminalFile.Save(terminalList).Ok);
    const QStringList merged{u"100002"_s, u"100003"_s, u"100004"_s};
    EXPECT_EQ(terminalList.Entries(), merged);
    EXPECT_TRUE(mapFile.Reload(mapList));
    EXPECT_EQ(mapList.Entries(), merged);
    EXPECT_FALSE(mapFile.Reload(mapList));
}

} // namespace
} // namespace sky
