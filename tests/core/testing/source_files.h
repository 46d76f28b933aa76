#pragma once

#include <QString>

#include "common/file_io.h"

namespace sky::testing {

// A file of the source tree by its path there ("tests/data/ivao-v2.json"); empty when it cannot be read.
inline QByteArray SourceFile(const QString& path) {
    return ReadWholeFile(QStringLiteral(SKYLANTRA_SOURCE_DIR "/") + path).value_or(QByteArray());
}

} // namespace sky::testing
