// crcReading_test.cpp - the checksum a reading gives, whatever the reader
// does: short reads, seeks both ways, seeks past the end, pipes, and a
// reading that stops early.
#include "util/common_cpp/verifyFile.h"
#include "util/support/crcReading.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// Bit by bit, independent of the table the product uses.
uint32_t referenceCrc(const std::vector<unsigned char>& data, std::size_t from) {
    uint32_t crc = 0xFFFFFFFFu;
    for (std::size_t i = from; i < data.size(); ++i) {
        crc ^= data[i];
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ (0xEDB88320u & (0u - (crc & 1u)));
    }
    return ~crc;
}

std::vector<unsigned char> pattern(std::size_t size, unsigned seed) {
    std::mt19937 random(seed);
    std::vector<unsigned char> data(size);
    for (unsigned char& byte : data)
        byte = static_cast<unsigned char>(random());
    return data;
}

class CrcReadingTest : public ::testing::Test {
protected:
    void SetUp() override {
        char templ[] = "/tmp/logsift-crc-XXXXXX";
        ASSERT_NE(mkdtemp(templ), nullptr);
        dir = templ;
    }
    void TearDown() override {
        for (const std::string& name : made)
            unlink(name.c_str());
        rmdir(dir.c_str());
    }
    std::string write(const std::string& name, const std::vector<unsigned char>& data) {
        const std::string path = dir + "/" + name;
        FILE* file = std::fopen(path.c_str(), "wb");
        EXPECT_NE(file, nullptr);
        if (!data.empty()) {
            EXPECT_EQ(std::fwrite(data.data(), 1, data.size(), file), data.size());
        }
        std::fclose(file);
        made.push_back(path);
        return path;
    }
    std::string dir;
    std::vector<std::string> made;
};

TEST_F(CrcReadingTest, WholeReadingGivesTheFilesCrcAfterTheFirstBytes) {
    const auto data = pattern(200000, 1);
    const std::string path = write("whole", data);
    QVS::CrcReading reading(4);
    FILE* stream = reading.Open(path.c_str());
    ASSERT_NE(stream, nullptr);
    std::vector<unsigned char> got(data.size());
    ASSERT_EQ(std::fread(got.data(), 1, got.size(), stream), data.size());
    EXPECT_EQ(got, data);
    uint32_t computed = 0;
    ASSERT_TRUE(reading.Finish(computed));
    EXPECT_EQ(computed, referenceCrc(data, 4));
    std::fclose(stream);
}

TEST_F(CrcReadingTest, ReadingThatStopsEarlyIsCompletedByFinish) {
    const auto data = pattern(70000, 2);
    const std::string path = write("early", data);
    QVS::CrcReading reading(4);
    FILE* stream = reading.Open(path.c_str());
    ASSERT_NE(stream, nullptr);
    unsigned char head[100];
    ASSERT_EQ(std::fread(head, 1, sizeof head, stream), sizeof head);
    uint32_t computed = 0;
    ASSERT_TRUE(reading.Finish(computed));
    EXPECT_EQ(computed, referenceCrc(data, 4));
    // Where the reading stopped is where it was.
    EXPECT_EQ(ftello(stream), 100);
    std::fclose(stream);
}

TEST_F(CrcReadingTest, SeeksBothWaysReadTheRightBytesAndFoldEachOnce) {
    const auto data = pattern(300000, 3);
    const std::string path = write("seeks", data);
    std::mt19937 random(4);
    for (int run = 0; run < 50; ++run) {
        QVS::CrcReading reading(4);
        FILE* stream = reading.Open(path.c_str());
        ASSERT_NE(stream, nullptr);
        std::setvbuf(stream, nullptr, _IOFBF, 1 + random() % 20000);
        for (int step = 0; step < 40; ++step) {
            const unsigned what = random() % 3;
            if (what == 0) {
                const long long to = static_cast<long long>(random() % (data.size() + 1000));
                ASSERT_EQ(fseeko(stream, static_cast<off_t>(to), SEEK_SET), 0);
            } else if (what == 1) {
                const long long by = static_cast<long long>(random() % 50000);
                ASSERT_EQ(fseeko(stream, static_cast<off_t>(by), SEEK_CUR), 0);
            }
            const long long at = ftello(stream);
            ASSERT_GE(at, 0);
            std::vector<unsigned char> got(random() % 30000);
            const std::size_t n = std::fread(got.data(), 1, got.size(), stream);
            const std::size_t expected =
                at >= static_cast<long long>(data.size())
                    ? 0
                    : std::min<std::size_t>(got.size(), data.size() - static_cast<std::size_t>(at));
            ASSERT_EQ(n, expected) << "run " << run << " step " << step;
            for (std::size_t i = 0; i < n; ++i)
                ASSERT_EQ(got[i], data[static_cast<std::size_t>(at) + i]);
            std::clearerr(stream);
        }
        uint32_t computed = 0;
        ASSERT_TRUE(reading.Finish(computed));
        EXPECT_EQ(computed, referenceCrc(data, 4)) << "run " << run;
        std::fclose(stream);
    }
}

TEST_F(CrcReadingTest, SeekPastTheEndMeetsTheEnd) {
    const auto data = pattern(5000, 5);
    const std::string path = write("past", data);
    QVS::CrcReading reading(4);
    FILE* stream = reading.Open(path.c_str());
    ASSERT_NE(stream, nullptr);
    ASSERT_EQ(fseeko(stream, 0xFFFFFFF0, SEEK_CUR), 0);
    unsigned char byte;
    EXPECT_EQ(std::fread(&byte, 1, 1, stream), 0u);
    EXPECT_TRUE(std::feof(stream));
    uint32_t computed = 0;
    ASSERT_TRUE(reading.Finish(computed));
    EXPECT_EQ(computed, referenceCrc(data, 4));
    std::fclose(stream);
}

