#include "platform/portal/PortalFileChooser.h"

#include "platform/portal/PortalRequest.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QGuiApplication>
#include <QStringList>
#include <QUrl>

#include <optional>
#include <utility>

namespace velloran::platform::portal {

namespace {

using namespace std::chrono_literals;

const auto chooserInterface = QStringLiteral("org.freedesktop.portal.FileChooser");

/// For the answer to whether it knows of files.
constexpr auto longestWaitForVersion = 3s;
/// For the answer that it asks; it may have to start another service first.
constexpr auto longestWaitForDialog = 10s;

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

/// How the portal names a window; empty where windows cannot be named.
QString portalHandleOf(std::uintptr_t window) {
    if (window == 0 || QGuiApplication::platformName() != QLatin1String("xcb")) {
        return {};
    }
    return QStringLiteral("x11:") + QString::number(window, 16);
}

QVariantMap optionsFor(const FileQuestion& question) {
    const QList<Filter> filters{
        {QStringLiteral("JSON files"), {{0, QStringLiteral("*.json")}, {1, QStringLiteral("application/json")}}}};
    QVariantMap options{{QStringLiteral("modal"), true}, {QStringLiteral("filters"), QVariant::fromValue(filters)}};
    if (question.purpose == FileQuestion::Purpose::save) {
        options.insert(QStringLiteral("current_name"), QString::fromStdString(question.proposedName));
    } else {
        options.insert(QStringLiteral("multiple"), false);
    }
    return options;
}

FileAnswer answerTo(const PortalResponse& response) {
    if (response.outcome == PortalResponse::Outcome::unavailable) {
        return {FileAnswer::Outcome::unavailable, {}};
    }
    const QStringList uris = response.results.value(QStringLiteral("uris")).toStringList();
    const QString path = uris.isEmpty() ? QString() : QUrl(uris.first()).toLocalFile();
    if (response.outcome == PortalResponse::Outcome::granted && !path.isEmpty()) {
        return {FileAnswer::Outcome::chosen, path.toStdString()};
    }
    return {FileAnswer::Outcome::cancelled, {}};
}

class PortalFileDialog final : public QObject, public FileDialog {
public:
    PortalFileDialog(Portal& portal, FileQuestion question, FileChooser::Done done)
        : portal_(portal), question_(std::move(question)), done_(std::move(done)) {
        // A portal that does not answer this would not show a dialog either.
        PortalCall version{QStringLiteral("org.freedesktop.DBus.Properties"),
                           QStringLiteral("Get"),
                           {chooserInterface, QStringLiteral("version")}};
        version.longestWait = longestWaitForVersion;
        portal_.call(version, this, [this](const QDBusMessage& answer) {
            if (answer.type() == QDBusMessage::ReplyMessage) {
                show();
            } else {
                end({});
            }
        });
    }

private:
    void show() {
        PortalCall call{chooserInterface,
                        question_.purpose == FileQuestion::Purpose::save ? QStringLiteral("SaveFile")
                                                                         : QStringLiteral("OpenFile"),
                        {portalHandleOf(question_.window), QString::fromStdString(question_.title)}};
        call.longestWait = longestWaitForDialog;
        request_.emplace(portal_, call, optionsFor(question_),
                         [this](const PortalResponse& response) { end(answerTo(response)); });
    }

    void end(const FileAnswer& answer) {
        const auto done = std::move(done_);
        done(answer);
    }

    Portal& portal_;
    FileQuestion question_;
    FileChooser::Done done_;
    std::optional<PortalRequest> request_;
};

} // namespace

std::unique_ptr<FileDialog> PortalFileChooser::ask(const FileQuestion& question, Done done) {
    qDBusRegisterMetaType<FilterRule>();
    qDBusRegisterMetaType<QList<FilterRule>>();
    qDBusRegisterMetaType<Filter>();
    qDBusRegisterMetaType<QList<Filter>>();
    return std::make_unique<PortalFileDialog>(portal_, question, std::move(done));
}

} // namespace velloran::platform::portal
