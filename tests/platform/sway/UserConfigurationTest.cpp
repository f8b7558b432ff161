#include "platform/sway/UserConfiguration.h"

#include "platform/wayland/LoopTest.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

namespace velloran::tests {

using namespace platform::sway;

class UserConfigurationTest : public LoopTest {
protected:
    UserConfigurationTest() {
        std::string name = std::filesystem::temp_directory_path() / "velloran with blanks-XXXXXX";
        folder = mkdtemp(name.data());
        for (const char* const path : {"main", "parts/b.conf", "parts/a.conf", "parts/a.txt", "one $file"}) {
            std::filesystem::create_directories((folder / path).parent_path());
            std::ofstream(folder / path) << "bindsym " << path[0] << " nop\n";
        }
    }

    ~UserConfigurationTest() override { std::filesystem::remove_all(folder); }

    /// The names of the files that are found.
    std::vector<std::string> found(const std::string& words) const {
        std::vector<std::string> names;
        for (const auto& file : findIncludedFiles(words, folder.string() + '/', environment)) {
            names.push_back(std::filesystem::relative(file.path, folder));
        }
        return names;
    }

    std::filesystem::path folder;
    Variables environment;
};

using Names = std::vector<std::string>;

TEST_F(UserConfigurationTest, FilesAreFoundAsAShellFindsThem) {
    EXPECT_EQ(found("parts/*.conf"), (Names{"parts/a.conf", "parts/b.conf"}));
    EXPECT_EQ(found("parts/../main"), Names{"main"});
    EXPECT_EQ(found("one\\ \\$file"), Names{"one $file"});
    EXPECT_EQ(found("main parts/a.*"), (Names{"main", "parts/a.conf", "parts/a.txt"}));
    EXPECT_EQ(found("no-such-file"), Names{});
    std::ofstream(folder / "b[1].conf") << "bindsym b nop\n";
    EXPECT_EQ(found("b[1].conf"), Names{"b[1].conf"}) << "fits nothing, and is a name itself";
    EXPECT_EQ(found("parts"), Names{}) << "a folder";
    EXPECT_EQ(found("("), Names{});
    EXPECT_EQ(found(""), Names{});
}

TEST_F(UserConfigurationTest, WholePathsAndTheEnvironmentAreKnown) {
    environment["PLACE"] = folder / "parts";
    environment["HOME"] = folder;
    EXPECT_EQ(found("$PLACE/a.*"), Names{}) << "a blank in a variable parts words, as in a shell";
    EXPECT_EQ(found("\"$PLACE\"/a.conf"), Names{"parts/a.conf"});
    EXPECT_EQ(found("~/parts/[a-b].conf"), (Names{"parts/a.conf", "parts/b.conf"}));
    const std::filesystem::path link = folder.parent_path() / ("velloran-link-" + std::to_string(getpid()));
    std::filesystem::create_directory_symlink(folder, link);
    EXPECT_EQ(found(link.string() + "/parts/b.conf"), Names{"parts/b.conf"});
    std::filesystem::remove(link);
}

TEST_F(UserConfigurationTest, NoCommandIsRun) {
    const auto proof = folder / "proof";
    EXPECT_EQ(found("main$(touch${IFS}'" + proof.string() + "')"), Names{});
    EXPECT_FALSE(std::filesystem::exists(proof));
}

TEST_F(UserConfigurationTest, TellsWhatTheFilesBind) {
    UserConfiguration configuration(loop);
    std::vector<std::string> keys;
    const auto take = [&](const std::vector<UserBinding>& bindings) {
        for (const auto& binding : bindings) {
            keys.push_back(binding.key);
        }
        keys.emplace_back(".");
    };
    configuration.read({folder / "first", "include main\ninclude parts/*.conf"}, take);
    configuration.read({folder / "first", "bindsym z nop"}, take);
    EXPECT_TRUE(keys.empty());
    ASSERT_TRUE(until([&] { return keys.size() >= 6; }));
    EXPECT_EQ(keys, (std::vector<std::string>{"m", "p", "p", ".", "z", "."}));
}

TEST_F(UserConfigurationTest, TheEnvironmentCountsAsItIsWhenItIsAsked) {
    std::filesystem::create_directory(folder / "later");
    std::ofstream(folder / "later/a.conf") << "bindsym x nop\n";
    ASSERT_EQ(setenv("VELLORAN_TEST_PART", "parts", 1), 0);
    UserConfiguration configuration(loop);
    std::size_t told = 0;
    std::size_t asItWas = 0;
    // More than can be read before the next line.
    constexpr std::size_t questions = 300;
    for (std::size_t i = 0; i < questions; ++i) {
        configuration.read({folder / "first", "include \"$VELLORAN_TEST_PART\"/a.conf"}, [&](const auto& bindings) {
            ++told;
            asItWas += bindings.size() == 1 && bindings.front().key == "p" ? 1U : 0U;
        });
    }
    ASSERT_EQ(setenv("VELLORAN_TEST_PART", "later", 1), 0);
    EXPECT_TRUE(until([&] { return told == questions; }));
    EXPECT_EQ(asItWas, questions);
}

TEST_F(UserConfigurationTest, NobodyIsToldAfterItsEndAndPipesAreNotRead) {
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), S_IRWXU), 0);
    bool isTold = false;
    auto configuration = std::make_unique<UserConfiguration>(loop);
    configuration->read({folder / "first", "include main"}, [&](const auto&) { isTold = true; });
    configuration.reset();
    idle();
    EXPECT_FALSE(isTold);
    EXPECT_EQ(found("pipe"), Names{}) << "is no file, and reading it would wait";
}

} // namespace velloran::tests
