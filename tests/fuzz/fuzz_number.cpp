// Each line as something that is done to a number field, of whole numbers and of others: what is shown is always the
// number, what was typed is taken over within the bounds or not at all, and the text of a number is read as that
// number.

#include "base/text.h"
#include "fakes/VirtualLoop.h"
#include "fuzz/require.h"
#include "ui/controls/NumberFieldLogic.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

using namespace velloran;

namespace {

template<typename T>
class Edited {
public:
    Edited(fakes::VirtualLoop& loop, typename NumberField<T>::Settings settings)
        : lower_(settings.lower),
          upper_(settings.upper),
          field_(loop, settings.lower, settings, {.store = [this](T value) { stored_ = value; }, .changed = {}}) {}

    void act(char what, const std::string& text) {
        switch (what) {
        case 't':
            field_.beginEditing();
            field_.type(text);
            break;
        case 'e': {
            const std::string typed = trimmed(field_.text());
            field_.endEditing();
            require(!field_.hasPendingChange() && field_.text() == field_.currentText(),
                    "a committed text is that of the number");
            if (const auto number = NumberText<T>::read(typed)) {
                require(stored_ == std::clamp(*number, lower_, upper_),
                        "what can be read is taken over within the bounds");
            }
            break;
        }
        case '+':
        case '-':
            what == '+' ? field_.stepUp() : field_.stepDown();
            require(field_.value() >= lower_ && field_.value() <= upper_, "a step ends within the bounds");
            break;
        case 'v':
            // A settings file may hold what is out of bounds.
            if (const auto number = NumberText<T>::read(text)) {
                field_.valueChanged(*number);
                require(field_.value() == *number, "a number from outside stays as it is");
            }
            break;
        default:
            break;
        }
        const auto again = NumberText<T>::read(NumberText<T>::write(field_.value()));
        require(again == field_.value(), "the text of a number is read as that number");
    }

private:
    T lower_;
    T upper_;
    std::optional<T> stored_;
    NumberField<T> field_;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view input(reinterpret_cast<const char*>(data), size);
    fakes::VirtualLoop loop;
    Edited<std::int64_t> count(loop, {1, 10'000'000, 10, {}});
    Edited<std::int64_t> anyCount(
        loop, {std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::max(), 10, {}});
    Edited<double> interval(loop, {0.01, 3600, 0.05, [](double value) { return fixedDecimal(value, 2); }});
    Edited<double> real(loop, {-1e308, 1e308, 1e300, {}});
    for (int lines = 0; !input.empty() && lines < 20; ++lines) {
        const std::string_view line = input.substr(0, input.find('\n'));
        input.remove_prefix(std::min(line.size() + 1, input.size()));
        const char what = line.empty() ? ' ' : line.front();
        const std::string text(line.substr(std::min<std::size_t>(1, line.size())));
        count.act(what, text);
        anyCount.act(what, text);
        interval.act(what, text);
        real.act(what, text);
        loop.advance(what == 'w' ? 2 : 0);
    }
    return 0;
}
