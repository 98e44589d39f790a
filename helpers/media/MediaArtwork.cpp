#include "helpers/media/MediaArtwork.h"

#include <QByteArray>
#include <QUrl>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace FellowMedia {

namespace {

/// Closes a file descriptor.
class OpenFile {
public:
    explicit OpenFile(const char* path)
        // Neither a pipe nor a terminal may hold us up or take us over. A link is followed: covers are often
        // kept in one, and what it leads to is looked at once it is open.
        : descriptor_(::open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY)) {}
    ~OpenFile() {
        if (descriptor_ >= 0) {
            ::close(descriptor_);
        }
    }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    int descriptor() const { return descriptor_; }

private:
    int descriptor_;
};

bool isFitting(std::size_t size) {
    return size > 0 && size <= largestArtwork;
}

QByteArray fileContent(const QUrl& url) {
    const QString host = url.host();
    // Names of files are bytes, whatever they spell.
    const QByteArray path = QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1());
    if ((!host.isEmpty() && host != QStringLiteral("localhost")) || !path.startsWith('/') ||
        path.contains('\0')) {
        return {};
    }
    const OpenFile file(path.constData());
    struct stat status {};
    // What has no size of its own, as in /proc, may have no end either.
    if (::fstat(file.descriptor(), &status) != 0 || !S_ISREG(status.st_mode) || status.st_size <= 0 ||
        !isFitting(static_cast<std::size_t>(status.st_size))) {
        return {};
    }
    QByteArray bytes(status.st_size, Qt::Uninitialized);
    qsizetype filled = 0;
    while (filled < bytes.size()) {
        const ssize_t count =
            ::read(file.descriptor(), bytes.data() + filled, static_cast<std::size_t>(bytes.size() - filled));
        if (count == 0 || (count < 0 && errno != EINTR)) {
            return {}; // it is being written; the player will say when there is another
        }
        filled += count > 0 ? count : 0;
    }
    return bytes;
}

/// RFC 2397: data:[type][;parameters][;base64],content
QByteArray dataContent(const std::string& url) {
    const auto comma = url.find(',');
    if (comma == std::string::npos) {
        return {};
    }
    const bool isBase64 = std::string_view(url).substr(0, comma).ends_with(";base64");
    QByteArray content = QByteArray::fromPercentEncoding(
        QByteArray::fromRawData(url.data() + comma + 1, static_cast<qsizetype>(url.size() - comma - 1)));
    if (!isBase64) {
        return content;
    }
    const auto decoded = QByteArray::fromBase64Encoding(content, QByteArray::AbortOnBase64DecodingErrors);
    return decoded ? *decoded : QByteArray();
}

} // namespace

std::string artworkBase64(const std::string& url) {
    QByteArray bytes;
    if (url.starts_with("data:")) {
        bytes = dataContent(url);
    } else if (url.starts_with("file:")) {
        bytes = fileContent(QUrl(QString::fromStdString(url)));
    }
    return isFitting(static_cast<std::size_t>(bytes.size())) ? bytes.toBase64().toStdString() : std::string();
}

MediaArtwork::MediaArtwork() {
    thread_.setMaxThreadCount(1);
    thread_.setExpiryTimeout(-1); // a thread that waits costs nothing, one that ends wakes us up
}

void MediaArtwork::want(const std::string& url, const std::string& track) {
    Wish wish{url, track};
    if (wish == wanted_) {
        return;
    }
    const bool sameURL = wanted_.url == url;
    wanted_ = std::move(wish);
    if (!sameURL) {
        base64_.clear();
    }
    if (!reading_ && !url.empty()) {
        read();
    }
}

void MediaArtwork::read() {
    reading_ = wanted_;
    thread_.start([this, wish = wanted_] {
        QMetaObject::invokeMethod(
            this,
            [this, wish, base64 = artworkBase64(wish.url)]() mutable { finish(wish, std::move(base64)); },
            Qt::QueuedConnection);
    });
}

void MediaArtwork::finish(const Wish& wish, std::string base64) {
    reading_.reset();
    if (wish != wanted_) {
        if (!wanted_.url.empty()) {
            read();
        }
    } else if (base64_ != base64) {
        base64_ = std::move(base64);
        onChanged();
    }
}

} // namespace FellowMedia
