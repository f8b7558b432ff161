// Arbitrary bytes as what other programs on the session bus call, tell and answer: nothing but the three calls that the
// program knows has an effect, each when it is made as it has to be, and the screen is locked when one who was asked
// last has said so.

#include "fuzz/BusBench.h"
#include "platform/bus/ScreenLock.h"
#include "platform/bus/SingleInstance.h"

#include <QDBusVariant>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

using namespace velloran;
using namespace velloran::platform::bus;

namespace {

const auto path = QStringLiteral("/app/velloran/Velloran");
const auto interface = QStringLiteral("org.freedesktop.Application");

class Program {
public:
    Program() {
        require(instance_.claim({}) == SingleInstance::Claim::first, "the program has its name");
        instance_.serve({[this](const ActivationToken& token) {
                             ++activations_;
                             require(token.serverTime() != 0U, "a time that is none is none");
                             require(ActivationToken::fromPlatformData(token.platformData()) == token,
                                     "a token comes back equal");
                         },
                         [this] { ++toggles_; }, [this] { ++quits_; }});
        bench_.arrive();
    }

    void take(BusValues& values) {
        bench_.answerFrom(&values);
        for (int deeds = 0; deeds < 8 && !values.isAtEnd(); ++deeds) {
            switch (values.byte() % 4) {
            case 0:
                act(values);
                break;
            case 1:
                activate(values.map(3));
                break;
            case 2:
                callAnything(values);
                break;
            default:
                lock(values);
                break;
            }
        }
        bench_.answerFrom(nullptr);
    }

private:
    void act(BusValues& values) {
        const int toggles = toggles_;
        const int quits = quits_;
        const QString action = values.text();
        const QVariantList parameter = values.list(2);
        bench_.call(path, interface, "ActivateAction", {action, parameter, values.map(2)});
        require(toggles_ == toggles + (action == QLatin1String("toggle") ? 1 : 0), "only toggle toggles");
        require(quits_ == quits + (action == QLatin1String("quit") ? 1 : 0), "only quit quits");
    }

    void activate(const QVariantMap& data) {
        const int activations = activations_;
        bench_.call(path, interface, "Activate", {data});
        require(activations_ == activations + 1, "it comes to the front whatever the data are");
    }

    void callAnything(BusValues& values) {
        constexpr std::array methods{"ActivateAction", "Activate",        "Open",       "toggle",
                                     "activated",      "actionActivated", "deleteLater"};
        const int toggles = toggles_;
        const int quits = quits_;
        const char* const method = methods.at(values.byte() % methods.size());
        const QVariantList arguments = values.list(3);
        const bool isAction = method == std::string_view("ActivateAction") && arguments.size() == 3;
        bench_.call(path, values.byte() % 2 == 0 ? interface : QString(), method, arguments);
        require(isAction || (toggles_ == toggles && quits_ == quits), "no other call has an effect");
    }

    /// Anybody may say that the screen is locked; who then is asked knows it.
    void lock(BusValues& values) {
        struct Place {
            const char* path;
            const char* interface;
            const char* signal;
        };

        constexpr std::array<Place, 3> places{{
            {"/org/gnome/ScreenSaver", "org.gnome.ScreenSaver", "ActiveChanged"},
            {"/ScreenSaver", "org.freedesktop.ScreenSaver", "ActiveChanged"},
            {"/org/freedesktop/login1/session/auto", "org.freedesktop.DBus.Properties", "PropertiesChanged"},
        }};
        const std::uint8_t choice = values.byte();
        const Place& place = places.at(choice % places.size());
        QVariantList arguments{values.value(1)};
        if (place.signal == std::string_view("PropertiesChanged")) {
            arguments = {QStringLiteral("org.freedesktop.login1.Session"), QVariantMap(), QStringList()};
        }
        bench_.signal(place.path, place.interface, place.signal, arguments);
        const bool isLocked = std::any_of(says_.begin(), says_.end(), [](bool says) { return says; });
        require(lock_.isLocked() == isLocked, "the screen is locked when one who was asked last says so");
    }

    static std::optional<QVariantList> answer(const QDBusMessage& question, BusValues& values) {
        const bool isLocked = values.byte() % 2 == 0;
        return QVariantList{isLogin(question) ? QVariant::fromValue(QDBusVariant(isLocked)) : isLocked};
    }

    /// The four of the desktop are always asked one after the other.
    void writeDown(const QDBusMessage& question, const QDBusMessage& answer) {
        QVariant value = answer.arguments().value(0);
        if (value.canConvert<QDBusVariant>()) {
            value = value.value<QDBusVariant>().variant();
        }
        bool& says = isLogin(question) ? says_.back() : says_.at(asked_++ % (says_.size() - 1));
        says = answer.type() == QDBusMessage::ReplyMessage && value.toBool();
    }

    static bool isLogin(const QDBusMessage& question) { return question.member() == QLatin1String("Get"); }

    BusBench bench_{answer, [this](const auto& question, const auto& answer) { writeDown(question, answer); }};
    SingleInstance instance_{bench_.session};
    ScreenLock lock_{bench_.session, bench_.session};
    /// What each said whether the screen is locked; the last is the login manager.
    std::array<bool, 5> says_{};
    std::size_t asked_ = 0;
    int activations_ = 0;
    int toggles_ = 0;
    int quits_ = 0;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // One for all: a bus is nothing to make anew for each input. Destroyed at the end, so that nothing is read from the
    // bus any more by then.
    static Program program;
    BusValues values(std::string_view(reinterpret_cast<const char*>(data), size));
    program.take(values);
    return 0;
}
