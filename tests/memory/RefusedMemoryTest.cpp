#include "memory/RefusedMemory.h"

#include "donation/DonationManager.h"
#include "engine/AutoClickerStore.h"
#include "fakes/makeStore.h"
#include "hotkeys/HotkeyManager.h"
#include "model/SampleConfig.h"
#include "model/summary.h"
#include "presets/PresetStore.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <functional>
#include <iostream>
#include <iterator>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <vector>

// Every piece of memory that something which the program does asks for is refused once, and refused with all behind it.
// Nobody goes on after that: the program ends, as it says (a click loop ends it at once, elsewhere the exception does
// when nobody takes it). Until then nothing may be lost or left in between, whatever is on its way out must not stumble
// over it, and whoever took the exception could go on.

namespace velloran::tests {

namespace {

AutoClickerConfig storedConfig() {
    AutoClickerConfig config;
    config.clickIntervalSeconds = 0.125;
    config.maxClicks = 3;
    config.playClickSound = true;
    config.hotkey = HotkeyCombo{0xC0000, 1, "⌃⌥S, and so long that it needs memory of its own"};
    return config;
}

/// What of the program can be told from outside.
struct Facts {
    std::optional<AutoClickerConfig> config;
    std::vector<std::string> presets;
    std::optional<AutoClickerConfig> storedConfig;
    std::vector<std::string> storedPresets;
    std::optional<std::int64_t> remindersShown;
    bool hasReminder = false;
    bool hasDonated = false;

    friend bool operator==(const Facts&, const Facts&) = default;
};

std::vector<std::string> namesOf(const std::vector<Preset>& presets) {
    std::vector<std::string> names;
    std::transform(presets.begin(), presets.end(), std::back_inserter(names),
                   [](const Preset& preset) { return preset.name; });
    return names;
}

/// The logic of the whole program on a platform that does nothing.
class Bench {
public:
    Bench() {
        platform.keepsJournal = false;
        PresetStore presets(platform.preferences);
        presets.saveConfig(storedConfig());
        presets.savePresets({Preset::make("One with a name that is not short at all", samples::fullConfig())});
    }

    Bench(const Bench&) = delete;
    Bench& operator=(const Bench&) = delete;

    ~Bench() {
        if (store) {
            store->stop();
        }
        platform.loop.runDue();
        store.reset();
        donations.reset();
        HotkeyManager::endShared();
    }

    void open() {
        store = fakes::makeStore(platform);
        donations.emplace(platform.loop, platform.preferences, platform.urlOpener());
        platform.loop.runDue();
    }

    void edit(double interval) {
        store->config.modify([interval](AutoClickerConfig& config) { config.clickIntervalSeconds = interval; });
    }

    [[nodiscard]] Facts facts() {
        Facts facts;
        if (store) {
            facts.config = store->config.get();
            facts.presets = namesOf(store->presets().get());
        }
        const PresetStore presets(platform.preferences);
        facts.storedConfig = presets.loadConfig();
        facts.storedPresets = namesOf(presets.loadPresets());
        facts.remindersShown = platform.preferences.integer("donation.remindersShown");
        facts.hasReminder = platform.preferences.holds("donation.nextReminderAt");
        facts.hasDonated = platform.preferences.truth("donation.donated").value_or(false);
        return facts;
    }

    /// Whether every press was followed by its release.
    [[nodiscard]] bool areClicksWhole() const { return platform.postedEvents == 2 * platform.pairedClicks; }

