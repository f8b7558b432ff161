#pragma once

#include "platform/FileChooser.h"

namespace velloran::platform::qt {

/// Asks with the widget toolkit's own dialog, which is always available. Needs a `QApplication`.
class WidgetFileChooser final : public FileChooser {
public:
    std::unique_ptr<FileDialog> ask(const FileQuestion& question, Done done) override;
};

} // namespace velloran::platform::qt
