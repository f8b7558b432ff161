#pragma once

#include "async/Subscription.h"
#include "engine/AutoClickerStore.h"
#include "ui/controls/WholeNumber.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QtQmlIntegration>

namespace velloran {

/// The configuration as the views see it. Writing a property assigns the configuration at once, equal values included.
/// Main thread.
class ConfigModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the program")

    Q_PROPERTY(int mouseButton READ mouseButton WRITE setMouseButton NOTIFY changed FINAL)
    Q_PROPERTY(double clickIntervalSeconds READ clickIntervalSeconds WRITE setClickIntervalSeconds NOTIFY changed FINAL)
    Q_PROPERTY(bool isManual READ isManual WRITE setManual NOTIFY changed FINAL)
    Q_PROPERTY(velloran::WholeNumber clickCount READ clickCount WRITE setClickCount NOTIFY changed FINAL)
    Q_PROPERTY(double startDelaySeconds READ startDelaySeconds WRITE setStartDelaySeconds NOTIFY changed FINAL)
    Q_PROPERTY(bool hasStartDelay READ hasStartDelay WRITE setHasStartDelay NOTIFY changed FINAL)
    Q_PROPERTY(
        bool requireStationaryMouse READ requireStationaryMouse WRITE setRequireStationaryMouse NOTIFY changed FINAL)
    Q_PROPERTY(double stationarySeconds READ stationarySeconds WRITE setStationarySeconds NOTIFY changed FINAL)
    Q_PROPERTY(bool playClickSound READ playClickSound WRITE setPlayClickSound NOTIFY changed FINAL)
    Q_PROPERTY(bool minimizeToTray READ minimizeToTray WRITE setMinimizeToTray NOTIFY changed FINAL)
    Q_PROPERTY(bool isValid READ isValid NOTIFY changed FINAL)
    Q_PROPERTY(bool hasHotkey READ hasHotkey NOTIFY changed FINAL)

    Q_PROPERTY(double intervalMin READ intervalMin CONSTANT FINAL)
    Q_PROPERTY(double intervalMax READ intervalMax CONSTANT FINAL)
    Q_PROPERTY(velloran::WholeNumber clicksMin READ clicksMin CONSTANT FINAL)
    Q_PROPERTY(velloran::WholeNumber clicksMax READ clicksMax CONSTANT FINAL)
    Q_PROPERTY(double delayMin READ delayMin CONSTANT FINAL)
    Q_PROPERTY(double delayMax READ delayMax CONSTANT FINAL)
    Q_PROPERTY(double stationaryMin READ stationaryMin CONSTANT FINAL)
    Q_PROPERTY(double stationaryMax READ stationaryMax CONSTANT FINAL)
    Q_PROPERTY(QStringList hotkeyChoices READ hotkeyChoices CONSTANT FINAL)
    Q_PROPERTY(QStringList mouseButtonNames READ mouseButtonNames CONSTANT FINAL)

    /// The configuration in words.
    Q_PROPERTY(QString hotkeyDisplay READ hotkeyDisplay NOTIFY changed FINAL)
    Q_PROPERTY(QString mouseButtonText READ mouseButtonText NOTIFY changed FINAL)
    Q_PROPERTY(QString intervalText READ intervalText NOTIFY changed FINAL)
    Q_PROPERTY(QString stopText READ stopText NOTIFY changed FINAL)
    Q_PROPERTY(QString hotkeyText READ hotkeyText NOTIFY changed FINAL)
    Q_PROPERTY(QString delayText READ delayText NOTIFY changed FINAL)
    Q_PROPERTY(QString stationaryText READ stationaryText NOTIFY changed FINAL)

public:
    /// `store` outlives this object.
    explicit ConfigModel(AutoClickerStore& store, QObject* parent = nullptr);

    [[nodiscard]] int mouseButton() const { return static_cast<int>(config().mouseButton); }

    void setMouseButton(int index);

    [[nodiscard]] double clickIntervalSeconds() const { return config().clickIntervalSeconds; }

