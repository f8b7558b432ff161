#include "platform/plasma/PlasmaPointer.h"

#include "platform/plasma/PlasmaBench.h"

#include <QFile>

#include <memory>

namespace velloran::tests {
namespace {

using platform::Point;
using platform::plasma::PlasmaPointer;

/// KWin, as far as its scripts go: it keeps the text of the one that is loaded, and does not run it.
class FakeKWin {
public:
    explicit FakeKWin(const std::string& busAddress)
        : service(busAddress, "org.kde.KWin",
                  [this](const QString& method, const QVariantList& arguments) { return answer(method, arguments); }) {}

    /// What the script does when the pointer is there.
    void tell(double x, double y) {
        ASSERT_FALSE(receiver.isEmpty()) << "there is no script";
        QDBusMessage call = QDBusMessage::createMethodCall(receiver, "/app/velloran/Velloran/pointer",
                                                           "app.velloran.Velloran.Pointer", "at");
        call.setArguments({x, y});
        service.bus().send(call);
    }

    [[nodiscard]] int count(const QString& method) const { return static_cast<int>(service.calls.count(method)); }

    QString text;
    QString receiver;
    bool isLoaded = false;
    bool hasScripting = true;
    /// Scripts are where they were before Plasma 6.
    bool isOld = false;
    FakeService service;

private:
    std::optional<QVariantList> answer(const QString& method, const QVariantList& arguments) {
        if (!hasScripting || (method == "run" && service.paths.last() != (isOld ? "/5" : "/Scripting/Script5"))) {
            return std::nullopt;
        }
        if (method == "loadScript") {
            QFile file(arguments.value(0).toString());
            EXPECT_TRUE(file.open(QIODevice::ReadOnly));
            text = QString::fromUtf8(file.readAll());
            isLoaded = true;
            return QVariantList{5};
        }
        if (method == "run") {
            receiver = text.section('"', 1, 1);
        } else if (method == "isScriptLoaded") {
            return QVariantList{isLoaded};
        } else if (method == "unloadScript") {
            receiver.clear();
            return QVariantList{std::exchange(isLoaded, false)};
        }
        return QVariantList{};
    }
};

class PlasmaPointerTest : public PlasmaBench {
protected:
    void bring() {
        kwin.emplace(bus.address());
        ASSERT_TRUE(until([this] { return pointer->part().get().part != nullptr; }));
    }

    /// Somebody asks, and the script is there then.
    void begin() {
        ASSERT_EQ(pointer->currentPosition(), std::nullopt);
        ASSERT_TRUE(until([this] { return !kwin->receiver.isEmpty(); }));
    }

    void tell(double x, double y) {
        ASSERT_NO_FATAL_FAILURE(kwin->tell(x, y));
        settle(kwin->service);
    }

