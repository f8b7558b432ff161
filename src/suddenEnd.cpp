#include "suddenEnd.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace velloran {

namespace {

/// The preferences of the run, while there is one.
platform::qt::QtPreferences* openPreferences = nullptr;

} // namespace

OpenPreferences::OpenPreferences(platform::qt::QtPreferences& preferences) {
    openPreferences = &preferences;
}

OpenPreferences::~OpenPreferences() {
    openPreferences = nullptr;
}

void endWithoutServer() {
    if (openPreferences != nullptr) {
        openPreferences->finish(platform::qt::QtPreferences::longestWaitAtEnd);
    }
    constexpr char line[] = "Velloran: the connection to the display was lost.\n";
    [[maybe_unused]] const auto written = write(STDERR_FILENO, line, sizeof line - 1);
    _exit(EXIT_FAILURE);
}

void endWithoutDisplay() {
    std::fputs("Velloran: there is no display to open a window on.\n", stderr);
    // Whatever the toolkit has made so far cannot be destroyed from here.
    std::fflush(stderr);
    _exit(EXIT_FAILURE);
}

void handleToolkitMessage(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    if (message.contains(QLatin1String("connection broke"))) {
        endWithoutServer();
    }
    if (type == QtFatalMsg && message.contains(QLatin1String("no Qt platform plugin could be initialized"))) {
        endWithoutDisplay();
    }
    std::fprintf(stderr, "%s\n", qUtf8Printable(qFormatLogMessage(type, context, message)));
    if (type == QtFatalMsg) {
        std::abort();
    }
}

} // namespace velloran
