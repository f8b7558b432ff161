#pragma once

#include "fakes/FakePreferences.h"
#include "fakes/VirtualLoop.h"
#include "platform/HotKeys.h"
#include "platform/InputTrust.h"
#include "platform/Platform.h"
#include "platform/PointerEvents.h"
#include "platform/PointerPosition.h"
#include "platform/SystemLog.h"
#include "platform/SystemSounds.h"
#include "platform/UrlOpener.h"

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace velloran::fakes {

/// A platform that does nothing but write down, in `journal`, what it was asked to do, and answers as the test says. It
/// is the installed platform for as long as it exists.
class RecordingPlatform {
public:
    RecordingPlatform();
    RecordingPlatform(const RecordingPlatform&) = delete;
    RecordingPlatform& operator=(const RecordingPlatform&) = delete;
    ~RecordingPlatform();

    /// A press of a registered hot key arrives, as from the system.
    platform::Status pressHotKey(platform::HotKeyId id);
    /// The desktop's answer to a registration, which are numbered from 1. False when it has ended.
    bool answerHotKey(int number, const platform::HotKeyAnswer& answer);
    /// A handler call without an event.
    platform::Status callHandlerWithoutEvent();

    /// Entries of the journal that start with `prefix`.
    [[nodiscard]] std::vector<std::string> entries(const std::string& prefix) const;
    [[nodiscard]] int count(const std::string& prefix) const;

    [[nodiscard]] platform::SystemSounds& sounds() const;
    [[nodiscard]] platform::UrlOpener& urlOpener() const;

    VirtualLoop loop;
    /// Has all parts but the characters of keys.
    Published<platform::Desktop> desktop;
    FakePreferences preferences;
    std::vector<std::string> journal;
    /// False for runs of millions of clicks.
    bool keepsJournal = true;

    bool isTrusted = true;
    std::function<void()> trustChanged;
    std::optional<platform::Point> pointer = platform::Point{300.0, 200.0};
    /// Called before every reading of the pointer position.
    std::function<void()> onPointerRead;
    bool canReadLocation = true;
    std::set<platform::MouseEventType> unmakeableEvents;
    std::uint64_t postedEvents = 0;
    /// Presses that were followed directly by the release of the same button.
    std::uint64_t pairedClicks = 0;
    /// Called at every flush.
    std::function<void()> onFlush;
    /// Virtual times of flushes, in nanoseconds.
    std::vector<std::uint64_t> flushTimes;
    /// What every registration is answered at once; nothing for a desktop that answers late.
    std::optional<platform::Status> hotKeyStatus = platform::noErr;
    bool hasSound = true;
    std::map<int, platform::HotKeys::Handler> handlers;
    /// Those that have not ended, by their numbers.
    std::map<int, platform::HotKeys::AnswerReceiver> hotKeys;

private:
    class Events;
    class Position;
    class Trust;
    class Keys;
    class Sounds;
    class Opener;
    class Log;

    platform::Desktop makeDesktop();
    void note(const std::string& entry);

    std::set<int> boundHotKeys_;
    std::unique_ptr<Sounds> sounds_;
    std::unique_ptr<Opener> opener_;
    std::unique_ptr<Log> log_;
    std::unique_ptr<platform::PlatformInstallation> installation_;
};

} // namespace velloran::fakes
