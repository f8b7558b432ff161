#pragma once

#include <string>
#include <string_view>

namespace velloran {

/// The address of a checkout page, known to be an https one.
class DonationLink {
public:
    /// Takes an address whose form the build has looked at already. One that cannot be an https URL is a programming
    /// error and fatal.
    explicit DonationLink(std::string_view text);

    [[nodiscard]] const std::string& text() const { return text_; }

private:
    std::string text_;
};

} // namespace velloran
