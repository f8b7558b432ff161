#include "ui/dialogs/FileReader.h"

#include "ui/dialogs/fileTransfer.h"

#include <mutex>

namespace velloran {

struct FileReader::Shared {
    void read() {
        QString wanted;
        {
            const std::lock_guard lock(mutex);
            wanted = path;
        }
        const std::optional<QByteArray> bytes = readWholeFile(wanted);
        const std::lock_guard lock(mutex);
        if (reader != nullptr) {
            emit reader->arrived(bytes);
        }
    }

    std::mutex mutex; // guards what follows
    QString path;
    /// Nothing once it is gone.
    FileReader* reader = nullptr;
};

FileReader::FileReader(QObject* parent)
    : QObject(parent),
      shared_(std::make_shared<Shared>()),
      reading_("velloran.files", [shared = shared_] { shared->read(); }) {
    shared_->reader = this;
    connect(this, &FileReader::arrived, this, &FileReader::tell, Qt::QueuedConnection);
}

FileReader::~FileReader() {
    const std::lock_guard lock(shared_->mutex);
    shared_->reader = nullptr;
}

void FileReader::tell(const std::optional<QByteArray>& bytes) {
    if (bytes) {
        emit done(*bytes);
    } else {
        emit failed();
    }
}

void FileReader::read(const QString& path) {
    {
        const std::lock_guard lock(shared_->mutex);
        shared_->path = path;
    }
    reading_.request();
}

} // namespace velloran
