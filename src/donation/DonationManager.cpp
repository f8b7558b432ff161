#include "donation/DonationManager.h"

#include "base/checked.h"

namespace velloran {

namespace {

constexpr std::uint64_t checkEvery = 60 * nanosecondsPerSecond;
/// The number of put-offs from which on the interval stays at its longest.
constexpr std::int64_t slowestStep = 7;

} // namespace

DonationManager::DonationManager(EventLoop& loop, platform::Preferences& defaults, platform::UrlOpener& urlOpener)
    : loop_(loop), defaults_(defaults), urlOpener_(urlOpener), self_(std::make_shared<DonationManager*>(this)) {
    bootstrapIfNeeded();
    evaluate();
    startTimer();
}

DonationManager::~DonationManager() = default;

const DonationLink& DonationManager::stripeURL() {
    static const DonationLink link(VELLORAN_DONATION_URL);
    return link;
}

double DonationManager::intervalForReminder(std::int64_t at) {
    if (at < 0 || at >= slowestStep) {
        return 1800.0;
    }
    if (at <= 2) {
        return 60.0;
    }
    return at <= 5 ? 300.0 : 600.0;
}

bool DonationManager::hasDonated() const {
    return defaults_.truth(donatedKey_).value_or(false);
}

void DonationManager::evaluate() {
    if (hasDonated()) {
        return;
    }
    const auto nextReminder = defaults_.date(nextReminderKey_);
    if (nextReminder && loop_.now() >= *nextReminder) {
        isPromptVisible.set(true);
    }
}

void DonationManager::snooze() {
    const std::int64_t shown = checkedAdd(defaults_.integer(remindersShownKey_).value_or(0), 1);
    scheduleNext(shown);
    isPromptVisible.set(false);
}

void DonationManager::markDonated() {
    defaults_.change({{donatedKey_, true}, {nextReminderKey_, std::nullopt}});
    isPromptVisible.set(false);
}

void DonationManager::acknowledgeAlreadyDonated() {
    // The claim alone does not count as a donation.
    scheduleNext(slowestStep);
    isPromptVisible.set(false);
}

void DonationManager::openDonationLink() {
    urlOpener_.open(stripeURL().text());
}

void DonationManager::bootstrapIfNeeded() {
    if (defaults_.holds(firstLaunchKey_)) {
        return;
    }
    const Date start = loop_.now();
    // As one: the first of them alone would count as a schedule, which never comes to a reminder.
    defaults_.change({{firstLaunchKey_, start},
                      {nextReminderKey_, start + intervalForReminder(0)},
                      {remindersShownKey_, std::int64_t{0}}});
}

void DonationManager::startTimer() {
    const auto fire = [this] {
        loop_.post([self = std::weak_ptr(self_)] {
            if (const auto manager = self.lock()) {
                (*manager)->evaluate();
            }
        });
        startTimer();
    };
    checkTimer_ = ScheduledCall(loop_, loop_.callAfter(checkEvery, fire));
}

void DonationManager::scheduleNext(std::int64_t remindersShown) {
    defaults_.change(
        {{remindersShownKey_, remindersShown}, {nextReminderKey_, loop_.now() + intervalForReminder(remindersShown)}});
}

} // namespace velloran
