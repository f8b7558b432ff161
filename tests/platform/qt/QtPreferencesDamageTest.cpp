#include "platform/qt/QtPreferences.h"
#include "platform/qt/Scratch.h"
#include "platform/qt/wholeValue.h"

#include <QLockFile>
#include <QString>

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <random>

namespace velloran::platform::qt {

namespace {

class QtPreferencesDamageTest : public testing::Test {
protected:
    static void save(QtPreferences& preferences) { ASSERT_TRUE(preferences.finish(forEver)); }

    /// Saves one value after the other for ever, and another key as one with it, telling of each through the pipe.
    [[noreturn]] void saveForEver(int told) const {
        QtPreferences preferences(path);
        const int first = numberOf(preferences.bytes("value").value_or(valueNumber(0)));
        for (int number = first + 1;; ++number) {
            preferences.change({{"value", valueNumber(number)}, {"number", std::int64_t{number}}});
            if (!preferences.finish(forEver) || write(told, &number, sizeof number) != sizeof number) {
                _exit(1);
            }
        }
    }

    tests::Scratch scratch;
    std::string path = scratch.file("velloran.ini");
};

} // namespace

TEST_F(QtPreferencesDamageTest, AKillAtAnyMomentLeavesTheOldOrTheNewValue) {
    constexpr int kills = 30;
    QtPreferences(path).setInteger("other", 42);
    std::mt19937 random(7); // NOLINT(cert-msc51-cpp): the same numbers in every run
    int last = 0;
    for (int kill = 0; kill < kills; ++kill) {
        std::array<int, 2> told{};
        ASSERT_EQ(pipe(told.data()), 0);
        const pid_t child = fork();
        if (child == 0) {
            saveForEver(told[1]);
        }
        close(told[1]);
        // Some saves, and then some more time to be anywhere in one.
        for (auto count = random() % 8 + 1; count > 0; --count) {
            ASSERT_EQ(read(told[0], &last, sizeof last), static_cast<ssize_t>(sizeof last));
        }
        const timespec pause{0, static_cast<long>(random() % 3'000'000)};
        ppoll(nullptr, 0, &pause, nullptr);
        ASSERT_EQ(::kill(child, SIGKILL), 0);
        waitpid(child, nullptr, 0);
        while (read(told[0], &last, sizeof last) == static_cast<ssize_t>(sizeof last)) {
        }
        close(told[0]);

        const QtPreferences preferences(path);
        EXPECT_EQ(preferences.integer("other"), 42);
        const int number = numberOf(preferences.bytes("value").value_or(""));
        EXPECT_EQ(preferences.integer("number"), number) << "they belong together";
        // What was told of is there, and at most the save that was under way.
        EXPECT_GE(number, last);
        EXPECT_LE(number, last + 1);
    }
}

TEST_F(QtPreferencesDamageTest, TheLockOfAKilledProcessDoesNotStopWriting) {
    const pid_t child = fork();
    if (child == 0) {
        QLockFile lock(QString::fromStdString(path + ".lock"));
        lock.lock();
        raise(SIGKILL);
    }
    waitpid(child, nullptr, 0);
    ASSERT_TRUE(std::filesystem::exists(path + ".lock"));
    QtPreferences(path).setInteger("a", 1);
    EXPECT_EQ(QtPreferences(path).integer("a"), 1);
    EXPECT_FALSE(std::filesystem::exists(path + ".lock"));
}

TEST_F(QtPreferencesDamageTest, TheLockOfAProcessKilledWhileItMadeItDoesNotStopWriting) {
    // Nothing in it yet.
    tests::writeFile(path + ".lock", "");
    QtPreferences(path).setInteger("a", 1);
    EXPECT_EQ(QtPreferences(path).integer("a"), 1);
    // When it is old it goes.
    std::filesystem::last_write_time(path + ".lock",
                                     std::filesystem::file_time_type::clock::now() - std::chrono::seconds(5));
    QtPreferences(path).setInteger("a", 2);
    EXPECT_FALSE(std::filesystem::exists(path + ".lock"));
}

TEST_F(QtPreferencesDamageTest, TheLockOfAStoppedProcessDoesNotStopWriting) {
    const pid_t child = fork();
    if (child == 0) {
        QLockFile lock(QString::fromStdString(path + ".lock"));
        lock.lock();
        raise(SIGSTOP);
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, WUNTRACED);
    ASSERT_TRUE(WIFSTOPPED(status));
    QtPreferences(path).setInteger("a", 1);
    EXPECT_EQ(QtPreferences(path).integer("a"), 1);
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
}

TEST_F(QtPreferencesDamageTest, AFileThatMayGrowNoMoreKeepsWhatItHolds) {
    tests::inOrdinaryProcess([this] {
        QtPreferences preferences(path);
        preferences.setBytes("value", valueNumber(2));
        save(preferences);
        signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{4096, 4096};
        ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
        preferences.setBytes("value", valueNumber(3));
        save(preferences);
        EXPECT_EQ(numberOf(preferences.bytes("value").value_or("")), 3);
        EXPECT_EQ(numberOf(QtPreferences(path).bytes("value").value_or("")), 2);
        preferences.setBytes("value", valueNumber(4));
        save(preferences);
        EXPECT_EQ(numberOf(QtPreferences(path).bytes("value").value_or("")), 4);
    });
}

TEST_F(QtPreferencesDamageTest, ACorruptFileIsReadAsFarAsItGoesAndNoLineOfItIsLost) {
    const std::string junk = std::string("\0\0\xff\xfe", 4) + "[[[\n=\n\"\nno equals sign\n";
    tests::writeFile(path, junk + "[General]\na=1\nb=\"open\n[Other\n");
    QtPreferences preferences(path);
    EXPECT_EQ(preferences.integer("a"), 1);
    EXPECT_TRUE(preferences.holds("b"));
    EXPECT_EQ(preferences.bytes("b"), std::nullopt);
    preferences.setInteger("c", 3);
    save(preferences);
    const std::string after = tests::readFile(path);
    EXPECT_TRUE(after.starts_with(junk));
    EXPECT_NE(after.find("b=\"open\n"), std::string::npos);
    EXPECT_EQ(QtPreferences(path).integer("a"), 1);
    EXPECT_EQ(QtPreferences(path).integer("c"), 3);
}

TEST_F(QtPreferencesDamageTest, AnyBytesAtAllAreReadWithoutHarm) {
    std::mt19937 random(3); // NOLINT(cert-msc51-cpp): the same numbers in every run
    const std::string alphabet = std::string("[]=\"\\\n\r;#,()@x0Gener\0\xff", 23);
    for (int file = 0; file < 100; ++file) {
        std::string content;
        for (auto length = random() % 200; length > 0; --length) {
            content += alphabet[random() % alphabet.size()];
        }
        tests::writeFile(path, content);
        QtPreferences preferences(path);
        preferences.setInteger("key", file);
        save(preferences);
        EXPECT_EQ(QtPreferences(path).integer("key"), file) << content;
    }
}

} // namespace velloran::platform::qt
