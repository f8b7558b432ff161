#pragma once

#include <utility>

namespace velloran::platform::portal {

/// Stands between the library for emulated input and the desktop. The library writes each part of a click by itself;
/// this sends them in one piece, so that a program that is killed between them has sent all or none. On one thread at a
/// time.
class InputPipe {
public:
    /// Takes the desktop's descriptor over.
    explicit InputPipe(int desktop);
    InputPipe(const InputPipe&) = delete;
    InputPipe& operator=(const InputPipe&) = delete;
    ~InputPipe();

    /// The end for the library, which takes it over; -1 where the system has none. To be called once.
    [[nodiscard]] int takeEnd() { return std::exchange(libraryEnd_, -1); }

    /// What becomes readable when the desktop has written something, or is gone.
    [[nodiscard]] int descriptor() const { return desktop_; }

    /// Hands what the library has written since the last time to the desktop, at once. False when that does not take
    /// it.
    [[nodiscard]] bool send();

    /// Whether the desktop has yet to read something that was sent.
    [[nodiscard]] bool isKeeping() const;

    /// Hands what the desktop has written to the library. False when the desktop is gone.
    [[nodiscard]] bool receive();

private:
    int desktop_;
    int end_ = -1;
    int libraryEnd_ = -1;
};

} // namespace velloran::platform::portal
