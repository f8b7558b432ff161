#pragma once

#include "harness/observer/Commands.h"
#include "harness/observer/InputWatcher.h"
#include "harness/observer/Options.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace velloran::observer {

/// How the program ends.
enum class ExitStatus : int {
    good = 0,
    notAllArrived = 1,
    wrongArguments = 2,
    noServer = 3,
};

/// One run of the program: watches, takes commands, reports.
class Session {
public:
    Session(const Server& server, const Options& options);

    ExitStatus run();

private:
    bool open();
    bool wait();
    void takeInput();
    void takeEvents();
    void print(const InputEvent& event) const;
    [[nodiscard]] std::string report() const;
    [[nodiscard]] bool isOver();
    [[nodiscard]] bool haveAllArrived() const;
    void forget();
    [[nodiscard]] ExitStatus conclude() const;

    const Server& server_;
    const Options& options_;
    InputWatcher watcher_;
    Commands commands_;
    std::vector<InputEvent> events_;
    std::size_t pressCount_ = 0;
    std::size_t releaseCount_ = 0;
    std::string unfinishedLine_;
    bool isInputOpen_ = true;
    std::uint64_t deadline_ = 0;
    std::optional<std::uint64_t> settledAt_;
};

} // namespace velloran::observer
