#pragma once

#include "platform/wayland/FakeCompositor.h"
#include "platform/wayland/LoopTest.h"
#include "platform/wayland/VirtualPointer.h"
#include "platform/wayland/clicks.h"

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace velloran::tests {

using platform::wayland::VirtualPointer;
using Offer = VirtualPointer::Offer;
using Deed = FakeCompositor::Deed;

/// The clicks on a compositor that does what the test wants.
class VirtualPointerTest : public LoopTest {
protected:
    void SetUp() override {
        std::string folderName = testing::TempDir() + "velloran-wayland-XXXXXX";
        folder_ = mkdtemp(folderName.data());
        compositor = std::make_unique<FakeCompositor>(loop, path());
    }

    void TearDown() override {
        pointer.reset();
        compositor.reset();
        std::filesystem::remove_all(folder_);
    }

    [[nodiscard]] std::string path() const { return folder_ + "/socket"; }

    void connect() {
        pointer = std::make_unique<VirtualPointer>(loop, path());
        pointer->onChanged([this] { ++changes; });
    }

    void connectToUsualCompositor() {
        compositor->offerPointers();
        compositor->addSeat("seat0", true);
        connect();
        ASSERT_TRUE(until([this] { return changes == 1 && compositor->pointers == 1; }));
        ASSERT_EQ(pointer->offer(), Offer::offered);
    }

    bool untilOffered() {
        return until([this] { return pointer->offer() == Offer::offered; });
    }

    bool untilMissing() {
        return until([this] { return pointer->offer() == Offer::missing; });
    }

    bool untilDeeds(std::size_t number) {
        return until([this, number] { return compositor->deeds.size() >= number; });
    }

    static std::vector<Deed> clickDeeds(const ButtonCase& button, const std::string& seat = "seat0") {
        return {{Deed::Kind::button, button.number, true, seat},
                {Deed::Kind::frame, 0, false, seat},
                {Deed::Kind::button, button.number, false, seat},
                {Deed::Kind::frame, 0, false, seat}};
    }

    /// Whether the deeds are that many clicks of the left button.
    [[nodiscard]] bool areClicks(std::size_t number) const {
        const std::vector<Deed> oneClick = clickDeeds(left);
        if (compositor->deeds.size() != number * oneClick.size()) {
            return false;
        }
        for (std::size_t i = 0; i < compositor->deeds.size(); ++i) {
            if (compositor->deeds[i] != oneClick[i % oneClick.size()]) {
                return false;
            }
        }
        return true;
    }

    std::unique_ptr<FakeCompositor> compositor;
    std::unique_ptr<VirtualPointer> pointer;
    int changes = 0;

private:
    std::string folder_;
};

} // namespace velloran::tests
