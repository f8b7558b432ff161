#pragma once

#include "async/BackgroundJob.h"

#include <QByteArray>
#include <QFutureWatcher>
#include <QObject>
#include <QString>

#include <optional>

namespace velloran {

/// Reads whole files on a thread of its own, so that the window does not wait for the disk, or for what a desktop calls
/// a file. Destroying it waits for nothing; what is being read then is dropped.
class FileReader : public QObject {
    Q_OBJECT

public:
    explicit FileReader(QObject* parent = nullptr);

    /// Has the file read, which ends with one of the signals. Drops a file that is being read, which may hang for ever.
    void read(const QString& path);

signals:
    /// This is what the file holds.
    void done(const QByteArray& bytes);
    /// It cannot be read, or is not to be read whole.
    void failed();

private:
    void tell();

    QFutureWatcher<std::optional<QByteArray>> result_;
    /// A job, and a thread, for each file: nobody knows whether the one before will ever be through.
    std::optional<BackgroundJob> reading_;
};

} // namespace velloran
