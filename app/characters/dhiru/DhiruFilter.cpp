#include "app/characters/dhiru/DhiruFilter.h"

#include "core/base/Text.h"

#include <QStringList>

#include <algorithm>

namespace DeskSprites {

DhiruFilter::DhiruFilter(const QString& typed) {
    for (const QString& word : typed.simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        wanted_.push_back(FellowCore::folded(word.toStdString()));
    }
}

bool DhiruFilter::matches(std::initializer_list<QString> texts) const {
    if (isEmpty()) {
        return true;
    }
    std::string line; // a line break parts the texts, which no word holds
    for (const QString& text : texts) {
        line += FellowCore::folded(text.toStdString()) + '\n';
    }
    return std::ranges::all_of(
        wanted_, [&line](const std::string& word) { return line.find(word) != std::string::npos; });
}

} // namespace DeskSprites
