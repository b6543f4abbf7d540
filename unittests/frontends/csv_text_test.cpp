// From bytes to fields: encodings, layouts, quotes.

#include <gtest/gtest.h>

#include "cli/csv/cells.hpp"
#include "cli/csv/dialect.hpp"
#include "cli/csv/encoding.hpp"
#include "cli/csv/fields.hpp"
#include "csv_support.hpp"

namespace numcore::cli {
namespace {

using namespace std::string_literals;

TEST(Encoding, GuessesFromMarkZeroBytesAndValidity) {
    struct Case {
        std::string bytes;
        Encoding encoding;
        std::size_t mark;
        bool assumed;
    };
    const Case cases[] = {
        {"a,b\n1,2\n", Encoding::kUtf8, 0, false},
        {"\xEF\xBB\xBF"s + "a", Encoding::kUtf8, 3, false},
        {"\xFF\xFE"s + "a\0,\0"s, Encoding::kUtf16Le, 2, false},
        {"\xFE\xFF"s + "\0a\0,"s, Encoding::kUtf16Be, 2, false},
        {"a\0,\0b\0\n\0"s, Encoding::kUtf16Le, 0, false},
        {"\0a\0,\0b\0\n"s, Encoding::kUtf16Be, 0, false},
        {"na\xC3\xAFve \xE2\x82\xAC \xF0\x9F\x98\x80", Encoding::kUtf8, 0, false},
        {"na\xEFve", Encoding::kWindows1252, 0, true},
        // Overlong, surrogate, beyond the last character, cut.
        {"\xC0\xAF", Encoding::kWindows1252, 0, true},
        {"\xED\xA0\x80", Encoding::kWindows1252, 0, true},
        {"\xF4\x90\x80\x80", Encoding::kWindows1252, 0, true},
        {"12345678\xE2\x82", Encoding::kWindows1252, 0, true},
    };
    for (const Case& c : cases) {
        const EncodingGuess guess = guessEncoding(c.bytes);
        EXPECT_EQ(guess.encoding, c.encoding) << c.bytes;
        EXPECT_EQ(guess.markLength, c.mark) << c.bytes;
        EXPECT_EQ(guess.assumed, c.assumed) << c.bytes;
    }
}

TEST(Encoding, ConvertsToUtf8) {
    const auto text = [](std::string_view bytes, Encoding encoding) {
        const auto out = convertToUtf8(bytes, encoding);
        return std::string(out.begin(), out.end());
    };
    EXPECT_EQ(text("\x80\xE9", Encoding::kWindows1252), "€é");
    EXPECT_EQ(text("\x80\xE9", Encoding::kLatin1), "\xC2\x80é");
    EXPECT_EQ(text("\x3D\xD8\x00\xDE"s, Encoding::kUtf16Le), "😀");
    EXPECT_EQ(text("\xD8\x3D\xDE\x00"s, Encoding::kUtf16Be), "😀");
    EXPECT_EQ(text("\x3D\xD8x"s, Encoding::kUtf16Le), "\uFFFD") << "half a pair, an odd byte";
}

TEST(Dialect, GuessesSeparatorDecimalMarkQuoteAndLineEnd) {
    struct Case {
        const char* text;
        char separator;
        char decimalMark;
        char quote = '"';
        char newline = '\n';
    };
    const Case cases[] = {
        {"a,b\n1.5,2\n", ',', '.'},
        {"a;b\n1,5;2,5\n3,5;4\n", ';', ','},
        {"a;b\n1.5;2\n", ';', '.'},
        {"a\tb c\n1,5\t2\n", '\t', ','},
        {"a|b\n1|x\n", '|', '.'},
        {"name,note\nx,a;b\ny,c\n", ',', '.'},
        {"name;note\n\"a;b\";1,5\n\"c,d\";2,5\n", ';', ','},
        {"y\n1.5\n2.5\n", ',', '.'},
        {"y\n1,5\n2,7\n", ';', ','},
        {"a,b\n1,2\n3\n", ',', '.'},
        {"a,b\n'x,1',2\n'y',3\n", ',', '.', '\''},
        {"a,b\nit's,2\n", ',', '.'},
        {"a,b\r1,2\r3,4\r", ',', '.', '"', '\r'},
        {"a,b\r\n1,2\r\n", ',', '.'},
    };
    for (const Case& c : cases) {
        const Dialect dialect = guessDialect(c.text, {}, {});
        EXPECT_EQ(dialect.separator, c.separator) << c.text;
        EXPECT_EQ(dialect.decimalMark, c.decimalMark) << c.text;
        EXPECT_EQ(dialect.quote, c.quote) << c.text;
        EXPECT_EQ(dialect.newline, c.newline) << c.text;
    }
}

TEST(Fields, KnowQuotesBlanksAndLineEnds) {
    const Dialect dialect;
    const std::string text = " a b ,\"x,\ny\", \"say \"\"hi\"\"\" ,,5\" x\r\nnext";
    std::vector<Field> fields;
    const char* end = text.data() + text.size();
    const char* next = readRecord(text.data(), end, dialect, fields);
    ASSERT_EQ(fields.size(), 5U);
    EXPECT_EQ(fields[0].text, "a b");
    EXPECT_EQ(fields[1].text, "x,\ny");
    EXPECT_EQ(unquoted(fields[2], '"'), "say \"hi\"");
    EXPECT_EQ(fields[3].text, "");
    EXPECT_EQ(fields[4].text, "5\" x");
    EXPECT_EQ(std::string(next, end), "next");

    readRecord(text.data() + text.size(), end, dialect, fields);
    EXPECT_EQ(fields.size(), 1U) << "nothing is one empty field";
    const std::string broken = "\"a\"b,\"c";
    readRecord(broken.data(), broken.data() + broken.size(), dialect, fields);
    EXPECT_TRUE(fields[0].trailing);
    EXPECT_TRUE(fields[1].open);
}

// Two ways over a record must end at the same place.
TEST(Fields, SkippingAndReadingARecordAgree) {
    std::vector<Field> fields;
    for (const char quote : {'"', '\0'}) {
        const Dialect dialect{',', '.', quote, '\n'};
        for (const char* text :
             {"a,b\nc", "\"a\nb\",c\nd", "a \"x\n\"b", " \"a\n\" ,b\nc", "\"a\"\"\n\",b\nc", "\"a\" \"b\n\"c\n",
              "5\",\"\n\"\n", ",\"\"\n\"", "\"a", "", "\n\n", "\"\"\"\n\"\"\"\nx", "a,\t\"b\n\",c\nd"}) {
            const char* end = text + std::string_view(text).size();
            EXPECT_EQ(skipRecord(text, end, dialect) - text, readRecord(text, end, dialect, fields) - text)
                << text;
        }
    }
}

TEST(Cells, TellNumbersMissingCellsAndTexts) {
    const CellReader reader('.', {"NA", "NaN", "-999", "."});
    const CellReader comma(',', {});
    std::size_t outOfRange = 0;
    double value = 0.0;
    for (const char* text : {"", "  ", "NA", " NA ", "NaN", "nan", "-999", "-999.0", "-9.99e2", "."}) {
        EXPECT_EQ(reader.read(text, value, outOfRange), CellKind::kMissing) << text;
    }
    for (const char* text :
         {"na", "1,5", "1.5x", "1 5", "0x10", "+-1", "--", "e5", "$5", "5%", "1e", "1_000"}) {
        EXPECT_EQ(reader.read(text, value, outOfRange), CellKind::kText) << text;
    }
    const std::pair<const char*, double> values[] = {{"+1.5", 1.5},      {" 7 ", 7.0},     {"-.5", -0.5},
                                                     {"5.", 5.0},        {"1E+3", 1000.0}, {"0.1", 0.1},
                                                     {"-inf", -INFINITY}};
    for (const auto& [text, expected] : values) {
        EXPECT_EQ(reader.read(text, value, outOfRange), CellKind::kNumber) << text;
        EXPECT_EQ(value, expected) << text;
    }
    EXPECT_EQ(outOfRange, 0U);
    EXPECT_EQ(reader.read("-1e999", value, outOfRange), CellKind::kNumber);
    EXPECT_EQ(value, -INFINITY);
    EXPECT_EQ(outOfRange, 1U);
    EXPECT_EQ(comma.read("1,5", value, outOfRange), CellKind::kNumber);
    EXPECT_EQ(value, 1.5);
    EXPECT_EQ(comma.read("1.5", value, outOfRange), CellKind::kText);
    EXPECT_EQ(comma.read("nan", value, outOfRange), CellKind::kNumber) << "no word says it is missing";
}

}  // namespace
}  // namespace numcore::cli
