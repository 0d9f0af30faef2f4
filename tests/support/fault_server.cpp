// Runs one fault server by hand: fault_server NAME [PORT]. Ends at end of input (ctrl-D).
#include <cstdlib>
#include <iostream>

#include "tests/support/FaultServer.h"

int main(int argc, char** argv) {
    if (argc < 2 || argc > 3) {
        std::cerr << "usage: fault_server NAME [PORT]\n";
        for (const auto& fault : support::faults())
            std::cerr << "  " << fault.name << ": " << fault.what << '\n';
        return 2;
    }
    try {
        const support::FaultServer server(support::faultNamed(argv[1]), argc == 3 ? std::atoi(argv[2]) : 0);
        std::cout << server.url() << std::endl;
        std::cin.ignore(std::numeric_limits<std::streamsize>::max());
        for (const std::string& request : server.requests())
            std::cout << request;
    } catch (const std::exception& error) {
        std::cerr << "fault_server: " << error.what() << '\n';
        return 3;
    }
    return 0;
}
