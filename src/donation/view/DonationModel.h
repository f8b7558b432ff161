#pragma once

#include "async/Subscription.h"
#include "donation/DonationManager.h"

#include <QObject>
#include <QtQmlIntegration>

namespace velloran {

/// The donation reminder as the views see it.
class DonationModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the program")

    /// Written when the prompt is closed without an answer.
    Q_PROPERTY(bool promptVisible READ isPromptVisible WRITE setPromptVisible NOTIFY promptVisibleChanged FINAL)

public:
    /// `manager` outlives this object.
    explicit DonationModel(DonationManager& manager, QObject* parent = nullptr);

    [[nodiscard]] bool isPromptVisible() const { return manager_.isPromptVisible.get(); }

    void setPromptVisible(bool isVisible) { manager_.isPromptVisible.set(isVisible); }

    Q_INVOKABLE void evaluate() { manager_.evaluate(); }

    Q_INVOKABLE void openDonationLink() { manager_.openDonationLink(); }

    Q_INVOKABLE void snooze() { manager_.snooze(); }

    Q_INVOKABLE void markDonated() { manager_.markDonated(); }

    Q_INVOKABLE void acknowledgeAlreadyDonated() { manager_.acknowledgeAlreadyDonated(); }

signals:
    void promptVisibleChanged();

private:
    DonationManager& manager_;
    Subscription subscription_;
};

} // namespace velloran
