// jsonschema.cpp - prints the JSON Schema of logsift-json's documents as the
// printers' field tables give it, for the test that compares it with the
// schema committed in doc/.
#include "util/logsift/logsiftJson.h"

#include <iostream>

int main() {
    LogsiftJson::WriteSchema(std::cout);
    return std::cout ? 0 : 1;
}
