#include "fakes/RecordingPlatform.h"

#include "base/text.h"

#include <algorithm>

namespace velloran::fakes {

namespace {

std::string describe(const platform::MouseEvent& event) {
    return std::to_string(static_cast<unsigned>(event.type)) + " button " +
           std::to_string(static_cast<unsigned>(event.button)) + " at " + shortestDecimal(event.position.x) + "," +
           shortestDecimal(event.position.y);
}

bool isPress(const platform::MouseEvent& event) {
    using enum platform::MouseEventType;
    return event.type == leftMouseDown || event.type == rightMouseDown || event.type == otherMouseDown;
}

bool isReleaseOf(const platform::MouseEvent& event, const platform::MouseEvent& press) {
    return static_cast<unsigned>(event.type) == static_cast<unsigned>(press.type) + 1 && event.button == press.button;
}

} // namespace

class RecordingPlatform::Events final : public platform::PointerEvents {
public:
    explicit Events(RecordingPlatform& owner) : owner_(owner) {}

    std::optional<platform::Point> location() override {
        owner_.note("read location");
        return owner_.canReadLocation ? owner_.pointer : std::nullopt;
    }

    std::optional<platform::MouseEvent> makeMouseEvent(platform::MouseEventType type, platform::Point position,
                                                       platform::EventButton button) override {
        if (owner_.unmakeableEvents.contains(type)) {
            return std::nullopt;
        }
        return platform::MouseEvent{type, position, button};
    }

    void post(const platform::MouseEvent& event) override {
        ++owner_.postedEvents;
        if (isPress(event)) {
            press_ = event;
        } else {
            owner_.pairedClicks += press_ && isReleaseOf(event, *press_) ? 1U : 0U;
            press_.reset();
        }
        if (owner_.keepsJournal) {
            owner_.note("post " + describe(event));
        }
    }

    void flush() override {
        if (owner_.keepsJournal) {
            owner_.flushTimes.push_back(owner_.loop.elapsed());
            owner_.note("flush");
        }
        if (owner_.onFlush) {
            owner_.onFlush();
        }
    }

private:
    RecordingPlatform& owner_;
    std::optional<platform::MouseEvent> press_;
};

class RecordingPlatform::Position final : public platform::PointerPosition {
public:
    explicit Position(RecordingPlatform& owner) : owner_(owner) {}

    std::optional<platform::Point> currentPosition() override {
        if (owner_.onPointerRead) {
            owner_.onPointerRead();
        }
        return owner_.pointer;
    }

private:
    RecordingPlatform& owner_;
};

class RecordingPlatform::Trust final : public platform::InputTrust {
public:
    explicit Trust(RecordingPlatform& owner) : owner_(owner) {}

    bool isTrusted() override {
        owner_.note("ask trust");
        return owner_.isTrusted;
    }

    bool requestPrompt(platform::PromptReason reason) override {
        owner_.note(reason == platform::PromptReason::automatic ? "prompt for trust" : "open settings");
        return owner_.isTrusted;
    }

    void onChanged(std::function<void()> changed) override { owner_.trustChanged = std::move(changed); }

private:
    RecordingPlatform& owner_;
};

class RecordingPlatform::Keys final : public platform::HotKeys {
public:
    explicit Keys(RecordingPlatform& owner) : owner_(owner) {}

    Subscription installHandler(Handler handler) override {
        owner_.note("install handler");
        Subscription installed([&owner = owner_, number = ++lastHandler_] {
            owner.note("remove handler");
            owner.handlers.erase(number);
        });
        owner_.handlers.emplace(lastHandler_, std::move(handler));
        return installed;
    }

    Subscription registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers, platform::HotKeyId id,
                                AnswerReceiver answered) override {
        owner_.note("register key " + std::to_string(keyCode) + " modifiers " + std::to_string(modifiers) +
                    " signature " + std::to_string(id.signature) + " id " + std::to_string(id.id));
        const int number = ++lastHotKey_;
        // Before it is there: an exception on the way leaves nothing behind then.
        Subscription registered([&owner = owner_, number] {
            if (owner.hotKeys.erase(number) != 0) {
                owner.note("unregister key");
            }
        });
        owner_.hotKeys.emplace(number, std::move(answered));
        if (owner_.hotKeyStatus) {
            owner_.answerHotKey(number, {*owner_.hotKeyStatus, {}});
        }
        return registered;
    }

private:
    RecordingPlatform& owner_;
    int lastHandler_ = 0;
    int lastHotKey_ = 0;
};

