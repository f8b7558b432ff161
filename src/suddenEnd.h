#pragma once

#include "platform/qt/QtPreferences.h"

#include <QString>
#include <QtGlobal>

namespace velloran {

/// Has the changes stored also when the program has to end at once, for as long as it exists. One at a time.
class OpenPreferences {
public:
    explicit OpenPreferences(platform::qt::QtPreferences& preferences);
    OpenPreferences(const OpenPreferences&) = delete;
    OpenPreferences& operator=(const OpenPreferences&) = delete;
    ~OpenPreferences();
};

/// The program cannot outlive the window system. But for changes on their way to the disk nothing is left to be tidied
/// that the system does not tidy by itself, and the toolkit's own way out would run destructors that wait for a server
/// that is gone.
[[noreturn]] void endWithoutServer();

/// There is nothing to open a window on.
[[noreturn]] void endWithoutDisplay();

/// Takes the toolkit's messages to the terminal. The toolkit notices a lost server by itself, says so in words of its
/// own and leaves. One that is not there at the start is to it an installation that is broken, and a reason to crash.
void handleToolkitMessage(QtMsgType type, const QMessageLogContext& context, const QString& message);

} // namespace velloran
