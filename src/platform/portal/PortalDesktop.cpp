#include "platform/portal/PortalDesktop.h"

#include "platform/portal/backEnds.h"
#include "platform/portal/desktopEntry.h"

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
                             const QString& program)
    : session_(withEntry(session, applicationName, program), bus::SessionBus::Start::inBackground),
      portal_(session_, applicationName),
      token_(RestoreToken::defaultPath()),
      remoteDesktop_(loop, portal_, token_, backEndsWith(QStringLiteral("org.freedesktop.impl.portal.RemoteDesktop"))),
      system_(bus::ScreenLock::systemBus(), bus::SessionBus::Start::inBackground),
      lock_(session_, system_) {
    QObject::connect(&lock_, &bus::ScreenLock::changed, &remoteDesktop_, &RemoteDesktop::setLocked);
}

} // namespace velloran::platform::portal
