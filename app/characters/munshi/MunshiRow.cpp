#include "app/characters/munshi/MunshiRow.h"

#include "app/characters/munshi/MunshiWords.h"
#include "app/desktop/PanelControls.h"

#include <QContextMenuEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMenu>

namespace DeskSprites {

namespace {

constexpr int buttonSide = 24;

PanelButton* rowButton(const QString& title, PixelIcon icon, QWidget* parent) {
    auto* button = new PanelButton(PanelButton::Shape::icon, parent);
    button->setTitle(title);
    button->setPixelIcon(icon);
    button->setEmphasis(Emphasis::quiet);
    button->setFixedSize(buttonSide, PanelMetrics::controlHeight);
    button->setFocusPolicy(Qt::NoFocus); // the keyboard has keys of its own for them
    QSizePolicy policy = button->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    button->setSizePolicy(policy);
    button->hide();
    return button;
}

} // namespace

MunshiRow::MunshiRow(FellowCore::Uuid id, Hooks hooks, QWidget* parent)
    : PanelRow(parent), id_(id), hooks_(std::move(hooks)), line_(new PanelCheckBox(this)),
      edit_(rowButton(tr("Edit"), PixelIcon::edit, this)),
      delete_(rowButton(tr("Delete"), PixelIcon::close, this)) {
    auto* line = new QHBoxLayout(this);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(0);
    line->addWidget(line_, 1);
    line->addWidget(edit_, 0, Qt::AlignTop);
    line->addWidget(delete_, 0, Qt::AlignTop);
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    line_->setStrikesChecked(true);
    line_->installEventFilter(this);
    connect(line_, &QAbstractButton::clicked, this, [this](bool done) { hooks_.check(done); });
    connect(edit_, &QAbstractButton::clicked, this, &MunshiRow::beginEdit);
    connect(delete_, &QAbstractButton::clicked, this, [this] { hooks_.remove(); });
}

void MunshiRow::setDialoguePalette(const DialoguePalette& palette) {
    palette_ = palette;
    line_->setDialoguePalette(palette);
    edit_->setDialoguePalette(palette);
    delete_->setDialoguePalette(palette);
    if (editor_) {
        editor_->setDialoguePalette(palette);
    }
}

void MunshiRow::showItem(const FellowCore::MunshiItem& item, const std::string& today) {
    const bool isNote = item.kind == FellowCore::MunshiItem::Kind::note;
    line_->setMark(isNote ? PanelCheckBox::Mark::dash : PanelCheckBox::Mark::box);
    line_->setTitle(QString::fromStdString(item.text));
    line_->setDetail(MunshiWords::carried(item, today));
    line_->setChecked(item.done);
    if (!isEditing()) {
        editable_ = MunshiWords::editable(item);
    }
}

QWidget* MunshiRow::stop() const {
    return line_;
}

bool MunshiRow::dragsFrom(const QPoint& place) const {
    return line_->wordsRect().contains(place);
}

void MunshiRow::showDragging(bool isDragging) {
    dragging_ = isDragging;
    showButtons();
}

void MunshiRow::beginEdit() {
    if (editor_) {
        return;
    }
    editor_ = new PanelField(PanelField::Frame::bare, this);
    editor_->setDialoguePalette(palette_);
    editor_->setAccessibleName(tr("Edit line"));
    editor_->setAccessibleDescription(tr("Enter keeps it, Escape gives up."));
    editor_->setText(editable_);
    editor_->installEventFilter(this);
    placeEditor();
    editor_->show();
    editor_->setFocus();
    editor_->selectAll();
    showButtons();
}

void MunshiRow::placeEditor() {
    if (editor_) {
        constexpr int inset = 2; // of a field's text, so that the words stay where they stood
        const QRect words = line_->wordsRect();
        const int height = std::max(words.height(), editor_->sizeHint().height());
        editor_->setGeometry(QRect(line_->mapTo(this, words.topLeft()), QSize(words.width(), height))
                                 .translated(-inset, -inset));
    }
}

void MunshiRow::endEdit(bool keep) {
    if (!editor_) {
        return;
    }
    PanelField* const editor = std::exchange(editor_, nullptr);
    const QString text = editor->text();
    const bool had = editor->hasFocus();
    editor->removeEventFilter(this);
    if (had) {
        line_->setFocus(Qt::ShortcutFocusReason);
    }
    editor->hide();
    editor->deleteLater();
    showButtons();
    const auto ended = hooks_.editEnded;
    if (keep && text != editable_ && !text.trimmed().isEmpty()) {
        hooks_.rewrite(text);
    }
    ended(); // the row may be gone by now
}

void MunshiRow::showButtons() {
    const bool shown = underMouse() && !editor_ && !dragging_;
    edit_->setVisible(shown);
    delete_->setVisible(shown);
}

bool MunshiRow::eventFilter(QObject* watched, QEvent* event) {
    if (watched == editor_) {
        return editorEvent(*event);
    }
    if (watched != line_) {
        return PanelRow::eventFilter(watched, event);
    }
    if (event->type() == QEvent::KeyPress) {
        const auto* key = static_cast<QKeyEvent*>(event);
        return lineKey(key->key(), key->modifiers() & ~Qt::KeypadModifier);
    }
    if (event->type() == QEvent::MouseButtonDblClick &&
        dragsFrom(static_cast<QMouseEvent*>(event)->position().toPoint())) {
        beginEdit();
        return true;
    }
    return false;
}

bool MunshiRow::lineKey(int key, Qt::KeyboardModifiers modifiers) {
    if ((key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_F2) && modifiers == Qt::NoModifier) {
        beginEdit();
    } else if (key == Qt::Key_Delete || key == Qt::Key_Backspace) {
        hooks_.remove();
    } else {
        return false;
    }
    return true;
}

bool MunshiRow::editorEvent(QEvent& event) {
    if (event.type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent&>(event).key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Escape) {
            endEdit(key != Qt::Key_Escape);
            return true;
        }
    }
    if (event.type() == QEvent::FocusOut) {
        const Qt::FocusReason reason = static_cast<QFocusEvent&>(event).reason();
        // Another window, or the editor's own menu, is no sign that the writing is over.
        if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason) {
            QMetaObject::invokeMethod(
                this, [this] { endEdit(true); }, Qt::QueuedConnection);
        }
    }
    return false;
}

void MunshiRow::enterEvent(QEnterEvent* event) {
    PanelRow::enterEvent(event);
    showButtons();
}

void MunshiRow::leaveEvent(QEvent* event) {
    PanelRow::leaveEvent(event);
    showButtons();
}

void MunshiRow::resizeEvent(QResizeEvent* event) {
    PanelRow::resizeEvent(event);
    placeEditor();
}

void MunshiRow::contextMenuEvent(QContextMenuEvent* event) {
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(tr("Edit"), this, &MunshiRow::beginEdit);
    menu->addAction(tr("Move up"), this, [this] { hooks_.move(-1); });
    menu->addAction(tr("Move down"), this, [this] { hooks_.move(1); });
    menu->addSeparator();
    menu->addAction(tr("Delete"), this, [this] { hooks_.remove(); });
    const bool byKey = event->reason() == QContextMenuEvent::Keyboard;
    menu->popup(byKey ? line_->mapToGlobal(line_->wordsRect().bottomLeft()) : event->globalPos());
}

} // namespace DeskSprites
