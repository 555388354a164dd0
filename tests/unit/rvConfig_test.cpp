// rvConfig_test.cpp - settings read from the command line, and their dump.
#include "util/logsift/rvConfig.h"
#include "util/support/qvsApp.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

namespace {

// Runs the parser on "logsift" followed by `args`; returns its result.
int Parse(RVConfig& cfg, std::vector<std::string> args, std::string* out = nullptr,
          std::string* err = nullptr) {
    args.insert(args.begin(), "logsift");
    std::vector<char*> argv;
    for (auto& a : args)
        argv.push_back(&a[0]);
    argv.push_back(nullptr);
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    int result = cfg.ProcessCommandLine(std::cout, static_cast<int>(args.size()), argv.data());
    std::string o = testing::internal::GetCapturedStdout();
    std::string e = testing::internal::GetCapturedStderr();
    if (out)
        *out = o;
    if (err)
        *err = e;
    return result;
}

} // namespace

TEST(RVConfigTest, Defaults) {
    RVConfig cfg("logsift", "1.00");
    EXPECT_EQ(cfg.verbose, 4u);
    EXPECT_EQ(cfg.directory, "/var/opt/kestrel/log/qvs/rav/");
    EXPECT_EQ(cfg.programName, "logsift");
    EXPECT_EQ(cfg.version, "1.00");
    EXPECT_FALSE(cfg.listActions || cfg.listObjectDetails || cfg.listHistograms);
    EXPECT_FALSE(cfg.verify || cfg.rebuild || cfg.newest);
    EXPECT_TRUE(cfg.fileName.empty() && cfg.poolName.empty() && cfg.serverName.empty());
}

TEST(RVConfigTest, FileTypesSetTheirFlags) {
    {
        RVConfig cfg("logsift", "1.00");
        EXPECT_EQ(Parse(cfg, {"rtf", "log.xml"}), 0);
        EXPECT_TRUE(cfg.rebuild);
        EXPECT_FALSE(cfg.verify || cfg.newest);
        EXPECT_EQ(cfg.fileName, "log.xml");
    }
    {
        RVConfig cfg("logsift", "1.00");
        EXPECT_EQ(Parse(cfg, {"vbf", "r.vbf"}), 0);
        EXPECT_TRUE(cfg.verify);
        EXPECT_FALSE(cfg.rebuild || cfg.newest);
        EXPECT_EQ(cfg.fileName, "r.vbf");
    }
    {
        RVConfig cfg("logsift", "1.00");
        EXPECT_EQ(Parse(cfg, {"rtfn", "pool1"}), 0);
        EXPECT_TRUE(cfg.rebuild && cfg.newest);
        EXPECT_EQ(cfg.poolName, "pool1");
        EXPECT_EQ(cfg.serverName, "");
    }
    {
        RVConfig cfg("logsift", "1.00");
        EXPECT_EQ(Parse(cfg, {"vbfn", "pool", "srv"}), 0);
        EXPECT_TRUE(cfg.verify && cfg.newest);
        EXPECT_EQ(cfg.poolName, "pool");
        EXPECT_EQ(cfg.serverName, "srv");
    }
}

TEST(RVConfigTest, UnexpectedArguments) {
    RVConfig a("logsift", "1.00");
    std::string err;
    EXPECT_EQ(Parse(a, {"vbf", "a", "b"}, nullptr, &err), 2);
    EXPECT_EQ(err, "logsift: unexpected argument - b.\nTry 'logsift --help' for more information.\n");
    RVConfig b("logsift", "1.00");
    EXPECT_EQ(Parse(b, {"vbfn", "pool", "srv", "x"}, nullptr, &err), 2);
    EXPECT_EQ(err, "logsift: unexpected argument - x.\nTry 'logsift --help' for more information.\n");
    EXPECT_EQ(b.serverName, "srv"); // left as it was at the error
}

TEST(RVConfigTest, VerboseLevelSetsBothMasks) {
    RVConfig cfg("logsift", "1.00");
    TheApp.SetLevel(0);
    EXPECT_EQ(Parse(cfg, {"-V", "0x10", "vbf", "f"}), 0);
    EXPECT_EQ(cfg.verbose, 16u);
    EXPECT_EQ(TheApp.Level(), 16u);
    RVConfig octal("logsift", "1.00");
    EXPECT_EQ(Parse(octal, {"--verbose=010", "vbf", "f"}), 0);
    EXPECT_EQ(octal.verbose, 8u);
    EXPECT_EQ(TheApp.Level(), 8u);
    TheApp.SetLevel(0);
}

TEST(RVConfigTest, DefaultVerboseLeavesApplicationMaskAlone) {
    TheApp.SetLevel(0);
    RVConfig cfg("logsift", "1.00");
    EXPECT_EQ(Parse(cfg, {"vbf", "f"}), 0);
    EXPECT_EQ(cfg.verbose, 4u);
    EXPECT_EQ(TheApp.Level(), 0u);
}

