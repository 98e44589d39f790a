#include "app/settings/GeneralPane.h"

#include "app/settings/ShortcutSetting.h"
#include "core/art/DesktopSize.h"

#include <QBoxLayout>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSlider>

#include <cmath>

namespace DeskSprites {

namespace {

constexpr int unit = FormMetrics::unit;
using FellowCore::ArrangeLayout::Edge;

template <typename... Values>
void call(const std::function<void(Values...)>& action, Values... values) {
    if (action) {
        action(values...);
    }
}

QWidget* sideBySide(std::initializer_list<QWidget*> widgets, QWidget* parent) {
    auto* box = new QWidget(parent);
    auto* line = new QHBoxLayout(box);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(unit);
    for (QWidget* widget : widgets) {
        line->addWidget(widget);
    }
    return box;
}

} // namespace

GeneralPane::GeneralPane(const LibraryActions& actions, QWidget* parent)
    : LibraryPane(parent), actions_(actions) {
    setAccessibleName(tr("General"));
    add(makeText(tr("General"), TextStyle::title, column()));
    addStart();
    addSounds();
    addDesktop();
    addArrange();
    addMotion();
    addAbout();
}

void GeneralPane::addStart() {
    FormSection* section = addSection(tr("Starting and showing"));
    startAtLogin_ = section->addSwitch(tr("Start at login"));
    startRow_ = section->rowOf(startAtLogin_);
    connect(startAtLogin_, &QCheckBox::toggled, this, &GeneralPane::setStartAtLogin);

    shortcut_ = new ShortcutSetting(section);
    shortcutRow_ = section->addRow(tr("Show and hide everyone"), shortcut_);
    shortcut_->onChosen = [this](const Platform::KeyCombination& combination, const QString& label) {
        return actions_.onShortcutChanged ? std::optional(actions_.onShortcutChanged(combination, label))
                                          : std::nullopt;
    };
    shortcut_->onCleared = [this] { call(actions_.onShortcutCleared); };
    connect(shortcut_, &ShortcutSetting::complained, shortcutRow_, &FormRow::setError);
}

void GeneralPane::addSounds() {
    FormSection* section = addSection(tr("Sounds"));
    sounds_ =
        section->addSwitch(tr("Interface sounds"), tr("Short sounds when characters come, go and finish."));
    volume_ = section->addSlider(tr("Volume"), {0, 100, 5, 10},
                                 [](int percent) { return tr("%1 %").arg(percent); });
    connect(sounds_, &QCheckBox::toggled, this, [this](bool on) {
        volume_->setEnabled(on);
        call(actions_.onInterfaceSounds, on);
    });
    connect(volume_, &FormSlider::chosen, this,
            [this](int percent) { call(actions_.onInterfaceVolume, percent / 100.0); });
}

void GeneralPane::addDesktop() {
    FormSection* section = addSection(tr("New characters"));
    const FormSlider::Range range{int(FellowCore::DesktopSize::smallestHeight),
                                  int(FellowCore::DesktopSize::largestHeight), 4, 40};
    defaultHeight_ = section->addSlider(
        tr("Height"), range, [](int points) { return tr("%1 points").arg(points); },
        tr("For a character that comes out for the first time."));
    defaultHeight_->slider()->setAccessibleName(tr("Height of new characters"));
    connect(defaultHeight_, &FormSlider::chosen, this,
            [this](int height) { call(actions_.onDefaultHeight, double(height)); });
}

void GeneralPane::addArrange() {
    FormSection* section = addSection(tr("Lining up"));
    right_ = new FormRadio(tr("Right"), section);
    bottom_ = new FormRadio(tr("Bottom"), section);
    right_->setAccessibleName(tr("Along the right edge"));
    bottom_->setAccessibleName(tr("Along the bottom edge"));
    section->addRow(tr("Edge of the screen"), sideBySide({right_, bottom_}, section));
    compact_ =
        section->addSwitch(tr("Compact"), tr("Small and all of one height, as long as they stand in line."));
    auto* buttons = new FormButtons(section);
    arrange_ = buttons->add(tr("Arrange now"));
    section->addRow(tr("Everyone on the desktop"), buttons);

    connect(right_, &FormRadio::toggled, this,
            [this](bool on) { call(actions_.onArrangeEdge, on ? Edge::right : Edge::bottom); });
    connect(compact_, &QCheckBox::toggled, this, [this](bool on) { call(actions_.onArrangeCompact, on); });
    connect(arrange_, &QPushButton::clicked, this, [this] { call(actions_.onArrange); });
}

void GeneralPane::addMotion() {
    FormSection* section = addSection(tr("Motion"));
    motion_ = makeText({}, TextStyle::body, section);
    section->layout()->addWidget(motion_);
}

void GeneralPane::addAbout() {
    FormSection* section = addSection(tr("About"));
    version_ = makeText({}, TextStyle::body, section);
    section->layout()->addWidget(version_);
    folder_ = new FormLink(section);
    section->addRow(tr("Your files are kept in"), folder_);
    connect(folder_, &QPushButton::clicked, this, [this] { call(actions_.onOpenDataFolder); });
}

void GeneralPane::setStartAtLogin(bool on) {
    const QString error = actions_.onStartAtLogin ? actions_.onStartAtLogin(on) : QString();
    startRow_->setError(error);
    if (!error.isEmpty()) {
        startAtLogin_->setQuietly(!on);
    }
}

void GeneralPane::showState(const LibraryState& state) {
    const GeneralSettings& general = state.general;
    sounds_->setQuietly(general.interfaceSounds);
    volume_->setQuietly(int(std::lround(general.interfaceVolume * 100)));
    volume_->setEnabled(general.interfaceSounds);

    shortcut_->showShortcut(general.shortcutLabel, general.shortcutSupported);
    shortcutRow_->setHelp(
        general.shortcutSupported
            ? QString()
            : tr("This desktop gives programs no shortcuts. Bind \"deskfellow --toggle\" to keys "
                 "in its own settings."));
    startAtLogin_->setQuietly(general.startAtLogin);
    defaultHeight_->setQuietly(int(std::lround(general.defaultHeight)));

    // Both, because checking the one unchecks the other.
    const QSignalBlocker quietRight(right_);
    const QSignalBlocker quietBottom(bottom_);
    right_->setChecked(general.arrangeEdge == Edge::right);
    bottom_->setChecked(general.arrangeEdge == Edge::bottom);
    compact_->setQuietly(general.arrangeCompact);
    arrange_->setEnabled(!state.desktop.onScreen.empty() &&
                         state.desktop.visibility == DesktopVisibility::shown);

    motion_->setText(general.systemReducesMotion
                         ? tr("Your system asks for reduced motion, so characters keep still.")
                         : tr("Your system allows motion. A character's own switch is in its settings."));
    version_->setText(tr("Deskfellow %1").arg(general.version));
    folder_->setTarget(general.dataFolder, tr("Open the folder %1").arg(general.dataFolder));
}

} // namespace DeskSprites
