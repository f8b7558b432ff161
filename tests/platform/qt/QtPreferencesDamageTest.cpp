#include "platform/qt/Scratch.h"
#include "platform/qt/QtPreferences.h"

#include <QLockFile>
#include <QString>

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>

namespace velloran::platform::qt {

namespace {

/// Nobody waits that long but in a test that fails.
constexpr std::chrono::seconds forEver{60};

/// A value that shows whether it is whole: every byte is the same, and the number says how many there are.
Bytes valueNumber(int number) {
    const std::size_t length = number % 2 == 0 ? 20 : 30'000;
    return std::to_string(number) + ':' + Bytes(length, static_cast<char>('a' + number % 26));
}

/// The number of a value that is whole; -1 for one that is not.
int numberOf(const Bytes& value) {
    const int number = std::atoi(value.c_str());
    return value == valueNumber(number) ? number : -1;
}

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

/// A small file system of its own, gone at its end.
class SmallDisk {
public:
    explicit SmallDisk(const std::string& folder) : folder_(folder) {
        std::filesystem::create_directories(folder_);
        isThere_ = mount("none", folder_.c_str(), "tmpfs", 0, "size=64k") == 0;
    }

    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;

    ~SmallDisk() {
        if (isThere_) {
            umount2(folder_.c_str(), MNT_DETACH);
        }
    }

    [[nodiscard]] bool isThere() const { return isThere_; }

    /// Fills it to the last byte.
    void fill() const {
        const std::string filler = folder_ + "/filler";
        std::ofstream stream(filler, std::ios::binary);
        while (stream.put('x').flush()) {
        }
    }

