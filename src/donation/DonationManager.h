#pragma once

#include "async/EventLoop.h"
#include "async/Published.h"
#include "donation/DonationLink.h"
#include "platform/Preferences.h"
#include "platform/UrlOpener.h"

#include <cstdint>
#include <memory>
#include <string>

namespace velloran {

/// Decides when the user is asked for a donation. Keeps its schedule in the preferences and looks at it once a minute.
/// Main thread.
class DonationManager {
public:
    /// Sets the schedule up at the first start ever, shows the prompt when it is due already, and starts the check.
    /// What it is given must outlive this object.
    DonationManager(EventLoop& loop, platform::Preferences& defaults, platform::UrlOpener& urlOpener);

    DonationManager(const DonationManager&) = delete;
    DonationManager& operator=(const DonationManager&) = delete;
    ~DonationManager();

    /// Whether the prompt is to be shown. The window clears it when the prompt is closed without an answer.
    Published<bool> isPromptVisible{false};

    /// The checkout page.
    static const DonationLink& stripeURL();

    /// Seconds to the next prompt after that many put-offs.
    static double intervalForReminder(std::int64_t at);

    /// Whether the user has confirmed a donation.
    [[nodiscard]] bool hasDonated() const;

    /// Shows the prompt when it is due; never hides it.
    void evaluate();

    /// Puts the prompt off.
    void snooze();

    /// Ends the reminders for good.
    void markDonated();

    /// Moves the schedule to its slowest step; reminders go on.
    void acknowledgeAlreadyDonated();

    /// Opens the checkout page in the browser.
    void openDonationLink();

private:
    void bootstrapIfNeeded();
    void startTimer();
    void scheduleNext(std::int64_t remindersShown);

    EventLoop& loop_;
    platform::Preferences& defaults_;
    platform::UrlOpener& urlOpener_;
    const std::string firstLaunchKey_ = "donation.firstLaunchAt";
    const std::string nextReminderKey_ = "donation.nextReminderAt";
    const std::string remindersShownKey_ = "donation.remindersShown";
    const std::string donatedKey_ = "donation.donated";
    ScheduledCall checkTimer_;
    /// Lets a check that is on its way find out whether this object still exists.
    std::shared_ptr<DonationManager*> self_;
};

} // namespace velloran
