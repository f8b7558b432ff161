#include "platform/portal/PortalDesktop.h"

#include "platform/portal/backEnds.h"
#include "platform/portal/desktopEntry.h"

#include <utility>

namespace velloran::platform::portal {

namespace {

/// First of all: the portal looks for it as soon as it is told the name.
bus::BusPlace withEntry(const bus::BusPlace& session, const QString& applicationName, const QString& program) {
    // Without one the portal refuses the name, and that is what the part tells.
    provideDesktopEntry(applicationName, program);
    return session;
}

} // namespace

PortalDesktop::PortalDesktop(EventLoop& loop, const bus::BusPlace& session, const QString& applicationName,
                             const QString& program, keys::CurrentLayout layout)
    : session_(withEntry(session, applicationName, program), bus::SessionBus::Start::inBackground),
      portal_(session_, applicationName),
      token_(RestoreToken::defaultPath()),
      remoteDesktop_(loop, portal_, token_, backEndsWith(QStringLiteral("org.freedesktop.impl.portal.RemoteDesktop"))),
      hotKeys_(loop, portal_, backEndsWith(QStringLiteral("org.freedesktop.impl.portal.GlobalShortcuts")),
               std::move(layout)),
      remoteDesktopParts_(remoteDesktop_.parts().stream().subscribe([this](const Desktop& offered) {
          parts_.modify([&offered](Desktop& now) {
              now.clicks = offered.clicks;
              now.trust = offered.trust;
          });
      })),
      hotKeysPart_(hotKeys_.part().stream().subscribe([this](const DesktopPart<HotKeys>& offered) {
          parts_.modify([&offered](Desktop& now) { now.hotKeys = offered; });
      })),
      system_(bus::ScreenLock::systemBus(), bus::SessionBus::Start::inBackground),
      lock_(session_, system_) {
    QObject::connect(&lock_, &bus::ScreenLock::changed, &remoteDesktop_, &RemoteDesktop::setLocked);
}

} // namespace velloran::platform::portal
