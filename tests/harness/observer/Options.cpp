#include "harness/observer/Options.h"

#include "harness/observer/parseNumber.h"

#include <array>
#include <functional>
#include <map>

namespace velloran::observer {

namespace {

std::optional<Area> parseArea(const std::string& text) {
    std::array<int, 4> numbers{};
    std::size_t begin = 0;
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        const bool isLast = i + 1 == numbers.size();
        const std::size_t end = isLast ? text.size() : text.find(',', begin);
        const auto number = end == std::string::npos ? std::nullopt : parseNumber<int>(text.substr(begin, end - begin));
        if (!number) {
            return std::nullopt;
        }
        numbers[i] = *number;
        begin = end + 1;
    }
    if (numbers[2] <= 0 || numbers[3] <= 0) {
        return std::nullopt;
    }
    return Area{numbers[0], numbers[1], numbers[2], numbers[3]};
}

bool setSeconds(double& target, const std::string& text) {
    const auto seconds = parseNumber<double>(text);
    if (!seconds || *seconds < 0.0) {
        return false;
    }
    target = *seconds;
    return true;
}

using Flag = std::function<void(Options&)>;
using Setter = std::function<bool(Options&, const std::string&)>;

const std::map<std::string, Flag> flags{
    {"--help", [](Options& options) { options.wantsHelp = true; }},
    {"-h", [](Options& options) { options.wantsHelp = true; }},
    {"--raw", [](Options& options) { options.listensToServer = true; }},
    {"--quiet", [](Options& options) { options.isQuiet = true; }},
    {"--realtime", [](Options& options) { options.wantsRealTime = true; }},
    {"--unmanaged", [](Options& options) { options.isWindowManaged = false; }},
};

const std::map<std::string, Setter> settings{
    {"--display",
     [](Options& options, const std::string& text) {
         options.display = text;
         return !text.empty();
     }},
    {"--title",
     [](Options& options, const std::string& text) {
         options.title = text;
         return true;
     }},
    {"--report",
     [](Options& options, const std::string& text) {
         options.reportFile = text;
         return !text.empty();
     }},
    {"--window",
     [](Options& options, const std::string& text) {
         options.window = parseArea(text);
         return options.window.has_value();
     }},
    {"--expect",
     [](Options& options, const std::string& text) {
         options.expectedClicks = parseNumber<std::size_t>(text);
         return options.expectedClicks.has_value();
     }},
    {"--button",
     [](Options& options, const std::string& text) {
         options.expectedButton = parseNumber<unsigned>(text);
         return options.expectedButton.has_value();
     }},
    {"--interval", [](Options& options, const std::string& text) { return setSeconds(options.nominalInterval, text); }},
    {"--timeout", [](Options& options, const std::string& text) { return setSeconds(options.timeout, text); }},
    {"--settle", [](Options& options, const std::string& text) { return setSeconds(options.settle, text); }},
};

} // namespace

Options readOptions(const std::vector<std::string>& arguments) {
    Options options;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& name = arguments[i];
        if (const auto flag = flags.find(name); flag != flags.end()) {
            flag->second(options);
            continue;
        }
        const auto setting = settings.find(name);
        if (setting == settings.end()) {
            options.error = "unknown option " + name;
            return options;
        }
        if (++i == arguments.size() || !setting->second(options, arguments[i])) {
            options.error = name + " needs a proper value";
            return options;
        }
    }
    if (options.expectedClicks && !options.window && !options.listensToServer) {
        options.error = "--expect needs --window or --raw to see anything";
    }
    return options;
}

const char* const helpText =
    R"(velloran-observer: another program on the same X server. It sees clicks and plays the user.

Usage: velloran-observer [options]

  --display NAME      the X server; otherwise $DISPLAY
  --window X,Y,W,H    open a window there and watch what it gets
  --unmanaged         the window manager leaves that window alone
  --title TEXT        the window's title
  --raw               watch the buttons on the whole server (physical button numbers; also sees a second
                      press of a button that is down already, which no window is told)
  --quiet             no line for each event
  --realtime          ask for real-time priority; goes on without it when the system refuses
  --expect N          end when N clicks have come, or at the timeout, with a report; without it the program
                      ends with its input or the command quit
  --button N          only clicks of this button count for --expect; any other makes it fail
  --interval S        the interval that clicks should have, in seconds
  --timeout S         how long to wait for N clicks (60)
  --settle S          how long to watch for surplus clicks after the last one (0.5)
  --report FILE       write the report to FILE as well
  --help              this text

Exit status: 0 when all N clicks came, each as press and release, and no other; 1 when not; 2 for wrong
arguments; 3 without an X server, or when it goes away.

Lines on standard output, in order of what happened (times: server ms, CLOCK_MONOTONIC ns on arrival):

  realtime yes|no             with --realtime
  window ID X Y W H           the window shows, and where
  ready                       commands are taken from here on
  press|release B X Y T NS            button, as the window sees it
  rawpress|rawrelease B X Y T NS      button, as the whole server sees it
  keypress|keyrelease C STATE T NS    key code; of the window, or of a grabbed combination
  report {...}                JSON: clicks, presses, releases, inPairs, buttons, places, meanIntervalMs,
                              shortestIntervalMs, longestIntervalMs, jitterP50Ms, jitterP99Ms, jitterMaxMs,
                              driftMs, meanServerIntervalMs

Commands on standard input, one a line. Each is answered by a line "ok ..." once the server has done it, or
"error ...". Keys are X key codes (evdev + 8, so 67 is F1); M is shift, control, alt, super, caps, num or
mod1 ... mod5.

  key press C | key release C     one half
  key tap C [M ...]               with modifiers held
  key hold C SECONDS [M ...]      the same, held that long; answered at once, then "held C" when it is over
  button press B | button release B | button click B
  move X Y                        the pointer
  lock M on|off                   caps, num or another modifier
  group N                         the keyboard layout's group, 0 first
  repeat DELAY INTERVAL           of held keys, in ms
  mapping R R R ...               what each physical button plays: 3 2 1 for the left hand
  grab C [M ...] | ungrab C [M ...]   a key combination of this program's own
  focus                           the keyboard focus to the window
  position | buttons              "ok X Y"; "ok MASK" of buttons that are down
  report | reset                  the report so far; forget what was seen so far
  quit
)";

} // namespace velloran::observer
