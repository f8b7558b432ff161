#include "ui/dialogs/FileDialogs.h"

#include "ui/dialogs/PortalFileQuestion.h"
#include "ui/dialogs/ToolkitFileQuestion.h"
#include "ui/dialogs/fileTransfer.h"

#include <utility>

namespace velloran {

FileDialogs::FileDialogs(QObject* parent) : QObject(parent) {
    connect(&reader_, &FileReader::done, this, &FileDialogs::imported);
}

FileDialogs::~FileDialogs() = default;

void FileDialogs::setWindow(QWindow* window) {
    if (window_ == window) {
        return;
    }
    window_ = window;
    emit windowChanged();
}

void FileDialogs::exportFile(const QByteArray& bytes) {
    ask(FileQuestionKind::save, [bytes](const QString& path) { writeWholeFile(path, bytes); });
}

void FileDialogs::importFile() {
    ask(FileQuestionKind::open, [this](const QString& path) { reader_.read(path); });
}

void FileDialogs::ask(FileQuestionKind kind, const Use& use) {
    if (isOpen()) {
        return;
    }
    auto portal = std::make_unique<PortalFileQuestion>();
    connect(portal.get(), &FileQuestion::unavailable, this, [this, kind, use] {
        question_.release()->deleteLater();
        put(std::make_unique<ToolkitFileQuestion>(), kind, use);
    });
    put(std::move(portal), kind, use);
    emit isOpenChanged();
}

void FileDialogs::put(std::unique_ptr<FileQuestion> question, FileQuestionKind kind, const Use& use) {
    connect(question.get(), &FileQuestion::chosen, this, [this, use](const QString& path) {
        end();
        use(path);
    });
    connect(question.get(), &FileQuestion::cancelled, this, &FileDialogs::end);
    question_ = std::move(question);
    question_->ask(kind, window_);
}

void FileDialogs::end() {
    // The question is still emitting; it goes when it is done.
    question_.release()->deleteLater();
    emit isOpenChanged();
}

} // namespace velloran