    void makeRoom() const { std::filesystem::remove(folder_ + "/filler"); }

private:
    std::string folder_;
    bool isThere_ = false;
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

TEST_F(QtPreferencesDamageTest, AFolderThatCannotBeWrittenToKeepsWhatItHolds) {
    QtPreferences(path).setInteger("a", 1);
    chmod(path.c_str(), 0644);
    chmod(scratch.folder().c_str(), 0555);
    tests::inOrdinaryProcess([this] {
        QtPreferences preferences(path);
        EXPECT_EQ(preferences.integer("a"), 1);
        preferences.setInteger("a", 2);
        preferences.setTruth("b", true);
        preferences.remove("c");
        // As long as the program runs it goes by what was said last.
        EXPECT_EQ(preferences.integer("a"), 2);
        EXPECT_EQ(preferences.truth("b"), true);
        save(preferences);
        EXPECT_EQ(preferences.integer("a"), 2);
        EXPECT_EQ(QtPreferences(path).integer("a"), 1);
    });
    EXPECT_EQ(QtPreferences(path).integer("a"), 1);
    EXPECT_FALSE(QtPreferences(path).holds("b"));
}

TEST_F(QtPreferencesDamageTest, WhatCouldNotBeWrittenIsWrittenWithTheNextChange) {
    tests::inOrdinaryProcess([this] {
        const std::string folder = scratch.file("folder");
        std::filesystem::create_directory(folder);
        QtPreferences preferences(folder + "/velloran.ini");
        chmod(folder.c_str(), 0555);
        preferences.setInteger("a", 1);
        save(preferences);
        EXPECT_FALSE(std::filesystem::exists(folder + "/velloran.ini"));
        chmod(folder.c_str(), 0755);
        preferences.setInteger("b", 2);
        save(preferences);
        EXPECT_EQ(QtPreferences(folder + "/velloran.ini").integer("a"), 1);
        EXPECT_EQ(QtPreferences(folder + "/velloran.ini").integer("b"), 2);
    });
}

TEST_F(QtPreferencesDamageTest, TheEndIsTheLastChanceToWrite) {
    tests::inOrdinaryProcess([this] {
        const std::string folder = scratch.file("folder");
        std::filesystem::create_directory(folder);
        {
            QtPreferences preferences(folder + "/velloran.ini");
            chmod(folder.c_str(), 0555);
            preferences.setInteger("a", 1);
            save(preferences);
            EXPECT_FALSE(std::filesystem::exists(folder + "/velloran.ini"));
            chmod(folder.c_str(), 0755);
        }
        EXPECT_EQ(QtPreferences(folder + "/velloran.ini").integer("a"), 1);
    });
}

TEST_F(QtPreferencesDamageTest, AFileThatCannotBeReadIsLeftAlone) {
    tests::inOrdinaryProcess([this] {
        QtPreferences(path).setInteger("a", 1);
        chmod(path.c_str(), 0);
        QtPreferences preferences(path);
        EXPECT_FALSE(preferences.holds("a"));
        preferences.setInteger("b", 2);
        save(preferences);
        EXPECT_EQ(preferences.integer("b"), 2);
        chmod(path.c_str(), 0644);
        EXPECT_EQ(QtPreferences(path).integer("a"), 1);
        EXPECT_FALSE(QtPreferences(path).holds("b"));
    });
}

TEST_F(QtPreferencesDamageTest, AFileThatMayNotBeChangedIsLeftAlone) {
    tests::inOrdinaryProcess([this] {
        QtPreferences(path).setInteger("a", 1);
        chmod(path.c_str(), 0444);
        QtPreferences preferences(path);
        preferences.setInteger("a", 2);
        save(preferences);
        EXPECT_EQ(preferences.integer("a"), 2);
        EXPECT_EQ(QtPreferences(path).integer("a"), 1);
    });
}

TEST_F(QtPreferencesDamageTest, WhatIsNoFileHoldsNobodyUp) {
    ASSERT_EQ(mkfifo(scratch.file("pipe").c_str(), 0666), 0);
    std::filesystem::create_directory(scratch.file("folder"));
    for (const std::string& other : {scratch.file("pipe"), scratch.file("folder")}) {
        QtPreferences preferences(other);
        preferences.setInteger("a", 1);
        save(preferences);
        EXPECT_EQ(preferences.integer("a"), 1);
        EXPECT_FALSE(std::filesystem::is_regular_file(other));
    }
}

TEST_F(QtPreferencesDamageTest, AFullDiskKeepsWhatItHolds) {
    const SmallDisk disk(scratch.file("disk"));
    if (!disk.isThere()) {
        GTEST_SKIP() << "This system lets the test mount nothing";
    }
    const std::string onDisk = scratch.file("disk/velloran.ini");
    QtPreferences preferences(onDisk);
    preferences.setBytes("value", valueNumber(2));
    save(preferences);
    // Too large for what is left.
    preferences.setBytes("value", Bytes(100'000, 'x'));
    save(preferences);
    EXPECT_EQ(preferences.bytes("value"), Bytes(100'000, 'x'));
    EXPECT_EQ(numberOf(QtPreferences(onDisk).bytes("value").value_or("")), 2);
    // Not even room for a lock.
    disk.fill();
    preferences.setBytes("value", valueNumber(4));
    save(preferences);
    EXPECT_EQ(numberOf(QtPreferences(onDisk).bytes("value").value_or("")), 2);
    EXPECT_EQ(numberOf(preferences.bytes("value").value_or("")), 4);
    disk.makeRoom();
    preferences.setInteger("other", 1);
    save(preferences);
    EXPECT_EQ(numberOf(QtPreferences(onDisk).bytes("value").value_or("")), 4);
    EXPECT_EQ(QtPreferences(onDisk).integer("other"), 1);
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

TEST_F(QtPreferencesDamageTest, WhatIsTooLargeToBeReadAgainIsNotWritten) {
    QtPreferences preferences(path);
    preferences.setBytes("value", valueNumber(2));
    save(preferences);
    const Bytes large(16 * 1024 * 1024, 'x');
    preferences.setBytes("value", large);
    save(preferences);
    EXPECT_EQ(preferences.bytes("value"), large);
    EXPECT_EQ(numberOf(QtPreferences(path).bytes("value").value_or("")), 2);
    preferences.setBytes("value", valueNumber(4));
    save(preferences);
    EXPECT_EQ(numberOf(QtPreferences(path).bytes("value").value_or("")), 4);
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
