#pragma once

#include <QObject>
#include <QQmlParserStatus>
#include <QString>
#include <QtQmlIntegration>

namespace velloran {

class EditedNumber;

/// A number field as its view sees it, whatever its numbers are. What it is told by the properties of its kind takes
/// effect when the view is complete; the badge waits on the event loop of the current platform.
class NumberFieldModel : public QObject, public QQmlParserStatus {
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    QML_ELEMENT
    QML_UNCREATABLE("A field is one of whole or of real numbers")

    /// What is being edited. Writing it is typing.
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY changed FINAL)
    Q_PROPERTY(bool hasPendingChange READ hasPendingChange NOTIFY changed FINAL)
    Q_PROPERTY(bool justUpdated READ justUpdated NOTIFY changed FINAL)
    Q_PROPERTY(bool canStep READ canStep NOTIFY settingsChanged FINAL)

public:
    using QObject::QObject;

    void classBegin() override {}

    [[nodiscard]] QString text() const;
    void setText(const QString& text);
    [[nodiscard]] bool hasPendingChange() const;
    [[nodiscard]] bool justUpdated() const;
    [[nodiscard]] virtual bool canStep() const = 0;

    Q_INVOKABLE void beginEditing();
    Q_INVOKABLE void endEditing();
    Q_INVOKABLE void commit();
    Q_INVOKABLE void stepUp();
    Q_INVOKABLE void stepDown();

signals:
    void changed();
    void settingsChanged();

protected:
    /// Shows this field from now on. It belongs to the kind and lives as long.
    void show(EditedNumber& field);

private:
    EditedNumber* field_ = nullptr;
};

} // namespace velloran
