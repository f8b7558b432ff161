#include "ui/dialogs/ToolkitFileQuestion.h"

#include <QFileDialog>
#include <QWindow>

namespace velloran {

ToolkitFileQuestion::~ToolkitFileQuestion() {
    delete dialog_.data();
}

void ToolkitFileQuestion::ask(FileQuestionKind kind, QWindow* window) {
    dialog_ = new QFileDialog;
    dialog_->setNameFilter(tr("JSON files (%1)").arg(QLatin1String(namePattern)));
    dialog_->setDefaultSuffix(QStringLiteral("json"));
    if (kind == FileQuestionKind::save) {
        dialog_->setWindowTitle(tr("Export"));
        dialog_->setAcceptMode(QFileDialog::AcceptSave);
        dialog_->setFileMode(QFileDialog::AnyFile);
        dialog_->selectFile(QLatin1String(proposedName));
    } else {
        dialog_->setWindowTitle(tr("Import"));
        dialog_->setAcceptMode(QFileDialog::AcceptOpen);
        dialog_->setFileMode(QFileDialog::ExistingFile);
    }
    connect(dialog_, &QFileDialog::fileSelected, this, &FileQuestion::chosen);
    connect(dialog_, &QFileDialog::rejected, this, &FileQuestion::cancelled);
    // The dialog has to have a window of its own before that can belong to ours.
    dialog_->winId();
    dialog_->windowHandle()->setTransientParent(window);
    dialog_->setWindowModality(Qt::WindowModal);
    dialog_->open();
}

} // namespace velloran
