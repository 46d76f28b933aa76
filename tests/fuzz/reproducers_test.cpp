#include <QDir>

#include <gtest/gtest.h>

#include "common/file_io.h"
#include "fuzz_targets.h"

using namespace Qt::StringLiterals;

// Every input a fuzzer ever found a fault with, kept in tests/fuzz/reproducers/<target>/, read again
// through its target: under the sanitizer build a fault that comes back stops the tests.
namespace sky::fuzz {
namespace {

TEST(FuzzReproducers, EveryKeptFindingReadsWithoutAFault) {
    const QDir kept(QStringLiteral(SKYLANTRA_SOURCE_DIR) + u"/tests/fuzz/reproducers"_s);
    int replayed = 0;
    for (const QString& name : kept.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        const Target target = TargetNamed(name);
        ASSERT_NE(target, nullptr) << "no fuzz target " << name.toStdString();
        const QDir folder(kept.filePath(name));
        for (const QString& file : folder.entryList(QDir::Files)) {
            const QByteArray bytes = ReadWholeFile(folder.filePath(file)).value_or(QByteArray());
            target(reinterpret_cast<const std::uint8_t*>(bytes.constData()), std::size_t(bytes.size()));
            ++replayed;
        }
    }
    EXPECT_GE(replayed, 5);
}

} // namespace
} // namespace sky::fuzz
