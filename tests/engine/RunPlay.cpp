#include "engine/RunPlay.h"

#include "presets/Preset.h"

#include <array>
#include <cmath>
#include <cstdlib>
#include <sstream>
#include <utility>

namespace velloran {

namespace {

using Time = ReferenceRun::Time;

constexpr Time millisecond = 1'000'000;

/// No two things are to happen at the same moment, since which one comes first would hang on the last bit of a date. A
/// run does everything within ten milliseconds of its start, ahead of them by what a click is handed over early; so
/// whoever does something to it is later than the last one who did by a little more than tens of milliseconds.
constexpr Time offset = 50'000;
/// What lies between the moments that a run has and those that it has when the clock is set.
constexpr Time clockOffset = 3 * millisecond;

/// Dates are rounded to a tenth of a microsecond, and so is each sum of one and an interval.
constexpr Time tolerance = 20'000;

template<typename T, std::size_t Size>
const T& choice(const std::array<T, Size>& choices, int value) {
    return choices.at(static_cast<std::size_t>(value) % Size);
}

Time span(int value) {
    if (value == 0) {
        return 0;
    }
    if (value >= 950) {
        return 20'000 * millisecond + offset;
    }
    const int hundredths = value < 500 ? value / 5 : 100 + (value - 500) * 2 / 3;
    return Time{hundredths} * 10 * millisecond + offset;
}

void limit(AutoClickerConfig& config, int value) {
    constexpr std::array<std::optional<std::int64_t>, 6> counts{1, 2, 5, 20, 300, 0};
    config.maxClicks = value % 20 == 19 ? std::nullopt : choice(counts, value);
    config.stopMode = value % 3 == 2 ? StopMode::manual : StopMode::after_clicks;
}

AutoClickerConfig sample(int value) {
    AutoClickerConfig config;
    config.clickIntervalSeconds = 0.25;
    config.maxClicks = 3;
    config.playClickSound = true;
    config.hotkey = HotkeyCombo{0xC0000, 1, "⌃⌥S"};
    if (value % 3 > 0) {
        config.startDelaySeconds = 0.205;
        config.requireStationaryMouse = true;
        config.stationarySeconds = 0.105;
    }
    if (value % 3 > 1) {
        config.stopMode = StopMode::manual;
        config.mouseButton = MouseButton::right;
    }
    return config;
}

bool isNear(std::optional<Time> one, std::optional<Time> other) {
    return one.has_value() == other.has_value() && (!one || std::abs(*one - *other) <= tolerance);
}

std::string describe(const ReferenceRun::Record& record) {
    std::ostringstream out;
    const auto field = [&out](const char* name, const auto& value) {
        if (value) {
            out << ", " << name << ' ' << *value;
        }
    };
    out << rawValue(record.status) << ", " << record.clicksCompleted << " clicks";
    field("left", record.clicksRemaining);
    field("started at", record.startedAt);
    field("next at", record.nextClickAt);
    field("countdown", record.countdownRemaining);
    field("error", record.errorMessage);
    out << (record.stationaryWaitActive ? ", waits for the mouse" : "");
    return out.str();
}

} // namespace

/// Tells of every click in the turn in which it is handed over.
class RunPlay::TellingSounds final : public platform::SystemSounds {
public:
    explicit TellingSounds(RunPlay& play) : play_(play) {}

    std::unique_ptr<platform::Sound> load(const std::string& /*name*/) override {
        return std::make_unique<TellingSound>(play_);
    }

private:
    class TellingSound final : public platform::Sound {
    public:
        explicit TellingSound(RunPlay& play) : play_(play) {}

        void play() override { play_.handedOver(); }

        void stop() override {}

    private:
        RunPlay& play_;
    };

