#include "network/gunzip.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "common/file_io.h"
#include "testing/gzip.h"

using namespace Qt::StringLiterals;

namespace sky::network {
namespace {

using sky::testing::Gzip;

TEST(GunzipBytes, UnpacksWholeFilesAndRefusesBrokenOnes) {
    QByteArray plain;
    for (int i = 0; i < 20000; ++i)
        plain += "DLH" + QByteArray::number(i) + ":123456:Name:PILOT::50.1:8.6:35000:450\r\n";
    const QByteArray packed = Gzip(plain);
    EXPECT_EQ(GunzipBytes(packed), plain);
    // Two members in a row, as some servers concatenate them.
    EXPECT_EQ(GunzipBytes(packed + Gzip("more")), plain + "more");

    EXPECT_FALSE(GunzipBytes(packed.first(packed.size() / 2)).has_value()); // cut in half
    EXPECT_FALSE(GunzipBytes(packed.chopped(4)).has_value());               // no length trailer
    QByteArray flipped = packed;
    flipped[flipped.size() / 2] = char(flipped[flipped.size() / 2] ^ 0x55);
    EXPECT_FALSE(GunzipBytes(flipped).has_value());
    EXPECT_FALSE(GunzipBytes(plain).has_value()); // not gzip at all
    EXPECT_FALSE(GunzipBytes(QByteArray()).has_value());
    EXPECT_FALSE(GunzipBytes(packed + "trailing junk").has_value());
    // A bomb: more output than allowed.
    EXPECT_FALSE(GunzipBytes(Gzip(QByteArray(4 << 20, 'x')), 1 << 20).has_value());
}

TEST(GunzipFile, WritesBesideTheArchiveAndKeepsTheOldFileOnFailure) {
    QTemporaryDir dir;
    const QString gz = dir.filePath(u"whazzup.txt.gz"_s);
    const QString txt = dir.filePath(u"whazzup.txt"_s);
    const auto write = [](const QString& path, const QByteArray& bytes) { WriteFileAtomically(path, bytes); };
    const auto read = [](const QString& path) { return ReadWholeFile(path).value_or(QByteArray()); };
    write(gz, Gzip("first"));
    ASSERT_TRUE(GunzipFile(gz));
    EXPECT_EQ(read(txt), "first");

    const QByteArray second = Gzip("second file");
    write(gz, second.first(second.size() / 2));
    EXPECT_FALSE(GunzipFile(gz));
    EXPECT_EQ(read(txt), "first");

    EXPECT_FALSE(GunzipFile(dir.filePath(u"missing.gz"_s)));
    EXPECT_FALSE(GunzipFile(txt)); // not a ".gz" path
}

} // namespace
} // namespace sky::network
