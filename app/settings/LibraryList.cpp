#include "app/settings/LibraryList.h"

#include "app/desktop/PixelFrame.h"
#include "app/settings/FormKit.h"
#include "app/settings/LibraryPalette.h"
#include "app/settings/Portrait.h"

#include <QCoreApplication>
#include <QPainter>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QStyledItemDelegate>

#include <algorithm>

namespace DeskSprites {

namespace {

constexpr int unit = FormMetrics::unit;
constexpr int smallestPortrait = 6 * unit;

enum Role { idRole = Qt::UserRole, nameRole, roleRole, markRole, activeRole, accentRole, artRole };

QString text(const char* source) {
    return QCoreApplication::translate("LibraryList", source);
}

/// The portraits grow with the words beside them.
int portraitSide(const QFont& font) {
    return std::max(smallestPortrait, 2 * QFontMetrics(font).height() + unit);
}

/// Draws three sliders on the art's pixel grid, for the pane that has no character.
void paintGeneralGlyph(QPainter& painter, const QRect& box, const QColor& line, const QColor& knob) {
    constexpr int pixel = 2;
    const int left = box.center().x() - 5 * pixel;
    const int top = box.center().y() - 4 * pixel;
    constexpr int knobs[] = {6, 2, 5};
    for (int row = 0; row < 3; ++row) {
        const int y = top + row * 4 * pixel;
        painter.fillRect(left, y, 11 * pixel, pixel, line);
        painter.fillRect(left + knobs[row] * pixel, y - pixel, 2 * pixel, 3 * pixel, knob);
    }
}

class LibraryDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        const int side = portraitSide(option.font);
        return {10 * unit,
                isCharacter(index) ? side + 2 * unit : QFontMetrics(option.font).height() + 4 * unit};
    }

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        painter->save();
        if (!isCharacter(index)) {
            const QRect line(option.rect.left() + 2 * unit, option.rect.top(), option.rect.width() - 4 * unit,
                             1);
            painter->fillRect(line, option.palette.color(QPalette::Mid));
        }
        const QRect card = option.rect.adjusted(unit, unit / 2, -unit, -unit / 2);
        paintCard(*painter, option, card);
        paintContent(*painter, option, index, card.adjusted(unit, unit / 2, -unit, -unit / 2));
        painter->restore();
    }

private:
    static bool isCharacter(const QModelIndex& index) {
        return index.data(idRole).toString().toStdString() != LibraryState::generalPane;
    }

    static void paintCard(QPainter& painter, const QStyleOptionViewItem& option, const QRect& card) {
        constexpr int pixel = PixelFrame::pixel;
        const bool selected = option.state.testFlag(QStyle::State_Selected);
        const QColor highlight = option.palette.color(QPalette::Highlight);
        QRect inside = card;
        if (selected && option.state.testFlag(QStyle::State_HasFocus)) {
            fillStepped(painter, card, 2, highlight);
            inside.adjust(pixel, pixel, -pixel, -pixel);
        }
        if (selected || option.state.testFlag(QStyle::State_MouseOver)) {
            fillStepped(painter, inside, inside == card ? 2 : 1, option.palette.color(QPalette::Base));
        }
        if (selected) {
            const QRect bar(card.left(), card.top() + unit, 2 * pixel, card.height() - 2 * unit);
            painter.fillRect(mirrored(option, card, bar), highlight);
        }
    }

    static QRect mirrored(const QStyleOptionViewItem& option, const QRect& within, const QRect& rect) {
        return QStyle::visualRect(option.direction, within, rect);
    }

    static void paintContent(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index,
                             const QRect& within) {
        const QRect face(within.left(), within.top(), portraitSide(option.font), within.height());
        const QRect words(face.right() + 1 + unit, within.top(), within.right() - face.right() - unit,
                          within.height());
        const QColor ink = option.palette.color(QPalette::Text);
        const QColor faint = option.palette.color(QPalette::PlaceholderText);
        if (isCharacter(index)) {
            paintPortrait(painter, index.data(artRole).value<QImage>(), mirrored(option, within, face));
        } else {
            paintGeneralGlyph(painter, mirrored(option, within, face), faint, ink);
        }
        paintWords(painter, option, index, mirrored(option, within, words), ink, faint);
    }

    static void paintWords(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index,
                           const QRect& box, const QColor& ink, const QColor& faint) {
        QFont nameFont = option.font;
        nameFont.setWeight(QFont::DemiBold);
        const QFontMetrics nameMetrics(nameFont);
        const QFontMetrics metrics(option.font);
        const QString role = index.data(roleRole).toString();
        const int height = nameMetrics.height() + (role.isEmpty() ? 0 : metrics.height());
        QRect name(box.left(), box.center().y() - height / 2, box.width(), nameMetrics.height());
        const QRect below = name.translated(0, nameMetrics.height());

        const int mark = paintMark(painter, option, index, name, faint);
        name = mirrored(option, name, name.adjusted(0, 0, -mark, 0));
        const int start = int(QStyle::visualAlignment(option.direction, Qt::AlignLeft | Qt::AlignVCenter));
        painter.setFont(nameFont);
        painter.setPen(ink);
        painter.drawText(
            name, start,
            nameMetrics.elidedText(index.data(nameRole).toString(), Qt::ElideRight, name.width()));
        painter.setFont(option.font);
        painter.setPen(faint);
        painter.drawText(below, start, metrics.elidedText(role, Qt::ElideRight, below.width()));
    }

    /// Returns the width it took. The words give way when the name needs the room; the square stays.
    static int paintMark(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index,
                         const QRect& line, const QColor& faint) {
        const QString mark = index.data(markRole).toString();
        if (mark.isEmpty()) {
            return 0;
        }
        constexpr int side = 8;
        QFont font = option.font;
        if (font.pointSizeF() > 0) {
            font.setPointSizeF(font.pointSizeF() * 0.85);
        }
        const QFontMetrics metrics(font);
        const int wordsWidth = metrics.horizontalAdvance(mark) + unit / 2;
        QFont nameFont = option.font;
        nameFont.setWeight(QFont::DemiBold);
        const int nameWidth = QFontMetrics(nameFont).horizontalAdvance(index.data(nameRole).toString());
        const bool withWords = nameWidth + wordsWidth + side + unit <= line.width();
        const int width = side + (withWords ? wordsWidth : 0);
        const QRect place(line.right() + 1 - width, line.top(), width, line.height());

        const QRect square(place.right() + 1 - side, place.center().y() - side / 2 + 1, side, side);
        paintSquare(painter, option, index, mirrored(option, line, square));
        if (withWords) {
            painter.setFont(font);
            painter.setPen(faint);
            painter.drawText(mirrored(option, line, place.adjusted(0, 0, -side - unit / 2, 0)),
                             int(Qt::AlignCenter), mark);
        }
        return width + unit / 2;
    }

    static void paintSquare(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index,
                            const QRect& square) {
        const QColor ground = option.palette.color(QPalette::Base);
        const QColor accent = index.data(accentRole).value<QColor>();
        const QColor colour = accent.isValid() ? LibraryPalette::readable(accent, ground, 3)
                                               : option.palette.color(QPalette::Highlight);
        painter.fillRect(square, colour);
        // A ring for who is there, a full square for who is active.
        if (!index.data(activeRole).toBool()) {
            painter.fillRect(square.adjusted(2, 2, -2, -2), ground);
        }
    }
};

