#pragma once

#include "harness/FakePortal.h"
#include "harness/WindowTest.h"

#include <QFile>
#include <QTemporaryDir>
#include <QUrl>

namespace velloran::tests {

/// The window with its options open, and a folder for what is exported and imported.
class ConfigFilesBench : public WindowTest {
protected:
    void SetUp() override {
        openMainWindow();
        tap(commaKey, {controlKey});
        get("Export");
    }

    [[nodiscard]] QString path(const QString& name) const { return folder.filePath(name); }

    [[nodiscard]] QString uri(const QString& name) const { return QUrl::fromLocalFile(path(name)).toString(); }

    void write(const QString& name, const QByteArray& bytes) const {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

    [[nodiscard]] QByteArray read(const QString& name) const {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    [[nodiscard]] QByteArray exported() const {
        return QByteArray::fromStdString(store->exportConfigData().value_or(Bytes()));
    }

    /// Presses the button and waits for the portal to be asked.
    void ask(FakePortal& portal, const QString& button) {
        const int before = portal.requests;
        click(get(button));
        ASSERT_TRUE(until([&] { return portal.requests > before; }));
    }

    /// Whether the window can be used again.
    bool isFree() {
        return until([&] {
            return engine->singletonInstance<QObject*>(stack())->property("top").value<QObject*>() == options();
        });
    }

    QTemporaryDir folder;

private:
    static int stack() { return qmlTypeId("Velloran", 1, 0, "SheetStack"); }

    [[nodiscard]] QObject* options() const {
        for (QQuickItem* item = find("Done"); item != nullptr; item = item->parentItem()) {
            if (QByteArray(item->metaObject()->className()).startsWith("OptionsSheet_")) {
                return item;
            }
        }
        return nullptr;
    }
};

} // namespace velloran::tests
