#pragma once

#include <QImage>

namespace velloran {

/// Blurs an `Alpha8` picture nearly as a Gaussian of that standard deviation, in pixels, would: three passes of a
/// moving average in each direction. What lies outside of the picture counts as clear.
void blur(QImage& alpha, double deviation);

} // namespace velloran
