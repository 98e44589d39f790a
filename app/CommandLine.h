#pragma once

#include <QStringList>

#include <optional>
#include <string>

namespace DeskSprites {

/// The command line of the program, checked.
struct CommandLine {
    QStringList forwarded;             ///< what the running program acts on: switches and links, in order
    bool muted = false;                ///< no sound at all, whatever the settings say
    std::optional<std::string> answer; ///< print this and exit with `status` instead of running
    int status = 0;

    /// `arguments` are without the program's name. An argument that means nothing gives an answer with
    /// status 2.
    explicit CommandLine(const QStringList& arguments);
};

} // namespace DeskSprites
