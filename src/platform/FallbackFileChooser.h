#pragma once

#include "platform/FileChooser.h"

namespace velloran::platform {

/// Asks with the first of two ways that is available.
class FallbackFileChooser final : public FileChooser {
public:
    /// Both have to outlive this, and its questions.
    FallbackFileChooser(FileChooser& first, FileChooser& second) : first_(first), second_(second) {}

    std::unique_ptr<FileDialog> ask(const FileQuestion& question, Done done) override;

private:
    FileChooser& first_;
    FileChooser& second_;
};

} // namespace velloran::platform
