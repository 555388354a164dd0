// verifyNames.cpp - the words of the verify report's numbers.
#include "util/common_cpp/verifyNames.h"

namespace VerifyNames {

namespace {

const char* const ERROR_TEXTS[WORD_BITS] = {
    "Cross Linked Blocks Exist.",
    "Name Tree Entries != Named Objects.",
    "Object Tree Leaf Linked list is broken.",
    "Name Tree Entries Exist With No Object.",
    "Total Blocks are in Error.",
    "Salvage Tree Leaf Linked List is Broken.",
    "Could Not Verify Logical Volume(s).",
    "Invalid Blocks Exist.",
    "Name Tree Leaf Linked list is broken.",
    "Unknown error", "Unknown error", "Unknown error", "Unknown error", "Unknown error",
    "Unknown error", "Unknown error", "Unknown error", "Unknown error", "Unknown error",
    "Unknown error", "Unknown error", "Unknown error", "Unknown error", "Unknown error",
    "Unknown error", "Unknown error", "Unknown error", "Unknown error", "Unknown error",
    "Unknown error", "Unknown error", "Unknown error",
    "BT entry missing in BTI.",
};

const char* const WARNING_TEXTS[WORD_BITS] = {
    "Volume System Report 'Blocks in Use' in Error.",
    "Unaccounted Blocks Exist.",
    "Volume System Report 'Number of Files' in Error.",
    "Volume System Report 'Number of Objects' in Error.",
    "Object Tree Node(s) Contain Corruption.",
    "Salvage Tree Node(s) Contain Corruption.",
    "Filename(s) could not be found in the NT.",
    "Pool System Report 'Number of Objects' in Error.",
    "Pool System Report 'Blocks in Use' in Error.",
    "Salvage Tree Inconsistent With Object/Name Trees.",
    "A 'Volume Problem Report' Shows Problems.",
    "Sum of 'Salvagable Objects' != Salvage Tree Entries.",
    "Pool System Report 'Number of Salvagable blocks' in Error.",
    "Volume System Report 'Number of Salvagable blocks' in Error.",
    "Pool IV 'Number of Salvagable blocks' in Error.",
    "Unknown warning", "Unknown warning", "Unknown warning", "Unknown warning",
    "Unknown warning", "Unknown warning", "Unknown warning", "Unknown warning",
    "Unknown warning", "Unknown warning", "Unknown warning", "Unknown warning",
    "Unknown warning", "Unknown warning", "Unknown warning", "Unknown warning",
    "Unknown warning",
    "Invalid entry in BTI.",
};

} // namespace

char const* ErrorTypeText(unsigned bit) { return bit < WORD_BITS ? ERROR_TEXTS[bit] : nullptr; }

char const* WarningTypeText(unsigned bit) { return bit < WORD_BITS ? WARNING_TEXTS[bit] : nullptr; }

} // namespace VerifyNames

char const* nTypeName(unsigned nameType) {
    switch (nameType) {
    case 0:
        return "File";
    case 1:
        return "Stream";
    case 2:
        return "Extend";
    case 3:
        return "Delete";
    default:
        return "???";
    }
}