/// How a character stands, in a word; empty when it is not on the desktop.
QString desktopMark(const LibraryDesktop& desktop, const std::string& id) {
    if (!desktop.isOnScreen(id)) {
        return {};
    }
    if (desktop.visibility == DesktopVisibility::hidden) {
        return text("Hidden");
    }
    return desktop.active == id ? text("Active") : text("On screen");
}

QString spokenName(const LibraryEntry& entry, const LibraryDesktop& desktop) {
    QStringList words{entry.name};
    if (!entry.role.isEmpty()) {
        words << entry.role;
    }
    if (desktop.isOnScreen(entry.id)) {
        const bool hidden = desktop.visibility == DesktopVisibility::hidden;
        words << (hidden ? text("hidden") : text("on screen"));
        if (desktop.active == entry.id) {
            words << text("active");
        }
    }
    return words.join(QStringLiteral(", "));
}

void fill(QListWidgetItem& item, const LibraryEntry& entry, const LibraryDesktop& desktop) {
    const QString spoken = spokenName(entry, desktop);
    item.setData(idRole, QString::fromStdString(entry.id));
    item.setData(nameRole, entry.name);
    item.setData(roleRole, entry.role);
    item.setData(markRole, desktopMark(desktop, entry.id));
    item.setData(activeRole, desktop.active == entry.id);
    item.setData(accentRole, entry.accent);
    item.setData(artRole, entry.portrait);
    item.setText(entry.name);
    item.setData(Qt::AccessibleTextRole, spoken);
    item.setToolTip(spoken);
}

} // namespace

LibraryList::LibraryList(QWidget* parent) : QListWidget(parent) {
    setAccessibleName(tr("Characters and settings"));
    verticalScrollBar()->setAccessibleName(tr("Scroll"));
    setItemDelegate(new LibraryDelegate(this));
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(ScrollPerPixel);
    setViewportMargins(0, unit, 0, unit);
    setMouseTracking(true);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::AlternateBase);
    viewport()->setBackgroundRole(QPalette::AlternateBase);
    connect(this, &QListWidget::currentItemChanged, this, [this](const QListWidgetItem* item) {
        if (item != nullptr) {
            Q_EMIT paneChosen(item->data(idRole).toString());
        }
    });
}

void LibraryList::showState(const LibraryState& state) {
    const QSignalBlocker quiet(this);
    const std::string wanted = chosen();
    const int rows = int(state.roster.size()) + 1;
    while (count() > rows) {
        delete takeItem(count() - 1);
    }
    while (count() < rows) {
        addItem(QString());
    }
    for (int row = 0; row + 1 < rows; ++row) {
        fill(*item(row), state.roster[std::size_t(row)], state.desktop);
    }

    QListWidgetItem& general = *item(rows - 1);
    for (const int role : {int(roleRole), int(markRole), int(activeRole), int(artRole)}) {
        general.setData(role, {});
    }
    general.setData(idRole, QString::fromStdString(LibraryState::generalPane));
    general.setData(nameRole, tr("General"));
    general.setText(tr("General"));
    general.setData(Qt::AccessibleTextRole, tr("General"));
    general.setToolTip(QString());
    if (!choose(wanted)) {
        setCurrentRow(-1);
    }
}

bool LibraryList::choose(const std::string& pane) {
    const QSignalBlocker quiet(this);
    for (int row = 0; row < count(); ++row) {
        if (item(row)->data(idRole).toString().toStdString() == pane) {
            setCurrentRow(row);
            return true;
        }
    }
    return false;
}

std::string LibraryList::chosen() const {
    const QListWidgetItem* item = currentItem();
    return item == nullptr ? std::string() : item->data(idRole).toString().toStdString();
}

QSize LibraryList::sizeHint() const {
    return {portraitSide(font()) + std::max(21 * unit, 16 * fontMetrics().averageCharWidth()) + 5 * unit,
            40 * unit};
}

QSize LibraryList::minimumSizeHint() const {
    return {sizeHint().width(), 20 * unit};
}

} // namespace DeskSprites
