#pragma once

#include "app/characters/pump/PumpPresentation.h"
#include "app/desktop/DialoguePalette.h"

#include <QWidget>

namespace DeskSprites {

class PanelText;
class SegmentBar;

/// A small framed word that says how a figure came about.
class PumpTag : public QWidget {
    Q_OBJECT

public:
    explicit PumpTag(QWidget* parent = nullptr);
    void setDialoguePalette(const DialoguePalette& palette);
    void setWord(const QString& word);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QFont tagFont() const;

    DialoguePalette palette_;
    QString word_;
};

/// One agent in the panel: how much is left, how sure that is, and when more comes.
class PumpAgentRow : public QWidget {
    Q_OBJECT

public:
    explicit PumpAgentRow(QWidget* parent = nullptr);
    void setDialoguePalette(const DialoguePalette& palette);
    void showRow(const PumpPresentation::Row& row);

private:
    void applyBarColour();

    DialoguePalette palette_;
    PumpPresentation::Row row_;
    PanelText* name_;
    PumpTag* tag_;
    PanelText* value_;
    SegmentBar* bar_;
    PanelText* usage_;
    PanelText* detail_;
    PanelText* source_;
};

} // namespace DeskSprites
