#pragma once

#include "platform/UrlOpener.h"

namespace velloran::platform::qt {

/// Opens addresses with the desktop's default programs.
class QtUrlOpener final : public UrlOpener {
public:
    void open(const std::string& url) override;
};

} // namespace velloran::platform::qt
