#include "ui/controls/OnDemand.h"

#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>

namespace velloran {
namespace {

/// Where what `owner` makes is shown.
QQuickItem* itemOf(QObject* owner) {
    const auto* window = qobject_cast<QQuickWindow*>(owner);
    return window != nullptr ? window->contentItem() : qobject_cast<QQuickItem*>(owner);
}

} // namespace

OnDemand::OnDemand(QObject* parent) : QObject(parent) {}

void OnDemand::componentComplete() {
    isComplete_ = true;
    if (isWanted_) {
        make();
    }
}

void OnDemand::setWanted(bool isWanted) {
    if (isWanted == isWanted_) {
        return;
    }
    isWanted_ = isWanted;
    emit wantedChanged();
    if (isWanted_ && isComplete_) {
        make();
    }
}

QVariant OnDemand::get(const QVariantMap& properties) {
    if (!properties.isEmpty()) {
        properties_ = properties;
    }
    make();
    return QVariant::fromValue(made_.data());
}

void OnDemand::make() {
    if (made_) {
        return;
    }
    if (content_ != nullptr) {
        makeFrom(*content_, *content_->creationContext());
        return;
    }
    QQmlComponent file(qmlEngine(this), qmlContext(this)->resolvedUrl(source_));
    if (!file.isReady()) {
        qFatal("%s", qPrintable(file.errorString()));
    }
    makeFrom(file, *qmlContext(this));
}

void OnDemand::makeFrom(QQmlComponent& component, QQmlContext& context) {
    QObject* const object = component.beginCreate(&context);
    made_ = object;
    component.setInitialProperties(object, properties_);
    // Before it is complete: what it shows may depend on where.
    QQuickItem* const place = itemOf(parent());
    object->setParent(place != nullptr ? place : parent());
    if (auto* const item = qobject_cast<QQuickItem*>(object)) {
        item->setParentItem(place);
    }
    component.completeCreate();
    emit madeChanged();
}

} // namespace velloran