    std::unique_ptr<PlasmaPointer> pointer = std::make_unique<PlasmaPointer>(loop, session);
    std::optional<FakeKWin> kwin;
};

TEST_F(PlasmaPointerTest, IsThereWhereKWinRunsScripts) {
    EXPECT_EQ(pointer->part().get(), platform::DesktopPart<platform::PointerPosition>());
    EXPECT_EQ(pointer->currentPosition(), std::nullopt);
    kwin.emplace(bus.address());
    kwin->hasScripting = false;
    ASSERT_TRUE(until([this] { return kwin->count("isScriptLoaded") == 1; }));
    settle(kwin->service);
    EXPECT_EQ(pointer->part().get().part, nullptr);
    kwin.reset();
    ASSERT_NO_FATAL_FAILURE(bring());
    EXPECT_EQ(pointer->part().get().reason, "A script of the program's in KWin tells where the pointer is.");
    EXPECT_EQ(pointer->part().get().limit, "");
    EXPECT_EQ(kwin->count("loadScript"), 0) << "nobody has asked";
}

TEST_F(PlasmaPointerTest, IsWhereTheScriptHasToldLast) {
    ASSERT_NO_FATAL_FAILURE(bring());
    ASSERT_NO_FATAL_FAILURE(begin());
    EXPECT_TRUE(kwin->text.contains("workspace.cursorPosChanged.connect(tell);\ntell();")) << kwin->text.toStdString();
    EXPECT_EQ(pointer->currentPosition(), std::nullopt) << "it has not told yet";
    ASSERT_NO_FATAL_FAILURE(tell(10, 20.5));
    EXPECT_EQ(pointer->currentPosition(), (Point{10, 20.5}));
    ASSERT_NO_FATAL_FAILURE(tell(-3, 0));
    EXPECT_EQ(pointer->currentPosition(), (Point{-3, 0}));
    EXPECT_EQ(kwin->count("loadScript"), 1);
}

TEST_F(PlasmaPointerTest, OlderKWinHasItsScriptsElsewhere) {
    ASSERT_NO_FATAL_FAILURE(bring());
    kwin->isOld = true;
    ASSERT_NO_FATAL_FAILURE(begin());
    ASSERT_NO_FATAL_FAILURE(tell(1, 2));
    EXPECT_EQ(pointer->currentPosition(), (Point{1, 2}));
}

TEST_F(PlasmaPointerTest, OnlyKWinIsBelieved) {
    ASSERT_NO_FATAL_FAILURE(bring());
    ASSERT_NO_FATAL_FAILURE(begin());
    FakeService other(bus.address(), "org.example.Other", [](const auto&, const auto&) { return QVariantList(); });
    QDBusMessage lie = QDBusMessage::createMethodCall(kwin->receiver, "/app/velloran/Velloran/pointer",
                                                      "app.velloran.Velloran.Pointer", "at");
    lie.setArguments({1.0, 2.0});
    other.bus().send(lie);
    settle(other);
    EXPECT_EQ(pointer->currentPosition(), std::nullopt);
}

TEST_F(PlasmaPointerTest, IsUnloadedAtTheEnd) {
    ASSERT_NO_FATAL_FAILURE(bring());
    ASSERT_NO_FATAL_FAILURE(begin());
    pointer.reset();
    EXPECT_TRUE(until([this] { return !kwin->isLoaded; }));
}

TEST_F(PlasmaPointerTest, IsUnloadedWithAMotionThatNobodyWantsToKnowOf) {
    ASSERT_NO_FATAL_FAILURE(bring());
    ASSERT_NO_FATAL_FAILURE(begin());
    ASSERT_NO_FATAL_FAILURE(tell(1, 2));
    loop.advance(3600);
    EXPECT_EQ(pointer->currentPosition(), (Point{1, 2})) << "it has not moved";
    loop.advance(61);
    ASSERT_NO_FATAL_FAILURE(tell(3, 4));
    ASSERT_TRUE(until([this] { return !kwin->isLoaded; }));
    ASSERT_NO_FATAL_FAILURE(begin());
    ASSERT_NO_FATAL_FAILURE(tell(5, 6));
    EXPECT_EQ(pointer->currentPosition(), (Point{5, 6}));
}

TEST_F(PlasmaPointerTest, IsUnknownWhileKWinDoesNotAnswer) {
    ASSERT_NO_FATAL_FAILURE(bring());
    ASSERT_NO_FATAL_FAILURE(begin());
    ASSERT_NO_FATAL_FAILURE(tell(1, 2));
    kwin->service.isSilent = true;
    loop.advance(0.3);
    EXPECT_EQ(pointer->currentPosition(), (Point{1, 2}));
    loop.advance(0.9);
    EXPECT_EQ(pointer->currentPosition(), (Point{1, 2}));
    loop.advance(0.2);
    EXPECT_EQ(pointer->currentPosition(), std::nullopt);
    settle(kwin->service);
    kwin->service.goOn();
    settle(kwin->service);
    EXPECT_EQ(pointer->currentPosition(), (Point{1, 2}));
}

TEST_F(PlasmaPointerTest, ScriptThatSomebodyHasUnloadedIsLoadedAgain) {
    ASSERT_NO_FATAL_FAILURE(bring());
    ASSERT_NO_FATAL_FAILURE(begin());
    ASSERT_NO_FATAL_FAILURE(tell(1, 2));
    kwin->isLoaded = false;
    kwin->receiver.clear();
    loop.advance(0.3);
    EXPECT_EQ(pointer->currentPosition(), (Point{1, 2}));
    settle(kwin->service);
    ASSERT_NO_FATAL_FAILURE(begin());
    ASSERT_NO_FATAL_FAILURE(tell(3, 4));
    EXPECT_EQ(pointer->currentPosition(), (Point{3, 4}));
}

TEST_F(PlasmaPointerTest, NextKWinIsToldAnew) {
    ASSERT_NO_FATAL_FAILURE(bring());
    ASSERT_NO_FATAL_FAILURE(begin());
    ASSERT_NO_FATAL_FAILURE(tell(1, 2));
    kwin.reset();
    ASSERT_TRUE(until([this] { return pointer->currentPosition() == std::nullopt; }));
    kwin.emplace(bus.address());
    ASSERT_TRUE(until([this] { return kwin->count("isScriptLoaded") == 1; }));
    ASSERT_NO_FATAL_FAILURE(begin());
    EXPECT_EQ(pointer->currentPosition(), std::nullopt) << "what the last one has told is no value";
    ASSERT_NO_FATAL_FAILURE(tell(3, 4));
    EXPECT_EQ(pointer->currentPosition(), (Point{3, 4}));
}

TEST_F(PlasmaPointerTest, OutlivesABusThatStartsAnew) {
    ASSERT_NO_FATAL_FAILURE(bring());
    ASSERT_NO_FATAL_FAILURE(begin());
    ASSERT_NO_FATAL_FAILURE(tell(1, 2));
    bus.end();
    ASSERT_TRUE(until([this] { return pointer->currentPosition() == std::nullopt; }));
    kwin.reset();
    bus.start();
    kwin.emplace(bus.address());
    ASSERT_TRUE(until([this] { return kwin->count("isScriptLoaded") == 1; }));
    ASSERT_NO_FATAL_FAILURE(begin());
    ASSERT_NO_FATAL_FAILURE(tell(3, 4));
    EXPECT_EQ(pointer->currentPosition(), (Point{3, 4}));
}

} // namespace
} // namespace velloran::tests
