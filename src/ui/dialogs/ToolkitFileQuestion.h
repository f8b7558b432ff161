#pragma once

#include "ui/dialogs/FileQuestion.h"

#include <QPointer>

class QFileDialog;

namespace velloran {

/// Asks with the widget toolkit's own dialog. Needs a `QApplication`.
class ToolkitFileQuestion final : public FileQuestion {
    Q_OBJECT

public:
    using FileQuestion::FileQuestion;
    ~ToolkitFileQuestion() override;

    void ask(FileQuestionKind kind, QWindow* window) override;

private:
    QPointer<QFileDialog> dialog_;
};

} // namespace velloran
