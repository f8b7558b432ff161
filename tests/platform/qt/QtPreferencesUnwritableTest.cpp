#include "platform/qt/QtPreferences.h"
#include "platform/qt/Scratch.h"
#include "platform/qt/wholeValue.h"

#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace velloran::platform::qt {

namespace {

class QtPreferencesUnwritableTest : public testing::Test {
protected:
    static void save(QtPreferences& preferences) { ASSERT_TRUE(preferences.finish(forEver)); }

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

TEST_F(QtPreferencesUnwritableTest, AFolderThatCannotBeWrittenToKeepsWhatItHolds) {
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

TEST_F(QtPreferencesUnwritableTest, WhatCouldNotBeWrittenIsWrittenWithTheNextChange) {
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

TEST_F(QtPreferencesUnwritableTest, TheEndIsTheLastChanceToWrite) {
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

TEST_F(QtPreferencesUnwritableTest, AFileThatCannotBeReadIsLeftAlone) {
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

TEST_F(QtPreferencesUnwritableTest, AFileThatMayNotBeChangedIsLeftAlone) {
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

TEST_F(QtPreferencesUnwritableTest, WhatIsNoFileHoldsNobodyUp) {
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

TEST_F(QtPreferencesUnwritableTest, AFullDiskKeepsWhatItHolds) {
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

TEST_F(QtPreferencesUnwritableTest, WhatIsTooLargeToBeReadAgainIsNotWritten) {
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

} // namespace velloran::platform::qt
