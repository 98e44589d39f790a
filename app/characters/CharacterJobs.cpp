#include "app/characters/CharacterJobs.h"

#include "app/characters/clock/ClockJob.h"
#include "app/characters/dhiru/DhiruJob.h"
#include "app/characters/manifest/ManifestCharacterController.h"
#include "app/characters/mira/MiraJob.h"
#include "app/characters/munshi/MunshiJob.h"
#include "app/characters/pump/PumpJob.h"
#include "app/characters/snake/SnakeJob.h"
#include "app/characters/thumka/ThumkaJob.h"

#include <algorithm>

namespace DeskSprites {

namespace {

const CharacterJob* jobOf(std::string_view id) {
    const std::vector<CharacterJob>& jobs = characterJobs();
    const auto found = std::ranges::find(jobs, id, &CharacterJob::id);
    return found == jobs.end() ? nullptr : &*found;
}

} // namespace

const std::vector<CharacterJob>& characterJobs() {
    static const std::vector<CharacterJob> jobs{
        {"clock", makeClock, makeClockForm},    {"devwatch", makeDhiru, makeDhiruForm},
        {"mira", makeMira, makeMiraForm},       {"munshi", makeMunshi, makeMunshiForm},
        {"pump", makePump, makePumpForm},       {"snake", makeSnake, makeSnakeForm},
        {"thumka", makeThumka, makeThumkaForm},
    };
    return jobs;
}

std::unique_ptr<DesktopCharacter> makeDesktopCharacter(const Companion& companion, CharacterSite& site) {
    if (const CharacterJob* job = jobOf(companion.rawValue())) {
        return job->make(companion, site);
    }
    return std::make_unique<ManifestCharacterController>(companion, site.services);
}

QWidget* makeSettingsForm(DesktopCharacter& character, CharacterSite& site, QWidget* parent) {
    const CharacterJob* job = jobOf(character.identifier());
    return job && job->form ? job->form(character, site, parent) : nullptr;
}

} // namespace DeskSprites
