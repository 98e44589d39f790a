#pragma once

#include "helpers/media/MediaPlayer.h"

#include <QVariantMap>

namespace FellowMedia {

/// How many UTF-16 units of a text are kept.
constexpr qsizetype longestText = 4096;
/// How long the URL of a picture may be: enough for one that holds the largest picture itself.
constexpr qsizetype longestURL = 9'000'000;

/// Take what a player says about its interfaces org.mpris.MediaPlayer2 and org.mpris.MediaPlayer2.Player.
/// What is not mentioned stays; a value of another type than it should be is as if there were none.
void takeRootProperties(MediaPlayer& player, const QVariantMap& properties);
void takePlayerProperties(MediaPlayer& player, const QVariantMap& properties);

} // namespace FellowMedia
