#include "platform/gnome/SettingsTool.h"

#include <QProcessEnvironment>

#include <utility>

namespace velloran::platform::gnome {

namespace {

constexpr int longestRun = 10'000;        // milliseconds
constexpr int longestWaitAtEnd = 1'000;   // milliseconds
constexpr qint64 longestOutput = 1 << 20; // bytes

} // namespace

SettingsTool::SettingsTool(const QString& sessionBus) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), sessionBus);
    // What users call their shortcuts comes as it is.
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    process_.setProcessEnvironment(environment);
    process_.setStandardInputFile(QProcess::nullDevice());
    process_.setStandardErrorFile(QProcess::nullDevice());
    patience_.setSingleShot(true);
    patience_.setInterval(longestRun);
    connect(&patience_, &QTimer::timeout, &process_, &QProcess::kill);
    connect(&process_, &QProcess::finished, this,
            [this](int code, QProcess::ExitStatus status) { end(status == QProcess::NormalExit && code == 0); });
    connect(&process_, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        // All other errors are followed by the end.
        if (error == QProcess::FailedToStart) {
            end(false);
        }
    });
}

SettingsTool::~SettingsTool() {
    // It would be heard of for the last time inside its own destructor.
    process_.disconnect(this);
}

void SettingsTool::run(const QStringList& arguments, Done done) {
    commands_.push_back({arguments, std::move(done)});
    // A later turn: one that cannot be started is told of at once.
    QMetaObject::invokeMethod(this, &SettingsTool::startNext, Qt::QueuedConnection);
}

void SettingsTool::startNext() {
    if (isRunning_ || commands_.empty()) {
        return;
    }
    isRunning_ = true;
    patience_.start();
    process_.start(QStringLiteral("gsettings"), commands_.front().arguments);
}

void SettingsTool::end(bool isWell) {
    if (!std::exchange(isRunning_, false)) {
        return;
    }
    patience_.stop();
    const QByteArray output = process_.readAllStandardOutput();
    const Done done = std::move(commands_.front().done);
    commands_.pop_front();
    if (!commands_.empty()) {
        QMetaObject::invokeMethod(this, &SettingsTool::startNext, Qt::QueuedConnection);
    }
    const bool isUsable = isWell && output.size() <= longestOutput;
    done(isUsable ? std::optional(output) : std::nullopt);
}

void SettingsTool::finish() {
    while (isRunning_ || !commands_.empty()) {
        startNext();
        if (isRunning_ && !process_.waitForFinished(longestWaitAtEnd)) {
            process_.kill();
            process_.waitForFinished(longestWaitAtEnd);
            // One that cannot even be killed is left.
            end(false);
        }
    }
}

} // namespace velloran::platform::gnome
