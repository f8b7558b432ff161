#pragma once

#include "engine/AutoClickerStore.h"
#include "model/RunProgress.h"
#include "ui/FrameThrottle.h"
#include "ui/controls/WholeNumber.h"

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QtQmlIntegration>

#include <memory>
#include <vector>

namespace velloran {

/// The controller as the views see it. Writing a configuration property assigns the configuration at once, equal values
/// included; its changes show at once as well. Changes of the run record show once per frame at most, however fast it
/// clicks.
class StoreModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the program")

    Q_PROPERTY(int mouseButton READ mouseButton WRITE setMouseButton NOTIFY configChanged FINAL)
    Q_PROPERTY(
        double clickIntervalSeconds READ clickIntervalSeconds WRITE setClickIntervalSeconds NOTIFY configChanged FINAL)
    Q_PROPERTY(bool isManual READ isManual WRITE setManual NOTIFY configChanged FINAL)
    Q_PROPERTY(velloran::ui::WholeNumber clickCount READ clickCount WRITE setClickCount NOTIFY configChanged FINAL)
    Q_PROPERTY(double startDelaySeconds READ startDelaySeconds WRITE setStartDelaySeconds NOTIFY configChanged FINAL)
    Q_PROPERTY(bool hasStartDelay READ hasStartDelay WRITE setHasStartDelay NOTIFY configChanged FINAL)
    Q_PROPERTY(bool requireStationaryMouse READ requireStationaryMouse WRITE setRequireStationaryMouse NOTIFY
                   configChanged FINAL)
    Q_PROPERTY(double stationarySeconds READ stationarySeconds WRITE setStationarySeconds NOTIFY configChanged FINAL)
    Q_PROPERTY(QVariant hotkey READ hotkey WRITE setHotkey NOTIFY configChanged FINAL)
    Q_PROPERTY(bool playClickSound READ playClickSound WRITE setPlayClickSound NOTIFY configChanged FINAL)
    Q_PROPERTY(bool minimizeToTray READ minimizeToTray WRITE setMinimizeToTray NOTIFY configChanged FINAL)
    Q_PROPERTY(bool isValid READ isValid NOTIFY configChanged FINAL)

    Q_PROPERTY(double intervalMin READ intervalMin CONSTANT FINAL)
    Q_PROPERTY(double intervalMax READ intervalMax CONSTANT FINAL)
    Q_PROPERTY(velloran::ui::WholeNumber clicksMin READ clicksMin CONSTANT FINAL)
    Q_PROPERTY(velloran::ui::WholeNumber clicksMax READ clicksMax CONSTANT FINAL)
    Q_PROPERTY(double delayMin READ delayMin CONSTANT FINAL)
    Q_PROPERTY(double delayMax READ delayMax CONSTANT FINAL)
    Q_PROPERTY(double stationaryMin READ stationaryMin CONSTANT FINAL)
    Q_PROPERTY(double stationaryMax READ stationaryMax CONSTANT FINAL)
    Q_PROPERTY(QStringList hotkeyChoices READ hotkeyChoices CONSTANT FINAL)
    Q_PROPERTY(QStringList mouseButtonNames READ mouseButtonNames CONSTANT FINAL)

    /// Texts of the summary and of the helper lines.
    Q_PROPERTY(bool hasHotkey READ hasHotkey NOTIFY configChanged FINAL)
    Q_PROPERTY(QString hotkeyDisplay READ hotkeyDisplay NOTIFY configChanged FINAL)
    Q_PROPERTY(QString mouseButtonText READ mouseButtonText NOTIFY configChanged FINAL)
    Q_PROPERTY(QString intervalText READ intervalText NOTIFY configChanged FINAL)
    Q_PROPERTY(QString stopText READ stopText NOTIFY configChanged FINAL)
    Q_PROPERTY(QString hotkeyText READ hotkeyText NOTIFY configChanged FINAL)
    Q_PROPERTY(QString delayText READ delayText NOTIFY configChanged FINAL)
    Q_PROPERTY(QString stationaryText READ stationaryText NOTIFY configChanged FINAL)

    Q_PROPERTY(Status status READ status NOTIFY statusChanged FINAL)
    Q_PROPERTY(QString headline READ headline NOTIFY statusChanged FINAL)
    Q_PROPERTY(bool isRunningState READ isRunningState NOTIFY statusChanged FINAL)
    Q_PROPERTY(bool isFlying READ isFlying NOTIFY statusChanged FINAL)
    Q_PROPERTY(QString message READ message NOTIFY messageChanged FINAL)
    Q_PROPERTY(bool showsProgress READ showsProgress NOTIFY progressChanged FINAL)
    Q_PROPERTY(double progress READ progress NOTIFY progressChanged FINAL)
    Q_PROPERTY(QString progressText READ progressText NOTIFY progressChanged FINAL)
    Q_PROPERTY(bool hasAccessibilityPermission READ hasAccessibilityPermission NOTIFY permissionChanged FINAL)

    /// The presets as lists of {id, name}.
    Q_PROPERTY(QVariantList builtInPresets READ builtInPresets CONSTANT FINAL)
    Q_PROPERTY(QVariantList userPresets READ userPresets NOTIFY presetsChanged FINAL)

public:
    /// The phases of a run, in the order of `ClickerStatus`.
    enum Status { Idle, Arming, Delayed, Running, Paused, Completed, Error };
    Q_ENUM(Status)

    explicit StoreModel(std::shared_ptr<AutoClickerStore> store, QObject* parent = nullptr);

    [[nodiscard]] int mouseButton() const { return static_cast<int>(config().mouseButton); }

    void setMouseButton(int index);

    [[nodiscard]] double clickIntervalSeconds() const { return config().clickIntervalSeconds; }

