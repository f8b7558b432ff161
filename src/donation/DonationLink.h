#pragma once

#include <string>
#include <string_view>

namespace velloran {

/// The address of a checkout page, known to be a well-formed https one.
class DonationLink {
public:
    /// Takes the address. One that is not well formed, or not https, is a programming error and fatal.
    explicit DonationLink(std::string_view text);

    [[nodiscard]] const std::string& text() const { return text_; }

private:
    std::string text_;
};

} // namespace velloran
