#pragma once

#include <QString>

#include <optional>
#include <vector>

namespace DeskSprites {

/// What can be done about a line of Dhiru's panel.
enum class DhiruAct {
    open,      ///< in a browser
    stop,      ///< asks a server to end
    force,     ///< ends it without its consent
    quit,      ///< asks an application to quit
    forceQuit, ///< ends it without its consent
    stopContainer,
    withdraw, ///< takes back what was not sent yet
};

/// The lamp at a line's start. It repeats what the words say.
enum class DhiruLamp { none, lit, quiet, alarm };

/// One line of a list as it is shown: all its words are clean and ready.
struct DhiruLine {
    QString key{};     ///< tells the thing from every other, from one reading to the next
    QString heading{}; ///< of the group that begins here; else empty
    QString title{};
    QString mark{};      ///< beside the title, such as the port; may be empty
    QString aside{};     ///< quiet, after both; left out where there is no room; may be empty
    QString detail{};    ///< below
    QString value{};     ///< at the end, such as the processor use; may be empty
    QString note{};      ///< what became of a request, or why there is no button; may be empty
    bool isNews = false; ///< whether the note is about a request
    DhiruLamp lamp = DhiruLamp::none;
    QString spoken{}; ///< the whole line in words, without the note
    QString called{}; ///< what a button says it is for
    std::vector<DhiruAct> acts{};

    friend bool operator==(const DhiruLine&, const DhiruLine&) = default;
};

/// The lines of one list.
struct DhiruLines {
    std::vector<DhiruLine> lines;
    int count = 0; ///< of all that match, shown or not
    QString words; ///< in place of lines, or below them; may be empty

    friend bool operator==(const DhiruLines&, const DhiruLines&) = default;
};

} // namespace DeskSprites
