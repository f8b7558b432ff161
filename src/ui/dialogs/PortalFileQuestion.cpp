#include "ui/dialogs/PortalFileQuestion.h"

#include "platform/bus/SessionBus.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QGuiApplication>
#include <QTimer>
#include <QUrl>
#include <QWindow>

namespace velloran {

namespace {

using platform::bus::SessionBus;

const auto portalService = QStringLiteral("org.freedesktop.portal.Desktop");
const auto portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const auto chooserInterface = QStringLiteral("org.freedesktop.portal.FileChooser");
const auto requestInterface = QStringLiteral("org.freedesktop.portal.Request");

/// A portal that has not answered whether it can ask for files by then is not waited for, in milliseconds.
constexpr int longestWait = 3'000;
/// The same for one that has not answered that it does ask; it may have to start another service first.
constexpr int longestWaitForDialog = 10'000;

/// One kind of file names in a filter.
struct FilterRule {
    /// 0 for a name pattern, 1 for a media type.
    uint kind = 0;
    QString pattern;
};

struct Filter {
    QString name;
    QList<FilterRule> rules;
};

QDBusArgument& operator<<(QDBusArgument& argument, const FilterRule& rule) {
    argument.beginStructure();
    argument << rule.kind << rule.pattern;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, FilterRule& rule) {
    argument.beginStructure();
    argument >> rule.kind >> rule.pattern;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const Filter& filter) {
    argument.beginStructure();
    argument << filter.name << filter.rules;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, Filter& filter) {
    argument.beginStructure();
    argument >> filter.name >> filter.rules;
    argument.endStructure();
    return argument;
}

QString nextToken() {
    static int count = 0;
    return QStringLiteral("velloran_file_%1").arg(++count);
}

/// How the portal names a window; empty where windows cannot be named.
QString portalHandleOf(QWindow* window) {
    if (window == nullptr || QGuiApplication::platformName() != QLatin1String("xcb")) {
        return {};
    }
    return QStringLiteral("x11:") + QString::number(window->winId(), 16);
}

} // namespace

PortalFileQuestion::PortalFileQuestion(QObject* parent) : FileQuestion(parent), bus_(QString()) {
    if (const auto* const bus = SessionBus::current()) {
        bus_ = bus->connection();
        connect(bus, &SessionBus::lost, this, [this] { answered(2, {}); });
    }
    qDBusRegisterMetaType<FilterRule>();
    qDBusRegisterMetaType<QList<FilterRule>>();
    qDBusRegisterMetaType<Filter>();
    qDBusRegisterMetaType<QList<Filter>>();
}

PortalFileQuestion::~PortalFileQuestion() {
    close();
}

void PortalFileQuestion::ask(FileQuestionKind kind, QWindow* window) {
    if (!bus_.isConnected()) {
        // In a later turn, like every answer.
        auto* const turn = new QTimer(this);
        connect(turn, &QTimer::timeout, this, &FileQuestion::unavailable);
        turn->setSingleShot(true);
        turn->start(0);
        return;
    }
    QDBusMessage question = QDBusMessage::createMethodCall(
        portalService, portalPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    question << chooserInterface << QStringLiteral("version");
    auto* answer = new QDBusPendingCallWatcher(bus_.asyncCall(question, longestWait), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this,
            [this, kind, handle = portalHandleOf(window)](QDBusPendingCallWatcher* finished) {
                finished->deleteLater();
                if (finished->isError()) {
                    emit unavailable();
                } else {
                    put(kind, handle);
                }
            });
}

void PortalFileQuestion::put(FileQuestionKind kind, const QString& windowHandle) {
    const QString token = nextToken();
    const QList<Filter> filters{
        {tr("JSON files"), {{0, QLatin1String(namePattern)}, {1, QStringLiteral("application/json")}}}};
    QVariantMap options{
        {QStringLiteral("handle_token"), token},
        {QStringLiteral("modal"), true},
        {QStringLiteral("filters"), QVariant::fromValue(filters)},
    };
    const bool isSaving = kind == FileQuestionKind::save;
    if (isSaving) {
        options.insert(QStringLiteral("current_name"), QLatin1String(proposedName));
    } else {
        options.insert(QStringLiteral("multiple"), false);
    }

    // The answer may be there before the call has returned, so its address is worked out beforehand.
    const QString sender = bus_.baseService().mid(1).replace(u'.', u'_');
    listenTo(QStringLiteral("/org/freedesktop/portal/desktop/request/%1/%2").arg(sender, token));
    auto* life = new QDBusServiceWatcher(portalService, bus_, QDBusServiceWatcher::WatchForUnregistration, this);
    connect(life, &QDBusServiceWatcher::serviceUnregistered, this, [this] { answered(2, {}); });

    QDBusMessage question =
        QDBusMessage::createMethodCall(portalService, portalPath, chooserInterface,
                                       isSaving ? QStringLiteral("SaveFile") : QStringLiteral("OpenFile"));
    question << windowHandle << (isSaving ? tr("Export") : tr("Import")) << options;
    auto* answer = new QDBusPendingCallWatcher(bus_.asyncCall(question, longestWaitForDialog), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* finished) {
        finished->deleteLater();
        const QDBusPendingReply<QDBusObjectPath> reply = *finished;
        if (requestPath_.isEmpty()) {
            return;
        }
        if (reply.isError()) {
            // It may still come to it later.
            close();
            emit unavailable();
        } else if (reply.value().path() != requestPath_) {
            listenTo(reply.value().path());
        }
    });
}

void PortalFileQuestion::listenTo(const QString& requestPath) {
    requestPath_ = requestPath;
    bus_.connect(portalService, requestPath, requestInterface, QStringLiteral("Response"), this,
                 SLOT(answered(uint, QVariantMap)));
}

void PortalFileQuestion::answered(uint response, const QVariantMap& results) {
    if (requestPath_.isEmpty()) {
        return;
    }
    requestPath_.clear();
    const QStringList uris = results.value(QStringLiteral("uris")).toStringList();
    const QString path = uris.isEmpty() ? QString() : QUrl(uris.first()).toLocalFile();
    if (response == 0 && !path.isEmpty()) {
        emit chosen(path);
    } else {
        emit cancelled();
    }
}

void PortalFileQuestion::close() {
    if (!requestPath_.isEmpty()) {
        bus_.asyncCall(
            QDBusMessage::createMethodCall(portalService, requestPath_, requestInterface, QStringLiteral("Close")));
        requestPath_.clear();
    }
}

} // namespace velloran
