#include "platform/qt/PreferencesFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QSaveFile>
#include <QString>

#include <unistd.h>

#include <cerrno>
#include <utility>

namespace velloran::platform::qt {

namespace {

/// A process killed while it made the lock has not yet written into it who it was; only its age tells that it is left
/// over.
constexpr int longestHold = 1000; // milliseconds

/// What is larger is no lock: there is a process in it, a program and a machine.
constexpr qint64 largestLock = 4096;

/// What is larger is no preferences file.
constexpr qint64 largestFile = 16LL * 1024 * 1024;

QString fileName(const std::string& path) {
    return QFile::decodeName(QByteArray::fromStdString(path));
}

/// What the file holds, nothing being the same as no file. No result when there is something that cannot be read.
std::optional<std::string> content(const QString& name) {
    const QFileInfo info(name);
    if (!info.exists()) {
        return std::string();
    }
    // Opening a pipe would wait for somebody to write to it.
    if (!info.isFile() || info.size() > largestFile) {
        return std::nullopt;
    }
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        return std::nullopt;
    }
    return bytes.toStdString();
}

/// Whether there is a lock, or nothing yet. The toolkit reads whatever it finds there to its end, which a pipe or a
/// device need not have.
bool isLock(const QString& name) {
    const QFileInfo info(name);
    return !info.isSymLink() && (!info.exists() || (info.isFile() && info.size() <= largestLock));
}

/// Whether the disk has it all. Disks over a network, and some with a quota, say only here that they have not.
bool isKept(const QSaveFile& file) {
    // Where there is no such thing as keeping, nothing better can be had.
    return fdatasync(file.handle()) == 0 || errno == EINVAL || errno == ENOSYS || errno == EOPNOTSUPP;
}

/// What could not be read again is not written.
bool replace(const QString& name, const std::string& content) {
    const auto size = static_cast<qint64>(content.size());
    QSaveFile file(name);
    if (size > largestFile || !file.open(QIODevice::WriteOnly)) {
        return false;
    }
    // The bytes may still be in memory. Committing pays no attention to a disk that has no room for them, and would put
    // an empty file in the place of the old one.
    return file.write(content.data(), size) == size && file.flush() && isKept(file) && file.commit();
}

} // namespace

PreferencesFile::PreferencesFile(std::string path) : path_(std::move(path)) {}

std::optional<IniText> PreferencesFile::read() const {
    const auto found = content(fileName(path_));
    return found ? std::optional<IniText>(*found) : std::nullopt;
}

PreferencesFile::Outcome PreferencesFile::change(const EntryChanges& changes,
                                                 std::chrono::milliseconds longestWaitForLock) const {
    const QString name = fileName(path_);
    QDir().mkpath(QFileInfo(name).path());
    const QString lockName = name + QStringLiteral(".lock");
    QLockFile lock(lockName);
    lock.setStaleLockTime(longestHold);
    // Without the lock the change is made all the same: replacing the file harms nobody, and whoever holds the lock for
    // so long is not writing.
    [[maybe_unused]] const bool isAlone =
        isLock(lockName) && lock.tryLock(static_cast<int>(longestWaitForLock.count()));

    const auto before = content(name);
    if (!before) {
        return {};
    }
    const IniText found(*before);
    IniText changed = found;
    for (const auto& [key, value] : changes) {
        if (value) {
            changed.setValue(key, *value);
        } else {
            changed.remove(key);
        }
    }
    const std::string after = changed.text();
    if (after == *before || replace(name, after)) {
        return {std::move(changed), true};
    }
    return {found, false};
}

} // namespace velloran::platform::qt
