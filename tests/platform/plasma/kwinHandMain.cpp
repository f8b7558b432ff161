// The user's keyboard and mouse on the KWin of this session, for a test in another language: does what the lines on its
// standard input say, and answers each when it is done.

#include <QCoreApplication>
#include <QDBusConnection>

#include "platform/plasma/KWinHand.h"

#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <sstream>
#include <string>

namespace {

using velloran::tests::KWinHand;

/// "press CODE", "release CODE", "down BUTTON", "up BUTTON", by evdev's codes, or "move RIGHT DOWN".
bool obey(KWinHand& hand, const std::string& line) {
    std::istringstream words(line);
    std::string what;
    words >> what;
    if (what == "move") {
        double right = 0;
        double down = 0;
        words >> right >> down;
        hand.move(right, down);
        return !words.fail();
    }
    std::uint32_t code = 0;
    words >> code;
    if (what == "press" || what == "release") {
        hand.key(code, what == "press");
    } else if (what == "down" || what == "up") {
        hand.button(code, what == "down");
    } else {
        return false;
    }
    return !words.fail();
}

} // namespace

int main(int count, char* arguments[]) {
    const QCoreApplication application(count, arguments);
    KWinHand hand(QDBusConnection::sessionBus());
    if (!hand.isReady()) {
        std::cerr << "KWin has no keyboard or no mouse\n";
        return EXIT_FAILURE;
    }
    std::cout << "ready" << std::endl;
    for (std::string line; std::getline(std::cin, line);) {
        if (!obey(hand, line)) {
            std::cerr << "what is " << line << "?\n";
            return EXIT_FAILURE;
        }
        std::cout << "done" << std::endl;
    }
    return EXIT_SUCCESS;
}
