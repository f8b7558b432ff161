// Arbitrary bytes as what Plasma's services answer, tell and call, in any order: only a hotkey that is bound is
// pressed, and the pointer is nowhere but where it was told.

#include "fuzz/BusBench.h"
#include "platform/plasma/PlasmaHotKeys.h"
#include "platform/plasma/PlasmaPointer.h"

#include "fakes/VirtualLoop.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>

namespace {

/// What Plasma tells of somebody's shortcut.
struct Holder {
    std::array<QString, 6> names;
    QList<int> keys;
    QList<int> defaultKeys;
};

QDBusArgument& operator<<(QDBusArgument& argument, const Holder& holder) {
    argument.beginStructure();
    for (const QString& name : holder.names) {
        argument << name;
    }
    argument << holder.keys << holder.defaultKeys;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, Holder& holder) {
    argument.beginStructure();
    for (QString& name : holder.names) {
        argument >> name;
    }
    argument >> holder.keys >> holder.defaultKeys;
    argument.endStructure();
    return argument;
}

} // namespace

Q_DECLARE_METATYPE(Holder)

using namespace velloran;
using namespace velloran::platform;
using namespace velloran::platform::plasma;

namespace {

const auto ourComponent = QStringLiteral("app.velloran.Velloran");
const auto componentInterface = QStringLiteral("org.kde.kglobalaccel.Component");
const auto shortcutsInterface = QStringLiteral("org.kde.KGlobalAccel");
const auto layoutsInterface = QStringLiteral("org.kde.KeyboardLayouts");
const auto pointerPath = QStringLiteral("/app/velloran/Velloran/pointer");
const auto pointerInterface = QStringLiteral("app.velloran.Velloran.Pointer");

/// The bus, and what outlives a program.
struct World {
    World() {
        registerKeySequences();
        qDBusRegisterMetaType<Holder>();
        qDBusRegisterMetaType<QList<Holder>>();
        require(layout.ok(), "there is a layout");
        bench.arrive();
    }

    static KeySequenceList sequences(BusValues& values) {
        KeySequenceList list;
        for (int count = values.byte() % 3; count > 0; --count) {
            list.append({values.number<int>()});
        }
        return list;
    }

    static std::optional<QVariantList> answer(const QDBusMessage& question, BusValues& values) {
        const QString method = question.member();
        if (method == QLatin1String("globalShortcutsByKey")) {
            Holder holder;
            for (QString& name : holder.names) {
                name = values.text();
            }
            return QVariantList{QVariant::fromValue(QList<Holder>(values.byte() % 3, holder))};
        }
        if (method == QLatin1String("setShortcutKeys")) {
            const bool isBound = values.byte() % 4 != 0;
            return QVariantList{isBound ? question.arguments().value(1) : QVariant::fromValue(sequences(values))};
        }
        if (method == QLatin1String("loadScript")) {
            return QVariantList{int{values.byte()}};
        }
        if (method == QLatin1String("getLayout")) {
            return QVariantList{uint{values.byte()} % 4};
        }
        return QVariantList{values.byte() % 4 != 0};
    }

    BusBench bench{answer};
    /// Makes it once: that takes longer than everything else.
    Result<keys::KeyboardLayout> layout = keys::KeyboardLayout::fromNames({});
};

/// A program with everything that it has of Plasma.
class Program {
public:
    explicit Program(World& world) : world_(world) {
        handler_ = keys_.installHandler([this](const HotKeyEvent* event) {
            require(event != nullptr && event->hotKeyId.id < hotkeys_.size(), "a press is of a hot key");
            require(hotkeys_.at(event->hotKeyId.id).isBound, "only a hot key that is bound is pressed");
            return noErr;
        });
        world_.bench.arrive();
    }

    void take(BusValues& values) {
        for (int deeds = 0; deeds < 10 && !values.isAtEnd(); ++deeds) {
            act(values);
            world_.bench.settle();
        }
    }

private:
    struct Hotkey {
        Subscription registration;
        bool isBound = false;
    };

    void act(BusValues& values) {
        switch (values.byte() % 8) {
        case 0:
        case 1:
            registerOne(values);
            break;
        case 2:
            press(values);
            break;
        case 3: {
            const QStringList identity{ourComponent, nameOf(values.byte()), values.text(), values.text()};
            world_.bench.signal("/kglobalaccel", shortcutsInterface, "yourShortcutsChanged",
                                {identity, QVariant::fromValue(World::sequences(values))});
            break;
        }
        case 4:
            world_.bench.signal("/Layouts", layoutsInterface,
                                values.byte() % 2 == 0 ? "layoutChanged" : "layoutListChanged", values.list(2));
            break;
        case 5:
            lookAtPointer();
            break;
        case 6:
            tellOfPointer(values);
            break;
        default:
            loop_.advance(values.byte() % 90);
            break;
        }
    }

    static QString nameOf(std::uint8_t choice) {
        return choice % 2 == 0 ? QStringLiteral("toggle") : QStringLiteral("toggle-2");
    }

    void registerOne(BusValues& values) {
        const std::uint32_t id = 1 + values.byte() % 2;
        Hotkey& hotkey = hotkeys_.at(id);
        hotkey = {};
        const std::uint8_t key = values.byte();
        if (key % 4 != 0) {
            hotkey.registration =
                keys_.registerHotKey(key % 64, 0x1800, {1, id}, [&hotkey](const HotKeyAnswer& answer) {
                    hotkey.isBound = answer.status == noErr;
                });
        }
    }

    void press(BusValues& values) {
        const std::uint8_t manner = values.byte();
        QVariantList arguments{ourComponent, nameOf(values.byte()), qlonglong{1}};
        if (manner % 8 == 0) {
            arguments = values.list(3);
        }
        world_.bench.signal("/component/velloran", componentInterface,
                            manner % 2 == 0 ? "globalShortcutPressed" : "globalShortcutReleased", arguments);
    }

    void lookAtPointer() {
        const auto position = pointer_.currentPosition();
        require(!position || !isToldKnown_ || told_ == position, "the pointer is where it was told to be");
    }

    void tellOfPointer(BusValues& values) {
        QVariantList arguments{int{values.byte()}, int{values.byte()}};
        isToldKnown_ = values.byte() % 4 != 0;
        if (isToldKnown_) {
            told_ = {arguments.at(0).toDouble(), arguments.at(1).toDouble()};
        } else {
            arguments = values.list(3);
        }
        world_.bench.call(pointerPath, pointerInterface, "at", arguments);
    }

    World& world_;
    fakes::VirtualLoop loop_;
    std::array<Hotkey, 3> hotkeys_;
    Subscription handler_;
    PlasmaHotKeys keys_{loop_, world_.bench.session, [this] { return &world_.layout.value(); }};
    PlasmaPointer pointer_{loop_, world_.bench.session};
    Point told_;
    bool isToldKnown_ = true;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // One for all: a bus is nothing to make anew for each input. Destroyed at the end, so that nothing is read from the
    // bus any more by then.
    static World world;
    BusValues values(std::string_view(reinterpret_cast<const char*>(data), size));
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
