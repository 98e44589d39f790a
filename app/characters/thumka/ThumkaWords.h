#pragma once

#include "app/characters/thumka/NowPlayingNews.h"

#include <QString>

#include <functional>
#include <optional>
#include <string>

namespace DeskSprites {

/// Gives an installed application's own name for its identifier, nothing when there is none.
using ApplicationName = std::function<std::optional<std::string>(const std::string& id)>;

/// What Thumka says. Titles and names come from whoever plays: they are shown on one line, without control
/// and direction characters, and no longer than a person reads.
namespace ThumkaWords {

QString title(const FellowCore::NowPlayingTrack& track);
/// Empty when it is not known.
QString artist(const FellowCore::NowPlayingTrack& track);
/// The player's name, such as "Firefox"; empty when it is not known.
QString source(const NowPlayingNews& news, const ApplicationName& nameOf);
/// "Title — Artist", or what is the case instead.
QString status(const NowPlayingNews& news);
/// Why there is no track, as a calm sentence of the panel.
QString silence(const NowPlayingNews& news);

} // namespace ThumkaWords

} // namespace DeskSprites
