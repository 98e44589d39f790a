#pragma once

#include "app/desktop/DialoguePalette.h"

#include <QLabel>

namespace DeskSprites {

/// A badge such as "24:59" in pixel digits; assistive tools read its words instead.
class BadgeView : public QLabel {
    Q_OBJECT

public:
    explicit BadgeView(QWidget* parent = nullptr);

    void setDialoguePalette(const DialoguePalette& palette);
    void setBadge(const QString& badge, const QString& spoken);
    QString badge() const { return badge_; }
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    DialoguePalette palette_;
    QString badge_;
};

} // namespace DeskSprites
