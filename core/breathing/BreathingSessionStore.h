#pragma once

#include "core/base/FileOperations.h"
#include "core/base/Instant.h"
#include "core/breathing/BreathingSession.h"

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

namespace FellowCore {

/// Keeps Mira's session in a file: one JSON object without line breaks. Reading and writing block. A file
/// that cannot be understood is left alone until the next save.
class BreathingSessionStore {
public:
    static constexpr std::size_t sizeLimit = 1'000'000; ///< bytes; a larger file is not read
    static constexpr std::string_view fileName = "breathing-session.json";

    /// `url` is the file. `files` must outlive the store.
    BreathingSessionStore(FileOperations& files, std::filesystem::path url);

    const std::filesystem::path& url() const { return url_; }

    /// The saved session, restored; the default session when there is none or it cannot be read.
    BreathingSession load() const;
    /// The same for a caller that wants to tell what was wrong: throws `FileError` for the file and
    /// `JsonError` for its content.
    BreathingSession read() const;
    /// Makes the parent folder when it is missing and replaces the file whole, with the mode it had (0600
    /// when new). What is saved is the session as if it were paused at that instant. Throws `FileError`.
    void save(const BreathingSession& session, Instant at) const;
    /// The second half of `save`, for a caller that encodes on one thread and writes on another.
    void write(std::string_view text) const;

    /// The file's text for a session paused at that instant. Pure. Numbers that are not finite are replaced,
    /// as the file cannot hold them.
    static std::string encoded(const BreathingSession& session, Instant at);
    /// The session a text holds, with settings and settling normalised and nothing else repaired. A file of
    /// the time before there was a settling has none. Throws `JsonError`.
    static BreathingSession decoded(std::string_view text);

private:
    FileOperations& files_;
    std::filesystem::path url_;
};

} // namespace FellowCore
