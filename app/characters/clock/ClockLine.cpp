#include "app/characters/clock/ClockLine.h"

#include "app/characters/clock/ClockWords.h"
#include "app/desktop/PanelMetrics.h"
#include "app/desktop/PixelFrame.h"
#include "app/desktop/PixelMap.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>
#include <array>

namespace DeskSprites {

namespace {

constexpr int pixel = PixelFrame::pixel;
constexpr int markSide = 9 * pixel;
constexpr int side = PanelMetrics::unit; // at either end
constexpr int above = 7;                 // and below
constexpr int wordsLeft = side + markSide + PanelMetrics::unit;
constexpr int gap = 12;         // between the words of either side
constexpr int buttonWidth = 24; // between the city and its time, for what is shown there
constexpr int leastRegion = 72;

using Picture = std::array<std::string_view, 9>;
constexpr Picture house = {"....#....", "...###...", "..#####..", ".#######.", "#########",
                           ".#######.", ".##...##.", ".##...##.", ".##...##."};
constexpr Picture hollowFace = {"..#####..", ".#.....#.", "#...#...#", "#...#...#", "#...###.#",
                                "#.......#", "#.......#", ".#.....#.", "..#####.."};
constexpr Picture fullFace = {"..#####..", ".#######.", "####.####", "####.####", "####...##",
                              "#########", "#########", ".#######.", "..#####.."};
constexpr Picture plus = {".........", ".........", "....#....", "....#....", "..#####..",
                          "....#....", "....#....", ".........", "........."};
constexpr Picture tick = {".........", ".........", "........#", ".......##", "#.....##.",
                          "##...##..", ".##.##...", "..###....", "...#....."};

const Picture& pictureOf(ClockLine::Mark mark) {
    switch (mark) {
    case ClockLine::Mark::home:
        return house;
    case ClockLine::Mark::face:
        return hollowFace;
    case ClockLine::Mark::pinned:
        return fullFace;
    case ClockLine::Mark::add:
        return plus;
    case ClockLine::Mark::added:
        break;
    }
    return tick;
}

struct Fonts {
    explicit Fonts(const QFont& font)
        : city(scaledFont(font, 1.05)), time(scaledFont(font, 1.5)), quiet(scaledFont(font, 0.88)) {
        city.setWeight(QFont::DemiBold);
    }
    int firstLine() const {
        return std::max({QFontMetrics(time).height(), QFontMetrics(city).height(), markSide});
    }
    int firstBaseline() const {
        const QFontMetrics metrics(time);
        return above + (firstLine() - metrics.height()) / 2 + metrics.ascent();
    }
    int secondBaseline() const { return above + firstLine() + QFontMetrics(quiet).ascent(); }

    QFont city;
    QFont time;
    QFont quiet;
};

/// A time in pieces: each digit in a cell as wide as the widest, the rest as it is.
class TimeText {
public:
    TimeText(const QString& text, const QFont& font) : text_(text), metrics_(font) {
        for (char digit = '0'; digit <= '9'; ++digit) {
            digitWidth_ = std::max(digitWidth_, metrics_.horizontalAdvance(QLatin1Char(digit)));
        }
        // Pieces of a script that is joined or runs the other way would not stand as they are read.
        isSplit_ = std::ranges::all_of(text, [](QChar letter) {
            return letter.direction() != QChar::DirR && letter.direction() != QChar::DirAL &&
                   letter.direction() != QChar::DirAN;
        });
    }
    int width() const {
        return walk([](int, const QString&) {});
    }
    void paint(QPainter& painter, const QPoint& baseline) const {
        walk([&](int x, const QString& piece) { painter.drawText(baseline + QPoint(x, 0), piece); });
    }

private:
    template <typename Visit>
    int walk(const Visit& visit) const {
        if (!isSplit_) {
            visit(0, text_);
            return metrics_.horizontalAdvance(text_);
        }
        int x = 0;
        qsizetype begin = 0;
        while (begin < text_.size()) {
            const bool isDigit = text_[begin] >= QLatin1Char('0') && text_[begin] <= QLatin1Char('9');
            qsizetype end = begin + 1;
            while (!isDigit && end < text_.size() && !text_[end].isDigit()) {
                ++end;
            }
            const QString piece = text_.mid(begin, end - begin);
            const int own = metrics_.horizontalAdvance(piece);
            visit(isDigit ? x + (digitWidth_ - own) / 2 : x, piece);
            x += isDigit ? digitWidth_ : own;
            begin = end;
        }
        return x;
    }