    void setClickIntervalSeconds(double seconds);

    [[nodiscard]] bool isManual() const { return config().stopMode == StopMode::manual; }

    /// Choosing the counted mode while no count is stored stores 100.
    void setManual(bool isManual);
    /// The stored count, or 100 when there is none.
    [[nodiscard]] ui::WholeNumber clickCount() const;
    void setClickCount(ui::WholeNumber count);

    [[nodiscard]] double startDelaySeconds() const { return config().startDelaySeconds; }

    void setStartDelaySeconds(double seconds);

    [[nodiscard]] bool hasStartDelay() const { return config().startDelaySeconds > 0; }

    /// Turning the delay on gives at least three seconds, turning it off none.
    void setHasStartDelay(bool hasDelay);

    [[nodiscard]] bool requireStationaryMouse() const { return config().requireStationaryMouse; }

    void setRequireStationaryMouse(bool isRequired);

    [[nodiscard]] double stationarySeconds() const { return config().stationarySeconds; }

    void setStationarySeconds(double seconds);
    /// A `HotkeyCombo`, or nothing.
    [[nodiscard]] QVariant hotkey() const;
    void setHotkey(const QVariant& combo);

    [[nodiscard]] bool playClickSound() const { return config().playClickSound; }

    void setPlayClickSound(bool plays);

    [[nodiscard]] bool minimizeToTray() const { return config().minimizeToTray; }

    void setMinimizeToTray(bool minimizes);

    [[nodiscard]] bool isValid() const { return config().isValid(); }

    [[nodiscard]] double intervalMin() const { return AutoClickerConfig::intervalMin; }

    [[nodiscard]] double intervalMax() const { return AutoClickerConfig::intervalMax; }

    [[nodiscard]] ui::WholeNumber clicksMin() const { return {AutoClickerConfig::clicksMin}; }

    [[nodiscard]] ui::WholeNumber clicksMax() const { return {AutoClickerConfig::clicksMax}; }

    [[nodiscard]] double delayMin() const { return AutoClickerConfig::delayMin; }

    [[nodiscard]] double delayMax() const { return AutoClickerConfig::delayMax; }

    [[nodiscard]] double stationaryMin() const { return AutoClickerConfig::stationaryMin; }

    [[nodiscard]] double stationaryMax() const { return AutoClickerConfig::stationaryMax; }

    [[nodiscard]] QStringList hotkeyChoices() const;
    [[nodiscard]] QStringList mouseButtonNames() const;

    [[nodiscard]] bool hasHotkey() const { return config().hotkey.has_value(); }

    [[nodiscard]] QString hotkeyDisplay() const;
    [[nodiscard]] QString mouseButtonText() const;
    [[nodiscard]] QString intervalText() const;
    [[nodiscard]] QString stopText() const;
    [[nodiscard]] QString hotkeyText() const;
    [[nodiscard]] QString delayText() const;
    [[nodiscard]] QString stationaryText() const;

    [[nodiscard]] Status status() const { return static_cast<Status>(shown_.runtime.status); }

    [[nodiscard]] QString headline() const;

    [[nodiscard]] bool isRunningState() const { return isActive(shown_.runtime.status); }

    [[nodiscard]] bool isFlying() const;

    [[nodiscard]] QString message() const { return shown_.message; }

    [[nodiscard]] bool showsProgress() const;
    [[nodiscard]] double progress() const;
    [[nodiscard]] QString progressText() const;

    [[nodiscard]] bool hasAccessibilityPermission() const { return shown_.hasPermission; }

    [[nodiscard]] QVariantList builtInPresets() const;
    [[nodiscard]] QVariantList userPresets() const;

    Q_INVOKABLE void start();
    Q_INVOKABLE void stop();
    /// Whether a press of the left button at this moment is most likely the echo of this program's own last click.
    [[nodiscard]] Q_INVOKABLE bool isEchoOfOwnClick() const;
    Q_INVOKABLE void refreshPermission();
    Q_INVOKABLE void openAccessibilitySettings();
    /// Takes over the built-in choice at that place.
    Q_INVOKABLE void chooseHotkey(int index);
    Q_INVOKABLE void clearHotkey();
    /// By identifier; one that no preset has changes nothing.
    Q_INVOKABLE void applyPreset(const QString& id);
    Q_INVOKABLE void deletePreset(const QString& id);
    Q_INVOKABLE void saveCurrentAsPreset(const QString& name);
    Q_INVOKABLE void resetToDefaults();
    /// Empty when the configuration has no exportable form.
    [[nodiscard]] Q_INVOKABLE QByteArray exportConfigData() const;
    Q_INVOKABLE bool importConfig(const QByteArray& bytes);

signals:
    void configChanged();
    void statusChanged();
    void messageChanged();
    void progressChanged();
    void permissionChanged();
    void presetsChanged();

private:
    /// What the views show of the run at the moment.
    struct Shown {
        AutoClickerRuntime runtime;
        QString message;
        bool hasPermission = false;
    };

    [[nodiscard]] const AutoClickerConfig& config() const { return store_->config.get(); }

    template<typename Change>
    void change(Change change);
    [[nodiscard]] Shown current() const;
    [[nodiscard]] std::optional<RunProgress> runProgress() const;
    void noteClicks(const AutoClickerRuntime& runtime);
    void show();
    [[nodiscard]] std::optional<Preset> presetWith(const QString& id) const;

    const std::shared_ptr<AutoClickerStore> store_;
    Shown shown_;
    std::optional<Date> runStartedAt_;
    std::int64_t countedClicks_ = 0;
    std::optional<Date> lastOwnClick_;
    MouseButton runButton_ = MouseButton::left;
    FrameThrottle throttle_;
    std::vector<Subscription> subscriptions_;
};

} // namespace velloran
