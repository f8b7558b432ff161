#include "platform/qt/QtPreferences.h"
#include "platform/qt/Scratch.h"

#include <QLockFile>
#include <QString>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <iostream>
#include <string>
#include <utility>
#include <vector>

// What may be in the place of the lock of the settings. Each prints how much was tried and how much of it survived.

namespace velloran::platform::qt {

namespace {

using std::filesystem::file_time_type;

class StorageLockTest : public testing::Test {
protected:
    StorageLockTest() { QtPreferences(path).setInteger("kept", 7); }

    tests::Scratch scratch{true};
    std::string path = scratch.file("velloran.ini");
    int tried = 0;
    int survived = 0;
};

} // namespace

TEST_F(StorageLockTest, NoLockKeepsAChangeFromTheDiskForLong) {
    const std::string lock = path + ".lock";
    const auto aYear = std::chrono::hours(365 * 24);
    const auto age = [&lock](file_time_type::duration by) {
        std::filesystem::last_write_time(lock, file_time_type::clock::now() + by);
    };
    const auto contentOf = [](long process) {
        std::string host(256, '\0');
        gethostname(host.data(), host.size() - 1);
        return std::to_string(process) + "\nvelloran\n" + host.c_str() + "\n\n\n";
    };
    const std::vector<std::pair<const char*, std::function<void()>>> locks{
        {"empty, made when the clock was a year ahead", [&] { tests::writeFile(lock, ""), age(aYear); }},
        {"empty, made when the clock was a year behind", [&] { tests::writeFile(lock, ""), age(-aYear); }},
        {"which names a living process, a year ahead", [&] { tests::writeFile(lock, contentOf(1)), age(aYear); }},
        {"which names a living process, a year behind", [&] { tests::writeFile(lock, contentOf(1)), age(-aYear); }},
        {"of a process that is gone, a year ahead", [&] { tests::writeFile(lock, contentOf(2'000'000)), age(aYear); }},
        {"of random bytes", [&] { tests::writeFile(lock, std::string("\0\xff\n\n\n\xfe", 6)); }},
        {"which is a folder", [&] { std::filesystem::create_directories(lock + "/in it"); }},
        {"which leads nowhere", [&] { std::filesystem::create_symlink("/nowhere/at/all", lock); }},
        {"which leads to itself", [&] { std::filesystem::create_symlink(lock, lock); }},
        {"which leads to a device without an end", [&] { std::filesystem::create_symlink("/dev/zero", lock); }},
        {"which is a pipe", [&] { mkfifo(lock.c_str(), 0666); }},
        {"which is larger than the memory",
         [&] { tests::writeFile(lock, ""), std::filesystem::resize_file(lock, std::uintmax_t{1} << 40U); }},
    };
    for (const auto& [what, make] : locks) {
        SCOPED_TRACE(what);
        ++tried;
        std::filesystem::remove_all(lock);
        make();
        QtPreferences preferences(path);
        preferences.setInteger("number", tried);
        EXPECT_TRUE(preferences.finish(std::chrono::seconds(30)));
        EXPECT_EQ(QtPreferences(path).integer("number"), tried);
        EXPECT_EQ(QtPreferences(path).integer("kept"), 7);
        survived += HasFailure() ? 0 : 1;
    }
    std::cout << "things in the place of their lock: " << tried << " tried, " << survived << " survived\n";
}

TEST_F(StorageLockTest, ALockThatIsHeldIsWaitedForAndStays) {
    const std::string lock = path + ".lock";
    for (const int years : {-1, 0, 1}) {
        SCOPED_TRACE(years);
        ++tried;
        const pid_t holder = fork();
        if (holder == 0) {
            QLockFile held(QString::fromStdString(lock));
            held.lock();
            raise(SIGSTOP);
            _exit(0);
        }
        waitpid(holder, nullptr, WUNTRACED);
        std::filesystem::last_write_time(lock, file_time_type::clock::now() + years * std::chrono::hours(365 * 24));
        const auto begin = std::chrono::steady_clock::now();
        QtPreferences preferences(path);
        preferences.setInteger("number", tried);
        EXPECT_TRUE(preferences.finish(std::chrono::seconds(30)));
        // Half a second, but the toolkit rounds what is left of it down to whole milliseconds.
        EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(490));
        EXPECT_EQ(QtPreferences(path).integer("number"), tried);
        EXPECT_TRUE(tests::readFile(lock).starts_with(std::to_string(holder) + '\n'));
        kill(holder, SIGKILL);
        waitpid(holder, nullptr, 0);
        survived += HasFailure() ? 0 : 1;
    }
    std::cout << "locks that a stopped process holds: " << tried << " tried, " << survived << " survived\n";
}

} // namespace velloran::platform::qt
