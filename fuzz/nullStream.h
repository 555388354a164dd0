// nullStream.h - an output stream that formats everything and keeps nothing,
// so the fuzzers exercise the renderers without filling memory.
#ifndef FUZZ_NULLSTREAM_H
#define FUZZ_NULLSTREAM_H

#include <ostream>
#include <streambuf>

class NullBuffer : public std::streambuf {
protected:
    int overflow(int c) override { return c == traits_type::eof() ? 0 : c; }
    std::streamsize xsputn(const char*, std::streamsize n) override { return n; }
};

class NullStream : public std::ostream {
public:
    NullStream() : std::ostream(&buffer_) {}

private:
    NullBuffer buffer_;
};

#endif
