#pragma once

#include <QDBusConnection>

#include <cstdint>
#include <initializer_list>

struct ei;
struct ei_device;

namespace velloran::tests {

/// The user's keyboard and mouse on a KWin of a test's own, by the door that KWin has for those.
class KWinHand {
public:
    /// Waits until there are both, ten seconds at most.
    explicit KWinHand(const QDBusConnection& bus);
    KWinHand(const KWinHand&) = delete;
    KWinHand& operator=(const KWinHand&) = delete;
    ~KWinHand();

    [[nodiscard]] bool isReady() const { return keyboard_ != nullptr && mouse_ != nullptr; }

    /// By evdev's codes.
    void press(std::initializer_list<std::uint32_t> keys);
    void release(std::initializer_list<std::uint32_t> keys);

    void tap(std::initializer_list<std::uint32_t> keys) {
        press(keys);
        release(keys);
    }

    void key(std::uint32_t code, bool isDown);

    void move(double x, double y);
    void button(std::uint32_t code, bool isDown);

private:
    void take();

    ei* ei_;
    ei_device* keyboard_ = nullptr;
    ei_device* mouse_ = nullptr;
};

} // namespace velloran::tests
