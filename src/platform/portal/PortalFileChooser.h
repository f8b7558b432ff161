#pragma once

#include "platform/FileChooser.h"
#include "platform/portal/Portal.h"

namespace velloran::platform::portal {

/// Asks with the desktop's own dialog, through its portal. Unavailable where there is no portal, where it has not said
/// within three seconds that it knows of files, or within ten more that it does ask; then nothing is left of the
/// request.
class PortalFileChooser final : public FileChooser {
public:
    /// `portal` has to outlive this, and its questions.
    explicit PortalFileChooser(Portal& portal) : portal_(portal) {}

    std::unique_ptr<FileDialog> ask(const FileQuestion& question, Done done) override;

private:
    Portal& portal_;
};

} // namespace velloran::platform::portal
