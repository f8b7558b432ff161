#pragma once

#include "ui/dialogs/FileQuestion.h"

#include <QDBusConnection>
#include <QVariantMap>

namespace velloran {

/// Asks with the desktop's own dialog, through its portal. Waits for nothing: the answers come by signal.
class PortalFileQuestion final : public FileQuestion {
    Q_OBJECT

public:
    explicit PortalFileQuestion(QObject* parent = nullptr);
    ~PortalFileQuestion() override;

    void ask(FileQuestionKind kind, QWindow* window) override;

private slots:
    void answered(uint response, const QVariantMap& results);

private:
    void put(FileQuestionKind kind, const QString& windowHandle);
    void listenTo(const QString& requestPath);
    void close();

    QDBusConnection bus_;
    /// The question on its way; empty when none is.
    QString requestPath_;
};

} // namespace velloran
