#include "platform/qt/QtPreferences.h"

#include "base/StoredValue.h"
#include "platform/qt/PreferencesFile.h"

#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <mutex>
#include <utility>

namespace velloran::platform::qt {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

/// A lock is held for as long as it takes to replace a small file. Who holds it longer has been stopped.
constexpr milliseconds longestWaitForLock{500};

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

struct QtPreferences::State {
    explicit State(const std::string& path) : file(path), stored(file.read().value_or(IniText(""))) {}

    /// The text of the entry as it will be when everything is written. With the lock.
    [[nodiscard]] std::optional<std::string_view> text(const std::string& key) const {
        for (const EntryChanges* const changes : {&unsaved, &underWay}) {
            if (const auto changed = changes->find(key); changed != changes->end()) {
                return changed->second;
            }
        }
        return stored.value(key);
    }

    /// For the thread that writes.
    void save();

    const PreferencesFile file;

    std::mutex mutex; // guards what follows, and is held by nobody who waits
    /// The file as it was when it was last read or written.
    IniText stored;
    /// Changes that are being written. Only the thread that writes changes them.
    EntryChanges underWay;
    /// Changes behind those.
    EntryChanges unsaved;
    /// While somebody waits for the end: locks are waited for no longer than until then.
    std::optional<Clock::time_point> lastMoment;
};

void QtPreferences::State::save() {
    milliseconds patience = longestWaitForLock;
    {
        const std::lock_guard lock(mutex);
        underWay = std::exchange(unsaved, {});
        if (underWay.empty()) {
            return;
        }
        if (lastMoment) {
            const auto left = std::chrono::duration_cast<milliseconds>(*lastMoment - Clock::now());
            patience = std::clamp(left, milliseconds(0), longestWaitForLock);
        }
    }
    PreferencesFile::Outcome outcome = file.change(underWay, patience);
    const std::lock_guard lock(mutex);
    if (outcome.text) {
        // What was stored before goes outside the lock.
        std::swap(stored, *outcome.text);
    }
    if (!outcome.isChanged) {
        // Those made meanwhile are newer, and stay.
        unsaved.merge(underWay);
    }
    underWay.clear();
}

QtPreferences::QtPreferences(const std::string& path)
    : state_(std::make_shared<State>(path)), saving_("velloran.saving", [state = state_] { state->save(); }) {}

QtPreferences::~QtPreferences() {
    // What the disk does not take in that time it may still take later, or never.
    finish(longestWaitAtEnd);
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

bool QtPreferences::holds(const std::string& key) const {
    const std::lock_guard lock(state_->mutex);
    return state_->text(key).has_value();
}

void QtPreferences::change(const std::vector<Change>& changes) {
    // All of them before any counts: on the way memory may be refused.
    EntryChanges made;
    for (const auto& [key, value] : changes) {
        made[key] = value ? std::optional(writeStoredValue(*value)) : std::nullopt;
    }
    {
        const std::lock_guard lock(state_->mutex);
        made.merge(state_->unsaved);
        made.swap(state_->unsaved);
    }
    saving_.request();
}

bool QtPreferences::finish(milliseconds atMost) {
    bool isAnythingLeft = false;
    {
        const std::lock_guard lock(state_->mutex);
        isAnythingLeft = !state_->unsaved.empty() || !state_->underWay.empty();
        // The rest of the time is for the disk.
        state_->lastMoment = Clock::now() + atMost / 2;
    }
    if (isAnythingLeft) {
        saving_.request();
    }
    const bool isDone = saving_.waitUntilDone(atMost);
    const std::lock_guard lock(state_->mutex);
    state_->lastMoment.reset();
    return isDone;
}

template<typename T>
std::optional<T> QtPreferences::get(const std::string& key) const {
    const std::lock_guard lock(state_->mutex);
    const auto written = state_->text(key);
    if (!written) {
        return std::nullopt;
    }
    const auto value = readStoredValue(*written);
    if (!value || !std::holds_alternative<T>(*value)) {
        return std::nullopt;
    }
    return std::get<T>(*value);
}

} // namespace velloran::platform::qt
