#include "helpers/media/MediaProperties.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QStringList>

namespace FellowMedia {

namespace {

bool isString(const QVariant& value) {
    return value.typeId() == QMetaType::QString;
}

std::string text(const QVariant& value) {
    if (!isString(value)) {
        return {};
    }
    QString kept = value.toString().left(longestText);
    if (!kept.isEmpty() && kept.back().isHighSurrogate()) {
        kept.chop(1);
    }
    return kept.toStdString();
}

/// A list, as the standard wants it, or one text, as some players have it.
std::string joined(const QVariant& value) {
    if (value.typeId() != QMetaType::QStringList) {
        return text(value);
    }
    QStringList names = value.toStringList();
    names.removeAll(QString());
    return text(names.join(QStringLiteral(", ")));
}

std::string trackIdentifier(const QVariant& value) {
    const QString id = value.canConvert<QDBusObjectPath>() ? value.value<QDBusObjectPath>().path()
                                                           : (isString(value) ? value.toString() : QString());
    return id == QStringLiteral("/org/mpris/MediaPlayer2/TrackList/NoTrack") ? std::string() : text(id);
}

QVariantMap dictionary(const QVariant& value) {
    if (value.metaType() != QMetaType::fromType<QDBusArgument>()) {
        return value.toMap();
    }
    const auto argument = value.value<QDBusArgument>();
    return argument.currentSignature() == QStringLiteral("a{sv}") ? qdbus_cast<QVariantMap>(argument)
                                                                  : QVariantMap();
}

void takeMetadata(MediaPlayer& player, const QVariantMap& metadata) {
    player.title = text(metadata.value(QStringLiteral("xesam:title")));
    player.artist = joined(metadata.value(QStringLiteral("xesam:artist")));
    player.identifier = trackIdentifier(metadata.value(QStringLiteral("mpris:trackid")));
    const QVariant url = metadata.value(QStringLiteral("mpris:artUrl"));
    const bool usable = isString(url) && url.toString().size() <= longestURL;
    player.artworkURL = usable ? url.toString().toStdString() : std::string();
}

Playback playback(const QVariant& value) {
    const std::string name = text(value);
    return name == "Playing" ? Playback::playing : name == "Paused" ? Playback::paused : Playback::stopped;
}

/// A property of a yes or no.
struct Flag {
    const char* name;
    bool MediaPlayer::*value;
};

constexpr Flag playerFlags[] = {{"CanControl", &MediaPlayer::canControl},
                                {"CanPlay", &MediaPlayer::canPlay},
                                {"CanPause", &MediaPlayer::canPause},
                                {"CanGoNext", &MediaPlayer::canGoNext},
                                {"CanGoPrevious", &MediaPlayer::canGoPrevious}};
constexpr Flag rootFlags[] = {{"CanRaise", &MediaPlayer::canRaise}};

template <std::size_t count>
void takeFlags(MediaPlayer& player, const QVariantMap& properties, const Flag (&flags)[count]) {
    for (const Flag& flag : flags) {
        const auto found = properties.find(QLatin1String(flag.name));
        if (found != properties.end()) {
            player.*flag.value = found->typeId() == QMetaType::Bool && found->toBool();
        }
    }
}

} // namespace

void takeRootProperties(MediaPlayer& player, const QVariantMap& properties) {
    takeFlags(player, properties, rootFlags);
    if (const auto found = properties.find(QStringLiteral("Identity")); found != properties.end()) {
        player.identity = text(*found);
    }
    if (const auto found = properties.find(QStringLiteral("DesktopEntry")); found != properties.end()) {
        QString id = QString::fromStdString(text(*found));
        if (id.endsWith(QStringLiteral(".desktop"))) {
            id.chop(8); // some give the file's name
        }
        player.desktopEntry = id.toStdString();
    }
}

void takePlayerProperties(MediaPlayer& player, const QVariantMap& properties) {
    takeFlags(player, properties, playerFlags);
    if (const auto found = properties.find(QStringLiteral("PlaybackStatus")); found != properties.end()) {
        player.playback = playback(*found);
    }
    if (const auto found = properties.find(QStringLiteral("Metadata")); found != properties.end()) {
        takeMetadata(player, dictionary(*found));
    }
}

} // namespace FellowMedia