    fakes::RecordingPlatform platform;
    std::shared_ptr<AutoClickerStore> store;
    std::optional<DonationManager> donations;
};

/// Something that the program does.
struct Deed {
    const char* name;
    std::function<void(Bench&)> prepare;
    std::function<void(Bench&)> act;
};

void open(Bench& bench) {
    bench.open();
}

void run(Bench& bench) {
    bench.open();
    bench.store->start();
    bench.platform.loop.runDue();
}

std::vector<Deed> deeds() {
    return {
        {"start of the program", [](Bench&) {}, open},
        {"start", open, [](Bench& bench) { bench.store->start(); }},
        {"run of three clicks", open,
         [](Bench& bench) {
             bench.store->start();
             bench.platform.loop.advance(1);
         }},
        {"run with delay and still mouse",
         [](Bench& bench) {
             bench.open();
             bench.store->config.modify([](AutoClickerConfig& config) {
                 config.startDelaySeconds = 0.3;
                 config.requireStationaryMouse = true;
                 config.stationarySeconds = 0.2;
             });
             bench.platform.loop.advance(1);
         },
         [](Bench& bench) {
             bench.store->start();
             bench.platform.loop.advance(2);
         }},
        {"stop", run,
         [](Bench& bench) {
             bench.store->stop();
             bench.platform.loop.runDue();
         }},
        {"start in a run", run, [](Bench& bench) { bench.store->start(); }},
        {"hotkey", open,
         [](Bench& bench) {
             bench.platform.pressHotKey({HotkeyManager::hotKeySignature, HotkeyManager::hotKeyNumber});
             bench.platform.loop.advance(1);
         }},
        {"refused start",
         [](Bench& bench) {
             bench.open();
             bench.edit(0);
             bench.platform.loop.advance(1);
         },
         [](Bench& bench) { bench.store->start(); }},
        {"start without permission",
         [](Bench& bench) {
             bench.open();
             bench.platform.isTrusted = false;
         },
         [](Bench& bench) { bench.store->start(); }},
        {"permission lost in a run", run,
         [](Bench& bench) {
             bench.platform.isTrusted = false;
             bench.store->recheckPermission();
             bench.platform.isTrusted = true;
             bench.store->recheckPermission();
         }},
        {"edit, and saving it", open,
         [](Bench& bench) {
             bench.edit(0.5);
             bench.platform.loop.advance(1);
         }},
        {"another hotkey", open,
         [](Bench& bench) {
             bench.store->config.modify([](AutoClickerConfig& config) {
                 config.hotkey = HotkeyCombo{0x40000, 2, "⌃D"};
             });
             bench.platform.loop.advance(1);
         }},
        {"preset saved", open,
         [](Bench& bench) { bench.store->saveCurrentAsPreset("Another with a name that is not short"); }},
        {"preset applied", open,
         [](Bench& bench) {
             bench.store->apply(bench.store->allPresets().back());
             bench.platform.loop.advance(1);
         }},
        {"preset deleted", open, [](Bench& bench) { bench.store->deletePreset(bench.store->presets().get().front()); }},
        {"reset", open,
         [](Bench& bench) {
             bench.store->resetToDefaults();
             bench.platform.loop.advance(1);
         }},
        {"export and import", open,
         [](Bench& bench) {
             if (const auto bytes = bench.store->exportConfigData()) {
                 bench.store->importConfig(*bytes);
             }
             bench.platform.loop.advance(1);
         }},
        {"import of what is none", open,
         [](Bench& bench) { bench.store->importConfig(R"({"mouseButton":"left","clickIntervalSeconds":[[[1]]]})"); }},
        {"texts", open,
         [](Bench& bench) {
             const AutoClickerConfig& config = bench.store->config.get();
             static_cast<void>(summary::interval(config) + summary::delay(config) + summary::stop(config) +
                               summary::stationaryCheck(config) + bench.store->runtime().get().message());
         }},
        {"reminder put off", open, [](Bench& bench) { bench.donations->snooze(); }},
        {"reminder answered", open, [](Bench& bench) { bench.donations->acknowledgeAlreadyDonated(); }},
        {"donation", open, [](Bench& bench) { bench.donations->markDonated(); }},
    };
}

/// How an attempt ended; exit codes of the process that made it.
enum class Ending { untouched = 10, thrown, absorbed, ended, failed };

Bench* benchOfThisProcess = nullptr;

/// The documented end of a program whose click loop was refused memory.
[[noreturn]] void endAsDocumented() {
    RefusedMemory::end();
    const bool isWhole = benchOfThisProcess != nullptr && benchOfThisProcess->areClicksWhole();
    _exit(static_cast<int>(isWhole ? Ending::ended : Ending::failed));
}

/// Whoever goes on has the program as it was: it comes to rest, can be edited, saves, and makes exactly its clicks.
void expectItGoesOn(Bench& bench) {
    if (!bench.store) {
        HotkeyManager::endShared();
        bench.open();
    }
    bench.platform.isTrusted = true;
    bench.store->stop();
    bench.store->config.modify([](AutoClickerConfig& config) { config.hotkey.reset(); });
    bench.platform.loop.advance(1);
    EXPECT_EQ(bench.platform.hotKeys.size(), 0U);
    const std::uint64_t before = bench.platform.pairedClicks;
    AutoClickerConfig config = storedConfig();
    config.clickIntervalSeconds = 0.25;
    bench.store->config.set(config);
    bench.store->start();
    EXPECT_EQ(bench.store->runtime().get().status, ClickerStatus::running);
    bench.platform.loop.advance(5);
    EXPECT_EQ(bench.store->runtime().get().status, ClickerStatus::completed);
    EXPECT_EQ(bench.platform.pairedClicks, before + 3);
    EXPECT_TRUE(bench.areClicksWhole());
    EXPECT_EQ(PresetStore(bench.platform.preferences).loadConfig(), config);
    EXPECT_EQ(bench.platform.hotKeys.size(), 1U);
}

/// Each fact for itself.
void expectOldOrNew(const Facts& facts, const Facts& before, const Facts& after) {
    EXPECT_TRUE(facts.config == before.config || facts.config == after.config);
    EXPECT_TRUE(facts.presets == before.presets || facts.presets == after.presets);
    EXPECT_TRUE(facts.storedConfig == before.storedConfig || facts.storedConfig == after.storedConfig);
    EXPECT_TRUE(facts.storedPresets == before.storedPresets || facts.storedPresets == after.storedPresets);
    EXPECT_TRUE(facts.remindersShown == before.remindersShown || facts.remindersShown == after.remindersShown);
    EXPECT_TRUE(facts.hasReminder == before.hasReminder || facts.hasReminder == after.hasReminder);
    EXPECT_TRUE(facts.hasDonated == before.hasDonated || facts.hasDonated == after.hasDonated);
}

class RefusedMemoryTest : public testing::Test {
protected:
    /// Does it once with everything granted; what it changes.
    static std::pair<Facts, Facts> changeOf(const Deed& deed) {
        Bench bench;
        deed.prepare(bench);
        const Facts before = bench.facts();
        deed.act(bench);
        return {before, bench.facts()};
    }

