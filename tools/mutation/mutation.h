#pragma once

// What the changed sources call: each change has a number, and the environment says which one of them is in force.

#include <cstdlib>

namespace mutation {

inline bool is(int number) {
    static const int active = [] {
        const char* const text = std::getenv("MUTANT");
        return text != nullptr ? std::atoi(text) : -1;
    }();
    return active == number;
}

inline bool flip(int number, bool truth) {
    return is(number) ? !truth : truth;
}

template<typename Number>
Number more(int number, Number value) {
    return is(number) ? static_cast<Number>(value + 1) : value;
}

inline const char* text(int number, const char* value) {
    return is(number) ? "changed" : value;
}

template<typename Number>
auto negated(int number, const Number& value) -> decltype(-value) {
    return is(number) ? -value : value;
}

template<typename A, typename B>
bool less(int number, const A& a, const B& b) {
    return is(number) ? a <= b : a < b;
}

template<typename A, typename B>
bool lessOrEqual(int number, const A& a, const B& b) {
    return is(number) ? a < b : a <= b;
}

template<typename A, typename B>
bool greater(int number, const A& a, const B& b) {
    return is(number) ? a >= b : a > b;
}

template<typename A, typename B>
bool greaterOrEqual(int number, const A& a, const B& b) {
    return is(number) ? a > b : a >= b;
}

template<typename T>
T larger(int number, const T& a, const T& b) {
    return (is(number) ? b < a : a < b) ? b : a;
}

} // namespace mutation
