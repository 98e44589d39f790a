#include "app/characters/pump/PumpSessionRow.h"

#include "app/characters/pump/PumpColours.h"
#include "app/characters/pump/PumpPresentation.h"
#include "app/desktop/PanelMetrics.h"
#include "app/desktop/PixelFrame.h"
#include "app/desktop/PixelIcon.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QPainter>

namespace DeskSprites {

namespace {

constexpr int pixel = PixelFrame::pixel;
constexpr int lampSide = 6 * pixel;
constexpr int unit = PanelMetrics::unit;
constexpr int arrowSide = pixelIconSide * pixel;
constexpr int cornerSteps = 2;

void paintLamp(QPainter& painter, const QRect& place, const QColor& colour, const DialoguePalette& palette) {
    fillStepped(painter, place, 1, mixed(colour, palette.contour(), 0.6));
    const QRect inside = place.adjusted(pixel, pixel, -pixel, -pixel);
    fillStepped(painter, inside, 1, colour);
    painter.fillRect(inside.left() + pixel, inside.top() + pixel, pixel, pixel,
                     mixed(colour, Qt::white, 0.7));
}

} // namespace

PumpSessionRow::PumpSessionRow(QWidget* parent) : PanelPressable(parent) {
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setCursor(Qt::PointingHandCursor);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void PumpSessionRow::setDialoguePalette(const DialoguePalette& palette) {
    palette_ = palette;
    update();
}

void PumpSessionRow::showSession(const FellowCore::PumpAgentEvent& session, FellowCore::Instant now) {
    session_ = session;
    const QString agent = QString::fromUtf8(FellowCore::title(session.agent).data());
    const QString age = PumpPresentation::age(session, now);
    title_ = session.project() ? PumpPresentation::title(session) : tr("%1 session").arg(agent);
    detail_ = tr("%1 · %2 · %3").arg(agent, PumpPresentation::phase(session.event), age);
    const QString phrase = QCoreApplication::translate("Pump", session.phrase().c_str());
    setAccessibleName(session.project() ? tr("%1 in %2").arg(phrase, title_) : phrase);
    setAccessibleDescription(tr("%1. Press to go there.").arg(age));
    setToolTip(tr("Return to this session’s tab or project"));
    update();
}

QFont PumpSessionRow::titleFont() const {
    QFont own = font();
    own.setWeight(QFont::DemiBold);
    return own;
}

QSize PumpSessionRow::sizeHint() const {
    const QFontMetrics title(titleFont());
    const QFontMetrics detail(font());
    const int text = std::max(title.horizontalAdvance(title_), detail.horizontalAdvance(detail_));
    return {text + lampSide + arrowSide + 4 * unit, title.height() + detail.height() + unit};
}

QSize PumpSessionRow::minimumSizeHint() const {
    return {20 * unit, sizeHint().height()};
}

void PumpSessionRow::paintGround(QPainter& painter) const {
    const QColor ground = isDown()       ? palette_.pressed
                          : underMouse() ? palette_.hover
                                         : mixed(palette_.paper, palette_.ink, 0.05);
    if (showsFocusRing()) {
        fillStepped(painter, rect(), cornerSteps, palette_.ink);
        fillStepped(painter, rect().adjusted(pixel, pixel, -pixel, -pixel), cornerSteps - 1, ground);
    } else {
        fillStepped(painter, rect(), cornerSteps, ground);
    }
}

void PumpSessionRow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paintGround(painter);
    if (!session_) {
        return;
    }
    const auto placed = [this](const QRect& place) {
        return isRightToLeft()
                   ? QRect(width() - place.right() - 1, place.top(), place.width(), place.height())
                   : place;
    };
    const int middle = (height() - lampSide) / 2;
    paintLamp(painter, placed({unit, middle, lampSide, lampSide}), PumpColours::lamp(session_->event),
              palette_);
    const QRect arrow =
        placed({width() - unit - arrowSide, (height() - arrowSide) / 2, arrowSide, arrowSide});
    // The picture of going back points to the start; mirrored, it points onwards.
    paintPixelIcon(painter, arrow.topLeft(), PixelIcon::back, palette_.quietInk(), pixel, !isRightToLeft());
    const int start = 2 * unit + lampSide;
    const QRect text = placed({start, unit / 2, width() - start - arrowSide - 2 * unit, height() - unit});
    const int half = QFontMetrics(titleFont()).height();
    const Qt::Alignment side = isRightToLeft() ? Qt::AlignRight : Qt::AlignLeft;
    const auto line = [&](const QFont& own, const QColor& colour, const QRect& place, const QString& said) {
        painter.setFont(own);
        painter.setPen(colour);
        painter.drawText(place, static_cast<int>(side | Qt::AlignVCenter) | Qt::TextSingleLine,
                         QFontMetrics(own).elidedText(said, Qt::ElideMiddle, place.width()));
    };
    line(titleFont(), palette_.ink, QRect(text.left(), text.top(), text.width(), half), title_);
    line(font(), palette_.quietInk(), text.adjusted(0, half, 0, 0), detail_);
}

} // namespace DeskSprites
