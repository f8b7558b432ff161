#pragma once

#include <QByteArray>
#include <QString>

#include "platform/gnome/Accelerator.h"
#include "platform/gnome/SettingsTool.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace velloran::platform::gnome {

/// The program's entry among the user's own shortcuts of the desktop: a name, a command and a combination, in a list
/// with those of the user, which are never changed. One thing at a time is asked of it. Main thread.
class ShortcutEntry {
public:
    /// What is there.
    struct Found {
        /// Whether the list could be read; nothing is ever written into one that cannot.
        bool isReadable = false;
        /// Whether our entry is in it, just as we write it.
        bool isOurs = false;
        /// Whether our entry is in it, however it is.
        bool isListed = false;
        /// What our entry is bound to.
        std::string binding = {};
        /// Whether another entry has the combination, and how the user calls that one.
        bool isTaken = false;
        std::string holder = {};
    };

    /// `command` is what the desktop runs for a press; `tool` has to outlive this.
    ShortcutEntry(SettingsTool& tool, QString command);

    /// Whether the desktop knows such entries at all.
    void probe(std::function<void(bool isThere)> done);

    /// Looks at the list for what concerns that combination.
    void look(const Accelerator& wanted, std::function<void(const Found& found)> done);

    /// Writes the entry, and then takes it into the list. False where that failed.
    void put(const Accelerator& wanted, std::function<void(bool isDone)> done);

    /// Takes it out of the list, if it is in it, and then away. False where it may be in it still.
    void remove(std::function<void(bool isAway)> done);

private:
    using ListDone = std::function<void(const std::optional<std::vector<std::string>>& paths)>;
    using FoundDone = std::function<void(const Found& found)>;

    void readList(ListDone done);
    void writeList(const std::vector<std::string>& paths, std::function<void(bool isDone)> done);
    void write(const char* key, const std::string& text);
    void lookAtEach(std::vector<std::string> left, const Accelerator& wanted, const Found& found, FoundDone done);

    SettingsTool& tool_;
    const QString command_;
};

} // namespace velloran::platform::gnome
