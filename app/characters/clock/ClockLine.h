#pragma once

#include "app/desktop/DialoguePalette.h"
#include "core/worldclock/WorldClockPresentation.h"

#include <QFont>
#include <QRect>
#include <QString>

class QPainter;

namespace DeskSprites {

/// The picture of one clock: a mark, the city over its region, and at the other side the time over its day.
/// Digits are equally wide, so that nothing shakes when they change. What does not fit is elided.
struct ClockLine {
    /// What stands before the words.
    enum class Mark {
        home,
        face,   ///< not on the tower, but could be
        pinned, ///< a face of the tower
        add,    ///< not on the list, but could be
        added,
    };
    /// What the line is painted on, and whether its time is another one than now's.
    struct Look {
        QFont font;
        DialoguePalette palette;
        Qt::LayoutDirection direction = Qt::LeftToRight;
        bool isStrongGround = false; ///< on which quiet ink cannot be read
        bool isPreview = false;
    };

    Mark mark = Mark::face;
    QString city;
    QString region;
    QString time;
    QString day;

    ClockLine() = default;
    ClockLine(const FellowCore::WorldClockRow& row, Mark shownMark);

    static int height(const QFont& font);
    static QRect markRect(const QRect& within, const QFont& font, Qt::LayoutDirection direction);
    /// Where a button can stand, before the time.
    QRect buttonRect(const QRect& within, const QFont& font, Qt::LayoutDirection direction) const;
    /// Whether all words have room.
    bool fits(int width, const QFont& font) const;
    void paint(QPainter& painter, const QRect& within, const Look& look) const;

    friend bool operator==(const ClockLine&, const ClockLine&) = default;
};

} // namespace DeskSprites
