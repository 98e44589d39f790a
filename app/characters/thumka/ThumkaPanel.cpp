#include "app/characters/thumka/ThumkaPanel.h"

#include "app/characters/thumka/NowPlayingService.h"
#include "app/characters/thumka/ThumkaCover.h"
#include "app/desktop/ElidedLines.h"
#include "app/desktop/PanelControls.h"
#include "app/desktop/PanelHeaderButton.h"
#include "platform/BubbleWindow.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QVBoxLayout>

namespace DeskSprites {

using FellowCore::NowPlayingCommand;

namespace {

constexpr int unit = PanelMetrics::unit;
constexpr int insideWidth = 320;
constexpr int textWidth = insideWidth - ThumkaCover::side - 2 * unit;
constexpr int skipWidth = 6 * unit;

/// Shows a text in so many lines at most, and all of it to who does not see it.
void showLines(PanelText& label, const QString& text, int most) {
    label.setText(elidedLines(text, label.font(), textWidth, most));
    label.setAccessibleName(text);
    label.setVisible(!text.isEmpty());
}

} // namespace

ThumkaPanel::ThumkaPanel(NowPlayingService& music, ApplicationName nameOf)
    : Bubble(BubbleDismissal::explicitOnly), music_(music), nameOf_(std::move(nameOf)) {
    auto* inside = new QWidget;
    inside->setFixedWidth(insideWidth);
    auto* column = new QVBoxLayout(inside);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(unit + PanelMetrics::halfUnit);
    column->addWidget(makeHeader());
    column->addWidget(makeTrack());
    column->addWidget(makeButtons());
    setWindowTitle(tr("Thumka's music"));
    setAccessibleName(tr("Thumka's music"));
    connect(&music_, &NowPlayingService::changed, this, &ThumkaPanel::refresh);
    setContent(inside);
    for (const auto& [before, after] :
         {std::pair{previous_, play_}, {play_, next_}, {next_, raise_}, {raise_, close_}}) {
        setTabOrder(before, after);
    }
}

QWidget* ThumkaPanel::makeHeader() {
    auto* header = new QWidget(this);
    auto* line = new QHBoxLayout(header);
    line->setContentsMargins(0, 0, 0, 0);
    heading_ = new PanelText(TextRole::title, header);
    heading_->setText(tr("Now playing"));
    close_ = panelHeaderButton(tr("Close"), PixelIcon::close, header);
    connect(close_, &QAbstractButton::clicked, this, [this] { dismiss(); });
    line->addWidget(heading_, 1);
    line->addWidget(close_);
    return header;
}

QWidget* ThumkaPanel::makeTrack() {
    auto* track = new QWidget(this);
    cover_ = new ThumkaCover(track);
    auto* words = new QVBoxLayout;
    words->setSpacing(PanelMetrics::halfUnit);
    words->addStretch(1);
    const auto add = [&](TextRole role) {
        auto* text = new PanelText(role, track);
        text->setWordWrap(false); // lines are broken already
        words->addWidget(text);
        return text;
    };
    title_ = add(TextRole::title);
    artist_ = add(TextRole::body);
    source_ = add(TextRole::quiet);
    silence_ = new PanelText(TextRole::body, track);
    words->addWidget(silence_);
    words->addStretch(1);
    auto* line = new QHBoxLayout(track);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(2 * unit);
    line->addWidget(cover_);
    line->addLayout(words, 1);
    return track;
}

PanelButton* ThumkaPanel::command(PanelButton* button, NowPlayingCommand command) {
    connect(button, &QAbstractButton::clicked, this, [this, command] { music_.send(command); });
    return button;
}

QWidget* ThumkaPanel::makeButtons() {
    buttons_ = new QWidget(this);
    const auto make = [this](PanelButton::Shape shape, const QString& title, NowPlayingCommand what) {
        auto* button = command(new PanelButton(shape, buttons_), what);
        button->setTitle(title);
        return button;
    };
    const auto skip = [&](const QString& title, PixelIcon icon, NowPlayingCommand what) {
        PanelButton* button = make(PanelButton::Shape::icon, title, what);
        button->setPixelIcon(icon);
        button->setFixedSize(skipWidth, PanelMetrics::controlHeight);
        return button;
    };
    previous_ = skip(tr("Previous"), PixelIcon::previous, NowPlayingCommand::previous);
    play_ = make(PanelButton::Shape::row, tr("Play"), NowPlayingCommand::playPause);
    play_->setEmphasis(Emphasis::primary);
    next_ = skip(tr("Next"), PixelIcon::skip, NowPlayingCommand::next);
    raise_ = make(PanelButton::Shape::row, tr("Open the player"), NowPlayingCommand::raise);
    auto* line = new QHBoxLayout;
    line->setSpacing(unit);
    for (PanelButton* button : {previous_, play_, next_}) {
        line->addWidget(button);
    }
    auto* column = new QVBoxLayout(buttons_);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(unit);
    column->addLayout(line);
    column->addWidget(raise_);
    return buttons_;
}

void ThumkaPanel::takeKeyboard() {
    const auto can = [](const PanelButton* button) { return button->isVisible() && button->isEnabled(); };
    (can(play_) ? play_ : can(raise_) ? raise_ : close_)->setFocus(Qt::ShortcutFocusReason);
    Platform::activateBubbleWindow(*this);
}

void ThumkaPanel::refresh() {
    if (isPresented()) { // otherwise it is brought up to date when it is shown
        showTrack();
        showButtons();
    }
}

void ThumkaPanel::showTrack() {
    const NowPlayingNews& news = music_.news();
    const bool has = news.track.has_value();
    const QString title = has ? ThumkaWords::title(*news.track) : QString();
    cover_->setCover(news.cover);
    cover_->setAccessibleName(has && cover_->hasCover() ? tr("Cover of %1").arg(title) : QString());
    showLines(*title_, title, 2);
    showLines(*artist_, has ? ThumkaWords::artist(*news.track) : QString(), 1);
    const QString source = has ? ThumkaWords::source(news, nameOf_) : QString();
    showLines(*source_, source.isEmpty() ? source : tr("from %1").arg(source), 1);
    silence_->setText(ThumkaWords::silence(news));
    silence_->setVisible(!has);
}

void ThumkaPanel::showButtons() {
    const NowPlayingNews& news = music_.news();
    const bool plays = news.track && news.track->playing;
    play_->setTitle(plays ? tr("Pause") : tr("Play"));
    play_->setPixelIcon(plays ? PixelIcon::pause : PixelIcon::play);
    play_->setEnabled(news.controls.canPlayPause);
    previous_->setEnabled(news.controls.canGoPrevious);
    next_->setEnabled(news.controls.canGoNext);
    raise_->setEnabled(news.controls.canRaise);
    buttons_->setVisible(news.controls != FellowCore::NowPlayingControls() || news.track);
}

void ThumkaPanel::showEvent(QShowEvent* event) {
    showTrack();
    showButtons();
    Bubble::showEvent(event);
}

void ThumkaPanel::keyPressEvent(QKeyEvent* event) {
    // A button that has the focus has taken the key before it comes here.
    if (event->key() == Qt::Key_Space && !event->isAutoRepeat()) {
        play_->click();
    } else {
        Bubble::keyPressEvent(event);
    }
}

void ThumkaPanel::paletteChanged() {
    const DialoguePalette& palette = dialoguePalette();
    for (PanelText* text : {heading_, title_, artist_, source_, silence_}) {
        text->setDialoguePalette(palette);
    }
    for (PanelButton* button : {close_, previous_, play_, next_, raise_}) {
        button->setDialoguePalette(palette);
    }
    cover_->setDialoguePalette(palette);
}

} // namespace DeskSprites
