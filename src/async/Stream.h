#pragma once

#include "async/EventLoop.h"
#include "async/Subscription.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>

namespace velloran {

/// A source of values over time. Nothing happens until somebody subscribes; each subscriber gets a chain of its own.
/// All on the thread of the source.
template<typename T>
class Stream {
public:
    using Observer = std::function<void(const T&)>;
    using Attach = std::function<Subscription(Observer)>;

    /// `attach` connects an observer to the source.
    explicit Stream(Attach attach) : attach_(std::move(attach)) {}

    /// Calls `observer` for every value until the result is destroyed.
    Subscription subscribe(Observer observer) const { return attach_(std::move(observer)); }

    /// The values, each turned by `transform`.
    template<typename Transform>
    auto map(Transform transform) const {
        using Result = std::decay_t<std::invoke_result_t<Transform, const T&>>;
        return Stream<Result>([attach = attach_, transform](typename Stream<Result>::Observer observer) {
            return attach([transform, observer = std::move(observer)](const T& value) { observer(transform(value)); });
        });
    }

    /// The values without those that equal the one directly before.
    [[nodiscard]] Stream removeDuplicates() const {
        return Stream([attach = attach_](Observer observer) {
            return attach([last = std::optional<T>(), observer = std::move(observer)](const T& value) mutable {
                if (!last || !(*last == value)) {
                    last = value;
                    observer(value);
                }
            });
        });
    }

    /// The last value of every burst: a value is passed on, by `loop`, when `nanoseconds` have gone by without another
    /// one.
    [[nodiscard]] Stream debounce(EventLoop& loop, std::uint64_t nanoseconds) const {
        return Stream([attach = attach_, &loop, nanoseconds](Observer observer) {
            auto pending = std::make_shared<ScheduledCall>();
            Subscription source = attach([pending, &loop, nanoseconds, observer = std::move(observer)](const T& value) {
                *pending = ScheduledCall(loop, loop.callAfter(nanoseconds, [observer, value] { observer(value); }));
            });
            // Ending the subscription ends the wait as well.
            return Subscription([source = std::make_shared<Subscription>(std::move(source)), pending] {
                source->cancel();
                pending->cancel();
            });
        });
    }

private:
    Attach attach_;
};

} // namespace velloran
