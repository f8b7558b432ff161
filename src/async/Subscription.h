#pragma once

#include <functional>

namespace velloran {

/// Keeps something attached to something else, an observer or a hot key for instance, for as long as it exists. May
/// outlive what that is attached to.
class [[nodiscard]] Subscription {
public:
    /// Attached to nothing.
    Subscription() = default;

    /// `detach` is called once, at the end.
    explicit Subscription(std::function<void()> detach);

    Subscription(const Subscription&) = delete;
    Subscription& operator=(const Subscription&) = delete;
    Subscription(Subscription&& other) noexcept;
    Subscription& operator=(Subscription&& other) noexcept;
    ~Subscription();

    /// Detaches now; the observer is not called any more, not even by a notification that is under way.
    void cancel();

private:
    std::function<void()> detach_;
};

} // namespace velloran
