#include "app/services/SoundFiles.h"

#include "core/base/FileOperations.h"
#include "core/base/WholeFile.h"
#include "core/sound/WaveFile.h"

#include <QDebug>

#include <utility>
#include <vector>

namespace DeskSprites {

SoundFiles::SoundFiles(std::filesystem::path folder) : folder_(std::move(folder)) {}

Platform::AudioSamples SoundFiles::samples(std::string_view name) {
    const auto known = known_.find(name);
    return known != known_.end() ? known->second : known_.emplace(name, load(name)).first->second;
}

FellowCore::Seconds SoundFiles::duration(std::string_view name) {
    const Platform::AudioSamples sound = samples(name);
    return sound ? static_cast<double>(sound->size()) / FellowCore::WaveFile::rate : 0;
}

Platform::AudioSamples SoundFiles::load(std::string_view name) const {
    try {
        FellowCore::PosixFileOperations files;
        const auto path = folder_ / (std::string(name) + ".wav");
        const auto bytes = FellowCore::readWholeFile(files, path, FellowCore::WaveFile::byteLimit);
        return std::make_shared<const std::vector<std::int16_t>>(FellowCore::WaveFile::parse(bytes).samples);
    } catch (const std::runtime_error& error) {
        // Everything works without its sounds; the log says why there are none.
        qWarning("The sound \"%s\" cannot play: %s", std::string(name).c_str(), error.what());
        return nullptr;
    }
}

} // namespace DeskSprites
