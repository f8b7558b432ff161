#pragma once

#include <QByteArray>

#include <chrono>

namespace velloran::platform::bus {

/// What there is at the address of a message bus.
enum class BusState {
    answers,
    /// Nobody takes connections there.
    absent,
    /// Somebody takes connections, and says nothing or nonsense.
    silent,
};

/// Where a bus is, and whether it answered.
struct BusPlace {
    /// In the form of the bus's own environment variable; empty when the environment names no place.
    QByteArray address;
    BusState state = BusState::absent;

    bool operator==(const BusPlace&) const = default;
};

/// Greets the bus at `address` as a new client does, and waits for its answers, `limit` at most for all of them. An
/// address that is no Unix socket is taken for one that answers. From any thread.
BusState probeBus(const QByteArray& address, std::chrono::milliseconds limit);

/// Looks for the session bus of this process, two seconds at most. One that is silent is taken out of the environment,
/// of programs started from here as well: the toolkit connects by itself, in many places, and waits for minutes.
/// To be called before the toolkit starts, on the main thread.
BusPlace findSessionBus();

/// Names the session bus in the environment again, for programs that are started from here.
void offerSessionBus(const QByteArray& address);

} // namespace velloran::platform::bus
