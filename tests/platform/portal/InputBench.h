#pragma once

#include "platform/portal/PortalBench.h"
#include "platform/portal/RemoteDesktop.h"
#include "platform/portal/RestoreToken.h"
#include "platform/qt/QtEventLoop.h"

#include <QDBusObjectPath>
#include <QTemporaryDir>

#include <optional>
#include <string>
#include <thread>
#include <utility>

namespace velloran::tests {

/// A bus, and this program's clicks through whichever portal a test has come.
class InputBench : public PortalBench {
protected:
    InputBench() { restart(); }

    /// As another start of the program.
    void restart() {
        remote.reset();
        token.reset();
        token.emplace(tokenPath());
        remote.emplace(loop, portal, *token, backEnds);
        changes = 0;
        remote->onChanged([this] { ++changes; });
    }

    [[nodiscard]] std::string tokenPath() const { return folder.filePath("velloran/token").toStdString(); }

    [[nodiscard]] bool isOffered() const { return remote->parts().get().clicks.part != nullptr; }

    /// Makes a click as the engine does, on a thread of its own, while this one goes on.
    void click(platform::EventButton button = platform::EventButton::left) {
        bool isDone = false;
        std::thread engine([&] {
            clickHere(button);
            loop.postFromAnyThread([&] { isDone = true; });
        });
        EXPECT_TRUE(until([&] { return isDone; }));
        engine.join();
    }

    /// Makes a click on this thread.
    void clickHere(platform::EventButton button = platform::EventButton::left) {
        using platform::MouseEventType;
        const auto types = button == platform::EventButton::left
                               ? std::pair(MouseEventType::leftMouseDown, MouseEventType::leftMouseUp)
                           : button == platform::EventButton::right
                               ? std::pair(MouseEventType::rightMouseDown, MouseEventType::rightMouseUp)
                               : std::pair(MouseEventType::otherMouseDown, MouseEventType::otherMouseUp);
        for (const MouseEventType type : {types.first, types.second}) {
            if (const auto event = clicks->makeMouseEvent(type, {}, button)) {
                clicks->post(*event);
            }
        }
        clicks->flush();
    }

    void bring(uint version = 2) {
        fake.emplace(bus.address());
        fake->version = version;
        ASSERT_TRUE(until([this] { return isOffered(); }));
        clicks = remote->parts().get().clicks.part;
    }

    /// Waits until the portal is asked for the method.
    void expectRequest(const QString& method) {
        ASSERT_TRUE(until([&] { return fake->request.method == method; })) << method.toStdString();
    }

    /// The user wants to click; on to where the desktop shows its dialog.
    void ask(platform::PromptReason reason = platform::PromptReason::askedFor) {
        EXPECT_FALSE(remote->requestPrompt(reason));
        ASSERT_NO_FATAL_FAILURE(answerUpToStart());
    }

    void answerUpToStart() {
        ASSERT_NO_FATAL_FAILURE(expectRequest("CreateSession"));
        fake->respond(0);
        ASSERT_NO_FATAL_FAILURE(expectRequest("SelectDevices"));
        devices = fake->request.options;
        sessionPath = fake->request.arguments.value(0).value<QDBusObjectPath>().path();
        fake->respond(0);
        ASSERT_NO_FATAL_FAILURE(expectRequest("Start"));
    }

    void grant(const QString& word = {}) {
        QVariantMap results{{"devices", 2U}};
        if (!word.isEmpty()) {
            results.insert("restore_token", word);
        }
        fake->respond(0, results);
        ASSERT_TRUE(until([this] { return remote->isTrusted(); }));
    }

    /// All the way to clicks.
    void open(const QString& word = {}) {
        ASSERT_NO_FATAL_FAILURE(bring());
        ASSERT_NO_FATAL_FAILURE(ask());
        ASSERT_NO_FATAL_FAILURE(grant(word));
    }

    void expectLost() {
        EXPECT_TRUE(until([this] { return !remote->isTrusted(); }));
        fake->buttons.clear();
        clickHere();
        settle();
        EXPECT_EQ(fake->buttons, QStringList());
    }

    /// Nothing more was asked for than so many requests.
    void expectRequests(int count) {
        settle();
        EXPECT_EQ(fake->requests, count);
    }

    /// Those that may stand behind the portal.
    QStringList backEnds{"org.freedesktop.impl.portal.desktop.velloran"};
    QTemporaryDir folder;
    platform::qt::QtEventLoop loop;
    std::optional<platform::portal::RestoreToken> token;
    std::optional<platform::portal::RemoteDesktop> remote;
    /// What the engine clicks with, once it is there.
    std::shared_ptr<platform::PointerEvents> clicks;
    /// How often the trust may have changed.
    int changes = 0;
    /// What was asked for last, and the session it is for.
    QVariantMap devices;
    QString sessionPath;
};

} // namespace velloran::tests
