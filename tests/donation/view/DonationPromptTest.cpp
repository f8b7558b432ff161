#include "harness/WindowTest.h"

#include <QGuiApplication>
#include <QStyleHints>

namespace velloran::tests {

namespace {

class DonationPromptTest : public WindowTest {
protected:
    void SetUp() override {
        openMainWindow();
        remind();
        get("Support Velloran");
    }

    /// Lets the reminder fall due.
    void remind() {
        const auto next = platform.preferences.date("donation.nextReminderAt");
        ASSERT_TRUE(next);
        platform.loop.advance(*next - platform.loop.now() + 60);
    }

    [[nodiscard]] std::int64_t shownCount() const {
        return platform.preferences.integer("donation.remindersShown").value_or(0);
    }

    [[nodiscard]] double wait() const {
        return *platform.preferences.date("donation.nextReminderAt") - platform.loop.now();
    }

    [[nodiscard]] bool isVisible() const { return donationModel->isPromptVisible(); }

    [[nodiscard]] int opened() const { return platform.count("open url"); }

    void expectPromptIsGone() {
        EXPECT_FALSE(isVisible());
        EXPECT_TRUE(until([&] { return !shows("Support Velloran"); }));
    }

    void expectRequestState() {
        EXPECT_TRUE(shows("Donate via Stripe"));
        EXPECT_TRUE(shows("I've already donated"));
        EXPECT_TRUE(shows("Maybe later"));
        EXPECT_FALSE(shows("I completed my donation"));
        EXPECT_FALSE(shows("Cancel"));
        EXPECT_FALSE(shows("Stripe opened in your browser. Once your donation is complete, click below."));
    }

