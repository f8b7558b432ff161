#include "presets/view/ConfigFiles.h"

#include "presets/view/fileTransfer.h"

#include <utility>

namespace velloran {

namespace {

using platform::FileQuestion;

} // namespace

ConfigFiles::ConfigFiles(ConfigOwner& owner, platform::FileChooser& chooser) : owner_(owner), chooser_(chooser) {
    connect(&reader_, &FileReader::done, this,
            [this](const QByteArray& bytes) { owner_.importConfig(bytes.toStdString()); });
}

void ConfigFiles::exportConfig(QWindow* window) {
    const auto bytes = owner_.exportConfigData();
    if (!bytes) {
        return;
    }
    ask({FileQuestion::Purpose::save, "Export", "Velloran-config.json"}, window,
        [bytes = *bytes](const QString& path) { writeWholeFile(path, QByteArray::fromStdString(bytes)); });
}

void ConfigFiles::importConfig(QWindow* window) {
    ask({FileQuestion::Purpose::open, "Import", {}}, window, [this](const QString& path) { reader_.read(path); });
}

template<typename Use>
void ConfigFiles::ask(FileQuestion question, QWindow* window, Use use) {
    if (isAsking()) {
        return;
    }
    question.window = window != nullptr ? window->winId() : 0;
    dialog_ = chooser_.ask(question, [this, use = std::move(use)](const platform::FileAnswer& answer) {
        dialog_.reset();
        emit isAskingChanged();
        if (answer.outcome == platform::FileAnswer::Outcome::chosen) {
            use(QString::fromStdString(answer.path));
        }
    });
    emit isAskingChanged();
}

} // namespace velloran
