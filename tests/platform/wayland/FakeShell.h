#pragma once

#include "platform/wayland/FakeCompositor.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace velloran::tests {

/// Has a compositor of the tests open windows, as far as telling what it can do with them.
class FakeShell {
public:
    /// Offers that version of the protocol, and tells abilities, which are its numbers; nothing where it tells none.
    FakeShell(FakeCompositor& compositor, int version, std::optional<std::vector<std::uint32_t>> abilities);
    FakeShell(const FakeShell&) = delete;
    FakeShell& operator=(const FakeShell&) = delete;
    /// To be destroyed before the compositor, whose clients it ends.
    ~FakeShell();

    /// How many windows have been begun, how many of them are still there, and how often one got a picture.
    int begun = 0;
    int windows = 0;
    int pictures = 0;

private:
    /// What has been done to a window is final.
    void answer();

    static void bindCompositor(wl_client* client, void* shell, std::uint32_t version, std::uint32_t id);
    static void bindShell(wl_client* client, void* shell, std::uint32_t version, std::uint32_t id);

    FakeCompositor& server_;
    wl_global* const compositor_;
    wl_global* const shell_;
    const std::optional<std::vector<std::uint32_t>> abilities_;
    /// Of the window that has been begun last.
    wl_resource* surface_ = nullptr;
    wl_resource* window_ = nullptr;
};

} // namespace velloran::tests
