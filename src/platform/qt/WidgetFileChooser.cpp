#include "platform/qt/WidgetFileChooser.h"

#include <QFileDialog>
#include <QGuiApplication>
#include <QWindow>

#include <utility>

namespace velloran::platform::qt {

namespace {

QWindow* windowOf(std::uintptr_t number) {
    for (QWindow* const window : QGuiApplication::topLevelWindows()) {
        // Asking one that is not there yet for its number would make it.
        if (window->handle() != nullptr && window->winId() == number) {
            return window;
        }
    }
    return nullptr;
}

class WidgetFileDialog final : public FileDialog {
public:
    WidgetFileDialog(const FileQuestion& question, FileChooser::Done done) : done_(std::move(done)) {
        dialog_.setWindowTitle(QString::fromStdString(question.title));
        dialog_.setNameFilter(QStringLiteral("JSON files (*.json)"));
        dialog_.setDefaultSuffix(QStringLiteral("json"));
        if (question.purpose == FileQuestion::Purpose::save) {
            dialog_.setAcceptMode(QFileDialog::AcceptSave);
            dialog_.setFileMode(QFileDialog::AnyFile);
            dialog_.selectFile(QString::fromStdString(question.proposedName));
        } else {
            dialog_.setAcceptMode(QFileDialog::AcceptOpen);
            dialog_.setFileMode(QFileDialog::ExistingFile);
        }
        // In a turn of its own, when the dialog is done with itself: whoever is told may destroy it.
        QObject::connect(
            &dialog_, &QFileDialog::fileSelected, &dialog_,
            [this](const QString& path) {
                end({FileAnswer::Outcome::chosen, path.toStdString()});
            },
            Qt::QueuedConnection);
        QObject::connect(
            &dialog_, &QFileDialog::rejected, &dialog_,
            [this] {
                end({FileAnswer::Outcome::cancelled, {}});
            },
            Qt::QueuedConnection);
        // The dialog has to have a window of its own before that can belong to ours.
        dialog_.winId();
        dialog_.windowHandle()->setTransientParent(windowOf(question.window));
        dialog_.setWindowModality(Qt::WindowModal);
        dialog_.open();
    }

private:
    void end(const FileAnswer& answer) {
        const auto done = std::move(done_);
        done(answer);
    }

    FileChooser::Done done_;
    QFileDialog dialog_;
};

} // namespace

std::unique_ptr<FileDialog> WidgetFileChooser::ask(const FileQuestion& question, Done done) {
    return std::make_unique<WidgetFileDialog>(question, std::move(done));
}

} // namespace velloran::platform::qt
