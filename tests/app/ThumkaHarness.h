#pragma once

#include "app/characters/thumka/NowPlayingService.h"
#include "app/characters/thumka/ThumkaAbility.h"
#include "app/desktop/ShortcutBoard.h"
#include "tests/app/AppHarness.h"
#include "tests/app/QuietCommands.h"

#include <QBuffer>

#include <sys/stat.h>

#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <unistd.h>

namespace ThumkaHarness {

using namespace AppHarness;
using FellowCore::NowPlayingCommand;
using Following = NowPlayingNews::Following;

/// As the program has it, but for tests that wait.
constexpr NowPlayingPatience quick{std::chrono::milliseconds(40),  std::chrono::milliseconds(160),
                                   std::chrono::milliseconds(600), std::chrono::milliseconds(80),
                                   std::chrono::milliseconds(80),  std::chrono::milliseconds(20)};

/// A line of the media stream: a whole state, with a playing piece unless told otherwise.
inline std::string line(const std::string& more = R"("playing":true)", const std::string& title = "Rain",
                        const std::string& artist = "Leela") {
    return R"({"type":"data","diff":false,"payload":{"title":")" + title + R"(","artist":")" + artist +
           R"(","bundleIdentifier":"org.example.player","canPlayPause":true,)" + more + "}}\n";
}
inline std::string change(const std::string& payload) {
    return R"({"type":"data","diff":true,"payload":{)" + payload + "}}\n";
}

inline std::string base64Of(const QImage& image, const char* format) {
    QBuffer file;
    file.open(QIODevice::WriteOnly);
    image.save(&file, format);
    return file.data().toBase64().toStdString();
}

/// The media helper's place, taken by a small program that says what the test wants and keeps what it is
/// told.
class Helper {
public:
    explicit Helper(std::filesystem::path folder) : folder_(std::move(folder)) {
        std::filesystem::create_directories(folder_);
        ::mkfifo((folder_ / "lines").c_str(), 0600);
        lines_ = ::open((folder_ / "lines").c_str(), O_RDWR | O_CLOEXEC);
        behaves("cat lines & reader=$!; cat >> commands; kill $reader");
    }
    ~Helper() { ::close(lines_); }

    /// Another body, in the shell's language. It runs in a folder of its own.
    void behaves(const std::string& body) const {
        const std::filesystem::path file = folder_ / "helper";
        std::ofstream(file) << "#!/bin/sh\ncd '" << folder_.string() << "'\necho $$ >> started\n"
                            << body << "\n";
        std::filesystem::permissions(file, std::filesystem::perms::owner_all);
    }
    QString program() const { return QString::fromStdString((folder_ / "helper").string()); }
    void write(const std::string& bytes) const {
        EXPECT_EQ(::write(lines_, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    }
    std::string read(const char* file) const {
        std::ifstream stream(folder_ / file);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    std::vector<int> started() const {
        std::ifstream stream(folder_ / "started");
        return {std::istream_iterator<int>(stream), {}};
    }
    /// Whether a helper that was started is still there.
    bool isAlive() const {
        return std::ranges::any_of(started(), [](int pid) { return ::kill(pid, 0) == 0; });
    }

private:
    std::filesystem::path folder_;
    int lines_ = -1;
};

/// Thumka on a real desktop, beside a helper that is the test's.
class ThumkaDesk : public Desk {
public:
    ThumkaDesk() {
        site.tell = [this](const QString& sentence) { told.push_back(sentence.toStdString()); };
        site.obstacles = [](const DesktopCharacter&) { return std::vector<FellowCore::Rect>{}; };
        site.dismissActions = [] {};
        const auto nameOf = [](const std::string& id) {
            return id == "org.example.player" ? std::optional<std::string>("Player") : std::nullopt;
        };
        auto made = std::make_unique<ThumkaAbility>(*thumka, site, helper.program(), nameOf, quick);
        ability = made.get();
        thumka->setAbility(std::move(made));
    }
    ~ThumkaDesk() {
        thumka.reset(); // while everything it was given still stands
    }

    void comeOut() {
        thumka->prepareForActivation();
        thumka->activate();
    }
    /// The helper says something; whether it has been heard, so that `done` holds.
    template <typename Predicate>
    bool hears(const std::string& text, const Predicate& done) {
        helper.write(text);
        return waitUntil(done);
    }
    bool plays(const std::string& text = line()) {
        return hears(text, [this] { return ability->state().track.has_value(); });
    }

    QuietCommands commands;
    ShortcutBoard shortcuts{preferences, system.shortcuts()};
    CharacterSite site{services, commands, shortcuts, {}, {}, {}, {}, {}, {}, {}};
    Log told;
    Helper helper{home / "helper"};
    std::unique_ptr<ManifestCharacterController> thumka =
        makePack({.id = "thumka",
                  .grid = {124, 151},
                  .poses = {"idle", "idle-breathe", "dance-1", "dance-2", "dance-3", "dance-4", "dance-5",
                            "dance-6", "dance-7", "doze"}});
    ThumkaAbility* ability = nullptr;
};

} // namespace ThumkaHarness
