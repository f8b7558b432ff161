#include "platform/gnome/GnomeDesktop.h"

#include <QString>

#include <utility>

namespace velloran::platform::gnome {

GnomeDesktop::GnomeDesktop(EventLoop& loop, const bus::BusPlace& session, HotkeyConsent& consent,
                           keys::CurrentLayout layout, std::function<bool()> wouldEnd)
    : session_(session, bus::SessionBus::Start::inBackground),
      hotKeys_(loop, session_, QString::fromUtf8(session.address), consent, std::move(layout), std::move(wouldEnd)),
      hotKeysPart_(hotKeys_.part().stream().subscribe([this](const DesktopPart<HotKeys>& offered) {
          parts_.modify([&offered](Desktop& now) { now.hotKeys = offered; });
      })) {}

} // namespace velloran::platform::gnome
