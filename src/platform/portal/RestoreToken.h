#pragma once

#include "async/BackgroundJob.h"

#include <memory>
#include <string>

namespace velloran::platform::portal {

/// The word by which the desktop knows a permission again that it has given before. It stands for that permission, so
/// it lies in a file of its own that only its owner can read, and is part of nothing else. Main thread; the file is
/// written by a thread inside.
class RestoreToken {
public:
    /// Reads the file, which need not exist; nor need its folder. One of another user, or that others can write, counts
    /// as none.
    explicit RestoreToken(std::string path);
    RestoreToken(const RestoreToken&) = delete;
    RestoreToken& operator=(const RestoreToken&) = delete;
    /// Waits a second at most for the file to be written.
    ~RestoreToken();

    /// The file of the current user, an absolute path.
    static std::string defaultPath();

    /// Empty when there is none.
    [[nodiscard]] const std::string& get() const { return token_; }

    /// Replaces it, in one step; an empty one removes the file. What cannot be written holds until the program ends.
    void set(const std::string& token);

private:
    struct File;

    std::string token_;
    std::shared_ptr<File> file_;
    BackgroundJob writing_;
};

} // namespace velloran::platform::portal
