#include "ui/controls/CountFieldModel.h"

#include "platform/Platform.h"

namespace velloran {

CountFieldModel::CountFieldModel(QObject* parent) : NumberFieldModel(parent) {
    connect(this, &NumberFieldModel::settingsChanged, this, [this] {
        if (field_) {
            field_->setSettings(settings());
        }
    });
}

void CountFieldModel::componentComplete() {
    NumberField<std::int64_t>::Callbacks callbacks{.store = [this](std::int64_t value) { store(value); },
                                                   .changed = [this] { emit changed(); }};
    show(field_.emplace(platform::Platform::current().mainLoop, value_.value, settings(), std::move(callbacks)));
}

void CountFieldModel::setValue(WholeNumber value) {
    if (value == value_) {
        return;
    }
    value_ = value;
    if (field_) {
        field_->valueChanged(value.value);
    }
}

NumberField<std::int64_t>::Settings CountFieldModel::settings() const {
    NumberField<std::int64_t>::Settings settings{from_.value, to_.value, std::nullopt, {}};
    if (canStep()) {
        settings.step = step_;
    }
    return settings;
}

void CountFieldModel::store(std::int64_t value) {
    // Known here before it is told: the owner answers with the same number, which is no change from outside.
    value_.value = value;
    emit stored(value_);
}

} // namespace velloran
