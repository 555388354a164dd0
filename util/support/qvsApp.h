// qvsApp.h - the process-wide application object and its debug mask.
#ifndef UTIL_SUPPORT_QVSAPP_H
#define UTIL_SUPPORT_QVSAPP_H

// Debug-mask bits of the traces.
constexpr unsigned DEBUG_ITEMS = 0x80000000u;    // whole rebuild log items
constexpr unsigned DEBUG_VALUES = 0x40000000u;   // single field values, extra sections
constexpr unsigned DEBUG_FAILURES = 0x10000000u; // failures with their status
constexpr unsigned DEBUG_OPEN = 0x00000004u;     // open, CRC and load errors on the output
constexpr unsigned DEBUG_LOOKUP = 0x00000008u;   // name lookup traces

class APP {
public:
    explicit APP(unsigned level);
    // A bit test, not a comparison.
    bool DebugLevel(unsigned mask) const;
    void SetLevel(unsigned newLevel) { level = newLevel; }
    unsigned Level() const { return level; }

private:
    unsigned level;
};

extern APP TheApp;

#endif
