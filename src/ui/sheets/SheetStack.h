#pragma once

#include <QObject>
#include <QtQmlIntegration>

#include <vector>

namespace velloran {

/// Knows which sheets and dialogs are open, the topmost last. A sheet that must not come between the user and another
/// one waits here for its turn. Main thread.
class SheetStack : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    /// Whether any sheet or dialog is open.
    Q_PROPERTY(bool isOccupied READ isOccupied NOTIFY isOccupiedChanged FINAL)
    /// What is open on top of everything else; null when nothing is open.
    Q_PROPERTY(QObject* top READ top NOTIFY changed FINAL)

public:
    explicit SheetStack(QObject* parent = nullptr);

    [[nodiscard]] bool isOccupied() const { return !open_.empty(); }

    [[nodiscard]] QObject* top() const;

    /// Opens `sheet` on top of the others. One that `waits` opens as soon as nothing else is open. No effect on a sheet
    /// that is open or waiting already. A sheet that is destroyed is closed first.
    Q_INVOKABLE void show(QObject* sheet, bool waits);

    /// Closes `sheet`, or lets it wait no longer. No effect on one that is neither open nor waiting.
    Q_INVOKABLE void hide(QObject* sheet);

    /// Place of `sheet` among the open ones, counted from the lowest; -1 when it is not open.
    Q_INVOKABLE [[nodiscard]] int levelOf(QObject* sheet) const;

signals:
    /// The open sheets are not the same as before.
    void changed();

    /// Told after a sheet has opened and before one closes: what lies below rests for as long as a sheet can have the
    /// focus, and is there to take it back.
    void isOccupiedChanged();

private:
    void remove(QObject* sheet);

    std::vector<QObject*> open_;
    std::vector<QObject*> waiting_;
};

} // namespace velloran
