#pragma once

#include "platform/Preferences.h"
#include "platform/qt/IniText.h"
#include "platform/qt/StoredValue.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace velloran::platform::qt {

/// The preferences in an INI file. Every change is on disk when the call returns, and the file is replaced as a whole:
/// whoever reads it, after a crash as well, finds it as it was before or after a change.
///
/// A change starts from what the file holds at that moment, under a lock, so other keys that another process wrote
/// stay. What cannot be written is kept in memory, is what reading gives, and goes to disk with the next change that
/// can. A file that is there but cannot be read is left alone.
///
/// The toolkit's own settings class is not used: it waits without end for the lock of a process that has been stopped,
/// and drops every line that it cannot read.
class QtPreferences final : public Preferences {
public:
    /// Reads the file, which need not exist; nor need its folder.
    explicit QtPreferences(const std::string& path);
    QtPreferences(const QtPreferences&) = delete;
    QtPreferences& operator=(const QtPreferences&) = delete;
    /// Tries once more to write what could not be written.
    ~QtPreferences() override;

    /// The file of the current user, an absolute path. The environment may lack every variable.
    static std::string defaultPath();

    std::optional<Bytes> bytes(const std::string& key) const override;
    std::optional<Date> date(const std::string& key) const override;
    std::optional<std::int64_t> integer(const std::string& key) const override;
    std::optional<bool> truth(const std::string& key) const override;

    void setBytes(const std::string& key, const Bytes& value) override;
    void setDate(const std::string& key, Date value) override;
    void setInteger(const std::string& key, std::int64_t value) override;
    void setTruth(const std::string& key, bool value) override;

    bool holds(const std::string& key) const override;
    void remove(const std::string& key) override;

private:
    template<typename T>
    std::optional<T> get(const std::string& key) const;
    void set(const std::string& key, const StoredValue& value);

    [[nodiscard]] std::optional<std::string_view> text(const std::string& key) const;
    void save();

    std::string path_;
    /// The file as it was when it was last read or written.
    IniText stored_;
    /// Changes that are not on disk: the new text, or nothing for a removal.
    std::map<std::string, std::optional<std::string>> unsaved_;
};

} // namespace velloran::platform::qt
