#include "presets/view/FileReader.h"

#include "presets/view/fileTransfer.h"

#include <QPromise>

#include <memory>

namespace velloran {

FileReader::FileReader(QObject* parent) : QObject(parent) {
    connect(&result_, &QFutureWatcherBase::finished, this, &FileReader::tell);
}

void FileReader::read(const QString& path) {
    const auto promise = std::make_shared<QPromise<std::optional<QByteArray>>>();
    promise->start();
    result_.setFuture(promise->future());
    reading_.emplace("velloran.files", [promise, path] {
        promise->addResult(readWholeFile(path));
        promise->finish();
    });
    reading_->request();
}

void FileReader::tell() {
    if (const auto bytes = result_.result()) {
        emit done(*bytes);
    } else {
        emit failed();
    }
}

} // namespace velloran
