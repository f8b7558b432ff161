#pragma once

#include "ui/controls/NumberFieldModel.h"
#include "ui/controls/WholeNumber.h"

#include "ui/controls/NumberFieldLogic.h"

#include <optional>

namespace velloran {

// The toolkit's linter knows the base by its whole name only.
/// A field of whole numbers.
class CountFieldModel : public velloran::NumberFieldModel {
    Q_OBJECT
    QML_ELEMENT

    /// The number that is edited; bound to its owner, who hears of every number stored by `stored`.
    Q_PROPERTY(velloran::WholeNumber value READ value WRITE setValue NOTIFY changed FINAL)
    Q_PROPERTY(velloran::WholeNumber from MEMBER from_ NOTIFY settingsChanged FINAL)
    Q_PROPERTY(velloran::WholeNumber to MEMBER to_ NOTIFY settingsChanged FINAL)
    /// What a step adds or takes away; 0 for no stepping.
    Q_PROPERTY(int step MEMBER step_ NOTIFY settingsChanged FINAL)

public:
    explicit CountFieldModel(QObject* parent = nullptr);

    void componentComplete() override;

    [[nodiscard]] WholeNumber value() const { return value_; }

    void setValue(WholeNumber value);

    [[nodiscard]] bool canStep() const override { return step_ != 0; }

signals:
    /// The field has stored this number, which may be the one it had.
    void stored(velloran::WholeNumber value);

private:
    [[nodiscard]] NumberField<std::int64_t>::Settings settings() const;
    void store(std::int64_t value);

    std::optional<NumberField<std::int64_t>> field_;
    WholeNumber value_;
    WholeNumber from_;
    WholeNumber to_;
    int step_ = 0;
};

} // namespace velloran
