#pragma once

#include "platform/SystemSounds.h"

#include <memory>
#include <string>
#include <thread>

namespace velloran::platform::posix {

/// The sounds of a module that is loaded when they are needed, and stays. Until it is, they are silent, and where the
/// module is missing or belongs to another version of the program they stay so. Main thread.
class ModuleSounds final : public SystemSounds {
public:
    /// `path` is the module's (`platform/SoundModule.h`), `version` the program's.
    ModuleSounds(std::string path, std::string version);
    ModuleSounds(const ModuleSounds&) = delete;
    ModuleSounds& operator=(const ModuleSounds&) = delete;
    /// Waits for a module that is being loaded, for a second at most.
    ~ModuleSounds() override;

    /// Where a module of that name lies: beside the folder of the program, whether it was built or installed.
    static std::string pathOf(const std::string& name);

    /// Begins to load the module, on a thread of its own, for a disk may take any time. Done by the first sound where
    /// nobody else does.
    void prepare();

    /// Never null: what the module does not have is silent.
    std::unique_ptr<Sound> load(const std::string& name) override;

private:
    class LateSound;
    struct Loading;

    /// What the module has to offer; null while it has nothing.
    SystemSounds* sounds();

    /// Outlives this object where loading does.
    std::shared_ptr<Loading> loading_;
    std::thread thread_;
};

} // namespace velloran::platform::posix
