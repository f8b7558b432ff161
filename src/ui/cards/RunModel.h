#pragma once

#include "async/Subscription.h"
#include "engine/AutoClickerStore.h"
#include "model/RunProgress.h"
#include "ui/FrameThrottle.h"

#include <QObject>
#include <QString>
#include <QtQmlIntegration>

#include <optional>
#include <vector>

namespace velloran {

/// The run as the views see it, and how it is started and ended. What changes shows once per frame at most, however
/// fast it clicks, and what nobody is shown is not told. Main thread.
class RunModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the program")

    Q_PROPERTY(Status status READ status NOTIFY statusChanged FINAL)
    Q_PROPERTY(QString headline READ headline NOTIFY statusChanged FINAL)
    Q_PROPERTY(bool isRunningState READ isRunningState NOTIFY statusChanged FINAL)
    Q_PROPERTY(bool isFlying READ isFlying NOTIFY statusChanged FINAL)
    Q_PROPERTY(QString message READ message NOTIFY messageChanged FINAL)
    Q_PROPERTY(bool showsProgress READ showsProgress NOTIFY progressChanged FINAL)
    Q_PROPERTY(double progress READ progress NOTIFY progressChanged FINAL)
    Q_PROPERTY(QString progressText READ progressText NOTIFY progressChanged FINAL)
    Q_PROPERTY(bool hasAccessibilityPermission READ hasAccessibilityPermission NOTIFY permissionChanged FINAL)
    /// Whether anybody can see the views. While nobody can, only another status is told; the rest waits until somebody
    /// looks again.
    Q_PROPERTY(bool isSeen READ isSeen WRITE setSeen NOTIFY seenChanged FINAL)

public:
    /// The phases of a run, in the order of `ClickerStatus`.
    enum Status { Idle, Arming, Delayed, Running, Paused, Completed, Error };
    Q_ENUM(Status)

    /// `store` and `loop` outlive this object.
    RunModel(AutoClickerStore& store, EventLoop& loop, QObject* parent = nullptr);

    [[nodiscard]] Status status() const { return static_cast<Status>(shown_.runtime.status); }

    [[nodiscard]] QString headline() const;

    [[nodiscard]] bool isRunningState() const { return isActive(shown_.runtime.status); }

    [[nodiscard]] bool isFlying() const;

    [[nodiscard]] QString message() const { return shown_.message; }

    [[nodiscard]] bool showsProgress() const { return shown_.progress.has_value(); }

    [[nodiscard]] double progress() const;
    [[nodiscard]] QString progressText() const;

    [[nodiscard]] bool hasAccessibilityPermission() const { return shown_.hasPermission; }

    [[nodiscard]] bool isSeen() const { return isSeen_; }

    void setSeen(bool isSeen);

    Q_INVOKABLE void start();
    Q_INVOKABLE void stop();
    /// Whether a press of the left button at this moment is most likely the echo of this program's own last click.
    [[nodiscard]] Q_INVOKABLE bool isEchoOfOwnClick() const;
    Q_INVOKABLE void refreshPermission();
    Q_INVOKABLE void openAccessibilitySettings();

signals:
    void statusChanged();
    void messageChanged();
    void progressChanged();
    void permissionChanged();
    void seenChanged();

private:
    /// What the views show of the run at the moment.
    struct Shown {
        AutoClickerRuntime runtime;
        QString message;
        std::optional<RunProgress> progress;
        bool hasPermission = false;
    };

    [[nodiscard]] Shown current() const;
    void noteClicks(const AutoClickerRuntime& runtime);
    void show();

    AutoClickerStore& store_;
    EventLoop& loop_;
    Shown shown_;
    bool isSeen_ = true;
    std::optional<Date> runStartedAt_;
    std::int64_t countedClicks_ = 0;
    std::optional<Date> lastOwnClick_;
    MouseButton runButton_ = MouseButton::left;
    FrameThrottle throttle_;
    std::vector<Subscription> subscriptions_;
};

} // namespace velloran
