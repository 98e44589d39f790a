#pragma once

#include "app/desktop/QuickAction.h"

#include <QColor>

#include <vector>

namespace DeskSprites {

/// The size slider with its two buttons. Heights are points of visible art.
struct SizeRow {
    int height = 320;
    int minimum = 140;
    int maximum = 600;
    std::function<void()> onBegin;      ///< the user took hold of the slider, or began to step it with keys
    std::function<void(int)> onRequest; ///< a height asked for, between `onBegin` and `onEnd`
    std::function<void()> onEnd;
    std::function<void()> onSmaller;
    std::function<void()> onLarger;
};

/// Everything a `QuickActionsPanel` shows.
struct QuickActionsContent {
    QString name;
    QString role;
    QString status;
    std::optional<QString> badge;     ///< drawn in `PixelDigits`, such as "24:59"
    QString badgeSpoken;              ///< the badge in words, such as "24 minutes 59 seconds remaining"
    std::optional<double> progress;   ///< 0...1, a thin bar of segments
    std::optional<QColor> lamp;       ///< a small dot beside the status
    std::vector<QuickAction> actions; ///< primary first
    std::vector<QuickAction> footer;  ///< Hide, Swap, Settings: an icon above a word
    std::optional<SizeRow> size;
    /// Shown between the status and the actions. The panel takes it as a child, and deletes it when another
    /// content names another widget or none.
    QWidget* extra = nullptr;
};

} // namespace DeskSprites
