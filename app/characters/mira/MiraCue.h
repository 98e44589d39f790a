#pragma once

#include "app/characters/mira/MiraFrame.h"
#include "app/desktop/Bubble.h"

namespace DeskSprites {

class PanelText;
class ProgressRing;

/// What Mira says during a session: the phase, the round, and a ring that fills with the phase.
class MiraCue : public Bubble {
    Q_OBJECT

public:
    MiraCue();

    /// One moment of a session of so many rounds. A phase that begins is announced.
    void showFrame(const MiraFrame& frame, int rounds);
    /// The sentence at the end of a session.
    static QString farewell();
    /// Shows it, with a whole ring.
    void showEnd(int rounds);
    /// The title that is shown, such as "Breathe in".
    QString title() const;

protected:
    void paletteChanged() override;

private:
    void setWords(const QString& title, const QString& detail);
    void applyInk();

    ProgressRing* ring_ = nullptr;
    PanelText* title_ = nullptr;
    PanelText* detail_ = nullptr;
    int words_ = MiraFrame::wordLevels;
};

/// "2 of 6".
QString roundWords(int round, int rounds);

} // namespace DeskSprites
