#include "ui/theme/Providers.h"

#include "ui/theme/IconProvider.h"
#include "ui/theme/ShadowProvider.h"

#include <QQmlEngine>

namespace velloran {

// The engine takes ownership of each provider.
void registerProviders(QQmlEngine& engine) {
    engine.addImageProvider("icon", new IconProvider);
    engine.addImageProvider("shadow", new ShadowProvider);
}

} // namespace velloran
