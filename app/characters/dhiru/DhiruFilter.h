#pragma once

#include <QString>

#include <initializer_list>
#include <string>
#include <vector>

namespace DeskSprites {

/// What the user typed to find lines: each word has to occur in one of a line's texts, whatever the case and
/// the accents.
class DhiruFilter {
public:
    explicit DhiruFilter(const QString& typed);

    bool isEmpty() const { return wanted_.empty(); }
    bool matches(std::initializer_list<QString> texts) const;

private:
    std::vector<std::string> wanted_;
};

} // namespace DeskSprites
