#pragma once

#include "ui/dialogs/FileQuestion.h"
#include "ui/dialogs/FileReader.h"

#include <QByteArray>
#include <QObject>
#include <QPointer>
#include <QWindow>
#include <QtQmlIntegration>

#include <functional>
#include <memory>

namespace velloran {

/// Lets the user export to and import from a JSON file: with the desktop's own dialog where there is one, else with the
/// toolkit's. One dialog at a time; asking for a second does nothing. All failures are silent. The window never waits
/// for a file that is read.
class FileDialogs : public QObject {
    Q_OBJECT
    QML_ELEMENT
    /// The window that the dialogs belong to.
    Q_PROPERTY(QWindow* window READ window WRITE setWindow NOTIFY windowChanged FINAL)
    /// Whether a dialog is shown or about to be.
    Q_PROPERTY(bool isOpen READ isOpen NOTIFY isOpenChanged FINAL)

public:
    explicit FileDialogs(QObject* parent = nullptr);
    ~FileDialogs() override;

    [[nodiscard]] QWindow* window() const { return window_; }

    void setWindow(QWindow* window);

    [[nodiscard]] bool isOpen() const { return question_ != nullptr; }

    /// Asks where to put `bytes`, and writes them there.
    Q_INVOKABLE void exportFile(const QByteArray& bytes);

    /// Asks for a file, and reports what it holds by `imported`.
    Q_INVOKABLE void importFile();

signals:
    void imported(const QByteArray& bytes);
    void isOpenChanged();
    void windowChanged();

private:
    using Use = std::function<void(const QString& path)>;

    void ask(FileQuestionKind kind, const Use& use);
    void put(std::unique_ptr<FileQuestion> question, FileQuestionKind kind, const Use& use);
    void end();

    QPointer<QWindow> window_;
    std::unique_ptr<FileQuestion> question_;
    FileReader reader_{this};
};

} // namespace velloran
