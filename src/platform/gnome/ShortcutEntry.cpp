#include "platform/gnome/ShortcutEntry.h"

#include <QStringList>

#include "platform/gnome/variantText.h"

#include <algorithm>
#include <utility>

namespace velloran::platform::gnome {

namespace {

const auto listSchema = QStringLiteral("org.gnome.settings-daemon.plugins.media-keys");
const auto listKey = QStringLiteral("custom-keybindings");
const auto entrySchema = QStringLiteral("org.gnome.settings-daemon.plugins.media-keys.custom-keybinding");
constexpr auto entryPath = "/org/gnome/settings-daemon/plugins/media-keys/custom-keybindings/velloran/";
/// How the desktop's settings call it.
constexpr auto entryName = "Velloran: Start or stop clicking";

QString at(const std::string& path) {
    return entrySchema + u':' + QString::fromStdString(path);
}

/// One text of an entry, of which each stands in a line: its schema, its key, its value.
std::string valueIn(const QByteArray& entry, const char* key) {
    for (const QByteArray& line : entry.split('\n')) {
        const QByteArray start = entrySchema.toUtf8() + ' ' + key + ' ';
        if (line.startsWith(start)) {
            return readText(line.mid(start.size()).toStdString()).value_or(std::string());
        }
    }
    return {};
}

} // namespace

ShortcutEntry::ShortcutEntry(SettingsTool& tool, QString command) : tool_(tool), command_(std::move(command)) {}

void ShortcutEntry::probe(std::function<void(bool)> done) {
    tool_.run({QStringLiteral("list-relocatable-schemas")}, [done = std::move(done)](const auto& output) {
        done(output && output->split('\n').contains(entrySchema.toUtf8()));
    });
}

void ShortcutEntry::readList(ListDone done) {
    tool_.run({QStringLiteral("get"), listSchema, listKey}, [done = std::move(done)](const auto& output) {
        done(output ? readTextList(output->toStdString()) : std::nullopt);
    });
}

void ShortcutEntry::writeList(const std::vector<std::string>& paths, std::function<void(bool)> done) {
    tool_.run({QStringLiteral("set"), listSchema, listKey, QString::fromStdString(writeTextList(paths))},
              [done = std::move(done)](const auto& output) { done(output.has_value()); });
}

void ShortcutEntry::look(const Accelerator& wanted, FoundDone done) {
    readList([this, wanted, done = std::move(done)](const auto& paths) {
        if (!paths) {
            done({});
            return;
        }
        Found found;
        found.isReadable = true;
        lookAtEach(*paths, wanted, found, done);
    });
}

void ShortcutEntry::lookAtEach(std::vector<std::string> left, const Accelerator& wanted, const Found& found,
                               FoundDone done) {
    if (left.empty()) {
        done(found);
        return;
    }
    const std::string path = std::move(left.back());
    left.pop_back();
    tool_.run({QStringLiteral("list-recursively"), at(path)},
              [this, path, left = std::move(left), wanted, found, done = std::move(done)](const auto& output) {
                  Found now = found;
                  // One that cannot be read is bound to nothing.
                  const QByteArray entry = output.value_or(QByteArray());
                  const std::string binding = valueIn(entry, "binding");
                  const bool hasIt = Accelerator::read(binding) == wanted;
                  if (path == entryPath) {
                      now.isListed = true;
                      now.binding = binding;
                      now.isOurs = hasIt && valueIn(entry, "command") == command_.toStdString();
                  } else if (hasIt) {
                      now.isTaken = true;
                      now.holder = valueIn(entry, "name");
                  }
                  lookAtEach(left, wanted, now, done);
              });
}

void ShortcutEntry::write(const char* key, const std::string& text) {
    tool_.run({QStringLiteral("set"), at(entryPath), QLatin1String(key), QString::fromStdString(writeText(text))},
              [](const auto&) {});
}

/// The desktop looks at an entry when it comes into the list.
void ShortcutEntry::put(const Accelerator& wanted, std::function<void(bool)> done) {
    write("name", entryName);
    write("command", command_.toStdString());
    write("binding", wanted.written());
    readList([this, done = std::move(done)](const auto& paths) {
        if (!paths) {
            done(false);
            return;
        }
        auto with = *paths;
        if (std::find(with.begin(), with.end(), entryPath) == with.end()) {
            with.emplace_back(entryPath);
        }
        writeList(with, done);
    });
}

void ShortcutEntry::remove(std::function<void(bool)> done) {
    readList([this, done = std::move(done)](const auto& paths) {
        if (!paths) {
            done(false);
            return;
        }
        auto without = *paths;
        if (std::erase(without, entryPath) == 0) {
            // Nothing of ours is bound, and an entry that nobody lists means nothing.
            done(true);
            return;
        }
        writeList(without, [this, done](bool isWritten) {
            tool_.run({QStringLiteral("reset-recursively"), at(entryPath)},
                      [done, isWritten](const auto&) { done(isWritten); });
        });
    });
}

} // namespace velloran::platform::gnome
