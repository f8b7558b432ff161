#include "platform/portal/RestoreToken.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace velloran::tests {
namespace {

using platform::portal::RestoreToken;

class RestoreTokenTest : public testing::Test {
protected:
    /// What another start of the program finds.
    [[nodiscard]] std::string stored() const { return RestoreToken(path).get(); }

    QTemporaryDir folder;
    const std::string path = folder.filePath("of/velloran/token").toStdString();
};

TEST_F(RestoreTokenTest, NoFileIsNoToken) {
    EXPECT_EQ(stored(), "");
    EXPECT_FALSE(std::filesystem::exists(path)) << "reading writes nothing";
}

TEST_F(RestoreTokenTest, IsFoundAgain) {
    RestoreToken(path).set("a-token");
    EXPECT_EQ(stored(), "a-token");
    RestoreToken(path).set("another");
    EXPECT_EQ(stored(), "another");
}

TEST_F(RestoreTokenTest, OnlyItsOwnerCanReadIt) {
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream(path) << "readable by all\n";
    std::ofstream(path + ".new") << "left over\n";
    const mode_t before = umask(0);
    RestoreToken(path).set("a-token");
    umask(before);

    struct stat state {};

    ASSERT_EQ(stat(path.c_str(), &state), 0);
    EXPECT_EQ(state.st_mode & 0777U, 0600U);
    EXPECT_FALSE(std::filesystem::exists(path + ".new"));
}

TEST_F(RestoreTokenTest, NoneLeavesNoFile) {
    RestoreToken(path).set("a-token");
    RestoreToken(path).set("");
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(RestoreTokenTest, WhatIsNoTokenIsNone) {
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream(path) << std::string(10'000, 'x');
    EXPECT_EQ(stored(), "");
    std::filesystem::remove(path);
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    EXPECT_EQ(stored(), "") << "and nobody waits for a writer";
}

TEST_F(RestoreTokenTest, FileOfAnotherUserIsNotBelieved) {
    RestoreToken(path).set("a-token");
    ASSERT_EQ(stored(), "a-token");
    if (geteuid() == 0) {
        constexpr uid_t nobody = 65534;
        ASSERT_EQ(chown(path.c_str(), nobody, nobody), 0);
    } else {
        // Who is not root can only point to what is root's.
        std::filesystem::remove(path);
        std::filesystem::create_symlink("/etc/passwd", path);
    }
    EXPECT_EQ(stored(), "");
}

TEST_F(RestoreTokenTest, FileThatOthersCanWriteIsNotBelieved) {
    RestoreToken(path).set("a-token");
    for (const mode_t mode : {0620U, 0602U}) {
        ASSERT_EQ(chmod(path.c_str(), mode), 0);
        EXPECT_EQ(stored(), "");
    }
    ASSERT_EQ(chmod(path.c_str(), 0644), 0);
    EXPECT_EQ(stored(), "a-token");
}

TEST_F(RestoreTokenTest, FolderThatCannotBeMadeIsNoFailure) {
    std::ofstream(folder.filePath("of").toStdString()) << "a file";
    RestoreToken token(path);
    token.set("a-token");
    EXPECT_EQ(token.get(), "a-token");
}

} // namespace
} // namespace velloran::tests
