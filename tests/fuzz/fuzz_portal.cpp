// Arbitrary bytes as what the desktop's portal answers and tells, in any order: no permission comes of it unless
// somebody has granted one, only a hotkey that is registered is pressed, and it all comes to an end.

#include "fuzz/BusBench.h"
#include "platform/portal/PortalFileChooser.h"
#include "platform/portal/PortalHotKeys.h"
#include "platform/portal/PortalSettings.h"
#include "platform/portal/RemoteDesktop.h"
#include "platform/portal/Shortcut.h"

#include "fakes/VirtualLoop.h"

#include <QMap>
#include <QTemporaryDir>

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>

using namespace velloran;
using namespace velloran::platform;
using namespace velloran::platform::portal;

namespace {

using Groups = QMap<QString, QVariantMap>;

const auto requestInterface = QStringLiteral("org.freedesktop.portal.Request");
const auto sessionInterface = QStringLiteral("org.freedesktop.portal.Session");
const auto remoteDesktopInterface = QStringLiteral("org.freedesktop.portal.RemoteDesktop");
const auto settingsInterface = QStringLiteral("org.freedesktop.portal.Settings");

/// What the program called its last request and session, and the last shortcut that it wanted.
struct Asked {
    QString request;
    QString session;
    QString shortcut;
    /// The last session that is one for clicks, and whether the last request asks for the user's permission in it.
    QString remoteSession;
    bool isForPermission = false;

    void note(const QDBusMessage& question) {
        const QVariantList arguments = question.arguments();
        if (arguments.isEmpty()) {
            return;
        }
        const auto options = qdbus_cast<QVariantMap>(arguments.last());
        const bool isRemote = question.interface() == remoteDesktopInterface;
        if (options.contains("handle_token")) {
            request = options.value("handle_token").toString();
            isForPermission = isRemote && question.member() == QLatin1String("Start");
        }
        if (options.contains("session_handle_token")) {
            session = options.value("session_handle_token").toString();
            remoteSession = isRemote ? session : remoteSession;
        }
        if (question.member() == QLatin1String("BindShortcuts")) {
            shortcut = shortcutsIn(arguments.value(1)).value(0).identifier;
        }
    }
};

/// The bus, and what outlives a program.
struct World {
    World() {
        registerShortcuts();
        qDBusRegisterMetaType<Groups>();
        bench.arrive();
        require(portal.isThere(), "the portal is there");
    }

    std::optional<QVariantList> answer(const QDBusMessage& question, BusValues& values) {
        asked.note(question);
        if (question.member() == QLatin1String("Get")) {
            return QVariantList{QVariant::fromValue(QDBusVariant(uint{values.byte()} % 4))};
        }
        if (question.member() == QLatin1String("ReadAll")) {
            Groups groups;
            for (int count = values.byte() % 4; count > 0; --count) {
                const QString group = values.text();
                groups[group] = values.map(2);
            }
            return QVariantList{QVariant::fromValue(groups)};
        }
        return QVariantList{QVariant::fromValue(QDBusObjectPath(requestPath()))};
    }

    [[nodiscard]] QString requestPath() const { return pathOf("request", asked.request); }

    [[nodiscard]] QString sessionPath() const { return pathOf("session", asked.session); }

    Asked asked;
    BusBench bench{[this](const QDBusMessage& question, BusValues& values) { return answer(question, values); },
                   [this](const QDBusMessage& question, const QDBusMessage& /*answer*/) { asked.note(question); }};
    QTemporaryDir folder;
    RestoreToken token{folder.filePath("token").toStdString()};
    Portal portal{bench.session};
    /// Makes it once: that takes longer than everything else.
    Result<keys::KeyboardLayout> layout = keys::KeyboardLayout::fromNames({});

private:
    [[nodiscard]] QString pathOf(const char* kind, const QString& name) const {
        return QStringLiteral("%1/%2/%3/%4")
            .arg(portalPath, kind, portal.clientName(), name.isEmpty() ? QStringLiteral("none") : name);
    }
};

/// A program with everything that it has of a portal.
class Program {
public:
    explicit Program(World& world) : world_(world) {
        handler_ = keys_.installHandler([this](const HotKeyEvent* event) {
            require(event != nullptr, "a press is of a hot key");
            require(isRegistered_, "only what is registered is pressed");
            return noErr;
        });
    }

