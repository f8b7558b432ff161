#include "platform/portal/backEnds.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

namespace velloran::platform::portal {

namespace {

QStringList folders() {
    const QString named = qEnvironmentVariable("XDG_DESKTOP_PORTAL_DIR");
    return named.isEmpty() ? QStandardPaths::locateAll(QStandardPaths::GenericDataLocation,
                                                       QStringLiteral("xdg-desktop-portal/portals"),
                                                       QStandardPaths::LocateDirectory)
                           : QStringList{named};
}

/// The value of the last line that begins with `key` and an equals sign; the files have one group only.
QString valueOf(const QStringList& lines, const QString& key) {
    QString value;
    for (const QString& line : lines) {
        if (line.section(u'=', 0, 0).trimmed() == key) {
            value = line.section(u'=', 1).trimmed();
        }
    }
    return value;
}

} // namespace

QStringList backEndsWith(const QString& interface) {
    constexpr qint64 longestFile = 64LL * 1024;
    QStringList names;
    for (const QString& folder : folders()) {
        for (const QFileInfo& info : QDir(folder).entryInfoList({QStringLiteral("*.portal")}, QDir::Files)) {
            QFile file(info.filePath());
            if (!file.open(QIODevice::ReadOnly)) {
                continue;
            }
            const QStringList lines = QString::fromUtf8(file.read(longestFile)).split(u'\n');
            if (valueOf(lines, QStringLiteral("Interfaces")).split(u';').contains(interface)) {
                names.append(valueOf(lines, QStringLiteral("DBusName")));
            }
        }
    }
    names.removeAll(QString());
    names.removeDuplicates();
    return names;
}

} // namespace velloran::platform::portal
