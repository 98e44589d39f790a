#pragma once

#include "app/desktop/CharacterStage.h"
#include "app/desktop/ControlBubble.h"

#include <QTimer>

#include <deque>
#include <functional>
#include <memory>

namespace DeskSprites {

/// Sentences the user should know, one at a time, in a bubble beside the active character. Each is also
/// written to the log, so that none is lost where nobody stands on the desktop.
class Notices {
public:
    /// Frames that a notice keeps clear of besides the other characters.
    std::function<std::vector<FellowCore::Rect>()> obstacles;

    Notices(CharacterStage& stage, DesktopServices& services);

    /// Shows the sentence once the desktop stands, after those that wait.
    void tell(const QString& sentence);
    /// The desktop stands: what waits may show.
    void start();
    void hide();
    /// The desktop is being left: what waits stays in the log.
    void end();
    void anchor();

private:
    void showNext();
    FellowCore::BubblePlacement placement(const DesktopCharacter& character) const;

    CharacterStage& stage_;
    DesktopServices& services_;
    std::deque<QString> waiting_;
    std::unique_ptr<ControlBubble> controlBubble_; ///< made for the first notice
    bool started_ = false;
    QObject context_; ///< what is put off dies with it
};

} // namespace DeskSprites