    void take(BusValues& values) {
        world_.bench.settle();
        for (int deeds = 0; deeds < 10 && !values.isAtEnd(); ++deeds) {
            act(values);
            world_.bench.settle();
            require(!remote_.isTrusted() || isGranted_, "no permission without a grant");
        }
    }

private:
    void act(BusValues& values) {
        switch (values.byte() % 10) {
        case 0:
            remote_.requestPrompt(values.byte() % 2 == 0 ? PromptReason::automatic : PromptReason::askedFor);
            break;
        case 1:
            hotkey_ = {};
            isRegistered_ = values.byte() % 4 != 0;
            if (isRegistered_) {
                hotkey_ = keys_.registerHotKey(values.byte() % 64, 0x1800, {1, 1}, [](const HotKeyAnswer&) {});
            }
            break;
        case 2:
        case 3:
            respond(values);
            break;
        case 4: {
            const QString group = values.text();
            const QString key = values.text();
            world_.bench.signal(portalPath, settingsInterface, "SettingChanged",
                                {group, key, QVariant::fromValue(QDBusVariant(values.value()))});
            break;
        }
        case 5:
            tellOfShortcut(values);
            break;
        case 6:
            isGranted_ = isGranted_ && world_.asked.session != world_.asked.remoteSession;
            world_.bench.signal(world_.sessionPath(), sessionInterface, "Closed", {});
            break;
        case 7:
            loop_.advance(values.byte() % 40);
            break;
        case 8:
            dialog_ = files_.ask({}, [](const FileAnswer& answer) {
                require((answer.outcome == FileAnswer::Outcome::chosen) == !answer.path.empty(),
                        "a file is chosen or none");
            });
            break;
        default: {
            const bool isLocked = values.byte() % 2 == 0;
            isGranted_ = isGranted_ && !isLocked;
            remote_.setLocked(isLocked);
            break;
        }
        }
    }

    /// To the last request, in the way of one that grants what was asked for, or in any other.
    void respond(BusValues& values) {
        const std::uint8_t manner = values.byte();
        const std::uint32_t response = manner % 4;
        isGranted_ = isGranted_ || (response == 0 && world_.asked.isForPermission);
        QVariantMap results = values.map(3);
        if (manner % 8 < 4) {
            results.insert("devices", 2U);
            results.insert("uris", QStringList{"file:///a/b"});
            results.insert("shortcuts", shortcuts(values));
        }
        world_.bench.signal(world_.requestPath(), requestInterface, "Response", {response, results});
    }

    void tellOfShortcut(BusValues& values) {
        constexpr std::array signalNames{"Activated", "Deactivated", "ShortcutsChanged"};
        const char* const name = signalNames.at(values.byte() % signalNames.size());
        QVariantList arguments{QVariant::fromValue(QDBusObjectPath(world_.sessionPath()))};
        if (values.byte() % 4 == 0) {
            arguments = values.list(3);
        } else if (name == std::string_view("ShortcutsChanged")) {
            arguments << shortcuts(values);
        } else {
            arguments << world_.asked.shortcut << QVariant::fromValue(qulonglong{values.byte()}) << values.map(2);
        }
        world_.bench.signal(portalPath, shortcutsInterface, name, arguments);
    }

    [[nodiscard]] QVariant shortcuts(BusValues& values) const {
        ShortcutList list;
        for (int count = values.byte() % 3; count > 0; --count) {
            const QString identifier = values.byte() % 4 != 0 ? world_.asked.shortcut : values.text();
            list.append({identifier, values.map(2)});
        }
        return QVariant::fromValue(list);
    }

    World& world_;
    fakes::VirtualLoop loop_;
    PortalSettings settings_{world_.portal};
    RemoteDesktop remote_{loop_, world_.portal, world_.token, {"a.back.end"}};
    PortalHotKeys keys_{loop_, world_.portal, {"a.back.end"}, [this] { return &world_.layout.value(); }};
    PortalFileChooser files_{world_.portal};
    Subscription handler_;
    Subscription hotkey_;
    std::unique_ptr<FileDialog> dialog_;
    bool isGranted_ = false;
    bool isRegistered_ = false;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // One for all: a bus is nothing to make anew for each input. Destroyed at the end, so that nothing is read from the
    // bus any more by then.
    static World world;
    BusValues values(std::string_view(reinterpret_cast<const char*>(data), size));
    world.asked = {};
    if (!world.token.get().empty()) {
        world.token.set({});
    }
    world.bench.answerFrom(&values);
    {
        Program program(world);
        program.take(values);
    }
    world.bench.answerFrom(nullptr);
    // What the program still had to say is over before the next one.
    world.bench.arrive();
    return 0;
}
