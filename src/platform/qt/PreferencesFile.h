#pragma once

#include "base/IniText.h"

#include <chrono>
#include <map>
#include <optional>
#include <string>

namespace velloran::platform::qt {

/// Changes of entries by their keys: the new text, or nothing for a removal.
using EntryChanges = std::map<std::string, std::optional<std::string>>;

/// The INI file of the preferences. It is replaced as a whole: whoever reads it, after a crash as well, finds it as it
/// was before or after a change. A file that is there but cannot be read is left alone. May be used on any thread, and
/// waits for the disk.
class PreferencesFile {
public:
    /// Neither the file nor its folder need exist.
    explicit PreferencesFile(std::string path);

    /// What the file holds; no file is the same as an empty one. No result where there is something that cannot be
    /// read.
    [[nodiscard]] std::optional<IniText> read() const;

    struct Outcome {
        /// What the file holds now; nothing where it cannot be read.
        std::optional<IniText> text;
        /// Whether that is with the changes.
        bool isChanged = false;
    };

    /// Changes what the file holds at that moment, so other keys that another process wrote stay. Other processes are
    /// kept out by a lock; one that holds it longer than `longestWaitForLock` is not waited for.
    [[nodiscard]] Outcome change(const EntryChanges& changes, std::chrono::milliseconds longestWaitForLock) const;

private:
    std::string path_;
};

} // namespace velloran::platform::qt
