#include "core/pump/PumpProvider.h"

#include <gmock/gmock.h>

namespace FellowCore {
namespace {

TEST(PumpProvider, NamesInFilesLeadBackToTheProvider) {
    for (const PumpProvider provider : allPumpProviders) {
        EXPECT_EQ(pumpProviderFromRawValue(rawValue(provider)), provider);
    }
    EXPECT_EQ(pumpProviderFromRawValue("Claude"), std::nullopt) << "names in files have one spelling";
}

} // namespace
} // namespace FellowCore
