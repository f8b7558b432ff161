#include "platform/posix/ModuleSounds.h"

#include "async/startThread.h"
#include "platform/SoundModule.h"

#include <dlfcn.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <mutex>
#include <system_error>
#include <utility>

namespace velloran::platform::posix {

namespace {

constexpr std::chrono::seconds patienceAtTheEnd(1);

} // namespace

struct ModuleSounds::Loading {
    void load() {
        // Never closed: what it brought along may have threads, and code that is to run at the very end.
        void* const module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
        const auto makeSounds =
            module != nullptr ? reinterpret_cast<MakeSounds>(dlsym(module, makeSoundsName)) : nullptr;
        const std::lock_guard lock(mutex);
        if (makeSounds != nullptr && !isAbandoned) {
            sounds.reset(makeSounds(version.c_str()));
        }
        isOver = true;
        over.notify_all();
    }

    bool waitUntilOver(std::chrono::milliseconds atMost) {
        std::unique_lock lock(mutex);
        isAbandoned = !over.wait_for(lock, atMost, [this] { return isOver.load(); });
        return !isAbandoned;
    }

    const std::string path;
    const std::string version;
    std::mutex mutex = {};
    std::condition_variable over = {};
    /// Nobody wants it any more.
    bool isAbandoned = false;
    /// From then on the sounds belong to the main thread.
    std::atomic<bool> isOver = false;
    std::unique_ptr<SystemSounds> sounds = nullptr;
};

/// Asks the module as soon as there is one.
class ModuleSounds::LateSound final : public Sound {
public:
    LateSound(ModuleSounds& owner, std::string name) : owner_(owner), name_(std::move(name)) {}

    void play() override {
        if (SystemSounds* const sounds = isAsked_ ? nullptr : owner_.sounds()) {
            isAsked_ = true;
            sound_ = sounds->load(name_);
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
    : loading_(new Loading{std::move(path), std::move(version)}) {}

ModuleSounds::~ModuleSounds() {
    if (!thread_.joinable()) {
        return;
    }
    if (loading_->waitUntilOver(patienceAtTheEnd)) {
        thread_.join();
    } else {
        // The linker cannot be stopped. What it still brings is not used.
        thread_.detach();
    }
}

std::string ModuleSounds::pathOf(const std::string& name) {
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    return (program.parent_path().parent_path() / "lib" / "velloran" / "modules" / (name + ".so")).string();
}

void ModuleSounds::prepare() {
    if (!thread_.joinable()) {
        // Where the system grants no thread now, the next sound asks again.
        thread_ = startThread("velloran.module", [loading = loading_] { loading->load(); });
    }
}

std::unique_ptr<Sound> ModuleSounds::load(const std::string& name) {
    return std::make_unique<LateSound>(*this, name);
}

SystemSounds* ModuleSounds::sounds() {
    prepare();
    return loading_->isOver ? loading_->sounds.get() : nullptr;
}

} // namespace velloran::platform::posix