    void expectWaitingState() {
        EXPECT_TRUE(shows("I completed my donation"));
        EXPECT_TRUE(shows("Open link again"));
        EXPECT_TRUE(shows("Cancel"));
        EXPECT_TRUE(shows("Stripe opened in your browser. Once your donation is complete, click below."));
        EXPECT_FALSE(shows("Donate via Stripe"));
        EXPECT_FALSE(shows("I've already donated"));
        EXPECT_FALSE(shows("Maybe later"));
    }
};

} // namespace

TEST_F(DonationPromptTest, AsksFirst) {
    expectRequestState();
    EXPECT_TRUE(
        shows("This app is built and maintained by one developer. If it's saving you time, a small donation keeps "
              "it going."));
    keepPicture("donation-request");
}

TEST_F(DonationPromptTest, LaterPutsItOff) {
    click(get("Maybe later"));
    expectPromptIsGone();
    EXPECT_EQ(shownCount(), 1);
    EXPECT_EQ(wait(), 60);
}

TEST_F(DonationPromptTest, OpeningTheLinkLeadsToTheWaitingState) {
    click(get("Donate via Stripe"));
    EXPECT_EQ(opened(), 1);
    EXPECT_TRUE(isVisible());
    expectWaitingState();
    keepPicture("donation-waiting");
}

TEST_F(DonationPromptTest, CancelCountsAsPuttingOff) {
    click(get("Donate via Stripe"));
    click(get("Cancel"));
    expectPromptIsGone();
    EXPECT_EQ(shownCount(), 1);
    EXPECT_EQ(wait(), 60);
}

TEST_F(DonationPromptTest, OpeningAgainKeepsTheWaitingState) {
    click(get("Donate via Stripe"));
    click(get("Open link again"));
    EXPECT_EQ(opened(), 2);
    expectWaitingState();
    EXPECT_EQ(shownCount(), 0);
}

TEST_F(DonationPromptTest, DoneEndsTheReminders) {
    click(get("Donate via Stripe"));
    click(get("Support Velloran"));
    click(get("I completed my donation"));
    expectPromptIsGone();
    EXPECT_EQ(platform.preferences.truth("donation.donated"), true);
    EXPECT_FALSE(platform.preferences.holds("donation.nextReminderAt"));
    platform.loop.advance(100000);
    EXPECT_FALSE(isVisible());
}

TEST_F(DonationPromptTest, TheSecondHalfOfADoubleClickIsNoAnswer) {
    const QPointF place = frame(get("Donate via Stripe")).center();
    QGuiApplication::styleHints()->setMouseDoubleClickInterval(10000);
    clickAt(place);
    expectWaitingState();
    clickAt(place);
    QGuiApplication::styleHints()->setMouseDoubleClickInterval(400);
    EXPECT_EQ(opened(), 1);
    expectWaitingState();
    EXPECT_FALSE(platform.preferences.holds("donation.donated"));
}

TEST_F(DonationPromptTest, AlreadyDonatedMovesToTheSlowestStep) {
    click(get("I've already donated"));
    expectPromptIsGone();
    EXPECT_EQ(shownCount(), 7);
    EXPECT_EQ(wait(), 1800);
    EXPECT_FALSE(platform.preferences.holds("donation.donated"));
}

TEST_F(DonationPromptTest, EscapeOnlyPutsItAwayUntilTheNextCheck) {
    click(get("Donate via Stripe"));
    tap(escapeKey);
    expectPromptIsGone();
    EXPECT_EQ(shownCount(), 0);
    platform.loop.advance(60);
    EXPECT_TRUE(isVisible());
    get("Support Velloran");
    expectRequestState();
}

TEST_F(DonationPromptTest, AChangeWhileItIsOpenDoesNotBuildItAnew) {
    click(get("Donate via Stripe"));
    platform.loop.advance(600);
    expectWaitingState();
}

TEST_F(DonationPromptTest, WaitsForAnotherSheet) {
    click(get("Maybe later"));
    expectPromptIsGone();
    tap(commaKey, {controlKey});
    get("Done");
    remind();
    EXPECT_TRUE(isVisible());
    settle();
    EXPECT_FALSE(shows("Support Velloran"));
    EXPECT_TRUE(shows("Done"));
    tap(escapeKey);
    get("Support Velloran");
    EXPECT_TRUE(until([&] { return !shows("Done"); }));
    expectRequestState();
}

TEST_F(DonationPromptTest, NoOtherSheetOpensOverIt) {
    EXPECT_TRUE(property("isSheetOpen").toBool());
    tap(commaKey, {controlKey});
    EXPECT_FALSE(shows("Done"));
    click(get("Menu"));
    EXPECT_TRUE(menuEntries().isEmpty());
}

TEST_F(DonationPromptTest, WorksByKeyboard) {
    tap(tabKey);
    EXPECT_EQ(focused(), "Donate via Stripe");
    tap(returnKey);
    expectWaitingState();
    EXPECT_EQ(focused(), "I completed my donation");
    tap(tabKey);
    EXPECT_EQ(focused(), "Open link again");
    tap(tabKey);
    EXPECT_EQ(focused(), "Cancel");
    tap(tabKey);
    EXPECT_EQ(focused(), "I completed my donation");
    tap(tabKey, {shiftKey});
    tap(spaceKey);
    expectPromptIsGone();
}

TEST_F(DonationPromptTest, KeepsTheDistances) {
    const QQuickItem& donate = button("Donate via Stripe");
    const QQuickItem& already = button("I've already donated");
    const QQuickItem& later = button("Maybe later");
    EXPECT_EQ(frame(already).left() - frame(donate).right(), 10);
    EXPECT_EQ(donate.property("leftPadding").toInt(), 14);
    EXPECT_EQ(donate.property("topPadding").toInt(), 9);
    EXPECT_EQ(already.property("leftPadding").toInt(), 12);
    EXPECT_EQ(already.property("topPadding").toInt(), 9);
    const QQuickItem* view = donate.parentItem()->parentItem()->parentItem();
    EXPECT_EQ(frame(donate).left() - frame(*view).left(), 24);
    EXPECT_EQ(frame(*view).right() - frame(later).right(), 24);
    EXPECT_EQ(frame(*view).bottom() - frame(donate).bottom(), 24);
}

} // namespace velloran::tests
