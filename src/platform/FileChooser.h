#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace velloran::platform {

/// What the user is asked for: one JSON file.
struct FileQuestion {
    enum class Purpose {
        /// A file to read: one that exists.
        open,
        /// A place to write to: folders can be made.
        save,
    };

    Purpose purpose = Purpose::open;
    std::string title;
    /// For a place to write to.
    std::string proposedName;
    /// The window system's number of the window that the dialog belongs to; 0 for none.
    std::uintptr_t window = 0;
};

/// How a question ended.
struct FileAnswer {
    enum class Outcome {
        chosen,
        cancelled,
        /// This desktop has no such dialog, or not in time. None is shown.
        unavailable,
    };

    Outcome outcome = Outcome::unavailable;
    /// Of the local file that was chosen.
    std::string path;

    bool operator==(const FileAnswer&) const = default;
};

/// A question that is open. Destroying it takes the dialog away, and there will be no answer.
class FileDialog {
public:
    FileDialog() = default;
    FileDialog(const FileDialog&) = delete;
    FileDialog& operator=(const FileDialog&) = delete;
    virtual ~FileDialog() = default;
};

/// Asks for files with a dialog of the desktop. Main thread; waits for nothing.
class FileChooser {
public:
    using Done = std::function<void(const FileAnswer& answer)>;

    FileChooser() = default;
    FileChooser(const FileChooser&) = delete;
    FileChooser& operator=(const FileChooser&) = delete;
    virtual ~FileChooser() = default;

    /// Asks. `done` is called once, in a later turn of the event loop, and may destroy the dialog.
    virtual std::unique_ptr<FileDialog> ask(const FileQuestion& question, Done done) = 0;
};

} // namespace velloran::platform
