#pragma once

#include "async/Observers.h"
#include "async/Stream.h"

#include <cstdint>
#include <deque>
#include <memory>
#include <utility>

namespace velloran {

/// A value that tells of its changes. Every assignment counts as a change, that of an equal value included. Confined to
/// one thread; neither copied nor moved.
///
/// Assigning from inside a notification is allowed. The value changes at once; the streams pass both values on in the
/// order of the assignments to every subscriber, the inner one after the outer one is through.
template<typename T>
class Published {
public:
    explicit Published(T initial) : state_(std::make_shared<State>(std::move(initial))) {}

    Published(const Published&) = delete;
    Published& operator=(const Published&) = delete;

    /// The current value.
    [[nodiscard]] const T& get() const { return state_->value; }

    /// Assigns: tells the will-change observers, changes the value, then passes it on to the streams.
    void set(T value) {
        // Held here, because an observer may end the owner of this object.
        const auto state = state_;
        state->willChange.notify();
        state->value = std::move(value);
        ++state->assignments;
        if (state->changed.isEmpty()) {
            return;
        }
        state->unsent.emplace_back(state->assignments, state->value);
        if (state->isSending) {
            return;
        }
        state->isSending = true;
        while (!state->unsent.empty()) {
            const auto [assignment, next] = std::move(state->unsent.front());
            state->unsent.pop_front();
            state->changed.notify(assignment, next);
        }
        state->isSending = false;
    }

    /// Changes some of the value: `change` gets a copy of it to alter, which is then assigned. One notification.
    template<typename Change>
    void modify(Change change) {
        T value = state_->value;
        change(value);
        set(std::move(value));
    }

    /// Calls `observer` before every change, while the old value is still there.
    Subscription observeWillChange(std::function<void()> observer) const {
        return state_->willChange.attach(std::move(observer));
    }

    /// The current value at once on subscription, and every value assigned after that.
    [[nodiscard]] Stream<T> stream() const {
        return Stream<T>([state = std::weak_ptr(state_)](typename Stream<T>::Observer observer) {
            const auto published = state.lock();
            if (!published) {
                return Subscription();
            }
            const auto shared = std::make_shared<typename Stream<T>::Observer>(std::move(observer));
            // A value that is still on its way to the others is the current one here already.
            Subscription attached = published->changed.attach(
                [shared, since = published->assignments](std::uint64_t assignment, const T& value) {
                    if (assignment > since) {
                        (*shared)(value);
                    }
                });
            const T current = published->value;
            (*shared)(current);
            return attached;
        });
    }

private:
    struct State {
        explicit State(T initial) : value(std::move(initial)) {}

        T value;
        /// How many there have been; numbers each one.
        std::uint64_t assignments = 0;
        Observers<> willChange;
        Observers<std::uint64_t, T> changed;
        std::deque<std::pair<std::uint64_t, T>> unsent;
        bool isSending = false;
    };

    std::shared_ptr<State> state_;
};

} // namespace velloran
