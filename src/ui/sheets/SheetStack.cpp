#include "ui/sheets/SheetStack.h"

#include <algorithm>

namespace velloran {

SheetStack::SheetStack(QObject* parent) : QObject(parent) {}

QObject* SheetStack::top() const {
    return open_.empty() ? nullptr : open_.back();
}

void SheetStack::show(QObject* sheet, bool waits) {
    const bool isKnown =
        std::count(open_.begin(), open_.end(), sheet) + std::count(waiting_.begin(), waiting_.end(), sheet) > 0;
    if (sheet == nullptr || isKnown) {
        return;
    }
    connect(sheet, &QObject::destroyed, this, &SheetStack::remove);
    if (waits && isOccupied()) {
        waiting_.push_back(sheet);
        return;
    }
    open_.push_back(sheet);
    emit changed();
    emit isOccupiedChanged();
}

void SheetStack::hide(QObject* sheet) {
    if (sheet != nullptr) {
        disconnect(sheet, &QObject::destroyed, this, &SheetStack::remove);
        remove(sheet);
    }
}

int SheetStack::levelOf(QObject* sheet) const {
    const auto found = std::find(open_.begin(), open_.end(), sheet);
    return found != open_.end() ? static_cast<int>(found - open_.begin()) : -1;
}

void SheetStack::remove(QObject* sheet) {
    std::erase(waiting_, sheet);
    bool isChanged = std::erase(open_, sheet) > 0;
    if (open_.empty() && !waiting_.empty()) {
        open_.push_back(waiting_.front());
        waiting_.erase(waiting_.begin());
        isChanged = true;
    }
    if (isChanged) {
        emit isOccupiedChanged();
        emit changed();
    }
}

} // namespace velloran
