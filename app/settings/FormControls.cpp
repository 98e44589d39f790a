#include "app/settings/FormControls.h"

#include "app/desktop/PixelFrame.h"

#include <QEvent>
#include <QPainter>
#include <QPushButton>
#include <QResizeEvent>
#include <QSignalBlocker>
#include <QSlider>
#include <QStyle>
#include <QVBoxLayout>

#include <algorithm>
#include <numeric>

namespace DeskSprites {

namespace {

constexpr int unit = FormMetrics::unit;
constexpr int pixel = PixelFrame::pixel;

/// To the next even number, so that what is drawn in art pixels comes out whole.
int evenly(int length) {
    return length + length % 2;
}

double sizeFactor(TextStyle style) {
    switch (style) {
    case TextStyle::title:
        return 1.7;
    case TextStyle::heading:
        return 1.1;
    case TextStyle::body:
        return 1;
    case TextStyle::help:
    case TextStyle::error:
        return 0.92;
    }
    return 1;
}

QPalette::ColorRole colourRole(TextStyle style) {
    switch (style) {
    case TextStyle::help:
        return QPalette::PlaceholderText;
    case TextStyle::error:
        return QPalette::BrightText;
    case TextStyle::title:
    case TextStyle::heading:
    case TextStyle::body:
        break;
    }
    return QPalette::WindowText;
}

/// Keeps a wheel that scrolls the page from changing the control it happens to pass over.
class WheelGuard : public QObject {
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        const auto* widget = qobject_cast<QWidget*>(watched);
        if (event->type() != QEvent::Wheel || widget == nullptr || widget->hasFocus()) {
            return false;
        }
        event->ignore();
        return true;
    }
};

void guardFromWheel(QWidget* widget) {
    widget->setFocusPolicy(Qt::StrongFocus);
    widget->installEventFilter(new WheelGuard(widget));
}

/// Steps of the corners of a control of this height, so that a large font does not make a box of a switch.
int roundingOf(int height) {
    return std::max(2, height / 8);
}

} // namespace

QLabel* makeText(const QString& text, TextStyle style, QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    label->setText(text);
    label->setWordWrap(true);
    // By the window's direction: by its own, an untranslated name would stand at the far side of its row.
    label->setAlignment((label->isRightToLeft() ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignAbsolute |
                        Qt::AlignVCenter);
    label->setForegroundRole(colourRole(style));
    QFont font = label->font();
    if (font.pointSizeF() > 0) {
        font.setPointSizeF(font.pointSizeF() * sizeFactor(style));
    } else {
        font.setPixelSize(qRound(font.pixelSize() * sizeFactor(style)));
    }
    if (style == TextStyle::title || style == TextStyle::heading) {
        font.setWeight(QFont::DemiBold);
    }
    label->setFont(font);
    return label;
}

void setWords(QAbstractButton* button, const QString& words) {
    button->setText(QString(words).replace(QLatin1Char('&'), QLatin1String("&&")));
    button->setAccessibleName(words);
}

FormSwitch::FormSwitch(QWidget* parent) : QCheckBox(parent) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setCursor(Qt::PointingHandCursor);
}

void FormSwitch::setQuietly(bool on) {
    const QSignalBlocker quiet(this);
    setChecked(on);
}

QSize FormSwitch::sizeHint() const {
    const int height = std::max(24, evenly(fontMetrics().height() + 4));
    return {evenly(height * 9 / 5), height};
}

void FormSwitch::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QRect track = rect().adjusted(pixel, pixel, -pixel, -pixel);
    const int steps = roundingOf(track.height());
    const QColor edge = palette().color(QPalette::PlaceholderText);
    if (hasFocus()) {
        fillStepped(painter, rect(), steps + 1, palette().color(QPalette::WindowText));
    }
    fillStepped(painter, track, steps, isChecked() ? palette().color(QPalette::Highlight) : edge);
    if (!isChecked()) {
        fillStepped(painter, track.adjusted(pixel, pixel, -pixel, -pixel), steps - 1,
                    palette().color(QPalette::Base));
    }
    const int knob = track.height() - 4 * pixel;
    const bool right = isChecked() != isRightToLeft();
    const int left = right ? track.right() + 1 - 2 * pixel - knob : track.left() + 2 * pixel;
    fillStepped(painter, QRect(left, track.top() + 2 * pixel, knob, knob), steps - 1,
                isChecked() ? palette().color(QPalette::HighlightedText) : edge);
}

