#include "platform/qt/QtPreferences.h"

#include "platform/qt/Scratch.h"

#include <QSettings>
#include <QString>

#include <gtest/gtest.h>
#include <pwd.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

namespace velloran::platform::qt {

namespace {

/// Nobody waits that long but in a test that fails.
constexpr std::chrono::seconds forEver{60};

class QtPreferencesTest : public testing::Test {
protected:
    static void save(QtPreferences& preferences) { ASSERT_TRUE(preferences.finish(forEver)); }

    tests::Scratch scratch;
    /// In a folder that does not exist yet.
    std::string path = scratch.file("velloran/velloran.ini");
};

} // namespace

TEST_F(QtPreferencesTest, HoldNothingAtFirst) {
    const QtPreferences preferences(path);
    EXPECT_EQ(preferences.bytes("key"), std::nullopt);
    EXPECT_EQ(preferences.date("key"), std::nullopt);
    EXPECT_EQ(preferences.integer("key"), std::nullopt);
    EXPECT_EQ(preferences.truth("key"), std::nullopt);
    EXPECT_FALSE(preferences.holds("key"));
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(QtPreferencesTest, KeepValuesOfEveryType) {
    QtPreferences preferences(path);
    preferences.setBytes("velloran.config", "{\"a\":1}");
    save(preferences);
    EXPECT_EQ(QtPreferences(path).bytes("velloran.config"), "{\"a\":1}");
    preferences.setDate("donation.nextReminderAt", Date(801234567.123456789));
    save(preferences);
    EXPECT_EQ(QtPreferences(path).date("donation.nextReminderAt"), Date(801234567.123456789));
    preferences.setInteger("donation.remindersShown", 7);
    save(preferences);
    EXPECT_EQ(QtPreferences(path).integer("donation.remindersShown"), 7);
    preferences.setTruth("donation.donated", true);
    save(preferences);
    EXPECT_EQ(QtPreferences(path).truth("donation.donated"), true);

    EXPECT_EQ(preferences.bytes("velloran.config"), "{\"a\":1}");
    EXPECT_EQ(preferences.date("donation.nextReminderAt"), Date(801234567.123456789));
    EXPECT_EQ(preferences.integer("donation.remindersShown"), 7);
    EXPECT_EQ(preferences.truth("donation.donated"), true);
}

TEST_F(QtPreferencesTest, AnotherTypeReadsAsAbsentThoughTheKeyIsHeld) {
    QtPreferences preferences(path);
    preferences.setInteger("key", 1);
    EXPECT_TRUE(preferences.holds("key"));
    EXPECT_EQ(preferences.truth("key"), std::nullopt);
    EXPECT_EQ(preferences.date("key"), std::nullopt);
    EXPECT_EQ(preferences.bytes("key"), std::nullopt);
    preferences.setBytes("key", "1");
    EXPECT_EQ(preferences.integer("key"), std::nullopt);
    preferences.setTruth("key", true);
    EXPECT_EQ(preferences.integer("key"), std::nullopt);
    preferences.setDate("key", Date(1.0));
    EXPECT_EQ(preferences.integer("key"), std::nullopt);
    EXPECT_EQ(preferences.bytes("key"), std::nullopt);
    EXPECT_EQ(preferences.date("key"), Date(1.0));
}

TEST_F(QtPreferencesTest, RemoveForGood) {
    QtPreferences preferences(path);
    preferences.setInteger("a", 1);
    preferences.setInteger("b", 2);
    preferences.remove("a");
    preferences.remove("never there");
    save(preferences);
    EXPECT_FALSE(preferences.holds("a"));
    EXPECT_FALSE(QtPreferences(path).holds("a"));
    EXPECT_EQ(QtPreferences(path).integer("b"), 2);
}

TEST_F(QtPreferencesTest, WriteNothingWhenNothingChanges) {
    QtPreferences preferences(path);
    preferences.setInteger("a", 1);
    save(preferences);
    const auto written = std::filesystem::last_write_time(path);
    std::filesystem::last_write_time(path, written - std::chrono::hours(1));
    preferences.setInteger("a", 1);
    save(preferences);
    EXPECT_EQ(std::filesystem::last_write_time(path), written - std::chrono::hours(1));
}

TEST_F(QtPreferencesTest, LoseNothingThatAnotherWroteMeanwhile) {
    QtPreferences ours(path);
    ours.setInteger("ours", 1);
    save(ours);
    QtPreferences others(path);
    others.setInteger("others", 2);
    others.remove("ours");
    save(others);
    ours.setInteger("more", 3);
    save(ours);
    const QtPreferences now(path);
    EXPECT_EQ(now.integer("others"), 2);
    EXPECT_EQ(now.integer("more"), 3);
    EXPECT_FALSE(now.holds("ours"));
    EXPECT_EQ(ours.integer("others"), 2);
}

TEST_F(QtPreferencesTest, TwoProcessesThatWriteAtTheSameTimeLoseNothing) {
    constexpr int writes = 150;
    std::vector<pid_t> children;
    for (const char* const key : {"a", "b"}) {
        const pid_t child = fork();
        if (child == 0) {
            QtPreferences preferences(path);
            for (int count = 1; count <= writes; ++count) {
                if (preferences.integer(key).value_or(0) != count - 1) {
                    _exit(1);
                }
                preferences.setInteger(key, count);
                if (!preferences.finish(forEver)) {
                    _exit(2);
                }
            }
            _exit(0);
        }
        children.push_back(child);
    }
    for (const pid_t child : children) {
        int status = 0;
        waitpid(child, &status, 0);
        EXPECT_EQ(status, 0);
    }
    EXPECT_EQ(QtPreferences(path).integer("a"), writes);
    EXPECT_EQ(QtPreferences(path).integer("b"), writes);
}

TEST_F(QtPreferencesTest, UnderstandAndAreUnderstoodByTheToolkit) {
    const QByteArray bytes = QByteArrayLiteral("{\"name\":\"Steady \xe2\x80\x94 1, 2; 3\"}\0\x01"
                                               "f");
    {
        QSettings settings(QString::fromStdString(path), QSettings::IniFormat);
        settings.setValue("velloran.config", bytes);
        settings.setValue("donation.remindersShown", 3);
        settings.setValue("donation.donated", true);
        settings.setValue("group/key", 1);
    }
    QtPreferences preferences(path);
    EXPECT_EQ(preferences.bytes("velloran.config"), bytes.toStdString());
    EXPECT_EQ(preferences.integer("donation.remindersShown"), 3);
    EXPECT_EQ(preferences.truth("donation.donated"), true);
    preferences.setBytes("velloran.presets", bytes.toStdString());
    save(preferences);
    const QSettings settings(QString::fromStdString(path), QSettings::IniFormat);
    EXPECT_EQ(settings.value("velloran.presets").toByteArray(), bytes);
    EXPECT_EQ(settings.value("group/key").toInt(), 1);
}

TEST_F(QtPreferencesTest, FollowALink) {
    const std::string target = scratch.file("elsewhere.ini");
    std::filesystem::create_directories(scratch.file("velloran"));
    std::filesystem::create_symlink(target, path);
    QtPreferences(path).setInteger("a", 1);
    EXPECT_TRUE(std::filesystem::is_symlink(path));
    EXPECT_EQ(QtPreferences(target).integer("a"), 1);
}

TEST(QtPreferencesPath, FollowsTheEnvironment) {
    tests::inOrdinaryProcess([] {
        setenv("HOME", "/home/somebody", 1);
        unsetenv("XDG_CONFIG_HOME");
        EXPECT_EQ(QtPreferences::defaultPath(), "/home/somebody/.config/velloran/velloran.ini");
        setenv("XDG_CONFIG_HOME", "/elsewhere", 1);
        EXPECT_EQ(QtPreferences::defaultPath(), "/elsewhere/velloran/velloran.ini");
        // Only absolute paths count.
        setenv("XDG_CONFIG_HOME", "elsewhere", 1);
        EXPECT_EQ(QtPreferences::defaultPath(), "/home/somebody/.config/velloran/velloran.ini");
        setenv("XDG_CONFIG_HOME", "", 1);
        EXPECT_EQ(QtPreferences::defaultPath(), "/home/somebody/.config/velloran/velloran.ini");
    });
}

TEST(QtPreferencesPath, NeedsNoEnvironment) {
    tests::inOrdinaryProcess([] {
        clearenv();
        const passwd* const user = getpwuid(getuid());
        const std::string home = user != nullptr && *user->pw_dir == '/' ? user->pw_dir : "/";
        EXPECT_EQ(QtPreferences::defaultPath(), home + "/.config/velloran/velloran.ini");
        QtPreferences preferences(QtPreferences::defaultPath() + "/never/there");
        preferences.setInteger("a", 1);
        EXPECT_EQ(preferences.integer("a"), 1);
    });
}

} // namespace velloran::platform::qt
