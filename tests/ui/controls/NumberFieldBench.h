#pragma once

#include "fakes/VirtualLoop.h"
#include "ui/controls/NumberFieldLogic.h"

#include <functional>
#include <string>
#include <vector>

namespace velloran::test {

/// A field and what it has told its surroundings.
template<typename T>
struct Bench {
    using Field = NumberField<T>;

    Bench(T value, typename Field::Settings settings)
        : field(loop, value, std::move(settings),
                {.store = [this](T number) { stored.push_back(number); }, .changed = [this] { ++changes; }}) {}

    /// Types into the focused field.
    void type(const std::string& text) {
        field.beginEditing();
        field.type(text);
    }

    void typeAndReturn(const std::string& text) {
        type(text);
        field.commitWithFlash();
    }

    void typeAndLeave(const std::string& text) {
        type(text);
        field.endEditing();
    }

    fakes::VirtualLoop loop;
    std::vector<T> stored;
    int changes = 0;
    Field field;
};

using Integers = Bench<std::int64_t>;
using Reals = Bench<double>;

inline std::function<std::string(double)> decimals(int digits) {
    return [digits](double value) { return fixedDecimal(value, digits); };
}

} // namespace velloran::test
