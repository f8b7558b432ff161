#pragma once

#include <QByteArray>
#include <QObject>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <deque>
#include <functional>
#include <optional>

namespace velloran::platform::gnome {

/// The desktop's own tool for its settings, run in the background, one command after the other. Main thread.
class SettingsTool final : public QObject {
    Q_OBJECT

public:
    /// What it printed; nothing where it failed, is not there or took too long.
    using Done = std::function<void(const std::optional<QByteArray>& output)>;

    /// `sessionBus` is where the session bus is, in the form of its environment variable.
    explicit SettingsTool(const QString& sessionBus);
    SettingsTool(const SettingsTool&) = delete;
    SettingsTool& operator=(const SettingsTool&) = delete;
    ~SettingsTool() override;

    /// Runs it when those before it are over. `done` is called in a later turn, or from inside `finish`.
    void run(const QStringList& arguments, Done done);

    /// Waits for all commands, those that follow from them included, each for a second at most.
    void finish();

private:
    struct Command {
        QStringList arguments;
        Done done;
    };

    void startNext();
    void end(bool isWell);

    std::deque<Command> commands_;
    bool isRunning_ = false;
    QProcess process_;
    QTimer patience_;
};

} // namespace velloran::platform::gnome
