#pragma once

#include "core/base/FileOperations.h"
#include "core/base/Instant.h"
#include "core/focus/FocusTimer.h"

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

namespace FellowCore {

/// Keeps a timer in a file: one JSON object, pretty-printed with sorted keys, the deadline as seconds since
/// 2001-01-01.
///
/// Loading and saving block. They throw `FileError` for the file and `JsonError` for its content; a file that
/// cannot be read is left alone.
class FocusTimerStore {
public:
    static constexpr std::size_t sizeLimit = 1'000'000; ///< bytes
    static constexpr std::string_view fileName = "focus-timer.json";

    /// `url` is the file. `files` must outlive the store.
    FocusTimerStore(FileOperations& files, std::filesystem::path url);

    const std::filesystem::path& url() const { return url_; }

    /// The saved timer, repaired. A phase whose deadline went by meanwhile is completed and counted.
    FocusTimer load(Instant at) const;
    /// The same, and a phase that still runs is paused: nothing resumes by itself at launch.
    FocusTimer loadForBatti(Instant at) const;
    /// Makes the parent folder when it is missing and replaces the file whole, with the mode it had (0600
    /// when new).
    void save(const FocusTimer& timer) const;
    /// The second half of `save`, for a caller that encodes on one thread and writes on another.
    void write(std::string_view text) const;

    /// The file's text for a timer. Pure; a number that is not finite is replaced, as the file cannot hold
    /// it.
    static std::string encoded(const FocusTimer& timer);
    /// The timer a text holds. Settings are clamped; nothing else is repaired. Throws `JsonError`.
    static FocusTimer decoded(std::string_view text);

private:
    FileOperations& files_;
    std::filesystem::path url_;
};

} // namespace FellowCore