FormRadio::FormRadio(const QString& words, QWidget* parent) : QRadioButton(parent) {
    setWords(this, words);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setCursor(Qt::PointingHandCursor);
}

int FormRadio::side() const {
    return std::max(16, evenly(fontMetrics().height()));
}

QSize FormRadio::sizeHint() const {
    const QRect words = fontMetrics().boundingRect(QRect(), Qt::TextShowMnemonic, text());
    return {2 * pixel + side() + unit + words.width(), 2 * pixel + std::max(side(), fontMetrics().height())};
}

void FormRadio::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QRect ring =
        QStyle::visualRect(layoutDirection(), rect(), QRect(pixel, (height() - side()) / 2, side(), side()));
    const int steps = roundingOf(side());
    const QColor highlight = palette().color(QPalette::Highlight);
    if (hasFocus()) {
        fillStepped(painter, ring.adjusted(-pixel, -pixel, pixel, pixel), steps + 1,
                    palette().color(QPalette::WindowText));
    }
    fillStepped(painter, ring, steps, isChecked() ? highlight : palette().color(QPalette::PlaceholderText));
    fillStepped(painter, ring.adjusted(pixel, pixel, -pixel, -pixel), steps - 1,
                palette().color(QPalette::Base));
    if (isChecked()) {
        fillStepped(painter, ring.adjusted(2 * pixel, 2 * pixel, -2 * pixel, -2 * pixel), steps - 1,
                    highlight);
    }
    const QRect words =
        QStyle::visualRect(layoutDirection(), rect(), rect().adjusted(pixel + side() + unit, 0, 0, 0));
    style()->drawItemText(&painter, words,
                          int(QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft | Qt::AlignVCenter)) |
                              Qt::TextShowMnemonic,
                          palette(), isEnabled(), text(), QPalette::WindowText);
}

FormLink::FormLink(QWidget* parent) : QPushButton(parent) {
    setAutoDefault(false);
    setCursor(Qt::PointingHandCursor);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void FormLink::setTarget(const QString& words, const QString& spoken) {
    words_ = words;
    setAccessibleName(spoken);
    setToolTip(words);
    updateGeometry();
    update();
}

QSize FormLink::sizeHint() const {
    return {fontMetrics().horizontalAdvance(words_) + 2 * pixel, fontMetrics().height() + 2 * pixel};
}

QSize FormLink::minimumSizeHint() const {
    return {std::min(sizeHint().width(), 12 * unit), sizeHint().height()};
}

void FormLink::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    QFont underlined = font();
    underlined.setUnderline(true);
    painter.setFont(underlined);
    painter.setPen(palette().color(QPalette::Link));
    const QRect inside = rect().adjusted(pixel, pixel, -pixel, -pixel);
    // Isolated, or a right-to-left line turns a path around.
    const QString words = QStringLiteral("\u2066%1\u2069")
                              .arg(fontMetrics().elidedText(words_, Qt::ElideMiddle, inside.width()));
    painter.drawText(inside, int(Qt::AlignVCenter | Qt::AlignHCenter), words);
    if (hasFocus()) {
        painter.setPen(palette().color(QPalette::WindowText));
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
    }
}

NumberField::NumberField(int least, int most, std::function<QString(int)> unitWords, QWidget* parent)
    : QSpinBox(parent), unit_(std::move(unitWords)) {
    setRange(least, most);
    setKeyboardTracking(false);
    setAccelerated(true);
    setSuffix(unit_(most));
    guardFromWheel(this);
    connect(this, &QSpinBox::valueChanged, this, [this](int value) { setSuffix(unit_(value)); });
}

QSize NumberField::sizeHint() const {
    // One width for all, so that the fields of a form begin and end in line.
    return QSpinBox::sizeHint().expandedTo({22 * fontMetrics().averageCharWidth(), 0});
}

void NumberField::setQuietly(int value) {
    const QSignalBlocker quiet(this);
    setSuffix(unit_(value));
    setValue(value);
}

