#include "cli/PackCheck.h"

#include "core/art/PackInspection.h"
#include "core/base/Text.h"
#include "platform/image/PngDecoder.h"

#include <filesystem>
#include <iostream>
#include <string>

namespace Fellow {

namespace {

using FellowCore::PackInspection;

std::string summary(const PackInspection& pack) {
    const auto& manifest = pack.manifest;
    std::string text =
        manifest.name + " (" + manifest.id + ") is good: " + std::to_string(manifest.grid.width) + " x " +
        std::to_string(manifest.grid.height) + " art pixels, " +
        std::to_string(static_cast<int>(pack.art.visibleBounds.width)) + " x " +
        std::to_string(static_cast<int>(pack.art.visibleBounds.height)) + " of them visible; poses:";
    for (const auto& pose : manifest.poses) {
        text += ' ' + pose.first;
    }
    return FellowCore::singleLine(text + '.');
}

ExitStatus report(const PackInspection& pack) {
    for (const auto& problem : pack.problems) {
        std::cerr << problem.sentence() << '\n';
    }
    for (const std::string& note : pack.notes) {
        std::cout << "note: " << FellowCore::singleLine(note) << '\n';
    }
    if (!pack.problems.empty()) {
        return ExitStatus::refused;
    }
    std::cout << summary(pack) << '\n';
    return ExitStatus::good;
}

ExitStatus check(Arguments arguments) {
    if (arguments.size() != 1 || arguments[0].empty() || arguments[0].starts_with('-')) {
        return misused(packCheck, "exactly one folder is wanted.");
    }
    const std::filesystem::path folder(arguments[0]);
    std::error_code failure;
    if (!std::filesystem::is_directory(folder, failure)) {
        std::cerr << FellowCore::singleLine(folder.string()) << " is no folder.\n";
        return ExitStatus::refused;
    }
    return report(PackInspection(folder, Platform::decodePng));
}

} // namespace

const Command packCheck{
    "pack check",
    "pack check DIR",
    "say everything that is wrong with the character pack in DIR",
    "Reads manifest.json and every image that it names, by the same rules by which Deskfellow\n"
    "loads a pack. Each fault is a sentence on standard error; what is odd but allowed, such as\n"
    "a file that no pose names, is a note on standard output.\n\n"
    "Exit status: 0 the pack is good, 1 it would be skipped, 2 the command line is wrong.\n",
    check,
};

} // namespace Fellow
