#include "app/desktop/PanelButton.h"

#include "app/desktop/PanelMetrics.h"
#include "app/desktop/PixelFrame.h"

#include <QKeyEvent>
#include <QPainter>

#include <algorithm>

namespace DeskSprites {

namespace {
constexpr int pixel = PixelFrame::pixel;
constexpr int iconSide = pixelIconSide * pixel;
constexpr int iconGap = 6;
constexpr int cornerSteps = 2;

int evenUp(int length) {
    return length + length % 2;
}
} // namespace

PanelButton::PanelButton(Shape shape, QWidget* parent) : PanelPressable(parent), shape_(shape) {
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(shape == Shape::icon ? QSizePolicy::Fixed : QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void PanelButton::setDialoguePalette(const DialoguePalette& palette) {
    palette_ = palette;
    QWidget::update();
}

void PanelButton::setTitle(const QString& title) {
    if (title == title_) {
        return;
    }
    title_ = title;
    // The base class names the button to assistive tools, and would take an ampersand for a mnemonic.
    setText(QString(title).replace(QLatin1Char('&'), QLatin1String("&&")));
    setToolTip(shape_ == Shape::icon ? title : QString());
    updateGeometry();
}

void PanelButton::setEmphasis(Emphasis emphasis) {
    if (emphasis != emphasis_) {
        emphasis_ = emphasis;
        QWidget::update();
    }
}

void PanelButton::setPixelIcon(std::optional<PixelIcon> icon) {
    if (icon != icon_) {
        icon_ = icon;
        updateGeometry();
        QWidget::update();
    }
}

void PanelButton::setOpensMenu(bool opens) {
    if (opens != opensMenu_) {
        opensMenu_ = opens;
        updateGeometry();
        QWidget::update();
    }
}

QFont PanelButton::textFont() const {
    QFont own = shape_ == Shape::tile ? scaledFont(font(), 0.9) : font();
    own.setWeight(emphasis_ == Emphasis::primary ? QFont::DemiBold : QFont::Normal);
    return own;
}

QSize PanelButton::contentsSize() const {
    // Measured at the heavier weight, so that a change of emphasis moves nothing.
    QFont heaviest = textFont();
    heaviest.setWeight(QFont::DemiBold);
    const QFontMetrics metrics(heaviest);
    const QSize word(evenUp(metrics.horizontalAdvance(title_)), evenUp(metrics.height()));
    if (shape_ == Shape::icon) {
        return {iconSide, iconSide};
    }
    if (shape_ == Shape::tile) {
        return {std::max(word.width(), iconSide), iconSide + PanelMetrics::halfUnit + word.height()};
    }
    const int extra = iconSide + iconGap;
    return {word.width() + (icon_ ? extra : 0) + (opensMenu_ ? extra : 0), std::max(word.height(), iconSide)};
}

QSize PanelButton::sizeHint() const {
    const QSize inside = contentsSize();
    switch (shape_) {
    case Shape::icon:
        return {iconSide + 10, iconSide + 10};
    case Shape::tile:
        return {inside.width() + 2 * PanelMetrics::unit, inside.height() + PanelMetrics::unit};
    case Shape::row:
        break;
    }
    return {inside.width() + 3 * PanelMetrics::unit,
            std::max(PanelMetrics::controlHeight, inside.height() + 12)};
}

PanelButton::Colours PanelButton::colours() const {
    const bool over = underMouse() && isEnabled();
    const bool down = isDown() && isEnabled();
    const QColor clear(Qt::transparent);
    if (!isEnabled()) {
        const QColor faded = mixed(palette_.ink, palette_.paper, 0.5);
        const QColor line = emphasis_ == Emphasis::quiet ? clear : palette_.line();
        return {clear, line, clear, faded};
    }
    if (emphasis_ == Emphasis::primary) {
        const QColor ground = down   ? palette_.accentPressed()
                              : over ? palette_.accentHover()
                                     : palette_.accent;
        const QColor edge = mixed(ground, palette_.contour(), 0.45);
        return {ground, edge, mixed(ground, palette_.contour(), 0.2), palette_.paper};
    }
    const QColor ground = down ? palette_.pressed : over ? palette_.hover : palette_.paper;
    if (emphasis_ == Emphasis::quiet) {
        return {ground, ground, ground, palette_.ink};
    }
    return {ground, mixed(palette_.paper, palette_.ink, 0.34), mixed(ground, palette_.ink, 0.12),
            palette_.ink};
}

void PanelButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const Colours shown = colours();
    const QRect outer = rect();
    const QRect inner = outer.adjusted(pixel, pixel, -pixel, -pixel);
    const bool down = isDown() && isEnabled();
    const bool ring = showsFocusRing();
    fillStepped(painter, outer, cornerSteps, ring ? palette_.ink : shown.edge);
    const bool hollow = shown.ground.alpha() == 0;
    fillStepped(painter, inner, cornerSteps - 1, hollow || ring ? palette_.paper : shown.ground);
    if (!hollow) {
        const QRect face = ring ? inner.adjusted(pixel, pixel, -pixel, -pixel) : inner;
        fillStepped(painter, face, cornerSteps - 1, shown.ground);
        if (!down) {
            painter.fillRect(face.left() + pixel, face.bottom() + 1 - pixel, face.width() - 2 * pixel, pixel,
                             shown.lip);
        }
    }
    // The lip takes the lowest pixel of the face, so what stands on the face sits half of that higher.
    const bool raised = !down && emphasis_ != Emphasis::quiet && isEnabled();
    paintContents(painter, outer.translated(0, raised ? -pixel / 2 : down ? pixel / 2 : 0), shown.text);
}

void PanelButton::paintContents(QPainter& painter, const QRect& inside, const QColor& colour) const {
    painter.setFont(textFont());
    painter.setPen(colour);
    const bool mirrored = isRightToLeft();
    const auto paintIcon = [&](int x, int y, PixelIcon icon) {
        paintPixelIcon(painter, {x, y}, icon, colour, pixel, mirrored);
    };
    const int middleY = inside.top() + (inside.height() - iconSide) / 2;
    if (shape_ == Shape::icon) {
        paintIcon(inside.left() + (inside.width() - iconSide) / 2, middleY, icon_.value_or(PixelIcon::close));
        return;
    }
    const QSize contents = contentsSize();
    if (shape_ == Shape::tile) {
        const int top = inside.top() + (inside.height() - contents.height()) / 2;
        if (icon_) {
            paintIcon(inside.left() + (inside.width() - iconSide) / 2, top, *icon_);
        }
        const QRect word(inside.left(), top + iconSide + PanelMetrics::halfUnit, inside.width(),
                         contents.height() - iconSide - PanelMetrics::halfUnit);
        painter.drawText(word, Qt::AlignHCenter | Qt::AlignVCenter | Qt::TextSingleLine, title_);
        return;
    }
    QRect line(inside.left() + (inside.width() - contents.width()) / 2, inside.top(), contents.width(),
               inside.height());
    const int step = iconSide + iconGap;
    if (icon_) {
        paintIcon(mirrored ? line.right() + 1 - iconSide : line.left(), middleY, *icon_);
        line.adjust(mirrored ? 0 : step, 0, mirrored ? -step : 0, 0);
    }
    if (opensMenu_) {
        paintIcon(mirrored ? line.left() : line.right() + 1 - iconSide, middleY, PixelIcon::chevron);
        line.adjust(mirrored ? step : 0, 0, mirrored ? 0 : -step, 0);
    }
    painter.drawText(line, Qt::AlignHCenter | Qt::AlignVCenter | Qt::TextSingleLine, title_);
}

bool PanelButton::event(QEvent* event) {
    if (event->type() == QEvent::LayoutDirectionChange || event->type() == QEvent::FontChange) {
        updateGeometry();
    }
    return PanelPressable::event(event);
}

void PanelButton::changeEvent(QEvent* event) {
    QWidget::update();
    QAbstractButton::changeEvent(event);
}

} // namespace DeskSprites
