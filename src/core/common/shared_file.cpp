#include "common/shared_file.h"

#include <QDir>
#include <QFileInfo>
#include <QLockFile>

using namespace Qt::StringLiterals;

namespace sky {
namespace {

// A change takes milliseconds. A lock whose holder died is taken at once; one older than kStaleLockMs
// is taken too, which also frees one left without a holder (its maker killed before writing it) within
// the wait.
constexpr int kLockWaitMs = 4000;
constexpr int kStaleLockMs = 3000;
// File times move on with the kernel's clock tick, a few milliseconds: two saves of the same size
// within one tick leave the same stamp. A file whose stamp is this recent is compared by its bytes.
constexpr qint64 kCoarseStampMs = 2000;

} // namespace

SharedFile::SharedFile(QString path) : m_path(std::move(path)) {}

SharedFile::Stamp SharedFile::StampNow() const {
    QFileInfo info(m_path);
    if (!info.exists())
        return {};
    // A save renames a new file over the old one, which changes its status time even when the size
    // and the modification time (to the millisecond) happen to stay the same.
    return {true, info.size(), info.lastModified(), info.metadataChangeTime()};
}

QByteArray SharedFile::Read() {
    m_seen = StampNow();
    m_seenBytes = ReadWholeFile(m_path).value_or(QByteArray());
    return m_seenBytes;
}

std::optional<QByteArray> SharedFile::ReadIfChanged() {
    const Stamp now = StampNow();
    if (now != m_seen)
        return Read();
    if (!now.Exists || now.Modified.msecsTo(QDateTime::currentDateTimeUtc()) > kCoarseStampMs)
        return std::nullopt;
    QByteArray bytes = ReadWholeFile(m_path).value_or(QByteArray());
    if (bytes == m_seenBytes)
        return std::nullopt;
    m_seenBytes = bytes;
    return bytes;
}

WriteResult SharedFile::Update(const Change& change) {
    const QString folder = QFileInfo(m_path).absolutePath();
    if (!QDir().mkpath(folder))
        return {false, u"Could not write "_s + QDir::toNativeSeparators(m_path) +
                           u": cannot create the folder "_s + QDir::toNativeSeparators(folder)};
    QLockFile lock(m_path + u".lock"_s);
    lock.setStaleLockTime(kStaleLockMs);
    if (!lock.tryLock(kLockWaitMs)) {
        return {false,
                u"Could not write "_s + QDir::toNativeSeparators(m_path) +
                    (lock.error() == QLockFile::LockFailedError ? u": another program keeps it locked"_s
                                                                : u": cannot make its lock file"_s)};
    }
    const std::optional<QByteArray> next = change(Read());
    if (!next)
        return {};
    const WriteResult saved = WriteFileAtomically(m_path, *next);
    if (saved.Ok) {
        m_seen = StampNow();
        m_seenBytes = *next;
    }
    return saved;
}

} // namespace sky
