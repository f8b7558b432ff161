#pragma once

#include <memory>
#include <string>

namespace velloran::platform {

/// One short sound. Main thread. Silent, without an error, where there is no sound service.
class Sound {
public:
    Sound() = default;
    Sound(const Sound&) = delete;
    Sound& operator=(const Sound&) = delete;
    virtual ~Sound() = default;

    /// Plays from the start, without waiting.
    virtual void play() = 0;
    /// Ends what is playing, if anything.
    virtual void stop() = 0;
};

/// The named sounds of the system. Main thread.
class SystemSounds {
public:
    SystemSounds() = default;
    SystemSounds(const SystemSounds&) = delete;
    SystemSounds& operator=(const SystemSounds&) = delete;
    virtual ~SystemSounds() = default;

    /// The sound of that name; null when there is none. The result must not outlive this object.
    virtual std::unique_ptr<Sound> load(const std::string& name) = 0;
};

} // namespace velloran::platform
