#include "presets/view/FileReader.h"

#include "presets/view/ConfigFilesBench.h"
#include "presets/view/fileTransfer.h"

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

class FileReaderTest : public ConfigFilesBench {
protected:
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
};

} // namespace

TEST_F(FileReaderTest, BadFilesChangeNothing) {
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

TEST_F(FileReaderTest, LongFilesAreReadWhole) {
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

TEST_F(FileReaderTest, TheWindowDoesNotWaitForAFile) {
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

TEST_F(FileReaderTest, AFileThatIsReadSlowlyArrivesWhateverIsShownByThen) {
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

TEST_F(FileReaderTest, AFileThatHangsHoldsUpNoOther) {
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

} // namespace velloran::tests
