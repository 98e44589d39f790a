#pragma once

#include "core/art/ArrangeLayout.h"
#include "core/focus/TimerSettings.h"

#include <QColor>
#include <QImage>
#include <QString>

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace DeskSprites {

/// One character of the roster as the settings window presents it.
struct LibraryEntry {
    std::string id;
    QString name;
    QString role;
    QImage portrait; ///< still art at native pixels, with alpha; null shows an empty ground
    QColor accent;   ///< from the manifest; an invalid colour falls back to the house's own
    bool hasTimer = false;
};

/// What can be set on one character besides its timer. An absent value means that the character has no such
/// setting, and its row is not shown.
struct CharacterSettings {
    double desktopHeight = 320;        ///< visible height in points, 140...600
    std::optional<bool> sounds;        ///< whether the character sounds at all
    std::optional<double> volume;      ///< 0...1, of the character's own sounds
    std::optional<bool> mirrored;      ///< faces the other way
    std::optional<bool> reducedMotion; ///< keeps still whatever the system says
};

/// Whether the characters of the desktop set are shown, or all hidden together.
enum class DesktopVisibility { shown, hidden };

/// Who stands on the desktop. The identifiers in `onScreen` are in the order of arrival; they stay there
/// while the whole set is hidden.
struct LibraryDesktop {
    std::string active; ///< empty when no character is active
    std::vector<std::string> onScreen;
    std::vector<std::string> available; ///< whom the user may bring out
    DesktopVisibility visibility = DesktopVisibility::shown;

    bool isOnScreen(const std::string& id) const;
    bool isAvailable(const std::string& id) const;
    bool isFull() const;
};

/// What the General pane shows.
struct GeneralSettings {
    bool interfaceSounds = true;
    double interfaceVolume = 1;    ///< 0...1
    QString shortcutLabel;         ///< the show and hide shortcut as words, empty when there is none
    bool shortcutSupported = true; ///< false where the desktop gives programs no shortcuts of their own
    bool startAtLogin = false;
    double defaultHeight = 320; ///< the height a new character takes, 140...600 points
    FellowCore::ArrangeLayout::Edge arrangeEdge = FellowCore::ArrangeLayout::Edge::right;
    bool arrangeCompact = false;
    bool systemReducesMotion = false; ///< the desktop's own setting, shown as a fact
    QString version;
    QString dataFolder; ///< as shown to the user
};

/// Everything the settings window knows. The window is built from it whenever it opens.
struct LibraryState {
    /// The pane that belongs to no character. No pack can take this identifier, because of its dot.
    static inline const std::string generalPane = "collection.general";

    std::vector<LibraryEntry> roster;
    LibraryDesktop desktop;
    GeneralSettings general;
    std::map<std::string, CharacterSettings> characters;
    std::map<std::string, FellowCore::TimerSettings> timers;

    const LibraryEntry* entry(const std::string& id) const;
};

} // namespace DeskSprites
