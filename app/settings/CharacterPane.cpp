#include "app/settings/CharacterPane.h"

#include "app/settings/LibraryPalette.h"
#include "app/settings/Portrait.h"
#include "app/settings/TimerForm.h"
#include "core/art/DesktopSize.h"

#include <QBoxLayout>
#include <QLocale>
#include <QPainter>
#include <QPushButton>

#include <cmath>

namespace DeskSprites {

namespace {

constexpr int unit = FormMetrics::unit;

/// The character's colour as a thin line under its name.
class AccentLine : public QWidget {
public:
    explicit AccentLine(QWidget* parent) : QWidget(parent) { setFixedHeight(2); }
    void setColour(const QColor& colour) {
        colour_ = colour;
        update();
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.fillRect(rect(), LibraryPalette::readable(colour_, palette().color(QPalette::Window), 3));
    }

private:
    QColor colour_;
};

template <typename... Values>
void call(const std::function<void(const std::string&, Values...)>& action, const std::string& id,
          Values... values) {
    if (action) {
        action(id, values...);
    }
}

QString nameOf(const LibraryState& state, const std::string& id) {
    const LibraryEntry* entry = state.entry(id);
    return entry == nullptr ? QString::fromStdString(id) : entry->name;
}

} // namespace

CharacterPane::CharacterPane(std::string id, const LibraryActions& actions, const SettingsFormFactory& forms,
                             QWidget* parent)
    : LibraryPane(parent), id_(std::move(id)), actions_(actions) {
    addHeader();
    addSize();
    addTimer();
    addHabits();
    addOwnForm(forms);
}

void CharacterPane::addHeader() {
    auto* header = new QWidget(column());
    portrait_ = new PortraitView(header);
    name_ = makeText({}, TextStyle::title, header);
    role_ = makeText({}, TextStyle::help, header);
    place_ = makeText({}, TextStyle::body, header);
    others_ = makeText({}, TextStyle::help, header);
    refusal_ = makeText(tr("Hide a character to make room."), TextStyle::help, header);
    buttons_ = new FormButtons(header);
    bringOut_ = buttons_->add(tr("Bring out"));
    select_ = buttons_->add(tr("Select"));
    hide_ = buttons_->add(tr("Hide"));
    connect(bringOut_, &QPushButton::clicked, this, [this] { call(actions_.onBringOut, id_); });
    connect(select_, &QPushButton::clicked, this, [this] { call(actions_.onSelect, id_); });
    connect(hide_, &QPushButton::clicked, this, [this] { call(actions_.onHide, id_); });

    auto* words = new QVBoxLayout;
    words->setSpacing(0);
    words->addStretch();
    words->addWidget(name_);
    words->addWidget(role_);
    words->addSpacing(unit + unit / 2);
    words->addWidget(place_);
    words->addWidget(others_);
    words->addSpacing(unit + unit / 2);
    words->addWidget(buttons_);
    words->addSpacing(unit / 2);
    words->addWidget(refusal_);
    words->addStretch();
    header_ = new QHBoxLayout(header);
    header_->setContentsMargins(0, 0, 0, 0);
    header_->setSpacing(3 * unit);
    header_->addWidget(portrait_, 0, Qt::AlignTop | Qt::AlignLeading);
    header_->addLayout(words, 1);
    add(header);
    accentLine_ = new AccentLine(column());
    add(accentLine_);
}

void CharacterPane::resizeEvent(QResizeEvent* event) {
    LibraryPane::resizeEvent(event);
    const int wanted = portrait_->sizeHint().width() + 24 * fontMetrics().averageCharWidth() + 9 * unit;
    header_->setDirection(viewport()->width() < wanted ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
}

void CharacterPane::addSize() {
    FormSection* section = addSection(tr("Size"));
    const FormSlider::Range range{int(FellowCore::DesktopSize::smallestHeight),
                                  int(FellowCore::DesktopSize::largestHeight), 4, 40};
    size_ = section->addSlider(tr("Height"), range, [](int points) { return tr("%1 points").arg(points); });
    connect(size_, &FormSlider::preview, this,
            [this](int height) { call(actions_.onSizePreview, id_, double(height)); });
    connect(size_, &FormSlider::chosen, this,
            [this](int height) { call(actions_.onSizeChosen, id_, double(height)); });

    auto* steps = new FormButtons(section);
    QPushButton* smaller = steps->add(tr("Smaller"));
    QPushButton* larger = steps->add(tr("Larger"));
    connect(smaller, &QPushButton::clicked, this,
            [this] { call(actions_.onSizeStep, id_, SizeStep::smaller); });
    connect(larger, &QPushButton::clicked, this,
            [this] { call(actions_.onSizeStep, id_, SizeStep::larger); });
    section->addRow(tr("One step"), steps, tr("A step keeps the pixels of the art whole."));
}

void CharacterPane::addTimer() {
    timer_ = new TimerForm(
        [this](const FellowCore::TimerSettings& settings) {
            if (actions_.onTimerSettings) {
                actions_.onTimerSettings(id_, settings);
            }
        },
        column());
    add(timer_);
}

void CharacterPane::addHabits() {
    habits_ = addSection(tr("Sound and look"));
    sounds_ = habits_->addSwitch(tr("Sounds"));
    volume_ = habits_->addSlider(tr("Volume"), {0, 100, 5, 10},
                                 [](int percent) { return tr("%1 %").arg(percent); });
    mirrored_ = habits_->addSwitch(tr("Face the other way"));
    reducedMotion_ =
        habits_->addSwitch(tr("Reduced motion"), tr("Keeps still, whatever the system's own setting says."));
    connect(sounds_, &QCheckBox::toggled, this,
            [this](bool on) { call(actions_.onCharacterSounds, id_, on); });
    connect(volume_, &FormSlider::chosen, this,
            [this](int percent) { call(actions_.onCharacterVolume, id_, percent / 100.0); });
    connect(mirrored_, &QCheckBox::toggled, this, [this](bool on) { call(actions_.onMirrored, id_, on); });
    connect(reducedMotion_, &QCheckBox::toggled, this,
            [this](bool on) { call(actions_.onReducedMotion, id_, on); });
}

void CharacterPane::addOwnForm(const SettingsFormFactory& forms) {
    if (QWidget* form = forms ? forms(id_, column()) : nullptr) {
        add(form);
    }
}

void CharacterPane::showState(const LibraryState& state) {
    const LibraryEntry* entry = state.entry(id_);
    if (entry == nullptr) {
        return;
    }
    const QColor accent = entry->accent.isValid() ? entry->accent : palette().color(QPalette::Highlight);
    portrait_->setArt(entry->portrait);
    static_cast<AccentLine*>(accentLine_)->setColour(accent);
    name_->setText(entry->name);
    role_->setText(entry->role);
    setAccessibleName(entry->name);
    showPlace(state, *entry);
    showButtons(state);

    const auto settings = state.characters.find(id_);
    showSettings(settings == state.characters.end() ? CharacterSettings{} : settings->second);
    const auto timer = state.timers.find(id_);
    timer_->setVisible(entry->hasTimer);
    timer_->showSettings(timer == state.timers.end() ? FellowCore::TimerSettings{} : timer->second);
}

void CharacterPane::showPlace(const LibraryState& state, const LibraryEntry& entry) {
    const LibraryDesktop& desktop = state.desktop;
    const bool hidden = desktop.visibility == DesktopVisibility::hidden;
    QStringList others;
    for (const std::string& id : desktop.onScreen) {
        if (id != id_) {
            others << nameOf(state, id);
        }
    }
    if (!desktop.isAvailable(id_)) {
        place_->setText(tr("%1 is not available here.").arg(entry.name));
    } else if (!desktop.isOnScreen(id_)) {
        place_->setText(tr("Not on the desktop."));
    } else if (hidden) {
        place_->setText(tr("Hidden for now."));
    } else {
        place_->setText(desktop.active == id_ ? tr("On the desktop, and active.") : tr("On the desktop."));
    }

    const QString names = QLocale().createSeparatedList(others);
    others_->setVisible(!others.isEmpty());
    if (desktop.isOnScreen(id_)) {
        others_->setText(tr("Together with %1.").arg(names));
    } else {
        others_->setText(tr("On the desktop now: %1.").arg(names));
    }
}

void CharacterPane::showButtons(const LibraryState& state) {
    const LibraryDesktop& desktop = state.desktop;
    const bool available = desktop.isAvailable(id_);
    const bool there = desktop.isOnScreen(id_);
    const bool hidden = desktop.visibility == DesktopVisibility::hidden;
    const bool refused = available && !there && desktop.isFull();

    bringOut_->setVisible(available && !there);
    bringOut_->setEnabled(!refused);
    bringOut_->setAccessibleDescription(refused ? refusal_->text() : QString());
    refusal_->setVisible(refused);

    const bool swaps = !there && !desktop.active.empty();
    select_->setVisible(available && (there ? hidden || desktop.active != id_ : swaps));
    if (swaps) {
        setWords(select_, tr("Swap with %1").arg(nameOf(state, desktop.active)));
    } else {
        setWords(select_, hidden ? tr("Show") : tr("Select"));
    }

    hide_->setVisible(there && !hidden);
    buttons_->setVisible(available || there);
}

void CharacterPane::showSettings(const CharacterSettings& settings) {
    size_->setQuietly(int(std::lround(settings.desktopHeight)));
    const auto show = [this](QWidget* control, bool present) {
        habits_->rowOf(control)->setVisible(present);
    };
    show(sounds_, settings.sounds.has_value());
    show(volume_, settings.volume.has_value());
    show(mirrored_, settings.mirrored.has_value());
    show(reducedMotion_, settings.reducedMotion.has_value());
    sounds_->setQuietly(settings.sounds.value_or(true));
    volume_->setQuietly(int(std::lround(settings.volume.value_or(1) * 100)));
    volume_->setEnabled(settings.sounds.value_or(true));
    mirrored_->setQuietly(settings.mirrored.value_or(false));
    reducedMotion_->setQuietly(settings.reducedMotion.value_or(false));
    habits_->setVisible(settings.sounds || settings.volume || settings.mirrored || settings.reducedMotion);
}

} // namespace DeskSprites
