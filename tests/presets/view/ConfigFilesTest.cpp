#include "presets/PresetStore.h"
#include "presets/view/FileReader.h"
#include "presets/view/fileTransfer.h"
#include "harness/FakePortal.h"
#include "harness/WindowTest.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QUrl>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>

namespace velloran::tests {

namespace {

/// A file whose readers wait until it is released: a lease has to be given back before anybody opens it.
class HeldFile {
public:
    explicit HeldFile(const QString& path) : descriptor_(::open(path.toUtf8().constData(), O_RDWR | O_CLOEXEC)) {
        // The system asks for it by a signal.
        std::signal(SIGIO, SIG_IGN);
        isHeld_ = fcntl(descriptor_, F_SETLEASE, F_WRLCK) == 0;
    }

    HeldFile(const HeldFile&) = delete;
    HeldFile& operator=(const HeldFile&) = delete;

    ~HeldFile() { ::close(descriptor_); }

    [[nodiscard]] bool isHeld() const { return isHeld_; }

    void release() const { EXPECT_EQ(fcntl(descriptor_, F_SETLEASE, F_UNLCK), 0); }

private:
    int descriptor_;
    bool isHeld_;
};

class ConfigFilesTest : public WindowTest {
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

    /// Has a file imported and waits until it is, or cannot be.
    void importFile(FakePortal& portal, const QString& name) {
        auto* const reader = files->findChild<FileReader*>();
        ASSERT_NE(reader, nullptr);
        bool isOver = false;
        QObject context;
        const auto end = [&isOver] { isOver = true; };
        QObject::connect(reader, &FileReader::done, &context, end);
        QObject::connect(reader, &FileReader::failed, &context, end);
        ask(portal, "Import");
        portal.choose(uri(name));
        EXPECT_TRUE(until([&] { return isOver; }));
        EXPECT_TRUE(isFree());
    }

    /// Whether the window can be used again.
    bool isFree() {
        return until([&] {
            return engine->singletonInstance<QObject*>(stack())->property("top").value<QObject*>() == options();
        });
    }

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

    QTemporaryDir folder;

private:
    static int stack() { return qmlTypeId("Velloran", 1, 0, "SheetStack"); }

