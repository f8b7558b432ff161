#include "platform/plasma/PlasmaPointer.h"

#include <QDBusConnection>
#include <QDir>

#include <utility>

namespace velloran::platform::plasma {

namespace {

/// So long it is told where the pointer is after nobody has asked any more.
constexpr std::uint64_t longestSilence = 60 * nanosecondsPerSecond;
/// So long a word of KWin holds that the script is there.
constexpr std::uint64_t longestTrust = nanosecondsPerSecond / 4;
/// Who takes longer to answer may have stopped telling as well.
constexpr std::uint64_t longestAnswer = nanosecondsPerSecond;

const auto scriptingPath = QStringLiteral("/Scripting");
const auto scriptingInterface = QStringLiteral("org.kde.kwin.Scripting");
const auto scriptInterface = QStringLiteral("org.kde.kwin.Script");
const auto pointerPath = QStringLiteral("/app/velloran/Velloran/pointer");
const auto pointerInterface = QStringLiteral("app.velloran.Velloran.Pointer");
const auto pointerMethod = QStringLiteral("at");
/// The same in every run: KWin may have one that was killed.
const auto scriptName = QStringLiteral("app.velloran.Velloran");

QByteArray scriptFor(const QString& receiver) {
    return QStringLiteral(R"(function tell() {
    const place = workspace.cursorPos;
    callDBus("%1", "%2", "%3", "%4", place.x, place.y);
}
workspace.cursorPosChanged.connect(tell);
tell();
)")
        .arg(receiver, pointerPath, pointerInterface, pointerMethod)
        .toUtf8();
}

bus::BusService::Call scripting(const QString& method, const QVariantList& arguments) {
    return {scriptingPath, scriptingInterface, method, arguments};
}

bool isYes(const QDBusMessage& answer) {
    return answer.type() == QDBusMessage::ReplyMessage && answer.arguments().value(0).toBool();
}

} // namespace

PlasmaPointer::PlasmaPointer(EventLoop& loop, bus::SessionBus& bus)
    : loop_(loop), bus_(bus), kwin_(bus, QStringLiteral("org.kde.KWin")), asked_(loop.monotonicNow()) {
    connect(&kwin_, &bus::BusService::appeared, this, &PlasmaPointer::offer);
    connect(&kwin_, &bus::BusService::vanished, this, &PlasmaPointer::lose);
}

PlasmaPointer::~PlasmaPointer() {
    unload();
    bus_.connection().unregisterObject(pointerPath);
}

void PlasmaPointer::offer() {
    // Without effect where that was done already.
    bus_.connection().registerVirtualObject(pointerPath, this);
    kwin_.call(scripting(QStringLiteral("isScriptLoaded"), {scriptName}), this, [this](const QDBusMessage& answer) {
        if (answer.type() == QDBusMessage::ReplyMessage && !part_.get().part) {
            // Not owned: this is no more shared than the bus.
            part_.set({std::shared_ptr<PointerPosition>(std::shared_ptr<void>(), this),
                       "A script of the program's in KWin tells where the pointer is.",
                       {}});
        }
    });
}

void PlasmaPointer::lose() {
    isLoaded_ = false;
    told_.reset();
    unconfirmedSince_.reset();
    script_.reset();
}

std::optional<Point> PlasmaPointer::currentPosition() {
    asked_ = loop_.monotonicNow();
    if (!kwin_.isThere()) {
        return std::nullopt;
    }
    if (!isLoaded_) {
        load();
    } else {
        confirm();
    }
    const bool isOwed = unconfirmedSince_ && nanosecondsBetween(*unconfirmedSince_, asked_) > longestAnswer;
    return isOwed ? std::nullopt : told_;
}

void PlasmaPointer::load() {
    isLoaded_ = true;
    told_.reset();
    // KWin reads it from a file, and does not say when.
    script_ = std::make_unique<QTemporaryFile>(QDir::tempPath() + QStringLiteral("/velloran-pointer-XXXXXX.js"));
    if (!script_->open() || script_->write(scriptFor(bus_.connection().baseService())) < 0 || !script_->flush()) {
        return;
    }
    kwin_.tell(scripting(QStringLiteral("unloadScript"), {scriptName}));
    kwin_.call(scripting(QStringLiteral("loadScript"), {script_->fileName(), scriptName}), this,
               [this](const QDBusMessage& answer) {
                   if (answer.type() == QDBusMessage::ReplyMessage) {
                       run(answer.arguments().value(0).toInt());
                   }
               });
    confirmed_ = asked_;
}

/// Where it is depends on the version.
void PlasmaPointer::run(int script) {
    if (!isLoaded_) {
        return;
    }
    const QString number = QString::number(script);
    kwin_.call({QStringLiteral("/Scripting/Script") + number, scriptInterface, QStringLiteral("run")}, this,
               [this, number](const QDBusMessage& answer) {
                   if (answer.type() != QDBusMessage::ReplyMessage && isLoaded_) {
                       kwin_.tell({u'/' + number, scriptInterface, QStringLiteral("run")});
                   }
               });
}

void PlasmaPointer::unload() {
    if (std::exchange(isLoaded_, false)) {
        kwin_.tell(scripting(QStringLiteral("unloadScript"), {scriptName}));
    }
    lose();
}

/// Whoever has KWin's scripts in his hands may have unloaded it.
void PlasmaPointer::confirm() {
    if (unconfirmedSince_ || nanosecondsBetween(confirmed_, asked_) < longestTrust) {
        return;
    }
    unconfirmedSince_ = asked_;
    kwin_.call(scripting(QStringLiteral("isScriptLoaded"), {scriptName}), this, [this](const QDBusMessage& answer) {
        if (!std::exchange(unconfirmedSince_, std::nullopt)) {
            return;
        }
        confirmed_ = loop_.monotonicNow();
        if (!isYes(answer)) {
            lose();
        }
    });
}

QString PlasmaPointer::introspect(const QString& /*path*/) const {
    return {};
}

bool PlasmaPointer::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
    if (!kwin_.isFrom(message) || message.interface() != pointerInterface || message.member() != pointerMethod) {
        return false;
    }
    if (message.isReplyRequired()) {
        connection.send(message.createReply());
    }
    if (nanosecondsBetween(asked_, loop_.monotonicNow()) > longestSilence) {
        unload();
    } else if (isLoaded_) {
        const auto values = message.arguments();
        told_ = Point{values.value(0).toDouble(), values.value(1).toDouble()};
    }
    return true;
}

} // namespace velloran::platform::plasma
