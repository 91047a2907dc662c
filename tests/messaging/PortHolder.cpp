// port_holder NAME: a process that holds a port, for tests in which another process must.
// "open" opens and serves it and answers "opened" or "taken"; "close" answers "closed". Requests are answered with
// their own body. Ends with its input.

#include "tests/support/ServedPort.h"

#include <iostream>
#include <optional>

int main(int count, char** arguments) {
    if (count != 2) return 2;
    std::optional<tests::ServedPort> port;
    for (std::string order; std::getline(std::cin, order);) {
        if (order == "open") {
            port.emplace(arguments[1], [](auto&, auto, const auto& body) { return body; });
            std::cout << (port->isOpen() ? "opened" : "taken") << std::endl;
        } else {
            port.reset();
            std::cout << "closed" << std::endl;
        }
    }
}
