#pragma once

#include "async/Observers.h"
#include "async/Stream.h"

#include <cstdint>
#include <deque>
#include <memory>
#include <type_traits>
#include <utility>

namespace velloran {

/// A value that tells of its changes. Every assignment counts as a change, that of an equal value included. Confined to
/// one thread; neither copied nor moved.
///
/// Assigning from inside a notification is allowed. The value changes at once; the streams pass both values on in the
/// order of the assignments to every subscriber, the inner one after the outer one is through. What an observer assigns
/// while it is told of a change to come, `set` then replaces and `modify` builds on.
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
        modify([&value](T& current) { current = std::move(value); });
    }

    /// Changes some of the value: as `set`, but `change` alters the value, as it is once the will-change observers have
    /// been told. One notification. A `change` that returns a bool may decide against it then: on false, when it has to
    /// leave the value alone, nothing is assigned.
    template<typename Change>
    void modify(Change change) {
        // Held here, because an observer may end the owner of this object.
        const auto state = state_;
        state->willChange.notify();
        if constexpr (std::is_same_v<std::invoke_result_t<Change&, T&>, bool>) {
            if (!change(state->value)) {
                return;
            }
        } else {
            change(state->value);
        }
        state->passOn();
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
    /// Ends with an exception as well: otherwise nothing would be passed on any more.
    class Sending {
    public:
        explicit Sending(bool& isSending) : isSending_(isSending) { isSending_ = true; }

        Sending(const Sending&) = delete;
        Sending& operator=(const Sending&) = delete;

        ~Sending() { isSending_ = false; }

    private:
        bool& isSending_;
    };

    struct State {
        explicit State(T initial) : value(std::move(initial)) {}

        /// Sends the value to the streams; from inside a notification, once that one is through.
        void passOn() {
            ++assignments;
            if (changed.isEmpty()) {
                return;
            }
            unsent.emplace_back(assignments, value);
            if (isSending) {
                return;
            }
            const Sending sending(isSending);
            while (!unsent.empty()) {
                const auto [assignment, next] = std::move(unsent.front());
                unsent.pop_front();
                changed.notify(assignment, next);
            }
        }

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
