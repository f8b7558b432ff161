#include "ui/controls/NumberFieldModel.h"

#include "ui/controls/NumberFieldLogic.h"

namespace velloran {

QString NumberFieldModel::text() const {
    return field_ != nullptr ? QString::fromStdString(field_->text()) : QString();
}

void NumberFieldModel::setText(const QString& text) {
    if (field_ != nullptr && text != this->text()) {
        field_->type(text.toStdString());
    }
}

bool NumberFieldModel::hasPendingChange() const {
    return field_ != nullptr && field_->hasPendingChange();
}

bool NumberFieldModel::justUpdated() const {
    return field_ != nullptr && field_->justUpdated();
}

void NumberFieldModel::beginEditing() {
    field_->beginEditing();
}

void NumberFieldModel::endEditing() {
    field_->endEditing();
}

void NumberFieldModel::commit() {
    field_->commitWithFlash();
}

void NumberFieldModel::stepUp() {
    field_->stepUp();
}

void NumberFieldModel::stepDown() {
    field_->stepDown();
}

void NumberFieldModel::show(EditedNumber& field) {
    field_ = &field;
    emit changed();
}

} // namespace velloran
