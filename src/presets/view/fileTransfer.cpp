#include "presets/view/fileTransfer.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace velloran {

std::optional<QByteArray> readWholeFile(const QString& path) {
    const QFileInfo info(path);
    if (!info.isFile() || info.size() > longestFile) {
        return std::nullopt;
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    // What the system says of a size is not always true.
    const QByteArray content = file.read(longestFile + 1);
    if (file.error() != QFileDevice::NoError || content.size() > longestFile) {
        return std::nullopt;
    }
    return content;
}

bool writeWholeFile(const QString& path, const QByteArray& bytes) {
    QSaveFile file(path);
    // A folder in which no second file may be made, as a document portal's, still takes the bytes.
    file.setDirectWriteFallback(true);
    // The bytes may still be in memory. Committing pays no attention to a disk that has no room for them, and would put
    // an empty file in the place of the old one.
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.flush() && file.commit();
}

} // namespace velloran
