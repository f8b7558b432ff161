#include "platform/qt/QtUrlOpener.h"

#include <QDesktopServices>
#include <QUrl>

namespace velloran::platform::qt {

void QtUrlOpener::open(const std::string& url) {
    QDesktopServices::openUrl(QUrl(QString::fromStdString(url), QUrl::StrictMode));
}

} // namespace velloran::platform::qt
