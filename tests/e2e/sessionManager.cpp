// A session manager for one session, as far as its programs see it: prints "address ADDRESS" once it can be reached and
// "registered" for each program that joins, asks them at "end" on standard input whether they have anything to save,
// tells each to go once all have answered, and prints "saved" and "left" for each.

#include <X11/ICE/ICElib.h>
#include <X11/ICE/ICEutil.h>
#include <X11/SM/SMlib.h>

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <iostream>
#include <span>
#include <string>
#include <vector>

namespace {

struct Client {
    SmsConn connection;
    bool isSaving = false;
};

std::vector<Client> clients;
std::vector<IceConn> connections;
bool isEnding = false;

Client& clientOf(SmsConn connection) {
    return *std::find_if(clients.begin(), clients.end(),
                         [connection](const Client& client) { return client.connection == connection; });
}

Status registerClient(SmsConn connection, SmPointer /*data*/, char* previousId) {
    SmsRegisterClientReply(connection, previousId != nullptr ? previousId : SmsGenerateClientID(connection));
    if (previousId == nullptr) {
        // What a newcomer has to do at once; its answer means nothing.
        SmsSaveYourself(connection, SmSaveLocal, False, SmInteractStyleNone, False);
    }
    std::free(previousId);
    std::cout << "registered" << std::endl;
    return 1;
}

void saved(SmsConn connection, SmPointer /*data*/, Bool /*success*/) {
    if (!isEnding) {
        SmsSaveComplete(connection);
        return;
    }
    clientOf(connection).isSaving = false;
    std::cout << "saved" << std::endl;
    if (std::none_of(clients.begin(), clients.end(), [](const Client& client) { return client.isSaving; })) {
        for (const Client& client : clients) {
            SmsDie(client.connection);
        }
    }
}

void closed(SmsConn connection, SmPointer /*data*/, int reasonCount, char** reasons) {
    std::erase_if(clients, [connection](const Client& client) { return client.connection == connection; });
    SmFreeReasons(reasonCount, reasons);
    IceConn ice = SmsGetIceConnection(connection);
    SmsCleanUp(connection);
    IceSetShutdownNegotiation(ice, False);
    IceCloseConnection(ice);
    std::erase(connections, ice);
    std::cout << "left" << std::endl;
}

Status newClient(SmsConn connection, SmPointer /*data*/, unsigned long* mask, SmsCallbacks* callbacks,
                 char** /*failure*/) {
    *mask = SmsRegisterClientProcMask | SmsInteractRequestProcMask | SmsInteractDoneProcMask |
            SmsSaveYourselfRequestProcMask | SmsSaveYourselfP2RequestProcMask | SmsSaveYourselfDoneProcMask |
            SmsCloseConnectionProcMask | SmsSetPropertiesProcMask | SmsDeletePropertiesProcMask |
            SmsGetPropertiesProcMask;
    callbacks->register_client.callback = registerClient;
    callbacks->interact_request.callback = [](SmsConn client, SmPointer, int) { SmsInteract(client); };
    callbacks->interact_done.callback = [](SmsConn, SmPointer, Bool) {};
    callbacks->save_yourself_request.callback = [](SmsConn, SmPointer, int, Bool, int, Bool, Bool) {};
    callbacks->save_yourself_phase2_request.callback = [](SmsConn client, SmPointer) { SmsSaveYourselfPhase2(client); };
    callbacks->save_yourself_done.callback = saved;
    callbacks->close_connection.callback = closed;
    callbacks->set_properties.callback = [](SmsConn, SmPointer, int count, SmProp** properties) {
        for (SmProp* const property : std::span(properties, static_cast<std::size_t>(count))) {
            SmFreeProperty(property);
        }
        std::free(properties);
    };
    callbacks->delete_properties.callback = [](SmsConn, SmPointer, int count, char** names) {
        for (char* const name : std::span(names, static_cast<std::size_t>(count))) {
            std::free(name);
        }
        std::free(names);
    };
    callbacks->get_properties.callback = [](SmsConn client, SmPointer) { SmsReturnProperties(client, 0, nullptr); };
    clients.push_back({connection});
    return 1;
}

void end() {
    isEnding = true;
    for (Client& client : clients) {
        client.isSaving = true;
        SmsSaveYourself(client.connection, SmSaveBoth, True, SmInteractStyleAny, False);
    }
}

} // namespace

int main() {
    std::array<char, 256> error{};
    const auto allowEverybody = [](char*) -> Bool { return True; };
    if (SmsInitialize("velloran", "1", newClient, nullptr, allowEverybody, error.size(), error.data()) == 0) {
        std::cerr << error.data() << std::endl;
        return EXIT_FAILURE;
    }
    int count = 0;
    IceListenObj* listeners = nullptr;
    if (IceListenForConnections(&count, &listeners, error.size(), error.data()) == 0) {
        std::cerr << error.data() << std::endl;
        return EXIT_FAILURE;
    }
    char* const addresses = IceComposeNetworkIdList(count, listeners);
    std::cout << "address " << addresses << std::endl;
    std::free(addresses);
    const std::span listening(listeners, static_cast<std::size_t>(count));
    for (IceListenObj listener : listening) {
        IceSetHostBasedAuthProc(listener, allowEverybody);
    }
    for (;;) {
        std::vector<pollfd> descriptors{{STDIN_FILENO, POLLIN, 0}};
        for (IceListenObj listener : listening) {
            descriptors.push_back({IceGetListenConnectionNumber(listener), POLLIN, 0});
        }
        const std::vector<IceConn> current = connections;
        for (IceConn connection : current) {
            descriptors.push_back({IceConnectionNumber(connection), POLLIN, 0});
        }
        if (poll(descriptors.data(), descriptors.size(), -1) < 0) {
            return EXIT_FAILURE;
        }
        if (descriptors[0].revents != 0) {
            std::string command;
            if (!std::getline(std::cin, command)) {
                break;
            }
            end();
        }
        for (std::size_t i = 0; i < listening.size(); ++i) {
            IceAcceptStatus status = IceAcceptFailure;
            if (descriptors[1 + i].revents != 0) {
                if (IceConn accepted = IceAcceptConnection(listening[i], &status); accepted != nullptr) {
                    connections.push_back(accepted);
                }
            }
        }
        for (std::size_t i = 0; i < current.size(); ++i) {
            if (descriptors[1 + listening.size() + i].revents != 0) {
                IceProcessMessages(current[i], nullptr, nullptr);
            }
        }
    }
    IceFreeListenObjs(count, listeners);
    return EXIT_SUCCESS;
}
