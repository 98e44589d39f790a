#include "app/characters/dhiru/DhiruWords.h"

#include "core/base/Text.h"

#include <QCoreApplication>
#include <QLocale>

#include <cmath>

namespace DeskSprites::DhiruWords {

using FellowCore::DevWatchProcessListState;

namespace {

QString serverCount(const DevWatchView& view) {
    if (view.list != DevWatchProcessListState::available) {
        return plain(emptyTitle(view.list));
    }
    const auto count = static_cast<int>(view.servers.size());
    if (count == 0) {
        return words("No servers");
    }
    return count == 1 ? words("1 server") : words("%1 servers").arg(QLocale().toString(count));
}

} // namespace

QString words(const char* source) {
    return QCoreApplication::translate("Dhiru", source);
}

QString clean(std::string_view text) {
    return QString::fromStdString(FellowCore::trimmed(FellowCore::singleLine(text)));
}

QString plain(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QString percent(double value) {
    return words("%1%").arg(QLocale().toString(std::lround(value)));
}

QString status(const DevWatchView& view) {
    const auto reason = FellowCore::DevWatchPresentation::reason(view.activity);
    return reason ? plain(*reason) : serverCount(view);
}

QString machine(const DevWatchView& view) {
    if (view.list != DevWatchProcessListState::available) {
        return plain(emptyTitle(view.list));
    }
    const auto reason = FellowCore::DevWatchPresentation::reason(view.activity);
    const QString said = reason ? plain(*reason) : words("All calm");
    return view.systemCPUPercent ? words("CPU %1 · %2").arg(percent(*view.systemCPUPercent), said) : said;
}

} // namespace DeskSprites::DhiruWords
