// Runs one fault server by hand: fault_server NAME [PORT]. Ends at end of input (ctrl-D).
#include <cstdlib>
#include <iostream>

#include "tests/support/FaultServer.h"

int main(int argc, char** argv) try {
    const support::FaultServer server(support::faultNamed(argc > 1 ? argv[1] : ""),
                                      argc > 2 ? std::atoi(argv[2]) : 0);
    std::cout << server.url() << std::endl;
    std::cin.ignore(std::numeric_limits<std::streamsize>::max());
    for (const std::string& request : server.requests())
        std::cout << request;
} catch (const std::exception& error) {
    std::cerr << "fault_server: " << error.what() << "\nNAME is one of";
    for (const auto& fault : support::faults())
        std::cerr << ' ' << fault.name;
    std::cerr << '\n';
    return 2;
}
