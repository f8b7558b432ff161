#include "platform/portal/desktopEntry.h"

#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <QStandardPaths>
#include <QStringList>

#include <algorithm>

namespace velloran::platform::portal {

namespace {

/// Entries without it are nobody's to change.
const auto mark = QByteArrayLiteral("X-Velloran-Build=true\n");

/// As the format wants a command's first word: in quotes, and escaped once for them and once for the value.
QString quoted(const QString& program) {
    QString word;
    for (const QChar character : program) {
        if (character == u'"' || character == u'`' || character == u'$' || character == u'\\') {
            word += QStringLiteral("\\\\");
        }
        if (character == u'\\') {
            word += u'\\';
        }
        word += character == u'%' ? QStringLiteral("%%") : QString(character);
    }
    return u'"' + word + u'"';
}

QByteArray entryFor(const QString& applicationName, const QString& program) {
    return QStringLiteral("[Desktop Entry]\nType=Application\nName=Velloran\nExec=%1\nIcon=%2\nNoDisplay=true\n")
               .arg(quoted(program), applicationName)
               .toUtf8() +
           mark;
}

QByteArray contentOf(const QString& name) {
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Whether there is an entry that is not one of ours.
bool isInstalled(const QString& name) {
    const QStringList found = QStandardPaths::locateAll(QStandardPaths::ApplicationsLocation, name);
    return std::any_of(found.begin(), found.end(),
                       [](const QString& entry) { return !contentOf(entry).contains(mark); });
}

} // namespace

bool provideDesktopEntry(const QString& applicationName, const QString& program) {
    const QString name = applicationName + QStringLiteral(".desktop");
    const QByteArray wanted = entryFor(applicationName, program);
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::ApplicationsLocation);
    const QString own = folder + u'/' + name;
    const QByteArray before = contentOf(own);
    if (isInstalled(name)) {
        // Ours would come before it, and no menu would show the program any more.
        if (before.contains(mark)) {
            QFile::remove(own);
        }
        return true;
    }
    if (before == wanted) {
        return true;
    }
    QDir().mkpath(folder);
    QSaveFile file(own);
    return file.open(QIODevice::WriteOnly) && file.write(wanted) == wanted.size() && file.commit();
}

} // namespace velloran::platform::portal
