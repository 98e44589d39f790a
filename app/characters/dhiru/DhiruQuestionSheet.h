#pragma once

#include "app/characters/dhiru/DhiruQuestion.h"
#include "app/desktop/DialoguePalette.h"

#include <QTimer>
#include <QWidget>

namespace DeskSprites {

class PanelButton;
class PanelText;

/// The question before something is ended. The focus begins on the button that changes nothing, and a double
/// click that opened the question never answers it.
class DhiruQuestionSheet : public QWidget {
    Q_OBJECT

public:
    explicit DhiruQuestionSheet(QWidget* parent = nullptr);

    /// The question was answered, or left; the sheet is hidden by then.
    std::function<void(const DhiruQuestion& question)> onClosed;

    void setDialoguePalette(const DialoguePalette& palette);
    void ask(const DhiruQuestion& question);
    /// What it is about is not there any more: says so, and offers nothing but to close.
    void tellGone();
    /// Hides it with nothing done.
    void keep();
    bool isAsking() const { return question_.has_value(); }
    const DhiruQuestion& question() const { return *question_; }
    PanelButton& answerButton() const { return *answer_; }
    PanelButton& keepButton() const { return *keep_; }
    QString said() const;

private:
    void answer();
    DhiruQuestion close();

    std::optional<DhiruQuestion> question_;
    PanelText* title_;
    PanelText* details_;
    PanelText* body_;
    PanelButton* keep_;
    PanelButton* answer_;
    QWidget* rule_;
    QTimer settle_;
    bool gone_ = false;
};

} // namespace DeskSprites
