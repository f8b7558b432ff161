#pragma once

#include "harness/Stage.h"

#include <QList>

#include <functional>

namespace velloran::test {

/// One picture of a part in all its states, each under its name.
class StateSheet {
public:
    /// `size` is that of one state, in points.
    explicit StateSheet(QSize size) : size_(size) {}

    /// Adds a picture of the piece of QML after `pose` has brought it into the state.
    void add(const QString& state, const QByteArray& qml, const std::function<void(Stage&)>& pose = {});

    /// All states below each other.
    [[nodiscard]] QImage picture() const;

private:
    struct Cell {
        QString state;
        QImage picture;
    };

    QSize size_;
    QList<Cell> cells_;
};

} // namespace velloran::test
