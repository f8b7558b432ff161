#pragma once

#include "presets/ConfigOwner.h"

#include <QObject>
#include <QString>
#include <QVariant>
#include <QtQmlIntegration>

#include <optional>

namespace velloran {

/// The presets as the views see them: lists of {id, name}. Main thread.
class PresetsModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the program")

    Q_PROPERTY(QVariantList builtIns READ builtIns CONSTANT FINAL)

public:
    /// `owner` outlives this object.
    explicit PresetsModel(ConfigOwner& owner, QObject* parent = nullptr);

    [[nodiscard]] QVariantList builtIns() const;
    /// The user's own at this moment.
    [[nodiscard]] Q_INVOKABLE QVariantList own() const;
    /// By identifier; one that no preset has changes nothing.
    Q_INVOKABLE void apply(const QString& id);
    Q_INVOKABLE void remove(const QString& id);
    /// Keeps the configuration as it is now.
    Q_INVOKABLE void saveCurrent(const QString& name);
    /// Goes back to the default configuration; the hotkey stays.
    Q_INVOKABLE void resetToDefaults();

private:
    [[nodiscard]] std::optional<Preset> presetWith(const QString& id) const;

    ConfigOwner& owner_;
};

} // namespace velloran
