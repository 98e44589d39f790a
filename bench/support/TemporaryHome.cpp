#include "bench/support/TemporaryHome.h"

#include "core/base/MemoryPreferences.h"
#include "core/base/PreferencesFile.h"
#include "core/host/PreferenceKeys.h"

#include <unistd.h>

#include <cstdlib>
#include <stdexcept>
#include <string_view>

namespace Bench {

namespace {

std::filesystem::path newFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "deskfellow-bench-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) {
        throw std::runtime_error("no temporary folder");
    }
    return name;
}

} // namespace

TemporaryHome::TemporaryHome(const std::vector<std::string>& onScreen)
    : path_(newFolder()), folders_({path_, path_ / "data", std::nullopt, path_ / "config", std::nullopt}) {
    if (!onScreen.empty()) {
        FellowCore::PosixFileOperations files;
        FellowCore::MemoryPreferences preferences;
        preferences.setStrings(FellowCore::PreferenceKeys::onScreen, onScreen);
        FellowCore::PreferencesFile(files, folders_.preferencesFile()).save(preferences.document());
    }
}

TemporaryHome::~TemporaryHome() {
    std::error_code ignored; // a leftover in the temporary folder spoils no measurement
    std::filesystem::remove_all(path_, ignored);
}

std::vector<std::string> TemporaryHome::environment() const {
    std::vector<std::string> variables{"HOME=" + path_.string(),
                                       "XDG_CONFIG_HOME=" + (path_ / "config").string(),
                                       "XDG_DATA_HOME=" + (path_ / "data").string()};
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string_view variable = *entry;
        if (!variable.starts_with("HOME=") && !variable.starts_with("XDG_CONFIG_HOME=") &&
            !variable.starts_with("XDG_DATA_HOME=")) {
            variables.emplace_back(variable);
        }
    }
    return variables;
}

} // namespace Bench