class RecordingPlatform::Sounds final : public platform::SystemSounds {
public:
    explicit Sounds(RecordingPlatform& owner) : owner_(owner) {}

    std::unique_ptr<platform::Sound> load(const std::string& name) override {
        owner_.note("load sound " + name);
        if (!owner_.hasSound) {
            return nullptr;
        }
        return std::make_unique<RecordedSound>(owner_);
    }

private:
    class RecordedSound final : public platform::Sound {
    public:
        explicit RecordedSound(RecordingPlatform& owner) : owner_(owner) {}

        void play() override { owner_.note("play sound"); }

        void stop() override { owner_.note("stop sound"); }

    private:
        RecordingPlatform& owner_;
    };

    RecordingPlatform& owner_;
};

class RecordingPlatform::Opener final : public platform::UrlOpener {
public:
    explicit Opener(RecordingPlatform& owner) : owner_(owner) {}

    void open(const std::string& url) override { owner_.note("open url " + url); }

private:
    RecordingPlatform& owner_;
};

class RecordingPlatform::Log final : public platform::SystemLog {
public:
    explicit Log(RecordingPlatform& owner) : owner_(owner) {}

    void write(std::string_view line) override { owner_.note("log " + std::string(line)); }

private:
    RecordingPlatform& owner_;
};

RecordingPlatform::RecordingPlatform()
    : desktop(makeDesktop()),
      sounds_(std::make_unique<Sounds>(*this)),
      opener_(std::make_unique<Opener>(*this)),
      log_(std::make_unique<Log>(*this)),
      installation_(std::make_unique<platform::PlatformInstallation>(platform::Platform{loop, desktop, *log_})) {}

RecordingPlatform::~RecordingPlatform() = default;

platform::Desktop RecordingPlatform::makeDesktop() {
    platform::Desktop made;
    made.clicks.part = std::make_shared<Events>(*this);
    made.trust.part = std::make_shared<Trust>(*this);
    made.pointer.part = std::make_shared<Position>(*this);
    made.hotKeys.part = std::make_shared<Keys>(*this);
    return made;
}

platform::SystemSounds& RecordingPlatform::sounds() const {
    return *sounds_;
}

platform::UrlOpener& RecordingPlatform::urlOpener() const {
    return *opener_;
}

platform::Status RecordingPlatform::pressHotKey(platform::HotKeyId id) {
    const platform::HotKeyEvent event{id};
    platform::Status status = platform::noErr;
    const auto installed = handlers;
    for (const auto& [reference, handler] : installed) {
        status = handler(&event);
    }
    return status;
}

bool RecordingPlatform::answerHotKey(int number, const platform::HotKeyAnswer& answer) {
    const auto found = hotKeys.find(number);
    if (found == hotKeys.end()) {
        return false;
    }
    const bool isRefused = answer.status != platform::noErr && !boundHotKeys_.contains(number);
    const auto answered = isRefused ? std::move(hotKeys.extract(found).mapped()) : found->second;
    boundHotKeys_.insert(number);
    answered(answer);
    return true;
}

platform::Status RecordingPlatform::callHandlerWithoutEvent() {
    platform::Status status = platform::noErr;
    const auto installed = handlers;
    for (const auto& [reference, handler] : installed) {
        status = handler(nullptr);
    }
    return status;
}

std::vector<std::string> RecordingPlatform::entries(const std::string& prefix) const {
    std::vector<std::string> found;
    std::copy_if(journal.begin(), journal.end(), std::back_inserter(found),
                 [&](const std::string& entry) { return entry.starts_with(prefix); });
    return found;
}

int RecordingPlatform::count(const std::string& prefix) const {
    return static_cast<int>(entries(prefix).size());
}

void RecordingPlatform::note(const std::string& entry) {
    if (keepsJournal) {
        journal.push_back(entry);
    }
}

} // namespace velloran::fakes
