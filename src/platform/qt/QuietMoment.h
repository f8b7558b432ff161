#pragma once

#include "base/Moment.h"

#include <QObject>

namespace velloran::platform::qt {

/// Holds back what the toolkit does by its timers, its animations and pictures among it, while a moment is near at
/// which somebody else needs the machine: a picture that is begun just then takes the processor from the X server, in
/// the middle of the click that it is handing on. One that ends before the moment is begun as ever; any other begins
/// behind it, two milliseconds late at most. Needs the toolkit's application object, and lives on its thread.
class QuietMoment final : public QObject {
public:
    QuietMoment();

    /// From now on this is the moment, and the only one.
    void set(Moment moment) { moment_ = moment; }

    bool eventFilter(QObject* receiver, QEvent* event) override;

private:
    Moment moment_ = Moment::min();
};

} // namespace velloran::platform::qt
