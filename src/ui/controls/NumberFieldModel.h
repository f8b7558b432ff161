#pragma once

#include <QObject>
#include <QQmlParserStatus>
#include <QString>
#include <QtQmlIntegration>

#include <memory>

namespace velloran::ui {

/// A number field as its view sees it, over whole or over real numbers. What it is told by its properties takes effect
/// when the view is complete; the badge waits on the event loop of the current platform.
class NumberFieldModel : public QObject, public QQmlParserStatus {
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    QML_ELEMENT

    /// The number that is edited; bound to its owner, who hears of every number stored by `stored`.
    Q_PROPERTY(double value READ value WRITE setValue NOTIFY changed FINAL)
    Q_PROPERTY(double from MEMBER from_ NOTIFY settingsChanged FINAL)
    Q_PROPERTY(double to MEMBER to_ NOTIFY settingsChanged FINAL)
    /// What a step adds or takes away; 0 for no stepping.
    Q_PROPERTY(double step MEMBER step_ NOTIFY settingsChanged FINAL)
    /// Whole numbers of 64 bits instead of real ones. Decided before the view is complete.
    Q_PROPERTY(bool integer MEMBER integer_ NOTIFY settingsChanged FINAL)
    /// Digits shown behind the full stop of a real number; less than 0 shows as many as the number has.
    Q_PROPERTY(int decimals MEMBER decimals_ NOTIFY settingsChanged FINAL)

    /// What is being edited. Writing it is typing.
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY changed FINAL)
    Q_PROPERTY(bool hasPendingChange READ hasPendingChange NOTIFY changed FINAL)
    Q_PROPERTY(bool justUpdated READ justUpdated NOTIFY changed FINAL)

public:
    explicit NumberFieldModel(QObject* parent = nullptr);
    ~NumberFieldModel() override;

    void classBegin() override {}

    void componentComplete() override;

    [[nodiscard]] double value() const { return value_; }

    void setValue(double value);
    [[nodiscard]] QString text() const;
    void setText(const QString& text);
    [[nodiscard]] bool hasPendingChange() const;
    [[nodiscard]] bool justUpdated() const;

    Q_INVOKABLE void beginEditing();
    Q_INVOKABLE void endEditing();
    Q_INVOKABLE void commit();
    Q_INVOKABLE void stepUp();
    Q_INVOKABLE void stepDown();

signals:
    /// The field has stored this number, which may be the one it had.
    void stored(double value);
    void changed();
    void settingsChanged();

private:
    class Field;
    template<typename T>
    class TypedField;

    void applySettings();

    std::unique_ptr<Field> field_;
    double value_ = 0;
    double from_ = 0;
    double to_ = 0;
    double step_ = 0;
    int decimals_ = -1;
    bool integer_ = false;
};

} // namespace velloran::ui
