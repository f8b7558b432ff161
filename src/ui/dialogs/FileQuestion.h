#pragma once

#include <QObject>
#include <QString>

#include <functional>

class QWindow;

namespace velloran {

/// What the user is asked for.
enum class FileQuestionKind {
    /// A file to read: one that exists.
    open,
    /// A place to write to: a name is proposed, and folders can be made.
    save,
};

/// A dialog that asks for one JSON file. It is put by `ask` and ends with exactly one of the signals; nothing is
/// emitted before `ask` has returned, nor after the question has been destroyed, which takes the dialog away.
class FileQuestion : public QObject {
    Q_OBJECT

public:
    static constexpr const char* proposedName = "Velloran-config.json";
    static constexpr const char* namePattern = "*.json";

    using QObject::QObject;

    /// Shows the dialog over `window`, which may be null.
    virtual void ask(FileQuestionKind kind, QWindow* window) = 0;

signals:
    /// The user chose this local file.
    void chosen(const QString& path);
    /// The user chose none.
    void cancelled();
    /// This desktop has no such dialog; nothing was shown.
    void unavailable();
};

} // namespace velloran
