#include "harness/FakePortal.h"
#include "harness/WindowTest.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include <utility>

namespace velloran::tests {

namespace {

constexpr QSize leastSize(920, 736);
constexpr QSize screenSize(1024, 768);
/// The content is taller than the screen.
constexpr QSize startSize(920, 768);
constexpr int titleCentre = 32;

class FrameTest : public WindowTest {
protected:
    void SetUp() override { Screen::current().user().lockModifiers(0xFF, false); }

    void TearDown() override {
        qunsetenv("XDG_CURRENT_DESKTOP");
        QFile::remove(kwinFile());
    }

    static QString kwinFile() {
        return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + "/kwinrc";
    }

    /// The labels of the frame's buttons from left to right.
    [[nodiscard]] QStringList buttons() const {
        QMap<qreal, QString> byPlace;
        for (const char* label : {"Menu", "Minimize", "Maximize", "Restore", "Close"}) {
            if (const QQuickItem* button = find(label)) {
                byPlace.insert(frame(*button).left(), label);
            }
        }
        return byPlace.values();
    }

    [[nodiscard]] QPointF title() const { return {window->width() / 2.0, titleCentre}; }

    bool becomes(QWindow::Visibility visibility) {
        return until([&] { return window->visibility() == visibility; });
    }

    /// Until the window manager has had its say.
    bool hasSize(QSize size) {
        return until([&] { return window->size() == size; });
    }
};

} // namespace

TEST_F(FrameTest, OpensWithoutAFrameOfTheDesktop) {
    openMainWindow();
    EXPECT_EQ(window->size(), startSize);
    EXPECT_EQ(window->minimumSize(), leastSize);
    EXPECT_TRUE(window->flags().testFlag(Qt::FramelessWindowHint));
    EXPECT_EQ(window->frameMargins(), QMargins());
    EXPECT_EQ(window->title(), "Velloran");
    keepPicture("window");
}

TEST_F(FrameTest, NothingHasTheFocusAtStart) {
    openMainWindow();
    EXPECT_EQ(focused(), "");
    EXPECT_EQ(window->property("activeFocusControl").value<QObject*>(), nullptr);
    const ClickerStatus before = store->runtime().get().status;
    tap(spaceKey);
    tap(returnKey);
    EXPECT_EQ(store->runtime().get().status, before);
}

TEST_F(FrameTest, WhereTheDesktopSaysNothingTheButtonsAreOnTheRight) {
    openMainWindow();
    EXPECT_EQ(buttons(), (QStringList{"Menu", "Minimize", "Maximize", "Close"}));
    EXPECT_GT(frame(get("Menu")).left(), window->width() / 2.0);
    EXPECT_EQ(frame(get("Close")).center().y(), titleCentre);
    EXPECT_EQ(property("leftInset").toDouble(), 0);
}

TEST_F(FrameTest, TheButtonsStandWhereTheDesktopHasThem) {
    const auto group = QStringLiteral("org.gnome.desktop.wm.preferences");
    const auto key = QStringLiteral("button-layout");
    FakePortal portal(Screen::current().busAddress(), {{group, {{key, "close,minimize:appmenu,maximize"}}}});
    openMainWindow();
    EXPECT_TRUE(until([&] { return buttons() == QStringList{"Close", "Minimize", "Menu", "Maximize"}; }));
    const double inset = property("leftInset").toDouble();
    EXPECT_GT(inset, 0);
    EXPECT_LE(frame(get("Minimize")).right(), inset);
    EXPECT_GT(frame(get("Velloran")).left(), inset);
    keepPicture("buttons-left");

    portal.change(group, key, ":close");
    EXPECT_TRUE(until([&] { return buttons() == QStringList{"Menu", "Close"}; }));
    EXPECT_TRUE(until([&] { return property("leftInset").toDouble() == 0.0; }));
}

TEST_F(FrameTest, PlasmaKeepsItsButtonsInAFile) {
    qputenv("XDG_CURRENT_DESKTOP", "KDE");
    QFile file(kwinFile());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("[org.kde.kdecoration2]\nButtonsOnLeft=XI\nButtonsOnRight=HA\n");
    file.close();
    openMainWindow();
    EXPECT_EQ(buttons(), (QStringList{"Close", "Minimize", "Menu", "Maximize"}));
}

TEST_F(FrameTest, PlasmaHasCustomaryButtonsToo) {
    qputenv("XDG_CURRENT_DESKTOP", "KDE");
    openMainWindow();
    EXPECT_EQ(buttons(), (QStringList{"Menu", "Minimize", "Maximize", "Close"}));
}

TEST_F(FrameTest, ButtonsThatWouldDoNothingAreLeftOut) {
    abilities.set({.opensMenu = true, .maximizes = false, .minimizes = true});
    openMainWindow();
    EXPECT_EQ(buttons(), (QStringList{"Menu", "Minimize", "Close"}));
    abilities.set({.opensMenu = true, .maximizes = true, .minimizes = false});
    EXPECT_TRUE(until([&] { return buttons() == QStringList{"Menu", "Maximize", "Close"}; }));
    abilities.set({.opensMenu = false, .maximizes = false, .minimizes = false});
    EXPECT_TRUE(until([&] { return buttons() == QStringList{"Menu", "Close"}; }));
    keepPicture("buttons-of-use");
    abilities.set({});
    EXPECT_TRUE(until([&] { return buttons() == QStringList{"Menu", "Minimize", "Maximize", "Close"}; }));
}

TEST_F(FrameTest, WhatTheDesktopDoesNotDoIsNotAskedFor) {
    abilities.set({.opensMenu = true, .maximizes = false, .minimizes = false});
    openMainWindow();
    doubleClickAt(title());
    clickAt(title(), 3);
    EXPECT_EQ(menuEntries(), (QStringList{"Minimize", "Maximize", "-", "Close"}));
    EXPECT_FALSE(button("Minimize").isEnabled());
    EXPECT_FALSE(button("Maximize").isEnabled());
    EXPECT_EQ(window->visibility(), QWindow::Windowed);
    tap(downKey);
    tap(returnKey);
    EXPECT_TRUE(until([&] { return quits == 1; })) << "the only entry that can be chosen is the last";
}

TEST_F(FrameTest, WhatTheDesktopHasMadeLargeCanBeMadeSmall) {
    openMainWindow();
    abilities.set({.opensMenu = true, .maximizes = false, .minimizes = true});
    window->showMaximized();
    ASSERT_TRUE(hasSize(screenSize));
    doubleClickAt(title());
    EXPECT_TRUE(becomes(QWindow::Windowed));
    EXPECT_TRUE(hasSize(startSize));
}

TEST_F(FrameTest, MaximizesAndRestores) {
    openMainWindow();
    click(get("Maximize"));
    EXPECT_TRUE(becomes(QWindow::Maximized));
    EXPECT_TRUE(hasSize(screenSize));
    EXPECT_TRUE(shows("Restore"));
    EXPECT_FALSE(shows("Maximize"));
    keepPicture("maximized");
    click(get("Restore"));
    EXPECT_TRUE(becomes(QWindow::Windowed));
    EXPECT_TRUE(hasSize(startSize));
}

TEST_F(FrameTest, ADoubleClickOnTheTitleMaximizesAndRestores) {
    openMainWindow();
    doubleClickAt(title());
    EXPECT_TRUE(becomes(QWindow::Maximized));
    EXPECT_TRUE(hasSize(screenSize));
    doubleClickAt(title());
    EXPECT_TRUE(becomes(QWindow::Windowed));
    EXPECT_TRUE(hasSize(startSize));
}

TEST_F(FrameTest, Minimizes) {
    openMainWindow();
    click(get("Minimize"));
    EXPECT_TRUE(becomes(QWindow::Minimized));
}

TEST_F(FrameTest, ClosingEndsTheProgram) {
    openMainWindow();
    click(get("Close"));
    EXPECT_TRUE(until([&] { return quits == 1; }));
}

TEST_F(FrameTest, TheTitleMovesTheWindow) {
    openMainWindow();
    ASSERT_TRUE(until([&] { return window->position().x() >= 0; }));
    const QPoint before = window->position();
    const QPoint way(60, 20);
    drag(title(), title() + way);
    // The window manager moves it in steps, and tells of each a little later.
    QPoint last = before;
    EXPECT_TRUE(until([&] {
        settle();
        return std::exchange(last, window->position()) == window->position() && last.x() - before.x() > way.x() / 2;
    }));
    const QPoint moved = window->position() - before;
    EXPECT_LE(moved.x(), way.x());
    EXPECT_EQ(window->size(), startSize);
    // The press is over for the window as well: the buttons can be used at once.
    click(get("Menu"));
    EXPECT_FALSE(menuEntries().isEmpty());
}

TEST_F(FrameTest, TheCornerResizesTheWindowDownToItsLeastSize) {
    openMainWindow();
    drag(QPointF(918, 766), QPointF(968, 756));
    EXPECT_TRUE(until([&] { return window->width() > 950 && window->height() < 765; }))
        << window->width() << "x" << window->height();
    const QSize large = window->size();
    drag(QPointF(large.width() - 2, large.height() - 2), QPointF(400, 300));
    EXPECT_TRUE(hasSize(leastSize)) << window->width() << "x" << window->height();
    click(get("Menu"));
    EXPECT_FALSE(menuEntries().isEmpty());
}

TEST_F(FrameTest, TheEdgesTellWhatTheyDo) {
    openMainWindow();
    const double right = window->width() - 1;
    const double bottom = window->height() - 1;
    const double middle = window->height() / 2.0;
    const auto cursorAt = [this](QPointF point) {
        moveTo(point);
        return window->cursor().shape();
    };
    EXPECT_EQ(cursorAt({right, middle}), Qt::SizeHorCursor);
    EXPECT_EQ(cursorAt({0, middle}), Qt::SizeHorCursor);
    EXPECT_EQ(cursorAt({right / 2, 0}), Qt::SizeVerCursor);
    EXPECT_EQ(cursorAt({right / 2, bottom}), Qt::SizeVerCursor);
    EXPECT_EQ(cursorAt({right, bottom}), Qt::SizeFDiagCursor);
    EXPECT_EQ(cursorAt({0, 0}), Qt::SizeFDiagCursor);
    EXPECT_EQ(cursorAt({right, 0}), Qt::SizeBDiagCursor);
    EXPECT_EQ(cursorAt({0, bottom}), Qt::SizeBDiagCursor);
    EXPECT_EQ(cursorAt({right / 2, middle}), Qt::ArrowCursor);
    click(get("Maximize"));
    ASSERT_TRUE(hasSize(screenSize));
    EXPECT_EQ(cursorAt({0, middle}), Qt::ArrowCursor);
}

TEST_F(FrameTest, ARightClickOnTheTitleOpensTheWindowMenu) {
    openMainWindow();
    clickAt(title(), 3);
    EXPECT_EQ(menuEntries(), (QStringList{"Minimize", "Maximize", "-", "Close"}));
    keepPicture("window-menu");
    tap(downKey);
    tap(downKey);
    tap(returnKey);
    EXPECT_TRUE(becomes(QWindow::Maximized));
}

TEST_F(FrameTest, TheMenuOffersThreeThings) {
    openMainWindow();
    click(get("Menu"));
    EXPECT_EQ(menuEntries(), (QStringList{"Presets and Options…", "About Velloran", "-", "Quit"}));
    keepPicture("menu");
    click(get("Quit"));
    EXPECT_EQ(quits, 1);
}

TEST_F(FrameTest, ASecondPressClosesTheMenu) {
    openMainWindow();
    click(get("Menu"));
    click(get("Menu"));
    EXPECT_TRUE(until([&] { return menuEntries().isEmpty(); }));
}

TEST_F(FrameTest, KeysForTheMenu) {
    openMainWindow();
    tap(commaKey, {controlKey});
    EXPECT_TRUE(shows("Additional Options"));
    tap(escapeKey);
    EXPECT_TRUE(until([&] { return !shows("Additional Options"); }));
    tap(qKey, {controlKey});
    EXPECT_EQ(quits, 1);
}

TEST_F(FrameTest, TheFramesButtonsComeAfterTheContentInTheTabOrder) {
    openMainWindow();
    QStringList order;
    for (int i = 0; i < 60 && !order.contains("Close"); ++i) {
        tap(tabKey);
        order.append(focused());
    }
    const qsizetype menu = order.indexOf("Menu");
    ASSERT_GT(menu, 5);
    EXPECT_EQ(order.mid(menu), (QStringList{"Menu", "Minimize", "Maximize", "Close"}));
    EXPECT_LT(order.indexOf("Start"), menu);
    EXPECT_GT(order.indexOf("Start"), 0);
    tap(tabKey, {shiftKey});
    tap(tabKey, {shiftKey});
    tap(tabKey, {shiftKey});
    EXPECT_EQ(focused(), "Menu");
    tap(spaceKey);
    EXPECT_FALSE(menuEntries().isEmpty());
    keepPicture("menu-by-keyboard");
    tap(escapeKey);
    EXPECT_EQ(focused(), "Menu");
}

TEST_F(FrameTest, ASmallScreenMakesASmallWindow) {
    // A panel of 80 points at the bottom.
    const auto& other = Screen::current().other();
    xcb_connection_t* const connection = other.get();
    const auto atom = [connection](const char* name) {
        const auto request = xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(strlen(name)), name);
        const observer::Owned<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection, request, nullptr));
        return reply->atom;
    };
    const xcb_window_t panel = xcb_generate_id(connection);
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, panel, other.root(), 0, 688, 1024, 80, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    const xcb_atom_t dock = atom("_NET_WM_WINDOW_TYPE_DOCK");
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, panel, atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM, 32, 1,
                        &dock);
    const std::uint32_t strut[4]{0, 0, 0, 80};
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, panel, atom("_NET_WM_STRUT"), XCB_ATOM_CARDINAL, 32, 4,
                        strut);
    xcb_map_window(connection, panel);
    other.synchronize();
    const QScreen* screen = QGuiApplication::primaryScreen();
    ASSERT_TRUE(until([&] { return screen->availableGeometry().height() == 688; }));

    openMainWindow();
    EXPECT_EQ(window->minimumSize(), QSize(920, 688));
    EXPECT_EQ(window->height(), 688);

    xcb_destroy_window(connection, panel);
    other.synchronize();
    EXPECT_TRUE(until([&] { return window->minimumSize() == leastSize; }));
}

} // namespace velloran::tests
