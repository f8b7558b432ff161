#include "platform/pulse/PulseSounds.h"

namespace velloran::platform::pulse {

namespace {

class Tick final : public Sound {
public:
    explicit Tick(TickPlayer& player) : player_(player) {}

    void play() override { player_.play(); }

    void stop() override { player_.stop(); }

private:
    TickPlayer& player_;
};

} // namespace

std::unique_ptr<Sound> PulseSounds::load(const std::string& name) {
    if (name != "Tink") {
        return nullptr;
    }
    return std::make_unique<Tick>(player_);
}

} // namespace velloran::platform::pulse
