#include "app/characters/clock/ClockWords.h"

#include <QCoreApplication>
#include <QStringList>

namespace DeskSprites::ClockWords {

namespace {

QString words(const char* source) {
    return QCoreApplication::translate("Clock", source);
}

QString text(const std::string& utf8) {
    return QString::fromStdString(utf8);
}

QString joined(QStringList parts, const QString& between) {
    parts.removeAll(QString());
    return parts.join(between);
}

/// Of its own direction, so that the sign stays before the digits in a line that runs the other way.
QString isolated(const QString& difference) {
    constexpr char16_t leftToRight = 0x2066;
    constexpr char16_t end = 0x2069;
    return difference.isEmpty() ? QString() : QChar(leftToRight) + difference + QChar(end);
}

/// What lies around the city, without its own name again: "Japan" for Tokyo in Tokyo.
QString around(const FellowCore::WorldClockRow& row) {
    const QString region = text(row.region);
    const QString city = text(row.city);
    const QString again = city + QStringLiteral(", ");
    return region == city ? QString() : region.startsWith(again) ? region.mid(again.size()) : region;
}

} // namespace

QString place(const FellowCore::WorldClockRow& row) {
    return joined({text(row.city), around(row)}, QStringLiteral(", "));
}

QString region(const FellowCore::WorldClockRow& row) {
    return joined({row.isHome ? words("Home") : QString(), around(row)}, QStringLiteral(" · "));
}

QString day(const FellowCore::WorldClockRow& row) {
    return joined({text(row.dayLabel), row.isHome ? QString() : isolated(text(row.difference))},
                  QStringLiteral(" · "));
}

QString spoken(const FellowCore::WorldClockRow& row) {
    return joined({text(row.time), text(row.dayLabel),
                   row.isHome ? words("Home") : text(row.spokenDifference),
                   row.isPinned ? words("A face of the tower") : QString()},
                  QStringLiteral(". "));
}

} // namespace DeskSprites::ClockWords
