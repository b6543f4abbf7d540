// The program as a process: exit codes, streams, files.

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;

struct Outcome {
    int exitCode = -1;
    std::string output;
};

/// Each test has a folder of its own.
class Program : public ::testing::Test {
  protected:
    void SetUp() override {
        folder_ = fs::temp_directory_path() / ("numcore_program_test_" + std::to_string(getpid()));
        fs::create_directories(folder_);
    }
    void TearDown() override { fs::remove_all(folder_); }

    std::string write(const std::string& name, const std::string& bytes) {
        std::ofstream(folder_ / name, std::ios::binary) << bytes;
        return (folder_ / name).string();
    }
    std::string path(const std::string& name) { return (folder_ / name).string(); }
    std::string read(const std::string& name) {
        std::ifstream in(folder_ / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }

    /// Runs the program in a shell; what it writes to both streams, in order, is the output.
    Outcome run(const std::string& arguments, const std::string& redirections = "2>&1") {
        return shell("'" NUMCORE_PROGRAM "' " + arguments + " " + redirections);
    }
    Outcome shell(const std::string& command) {
        Outcome outcome;
        std::FILE* pipe = popen(command.c_str(), "r");
        std::array<char, 4096> buffer{};
        for (std::size_t n = 1; n > 0;) {
            n = std::fread(buffer.data(), 1, buffer.size(), pipe);
            outcome.output.append(buffer.data(), n);
        }
        const int status = pclose(pipe);
        outcome.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        return outcome;
    }

  private:
    fs::path folder_;
};

const std::string kAirquality = "'" NUMCORE_DATA_DIR "/airquality.csv'";

TEST_F(Program, PrintsTheTableOfAFile) {
    const Outcome outcome = run("describe " + kAirquality + " -c Ozone,Wind");
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_NE(
        outcome.output.find("\nVariable    N  Missing  Present  Minimum  Maximum      Mean  Std. dev.\n"
                            "----------------------------------------------------------------------\n"
                            "Ozone     153       37      116      1      168    42.1293     32.9879\n"
                            "Wind      153        0      153      1.7     20.7   9.95752     3.523\n\n"
                            "153 rows read, 153 used, none dropped; 37 rows with missing cells (37 cells)\n"),
        std::string::npos)
        << outcome.output;
}

TEST_F(Program, KeepsMachineFormatsClean) {
    const Outcome table = run("describe " + kAirquality + " -c Ozone --format csv", "2>/dev/null");
    EXPECT_EQ(table.output,
              "variable,n,missing,present,minimum,maximum,mean,sd\n"
              "Ozone,153,37,116,1,168,42.12931034482759,32.98788451443395\n");
    const Outcome footer = run("describe " + kAirquality + " -c Ozone --format csv", "2>&1 >/dev/null");
    EXPECT_NE(footer.output.find("153 rows read"), std::string::npos);
    EXPECT_EQ(run("describe " + kAirquality + " -f tsv --quiet", "2>&1 >/dev/null").output, "");
}

TEST_F(Program, TellsByItsExitCodeHowItWent) {
    EXPECT_EQ(run("--version").exitCode, 0);
    EXPECT_EQ(run("--help").exitCode, 0);
    EXPECT_EQ(run("quantile --help").exitCode, 0);
    EXPECT_EQ(run("").exitCode, 1);
    EXPECT_EQ(run("describe").exitCode, 1);
    EXPECT_EQ(run("describe " + kAirquality + " -c Nothing").exitCode, 1);
    EXPECT_EQ(run("describe /no/such/file.csv").exitCode, 2);
    EXPECT_EQ(run("describe /tmp").exitCode, 2);
    EXPECT_EQ(run("describe " + write("empty.csv", "")).exitCode, 2);
    EXPECT_EQ(run("describe " + write("twice.csv", "a,a\n1,2\n")).exitCode, 3);
    EXPECT_EQ(run("completion bash").exitCode, 0);
}

TEST_F(Program, ComputesLaws) {
    EXPECT_EQ(run("cdf normal 1.96 --format csv").output, "x,lower\n1.96,0.9750021048517795\n");
    EXPECT_EQ(run("quantile chisq 0.95 1 --digits 4").exitCode, 0);
    EXPECT_EQ(run("pdf binom 0:3 n=3 p=0.5 -f tsv -q").output,
              "x\tprobability\n0\t0.125\n1\t0.375\n2\t0.375\n3\t0.125\n");
    EXPECT_EQ(run("cdf norm -inf,0 -f csv").output, "x,lower\n-inf,0\n0,0.5\n");
    EXPECT_EQ(run("law list").output, run("law").output);
    EXPECT_EQ(run("law nothing").exitCode, 1);
    EXPECT_EQ(run("cdf normal 1 0 -1").exitCode, 1);
    EXPECT_EQ(run("cdf normal --file /no/such.csv").exitCode, 2);
    const std::string probabilities = write("p.csv", "p\n0.5\nNA\n1.5\n");
    const Outcome column = run("quantile normal --file " + probabilities + " -f csv", "2>/dev/null");
    EXPECT_EQ(column.output, "row,p,quantile\n1,0.5,0\n2,,\n3,1.5,\n");
    EXPECT_EQ(column.exitCode, 3) << "1.5 is no probability";
    EXPECT_EQ(shell("printf 'x\\n1\\n' | '" NUMCORE_PROGRAM "' cdf exp 2 --file - -f csv -q").output,
              "row,x,lower\n1,1,0.8646647167633873\n");
}

TEST_F(Program, PrefersAFileToALawOfItsName) {
    write("t", "a\n1\n2\n3\n");
    const std::string inFolder = "cd " + path("") + " && '" NUMCORE_PROGRAM "' quantile ";
    EXPECT_EQ(shell(inFolder + "t --p 0.5 -f csv -q").output, "variable,q0.5\na,2\n");
    const Outcome both = shell(inFolder + "t 0.5 3 2>&1");
    EXPECT_EQ(both.exitCode, 1);
    EXPECT_NE(both.output.find("'t' is a file"), std::string::npos) << both.output;
    EXPECT_NE(both.output.find("its code 18"), std::string::npos);
    const Outcome neither = shell(inFolder + "nromal 2>&1");
    EXPECT_NE(neither.output.find("no file here and no law"), std::string::npos) << neither.output;
    EXPECT_NE(neither.output.find("did you mean normal?"), std::string::npos);
}

TEST_F(Program, DrawsLawsToFiles) {
    EXPECT_EQ(run("cdf gamma 2 2 3 --plot " + path("g.svg")).exitCode, 0);
    EXPECT_EQ(read("g.svg").substr(0, 4), "<svg");
    EXPECT_EQ(run("law poisson 4 --plot " + path("no/such/place.svg")).exitCode, 2);
    if (shell("xmllint --version 2>/dev/null").exitCode == 0) {
        EXPECT_EQ(shell("xmllint --noout " + path("g.svg")).exitCode, 0);
    }
}

TEST_F(Program, Correlates) {
    const Outcome outcome = run("cor " + kAirquality + " -c Ozone,Wind,Temp --plot " + path("map.svg"));
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_NE(
        outcome.output.find("\nOzone   1.000\nWind   -0.602***   1.000\nTemp    0.698***  -0.458***  1.000\n"),
        std::string::npos)
        << outcome.output;
    EXPECT_NE(outcome.output.find("\nWind  <0.0001\nTemp  <0.0001  <0.0001\n"), std::string::npos);
    EXPECT_EQ(read("map.svg").substr(0, 4), "<svg");
    const std::string written = run("cor " + kAirquality + " -c Ozone,Wind -o " + path("cor.csv")).output;
    EXPECT_EQ(read("cor.csv").substr(0, 62), "variable,with,coefficient,p,significant,squared,lower,upper,n\n")
        << written;
    EXPECT_EQ(run("cor " + kAirquality + " -c Ozone --with Nothing").exitCode, 1);
    EXPECT_EQ(run("cor " + kAirquality + " -c Ozone").exitCode, 2);
    EXPECT_EQ(run("alpha " + kAirquality + " -c Ozone-Temp").exitCode, 0);
    EXPECT_EQ(run("mantel " + kAirquality + " " + kAirquality).exitCode, 2) << "not square";
    if (shell("xmllint --version 2>/dev/null").exitCode == 0) {
        EXPECT_EQ(shell("xmllint --noout " + path("map.svg")).exitCode, 0);
    }
}

TEST_F(Program, NamesFileLineColumnAndWhatToDo) {
    std::string text = "x,y\n";
    for (int i = 0; i < 40; ++i) text += "1,2\n";
    const std::string file = write("bad.csv", text + "1,two\n");
    const Outcome outcome = run("describe " + file);
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_NE(outcome.output.find(file + ":42: column 2 'y': 'two' is not a number"), std::string::npos)
        << outcome.output;
    EXPECT_NE(outcome.output.find("--missing 'two'"), std::string::npos);
    EXPECT_EQ(run("describe " + file + " --missing two").exitCode, 0);
    EXPECT_EQ(run("describe " + file + " --text y").exitCode, 0);
    EXPECT_EQ(run("describe " + file + " --columns x").exitCode, 0)
        << "a column that is not used cannot be wrong";
}

TEST_F(Program, ReadsStandardInputInOtherEncodings) {
    const std::string utf16 = write("u.csv",
                                    "\xFF\xFE"
                                    "x\0;\0y\0\r\0\n\0001\0,\0005\0;\0\x3A\x04\r\0\n\0"s);
    const Outcome outcome = shell("cat " + utf16 + " | '" NUMCORE_PROGRAM "' describe - -f json");
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_NE(outcome.output.find("\"mean\": 1.5"), std::string::npos) << outcome.output;
    EXPECT_NE(outcome.output.find("\"category\": \"к\""), std::string::npos);
    EXPECT_NE(outcome.output.find("\"encoding\": \"UTF-16LE with byte order mark\""), std::string::npos);
}

TEST_F(Program, WritesFilesWholeOrNotAtAll) {
    const std::string out = write("out.csv", "before");
    EXPECT_EQ(run("describe " + write("bad.csv", "a,b\n1\n2,3\n") + " -o " + out).exitCode, 2);
    EXPECT_EQ(read("out.csv"), "before");
    EXPECT_EQ(run("quantile " + kAirquality + " -c Temp --p 50% -o " + out).exitCode, 0);
    EXPECT_EQ(read("out.csv"), "variable,q0.5\nTemp,79\n");
    EXPECT_EQ(run("quantile " + kAirquality + " -o " + path("page.html")).exitCode, 0);
    EXPECT_EQ(read("page.html").substr(0, 15), "<!DOCTYPE html>");
    EXPECT_EQ(run("describe " + kAirquality + " -o " + path("no/such/place.csv")).exitCode, 2);
}

TEST_F(Program, ReportsOutputThatCannotBeWritten) {
    if (!fs::exists("/dev/full")) GTEST_SKIP();
    const Outcome full = run("describe " + kAirquality, "2>&1 >/dev/full");
    EXPECT_EQ(full.exitCode, 2);
    EXPECT_NE(full.output.find("standard output: cannot write"), std::string::npos) << full.output;
    EXPECT_EQ(run("describe " + kAirquality + " -o /dev/full").exitCode, 2);
    EXPECT_EQ(run("describe " + kAirquality, "2>&1 >&-").exitCode, 2);
}

TEST_F(Program, EndsQuietlyWhenNobodyReads) {
    std::string text = "key\n";
    for (int i = 0; i < 50'000; ++i) text += "key" + std::to_string(i) + "\n";
    const std::string file = write("keys.csv", text);
    const Outcome outcome =
        shell("{ '" NUMCORE_PROGRAM "' describe " + file +
              " --max-categories 100000 2>&1; echo \"code $?\" >&2; } 2>" + path("code") + " | head -1");
    EXPECT_EQ(outcome.output, file + "\n");
    EXPECT_EQ(read("code"), "code 0\n");
}

TEST_F(Program, AnswersForNetworks) {
    const std::string asia = "'" NUMCORE_DATA_DIR "/networks/asia.bif'";
    const Outcome text = run("bayes " + asia + " -e xray=yes --joint lung,tub");
    EXPECT_EQ(text.exitCode, 0) << text.output;
    EXPECT_NE(text.output.find("evidence: xray=yes"), std::string::npos) << text.output;
    EXPECT_NE(text.output.find("P(lung, tub | evidence)"), std::string::npos) << text.output;
    EXPECT_EQ(run("bayes - --check < " + asia).exitCode, 0);
    EXPECT_EQ(run("bayes " + asia + " -o " + path("a.json") + " --plot " + path("a.svg") + " --tree").exitCode,
              0);
    EXPECT_NE(read("a.json").find("\"command\": \"bayes\""), std::string::npos);
    EXPECT_NE(read("a.svg").find("</svg>"), std::string::npos);

    EXPECT_EQ(run("bayes " + asia + " -e xray=maybe").exitCode, 1);
    EXPECT_EQ(run("bayes").exitCode, 1);
    EXPECT_EQ(run("bayes " + asia + " --memory 10").exitCode, 2);
    EXPECT_EQ(run("bayes " + path("nowhere.bif")).exitCode, 2);
    const Outcome wrong = run("bayes " + write("wrong.bif", "variable a {\n type discrete { x y }\n}"));
    EXPECT_EQ(wrong.exitCode, 2);
    EXPECT_NE(wrong.output.find("wrong.bif:3:1: expected ';' after the states, found '}'"), std::string::npos)
        << wrong.output;
    const std::string ring = write("ring.bif",
                                   "variable a { type discrete { x y }; } variable b { type discrete { x y }; }"
                                   "probability (a b) { default 1 0; } probability (b a) { default 0 1; }");
    const Outcome cycle = run("bayes " + ring);
    EXPECT_EQ(cycle.exitCode, 2);
    EXPECT_NE(cycle.output.find("the arcs make a cycle: b -> a -> b"), std::string::npos) << cycle.output;
    EXPECT_EQ(run("bayes --check " + ring).exitCode, 3);
    EXPECT_EQ(run("bayes " + asia + " -e smoke=yes,either=no,lung=yes").exitCode, 3) << "impossible";
}

}  // namespace
