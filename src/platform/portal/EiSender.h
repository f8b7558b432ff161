#pragma once

#include "async/EventLoop.h"
#include "platform/portal/ClickSender.h"
#include "platform/portal/InputPipe.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

struct ei;
struct ei_device;
struct ei_event;

namespace velloran::platform::portal {

/// Clicks over a connection for emulated input (libei), which the portal hands over: one stream, whose order holds, and
/// nobody is waited for. Owned by `shared_ptr` alone. Main thread but for the clicks.
class EiSender final : public ClickSender, public std::enable_shared_from_this<EiSender> {
public:
    struct Told {
        /// Called when `canSend` may have changed; first when the desktop has given a device.
        std::function<void()> changed;
        /// Called once, when the connection has ended.
        std::function<void()> lost;
    };

    /// Takes the descriptor over. What is told is told in turns of the loop, and nothing after `end`; it may end this.
    EiSender(EventLoop& loop, int descriptor, Told told);
    ~EiSender() override;

    [[nodiscard]] bool canSend() const override { return canSend_; }

    [[nodiscard]] bool waits() const override { return false; }

    /// The connection holds some hundred clicks, which a desktop that stood still would make after the end of a run.
    [[nodiscard]] bool isKeeping() const override;

    void send(const std::vector<MouseEvent>& events) override;
    void end(std::unique_ptr<PortalSession> session) override;

private:
    enum class News { none, changed, lost };

    void follow();
    void followLater();
    News take(ei_event& event);
    void letDeviceGo();

    EventLoop& loop_;
    mutable std::mutex mutex_; // guards what follows; the library is for one thread at a time
    std::optional<InputPipe> pipe_;
    ei* context_ = nullptr;
    ei_device* device_ = nullptr;
    std::uint32_t emulations_ = 0;
    bool isBroken_ = false;
    bool isLost_ = false;

    std::atomic<bool> canSend_ = false;
    const std::shared_ptr<const Told> told_;
    std::unique_ptr<EventLoop::Watch> watch_;
};

} // namespace velloran::platform::portal
