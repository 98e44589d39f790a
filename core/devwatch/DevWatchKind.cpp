#include "core/devwatch/DevWatchKind.h"

#include "core/base/Text.h"
#include "core/devwatch/DevWatchSystemFolders.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

namespace FellowCore {

namespace {

constexpr auto runtimes = std::to_array<std::string_view>({
    "node",   "bun",    "deno",     "python",      "python3", "ruby",     "puma",      "unicorn",
    "rails",  "php",    "php-fpm",  "go",          "java",    "kotlin",   "dotnet",    "cargo",
    "rustc",  "elixir", "beam.smp", "erl",         "uvicorn", "gunicorn", "hypercorn", "flask",
    "django", "vite",   "next",     "next-server", "astro",   "nuxt",     "webpack",   "esbuild",
    "parcel", "turbo",  "wrangler", "hugo",        "jekyll",  "caddy",    "nginx",     "httpd",
});

constexpr auto databases = std::to_array<std::string_view>({
    "postgres",
    "postmaster",
    "mysqld",
    "mariadbd",
    "mongod",
    "mongos",
    "redis-server",
    "valkey-server",
    "memcached",
    "clickhouse",
    "clickhouse-server",
    "cockroach",
    "influxd",
    "elasticsearch",
    "opensearch",
    "meilisearch",
    "typesense-server",
    "minio",
    "rabbitmq-server",
    "nats-server",
    "surreal",
    "etcd",
});

constexpr auto databasePorts = std::to_array<std::uint16_t>(
    {5432, 5433, 3306, 33060, 27017, 27018, 27019, 6379, 6380, 11211, 9042, 26257});

template <typename List, typename Value>
bool isIn(const List& list, const Value& name) {
    return std::ranges::find(list, name) != list.end();
}

bool isRuntime(std::string_view name) {
    return isIn(runtimes, name) || name.starts_with("python3.");
}

/// The components of an absolute path.
std::vector<std::string_view> components(std::string_view path) {
    std::vector<std::string_view> parts;
    while (!path.empty()) {
        const std::size_t slash = path.find('/');
        if (slash != 0) {
            parts.push_back(path.substr(0, slash));
        }
        path.remove_prefix(slash == std::string_view::npos ? path.size() : slash + 1);
    }
    return parts;
}

/// "GIMP" of the Flatpak "org.gimp.GIMP".
std::string afterLastDot(std::string_view identifier) {
    return std::string(identifier.substr(identifier.rfind('.') + 1));
}

/// A running AppImage is mounted at ".mount_" with the first six characters of its name and six of chance.
std::optional<std::string> appImage(std::string_view component, std::string_view program) {
    constexpr std::string_view mount = ".mount_";
    constexpr std::size_t chance = 6;
    if (!component.starts_with(mount) || component.size() <= mount.size() + chance) {
        return std::nullopt;
    }
    const std::string stem(component.substr(mount.size(), component.size() - mount.size() - chance));
    return lowercased(program).starts_with(lowercased(stem)) ? std::string(program) : stem;
}

/// Inside its sandbox a Flatpak's own folder is /app, which does not tell its name.
std::optional<std::string> sandboxedApp(const std::vector<std::string_view>& parts) {
    constexpr auto folders = std::to_array<std::string_view>({"bin", "lib", "libexec", "extra", "share"});
    const bool isInApp = parts.size() > 2 && parts[0] == "app" && isIn(folders, parts[1]);
    return isInApp ? std::optional<std::string>(parts[2]) : std::nullopt;
}

std::optional<std::string> linuxBundle(const std::vector<std::string_view>& parts) {
    // The last component is the program, and a program is no application's folder.
    for (std::size_t index = 0; index + 1 < parts.size(); ++index) {
        const std::string_view folder = parts[index];
        const auto isBelow = [&](std::string_view outer, std::string_view inner) {
            return index >= 2 && parts[index - 2] == outer && parts[index - 1] == inner;
        };
        if (isBelow("flatpak", "app")) {
            return afterLastDot(folder);
        }
        if (isBelow("snapd", "snap") || (index == 1 && (parts[0] == "snap" || parts[0] == "opt"))) {
            return std::string(folder);
        }
        if (auto image = appImage(folder, parts.back())) {
            return image;
        }
    }
    return sandboxedApp(parts);
}

} // namespace

std::optional<std::string> DevWatchKind::appBundle(const std::string& path) {
    const auto parts = components(path);
    for (const std::string_view part : parts) {
        for (const std::string_view ending : {".app", ".AppImage"}) {
            if (part.size() > ending.size() && part.ends_with(ending)) {
                return std::string(part.substr(0, part.size() - ending.size()));
            }
        }
    }
    return linuxBundle(parts);
}

DevWatchKind DevWatchKind::classify(const DevWatchProcess& process) {
    const std::string& path = process.executablePath;
    const std::string name = lowercased(process.name);
    const std::string program = lowercased(devWatchLastComponent(path));
    if (isRuntime(name) || isRuntime(program)) {
        return {Case::devServer};
    }
    if (isIn(databases, name) || isIn(databases, program)) {
        return {Case::database};
    }
    if (auto application = appBundle(path)) {
        return {Case::appHelper, std::move(*application)};
    }
    return {DevWatchSystemFolders::holds(path) ? Case::system : Case::tool};
}

std::optional<std::string> DevWatchKind::httpURL(const DevWatchListener& listener) {
    const Case kind = classify(listener.process).kind;
    return kind == Case::database || kind == Case::system ? std::nullopt : httpURL(listener.port);
}

std::optional<std::string> DevWatchKind::httpURL(std::uint16_t port) {
    return isIn(databasePorts, port) ? std::nullopt
                                     : std::optional("http://localhost:" + std::to_string(port));
}

std::string_view rawValue(DevWatchKind::Case kind) {
    switch (kind) {
    case DevWatchKind::Case::appHelper:
        return "appHelper";
    case DevWatchKind::Case::devServer:
        return "devServer";
    case DevWatchKind::Case::database:
        return "database";
    case DevWatchKind::Case::tool:
        return "tool";
    case DevWatchKind::Case::system:
        break;
    }
    return "system";
}

} // namespace FellowCore
