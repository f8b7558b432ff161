#include "platform/qt/FailingDisk.h"
#include "platform/qt/QtPreferences.h"
#include "platform/qt/Scratch.h"
#include "platform/qt/wholeValue.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdint>
#include <iostream>
#include <string>

// What a disk may say when it is full, over quota or broken, at any byte and behind the last. Each prints how much was
// tried and how much of it survived.

namespace velloran::platform::qt {

namespace {

class DiskErrorsTest : public testing::Test {
protected:
    DiskErrorsTest() {
        save([](QtPreferences& preferences) {
            preferences.setBytes("velloran.config", Bytes(300, 'a'));
            preferences.setInteger("donation.remindersShown", 7);
        });
        before = tests::readFile(path);
    }

    template<typename Change>
    void save(Change change) {
        QtPreferences preferences(path);
        change(preferences);
        ASSERT_TRUE(preferences.finish(forEver));
    }

    /// Changes something while the disk fails: the file stays as it was, what was changed counts while the program
    /// runs, and is written with the next change.
    void tryError(int error, std::int64_t room) {
        SCOPED_TRACE(testing::Message() << "error " << error << " after " << room << " bytes");
        ++tried;
        tests::writeFile(path, before);
        QtPreferences preferences(path);
        {
            const tests::FailingDisk disk(error, room);
            preferences.setBytes("velloran.config", Bytes(310, 'b'));
            ASSERT_TRUE(preferences.finish(forEver));
            ASSERT_EQ(tests::readFile(path), before);
            ASSERT_EQ(preferences.bytes("velloran.config"), Bytes(310, 'b'));
        }
        preferences.setInteger("other", tried);
        ASSERT_TRUE(preferences.finish(forEver));
        const QtPreferences again(path);
        ASSERT_EQ(again.bytes("velloran.config"), Bytes(310, 'b'));
        ASSERT_EQ(again.integer("other"), tried);
        ASSERT_EQ(again.integer("donation.remindersShown"), 7);
        ++survived;
    }

    void print(const char* what) const {
        std::cout << what << ": " << tried << " tried, " << survived << " survived\n";
        EXPECT_EQ(survived, tried);
    }

    tests::Scratch scratch;
    std::string path = scratch.file("velloran.ini");
    std::string before;
    int tried = 0;
    int survived = 0;
};

} // namespace

TEST_F(DiskErrorsTest, ADiskThatTakesNoFurtherByteKeepsTheOldFile) {
    // The lock takes some of the room, and the file that is written is longer than the old one by ten bytes.
    const auto size = static_cast<std::int64_t>(before.size());
    for (const int error : {ENOSPC, EDQUOT, EIO}) {
        for (std::int64_t room = 0; room <= size && !HasFatalFailure(); ++room) {
            tryError(error, room);
        }
    }
    print("disks full, over quota or broken at a byte");
    EXPECT_GT(tried, 1000);
}

TEST_F(DiskErrorsTest, ADiskThatFindsOutAtTheEndKeepsTheOldFile) {
    for (const int error : {ENOSPC, EDQUOT, EIO}) {
        tryError(error, tests::FailingDisk::everything);
    }
    print("disks that find out when they are asked to keep it");
}

TEST_F(DiskErrorsTest, ADiskThatKnowsNothingOfKeepingIsWrittenTo) {
    for (const int error : {EINVAL, ENOSYS, EOPNOTSUPP}) {
        const tests::FailingDisk disk(error);
        save([error](QtPreferences& preferences) { preferences.setInteger("other", error); });
        EXPECT_EQ(QtPreferences(path).integer("other"), error);
    }
}

} // namespace velloran::platform::qt
