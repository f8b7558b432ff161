#include "applicationLooks.h"

#include <QApplication>
#include <QFont>
#include <QFontDatabase>
#include <QPixmap>
#include <QString>

#include "ui/theme/PngReader.h"

namespace velloran {

void chooseTypeface() {
    QFont font = QApplication::font();
    const QString preferred = QStringLiteral("Inter");
    if (font.family().startsWith(QLatin1String("Sans"), Qt::CaseInsensitive) && QFontDatabase::hasFamily(preferred)) {
        font.setFamily(preferred);
        QApplication::setFont(font);
    }
}

QIcon windowIcon() {
    QIcon icon;
    for (const int size : {16, 24, 32, 48, 64, 128}) {
        icon.addPixmap(QPixmap::fromImage(PngReader(QStringLiteral(":/window-icon/%1.png").arg(size)).read()));
    }
    return icon;
}

} // namespace velloran
