#include "harness/observer/Commands.h"

#include "harness/observer/parseNumber.h"

#include <algorithm>
#include <sstream>
#include <utility>

namespace velloran::observer {

namespace {

constexpr double nanosecondsPerSecond = 1e9;
/// Longer than anybody holds a key, and far from what would not fit.
constexpr double longestHold = 3600.0;

struct Modifier {
    unsigned mask;
    /// A key that holds it down on a customary keyboard; 0 for none.
    std::uint8_t key;
};

const std::map<std::string, Modifier> modifiersByName{
    {"shift", {0x01, 50}},  {"caps", {0x02, 66}},  {"control", {0x04, 37}}, {"alt", {0x08, 64}},
    {"super", {0x40, 133}}, {"num", {0x10, 77}},   {"mod1", {0x08, 64}},    {"mod2", {0x10, 77}},
    {"mod3", {0x20, 0}},    {"mod4", {0x40, 133}}, {"mod5", {0x80, 92}},
};

struct Modifiers {
    unsigned mask = 0;
    std::vector<std::uint8_t> keys;
};

std::optional<Modifiers> parseModifiers(const std::vector<std::string>& words, std::size_t first) {
    Modifiers modifiers;
    for (std::size_t i = first; i < words.size(); ++i) {
        const auto found = modifiersByName.find(words[i]);
        if (found == modifiersByName.end()) {
            return std::nullopt;
        }
        modifiers.mask |= found->second.mask;
        if (found->second.key != 0) {
            modifiers.keys.push_back(found->second.key);
        }
    }
    return modifiers;
}

} // namespace

const std::map<std::string, Commands::Action> Commands::actions{
    {"key", &Commands::key},         {"button", &Commands::button},     {"move", &Commands::move},
    {"lock", &Commands::lock},       {"group", &Commands::group},       {"repeat", &Commands::repeat},
    {"mapping", &Commands::mapping}, {"grab", &Commands::grab},         {"ungrab", &Commands::ungrab},
    {"focus", &Commands::focus},     {"position", &Commands::position}, {"buttons", &Commands::buttons},
    {"report", &Commands::report},   {"reset", &Commands::reset},       {"quit", &Commands::quit},
};

Commands::Commands(const Server& server, InputWatcher& watcher, Record record)
    : server_(server), watcher_(watcher), sender_(server), record_(std::move(record)) {}

std::string Commands::run(const std::string& line) {
    std::istringstream stream(line);
    Words words;
    for (std::string word; stream >> word;) {
        words.push_back(word);
    }
    if (words.empty()) {
        return {};
    }
    const auto action = actions.find(words.front());
    const auto answer = action == actions.end() ? std::nullopt : (this->*action->second)(words);
    return answer.value_or("error: no such command: " + line);
}

std::optional<std::uint64_t> Commands::nextDue() const {
    return heldKeys_.empty() ? std::nullopt : std::optional(heldKeys_.begin()->first);
}

std::vector<std::string> Commands::releaseDue(std::uint64_t now) {
    std::vector<std::string> lines;
    while (!heldKeys_.empty() && heldKeys_.begin()->first <= now) {
        const HeldKey held = heldKeys_.extract(heldKeys_.begin()).mapped();
        sender_.key(held.key, false);
        sender_.releaseAll(held.modifiers);
        lines.push_back("held " + std::to_string(held.key));
    }
    return lines;
}

void Commands::releaseEverything() {
    releaseDue(UINT64_MAX);
}

std::optional<std::string> Commands::key(const Words& words) {
    const auto code = words.size() > 2 ? parseNumber<std::uint8_t>(words[2]) : std::nullopt;
    if (!code) {
        return std::nullopt;
    }
    if ((words[1] == "press" || words[1] == "release") && words.size() == 3) {
        sender_.key(*code, words[1] == "press");
        return "ok";
    }
    if (words[1] == "tap") {
        if (const auto modifiers = parseModifiers(words, 3)) {
            sender_.tap(*code, modifiers->keys);
            return "ok";
        }
    }
    if (words[1] == "hold" && words.size() > 3) {
        const auto seconds = parseNumber<double>(words[3]);
        const auto modifiers = parseModifiers(words, 4);
        if (seconds && modifiers && *seconds >= 0.0 && *seconds <= longestHold) {
            sender_.pressAll(modifiers->keys);
            sender_.key(*code, true);
            const auto duration = static_cast<std::uint64_t>(*seconds * nanosecondsPerSecond);
            heldKeys_.emplace(monotonicNanoseconds() + duration, HeldKey{*code, modifiers->keys});
            return "ok";
        }
    }
    return std::nullopt;
}

std::optional<std::string> Commands::button(const Words& words) {
    const auto number = words.size() == 3 ? parseNumber<std::uint8_t>(words[2]) : std::nullopt;
    const bool isClick = words.size() == 3 && words[1] == "click";
    if (!number || (!isClick && words[1] != "press" && words[1] != "release")) {
        return std::nullopt;
    }
    if (isClick || words[1] == "press") {
        sender_.button(*number, true);
    }
    if (isClick || words[1] == "release") {
        sender_.button(*number, false);
    }
    return "ok";
}

std::optional<std::string> Commands::move(const Words& words) {
    const auto x = words.size() == 3 ? parseNumber<std::int16_t>(words[1]) : std::nullopt;
    const auto y = words.size() == 3 ? parseNumber<std::int16_t>(words[2]) : std::nullopt;
    if (!x || !y) {
        return std::nullopt;
    }
    sender_.movePointer({*x, *y});
    return "ok";
}

std::optional<std::string> Commands::lock(const Words& words) {
    if (words.size() != 3 || (words[2] != "on" && words[2] != "off")) {
        return std::nullopt;
    }
    const auto found = modifiersByName.find(words[1]);
    if (found == modifiersByName.end()) {
        return std::nullopt;
    }
    sender_.lockModifiers(found->second.mask, words[2] == "on");
    return "ok";
}

std::optional<std::string> Commands::group(const Words& words) {
    const auto number = words.size() == 2 ? parseNumber<std::uint8_t>(words[1]) : std::nullopt;
    if (!number) {
        return std::nullopt;
    }
    sender_.lockGroup(*number);
    return "ok";
}

std::optional<std::string> Commands::repeat(const Words& words) {
    const auto delay = words.size() == 3 ? parseNumber<std::uint16_t>(words[1]) : std::nullopt;
    const auto interval = words.size() == 3 ? parseNumber<std::uint16_t>(words[2]) : std::nullopt;
    if (!delay || !interval) {
        return std::nullopt;
    }
    sender_.setRepeat(*delay, *interval);
    return "ok";
}

std::optional<std::string> Commands::mapping(const Words& words) {
    std::vector<std::uint8_t> roles;
    for (std::size_t i = 1; i < words.size(); ++i) {
        const auto role = parseNumber<std::uint8_t>(words[i]);
        if (!role) {
            return std::nullopt;
        }
        roles.push_back(*role);
    }
    return sender_.setButtonMapping(roles) ? "ok" : "error: the server refuses the mapping";
}

std::optional<std::string> Commands::grab(const Words& words) {
    const auto code = words.size() > 1 ? parseNumber<std::uint8_t>(words[1]) : std::nullopt;
    const auto modifiers = parseModifiers(words, 2);
    if (!code || !modifiers) {
        return std::nullopt;
    }
    return sender_.grabKey(*code, modifiers->mask) ? "ok" : "error: another program has the combination";
}

std::optional<std::string> Commands::ungrab(const Words& words) {
    const auto code = words.size() > 1 ? parseNumber<std::uint8_t>(words[1]) : std::nullopt;
    const auto modifiers = parseModifiers(words, 2);
    if (!code || !modifiers) {
        return std::nullopt;
    }
    sender_.ungrabKey(*code, modifiers->mask);
    return "ok";
}

std::optional<std::string> Commands::focus(const Words& /*words*/) {
    return watcher_.window() != XCB_NONE && watcher_.takeFocus() ? "ok" : "error: no window takes the focus";
}

std::optional<std::string> Commands::position(const Words& /*words*/) {
    const Place place = server_.pointer();
    return "ok " + std::to_string(place.x) + ' ' + std::to_string(place.y);
}

std::optional<std::string> Commands::buttons(const Words& /*words*/) {
    return "ok " + std::to_string(server_.buttonsDown());
}

std::optional<std::string> Commands::report(const Words& /*words*/) {
    return "report " + record_.report();
}

std::optional<std::string> Commands::reset(const Words& /*words*/) {
    record_.reset();
    return "ok";
}

std::optional<std::string> Commands::quit(const Words& /*words*/) {
    wantsToQuit_ = true;
    return "ok";
}

} // namespace velloran::observer