FormSlider::FormSlider(Range range, std::function<QString(int)> words, QWidget* parent)
    : QWidget(parent), slider_(new QSlider(Qt::Horizontal, this)),
      words_(makeText({}, TextStyle::help, this)), format_(std::move(words)) {
    slider_->setRange(range.least, range.most);
    slider_->setSingleStep(range.step);
    slider_->setPageStep(range.page);
    slider_->setMinimumWidth(12 * unit);
    guardFromWheel(slider_);
    setFocusProxy(slider_);
    words_->setWordWrap(false);
    words_->setAlignment((isRightToLeft() ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignAbsolute |
                         Qt::AlignVCenter);
    // As wide as the widest in use, so that the sliders of a form begin and end in line.
    const QFontMetrics metrics(words_->font());
    words_->setMinimumWidth(
        std::max(10 * metrics.averageCharWidth(), metrics.horizontalAdvance(format_(range.most))));
    showWords(slider_->value());

    auto* line = new QHBoxLayout(this);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(unit);
    line->addWidget(slider_, 1);
    line->addWidget(words_);

    connect(slider_, &QSlider::sliderPressed, this, [this] { dragStart_ = slider_->value(); });
    connect(slider_, &QSlider::valueChanged, this, [this](int value) {
        showWords(value);
        if (slider_->isSliderDown()) {
            Q_EMIT preview(value);
        } else {
            Q_EMIT chosen(value);
        }
    });
    connect(slider_, &QSlider::sliderReleased, this, [this] {
        if (slider_->value() != dragStart_) {
            Q_EMIT chosen(slider_->value());
        }
    });
}

QSize FormSlider::sizeHint() const {
    return QWidget::sizeHint().expandedTo({22 * unit + unit + words_->minimumWidth(), 0});
}

void FormSlider::setQuietly(int value) {
    if (slider_->isSliderDown()) {
        return;
    }
    const QSignalBlocker quiet(slider_);
    slider_->setValue(value);
    showWords(slider_->value());
}

int FormSlider::value() const {
    return slider_->value();
}

void FormSlider::showWords(int value) {
    words_->setText(format_(value));
}

QSize FormButton::sizeHint() const {
    // Some styles leave no room beside the words when the font is large.
    const int words = fontMetrics().boundingRect(QRect(), Qt::TextShowMnemonic, text()).width();
    return QPushButton::sizeHint().expandedTo({words + 4 * unit, 0});
}

FormButtons::FormButtons(QWidget* parent) : QWidget(parent), line_(new QHBoxLayout(this)) {
    line_->setContentsMargins(0, 0, 0, 0);
    line_->setSpacing(unit);
    line_->addStretch();
}

QPushButton* FormButtons::add(const QString& words) {
    auto* button = new FormButton(this);
    setWords(button, words);
    button->setAutoDefault(false);
    line_->insertWidget(line_->count() - 1, button);
    return button;
}

std::vector<int> FormButtons::widths() const {
    std::vector<int> widths;
    for (const QPushButton* button : findChildren<QPushButton*>(Qt::FindDirectChildrenOnly)) {
        if (!button->isHidden()) {
            widths.push_back(button->sizeHint().width());
        }
    }
    return widths;
}

int FormButtons::lineWidth() const {
    const std::vector<int> each = widths();
    return std::accumulate(each.begin(), each.end(), each.empty() ? 0 : unit * (int(each.size()) - 1));
}

QSize FormButtons::sizeHint() const {
    return {lineWidth(), QWidget::sizeHint().height()};
}

QSize FormButtons::minimumSizeHint() const {
    const std::vector<int> each = widths();
    const int widest = each.empty() ? 0 : *std::max_element(each.begin(), each.end());
    return {widest, QWidget::minimumSizeHint().height()};
}

void FormButtons::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    lay();
}

bool FormButtons::event(QEvent* event) {
    if (event->type() == QEvent::LayoutRequest) {
        lay();
    }
    return QWidget::event(event);
}

void FormButtons::lay() {
    const auto direction = lineWidth() > width() ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight;
    if (line_->direction() != direction) {
        line_->setDirection(direction);
    }
}

} // namespace DeskSprites
