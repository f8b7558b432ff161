#include "platform/plasma/PlasmaDesktop.h"

#include <utility>

namespace velloran::platform::plasma {

PlasmaDesktop::PlasmaDesktop(EventLoop& loop, const bus::BusPlace& session, keys::CurrentLayout layout)
    : session_(session, bus::SessionBus::Start::inBackground),
      hotKeys_(loop, session_, std::move(layout)),
      pointer_(loop, session_),
      hotKeysPart_(hotKeys_.part().stream().subscribe([this](const DesktopPart<HotKeys>& offered) {
          parts_.modify([&offered](Desktop& now) { now.hotKeys = offered; });
      })),
      pointerPart_(pointer_.part().stream().subscribe([this](const DesktopPart<PointerPosition>& offered) {
          parts_.modify([&offered](Desktop& now) { now.pointer = offered; });
      })) {}

} // namespace velloran::platform::plasma
