#pragma once

#include "app/services/BackgroundSaver.h"
#include "core/base/FileOperations.h"
#include "core/base/Preferences.h"
#include "core/base/SupportFolders.h"
#include "platform/System.h"

namespace DeskSprites {

/// What the objects of the desktop work with. `AppController` owns it all and outlives them.
struct DesktopServices {
    Platform::System& system;
    FellowCore::Preferences& preferences;
    FellowCore::FileOperations& files;
    BackgroundSaver& saver;
    const FellowCore::SupportFolders& folders;
};

} // namespace DeskSprites
