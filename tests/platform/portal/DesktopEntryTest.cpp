#include "platform/portal/desktopEntry.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace velloran::tests {
namespace {

using platform::portal::provideDesktopEntry;

/// Data folders of the test's own: of the user, and of the system.
class DesktopEntryTest : public testing::Test {
protected:
    DesktopEntryTest() {
        setenv("XDG_DATA_HOME", (root + "/user").c_str(), 1);
        setenv("XDG_DATA_DIRS", (root + "/system").c_str(), 1);
    }

    ~DesktopEntryTest() override {
        unsetenv("XDG_DATA_HOME");
        unsetenv("XDG_DATA_DIRS");
    }

    DesktopEntryTest(const DesktopEntryTest&) = delete;
    DesktopEntryTest& operator=(const DesktopEntryTest&) = delete;

    static std::string content(const std::string& name) {
        std::ostringstream text;
        text << std::ifstream(name).rdbuf();
        return text.str();
    }

    static void put(const std::string& name, const std::string& text) {
        std::filesystem::create_directories(std::filesystem::path(name).parent_path());
        std::ofstream(name) << text;
    }

    static bool provide(const char* program) {
        return provideDesktopEntry(QStringLiteral("org.example.Program"), QString::fromUtf8(program));
    }

    QTemporaryDir folder;
    const std::string root = folder.path().toStdString();
    const std::string own = root + "/user/applications/org.example.Program.desktop";
    const std::string installed = root + "/system/applications/org.example.Program.desktop";
};

TEST_F(DesktopEntryTest, IsGivenWhereNoneIsInstalled) {
    EXPECT_TRUE(provide("/home/me/build/program"));
    EXPECT_EQ(content(own), "[Desktop Entry]\nType=Application\nName=Velloran\nExec=\"/home/me/build/program\"\n"
                            "Icon=org.example.Program\nNoDisplay=true\nX-Velloran-Build=true\n");
}

TEST_F(DesktopEntryTest, InstalledOneIsLeftAlone) {
    put(installed, "[Desktop Entry]\nExec=program\n");
    EXPECT_TRUE(provide("/home/me/build/program"));
    EXPECT_FALSE(std::filesystem::exists(own));
}

TEST_F(DesktopEntryTest, InstalledOneCountsAgainAfterABuild) {
    EXPECT_TRUE(provide("/home/me/build/program"));
    ASSERT_TRUE(std::filesystem::exists(own));
    put(installed, "[Desktop Entry]\nExec=program\n");
    EXPECT_TRUE(provide("/usr/bin/program"));
    EXPECT_FALSE(std::filesystem::exists(own)) << "or no menu shows the program";
    EXPECT_EQ(content(installed), "[Desktop Entry]\nExec=program\n");
}

TEST_F(DesktopEntryTest, UsersOwnOneComesBeforeTheInstalledOne) {
    put(own, "[Desktop Entry]\nExec=other\n");
    put(installed, "[Desktop Entry]\nExec=program\n");
    EXPECT_TRUE(provide("/usr/bin/program"));
    EXPECT_EQ(content(own), "[Desktop Entry]\nExec=other\n");
}

TEST_F(DesktopEntryTest, UsersOwnOneIsLeftAlone) {
    put(own, "[Desktop Entry]\nExec=other\n");
    EXPECT_TRUE(provide("/home/me/build/program"));
    EXPECT_EQ(content(own), "[Desktop Entry]\nExec=other\n");
}

TEST_F(DesktopEntryTest, OneOfAnotherBuildIsReplaced) {
    EXPECT_TRUE(provide("/home/me/old/program"));
    EXPECT_TRUE(provide("/home/me/new/program"));
    EXPECT_NE(content(own).find("Exec=\"/home/me/new/program\"\n"), std::string::npos);
}

TEST_F(DesktopEntryTest, PathIsQuoted) {
    EXPECT_TRUE(provide("/home/a b/50%/$x/\"q\"/b\\s"));
    EXPECT_NE(content(own).find(R"(Exec="/home/a b/50%%/\\$x/\\"q\\"/b\\\\s")"
                                "\n"),
              std::string::npos)
        << content(own);
}

TEST_F(DesktopEntryTest, FolderThatCannotBeMadeIsNoEntry) {
    put(root + "/user", "a file");
    EXPECT_FALSE(provide("/home/me/build/program"));
}

} // namespace
} // namespace velloran::tests
