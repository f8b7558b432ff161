#pragma once

#include "ui/controls/NumberFieldModel.h"

#include "ui/controls/NumberFieldLogic.h"

#include <optional>

namespace velloran {

// The toolkit's linter knows the base by its whole name only.
/// A field of real numbers.
class RealFieldModel : public velloran::NumberFieldModel {
    Q_OBJECT
    QML_ELEMENT

    /// The number that is edited; bound to its owner, who hears of every number stored by `stored`.
    Q_PROPERTY(double value READ value WRITE setValue NOTIFY changed FINAL)
    Q_PROPERTY(double from MEMBER from_ NOTIFY settingsChanged FINAL)
    Q_PROPERTY(double to MEMBER to_ NOTIFY settingsChanged FINAL)
    /// What a step adds or takes away; 0 for no stepping.
    Q_PROPERTY(double step MEMBER step_ NOTIFY settingsChanged FINAL)
    /// Digits shown behind the full stop; less than 0 shows as many as the number has.
    Q_PROPERTY(int decimals MEMBER decimals_ NOTIFY settingsChanged FINAL)

public:
    explicit RealFieldModel(QObject* parent = nullptr);

    void componentComplete() override;

    [[nodiscard]] double value() const { return value_; }

    void setValue(double value);

    [[nodiscard]] bool canStep() const override { return step_ != 0; }

signals:
    /// The field has stored this number, which may be the one it had.
    void stored(double value);

private:
    [[nodiscard]] NumberField<double>::Settings settings() const;
    void store(double value);

    std::optional<NumberField<double>> field_;
    double value_ = 0;
    double from_ = 0;
    double to_ = 0;
    double step_ = 0;
    int decimals_ = -1;
};

} // namespace velloran
