// progress.h - how far a long piece of work is, shown on standard error
// while it goes on: a count rewritten in place, counted, never timed, and
// cleared at the end. Only where a user watches it: standard error is a
// terminal, and standard output is not that terminal (where the output's
// own lines show how far the work is).
#ifndef UTIL_SUPPORT_PROGRESS_H
#define UTIL_SUPPORT_PROGRESS_H

#include <string>

namespace QVS {

class Progress {
public:
    // Whether progress is shown on this run's terminal at all.
    static bool Wanted();

    // "WHAT N of TOTAL NOUN", e.g. "looked up 3 of 14 names".
    Progress(const char* what, unsigned long total, const char* noun);
    ~Progress(); // clears the line
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    // `done` of the total are done. The line is rewritten when the count
    // has moved by a thousandth of the total, so at most a thousand times.
    void Done(unsigned long done);

private:
    unsigned long Permille(unsigned long done) const;
    void Show(unsigned long done);

    const std::string what;
    const unsigned long total;
    const std::string noun;
    unsigned long shownPermille = ~0ul;
    std::size_t longest = 0;
};

} // namespace QVS

#endif
