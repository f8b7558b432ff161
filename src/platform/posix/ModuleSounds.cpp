#include "platform/posix/ModuleSounds.h"

#include "async/startThread.h"
#include "platform/SoundModule.h"

#include <dlfcn.h>

#include <filesystem>
#include <system_error>
#include <utility>

namespace velloran::platform::posix {

/// Asks the module when it is used for the first time.
class ModuleSounds::LateSound final : public Sound {
public:
    LateSound(ModuleSounds& owner, std::string name) : owner_(owner), name_(std::move(name)) {}

    void play() override {
        if (!isAsked_) {
            isAsked_ = true;
            if (SystemSounds* const sounds = owner_.sounds()) {
                sound_ = sounds->load(name_);
            }
        }
        if (sound_) {
            sound_->play();
        }
    }

    void stop() override {
        if (sound_) {
            sound_->stop();
        }
    }

private:
    ModuleSounds& owner_;
    std::string name_;
    bool isAsked_ = false;
    std::unique_ptr<Sound> sound_;
};

ModuleSounds::ModuleSounds(std::string path, std::string version)
    : path_(std::move(path)), version_(std::move(version)) {}

ModuleSounds::~ModuleSounds() {
    if (thread_.joinable()) {
        thread_.join();
    }
}

std::string ModuleSounds::pathOf(const std::string& name) {
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    return (program.parent_path().parent_path() / "lib" / "velloran" / "modules" / (name + ".so")).string();
}

void ModuleSounds::prepare() {
    if (!std::exchange(isPrepared_, true)) {
        thread_ = startThread("velloran.module", [this] { loadModule(); });
        // Without a thread the first sound waits.
        isPrepared_ = thread_.joinable();
    }
}

std::unique_ptr<Sound> ModuleSounds::load(const std::string& name) {
    return std::make_unique<LateSound>(*this, name);
}

SystemSounds* ModuleSounds::sounds() {
    if (thread_.joinable()) {
        thread_.join();
    } else if (!std::exchange(isPrepared_, true)) {
        loadModule();
    }
    return sounds_.get();
}

void ModuleSounds::loadModule() {
    // Never closed: what it brought along may have threads, and code that is to run at the very end.
    void* const module = dlopen(path_.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (module == nullptr) {
        return;
    }
    if (const auto makeSounds = reinterpret_cast<MakeSounds>(dlsym(module, makeSoundsName))) {
        sounds_.reset(makeSounds(version_.c_str()));
    }
}

} // namespace velloran::platform::posix
