#include "presets/view/SavePresetModel.h"

#include "base/text.h"

namespace velloran {

SavePresetModel::SavePresetModel(QObject* parent) : QObject(parent) {}

void SavePresetModel::setName(const QString& name) {
    if (name_ == name) {
        return;
    }
    name_ = name;
    emit nameChanged();
}

void SavePresetModel::begin() {
    setShown(true);
}

void SavePresetModel::confirm() {
    const QString presetName = QString::fromStdString(trimmed(name_.toStdString()));
    if (!presetName.isEmpty()) {
        emit confirmed(presetName);
    }
    cancel();
}

void SavePresetModel::cancel() {
    setName({});
    setShown(false);
}

void SavePresetModel::putAway() {
    setShown(false);
}

void SavePresetModel::setShown(bool isShown) {
    if (isShown_ == isShown) {
        return;
    }
    isShown_ = isShown;
    emit isShownChanged();
}

} // namespace velloran
