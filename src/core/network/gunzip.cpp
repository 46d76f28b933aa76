#include "network/gunzip.h"

#include <algorithm>

#include <zlib.h>

#include "common/file_io.h"

namespace sky::network {

std::optional<QByteArray> GunzipBytes(const QByteArray& compressed, qint64 maxBytes) {
    if (compressed.isEmpty())
        return std::nullopt;
    z_stream stream{};
    // 16 + MAX_WBITS: gzip framing only, with its header and checksum checked.
    if (inflateInit2(&stream, 16 + MAX_WBITS) != Z_OK)
        return std::nullopt;
    // The output is made as large as the gzip trailer says at once (bounded by the limit and by what
    // deflate can pack into the input at most), so it is seldom copied while it grows.
    QByteArray output;
    if (compressed.size() >= 18) {
        const auto* tail =
            reinterpret_cast<const unsigned char*>(compressed.constData() + compressed.size() - 4);
        const qint64 stated =
            qint64(tail[0]) | qint64(tail[1]) << 8 | qint64(tail[2]) << 16 | qint64(tail[3]) << 24;
        output.reserve(qsizetype(std::min({stated, maxBytes, qint64(compressed.size()) * 1032})));
    }
    char buffer[1 << 16];
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(compressed.constData()));
    stream.avail_in = static_cast<uInt>(compressed.size());
    bool ok = false;
    while (true) {
        stream.next_out = reinterpret_cast<Bytef*>(buffer);
        stream.avail_out = sizeof buffer;
        const int status = inflate(&stream, Z_NO_FLUSH);
        const qsizetype produced = qsizetype(sizeof buffer - stream.avail_out);
        if (output.size() + produced > maxBytes)
            break;
        output.append(buffer, produced);
        if (status == Z_STREAM_END) {
            // Another member may follow; anything else after the end is not gzip.
            if (stream.avail_in == 0) {
                ok = true;
                break;
            }
            if (inflateReset(&stream) != Z_OK)
                break;
            continue;
        }
        if (status != Z_OK)
            break; // corrupt data, or input that ended inside the stream
        if (stream.avail_in == 0 && stream.avail_out != 0)
            break; // cut short: zlib wants more input than there is
    }
    inflateEnd(&stream);
    if (!ok)
        return std::nullopt;
    return output;
}

bool GunzipFile(const QString& gzPath, qint64 maxBytes) {
    if (!gzPath.endsWith(QStringLiteral(".gz")))
        return false;
    const auto compressed = ReadWholeFile(gzPath, kMaxUnzippedBytes);
    if (!compressed)
        return false;
    const auto plain = GunzipBytes(*compressed, maxBytes);
    if (!plain)
        return false;
    return WriteFileAtomically(gzPath.chopped(3), *plain).Ok;
}

} // namespace sky::network
