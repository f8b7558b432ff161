#include "platform/portal/backEnds.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace velloran::tests {
namespace {

using platform::portal::backEndsWith;

class BackEndsTest : public testing::Test {
protected:
    BackEndsTest() {
        setenv("XDG_DATA_HOME", (root + "/user").c_str(), 1);
        setenv("XDG_DATA_DIRS", (root + "/system").c_str(), 1);
    }

    ~BackEndsTest() override {
        unsetenv("XDG_DATA_HOME");
        unsetenv("XDG_DATA_DIRS");
        unsetenv("XDG_DESKTOP_PORTAL_DIR");
    }

    BackEndsTest(const BackEndsTest&) = delete;
    BackEndsTest& operator=(const BackEndsTest&) = delete;

    void put(const std::string& file, const std::string& name, const std::string& interfaces) const {
        const std::filesystem::path path = root + "/" + file;
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path) << "[portal]\nDBusName=" << name << "\nInterfaces=" << interfaces << "\nUseIn=some\n";
    }

    static QStringList found() { return backEndsWith(QStringLiteral("org.example.Input")); }

    QTemporaryDir folder;
    const std::string root = folder.path().toStdString();
};

TEST_F(BackEndsTest, NoneIsInstalled) {
    EXPECT_EQ(found(), QStringList());
}

TEST_F(BackEndsTest, ThoseWithTheInterfaceAreFound) {
    put("system/xdg-desktop-portal/portals/files.portal", "org.example.files", "org.example.Files;org.example.Inputs;");
    put("system/xdg-desktop-portal/portals/one.portal", "org.example.one", "org.example.Files;org.example.Input;");
    put("user/xdg-desktop-portal/portals/one.portal", "org.example.one", "org.example.Input");
    put("system/xdg-desktop-portal/portals/one.conf", "org.example.conf", "org.example.Input;");
    EXPECT_EQ(found(), QStringList("org.example.one"));
}

TEST_F(BackEndsTest, PortalsOwnFolderTakesThePlaceOfTheOthers) {
    put("system/xdg-desktop-portal/portals/one.portal", "org.example.one", "org.example.Input;");
    put("own/two.portal", "org.example.two", "org.example.Input;");
    setenv("XDG_DESKTOP_PORTAL_DIR", (root + "/own").c_str(), 1);
    EXPECT_EQ(found(), QStringList("org.example.two"));
}

} // namespace
} // namespace velloran::tests
