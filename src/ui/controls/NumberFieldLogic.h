#pragma once

#include "async/EventLoop.h"
#include "base/fatal.h"
#include "base/saturated.h"
#include "base/text.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>

namespace velloran {

/// How a number type is written and read by a number field.
template<typename T>
struct NumberText;

template<>
struct NumberText<std::int64_t> {
    static std::string write(std::int64_t value) { return decimal(value); }

    static std::optional<std::int64_t> read(const std::string& text) { return parseInteger(text); }
};

template<>
struct NumberText<double> {
    static std::string write(double value) { return shortestDecimal(value); }

    static std::optional<double> read(const std::string& text) { return parseReal(text); }
};

/// What the view of a number field sees of it, whatever its numbers are.
class EditedNumber {
public:
    EditedNumber() = default;
    EditedNumber(const EditedNumber&) = delete;
    EditedNumber& operator=(const EditedNumber&) = delete;
    virtual ~EditedNumber() = default;

    [[nodiscard]] virtual const std::string& text() const = 0;

    /// Whether the text says something else than the stored number, surrounding blanks aside.
    [[nodiscard]] virtual bool hasPendingChange() const = 0;

    /// Whether the acknowledgement of a change is to be seen. A pending change goes before it.
    [[nodiscard]] virtual bool justUpdated() const = 0;

    /// What the user has typed so far.
    virtual void type(const std::string& text) = 0;

    virtual void beginEditing() = 0;

    /// The focus is gone: commits.
    virtual void endEditing() = 0;

    /// Stores what is typed and acknowledges it for 1.4 seconds if the number shown has become another one.
    virtual void commitWithFlash() = 0;

    /// Adds the step, up to the bound however near the end of the numbers it is. Text that has been typed and not
    /// committed is dropped. No effect without a step.
    virtual void stepUp() = 0;

    /// Takes the step away; otherwise as `stepUp`.
    virtual void stepDown() = 0;
};

/// What a number field does with typing, committing and stepping, apart from any view. It edits a number that somebody
/// else owns: it tells each number that it stores, equal ones included, and is told of every change from outside. One
/// thread.
template<typename T>
class NumberField final : public EditedNumber {
public:
    struct Settings {
        /// Inclusive bounds. A lower bound above the upper one is a fatal error.
        T lower;
        T upper;
        /// What a step adds or takes away; without it there is no stepping.
        std::optional<T> step;
        /// How the number is shown; without it in its own lossless form. What is typed is never read through it.
        std::function<std::string(T)> formatter;
    };

    struct Callbacks {
        /// Called with each number that the field stores.
        std::function<void(T)> store;
        /// Called when anything that the field shows may have changed.
        std::function<void()> changed;
    };

    NumberField(EventLoop& loop, T value, Settings settings, Callbacks callbacks)
        : loop_(loop), value_(std::move(value)), settings_(std::move(settings)), callbacks_(std::move(callbacks)) {
        checkRange();
        text_ = currentText();
    }

    [[nodiscard]] const T& value() const { return value_; }

    [[nodiscard]] const std::string& text() const override { return text_; }

    [[nodiscard]] bool isFocused() const { return isFocused_; }

    [[nodiscard]] bool justUpdated() const override { return justUpdated_; }

    /// The number as the field shows it.
    [[nodiscard]] std::string currentText() const {
        return settings_.formatter ? settings_.formatter(value_) : NumberText<T>::write(value_);
    }

    [[nodiscard]] bool hasPendingChange() const override { return trimmed(text_) != currentText(); }

    void type(const std::string& text) override {
        text_ = text;
        changed();
    }

    void beginEditing() override {
        isFocused_ = true;
        changed();
    }

    void endEditing() override {
        isFocused_ = false;
        commitWithFlash();
    }

    void commitWithFlash() override {
        const std::string before = currentText();
        commit();
        if (currentText() == before) {
            return;
        }
        justUpdated_ = true;
        // A badge that is still there goes on until the end of the newer one.
        badge_ = ScheduledCall(loop_, loop_.callAfter(badgeNanoseconds, [this] {
            justUpdated_ = false;
            changed();
        }));
        changed();
    }

    void stepUp() override {
        if (settings_.step) {
            adjust(*settings_.step);
        }
    }

    void stepDown() override {
        if (settings_.step) {
            adjust(saturatedSubtract(T{0}, *settings_.step));
        }
    }

    /// The number has been changed by somebody else. The text follows unless it is being edited.
    void valueChanged(T value) {
        value_ = std::move(value);
        if (!isFocused_) {
            text_ = currentText();
        }
        changed();
    }

    /// Bounds, step or form have changed. The stored number stays as it is.
    void setSettings(Settings settings) {
        const bool hadPendingChange = hasPendingChange();
        settings_ = std::move(settings);
        checkRange();
        if (!hadPendingChange) {
            text_ = currentText();
        }
        changed();
    }

private:
    static constexpr std::uint64_t badgeNanoseconds = 1'400'000'000;

    void changed() const {
        if (callbacks_.changed) {
            callbacks_.changed();
        }
    }

    void checkRange() const {
        if (settings_.upper < settings_.lower) {
            fatalError("The lower bound of a number field is above its upper bound");
        }
    }

    [[nodiscard]] T clamp(T x) const {
        if (x < settings_.lower) {
            return settings_.lower;
        }
        return settings_.upper < x ? settings_.upper : x;
    }

    void store(T value) {
        value_ = std::move(value);
        if (callbacks_.store) {
            callbacks_.store(value_);
        }
    }

    void commit() {
        const std::string typed = trimmed(text_);
        if (!typed.empty()) {
            if (const auto number = NumberText<T>::read(typed)) {
                store(clamp(*number));
            }
        }
        text_ = currentText();
        changed();
    }

    void adjust(T delta) {
        store(clamp(saturatedAdd(value_, delta)));
        text_ = currentText();
        changed();
    }

    EventLoop& loop_;
    T value_;
    Settings settings_;
    const Callbacks callbacks_;
    std::string text_;
    bool isFocused_ = false;
    bool justUpdated_ = false;
    ScheduledCall badge_;
};

} // namespace velloran
