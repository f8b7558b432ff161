#include "platform/qt/QtPreferences.h"

#include "fakes/RecordingPlatform.h"
#include "platform/qt/Scratch.h"
#include "platform/qt/wholeValue.h"
#include "presets/PresetStore.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <iostream>
#include <map>
#include <string>
#include <vector>

// What the settings survive, by what can befall their file. Each prints how much was tried and how much of it survived.

namespace velloran::platform::qt {

namespace {

AutoClickerConfig keptConfig() {
    AutoClickerConfig config;
    config.clickIntervalSeconds = 0.125;
    config.maxClicks = 77;
    config.hotkey = HotkeyCombo{0xC0000, 1, "⌃⌥S"};
    return config;
}

/// Everything that the program keeps, and something of somebody else.
class StorageFaultsTest : public testing::Test {
protected:
    StorageFaultsTest() {
        {
            QtPreferences preferences(path);
            PresetStore store(preferences);
            store.saveConfig(keptConfig());
            store.savePresets({Preset::make("Eins — \"1\", zwei; drei", keptConfig()), Preset::make("Two", {})});
            preferences.setDate("donation.firstLaunchAt", Date(801234567.125));
            preferences.setDate("donation.nextReminderAt", Date(801236367.5));
            preferences.setInteger("donation.remindersShown", 7);
            preferences.setTruth("donation.donated", true);
            preferences.setBytes("others", valueNumber(2));
            save(preferences);
        }
        text = tests::readFile(path);
        values = valuesOf(QtPreferences(path));
        for (const auto& [key, value] : values) {
            EXPECT_NE(value, "") << key;
        }
    }

    static void save(QtPreferences& preferences) { ASSERT_TRUE(preferences.finish(forEver)); }

    /// What is read under each key, as text that tells one value from another; empty where nothing is.
    static std::map<std::string, std::string> valuesOf(const QtPreferences& preferences) {
        std::map<std::string, std::string> read;
        for (const char* const key : {"velloran.config", "velloran.presets", "others"}) {
            read[key] = preferences.bytes(key).value_or("");
        }
        for (const char* const key : {"donation.firstLaunchAt", "donation.nextReminderAt"}) {
            const auto date = preferences.date(key);
            read[key] = date ? std::to_string(date->secondsSinceReference()) : "";
        }
        const auto shown = preferences.integer("donation.remindersShown");
        read["donation.remindersShown"] = shown ? std::to_string(*shown) : "";
        const auto donated = preferences.truth("donation.donated");
        read["donation.donated"] = donated ? std::to_string(static_cast<int>(*donated)) : "";
        return read;
    }

    /// Whether a change of the bytes from `first` to `last` may alter what is read under the key: in its line, the
    /// breaks at both ends included. What is not the program's own is in the section that is named above it, as well.
    [[nodiscard]] bool mayAlter(const std::string& key, std::size_t first, std::size_t last) const {
        const std::size_t begin = text.find('\n' + key + '=');
        const std::size_t end = text.find('\n', begin + 1);
        const std::size_t section = text.find('\n', text.find('['));
        return (first <= end && last >= begin) || (key == "others" && first <= section);
    }

    /// Reads the damaged text as a start of the program does. Everything has to be there whose line was spared. Then
    /// something is saved, which must cost nothing either, as the next start sees it.
    void tryText(const std::string& damaged, std::size_t first, std::size_t last) {
        ++tried;
        tests::writeFile(path, damaged);
        QtPreferences preferences(path);
        const auto read = valuesOf(preferences);
        std::size_t whole = 0;
        for (const auto& [key, value] : values) {
            whole += read.at(key) == value ? 1U : 0U;
            ASSERT_TRUE(read.at(key) == value || mayAlter(key, first, last))
                << key << " was lost by what befell bytes " << first << " to " << last;
        }
        unharmed += whole == values.size() ? 1 : 0;
        // Whatever is there now: a start makes a configuration and a list of it.
        PresetStore store(preferences);
        const AutoClickerConfig config = store.loadConfig();
        const auto presets = store.loadPresets();
        ASSERT_TRUE(presets.size() == 2 || mayAlter("velloran.presets", first, last));
        store.saveConfig(config);
        preferences.setInteger("new", 1);
        save(preferences);
        QtPreferences again(path);
        ASSERT_EQ(again.integer("new"), 1);
        ASSERT_EQ(PresetStore(again).loadConfig(), config);
        const auto readAgain = valuesOf(again);
        for (const auto& [key, value] : read) {
            ASSERT_TRUE(readAgain.at(key) == value || key == "velloran.config") << key << " was lost by a save";
        }
        ++survived;
    }

    void print(const char* what) const {
        std::cout << what << ": " << tried << " tried, " << survived << " survived, " << unharmed
                  << " of them with every value\n";
    }

