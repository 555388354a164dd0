// fuzz_rebuild.cpp - the rebuild log viewer's walks and item parsers on
// arbitrary text: the display walks, every finder and the action history.
#include "fuzz/memFile.h"
#include "fuzz/nullStream.h"
#include "util/common_cpp/actionHistory.h"
#include "util/common_cpp/rebuildFile.h"
#include "util/support/qvsApp.h"

#include <exception>
#include <iostream>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    TheApp.SetLevel(0xFFFFFFFFu);
    std::string text(reinterpret_cast<const char*>(data), size);
    std::string item;
    unsigned long long key = size > 0 ? data[0] % 16 : 8;

    TODItem tod;
    MessageItem message;
    ActionItem action;
    TODItem::FindTODItemTag(text, key, item);
    TODItem::FindTODItemTag(text, item);
    MessageItem::FindMessageItemTag(text, key, item);
    MessageItem::FindMessageItemTag(text, item);
    DebugItem::FindDebugItemTag(text, key, item);
    DebugItem::FindDebugItemTag(text, item);
    IOItem::FindIOItemTag(text, key, item);
    action.FindActionItemTag(text, key, item);
    ActionItem::FindActionItemTag(text, item);
    tod.GetTODItem(text);
    message.GetMessageItem(text);
    action.GetActionItem(text);
    action.GetActionCurrent(text);
    ActionHistory history;
    history.GetActionHistory(key, text);
    for (unsigned long pos = 0, end = 0;; pos = end) {
        if (tod.FindTODItemTagAll(text, pos, end) != 0 || end <= pos)
            break;
    }
    for (unsigned long pos = 0, end = 0;; pos = end) {
        if (message.FindMessageItemTagAll(text, pos, end) != 0 || end <= pos)
            break;
    }

    MemFile file(data, size);
    if (!file.ok())
        return 0;
    NullStream out;
    try {
        RebuildFile log(file.path(), out, 0xFFFFFFFFu);
        log.DisplayMessageItems();
        log.DisplayTODItems();
    } catch (const std::exception&) {
        // A text that is not a rebuild log is refused by the constructor.
    }
    return 0;
}
