#include "donation/DonationLink.h"

#include "base/fatal.h"

#include <algorithm>

namespace velloran {

DonationLink::DonationLink(std::string_view text) : text_(text) {
    constexpr std::string_view scheme = "https://";
    if (text.size() <= scheme.size() || !text.starts_with(scheme) ||
        !std::all_of(text.begin(), text.end(), [](char character) { return character > ' ' && character <= '~'; })) {
        fatalError("The donation link is not a well-formed https URL: " + text_);
    }
}

} // namespace velloran
