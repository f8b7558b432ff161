#pragma once

class QQmlEngine;

namespace velloran {

/// Gives the engine the pictures that the theme makes by itself: `image://icon` and `image://shadow`.
/// To be called once for each engine, before it loads a view. The engine owns what is registered.
void registerProviders(QQmlEngine& engine);

} // namespace velloran
