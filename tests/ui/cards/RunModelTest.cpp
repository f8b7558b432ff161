#include "engine/StoreTest.h"
#include "ui/cards/ConfigModel.h"
#include "ui/cards/RunModel.h"

#include <optional>

namespace velloran {

namespace {

/// What was about to be told is told within this time, in seconds.
constexpr double frame = 1.0 / 60;

/// A hundred clicks a second, and what the views are told of them.
class RunModelTest : public StoreTest {
protected:
    void start(const AutoClickerConfig& stored) {
        open(stored);
        config.emplace(*store);
        run.emplace(*store, platform.loop);
        for (const auto signal : {&RunModel::statusChanged, &RunModel::messageChanged, &RunModel::progressChanged,
                                  &RunModel::permissionChanged}) {
            QObject::connect(&*run, signal, [this] { ++told; });
        }
        QObject::connect(&*run, &RunModel::progressChanged, [this] { ++progressTold; });
        QObject::connect(&*config, &ConfigModel::changed, [this] { ++configTold; });
        run->start();
        advance(0.515);
        ASSERT_EQ(run->status(), RunModel::Running);
        told = progressTold = configTold = 0;
    }

    std::optional<ConfigModel> config;
    std::optional<RunModel> run;
    int told = 0;
    int progressTold = 0;
    int configTold = 0;
};

} // namespace

TEST_F(RunModelTest, ClicksShowOnceAFrameAndAreNothingOfTheConfiguration) {
    start(counted(100'000, 0.01));
    advance(1.0);
    EXPECT_GE(progressTold, 59);
    EXPECT_LE(progressTold, 61);
    EXPECT_EQ(run->progressText(), "151 / 100000 clicks completed");
    EXPECT_EQ(configTold, 0);
}

TEST_F(RunModelTest, ProgressThatNobodyIsShownIsNotTold) {
    start(unlimited(0.01));
    advance(1.0);
    EXPECT_GT(told, 0) << "the status line counts";
    EXPECT_EQ(progressTold, 0);
    EXPECT_FALSE(run->showsProgress());
}

TEST_F(RunModelTest, WhileNobodySeesItOnlyAnotherStatusIsTold) {
    start(counted(200, 0.01));
    run->setSeen(false);
    advance(frame);
    told = 0;
    advance(1.0);
    EXPECT_EQ(told, 0);
    advance(1.0);
    EXPECT_EQ(run->status(), RunModel::Completed);
    EXPECT_GT(told, 0);
}

TEST_F(RunModelTest, WhoLooksAgainSeesHowItIs) {
    start(counted(100'000, 0.01));
    run->setSeen(false);
    advance(1.0);
    run->setSeen(true);
    EXPECT_EQ(run->progressText(), "152 / 100000 clicks completed");
    EXPECT_EQ(run->message(), "152 / 100000 clicks completed");
    told = 0;
    advance(1.0);
    EXPECT_GE(progressTold, 59);
}

TEST_F(RunModelTest, AnEditOfTheConfigurationIsNothingOfTheRun) {
    start(counted(100'000, 1000));
    config->setClickIntervalSeconds(2000);
    config->setMouseButton(1);
    advance(1.0);
    EXPECT_EQ(configTold, 2);
    EXPECT_EQ(told, 0);
}

TEST_F(RunModelTest, AnotherCountShowsAtOnceAsTheTotal) {
    start(counted(100'000, 0.01));
    config->setClickCount({200});
    EXPECT_EQ(progressTold, 1);
    EXPECT_EQ(run->progressText(), "51 / 200 clicks completed");
    config->setManual(true);
    EXPECT_EQ(progressTold, 2);
    EXPECT_FALSE(run->showsProgress());
    EXPECT_EQ(told, 2);
}

} // namespace velloran
