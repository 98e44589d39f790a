#pragma once

#include "app/settings/FormKit.h"
#include "core/base/SupportFolders.h"

namespace DeskSprites {

class DhiruAwake;

/// Dhiru's settings: whether he keeps the machine awake; and what he reads, and what he never touches.
class DhiruForm : public QWidget {
    Q_OBJECT

public:
    /// Both outlive the form.
    DhiruForm(DhiruAwake& awake, const FellowCore::SupportFolders& folders, QWidget* parent);

private:
    FormSection* makeAwake();
    FormSection* makeReading(const FellowCore::SupportFolders& folders);
    FormSection* makeSafety();
    void showAwake();

    DhiruAwake& awake_;
    FormSwitch* keep_ = nullptr;
    QLabel* state_ = nullptr;
};

} // namespace DeskSprites
