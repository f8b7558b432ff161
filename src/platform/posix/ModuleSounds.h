#pragma once

#include "platform/SystemSounds.h"

#include <memory>
#include <string>
#include <thread>

namespace velloran::platform::posix {

/// The sounds of a module that is loaded when they are needed, and stays. Where the module is missing, or belongs to
/// another version of the program, they are silent. Main thread.
class ModuleSounds final : public SystemSounds {
public:
    /// `path` is the module's (`platform/SoundModule.h`), `version` the program's.
    ModuleSounds(std::string path, std::string version);
    ModuleSounds(const ModuleSounds&) = delete;
    ModuleSounds& operator=(const ModuleSounds&) = delete;
    ~ModuleSounds() override;

    /// Where a module of that name lies: beside the folder of the program, whether it was built or installed.
    static std::string pathOf(const std::string& name);

    /// Loads the module on a thread of its own, so that whoever plays does not have to wait for that.
    void prepare();

    /// Never null: what the module does not have is silent.
    std::unique_ptr<Sound> load(const std::string& name) override;

private:
    class LateSound;

    /// What the module has to offer. Waits until it is loaded.
    SystemSounds* sounds();
    void loadModule();

    std::string path_;
    std::string version_;
    bool isPrepared_ = false;
    /// Loads, until it is joined.
    std::thread thread_;
    /// Written by the thread.
    std::unique_ptr<SystemSounds> sounds_;
};

} // namespace velloran::platform::posix
