#include "core/nowplaying/NowPlayingApp.h"

namespace FellowCore {

namespace {

struct KnownApp {
    std::string_view bundleID;
    std::string_view name;
};

constexpr KnownApp knownApps[] = {
    {"company.thebrowser.Browser", "Arc"},  {"com.google.Chrome", "Chrome"},
    {"com.google.Chrome.canary", "Chrome"}, {"com.google.Chrome.beta", "Chrome"},
    {"com.google.Chrome.dev", "Chrome"},    {"com.microsoft.edgemac", "Edge"},
    {"com.microsoft.edgemac.Beta", "Edge"}, {"com.microsoft.edgemac.Dev", "Edge"},
    {"com.apple.Safari", "Safari"},         {"com.apple.SafariTechnologyPreview", "Safari"},
    {"com.apple.Music", "Music"},           {"com.apple.iTunes", "Music"},
    {"com.spotify.client", "Spotify"},
};

} // namespace

std::string NowPlayingApp::name(std::string_view bundleID, const std::optional<std::string>& fallback) {
    for (const KnownApp& app : knownApps) {
        if (app.bundleID == bundleID) {
            return std::string(app.name);
        }
    }
    // Without a full stop npos + 1 is 0: the whole identifier.
    return fallback ? *fallback : std::string(bundleID.substr(bundleID.rfind('.') + 1));
}

} // namespace FellowCore