    /// In a process of its own.
    static Ending attempt(const Deed& deed, std::int64_t number, RefusedMemory::Manner manner,
                          const std::pair<Facts, Facts>& change) {
        Ending ending = Ending::untouched;
        const std::int64_t heldBefore = RefusedMemory::held();
        {
            Bench bench;
            benchOfThisProcess = &bench;
            deed.prepare(bench);
            try {
                const RefusedMemory refused(number, manner);
                deed.act(bench);
            } catch (const std::bad_alloc&) {
                ending = Ending::thrown;
            }
            if (ending == Ending::untouched && RefusedMemory::hasRefused()) {
                ending = Ending::absorbed;
            }
            EXPECT_TRUE(bench.areClicksWhole());
            expectOldOrNew(bench.facts(), change.first, change.second);
            expectItGoesOn(bench);
            benchOfThisProcess = nullptr;
        }
        EXPECT_EQ(RefusedMemory::held(), heldBefore) << "left behind";
        return testing::Test::HasFailure() ? Ending::failed : ending;
    }

    Ending attemptElsewhere(const Deed& deed, std::int64_t number, RefusedMemory::Manner manner,
                            const std::pair<Facts, Facts>& change) {
        std::fflush(stdout);
        const pid_t child = fork();
        if (child == 0) {
            std::set_terminate(endAsDocumented);
            const Ending ending = attempt(deed, number, manner, change);
            std::fflush(stdout);
            _exit(static_cast<int>(ending));
        }
        int status = 0;
        waitpid(child, &status, 0);
        return WIFEXITED(status) ? static_cast<Ending>(WEXITSTATUS(status)) : Ending::failed;
    }

    void refuseEach(RefusedMemory::Manner manner, const char* what) {
        int tried = 0;
        int survived = 0;
        int thrown = 0;
        int ended = 0;
        for (const Deed& deed : deeds()) {
            SCOPED_TRACE(deed.name);
            // Some memory is taken once and kept.
            changeOf(deed);
            const auto change = changeOf(deed);
            for (std::int64_t number = 1;; ++number) {
                const Ending ending = attemptElsewhere(deed, number, manner, change);
                if (ending == Ending::untouched) {
                    EXPECT_GT(number, 1) << "needs no memory";
                    break;
                }
                ++tried;
                thrown += ending == Ending::thrown ? 1 : 0;
                ended += ending == Ending::ended ? 1 : 0;
                ASSERT_TRUE(ending == Ending::thrown || ending == Ending::absorbed || ending == Ending::ended)
                    << "piece " << number << ": " << static_cast<int>(ending);
                ++survived;
            }
        }
        std::cout << what << ": " << tried << " tried, " << survived << " survived, " << thrown
                  << " of them by an exception, " << ended << " by the end of the program\n";
        EXPECT_EQ(survived, tried);
        EXPECT_GT(thrown, 300);
        EXPECT_GT(ended, 50);
    }
};

} // namespace

TEST_F(RefusedMemoryTest, OnePieceThatIsRefusedLeavesNothingInBetween) {
    refuseEach(RefusedMemory::Manner::once, "one piece refused");
}

TEST_F(RefusedMemoryTest, NoMemoryAnyMoreLeavesNothingInBetween) {
    refuseEach(RefusedMemory::Manner::fromThenOn, "all memory refused");
}

} // namespace velloran::tests
