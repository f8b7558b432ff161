#pragma once

#include <QObject>
#include <QString>
#include <QtQmlIntegration>

namespace velloran {

/// The naming of a new preset: whether the sheet for it is shown, and the name so far.
class SavePresetModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool isShown READ isShown NOTIFY isShownChanged FINAL)
    /// What has been typed. Survives the sheet being put away, so that it is there again the next time.
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged FINAL)

public:
    explicit SavePresetModel(QObject* parent = nullptr);

    [[nodiscard]] bool isShown() const { return isShown_; }

    [[nodiscard]] const QString& name() const { return name_; }

    void setName(const QString& name);

    /// Shows the sheet.
    Q_INVOKABLE void begin();

    /// Reports the name without the blanks at its ends, if anything is left of it; then clears it and closes the sheet.
    Q_INVOKABLE void confirm();

    /// Clears the name and closes the sheet.
    Q_INVOKABLE void cancel();

    /// Closes the sheet and keeps the name.
    Q_INVOKABLE void putAway();

signals:
    /// The user chose this name.
    void confirmed(const QString& presetName);
    void isShownChanged();
    void nameChanged();

private:
    void setShown(bool isShown);

    bool isShown_ = false;
    QString name_;
};

} // namespace velloran
