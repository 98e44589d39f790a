#include "helpers/media/MediaInput.h"

#include <unistd.h>

#include <array>
#include <cerrno>

namespace FellowMedia {

namespace {

constexpr std::size_t longestWord = 64; ///< of a line that is kept until its end comes; no command is as long

} // namespace

std::vector<FellowCore::NowPlayingCommand> MediaCommandLines::append(std::string_view data) {
    std::vector<FellowCore::NowPlayingCommand> commands;
    for (const char byte : data) {
        if (byte != '\n') {
            // One byte too many stays, so that the line is no command.
            if (pending_.size() <= longestWord) {
                pending_.push_back(byte);
            }
            continue;
        }
        if (const auto command = FellowCore::nowPlayingCommand(pending_)) {
            commands.push_back(*command);
        }
        pending_.clear();
    }
    return commands;
}

MediaInput::MediaInput(int descriptor)
    : descriptor_(descriptor), readable_(descriptor, QSocketNotifier::Read) {
    QObject::connect(&readable_, &QSocketNotifier::activated, &readable_, [this] { read(); });
}

void MediaInput::read() {
    std::array<char, 4096> buffer{};
    const ssize_t count = ::read(descriptor_, buffer.data(), buffer.size());
    if (count < 0 && (errno == EINTR || errno == EAGAIN)) {
        return;
    }
    if (count <= 0) {
        readable_.setEnabled(false);
        onEnd();
        return;
    }
    for (const auto command : lines_.append({buffer.data(), static_cast<std::size_t>(count)})) {
        onCommand(command);
    }
}

} // namespace FellowMedia