    RunPlay& play_;
};

RunPlay::RunPlay() : sounds_(std::make_unique<TellingSounds>(*this)), beginning_(platform.loop.now()) {
    PresetStore(platform.preferences).saveConfig(sample(0));
    store = AutoClickerStore::create(platform.loop, platform.desktop, *sounds_,
                                     std::make_unique<PresetStore>(platform.preferences));
    reference_.edit(sample(0));
    platform.onPointerRead = [this] {
        if (isPointerMoving_) {
            platform.pointer->x += 10.0;
        }
    };
    platform.onFlush = [this] {
        posted_.push_back(static_cast<Time>(platform.loop.elapsed()));
        rules_.posted();
    };
    subscriptions_.push_back(
        store->runtime().stream().subscribe([this](const AutoClickerRuntime& record) { rules_.told(record); }));
    const auto arrive = [this] { interrupt(); };
    subscriptions_.push_back(store->runtime().observeWillChange(arrive));
    subscriptions_.push_back(store->hasAccessibilityPermission().observeWillChange(arrive));
    subscriptions_.push_back(
        store->runtime().stream().subscribe([arrive](const AutoClickerRuntime& /*record*/) { arrive(); }));
    subscriptions_.push_back(
        store->hasAccessibilityPermission().stream().subscribe([arrive](const bool& /*isTrusted*/) { arrive(); }));
    pass(0);
}

RunPlay::~RunPlay() {
    subscriptions_.clear();
    store->stop();
    platform.loop.runDue();
    store.reset();
}

std::optional<std::string> RunPlay::play(const std::vector<RunEvent>& events) {
    for (std::size_t i = 0; i < events.size(); ++i) {
        happen(events[i]);
        if (const auto wrong = complaint()) {
            std::ostringstream out;
            out << "after event " << i << " (" << events[i] << "): " << *wrong;
            return out.str();
        }
    }
    interruptions_.clear();
    stop();
    const auto handedOver = rules_.clicksHandedOver();
    pass(60'000 * millisecond);
    if (const auto wrong = complaint()) {
        return "after the stop at the end: " + *wrong;
    }
    const auto clicks = rules_.clicksPosted();
    if (rules_.clicksHandedOver() != handedOver || clicks != handedOver ||
        platform.pairedClicks != static_cast<std::uint64_t>(clicks)) {
        return "after the stop at the end: clicks that nobody wants, that were lost or that were only half made";
    }
    if (platform.loop.pendingCalls() != 0) {
        return "after the stop at the end something is still to come";
    }
    if (PresetStore(platform.preferences).loadConfig() != store->config.get()) {
        return "the configuration was not saved";
    }
    return std::nullopt;
}

void RunPlay::happen(const RunEvent& event) {
    const int value = event.value;
    switch (event.kind) {
    case RunEvent::Kind::start:
        start();
        break;
    case RunEvent::Kind::stop:
        stop();
        break;
    case RunEvent::Kind::pass:
        pass(span(value));
        break;
    case RunEvent::Kind::press:
        press();
        break;
    case RunEvent::Kind::limit:
        edit([value](AutoClickerConfig& config) { limit(config, value); });
        break;
    case RunEvent::Kind::interval: {
        constexpr std::array intervals{0.25, 0.01, 1.0, 7.0, 0.5, 0.0, 3600.5};
        edit([&](AutoClickerConfig& config) { config.clickIntervalSeconds = choice(intervals, value); });
        break;
    }
    case RunEvent::Kind::delay: {
        constexpr std::array delays{0.0, 0.005, 0.205, 1.005, 2.505, -0.5};
        edit([&](AutoClickerConfig& config) { config.startDelaySeconds = choice(delays, value); });
        break;
    }
    case RunEvent::Kind::stillness: {
        constexpr std::array durations{0.0, 0.105, 0.505, 2.005, 0.05};
        edit([&](AutoClickerConfig& config) {
            config.stationarySeconds = choice(durations, value);
            config.requireStationaryMouse = config.stationarySeconds > 0;
        });
        break;
    }
    case RunEvent::Kind::apply:
        store->apply(Preset::make("", sample(value)));
        reference_.edit(sample(value));
        break;
    case RunEvent::Kind::jump:
        platform.pointer->x += 10.0;
        reference_.pointerJumped();
        break;
    case RunEvent::Kind::moving:
        isPointerMoving_ = value % 2 == 0;
        reference_.pointerKeepsMoving(isPointerMoving_);
        break;
    case RunEvent::Kind::forbid:
    case RunEvent::Kind::permit:
        permit(event.kind == RunEvent::Kind::permit);
        break;
    case RunEvent::Kind::report:
        report();
        break;
    case RunEvent::Kind::refresh:
        store->refreshPermission();
        reference_.permissionRefreshed();
        break;
    case RunEvent::Kind::clock:
        setClock(value);
        break;
    case RunEvent::Kind::interrupt:
        interruptions_.push_back({value / 10 % 20, value % 10});
        break;
    }
}

void RunPlay::start() {
    rules_.startAsked(isAccepted());
    store->start();
    reference_.start();
}

void RunPlay::stop() {
    rules_.stopAsked();
    store->stop();
    reference_.stop();
}

void RunPlay::press() {
    // What is due comes first, or whether this is a start would not be known yet.
    pass(0);
    if (isActive(status())) {
        rules_.stopAsked();
    } else {
        rules_.startAsked(isAccepted());
    }
    pressHotkey();
    reference_.toggle();
    pass(0);
}

void RunPlay::edit(const std::function<void(AutoClickerConfig&)>& change) {
    store->config.modify([&](AutoClickerConfig& config) {
        change(config);
        // Every sum of a date and such an interval is rounded the same way, so there must not be too many.
        if (config.clickIntervalSeconds == 0.01 && config.stopMode == StopMode::manual) {
            config.stopMode = StopMode::after_clicks;
            config.maxClicks = 300;
        }
    });
    reference_.edit(store->config.get());
}

void RunPlay::permit(bool isPermitted) {
    platform.isTrusted = isPermitted;
    reference_.permit(isPermitted);
}

void RunPlay::report() {
    if (!platform.isTrusted) {
        rules_.stopAsked();
    }
    platform.trustChanged();
    reference_.permissionReported();
}

void RunPlay::setClock(int value) {
    if (std::exchange(isClockSet_, true)) {
        return;
    }
    constexpr std::array<Time, 4> seconds{1, 3600, -1, -3600};
    const Time by = choice(seconds, value) * 1000 * millisecond + clockOffset;
    platform.loop.shiftWallClock(static_cast<double>(by) / 1e9);
    reference_.clockSet(by);
}

void RunPlay::pass(Time span) {
    platform.loop.advanceNanoseconds(static_cast<std::uint64_t>(span));
    // Interruptions take a little time, after which other things are due.
    std::int64_t settled = 0;
    while (settled != interrupted_) {
        settled = interrupted_;
        platform.loop.runDue();
    }
    reference_.pass(span);
    rules_.atRest(runtime(), store.use_count() - 1);
}

void RunPlay::handedOver() {
    rules_.handedOver();
    if (rules_.broken()) {
        // What clicks without an end would go on for ever in virtual time.
        store->stop();
    }
}

void RunPlay::interrupt() {
    std::vector<int> due;
    for (Interruption& one : interruptions_) {
        if (one.notifications-- == 0) {
            due.push_back(one.action);
        }
    }
    std::erase_if(interruptions_, [](const Interruption& one) { return one.notifications < 0; });
    for (const int action : due) {
        act(action);
    }
}

void RunPlay::act(int action) {
    ++interrupted_;
    // No run begins at the very moment of the click that it interrupts.
    platform.loop.spend(1e-6);
    switch (action) {
    case 0:
    case 1:
    case 2:
        rules_.stopAsked();
        store->stop();
        break;
    case 3:
    case 4:
        rules_.startAsked(isAccepted());
        store->start();
        break;
    case 5:
        if (isActive(status())) {
            rules_.stopAsked();
        } else {
            rules_.startAsked(isAccepted());
        }
        store->toggleStartStop();
        break;
    case 6:
        // Nothing that a start refuses: between its check and its copy it would be taken.
        edit([](AutoClickerConfig& config) { config = sample(0); });
        break;
    case 7:
        edit([](AutoClickerConfig& config) { config = sample(2); });
        break;
    case 8:
        store->refreshPermission();
        break;
    default:
        permit(false);
        report();
        break;
    }
}

bool RunPlay::isAccepted() const {
    return platform.isTrusted && store->config.get().isValid();
}

std::optional<std::string> RunPlay::complaint() {
    if (rules_.broken()) {
        return rules_.broken();
    }
    const bool isComparable = interrupted_ == 0;
    settingsOpened_ += platform.count("open settings");
    prompts_ += platform.count("prompt for trust");
    platform.journal.clear();
    if (!isComparable) {
        return std::nullopt;
    }
    const auto time = [this](Date date) { return static_cast<Time>(std::llround((date - beginning_) * 1e9)); };
    const AutoClickerRuntime& record = runtime();
    ReferenceRun::Record shown;
    shown.status = record.status;
    shown.clicksCompleted = record.clicksCompleted;
    shown.clicksRemaining = record.clicksRemaining;
    shown.errorMessage = record.errorMessage;
    shown.stationaryWaitActive = record.stationaryWaitActive;
    if (record.startedAt) {
        shown.startedAt = time(*record.startedAt);
    }
    if (record.nextClickAt) {
        shown.nextClickAt = time(*record.nextClickAt);
    }
    if (record.countdownRemaining) {
        shown.countdownRemaining = std::llround(*record.countdownRemaining * 1e9);
    }
    const ReferenceRun::Record& wanted = reference_.record();
    if (shown.status != wanted.status || shown.clicksCompleted != wanted.clicksCompleted ||
        shown.clicksRemaining != wanted.clicksRemaining || shown.errorMessage != wanted.errorMessage ||
        shown.stationaryWaitActive != wanted.stationaryWaitActive || !isNear(shown.startedAt, wanted.startedAt) ||
        !isNear(shown.nextClickAt, wanted.nextClickAt) ||
        !isNear(shown.countdownRemaining, wanted.countdownRemaining)) {
        return "the record is\n  " + describe(shown) + "\ninstead of\n  " + describe(wanted);
    }
    if (store->hasAccessibilityPermission().get() != reference_.showsPermission()) {
        return "the permission that is shown is not the one that was found";
    }
    if (settingsOpened_ != reference_.settingsOpened() || prompts_ != reference_.prompts()) {
        return "the user was asked for the permission too often or too rarely";
    }
    if (rules_.clicksHandedOver() != reference_.handedOver()) {
        return std::to_string(rules_.clicksHandedOver()) + " clicks were handed over instead of " +
               std::to_string(reference_.handedOver());
    }
    return compareClicks();
}

std::optional<std::string> RunPlay::compareClicks() {
    const auto& wanted = reference_.posted();
    if (posted_.size() != wanted.size()) {
        return std::to_string(posted_.size()) + " clicks were posted instead of " + std::to_string(wanted.size());
    }
    for (; compared_ < posted_.size(); ++compared_) {
        if (!isNear(posted_[compared_], wanted[compared_])) {
            return "click " + std::to_string(compared_) + " was posted at " + std::to_string(posted_[compared_]) +
                   " instead of " + std::to_string(wanted[compared_]);
        }
    }
    return std::nullopt;
}

} // namespace velloran
