#pragma once

#include "async/Published.h"
#include "async/SerialQueue.h"
#include "async/Task.h"
#include "engine/ClickEngine.h"
#include "engine/MouseTracker.h"
#include "engine/SoundPlayer.h"
#include "model/AutoClickerConfig.h"
#include "model/AutoClickerRuntime.h"
#include "platform/Desktop.h"
#include "presets/ConfigOwner.h"
#include "presets/Preset.h"
#include "presets/PresetStore.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace velloran {

class HotkeyManager;

/// The controller: owns configuration, run state and presets, runs the click loop, saves the configuration shortly
/// after every change and keeps the hotkey registered to what the configuration names. Main thread only. Shared,
/// because a running loop keeps it alive until the loop ends.
class AutoClickerStore final : public ConfigOwner, public std::enable_shared_from_this<AutoClickerStore> {
public:
    /// A store that follows the parts of `desktop` as they come and go; it is the desktop of the installed platform.
    /// What is given by reference must outlive the store.
    static std::shared_ptr<AutoClickerStore> create(EventLoop& loop, const Published<platform::Desktop>& desktop,
                                                    platform::SystemSounds& sounds,
                                                    std::unique_ptr<PresetStore> presetStore);

    AutoClickerStore(const AutoClickerStore&) = delete;
    AutoClickerStore& operator=(const AutoClickerStore&) = delete;
    /// Ends saving and hotkey wiring. Leaves the registered hotkey as it is.
    ~AutoClickerStore() override;

    /// The configuration; views write it directly. A running loop works from its own copy.
    Published<AutoClickerConfig> config;

    /// The live record of the current or last run.
    [[nodiscard]] const Published<AutoClickerRuntime>& runtime() const { return runtime_; }

    /// Whether synthetic input could be posted when last asked.
    [[nodiscard]] const Published<bool>& hasAccessibilityPermission() const { return hasAccessibilityPermission_; }

    /// Starts or stops, by the status. For the global hotkey.
    void toggleStartStop();

    /// Starts a run, replacing one that is under way; refusals show in the run record. A refused start leaves a running
    /// loop running. May be called, as `stop` may, by whoever is being told of a change: what was under way ends then.
    void start();

    /// Ends the run. The counts stay.
    void stop();

    /// Asks for the permission when it is missing, and clears an error when it is there.
    void refreshPermission();

    /// Looks whether the permission is still there, and ends the run when it is not; where it has come, a refusal for
    /// want of it is over. Asks the user nothing. Called whenever the desktop reports that it may have changed.
    void recheckPermission();

    /// For the user, who wants the permission.
    void openAccessibilitySettings();

    [[nodiscard]] const Published<std::vector<Preset>>& presets() const override { return presets_; }

    [[nodiscard]] std::vector<Preset> allPresets() const override;
    void apply(const Preset& preset) override;
    void saveCurrentAsPreset(std::string named) override;
    void deletePreset(const Preset& preset) override;
    void resetToDefaults() override;
    [[nodiscard]] std::optional<Bytes> exportConfigData() const override;
    bool importConfig(const Bytes& from) override;

private:
    struct Private {};

public:
    /// For `create` alone.
    AutoClickerStore(Private, EventLoop& loop, const Published<platform::Desktop>& desktop,
                     platform::SystemSounds& sounds, std::unique_ptr<PresetStore> presetStore);

private:
    static Task runClickLoop(EventLoop& loop, std::weak_ptr<AutoClickerStore> weakStore, AutoClickerConfig snapshot,
                             std::uint64_t run);

    void connect();
    void follow(const platform::Desktop& desktop);
    void listenToTrust();
    void clearError();
    /// Shows what was found, unless somebody who is told that it will change sees to a newer finding.
    void showPermission(bool isTrusted);
    void startLoop();
    void cancelLoop();
    void applyHotkey(const std::optional<HotkeyCombo>& combo);
    /// Hands the click over, which is posted when it is due, and counts it.
    void click(const AutoClickerConfig& snapshot, std::uint64_t run, Moment due);

    /// Lets `change` alter the run record unless `isOvertaken`: whoever is told of a change may start or stop, and what
    /// was to be written before that is then not written over it. Whether the writer may go on.
    template<typename Overtaken, typename Change>
    bool alter(const Overtaken& isOvertaken, Change change) {
        if (isOvertaken()) {
            return false;
        }
        runtime_.modify([&](AutoClickerRuntime& record) {
            if (isOvertaken()) {
                return false;
            }
            change(record);
            return true;
        });
        return !isOvertaken();
    }

    EventLoop& loop_;
    const Published<platform::Desktop>& desktop_;
    /// The parts in use.
    platform::Desktop parts_;
    Published<AutoClickerRuntime> runtime_;
    /// How often a run was begun or a stop was asked for; numbers each one.
    std::uint64_t orders_ = 0;
    /// The order that began the run of the record.
    std::uint64_t run_ = 0;
    Published<std::vector<Preset>> presets_;
    Published<bool> hasAccessibilityPermission_;
    /// How often the permission was looked at; numbers each finding.
    std::uint64_t findings_ = 0;
    /// The permission was to be asked for while there was nobody to ask.
    bool isPromptDue_ = false;
    /// Shared with the clicks that are still to be posted.
    std::shared_ptr<ClickEngine> engine_;
    MouseTracker mouseTracker_;
    HotkeyManager& hotkey_;
    std::unique_ptr<PresetStore> presetStore_;
    SoundPlayer soundPlayer_;
    std::optional<Task> loopTask_;
    Subscription saveCancellable_;
    /// Behind the engine: its last jobs are done before the engine goes.
    std::unique_ptr<SerialQueue> engineQueue_;
    std::vector<Subscription> cancellables_;
};

} // namespace velloran
