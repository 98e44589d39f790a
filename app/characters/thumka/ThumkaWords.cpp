#include "app/characters/thumka/ThumkaWords.h"

#include "core/base/Text.h"
#include "core/nowplaying/NowPlayingApp.h"

#include <QCoreApplication>

#include <algorithm>

namespace DeskSprites {

using FellowCore::NowPlayingTrack;

namespace {

constexpr std::size_t longestText = 200;  ///< characters, of a title or an artist
constexpr std::size_t longestName = 40;   ///< of a player
constexpr std::size_t longestStatus = 40; ///< of a title or an artist, where there is only a line
/// One character may be made of thousands of marks; this many bytes of it are enough.
constexpr std::size_t mostBytes = 2000;

QString words(const char* source) {
    return QCoreApplication::translate("Thumka", source);
}

QString clean(std::string_view text, std::size_t most) {
    const std::string_view beginning = FellowCore::bytePrefix(text, mostBytes);
    const std::string whole = FellowCore::trimmed(FellowCore::singleLine(beginning));
    const std::string shown = FellowCore::characterPrefix(whole, most);
    const bool isWhole = shown.size() == whole.size() && beginning.size() == text.size();
    const QString result = QString::fromStdString(shown);
    return isWhole ? result : result.trimmed() + QChar(0x2026);
}

QString statusOf(const NowPlayingTrack& track) {
    const QString title = clean(track.title, longestStatus);
    const QString artist = clean(track.artist, longestStatus);
    const QString both = artist.isEmpty() ? title : words("%1 — %2").arg(title, artist);
    return track.playing ? both : words("Paused: %1").arg(both);
}

} // namespace

QString ThumkaWords::title(const NowPlayingTrack& track) {
    return clean(track.title, longestText);
}

QString ThumkaWords::artist(const NowPlayingTrack& track) {
    return clean(track.artist, longestText);
}

QString ThumkaWords::source(const NowPlayingNews& news, const ApplicationName& nameOf) {
    const std::string id = news.track ? news.track->bundleIdentifier : std::string();
    auto own = id.empty() ? std::nullopt : nameOf(id);
    return clean(FellowCore::NowPlayingApp::name(id, own ? own : news.controls.displayName), longestName);
}

QString ThumkaWords::status(const NowPlayingNews& news) {
    if (news.following == NowPlayingNews::Following::failed) {
        return words("Music cannot be followed here");
    }
    return news.track ? statusOf(*news.track) : words("Nothing playing");
}

QString ThumkaWords::silence(const NowPlayingNews& news) {
    return news.following == NowPlayingNews::Following::failed
               ? words("Music cannot be followed here. Thumka goes on trying.")
               : words("Nothing is playing. Start some music, and Thumka dances.");
}

} // namespace DeskSprites
