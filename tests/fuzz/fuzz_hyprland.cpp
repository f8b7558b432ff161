// Arbitrary bytes as Hyprland's answer to where the pointer is: a place is one that can be, an answer that is cut off
// gives none or the same, and a place that is written is read again.

#include "fuzz/require.h"
#include "platform/hyprland/reply.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

using namespace velloran;
using namespace velloran::platform::hyprland;

namespace {

/// Reading each beginning takes the square of the length.
constexpr std::size_t longestCut = 256;

std::string written(const platform::Point& place) {
    char text[128] = {};
    std::snprintf(text, sizeof text, "{\"x\": %.17g, \"y\": %.17g}", place.x, place.y);
    return text;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string answer(reinterpret_cast<const char*>(data), size);
    const auto place = placeIn(answer);
    if (place) {
        require(std::isfinite(place->x) && std::isfinite(place->y), "a place is made of numbers");
        require(std::abs(place->x) <= 1e9 && std::abs(place->y) <= 1e9, "a place is on some desktop");
        require(placeIn(written(*place)) == place, "what is written is read again");
    }
    for (std::size_t length = 0; length < size && length <= longestCut; ++length) {
        const auto ofPart = placeIn(answer.substr(0, length));
        require(!ofPart || !place || ofPart == place, "what is cut off is no other place");
    }
    return 0;
}