    /// Presets are dated by it.
    fakes::RecordingPlatform platform;
    tests::Scratch scratch{true};
    std::string path = scratch.file("velloran.ini");
    std::string text;
    std::map<std::string, std::string> values;
    int tried = 0;
    int survived = 0;
    int unharmed = 0;
};

} // namespace

TEST_F(StorageFaultsTest, EveryBitFlippedCostsNoMoreThanItsOwnLine) {
    for (std::size_t place = 0; place < text.size() && !HasFatalFailure(); ++place) {
        for (unsigned bit = 0; bit < 8 && !HasFatalFailure(); ++bit) {
            std::string damaged = text;
            damaged[place] = static_cast<char>(static_cast<unsigned char>(damaged[place]) ^ (1U << bit));
            tryText(damaged, place, place);
        }
    }
    print("bits of the settings flipped");
    EXPECT_GT(tried, 8000);
    EXPECT_EQ(survived, tried);
}

TEST_F(StorageFaultsTest, EveryByteReplacedCostsNoMoreThanItsOwnLine) {
    for (const char other : {'\0', '\n', '\r', '=', '"', '\\', '\xff'}) {
        for (std::size_t place = 0; place < text.size() && !HasFatalFailure(); ++place) {
            std::string damaged = text;
            damaged[place] = other;
            tryText(damaged, place, place);
        }
    }
    print("bytes of the settings replaced");
    EXPECT_EQ(survived, tried);
}

TEST_F(StorageFaultsTest, ACutAtAnyLengthCostsNoMoreThanWhatWasBehindIt) {
    for (std::size_t length = 0; length < text.size() && !HasFatalFailure(); ++length) {
        tryText(text.substr(0, length), length, text.size());
    }
    print("settings cut at a length");
    EXPECT_EQ(survived, tried);
}

TEST_F(StorageFaultsTest, ALineThatIsLostOrThereTwiceCostsNoOther) {
    for (std::size_t begin = 0; begin < text.size() && !HasFatalFailure();) {
        const std::size_t end = text.find('\n', begin) + 1;
        const std::string line = text.substr(begin, end - begin);
        tryText(text.substr(0, begin) + text.substr(end), begin + 1, end - 2);
        tryText(text.substr(0, end) + line + text.substr(end), begin + 1, end - 2);
        begin = end;
    }
    print("lines of the settings lost, or there twice");
    EXPECT_EQ(survived, tried);
}

TEST_F(StorageFaultsTest, ALinkInTheFilesPlaceHarmsNothingBehindIt) {
    std::filesystem::create_directory(scratch.file("folder"));
    tests::writeFile(scratch.file("not ours"), text);
    chmod(scratch.file("not ours").c_str(), 0644);
    std::filesystem::create_symlink("other link", scratch.file("link"));
    std::filesystem::create_symlink("link", scratch.file("other link"));
    tests::inOrdinaryProcess([this] {
        struct Target {
            const char* path;
            /// Whether it can be read: then what is there is there at the start.
            bool isRead;
        };

        const std::vector<Target> targets{{"/dev/null", false},   {"/dev/full", false},      {"/dev/zero", false},
                                          {"folder", false},      {"other link", false},     {"nowhere/at/all", false},
                                          {"/etc/shadow", false}, {"/proc/self/mem", false}, {"not ours", true}};
        for (const Target& target : targets) {
            SCOPED_TRACE(target.path);
            ++tried;
            const std::string link = scratch.file("settings " + std::to_string(tried));
            std::filesystem::create_symlink(target.path, link);
            {
                QtPreferences preferences(link);
                EXPECT_EQ(preferences.integer("donation.remindersShown").has_value(), target.isRead);
                PresetStore(preferences).saveConfig(keptConfig());
                save(preferences);
                EXPECT_EQ(PresetStore(preferences).loadConfig(), keptConfig()) << "as long as the program runs";
            }
            EXPECT_EQ(tests::readFile(scratch.file("not ours")), text);
            EXPECT_TRUE(std::filesystem::is_empty(scratch.file("folder")));
            // One that leads round and round leads to nothing that could be kept.
            EXPECT_EQ(std::filesystem::is_symlink(link), target.path != std::string("other link"));
            survived += HasFailure() ? 0 : 1;
        }
        std::cout << "links in the place of the settings: " << tried << " tried, " << survived << " survived\n";
    });
}

TEST_F(StorageFaultsTest, AFileOfAnotherUserIsReadButNotReplaced) {
    if (getuid() != 0) {
        GTEST_SKIP() << "Only a superuser can make a file that is another user's";
    }
    chmod(path.c_str(), 0644);
    tests::inOrdinaryProcess([this] {
        QtPreferences preferences(path);
        EXPECT_EQ(valuesOf(preferences), values);
        preferences.setInteger("new", 1);
        save(preferences);
        EXPECT_EQ(preferences.integer("new"), 1);
        EXPECT_EQ(tests::readFile(path), text);
    });

    struct stat now {};

    ASSERT_EQ(stat(path.c_str(), &now), 0);
    EXPECT_EQ(now.st_uid, 0U);
}

} // namespace velloran::platform::qt
