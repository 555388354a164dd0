// verifyLayoutDescription.cpp - prints the description of a layout fixture
// (every numeric field of the fixed or of the list records set to its own
// value), from the same field lists the layout tests read back.
#include "tests/unit/verifyLayout_testutil.h"

#include <cstring>
#include <iostream>

int main(int argc, char** argv) {
    if (argc == 2 && std::strcmp(argv[1], "fixed") == 0)
        std::cout << verifyLayout_test::fixedLayoutDescription();
    else if (argc == 2 && std::strcmp(argv[1], "lists") == 0)
        std::cout << verifyLayout_test::listLayoutDescription();
    else {
        std::cerr << "usage: verifyLayoutDescription fixed|lists\n";
        return 2;
    }
    std::cout.flush();
    return std::cout ? 0 : 1;
}