TEST(RVConfigTest, IllegalAndInvalidLevels) {
    for (const char* level : {"0", "-3", "4294967296"}) {
        RVConfig cfg("logsift", "1.00");
        std::string err;
        EXPECT_EQ(Parse(cfg, {"-V", level, "vbf", "f"}, nullptr, &err), 1) << level;
        EXPECT_EQ(err, std::string("logsift: illegal LEVEL value '") + level + "'\n");
        EXPECT_EQ(cfg.verbose, 4u);
    }
    RVConfig cfg("logsift", "1.00");
    std::string err;
    EXPECT_EQ(Parse(cfg, {"-V", "3x", "vbf", "f"}, nullptr, &err), 1);
    EXPECT_EQ(err, "logsift: invalid LEVEL format '3x'\n");
}

TEST(RVConfigTest, PathAlwaysEndsInSlash) {
    RVConfig a("logsift", "1.00");
    EXPECT_EQ(Parse(a, {"-P", "/data", "vbfn", "p"}), 0);
    EXPECT_EQ(a.directory, "/data/");
    RVConfig b("logsift", "1.00");
    EXPECT_EQ(Parse(b, {"--path=/data/", "vbfn", "p"}), 0);
    EXPECT_EQ(b.directory, "/data/");
    RVConfig c("logsift", "1.00");
    EXPECT_EQ(Parse(c, {"-P", "", "vbfn", "p"}), 0);
    EXPECT_EQ(c.directory, "/");
}

TEST(RVConfigTest, HelpAndVersionStopAtOnce) {
    RVConfig cfg("logsift", "1.00");
    std::string out;
    EXPECT_EQ(Parse(cfg, {"-a", "-v", "-o", "xyz"}, &out), 1);
    EXPECT_TRUE(cfg.listActions);
    EXPECT_FALSE(cfg.listObjectDetails);
    EXPECT_EQ(out.substr(0, 19), "logsift (QVS) 1.00\n");
    RVConfig help("logsift", "1.00");
    EXPECT_EQ(Parse(help, {"-h", "-V", "0"}, &out), 1);
    EXPECT_EQ(out.substr(0, 40), "Kestrel QVS - Rebuild And Verify Viewer\n");
}

TEST(RVConfigTest, VersionUsesTheConstructorsStrings) {
    RVConfig cfg("other", "2.5");
    std::string out;
    EXPECT_EQ(Parse(cfg, {"-v"}, &out), 1);
    EXPECT_EQ(out.substr(0, out.find('\n') + 1), "other (QVS) 2.5\n");
    // Exactly two lines: the version and the rights notice.
    EXPECT_EQ(std::count(out.begin(), out.end(), '\n'), 2);
}

TEST(RVConfigTest, UsageShowsCurrentDirectoryAndSetsShowbase) {
    RVConfig cfg("logsift", "1.00");
    cfg.directory = "/x/";
    std::ostringstream os;
    cfg.Usage(os);
    EXPECT_NE(os.str().find("\n" + std::string(37, ' ') + "Default is \"/x/\"\n"), std::string::npos);
    EXPECT_TRUE(os.flags() & std::ios_base::showbase);
}

TEST(RVConfigTest, NotLegalFileTypeGoesToTheGivenStream) {
    RVConfig cfg("logsift", "1.00");
    std::string out, err;
    EXPECT_EQ(Parse(cfg, {"xyz"}, &out, &err), 2);
    EXPECT_EQ(out, "FILETYPE xyz is not legal.\n");
    EXPECT_EQ(err, "Try 'logsift --help' for more information.\n");
}

TEST(RVConfigTest, SettingsDump) {
    RVConfig cfg("logsift", "1.00");
    cfg.fileName = "f";
    cfg.poolName = "p";
    cfg.serverName = "s";
    cfg.newest = true;
    cfg.verbose = 255;
    cfg.listHistograms = true;
    std::ostringstream os;
    os << std::hex << std::boolalpha; // neither changes how the dump reads
    os.unsetf(std::ios_base::boolalpha);
    os << cfg;
    EXPECT_EQ(os.str(), "    FileName            - f\n"
                        "    PoolName            - p\n"
                        "    Servername          - s\n"
                        "    Newest              - 1\n"
                        "    Verify              - 0\n"
                        "    Rebuild             - 0\n"
                        "    Verbose             - 255\n"
                        "    Directory           - /var/opt/kestrel/log/qvs/rav/\n"
                        "    List Actions        - 0\n"
                        "    List Object Details - 0\n"
                        "    List Histograms     - 1\n");
}

TEST(AppTest, DebugLevelIsABitTest) {
    APP app(0x40000004u);
    EXPECT_TRUE(app.DebugLevel(4));
    EXPECT_TRUE(app.DebugLevel(0x40000000u));
    EXPECT_TRUE(app.DebugLevel(0xFFFFFFFFu));
    EXPECT_FALSE(app.DebugLevel(8));
    EXPECT_FALSE(app.DebugLevel(0));
    APP zero(0);
    EXPECT_FALSE(zero.DebugLevel(0xFFFFFFFFu));
}