    [[nodiscard]] QObject* options() const {
        for (QQuickItem* item = find("Done"); item != nullptr; item = item->parentItem()) {
            if (QByteArray(item->metaObject()->className()).startsWith("Sheet_")) {
                return item;
            }
        }
        return nullptr;
    }
};

} // namespace

TEST_F(ConfigFilesTest, ExportsThroughThePortal) {
    FakePortal portal(Screen::current().busAddress());
    configModel->setClickIntervalSeconds(42);
    ask(portal, "Export");
    EXPECT_EQ(portal.request.method, "SaveFile");
    EXPECT_EQ(portal.request.arguments.value(0), "x11:" + QString::number(window->winId(), 16));
    EXPECT_EQ(portal.request.options.value("current_name"), "Velloran-config.json");
    EXPECT_TRUE(portal.request.options.contains("filters"));
    portal.choose(uri("my config.json"));
    EXPECT_TRUE(isFree());
    EXPECT_EQ(read("my config.json"), exported());
    EXPECT_TRUE(read("my config.json").contains("42"));
}

TEST_F(ConfigFilesTest, CancelledExportWritesNothing) {
    FakePortal portal(Screen::current().busAddress());
    ask(portal, "Export");
    portal.respond(1);
    EXPECT_TRUE(isFree());
    EXPECT_TRUE(QDir(folder.path()).isEmpty());
    ask(portal, "Export");
    EXPECT_EQ(portal.requests, 2);
    portal.respond(1);
    EXPECT_TRUE(isFree());
}

TEST_F(ConfigFilesTest, ImportsWhatWasExported) {
    FakePortal portal(Screen::current().busAddress());
    configModel->setClickIntervalSeconds(42);
    configModel->chooseHotkey(3);
    const AutoClickerConfig wanted = store->config.get();
    write("config.json", exported());
    presetsModel->resetToDefaults();
    ask(portal, "Import");
    EXPECT_EQ(portal.request.method, "OpenFile");
    EXPECT_EQ(portal.request.options.value("multiple"), false);
    portal.choose(uri("config.json"));
    EXPECT_TRUE(until([&] { return store->config.get() == wanted; }));
    EXPECT_TRUE(isFree());
}

TEST_F(ConfigFilesTest, BadFilesChangeNothing) {
    FakePortal portal(Screen::current().busAddress());
    configModel->setClickIntervalSeconds(42);
    const AutoClickerConfig before = store->config.get();
    write("list.json", "[]");
    write("empty.json", "");
    // A configuration, as far as it goes.
    configModel->setClickIntervalSeconds(43);
    write("long.json", exported());
    ASSERT_TRUE(QFile(path("long.json")).resize(longestFile + 1));
    configModel->setClickIntervalSeconds(42);
    ASSERT_EQ(mkfifo(path("pipe.json").toUtf8().constData(), 0600), 0);
    for (const char* name : {"list.json", "empty.json", "long.json", "pipe.json", "missing.json", "."}) {
        importFile(portal, name);
        EXPECT_EQ(store->config.get(), before) << name;
    }
}

TEST_F(ConfigFilesTest, LongFilesAreReadWhole) {
    FakePortal portal(Screen::current().busAddress());
    configModel->setClickIntervalSeconds(42);
    const AutoClickerConfig wanted = store->config.get();
    const QByteArray bytes = exported();
    presetsModel->resetToDefaults();
    for (const qint64 size : {qint64{1024 * 1024 + 1}, longestFile}) {
        write("long.json", QByteArray(size - bytes.size(), ' ') + bytes);
        importFile(portal, "long.json");
        EXPECT_EQ(store->config.get(), wanted) << size;
        presetsModel->resetToDefaults();
    }
}

TEST_F(ConfigFilesTest, TheWindowDoesNotWaitForAFile) {
    FakePortal portal(Screen::current().busAddress());
    configModel->setClickIntervalSeconds(42);
    const AutoClickerConfig wanted = store->config.get();
    write("slow.json", exported());
    presetsModel->resetToDefaults();
    HeldFile slow(path("slow.json"));
    if (!slow.isHeld()) {
        GTEST_SKIP() << "This system lets the test hold no file";
    }
    ask(portal, "Import");
    portal.choose(uri("slow.json"));
    EXPECT_TRUE(isFree());
    configModel->setClickIntervalSeconds(9);
    click(get("Reset"));
    EXPECT_TRUE(until([&] { return store->config.get() == AutoClickerConfig::default_(); }));
    slow.release();
    EXPECT_TRUE(until([&] { return store->config.get() == wanted; }));
}

TEST_F(ConfigFilesTest, AFileThatIsReadSlowlyArrivesWhateverIsShownByThen) {
    FakePortal portal(Screen::current().busAddress());
    configModel->setClickIntervalSeconds(42);
    const AutoClickerConfig wanted = store->config.get();
    write("slow.json", exported());
    presetsModel->resetToDefaults();
    HeldFile slow(path("slow.json"));
    if (!slow.isHeld()) {
        GTEST_SKIP() << "This system lets the test hold no file";
    }
    ask(portal, "Import");
    portal.choose(uri("slow.json"));
    EXPECT_TRUE(isFree());
    click(get("Done"));
    EXPECT_TRUE(until([&] { return !shows("Done"); }));
    slow.release();
    EXPECT_TRUE(until([&] { return store->config.get() == wanted; }));
}

TEST_F(ConfigFilesTest, AFileThatHangsHoldsUpNoOther) {
    FakePortal portal(Screen::current().busAddress());
    write("hanging.json", exported());
    configModel->setClickIntervalSeconds(42);
    const AutoClickerConfig wanted = store->config.get();
    write("other.json", exported());
    presetsModel->resetToDefaults();
    HeldFile hanging(path("hanging.json"));
    if (!hanging.isHeld()) {
        GTEST_SKIP() << "This system lets the test hold no file";
    }
    ask(portal, "Import");
    portal.choose(uri("hanging.json"));
    EXPECT_TRUE(isFree());
    importFile(portal, "other.json");
    EXPECT_EQ(store->config.get(), wanted);
    // What was given up says nothing any more.
    hanging.release();
    importFile(portal, "missing.json");
    EXPECT_EQ(store->config.get(), wanted);
}

TEST_F(ConfigFilesTest, AnUnwritablePlaceIsSilent) {
    FakePortal portal(Screen::current().busAddress());
    ask(portal, "Export");
    portal.choose(uri("no/such/folder.json"));
    EXPECT_TRUE(isFree());
    ask(portal, "Export");
    portal.choose("https://example.org/config.json");
    EXPECT_TRUE(isFree());
    EXPECT_TRUE(QDir(folder.path()).isEmpty());
}

TEST_F(ConfigFilesTest, OtherRequestPathsAreFollowed) {
    FakePortal portal(Screen::current().busAddress());
    portal.usesOwnPaths = true;
    ask(portal, "Export");
    settle();
    EXPECT_TRUE(until([&] {
        portal.choose(uri("late.json"));
        return !read("late.json").isEmpty();
    }));
    EXPECT_TRUE(isFree());
}

TEST_F(ConfigFilesTest, APortalThatVanishesIsACancellation) {
    FakePortal portal(Screen::current().busAddress());
    ask(portal, "Import");
    portal.vanish();
    EXPECT_TRUE(isFree());
}

TEST_F(ConfigFilesTest, TheWindowCanOnlyBeSeenMeanwhile) {
    FakePortal portal(Screen::current().busAddress());
    ask(portal, "Export");
    tap(escapeKey);
    click(get("Reset"));
    tap(tabKey);
    tap(spaceKey);
    click(get("Done"));
    EXPECT_TRUE(shows("Done"));
    EXPECT_EQ(portal.requests, 1);
    portal.respond(1);
    EXPECT_TRUE(isFree());
    EXPECT_EQ(focused(), "Export");
    tap(escapeKey);
    EXPECT_TRUE(until([&] { return !shows("Done"); }));
}

TEST_F(ConfigFilesTest, TheReminderWaitsForTheDialog) {
    FakePortal portal(Screen::current().busAddress());
    ask(portal, "Export");
    donations->isPromptVisible.set(true);
    settle();
    EXPECT_FALSE(shows("Support Velloran"));
    portal.respond(1);
    EXPECT_TRUE(isFree());
    EXPECT_FALSE(shows("Support Velloran"));
    tap(escapeKey);
    get("Support Velloran");
}

TEST_F(ConfigFilesTest, WithoutAPortalTheToolkitAsks) {
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

TEST_F(ConfigFilesTest, ASilentPortalIsNotWaitedFor) {
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

TEST_F(ConfigFilesTest, TheToolkitsDialogCanBeCancelled) {
    click(get("Import"));
    QFileDialog* box = dialog();
    ASSERT_NE(box, nullptr);
    box->reject();
    EXPECT_TRUE(isFree());
    EXPECT_EQ(store->config.get(), AutoClickerConfig::default_());
}

} // namespace velloran::tests
