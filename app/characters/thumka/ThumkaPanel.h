#pragma once

#include "app/characters/thumka/ThumkaWords.h"
#include "app/desktop/Bubble.h"
#include "core/nowplaying/NowPlayingCommand.h"

#include <utility>
#include <vector>

namespace DeskSprites {

class NowPlayingService;
class PanelButton;
class PanelText;
class ThumkaCover;

/// What plays, open beside Thumka: the cover, what it is and where it comes from, and the player's buttons.
class ThumkaPanel : public Bubble {
    Q_OBJECT

public:
    /// `music` outlives the panel.
    ThumkaPanel(NowPlayingService& music, ApplicationName nameOf);

    /// Gives the keyboard to the panel, with the focus on what is most likely wanted.
    void takeKeyboard();
    const ThumkaCover& cover() const { return *cover_; }

protected:
    void paletteChanged() override;
    void showEvent(QShowEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QWidget* makeHeader();
    QWidget* makeTrack();
    QWidget* makeButtons();
    PanelButton* command(PanelButton* button, FellowCore::NowPlayingCommand command);
    void refresh();
    void showTrack();
    void showButtons();

    NowPlayingService& music_;
    ApplicationName nameOf_;
    PanelText* heading_ = nullptr;
    PanelButton* close_ = nullptr;
    ThumkaCover* cover_ = nullptr;
    PanelText* title_ = nullptr;
    PanelText* artist_ = nullptr;
    PanelText* source_ = nullptr;
    PanelText* silence_ = nullptr;
    QWidget* buttons_ = nullptr;
    PanelButton* previous_ = nullptr;
    PanelButton* play_ = nullptr;
    PanelButton* next_ = nullptr;
    PanelButton* raise_ = nullptr;
};

} // namespace DeskSprites
