#include "app/characters/thumka/NowPlayingCover.h"

#include <QBuffer>
#include <QImageReader>

#include <algorithm>

namespace DeskSprites {

namespace {

constexpr auto jpeg = "jpeg";

/// The format by a file's first bytes, so that no other decoder is loaded, or tried on it; null for others.
const char* formatOf(const QByteArray& file) {
    if (file.startsWith("\x89PNG\r\n\x1a\n")) {
        return "png";
    }
    if (file.startsWith("\xff\xd8\xff")) {
        return jpeg;
    }
    if (file.startsWith("GIF8")) {
        return "gif";
    }
    return file.startsWith("RIFF") && file.mid(8, 4) == "WEBP" ? "webp" : nullptr;
}

bool isReadable(const QSize& size, const char* format) {
    if (size.isEmpty() || std::max(size.width(), size.height()) > NowPlayingCover::longestSide) {
        return false;
    }
    const auto pixels = static_cast<std::int64_t>(size.width()) * size.height();
    return format == jpeg || pixels <= NowPlayingCover::mostPixels;
}

} // namespace

QImage NowPlayingCover::read(const std::vector<std::uint8_t>& file) {
    QByteArray bytes = QByteArray::fromRawData(reinterpret_cast<const char*>(file.data()),
                                               static_cast<qsizetype>(file.size()));
    const char* const format = formatOf(bytes);
    if (!format) {
        return {};
    }
    QBuffer buffer(&bytes);
    QImageReader reader(&buffer, format);
    reader.setAutoDetectImageFormat(false);
    const QSize size = reader.size();
    if (!isReadable(size, format)) {
        return {};
    }
    const int square = std::min(size.width(), size.height());
    reader.setClipRect({(size.width() - square) / 2, (size.height() - square) / 2, square, square});
    const int wanted = std::min(square, side);
    reader.setScaledSize({wanted, wanted});
    // One form for all, and nothing of a format's own left to be converted while drawing.
    return reader.read().convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

} // namespace DeskSprites
