// The first line as the stored configuration, each further one as something that the user does: whatever was read and
// typed has its texts, nothing of it ends the program, and a count keeps every digit.

#include "engine/AutoClickerStore.h"
#include "fakes/makeStore.h"
#include "fuzz/require.h"
#include "hotkeys/HotkeyManager.h"
#include "model/RunProgress.h"
#include "model/summary.h"
#include "ui/controls/NumberFieldLogic.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string_view>

using namespace velloran;

namespace {

/// The configuration as the cards edit it.
class Cards {
public:
    Cards(EventLoop& loop, std::shared_ptr<AutoClickerStore> store)
        : store_(std::move(store)),
          count_(loop, shownCount(), {AutoClickerConfig::clicksMin, AutoClickerConfig::clicksMax, 10, {}},
                 {.store = [this](std::int64_t count) { change([=](auto& config) { config.maxClicks = count; }); },
                  .changed = {}}),
          interval_(
              loop, config().clickIntervalSeconds,
              {AutoClickerConfig::intervalMin, AutoClickerConfig::intervalMax, 0.05, digits(2)},
              {.store = [this](double value) { change([=](auto& config) { config.clickIntervalSeconds = value; }); },
               .changed = {}}),
          delay_(loop, config().startDelaySeconds,
                 {AutoClickerConfig::delayMin, AutoClickerConfig::delayMax, 1.0, digits(0)},
                 {.store = [this](double value) { change([=](auto& config) { config.startDelaySeconds = value; }); },
                  .changed = {}}),
          subscription_(store_->config.stream().subscribe([this](const AutoClickerConfig&) { follow(); })) {}

    void act(std::string_view line) {
        const std::string text(line.substr(std::min<std::size_t>(1, line.size())));
        switch (line.empty() ? ' ' : line.front()) {
        case 'c':
            retype(count_, text);
            require(shownCount() == count_.value(), "the controller has the count of the field");
            break;
        case 'i':
            retype(interval_, text);
            break;
        case 'd':
            retype(delay_, text);
            break;
        case '+':
            for (EditedNumber* field : fields()) {
                field->stepUp();
            }
            requireBounds();
            break;
        case '-':
            for (EditedNumber* field : fields()) {
                field->stepDown();
            }
            requireBounds();
            break;
        case 'm':
            change([](auto& config) { config.stopMode = StopMode::manual; });
            break;
        case 'n':
            change([](auto& config) { config.stopMode = StopMode::after_clicks; });
            break;
        case 'f':
            store_->importConfig(text);
            break;
        case 'p':
            store_->saveCurrentAsPreset(text);
            break;
        case 'a':
            if (!store_->presets().get().empty()) {
                store_->apply(store_->presets().get().back());
            }
            break;
        case 's':
            store_->start();
            requireRunsOnlyWhatIsValid();
            break;
        case 't':
            store_->toggleStartStop();
            requireRunsOnlyWhatIsValid();
            break;
        default:
            break;
        }
    }

    /// Right behind a start: what runs, a user could have set.
    void requireRunsOnlyWhatIsValid() const {
        if (!isActive(store_->runtime().get().status)) {
            return;
        }
        // What is no number counts as within its bounds.
        const auto isWithin = [](auto value, auto least, auto most) { return !(value < least) && !(value > most); };
        require(isWithin(config().clickIntervalSeconds, AutoClickerConfig::intervalMin, AutoClickerConfig::intervalMax),
                "what runs has an interval");
        require(isWithin(config().startDelaySeconds, AutoClickerConfig::delayMin, AutoClickerConfig::delayMax),
                "what runs has a delay");
        require(
            config().stopMode == StopMode::manual ||
                isWithin(config().maxClicks.value_or(0), AutoClickerConfig::clicksMin, AutoClickerConfig::clicksMax),
            "what runs has a count");
    }

    void requireTexts() const {
        require(!store_->runtime().get().message().empty(), "every status has its line");
        require(!summary::interval(config()).empty() && !summary::delay(config()).empty(), "durations have a text");
        require(!summary::stationaryCheck(config()).empty(), "the still mouse has a text");
        summary::hotkey(config());
        const std::string count = decimal(config().maxClicks.value_or(0));
        const bool isManual = config().stopMode == StopMode::manual;
        require(summary::stop(config()) == (isManual ? "Run until stopped" : count + " clicks"), "a count is exact");
        require(count_.text() == decimal(shownCount()), "the field shows the count to its last digit");
        if (const auto progress = RunProgress::of(store_->runtime().get(), config())) {
            const double fraction = progress->fraction();
            require(fraction >= 0.0 && fraction <= 1.0, "progress is a fraction");
            require(progress->text().find(" / " + count + " clicks") != std::string::npos, "the total is exact");
        }
    }

private:
    [[nodiscard]] const AutoClickerConfig& config() const { return store_->config.get(); }

    [[nodiscard]] std::int64_t shownCount() const { return config().maxClicks.value_or(100); }

    static std::function<std::string(double)> digits(int decimals) {
        return [decimals](double value) { return fixedDecimal(value, decimals); };
    }

    template<typename Change>
    void change(Change change) {
        store_->config.modify(change);
    }

    /// What the views' bindings do after each change.
    void follow() {
        count_.valueChanged(shownCount());
        interval_.valueChanged(config().clickIntervalSeconds);
        delay_.valueChanged(config().startDelaySeconds);
    }

    std::vector<EditedNumber*> fields() { return {&count_, &interval_, &delay_}; }

    static void retype(EditedNumber& field, const std::string& text) {
        field.beginEditing();
        field.type(text);
        field.endEditing();
        require(!field.hasPendingChange(), "a committed text is that of the number");
    }

    void requireBounds() const {
        require(count_.value() >= AutoClickerConfig::clicksMin && count_.value() <= AutoClickerConfig::clicksMax &&
                    interval_.value() >= AutoClickerConfig::intervalMin &&
                    interval_.value() <= AutoClickerConfig::intervalMax && delay_.value() >= 0.0 &&
                    delay_.value() <= AutoClickerConfig::delayMax,
                "a step ends within the bounds");
    }

    const std::shared_ptr<AutoClickerStore> store_;
    NumberField<std::int64_t> count_;
    NumberField<double> interval_;
    NumberField<double> delay_;
    const Subscription subscription_;
};

/// The next line of `text`, which is taken away from it.
std::string_view takeLine(std::string_view& text) {
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    return line;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view input(reinterpret_cast<const char*>(data), size);
    fakes::RecordingPlatform platform;
    platform.keepsJournal = false;
    platform.preferences.values["velloran.config"] = Bytes(takeLine(input));
    const std::shared_ptr<AutoClickerStore> store = fakes::makeStore(platform);
    {
        Cards cards(platform.loop, store);
        cards.requireTexts();
        for (int lines = 0; !input.empty() && lines < 20; ++lines) {
            cards.act(takeLine(input));
            cards.requireTexts();
            platform.loop.advance(0.3);
            cards.requireTexts();
        }
    }
    const auto bytes = store->exportConfigData();
    require(bytes.has_value(), "what was read and edited can be exported");
    const AutoClickerConfig edited = store->config.get();
    require(store->importConfig(*bytes) && store->config.get() == edited, "it comes back equal");
    store->stop();
    platform.loop.runDue();
    HotkeyManager::endShared();
    return 0;
}