    void setClickIntervalSeconds(double seconds) { set(&AutoClickerConfig::clickIntervalSeconds, seconds); }

    [[nodiscard]] bool isManual() const { return config().stopMode == StopMode::manual; }

    /// Choosing the counted mode while no count is stored stores 100.
    void setManual(bool isManual);
    /// The stored count, or 100 when there is none.
    [[nodiscard]] WholeNumber clickCount() const;

    void setClickCount(WholeNumber count) { set(&AutoClickerConfig::maxClicks, count.value); }

    [[nodiscard]] double startDelaySeconds() const { return config().startDelaySeconds; }

    void setStartDelaySeconds(double seconds) { set(&AutoClickerConfig::startDelaySeconds, seconds); }

    [[nodiscard]] bool hasStartDelay() const { return config().startDelaySeconds > 0; }

    /// Turning the delay on gives at least three seconds, turning it off none.
    void setHasStartDelay(bool hasDelay);

    [[nodiscard]] bool requireStationaryMouse() const { return config().requireStationaryMouse; }

    void setRequireStationaryMouse(bool isRequired) { set(&AutoClickerConfig::requireStationaryMouse, isRequired); }

    [[nodiscard]] double stationarySeconds() const { return config().stationarySeconds; }

    void setStationarySeconds(double seconds) { set(&AutoClickerConfig::stationarySeconds, seconds); }

    [[nodiscard]] bool playClickSound() const { return config().playClickSound; }

    void setPlayClickSound(bool plays) { set(&AutoClickerConfig::playClickSound, plays); }

    [[nodiscard]] bool minimizeToTray() const { return config().minimizeToTray; }

    void setMinimizeToTray(bool minimizes) { set(&AutoClickerConfig::minimizeToTray, minimizes); }

    [[nodiscard]] bool isValid() const { return config().isValid(); }

    [[nodiscard]] bool hasHotkey() const { return config().hotkey.has_value(); }

    [[nodiscard]] double intervalMin() const { return AutoClickerConfig::intervalMin; }

    [[nodiscard]] double intervalMax() const { return AutoClickerConfig::intervalMax; }

    [[nodiscard]] WholeNumber clicksMin() const { return {AutoClickerConfig::clicksMin}; }

    [[nodiscard]] WholeNumber clicksMax() const { return {AutoClickerConfig::clicksMax}; }

    [[nodiscard]] double delayMin() const { return AutoClickerConfig::delayMin; }

    [[nodiscard]] double delayMax() const { return AutoClickerConfig::delayMax; }

    [[nodiscard]] double stationaryMin() const { return AutoClickerConfig::stationaryMin; }

    [[nodiscard]] double stationaryMax() const { return AutoClickerConfig::stationaryMax; }

    [[nodiscard]] QStringList hotkeyChoices() const;
    [[nodiscard]] QStringList mouseButtonNames() const;
    [[nodiscard]] QString hotkeyDisplay() const;
    [[nodiscard]] QString mouseButtonText() const;
    [[nodiscard]] QString intervalText() const;
    [[nodiscard]] QString stopText() const;
    [[nodiscard]] QString hotkeyText() const;
    [[nodiscard]] QString delayText() const;
    [[nodiscard]] QString stationaryText() const;

    /// Takes over a `HotkeyCombo`.
    Q_INVOKABLE void setHotkey(const QVariant& combo);
    /// Takes over the built-in choice at that place.
    Q_INVOKABLE void chooseHotkey(int index);
    Q_INVOKABLE void clearHotkey();

signals:
    void changed();

private:
    [[nodiscard]] const AutoClickerConfig& config() const { return store_.config.get(); }

    template<typename Field, typename Value>
    void set(Field AutoClickerConfig::*field, Value value) {
        store_.config.modify([field, value](AutoClickerConfig& config) { config.*field = value; });
    }

    AutoClickerStore& store_;
    Subscription subscription_;
};

} // namespace velloran
