#pragma once

#include "async/BackgroundJob.h"
#include "platform/Preferences.h"

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace velloran::platform::qt {

/// The preferences in an INI file. Reading and changing never wait for the disk: changes are written by a thread
/// inside, in the order in which they were made. Those that are made while it writes go to disk together, with the last
/// value of each key, so what is on disk is always how things stood after one of the changes.
///
/// The file is replaced as a whole, and a change starts from what it holds at that moment, so other keys that another
/// process wrote stay. What cannot be written is kept in memory, is what reading gives, and goes to disk with the next
/// change that can. A file that is there but cannot be read is left alone.
///
/// The toolkit's own settings class is not used. Tried again with 6.4, it waits without end for the lock of a process
/// that has been stopped; and although it reports lines that it cannot read, it writes the file without them and
/// without the comments.
class QtPreferences final : public Preferences {
public:
    /// How long the end waits for changes to be written.
    static constexpr std::chrono::milliseconds longestWaitAtEnd{1000};

    /// Reads the file, which need not exist; nor need its folder.
    explicit QtPreferences(const std::string& path);
    QtPreferences(const QtPreferences&) = delete;
    QtPreferences& operator=(const QtPreferences&) = delete;
    /// Does what `finish` does, for as long as the end may take.
    ~QtPreferences() override;

    /// The file of the current user, an absolute path. The environment may lack every variable.
    static std::string defaultPath();

    std::optional<Bytes> bytes(const std::string& key) const override;
    std::optional<Date> date(const std::string& key) const override;
    std::optional<std::int64_t> integer(const std::string& key) const override;
    std::optional<bool> truth(const std::string& key) const override;
    bool holds(const std::string& key) const override;

    void change(const std::vector<Change>& changes) override;

    /// Waits until all changes are written, and tries once more to write what could not be. A lock that another process
    /// holds is not waited for longer than half of that time. False when all of it was not enough.
    bool finish(std::chrono::milliseconds atMost);

private:
    struct State;

    template<typename T>
    std::optional<T> get(const std::string& key) const;

    /// Shared with the thread, which goes on for as long as the disk holds it up.
    std::shared_ptr<State> state_;
    BackgroundJob saving_;
};

} // namespace velloran::platform::qt
