#pragma once

#include "async/BackgroundJob.h"

#include <QByteArray>
#include <QObject>
#include <QString>

#include <memory>
#include <optional>

namespace velloran {

/// Reads whole files on a thread of its own, so that the window does not wait for the disk, or for what a desktop calls
/// a file. Destroying it waits for nothing; what is being read then is dropped.
class FileReader : public QObject {
    Q_OBJECT

public:
    explicit FileReader(QObject* parent = nullptr);
    ~FileReader() override;

    /// Has the file read, which ends with one of the signals. Asking again before that may drop the file before.
    void read(const QString& path);

signals:
    /// This is what the file holds.
    void done(const QByteArray& bytes);
    /// It cannot be read, or is not to be read whole.
    void failed();
    /// For the reader itself: the file has been read, by the other thread. Nothing when it could not be.
    void arrived(const std::optional<QByteArray>& bytes);

private:
    struct Shared;

    void tell(const std::optional<QByteArray>& bytes);

    std::shared_ptr<Shared> shared_;
    BackgroundJob reading_;
};

} // namespace velloran
