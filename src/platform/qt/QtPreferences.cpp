#include "platform/qt/QtPreferences.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QSaveFile>
#include <QString>

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>

namespace velloran::platform::qt {

namespace {

/// A lock is held for as long as it takes to replace a small file. Who holds it longer has been stopped.
constexpr int longestWaitForLock = 500; // milliseconds

/// A process killed while it made the lock has not yet written into it who it was; only its age tells that it is left
/// over.
constexpr int longestHold = 1000; // milliseconds

/// What is larger is no preferences file.
constexpr qint64 largestFile = 16LL * 1024 * 1024;

QString fileName(const std::string& path) {
    return QFile::decodeName(QByteArray::fromStdString(path));
}

/// What the file holds, nothing being the same as no file. No result when there is something that cannot be read.
std::optional<std::string> read(const QString& name) {
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
    const QByteArray content = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        return std::nullopt;
    }
    return content.toStdString();
}

bool replace(const QString& name, const std::string& content) {
    QSaveFile file(name);
    if (!file.open(QIODevice::WriteOnly)) {
        return false;
    }
    const auto size = static_cast<qint64>(content.size());
    // The bytes may still be in memory. Committing pays no attention to a disk that has no room for them, and would put
    // an empty file in the place of the old one.
    return file.write(content.data(), size) == size && file.flush() && file.commit();
}

/// The value of an environment variable, if it is an absolute path.
std::optional<std::string> absolutePath(const char* variable) {
    const char* const value = std::getenv(variable);
    if (value == nullptr || *value != '/') {
        return std::nullopt;
    }
    return value;
}

std::string homeFolder() {
    if (const auto home = absolutePath("HOME")) {
        return *home;
    }
    const passwd* const user = getpwuid(getuid());
    if (user != nullptr && user->pw_dir != nullptr && *user->pw_dir == '/') {
        return user->pw_dir;
    }
    return "/";
}

} // namespace

QtPreferences::QtPreferences(const std::string& path)
    : path_(path), stored_(read(fileName(path)).value_or(std::string())) {}

QtPreferences::~QtPreferences() {
    if (!unsaved_.empty()) {
        save();
    }
}

std::string QtPreferences::defaultPath() {
    return absolutePath("XDG_CONFIG_HOME").value_or(homeFolder() + "/.config") + "/velloran/velloran.ini";
}

std::optional<Bytes> QtPreferences::bytes(const std::string& key) const {
    return get<Bytes>(key);
}

std::optional<Date> QtPreferences::date(const std::string& key) const {
    return get<Date>(key);
}

std::optional<std::int64_t> QtPreferences::integer(const std::string& key) const {
    return get<std::int64_t>(key);
}

std::optional<bool> QtPreferences::truth(const std::string& key) const {
    return get<bool>(key);
}

void QtPreferences::setBytes(const std::string& key, const Bytes& value) {
    set(key, value);
}

void QtPreferences::setDate(const std::string& key, Date value) {
    set(key, value);
}

void QtPreferences::setInteger(const std::string& key, std::int64_t value) {
    set(key, value);
}

void QtPreferences::setTruth(const std::string& key, bool value) {
    set(key, value);
}

bool QtPreferences::holds(const std::string& key) const {
    return text(key).has_value();
}

void QtPreferences::remove(const std::string& key) {
    unsaved_[key] = std::nullopt;
    save();
}

template<typename T>
std::optional<T> QtPreferences::get(const std::string& key) const {
    const auto written = text(key);
    if (!written) {
        return std::nullopt;
    }
    const auto value = readStoredValue(*written);
    if (!value || !std::holds_alternative<T>(*value)) {
        return std::nullopt;
    }
    return std::get<T>(*value);
}

void QtPreferences::set(const std::string& key, const StoredValue& value) {
    unsaved_[key] = writeStoredValue(value);
    save();
}

std::optional<std::string_view> QtPreferences::text(const std::string& key) const {
    if (const auto changed = unsaved_.find(key); changed != unsaved_.end()) {
        return changed->second;
    }
    return stored_.value(key);
}

void QtPreferences::save() {
    const QString name = fileName(path_);
    QDir().mkpath(QFileInfo(name).path());
    QLockFile lock(name + QStringLiteral(".lock"));
    lock.setStaleLockTime(longestHold);
    // Without the lock the change is made all the same: replacing the file harms nobody, and whoever holds the lock for
    // so long is not writing.
    [[maybe_unused]] const bool isAlone = lock.tryLock(longestWaitForLock);

    const auto before = read(name);
    if (!before) {
        return;
    }
    stored_ = IniText(*before);
    IniText changed = stored_;
    for (const auto& [key, value] : unsaved_) {
        if (value) {
            changed.setValue(key, *value);
        } else {
            changed.remove(key);
        }
    }
    const std::string after = changed.text();
    if (after == *before || replace(name, after)) {
        stored_ = std::move(changed);
        unsaved_.clear();
    }
}

} // namespace velloran::platform::qt
