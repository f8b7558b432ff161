#include "donation/DonationLink.h"

#include "base/fatal.h"

#include <regex>

namespace velloran {

namespace {

/// A host of dot-separated labels, an optional port, then path, query and fragment of the characters that may stand
/// there unescaped or as %XX.
const std::regex& wellFormed() {
    static const std::regex pattern(
        R"(https://[A-Za-z0-9]([A-Za-z0-9-]*[A-Za-z0-9])?(\.[A-Za-z0-9]([A-Za-z0-9-]*[A-Za-z0-9])?)*)"
        R"((:[0-9]{1,5})?([/?#]([A-Za-z0-9._~:/?#@!$&'()*+,;=-]|\[|\]|%[0-9A-Fa-f]{2})*)?)");
    return pattern;
}

} // namespace

DonationLink::DonationLink(std::string_view text) : text_(text) {
    if (!std::regex_match(text_, wellFormed())) {
        fatalError("The donation link is not a well-formed https URL: " + text_);
    }
}

} // namespace velloran
