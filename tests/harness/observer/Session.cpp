#include "harness/observer/Session.h"

#include "harness/observer/ClickReport.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <fstream>
#include <iostream>

namespace velloran::observer {

namespace {

constexpr double nanosecondsPerSecond = 1e9;
constexpr std::uint64_t nanosecondsPerMillisecond = 1'000'000;

void say(const std::string& line) {
    std::cout << line << std::endl;
}

std::uint64_t after(double seconds) {
    return monotonicNanoseconds() + static_cast<std::uint64_t>(seconds * nanosecondsPerSecond);
}

} // namespace

Session::Session(const Server& server, const Options& options)
    : server_(server),
      options_(options),
      watcher_(server),
      commands_(server, watcher_, {[this] { return report(); }, [this] { forget(); }}) {}

ExitStatus Session::run() {
    if (!open()) {
        return ExitStatus::noServer;
    }
    say("ready");
    deadline_ = after(options_.timeout);
    while (!isOver()) {
        if (!wait()) {
            commands_.releaseEverything();
            std::cerr << "velloran-observer: the X server is gone\n";
            return ExitStatus::noServer;
        }
    }
    commands_.releaseEverything();
    return conclude();
}

bool Session::open() {
    if (options_.listensToServer && !watcher_.listenToServer()) {
        std::cerr << "velloran-observer: this X server does not let anybody listen to its buttons\n";
        return false;
    }
    if (options_.window) {
        const auto area = watcher_.openWindow(*options_.window, options_.title, options_.isWindowManaged);
        if (!area) {
            std::cerr << "velloran-observer: the window does not show\n";
            return false;
        }
        say("window " + std::to_string(watcher_.window()) + ' ' + std::to_string(area->x) + ' ' +
            std::to_string(area->y) + ' ' + std::to_string(area->width) + ' ' + std::to_string(area->height));
    }
    return true;
}

bool Session::wait() {
    // Whatever waited for the server may have read events along with its answer: those do not wake up poll any more.
    takeEvents();
    if (isOver()) {
        return true;
    }
    std::optional<std::uint64_t> wakeUp = commands_.nextDue();
    if (options_.expectedClicks) {
        const std::uint64_t end = settledAt_.value_or(deadline_);
        wakeUp = std::min(wakeUp.value_or(end), end);
    }
    int milliseconds = -1;
    if (wakeUp) {
        const std::uint64_t now = monotonicNanoseconds();
        milliseconds = *wakeUp <= now ? 0 : static_cast<int>((*wakeUp - now) / nanosecondsPerMillisecond) + 1;
    }
    std::array<pollfd, 2> descriptors{{{server_.fileDescriptor(), POLLIN, 0}, {STDIN_FILENO, POLLIN, 0}}};
    const int count = poll(descriptors.data(), isInputOpen_ ? 2 : 1, milliseconds);
    if (count < 0 && errno != EINTR) {
        return false;
    }
    // Clicks first: they carry the time of their arrival.
    takeEvents();
    if (count > 0 && isInputOpen_ && descriptors[1].revents != 0) {
        takeInput();
    }
    for (const std::string& line : commands_.releaseDue(monotonicNanoseconds())) {
        say(line);
    }
    return !server_.isBroken();
}

void Session::takeInput() {
    std::array<char, 4096> bytes{};
    const ssize_t count = read(STDIN_FILENO, bytes.data(), bytes.size());
    if (count <= 0) {
        isInputOpen_ = false;
        return;
    }
    unfinishedLine_.append(bytes.data(), static_cast<std::size_t>(count));
    for (std::size_t end = 0; (end = unfinishedLine_.find('\n')) != std::string::npos;) {
        const std::string line = unfinishedLine_.substr(0, end);
        unfinishedLine_.erase(0, end + 1);
        const std::string answer = commands_.run(line);
        // What the command has brought about is told before its answer.
        takeEvents();
        if (!answer.empty()) {
            say(answer);
        }
    }
}

void Session::takeEvents() {
    for (const InputEvent& event : watcher_.read()) {
        if (!options_.isQuiet) {
            print(event);
        }
        const bool isButton =
            event.kind == InputEvent::Kind::buttonPress || event.kind == InputEvent::Kind::buttonRelease;
        if (isButton && event.isRaw == options_.listensToServer) {
            events_.push_back(event);
            ++(event.kind == InputEvent::Kind::buttonPress ? pressCount_ : releaseCount_);
            settledAt_.reset();
        }
    }
    if (options_.expectedClicks && !settledAt_ && haveAllArrived()) {
        settledAt_ = after(options_.settle);
    }
}

void Session::print(const InputEvent& event) const {
    using Kind = InputEvent::Kind;
    const bool isButton = event.kind == Kind::buttonPress || event.kind == Kind::buttonRelease;
    const bool isPress = event.kind == Kind::buttonPress || event.kind == Kind::keyPress;
    std::string line = event.isRaw ? "raw" : isButton ? "" : "key";
    line += isPress ? "press " : "release ";
    line += std::to_string(event.code) + ' ';
    line +=
        isButton ? std::to_string(event.place.x) + ' ' + std::to_string(event.place.y) : std::to_string(event.state);
    line += ' ' + std::to_string(event.serverTime) + ' ' + std::to_string(event.arrival);
    say(line);
}

std::string Session::report() const {
    return toJson(summarize(events_, options_.nominalInterval));
}

bool Session::isOver() {
    if (commands_.wantsToQuit()) {
        return true;
    }
    if (!options_.expectedClicks) {
        return !isInputOpen_ && !commands_.nextDue();
    }
    const std::uint64_t now = monotonicNanoseconds();
    return now >= deadline_ || (settledAt_ && now >= *settledAt_);
}

bool Session::haveAllArrived() const {
    return pressCount_ >= *options_.expectedClicks && releaseCount_ >= *options_.expectedClicks;
}

void Session::forget() {
    events_.clear();
    pressCount_ = 0;
    releaseCount_ = 0;
    settledAt_.reset();
}

ExitStatus Session::conclude() const {
    if (!options_.expectedClicks && options_.reportFile.empty()) {
        return ExitStatus::good;
    }
    const std::string text = report();
    say("report " + text);
    bool isGood = true;
    if (!options_.reportFile.empty()) {
        std::ofstream file(options_.reportFile);
        file << text << '\n';
        isGood = static_cast<bool>(file.flush());
        if (!isGood) {
            std::cerr << "velloran-observer: cannot write " << options_.reportFile << '\n';
        }
    }
    if (options_.expectedClicks) {
        const ClickReport seen = summarize(events_, options_.nominalInterval);
        isGood = isGood && seen.areInPairs && seen.presses == *options_.expectedClicks &&
                 seen.releases == *options_.expectedClicks;
        if (options_.expectedButton && *options_.expectedClicks > 0) {
            const auto own = seen.pressesOfButton.find(*options_.expectedButton);
            isGood = isGood && own != seen.pressesOfButton.end() && own->second == *options_.expectedClicks;
        }
    }
    return isGood ? ExitStatus::good : ExitStatus::notAllArrived;
}

} // namespace velloran::observer
