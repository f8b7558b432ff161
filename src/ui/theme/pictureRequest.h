#pragma once

#include <QColor>
#include <QString>
#include <QUrlQuery>

namespace velloran {

/// What follows the provider's name in the address of a picture: `name?key=value&…`.
struct PictureRequest {
    QString name;
    QUrlQuery values;

    explicit PictureRequest(const QString& address);

    /// The whole number under `key`; 0 when there is none.
    [[nodiscard]] int number(const QString& key) const;

    /// The colour under "color", written rrggbb or aarrggbb with or without a leading '#'; an invalid colour when there
    /// is none.
    [[nodiscard]] QColor color() const;
};

} // namespace velloran
