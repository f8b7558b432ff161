#pragma once

#include "harness/observer/InputSender.h"
#include "harness/observer/InputWatcher.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace velloran::observer {

/// Carries out the lines that the program is given.
class Commands {
public:
    /// What the commands that are about the record need.
    struct Record {
        std::function<std::string()> report;
        std::function<void()> reset;
    };

    Commands(const Server& server, InputWatcher& watcher, Record record);

    /// Does what the line says and returns the answer. An empty line gives an empty answer.
    std::string run(const std::string& line);

    [[nodiscard]] bool wantsToQuit() const { return wantsToQuit_; }

    /// When the next held key is due to be released, on CLOCK_MONOTONIC in nanoseconds.
    [[nodiscard]] std::optional<std::uint64_t> nextDue() const;

    /// Releases the keys that are due, and returns a line for each.
    std::vector<std::string> releaseDue(std::uint64_t now);

    /// Lets go of everything that is still held.
    void releaseEverything();

private:
    using Words = std::vector<std::string>;
    /// Nothing when the words make no sense.
    using Action = std::optional<std::string> (Commands::*)(const Words&);

    struct HeldKey {
        std::uint8_t key = 0;
        std::vector<std::uint8_t> modifiers;
    };

    std::optional<std::string> key(const Words& words);
    std::optional<std::string> button(const Words& words);
    std::optional<std::string> move(const Words& words);
    std::optional<std::string> lock(const Words& words);
    std::optional<std::string> group(const Words& words);
    std::optional<std::string> repeat(const Words& words);
    std::optional<std::string> mapping(const Words& words);
    std::optional<std::string> grab(const Words& words);
    std::optional<std::string> ungrab(const Words& words);
    std::optional<std::string> focus(const Words& words);
    std::optional<std::string> position(const Words& words);
    std::optional<std::string> buttons(const Words& words);
    std::optional<std::string> report(const Words& words);
    std::optional<std::string> reset(const Words& words);
    std::optional<std::string> quit(const Words& words);

    static const std::map<std::string, Action> actions;

    const Server& server_;
    InputWatcher& watcher_;
    InputSender sender_;
    Record record_;
    std::multimap<std::uint64_t, HeldKey> heldKeys_;
    bool wantsToQuit_ = false;
};

} // namespace velloran::observer
