#include "app/home_folder.h"

#include <QDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace sky {
namespace {

TEST(ResolveHomeFolder, OptionBeatsEnvironmentBeatsTheProgramsFolder) {
    EXPECT_EQ(ResolveHomeFolder(u"/opt/a"_s, u"/opt/b"_s, u"/opt/c"_s), u"/opt/a");
    EXPECT_EQ(ResolveHomeFolder(QString(), u"/opt/b"_s, u"/opt/c"_s), u"/opt/b");
    EXPECT_EQ(ResolveHomeFolder(QString(), QString(), u"/opt/c/"_s), u"/opt/c");
    EXPECT_EQ(ResolveHomeFolder(u"/opt/a/../b/./"_s, QString(), u"/opt/c"_s), u"/opt/b");
    EXPECT_EQ(ResolveHomeFolder(u"rel"_s, QString(), u"/opt/c"_s),
              QDir::current().absoluteFilePath(u"rel"_s));
}

} // namespace
} // namespace sky
