#include "app/characters/munshi/MunshiWords.h"

#include "core/ledger/DayKey.h"

#include <QCoreApplication>
#include <QDate>
#include <QLocale>

namespace DeskSprites::MunshiWords {

namespace {

constexpr qsizetype quotedLength = 40;

QString words(const char* source, int count = -1) {
    return QCoreApplication::translate("Munshi", source, nullptr, count);
}

QDate dateOf(const std::string& key) {
    const auto day = FellowCore::dayFromKey(key);
    return day ? QDate(int(day->year()), int(unsigned(day->month())), int(unsigned(day->day()))) : QDate();
}

} // namespace

QString day(const std::string& key, const std::string& today) {
    const QDate date = dateOf(key);
    if (!date.isValid()) {
        return QString::fromStdString(key);
    }
    const auto ago = FellowCore::daysBetween(key, today);
    if (ago == 0) {
        return words("Today");
    }
    if (ago == 1) {
        return words("Yesterday");
    }
    const bool sameYear = key.substr(0, 4) == today.substr(0, 4);
    return QLocale().toString(date, sameYear ? words("dddd, d MMMM") : words("dddd, d MMMM yyyy"));
}

QString carried(const FellowCore::MunshiItem& item, const std::string& today) {
    if (!item.carriedFrom || *item.carriedFrom == today) {
        return {};
    }
    const QDate date = dateOf(*item.carriedFrom);
    if (FellowCore::daysBetween(*item.carriedFrom, today) == 1) {
        return words("since yesterday");
    }
    const bool sameYear = item.carriedFrom->substr(0, 4) == today.substr(0, 4);
    return words("since %1")
        .arg(date.isValid() ? QLocale().toString(date, sameYear ? words("d MMMM") : words("d MMMM yyyy"))
                            : QString::fromStdString(*item.carriedFrom));
}

QString editable(const FellowCore::MunshiItem& item) {
    const QString text = QString::fromStdString(item.text);
    return item.kind == FellowCore::MunshiItem::Kind::note ? QStringLiteral("- ") + text : text;
}

QString quoted(const FellowCore::MunshiItem& item) {
    QString text = QString::fromStdString(item.text);
    if (text.size() > quotedLength) {
        text = text.left(quotedLength - 1).trimmed() + QChar(0x2026);
    }
    return QChar(0x201C) + text + QChar(0x201D);
}

QString added(const MunshiBook::Added& added) {
    if (added.lines == 0) {
        return words("There was no text to write down.");
    }
    if (added.more) {
        return words("Munshi wrote down the first %1 lines; the rest was left out.").arg(added.lines);
    }
    return added.lines == 1 ? words("Munshi wrote down one line.")
                            : words("Munshi wrote down %1 lines.").arg(added.lines);
}

} // namespace DeskSprites::MunshiWords