    QString text_;
    QFontMetrics metrics_;
    int digitWidth_ = 0;
    bool isSplit_ = true;
};

/// How much room the words of either side have.
struct Room {
    Room(const ClockLine& line, const Fonts& fonts, int width) {
        const int whole = width - wordsLeft - side;
        const int wantedDay = QFontMetrics(fonts.quiet).horizontalAdvance(line.day);
        day = std::clamp(wantedDay, 0, std::max(0, whole - leastRegion - gap));
        time = TimeText(line.time, fonts.time).width();
        city = std::max(0, whole - time - buttonWidth - gap);
        region = std::max(0, whole - day - gap);
    }
    int city = 0;
    int region = 0;
    int time = 0;
    int day = 0;
};

} // namespace

ClockLine::ClockLine(const FellowCore::WorldClockRow& row, Mark shownMark)
    : mark(shownMark), city(QString::fromStdString(row.city)), region(ClockWords::region(row)),
      time(QString::fromStdString(row.time)), day(ClockWords::day(row)) {}

int ClockLine::height(const QFont& font) {
    const Fonts fonts(font);
    const int whole = 2 * above + fonts.firstLine() + QFontMetrics(fonts.quiet).height();
    return whole + whole % 2;
}

QRect ClockLine::markRect(const QRect& within, const QFont& font, Qt::LayoutDirection direction) {
    const Fonts fonts(font);
    const int middle = within.top() + fonts.firstBaseline() - QFontMetrics(fonts.city).capHeight() / 2;
    const int left =
        direction == Qt::RightToLeft ? within.right() + 1 - side - markSide : within.left() + side;
    return {left, middle - markSide / 2, markSide, markSide};
}

QRect ClockLine::buttonRect(const QRect& within, const QFont& font, Qt::LayoutDirection direction) const {
    const Fonts fonts(font);
    const int end = side + TimeText(time, fonts.time).width() + PanelMetrics::halfUnit;
    const int left =
        direction == Qt::RightToLeft ? within.left() + end : within.right() + 1 - end - buttonWidth;
    return {left, within.top() + above, buttonWidth, fonts.firstLine()};
}

bool ClockLine::fits(int width, const QFont& font) const {
    const Fonts fonts(font);
    const Room room(*this, fonts, width);
    return QFontMetrics(fonts.city).horizontalAdvance(city) <= room.city &&
           QFontMetrics(fonts.quiet).horizontalAdvance(region) <= room.region &&
           QFontMetrics(fonts.quiet).horizontalAdvance(day) <= room.day;
}

void ClockLine::paint(QPainter& painter, const QRect& within, const Look& look) const {
    const Fonts fonts(look.font);
    const Room room(*this, fonts, within.width());
    const bool mirrored = look.direction == Qt::RightToLeft;
    const int first = within.top() + fonts.firstBaseline();
    const int second = within.top() + fonts.secondBaseline();
    // The side of the layout, also for a name that runs the other way: it belongs to its neighbours.
    const auto xOf = [&](bool isBeginning, int width) {
        const int start = within.left() + wordsLeft;
        const int end = within.right() + 1 - side - width;
        return mirrored ? within.left() + within.right() + 1 - width - (isBeginning ? start : end)
                        : (isBeginning ? start : end);
    };
    const auto draw = [&](bool isBeginning, int baseline, const QString& text, int width) {
        const QFontMetrics metrics(painter.font());
        // Not asked when all fits, for it measures fractions and would elide what does.
        const bool fits = metrics.horizontalAdvance(text) <= width;
        const QString shown = fits ? text : metrics.elidedText(text, Qt::ElideRight, width);
        painter.drawText(xOf(isBeginning, metrics.horizontalAdvance(shown)), baseline, shown);
    };
    painter.save();
    painter.setLayoutDirection(look.direction);
    const bool isFaint = mark == Mark::face || mark == Mark::add;
    paintPixelMap(painter, markRect(within, look.font, look.direction).topLeft(), pictureOf(mark),
                  isFaint ? mixed(look.palette.paper, look.palette.ink, 0.5) : look.palette.accent, pixel);
    painter.setPen(look.palette.ink);
    painter.setFont(fonts.city);
    draw(true, first, city, room.city);
    painter.setFont(fonts.time);
    painter.setPen(look.isPreview && !look.isStrongGround ? look.palette.accent : look.palette.ink);
    TimeText(time, fonts.time).paint(painter, QPoint(xOf(false, room.time), first));
    painter.setFont(fonts.quiet);
    painter.setPen(look.isStrongGround ? look.palette.ink : look.palette.quietInk());
    draw(true, second, region, room.region);
    draw(false, second, day, room.day);
    painter.restore();
}

} // namespace DeskSprites
