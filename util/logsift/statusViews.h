// statusViews.h - the views of logsift-status: writers of the pools' typed
// health (poolHealth.h), each chosen once from the command line by its row
// in one table. A new view is one writer and one row.
#ifndef UTIL_LOGSIFT_STATUSVIEWS_H
#define UTIL_LOGSIFT_STATUSVIEWS_H

#include "util/logsift/poolHealth.h"

#include <ostream>
#include <string>
#include <vector>

namespace StatusViews {

// What a view knows besides the pools.
struct Context {
    std::string directory;      // the RAV directory read
    int scanError = 0;          // the errno that stopped reading it, or 0
    PoolHealth::Rules rules;
};

// A view: writes the pools to `out` and gives the exit status of the run.
using Writer = int (*)(std::ostream& out, const Context& context,
                       const std::vector<PoolHealth::Pool>& pools);

struct View {
    const char* longName; // its option; null for the table, shown when no other is asked for
    int code;             // the option's short letter, or a code above 255
    const char* help;
    Writer write;
};

// Every view, the table first.
const std::vector<View>& Views();

// The exit status of the table and the views like it: that of the pools
// (PoolHealth::ExitStatus), and 2 when the directory could not be read or
// holds no pool's file.
int TableExitStatus(const Context& context, const std::vector<PoolHealth::Pool>& pools);

} // namespace StatusViews

#endif
