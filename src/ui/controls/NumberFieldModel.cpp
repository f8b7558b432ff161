#include "NumberFieldModel.h"

#include "NumberFieldLogic.h"
#include "platform/Platform.h"

#include <cmath>

namespace velloran::ui {

/// The one field behind the model, whatever its numbers are.
class NumberFieldModel::Field {
public:
    Field() = default;
    Field(const Field&) = delete;
    Field& operator=(const Field&) = delete;
    virtual ~Field() = default;

    [[nodiscard]] virtual const std::string& text() const = 0;
    [[nodiscard]] virtual bool hasPendingChange() const = 0;
    [[nodiscard]] virtual bool justUpdated() const = 0;
    virtual void type(const std::string& text) = 0;
    virtual void beginEditing() = 0;
    virtual void endEditing() = 0;
    virtual void commit() = 0;
    virtual void stepUp() = 0;
    virtual void stepDown() = 0;
    virtual void valueChanged(double value) = 0;
    virtual void applySettings() = 0;
};

template<typename T>
class NumberFieldModel::TypedField final : public Field {
public:
    explicit TypedField(NumberFieldModel& model)
        : model_(model),
          field_(
              platform::Platform::current().mainLoop, number(model.value_), settings(),
              {.store = [&model](T value) { storeIn(model, value); }, .changed = [&model] { emit model.changed(); }}) {}

    [[nodiscard]] const std::string& text() const override { return field_.text(); }

    [[nodiscard]] bool hasPendingChange() const override { return field_.hasPendingChange(); }

    [[nodiscard]] bool justUpdated() const override { return field_.justUpdated(); }

    void type(const std::string& text) override { field_.type(text); }

    void beginEditing() override { field_.beginEditing(); }

    void endEditing() override { field_.endEditing(); }

    void commit() override { field_.commitWithFlash(); }

    void stepUp() override { field_.stepUp(); }

    void stepDown() override { field_.stepDown(); }

    void valueChanged(double value) override { field_.valueChanged(number(value)); }

    void applySettings() override { field_.setSettings(settings()); }

private:
    static T number(double value) {
        if constexpr (std::is_same_v<T, double>) {
            return value;
        } else {
            return checkedInt(value);
        }
    }

    static void storeIn(NumberFieldModel& model, T value) {
        // Known here before it is told: the owner answers with the same number, which is no change from outside.
        model.value_ = static_cast<double>(value);
        emit model.stored(model.value_);
    }

    [[nodiscard]] typename NumberField<T>::Settings settings() const {
        typename NumberField<T>::Settings settings{number(model_.from_), number(model_.to_), std::nullopt, {}};
        if (model_.step_ != 0) {
            settings.step = number(model_.step_);
        }
        if constexpr (std::is_same_v<T, double>) {
            if (model_.decimals_ >= 0) {
                settings.formatter = [decimals = model_.decimals_](double value) {
                    return fixedDecimal(value, decimals);
                };
            }
        }
        return settings;
    }

    NumberFieldModel& model_;
    NumberField<T> field_;
};

NumberFieldModel::NumberFieldModel(QObject* parent) : QObject(parent) {
    connect(this, &NumberFieldModel::settingsChanged, this, &NumberFieldModel::applySettings);
}

NumberFieldModel::~NumberFieldModel() = default;

void NumberFieldModel::componentComplete() {
    if (integer_) {
        field_ = std::make_unique<TypedField<std::int64_t>>(*this);
    } else {
        field_ = std::make_unique<TypedField<double>>(*this);
    }
    emit changed();
}

void NumberFieldModel::setValue(double value) {
    if (value == value_) {
        return;
    }
    value_ = value;
    if (field_) {
        field_->valueChanged(value);
    }
}

QString NumberFieldModel::text() const {
    return field_ ? QString::fromStdString(field_->text()) : QString();
}

void NumberFieldModel::setText(const QString& text) {
    if (field_ && text != this->text()) {
        field_->type(text.toStdString());
    }
}

bool NumberFieldModel::hasPendingChange() const {
    return field_ && field_->hasPendingChange();
}

bool NumberFieldModel::justUpdated() const {
    return field_ && field_->justUpdated();
}

void NumberFieldModel::beginEditing() {
    field_->beginEditing();
}

void NumberFieldModel::endEditing() {
    field_->endEditing();
}

void NumberFieldModel::commit() {
    field_->commit();
}

void NumberFieldModel::stepUp() {
    field_->stepUp();
}

void NumberFieldModel::stepDown() {
    field_->stepDown();
}

void NumberFieldModel::applySettings() {
    if (field_) {
        field_->applySettings();
    }
}

} // namespace velloran::ui
