#include "tests/app/AppHarness.h"

#include "app/roster/BattiLamps.h"
#include "core/art/BuiltinCharacters.h"
#include "platform/image/PngDecoder.h"

namespace AppHarness {

using FellowCore::FocusTimerStore;

std::unique_ptr<Platform::DesktopSurface> TestSystem::makeSurface(Platform::DesktopSurfaceClient& client) {
    auto made = real_->makeSurface(client);
    surfaces.push_back(made.get());
    clients.push_back(&client);
    return made;
}

Companion Desk::batti() const {
    const auto& manifest = FellowCore::BuiltinCharacters::batti();
    return {manifest, std::make_shared<const FellowCore::ManifestCharacter>(
                          manifest, std::filesystem::path(DESKFELLOW_DATA) / "builtin", Platform::decodePng)};
}

std::unique_ptr<BattiController> Desk::makeBatti() {
    Companion companion = batti();
    auto lamps = loadBattiLamps(std::filesystem::path(DESKFELLOW_DATA) / "builtin", companion.manifest.grid);
    return std::make_unique<BattiController>(std::move(companion), std::move(lamps), services);
}

Companion Desk::pack(const PackForm& form) {
    const std::filesystem::path folder = home / ("pack-" + form.id);
    FellowCore::CharacterManifest manifest{.id = form.id,
                                           .name = form.id,
                                           .role = "Night light",
                                           .poses = {},
                                           .face = {1, 1},
                                           .ground = {form.grid.width * 0.6, double(form.grid.height)},
                                           .grid = form.grid,
                                           .accent = {0, 0.5, 1},
                                           .behaviours = form.behaviours,
                                           .order = {},
                                           .scaleReferenceHeight = {}};
    for (const std::string& pose : form.poses) {
        manifest.poses[pose] = pose + ".png";
        TestSupport::writeBytes(folder / (pose + ".png"), pose);
    }
    const auto decode = [clear = form.clearLeft](std::string_view,
                                                 std::optional<FellowCore::PixelSize> size) {
        FellowCore::PixelImage image{size->width, size->height, {}};
        for (int i = 0; i < size->width * size->height; ++i) {
            image.rgba.insert(image.rgba.end(), {0, 0, 0, std::uint8_t(i % size->width < clear ? 0 : 255)});
        }
        return image;
    };
    return {manifest, std::make_shared<const FellowCore::ManifestCharacter>(manifest, folder, decode)};
}

std::unique_ptr<ManifestCharacterController> Desk::makePack(const PackForm& form) {
    return std::make_unique<ManifestCharacterController>(pack(form), services);
}

FellowCore::FocusTimer Desk::savedTimer(const std::string& id) {
    saver.flush();
    return FocusTimerStore::decoded(TestSupport::bytesOf(timerFile(id)));
}

void Desk::writeTimer(const std::string& id, const FellowCore::FocusTimer& timer) const {
    TestSupport::writeBytes(timerFile(id), FocusTimerStore::encoded(timer));
}

void Desk::drag(std::size_t surface, double dx, double dy, int moves) {
    Platform::DesktopSurfaceClient& client = *system.clients.at(surface);
    Platform::PointerEvent event;
    event.button = Qt::LeftButton;
    event.screen = {500, 500};
    client.pointerPressed(event);
    for (int i = 1; i <= moves; ++i) {
        event.screen = {500 + dx * i / moves, 500 + dy * i / moves};
        client.pointerMoved(event);
    }
    client.pointerReleased(event);
}

} // namespace AppHarness