TEST_F(CrcReadingTest, FileShorterThanTheStoredChecksumHasTheEmptyCrc) {
    const std::string path = write("short", {1, 2});
    QVS::CrcReading reading(4);
    FILE* stream = reading.Open(path.c_str());
    ASSERT_NE(stream, nullptr);
    uint32_t computed = 1;
    ASSERT_TRUE(reading.Finish(computed));
    EXPECT_EQ(computed, 0u);
    std::fclose(stream);
}

TEST_F(CrcReadingTest, PipeIsReadForwardAndToItsEnd) {
    const auto data = pattern(150000, 6);
    const std::string path = dir + "/fifo";
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    made.push_back(path);
    const pid_t writer = fork();
    ASSERT_GE(writer, 0);
    if (writer == 0) {
        const int fd = open(path.c_str(), O_WRONLY);
        std::size_t done = 0;
        while (fd >= 0 && done < data.size()) {
            const ssize_t n = ::write(fd, data.data() + done, data.size() - done);
            if (n <= 0)
                break;
            done += static_cast<std::size_t>(n);
        }
        _exit(done == data.size() ? 0 : 1);
    }
    QVS::CrcReading reading(4);
    FILE* stream = reading.Open(path.c_str());
    ASSERT_NE(stream, nullptr);
    unsigned char head[10];
    ASSERT_EQ(std::fread(head, 1, sizeof head, stream), sizeof head);
    // Forward by reading what it passes; backward cannot be done.
    ASSERT_EQ(fseeko(stream, 70000, SEEK_CUR), 0);
    unsigned char byte = 0;
    ASSERT_EQ(std::fread(&byte, 1, 1, stream), 1u);
    EXPECT_EQ(byte, data[70010]);
    EXPECT_NE(fseeko(stream, 0, SEEK_SET), 0);
    uint32_t computed = 0;
    ASSERT_TRUE(reading.Finish(computed));
    EXPECT_EQ(computed, referenceCrc(data, 4));
    std::fclose(stream);
    int status = 0;
    ASSERT_EQ(waitpid(writer, &status, 0), writer);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
}

TEST_F(CrcReadingTest, DeviceHasNoChecksum) {
    QVS::CrcReading reading(4);
    FILE* stream = reading.Open("/dev/zero");
    ASSERT_NE(stream, nullptr);
    unsigned char block[64];
    ASSERT_EQ(std::fread(block, 1, sizeof block, stream), sizeof block);
    uint32_t computed = 0;
    EXPECT_FALSE(reading.Finish(computed));
    std::fclose(stream);
}

TEST_F(CrcReadingTest, ReadFailureLeavesNoChecksum) {
    // A directory opens but cannot be read.
    QVS::CrcReading reading(4);
    FILE* stream = reading.Open(dir.c_str());
    ASSERT_NE(stream, nullptr);
    unsigned char byte;
    EXPECT_EQ(std::fread(&byte, 1, 1, stream), 0u);
    EXPECT_TRUE(std::ferror(stream));
    uint32_t computed = 0;
    EXPECT_FALSE(reading.Finish(computed));
    std::fclose(stream);
}

TEST_F(CrcReadingTest, MissingFileGivesNoStream) {
    QVS::CrcReading reading(4);
    errno = 0;
    EXPECT_EQ(reading.Open((dir + "/none").c_str()), nullptr);
    EXPECT_EQ(errno, ENOENT);
    uint32_t computed = 0;
    EXPECT_FALSE(reading.Finish(computed));
}

TEST_F(CrcReadingTest, VerifyReaderGivesTheCrcOnlyWhenMadeToFoldIt) {
    // Not a report: the reading stops at the first header, the CRC is whole.
    const auto data = pattern(40000, 7);
    const std::string path = write("report", data);
    std::ostringstream out;
    VerifyFile folding(path, ::open(path.c_str(), O_RDONLY | O_CLOEXEC), data.size(), out, 4);
    EXPECT_NE(folding.ReadAndValidateSectionAll(), 0u);
    uint32_t computed = 0;
    ASSERT_TRUE(folding.FinishCrc(computed));
    EXPECT_EQ(computed, referenceCrc(data, 4));
    EXPECT_EQ(folding.storedCrc, static_cast<uint32_t>(data[0] | data[1] << 8 | data[2] << 16 |
                                                       static_cast<uint32_t>(data[3]) << 24));
    VerifyFile plain(path, out, 4);
    EXPECT_FALSE(plain.FinishCrc(computed));
}

} // namespace

// A seek whose target would overflow is refused, not computed (a signed
// overflow is undefined behaviour, which the sanitizer build stops at).
TEST_F(CrcReadingTest, SeekBeyondTheLargestOffsetIsRefused) {
    const std::string path = write("report", pattern(100, 9));
    QVS::CrcReading reading(4);
    FILE* stream = reading.Open(path.c_str());
    ASSERT_NE(stream, nullptr);
    ASSERT_EQ(fseeko(stream, 50, SEEK_SET), 0);
    errno = 0;
    EXPECT_EQ(fseeko(stream, INT64_MAX, SEEK_CUR), -1);
    EXPECT_EQ(errno, EINVAL);
    EXPECT_EQ(fseeko(stream, INT64_MAX, SEEK_END), -1);
    EXPECT_EQ(fseeko(stream, -200, SEEK_END), -1);
    EXPECT_EQ(ftello(stream), 50);
    std::fclose(stream);
}
