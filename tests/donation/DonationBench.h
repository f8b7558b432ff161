#pragma once

#include "donation/DonationManager.h"

#include "fakes/RecordingPlatform.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>

namespace velloran {

inline constexpr const char* firstLaunchKey = "donation.firstLaunchAt";
inline constexpr const char* nextReminderKey = "donation.nextReminderAt";
inline constexpr const char* remindersShownKey = "donation.remindersShown";
inline constexpr const char* donatedKey = "donation.donated";

/// A manager on a fake platform, with time to be moved by hand.
class DonationManagerTest : public testing::Test {
protected:
    void open() {
        manager = std::make_unique<DonationManager>(platform.loop, platform.preferences, platform.urlOpener());
    }

    [[nodiscard]] bool isVisible() const { return manager->isPromptVisible.get(); }

    /// Seconds from now to the next reminder.
    [[nodiscard]] double untilNext() const { return *preferences.date(nextReminderKey) - platform.loop.now(); }

    /// Lets time pass in whole seconds until the prompt is up; how many.
    std::optional<int> secondsUntilVisible(int atMost) {
        for (int seconds = 0; seconds <= atMost; ++seconds) {
            if (isVisible()) {
                return seconds;
            }
            platform.loop.advance(1.0);
        }
        return std::nullopt;
    }

    fakes::RecordingPlatform platform;
    fakes::FakePreferences& preferences = platform.preferences;
    std::unique_ptr<DonationManager> manager;
};

} // namespace velloran
