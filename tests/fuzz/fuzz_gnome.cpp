// Arbitrary bytes as what GNOME's tool prints of the user's shortcuts: what was read is written and read again as the
// same, what is cut off is no other value, and whatever bytes are written are read again.

#include "fuzz/require.h"
#include "platform/gnome/Accelerator.h"
#include "platform/gnome/variantText.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

using namespace velloran;
using namespace velloran::platform::gnome;

namespace {

/// Reading each beginning takes the square of the length.
constexpr std::size_t longestCut = 256;

void tryBeginnings(std::string_view written) {
    const auto text = readText(written);
    const auto list = readTextList(written);
    for (std::size_t length = 0; length < written.size() && length <= longestCut; ++length) {
        const auto ofPart = readText(written.substr(0, length));
        require(!ofPart || !text || ofPart == text, "a text that is cut off is no other text");
        const auto listOfPart = readTextList(written.substr(0, length));
        require(!listOfPart || !list || listOfPart == list, "a list that is cut off is no other list");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string written(reinterpret_cast<const char*>(data), size);
    require(readText(writeText(written)) == written, "any text is read again");
    require(readTextList(writeTextList({written, "other"})) == std::vector<std::string>{written, "other"},
            "a list of any texts is read again");
    if (const auto text = readText(written)) {
        require(readText(writeText(*text)) == text, "a text that was read is read again");
        require(!readTextList(written), "a text is no list");
    }
    if (const auto list = readTextList(written)) {
        require(readTextList(writeTextList(*list)) == list, "a list that was read is read again");
    }
    if (const auto combination = Accelerator::read(written)) {
        require(Accelerator::read(combination->written()) == combination, "a combination is read again");
        require(!combination->words().empty(), "a combination has words");
    }
    tryBeginnings(written);
    return 0;
}
