#include "core/agents/ClaudeStatusLineConnector.h"
#include "core/agents/PumpHookSettings.h"
#include "core/agents/SettingsBackup.h"
#include "core/base/Json.h"
#include "fuzz/Require.h"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <string_view>

using namespace FellowCore;

namespace {

constexpr std::string_view command = "'/pump/hook.sh'";

// The settings as a careless editor leaves them: the same object in other bytes.
std::string reformatted(const std::string& text) {
    return Json::parse(text).dump(1, '\t');
}

std::string withAnEdit(const std::string& text) {
    Json edited = Json::parse(text);
    edited["edited by hand"] = true;
    return edited.dump();
}

// Put in and taken out, hooks leave no trace, and later edits stay.
void checkHooks(std::string_view text, PumpProvider agent) {
    if (PumpHookSettings::holdsCommand(text, command)) {
        return;
    }
    const auto restore = [&](const std::string& current, const std::string& installed) {
        return PumpHookSettings::restore(current, text, installed, command);
    };
    const std::string merged = PumpHookSettings::merge(text, agent, command);
    require(PumpHookSettings::holdsCommand(merged, command));
    require(restore(merged, merged) == text);
    require(restore(reformatted(merged), merged) == text);
    Json expected = text.empty() ? Json::object() : Json::parse(text);
    expected["edited by hand"] = true;
    require(Json::parse(restore(withAnEdit(merged), merged)) == expected);
}

void checkStatusLine(std::string_view text) {
    static PosixFileOperations files;
    static const ClaudeStatusLineConnector connector(files, SupportFolders({.home = "/home/u"}), "/hook");
    const auto [installed, line] = connector.installed(text);
    SettingsBackup backup{
        .original = std::string(text), .installed = installed, .command = line, .script = {}};
    require(SettingsBackup::decoded(backup.encoded()) == backup);
    require(connector.restored(installed, backup) == text);
    require(connector.restored(reformatted(installed), backup) == text);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    for (const PumpProvider agent : allPumpProviders) {
        try {
            checkHooks(text, agent);
        } catch (const PumpHookSettings::Failure&) {
            // A refusal is an answer.
        }
    }
    try {
        checkStatusLine(text);
    } catch (const ClaudeStatusLineConnector::ConnectionError&) {
        // So is this one.
    }
    try {
        SettingsBackup::decoded(text);
    } catch (const JsonError&) {
        // And this.
    }
    return 0;
}
