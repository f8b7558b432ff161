#pragma once

#include "async/EventLoop.h"
#include "async/Task.h"
#include "base/checked.h"
#include "base/fatal.h"
#include "base/text.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace velloran::ui {

/// How a number type is written, read and added up by a number field.
template<typename T>
struct NumberText;

template<>
struct NumberText<std::int64_t> {
    static std::string write(std::int64_t value) { return decimal(value); }

    static std::optional<std::int64_t> read(const std::string& text) { return parseInteger(text); }

    static std::int64_t add(std::int64_t a, std::int64_t b) { return checkedAdd(a, b); }

    static std::int64_t subtract(std::int64_t a, std::int64_t b) { return checkedSubtract(a, b); }
};

template<>
struct NumberText<double> {
    static std::string write(double value) { return shortestDecimal(value); }

    static std::optional<double> read(const std::string& text) { return parseReal(text); }

    static double add(double a, double b) { return a + b; }

    static double subtract(double a, double b) { return a - b; }
};

/// What a number field does with typing, committing and stepping, apart from any view. It edits a number that somebody
/// else owns: it tells each number that it stores, equal ones included, and is told of every change from outside. One
/// thread.
template<typename T>
class NumberField {
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
        : loop_(loop),
          value_(std::move(value)),
          settings_(std::move(settings)),
          state_(std::make_shared<State>(std::move(callbacks))) {
        checkRange();
        state_->text = currentText();
    }

    NumberField(const NumberField&) = delete;
    NumberField& operator=(const NumberField&) = delete;

    [[nodiscard]] const T& value() const { return value_; }

    [[nodiscard]] const std::string& text() const { return state_->text; }

    [[nodiscard]] bool isFocused() const { return isFocused_; }

    /// Whether the acknowledgement of a change is to be seen. A pending change goes before it.
    [[nodiscard]] bool justUpdated() const { return state_->justUpdated; }

    /// The number as the field shows it.
    [[nodiscard]] std::string currentText() const {
        return settings_.formatter ? settings_.formatter(value_) : NumberText<T>::write(value_);
    }

    /// Whether the text says something else than the stored number, surrounding blanks aside.
    [[nodiscard]] bool hasPendingChange() const { return trimmed(state_->text) != currentText(); }

    /// What the user has typed so far.
    void type(const std::string& text) {
        state_->text = text;
        state_->changed();
    }

    void beginEditing() {
        isFocused_ = true;
        state_->changed();
    }

    /// The focus is gone: commits.
    void endEditing() {
        isFocused_ = false;
        commitWithFlash();
    }

    /// Stores what is typed and acknowledges it for 1.4 seconds if the number shown has become another one.
    void commitWithFlash() {
        const std::string before = currentText();
        commit();
        if (currentText() == before) {
            return;
        }
        if (flashTask_) {
            flashTask_->cancel();
        }
        state_->justUpdated = true;
        flashTask_ = hideBadgeLater(loop_, state_);
        state_->changed();
    }

    /// Adds the step. Text that has been typed and not committed is dropped. No effect without a step.
    void stepUp() {
        if (settings_.step) {
            adjust(*settings_.step);
        }
    }

    /// Takes the step away; otherwise as `stepUp`.
    void stepDown() {
        if (settings_.step) {
            adjust(NumberText<T>::subtract(T{0}, *settings_.step));
        }
    }

    /// The number has been changed by somebody else. The text follows unless it is being edited.
    void valueChanged(T value) {
        value_ = std::move(value);
        if (!isFocused_) {
            state_->text = currentText();
        }
        state_->changed();
    }

    /// Bounds, step or form have changed. The stored number stays as it is.
    void setSettings(Settings settings) {
        const bool hadPendingChange = hasPendingChange();
        settings_ = std::move(settings);
        checkRange();
        if (!hadPendingChange) {
            state_->text = currentText();
        }
        state_->changed();
    }

private:
    /// What the badge's task reaches. The task may outlive the field.
    struct State {
        explicit State(Callbacks given) : callbacks(std::move(given)) {}

        void changed() const {
            if (callbacks.changed) {
                callbacks.changed();
            }
        }

        const Callbacks callbacks;
        std::string text;
        bool justUpdated = false;
    };

    static constexpr std::uint64_t badgeNanoseconds = 1'400'000'000;

    static Task hideBadgeLater([[maybe_unused]] EventLoop& loop, std::weak_ptr<State> weakState) {
        co_await taskSleep(badgeNanoseconds);
        const Task::Cancellation cancellation = co_await taskCancellation();
        // A newer badge has its own end.
        if (cancellation.isRequested()) {
            co_return;
        }
        if (const auto state = weakState.lock()) {
            state->justUpdated = false;
            state->changed();
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
        if (state_->callbacks.store) {
            state_->callbacks.store(value_);
        }
    }

    void commit() {
        const std::string typed = trimmed(state_->text);
        if (!typed.empty()) {
            if (const auto number = NumberText<T>::read(typed)) {
                store(clamp(*number));
            }
        }
        state_->text = currentText();
        state_->changed();
    }

    void adjust(T delta) {
        store(clamp(NumberText<T>::add(value_, delta)));
        state_->text = currentText();
        state_->changed();
    }

    EventLoop& loop_;
    T value_;
    Settings settings_;
    std::shared_ptr<State> state_;
    bool isFocused_ = false;
    std::optional<Task> flashTask_;
};

} // namespace velloran::ui
