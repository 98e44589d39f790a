#pragma once

#include <QObject>
#include <QThreadPool>

#include <functional>
#include <optional>
#include <string>

namespace FellowMedia {

/// How large a picture may be.
constexpr std::size_t largestArtwork = 6'000'000; ///< bytes

/// The picture behind a URL as base64; empty when there is none to be had. Only regular files of this machine
/// and URLs that hold the picture themselves are looked at, never the network. Blocks.
std::string artworkBase64(const std::string& url);

/// Reads the picture of the shown track, away from the thread that talks to the players.
class MediaArtwork : public QObject {
public:
    MediaArtwork();

    /// Another picture, or none, has been read.
    std::function<void()> onChanged;

    /// What is wanted from now on. `track` tells one track from another: some players write every cover to
    /// the same file.
    void want(const std::string& url, const std::string& track);
    /// The wanted picture as base64; empty while it is being read, and when there is none.
    const std::string& base64() const { return base64_; }

private:
    struct Wish {
        std::string url;
        std::string track;
        friend bool operator==(const Wish&, const Wish&) = default;
    };

    void read();
    void finish(const Wish& wish, std::string base64);

    QThreadPool thread_;
    Wish wanted_;
    std::optional<Wish> reading_;
    std::string base64_;
};

} // namespace FellowMedia
