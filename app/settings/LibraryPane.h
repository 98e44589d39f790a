#pragma once

#include "app/settings/FormKit.h"
#include "app/settings/LibraryState.h"

namespace DeskSprites {

/// One page of the settings window. It shows a state and calls closures; it keeps nothing.
class LibraryPane : public FormPage {
public:
    using FormPage::FormPage;
    /// Brings every control in line with the state without telling anyone.
    virtual void showState(const LibraryState& state) = 0;
};

} // namespace DeskSprites
