// fuzz_parsers.cpp - the small text parsers: LBP_GetValue in every form,
// GUID text, and _stoq in every mode and base.
#include "util/support/qvsGuid.h"
#include "util/support/qvsLib.h"

#include <cstddef>
#include <cstdint>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 2)
        return 0;
    // First byte: how much of the input is the key; the rest is the text.
    size_t keyLength = data[0] % 16;
    if (keyLength + 1 > size)
        keyLength = size - 1;
    std::string key(reinterpret_cast<const char*>(data + 1), keyLength);
    std::string text(reinterpret_cast<const char*>(data + 1 + keyLength), size - 1 - keyLength);
    const char* t = text.c_str();
    const char* k = key.c_str();

    unsigned int u32;
    int i32;
    unsigned long ul;
    long l;
    unsigned long long ull;
    bool b;
    char buffer[33];
    std::string s;
    GUID_t g;
    LBP_GetValue(t, k, &u32);
    LBP_GetValue(t, k, &i32);
    LBP_GetValue(t, k, &ul);
    LBP_GetValue(t, k, &l);
    LBP_GetValue(t, k, &ull);
    LBP_GetValue(t, k, &b);
    LBP_GetValue(t, k, buffer, static_cast<unsigned>(data[0] % sizeof buffer));
    LBP_GetValue(t, k, s);
    LBP_GetValue(t, k, &g);

    QVS::LB_GUIDFromUTF8(t, &g);
    char out[38];
    QVS::LB_GUIDToString(&g, sizeof out, out);

    for (int mode = 0; mode < 3; ++mode) {
        for (int base : {0, 2, 8, 10, 16, 36, 37, 1}) {
            char* end = nullptr;
            QVS::_stoq(t, &end, base, mode);
            if (end < t || end > t + text.size())
                __builtin_trap();
        }
    }
    return 0;
}
