#pragma once

#include <QMetaType>
#include <QObject>
#include <QString>
#include <QtQmlIntegration>

#include <cstdint>

namespace velloran {

/// A whole number of 64 bits on its way through the views. The numbers of their language are real ones, which round
/// beyond 2^53; this one is only handed on there, and comes out as it went in.
struct WholeNumber {
    Q_GADGET
    QML_VALUE_TYPE(wholeNumber)

public:
    /// Plain decimal digits, for views that write it.
    [[nodiscard]] Q_INVOKABLE QString toString() const { return QString::number(value); }

    friend bool operator==(const WholeNumber&, const WholeNumber&) = default;

    std::int64_t value = 0;
};

} // namespace velloran
