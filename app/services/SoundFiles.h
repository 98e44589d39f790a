#pragma once

#include "platform/AudioOutput.h"

#include <filesystem>
#include <map>
#include <string>
#include <string_view>

namespace DeskSprites {

/// The sound files of one folder, each read once, when it is first due. One that cannot be read stays silent,
/// with one line in the log. Used from one thread; reading blocks.
class SoundFiles {
public:
    explicit SoundFiles(std::filesystem::path folder);

    /// The sound of this name (its file without folder and extension), or nothing when it cannot be played.
    Platform::AudioSamples samples(std::string_view name);
    /// Its length; 0 when it cannot be played.
    FellowCore::Seconds duration(std::string_view name);

private:
    Platform::AudioSamples load(std::string_view name) const;

    std::filesystem::path folder_;
    /// A file that cannot be read has absent samples.
    std::map<std::string, Platform::AudioSamples, std::less<>> known_;
};

} // namespace DeskSprites
