#include "app/characters/thumka/ThumkaTitleBubble.h"

#include "app/desktop/ElidedLines.h"
#include "app/desktop/PanelControls.h"
#include "app/desktop/PixelFrame.h"
#include "app/desktop/PixelIcon.h"

#include <QHBoxLayout>
#include <QPainter>

namespace DeskSprites {

namespace {

constexpr int widestText = 26 * PanelMetrics::unit;
constexpr int mostLines = 2;

/// The note, in the colour of the palette's text.
class NoteView : public QWidget {
public:
    using QWidget::QWidget;
    QSize sizeHint() const override {
        constexpr int side = pixelIconSide * PixelFrame::pixel;
        return {side, side};
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        paintPixelIcon(painter, {0, 0}, PixelIcon::note, palette().color(QPalette::WindowText),
                       PixelFrame::pixel);
    }
};

} // namespace

ThumkaTitleBubble::ThumkaTitleBubble() : Bubble(BubbleDismissal::explicitOnly) {
    auto* inside = new QWidget;
    note_ = new NoteView(inside);
    note_->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    text_ = new PanelText(TextRole::title, inside);
    text_->setWordWrap(false); // its lines are broken already
    auto* line = new QHBoxLayout(inside);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(PanelMetrics::unit);
    line->addWidget(note_);
    line->addWidget(text_, 1);
    setContent(inside);
}

void ThumkaTitleBubble::setTitle(const QString& title) {
    text_->setText(elidedLines(title, text_->font(), widestText, mostLines));
    text_->setAccessibleName(title);
    setWindowTitle(title);
    setAccessibleName(title);
}

void ThumkaTitleBubble::paletteChanged() {
    if (!note_) {
        return;
    }
    text_->setDialoguePalette(dialoguePalette());
    QPalette accent;
    accent.setColor(QPalette::WindowText, dialoguePalette().accent);
    note_->setPalette(accent);
}

void ThumkaTitleBubble::mousePressEvent(QMouseEvent*) {
    dismiss();
}

} // namespace DeskSprites
