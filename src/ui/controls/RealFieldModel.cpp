#include "ui/controls/RealFieldModel.h"

#include "platform/Platform.h"

namespace velloran {

RealFieldModel::RealFieldModel(QObject* parent) : NumberFieldModel(parent) {
    connect(this, &NumberFieldModel::settingsChanged, this, [this] {
        if (field_) {
            field_->setSettings(settings());
        }
    });
}

void RealFieldModel::componentComplete() {
    NumberField<double>::Callbacks callbacks{.store = [this](double value) { store(value); },
                                             .changed = [this] { emit changed(); }};
    show(field_.emplace(platform::Platform::current().mainLoop, value_, settings(), std::move(callbacks)));
}

void RealFieldModel::setValue(double value) {
    if (value == value_) {
        return;
    }
    value_ = value;
    if (field_) {
        field_->valueChanged(value);
    }
}

NumberField<double>::Settings RealFieldModel::settings() const {
    NumberField<double>::Settings settings{from_, to_, std::nullopt, {}};
    if (canStep()) {
        settings.step = step_;
    }
    if (decimals_ >= 0) {
        settings.formatter = [decimals = decimals_](double value) { return fixedDecimal(value, decimals); };
    }
    return settings;
}

void RealFieldModel::store(double value) {
    // Known here before it is told: the owner answers with the same number, which is no change from outside.
    value_ = value;
    emit stored(value_);
}

} // namespace velloran
