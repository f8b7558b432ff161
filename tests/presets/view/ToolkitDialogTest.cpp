#include "presets/view/ConfigFilesBench.h"

#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>

namespace velloran::tests {

namespace {

class ToolkitDialogTest : public ConfigFilesBench {
protected:
    /// The toolkit's dialog, once it is there.
    QFileDialog* dialog() {
        QFileDialog* found = nullptr;
        until([&] {
            for (QWidget* widget : QApplication::topLevelWidgets()) {
                auto* candidate = qobject_cast<QFileDialog*>(widget);
                if (candidate != nullptr && candidate->isVisible()) {
                    found = candidate;
                }
            }
            return found != nullptr;
        });
        return found;
    }
};

} // namespace

TEST_F(ToolkitDialogTest, WithoutAPortalTheToolkitAsks) {
    configModel->setClickIntervalSeconds(42);
    click(get("Export"));
    QFileDialog* box = dialog();
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->acceptMode(), QFileDialog::AcceptSave);
    EXPECT_EQ(box->nameFilters(), QStringList{"JSON files (*.json)"});
    EXPECT_FALSE(box->testOption(QFileDialog::ReadOnly)) << "folders can be made";
    auto* name = box->findChild<QLineEdit*>();
    ASSERT_NE(name, nullptr);
    EXPECT_EQ(name->text(), "Velloran-config.json");
    name->setText(path("plain"));
    QMetaObject::invokeMethod(box, "accept");
    EXPECT_TRUE(isFree());
    EXPECT_EQ(read("plain.json"), exported());

    presetsModel->resetToDefaults();
    click(get("Import"));
    box = dialog();
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->fileMode(), QFileDialog::ExistingFile);
    box->findChild<QLineEdit*>()->setText(path("plain.json"));
    QMetaObject::invokeMethod(box, "accept");
    EXPECT_TRUE(until([&] { return store->config.get().clickIntervalSeconds == 42; }));
}

TEST_F(ToolkitDialogTest, ASilentPortalIsNotWaitedFor) {
    FakePortal portal(Screen::current().busAddress(), {}, FakePortal::Manner::staysSilent);
    configModel->setClickIntervalSeconds(42);
    click(get("Export"));
    ASSERT_TRUE(until([&] { return portal.calls.contains("org.freedesktop.portal.FileChooser"); }));
    // The window is drawn and can be left meanwhile.
    settle();
    QFileDialog* box = dialog();
    ASSERT_NE(box, nullptr);
    box->findChild<QLineEdit*>()->setText(path("silent"));
    QMetaObject::invokeMethod(box, "accept");
    EXPECT_TRUE(isFree());
    EXPECT_EQ(read("silent.json"), exported());
}

TEST_F(ToolkitDialogTest, TheToolkitsDialogCanBeCancelled) {
    click(get("Import"));
    QFileDialog* box = dialog();
    ASSERT_NE(box, nullptr);
    box->reject();
    EXPECT_TRUE(isFree());
    EXPECT_EQ(store->config.get(), AutoClickerConfig::default_());
}

} // namespace velloran::tests
