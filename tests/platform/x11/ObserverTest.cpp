#include "platform/x11/Desktop.h"

#include <algorithm>

namespace velloran::tests {

/// The observer as the program it is, run by its command line.
class ObserverTest : public Desktop {
protected:
    std::unique_ptr<ChildProcess> observe(std::vector<std::string> options) const {
        options.insert(options.begin(), {OBSERVER, "--display", server.displayName()});
        return std::make_unique<ChildProcess>(std::move(options));
    }

    /// The next line that starts with that word.
    static std::string lineWith(ChildProcess& process, const std::string& word) {
        while (const auto line = process.readLine()) {
            if (line->starts_with(word)) {
                return *line;
            }
        }
        return "";
    }

    static std::string ask(ChildProcess& process, const std::string& command) {
        process.writeLine(command);
        while (const auto line = process.readLine()) {
            if (line->starts_with("ok") || line->starts_with("error") || line->starts_with("report")) {
                return *line;
            }
        }
        return "";
    }

    void click(int times, std::uint8_t button = 1) const {
        for (int i = 0; i < times; ++i) {
            user->button(button, true);
            user->button(button, false);
        }
    }
};

TEST_F(ObserverTest, IsContentWhenAllArrive) {
    for (const char* const source : {"--window", "--raw"}) {
        std::vector<std::string> options{"--expect", "20",       "--button", "1",      "--timeout",
                                         "20",       "--settle", "0.1",      "--quiet"};
        options.emplace_back(source);
        if (options.back() == "--window") {
            options.emplace_back("100,100,300,200");
        }
        const auto process = observe(options);
        ASSERT_EQ(lineWith(*process, "ready"), "ready");
        user->movePointer({250, 200});
        click(20);
        EXPECT_NE(lineWith(*process, "report").find(R"("clicks": 20, "presses": 20, "releases": 20, "inPairs": true)"),
                  std::string::npos);
        EXPECT_EQ(process->wait(), 0) << source;
    }
}

TEST_F(ObserverTest, MissesWhatDoesNotArrive) {
    const auto process = observe({"--raw", "--expect", "3", "--timeout", "0.5"});
    ASSERT_EQ(lineWith(*process, "ready"), "ready");
    click(2);
    EXPECT_EQ(process->wait(), 1);
}

TEST_F(ObserverTest, MindsSurplusClicksHalvesAndOtherButtons) {
    const auto statusAfter = [this](const std::function<void()>& action) {
        const auto process = observe({"--raw", "--expect", "2", "--button", "1", "--timeout", "5", "--settle", "0.2"});
        EXPECT_EQ(lineWith(*process, "ready"), "ready");
        action();
        return process->wait();
    };
    EXPECT_EQ(statusAfter([this] { click(2); }), 0);
    EXPECT_EQ(statusAfter([this] { click(3); }), 1);
    EXPECT_EQ(statusAfter([this] { click(2, 3); }), 1);
    EXPECT_EQ(statusAfter([this] {
                  click(2);
                  user->button(1, true);
              }),
              1);
    user->button(1, false);
}

TEST_F(ObserverTest, PlaysTheUser) {
    const auto process = observe({"--window", "100,100,300,200", "--raw"});
    ASSERT_EQ(lineWith(*process, "ready"), "ready");
    EXPECT_EQ(ask(*process, "move 200 180"), "ok");
    EXPECT_EQ(other->pointer(), (observer::Place{200, 180}));
    EXPECT_EQ(ask(*process, "position"), "ok 200 180");
    EXPECT_EQ(ask(*process, "lock caps on"), "ok");
    EXPECT_EQ(other->modifiers(), capsLock);
    EXPECT_EQ(ask(*process, "lock caps off"), "ok");
    EXPECT_EQ(other->modifiers(), 0U);
    EXPECT_EQ(ask(*process, "button press 1"), "ok");
    EXPECT_EQ(ask(*process, "buttons"), "ok 1");
    EXPECT_EQ(ask(*process, "button release 1"), "ok");
    EXPECT_EQ(ask(*process, "buttons"), "ok 0");
    EXPECT_EQ(ask(*process, "grab 74 control"), "ok");
    EXPECT_FALSE(user->grabKey(f8Key, controlBit));
    EXPECT_EQ(ask(*process, "ungrab 74 control"), "ok");
    EXPECT_TRUE(user->grabKey(f8Key, controlBit));
    EXPECT_EQ(ask(*process, "grab 74 control"), "error: another program has the combination");
    EXPECT_EQ(ask(*process, "focus"), "ok");
    process->writeLine("key tap 39 control");
    EXPECT_TRUE(lineWith(*process, "keypress 39").starts_with("keypress 39 4 "));
    EXPECT_EQ(ask(*process, "key hold 39 0.05 shift"), "ok");
    EXPECT_EQ(lineWith(*process, "held"), "held 39");
    EXPECT_EQ(other->modifiers(), 0U);
    for (const char* const nonsense :
         {"dance", "key", "key tap x", "move 1", "lock caps maybe", "button click", "key hold 39 -1"}) {
        EXPECT_TRUE(ask(*process, nonsense).starts_with("error")) << nonsense;
    }
    EXPECT_EQ(ask(*process, "reset"), "ok");
    EXPECT_EQ(ask(*process, "button click 3"), "ok");
    EXPECT_NE(ask(*process, "report")
                  .find(R"("clicks": 1, "presses": 1, "releases": 1, "inPairs": true, "buttons": {"3": 1})"),
              std::string::npos);
    process->writeLine("quit");
    EXPECT_EQ(process->wait(), 0);
}

TEST_F(ObserverTest, LetsGoOfHeldKeysAtItsEnd) {
    const auto process = observe({"--raw"});
    ASSERT_EQ(lineWith(*process, "ready"), "ready");
    EXPECT_EQ(ask(*process, "key hold 39 600 control"), "ok");
    EXPECT_EQ(other->modifiers(), controlBit);
    process->writeLine("quit");
    EXPECT_EQ(process->wait(), 0);
    EXPECT_EQ(other->modifiers(), 0U);
}

TEST_F(ObserverTest, EndsWithItsServer) {
    const auto process = observe({"--raw", "--expect", "5"});
    ASSERT_EQ(lineWith(*process, "ready"), "ready");
    server.crash();
    EXPECT_EQ(process->wait(), 3);
    EXPECT_EQ(runProgram({OBSERVER, "--display", "unix:/no/such/server"}), 3);
}

TEST_F(ObserverTest, ExplainsItself) {
    ChildProcess help({OBSERVER, "--help"});
    EXPECT_NE(lineWith(help, "Usage"), "");
    EXPECT_EQ(help.wait(), 0);
    EXPECT_EQ(runProgram({OBSERVER, "--nonsense"}), 2);
    EXPECT_EQ(runProgram({OBSERVER, "--expect", "3"}), 2);
}

} // namespace velloran::tests
