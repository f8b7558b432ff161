#pragma once

#include <QObject>
#include <QtQmlIntegration>
#include <QWindow>

#include "platform/FileChooser.h"
#include "presets/ConfigOwner.h"
#include "presets/view/FileReader.h"

#include <memory>
#include <string>

namespace velloran {

/// Lets the user export the configuration to a JSON file, and import it from one. One dialog at a time; asking for a
/// second does nothing. All failures are silent. The window never waits for a file that is read, and what is being read
/// arrives whatever is shown by then.
class ConfigFiles : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the program")
    /// Whether a dialog is shown or about to be.
    Q_PROPERTY(bool isAsking READ isAsking NOTIFY isAskingChanged FINAL)

public:
    /// Both have to outlive this.
    ConfigFiles(ConfigOwner& owner, platform::FileChooser& chooser);

    [[nodiscard]] bool isAsking() const { return dialog_ != nullptr; }

    /// Asks where to put the configuration as it is now, and writes it there; nothing when it has no exportable form.
    Q_INVOKABLE void exportConfig(QWindow* window);

    /// Asks for a file, and takes over what it holds.
    Q_INVOKABLE void importConfig(QWindow* window);

signals:
    void isAskingChanged();

private:
    template<typename Use>
    void ask(platform::FileQuestion question, QWindow* window, Use use);

    ConfigOwner& owner_;
    platform::FileChooser& chooser_;
    std::unique_ptr<platform::FileDialog> dialog_;
    FileReader reader_{this};
};

} // namespace velloran
