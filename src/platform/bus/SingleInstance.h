#pragma once

#include "platform/bus/ActivationToken.h"
#include "platform/bus/SessionBus.h"

#include <QObject>

#include <functional>

namespace velloran::platform::bus {

/// Keeps it at one program for each session bus: the first one has the application's name there and answers for it, a
/// later one hands over to the first. A session without a bus has no such rule. When the bus goes away, the program
/// takes its name again as soon as there is a bus again.
///
/// Main thread only; needs the toolkit's application object.
class SingleInstance final : public QObject {
    Q_OBJECT

public:
    /// What other programs ask for. Called in turns of the event loop.
    struct Requests {
        std::function<void(const ActivationToken& token)> activate;
        std::function<void()> toggle;
        std::function<void()> quit;
    };

    enum class Claim {
        /// This is the one; or there is no bus to ask on.
        first,
        /// Another one runs and has come to the front.
        handedOver,
        /// Another one runs and does not answer, or refuses.
        unanswered,
    };

    /// `bus` has to outlive this.
    explicit SingleInstance(SessionBus& bus);
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;

    /// Takes the name, or has the program that has it come to the front with `token`. The one call here that waits: two
    /// seconds at most for the bus's answer, ten for the other program's.
    Claim claim(const ActivationToken& token);

    /// From now on others are served; until then what they ask has no effect. A `toggle` that the bus started this
    /// program for is left out: it opens the window and nothing else.
    void serve(Requests requests);

private:
    void listen();
    void takeName();
    void markStartOver();
    void activated(const QVariantMap& platformData);
    void actionActivated(const QString& name);

    SessionBus& bus_;
    Requests requests_;
    bool isStartOver_ = false;
};

} // namespace velloran::platform::bus
