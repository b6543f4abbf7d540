#include <gtest/gtest.h>

#include <new>
#include <stdexcept>

#include "caller/data_set.hpp"
#include "caller/forms.hpp"
#include "caller/text.hpp"
#include "numcore/numcore.h"

namespace numcore::caller {
namespace {

TEST(CallerText, ConvertsBothWays) {
    const std::string text = "a\u00E9\u20AC\U0001F600\u6771";
    EXPECT_EQ(toUtf16(text), u"a\u00E9\u20AC\U0001F600\u6771");
    EXPECT_EQ(toUtf8(toUtf16(text)), text);
    EXPECT_EQ(toUtf16("\xFF"
                      "a\xC3"),
              u"\uFFFDa\uFFFD");
    EXPECT_EQ(toUtf16("\xED\xA0\x80").find(u'\xD800'), std::u16string::npos) << "no surrogate from UTF-8";
    EXPECT_EQ(toUtf8(std::u16string(1, u'\xD800')), "\uFFFD");
    BSTR string = newText(std::string_view("\u20AC\0x", 5));
    EXPECT_EQ(textView(string), std::u16string_view(u"\u20AC\0x", 3));
    SysFreeString(string);
}

TEST(CallerArray, OwnsVectorsMatricesAndTexts) {
    Array matrix = Array::matrix(2, 3);
    EXPECT_EQ(matrix.size(), 6U);
    EXPECT_EQ(matrix.nRows(), 2U);
    matrix.asDoubles()[5] = 7.0;
    EXPECT_EQ(matrix.at(1, 2), 7.0) << "column by column";
    EXPECT_THROW(matrix.at(2, 0), std::out_of_range);
    EXPECT_THROW(matrix.at(0, 3), std::out_of_range);
    EXPECT_EQ(matrix.get()->rgsabound[0].cElements, 3U) << "last dimension first";
    Array texts = Array::texts(2);
    texts.setText(0, u"one");
    texts.setText(0, u"two");
    EXPECT_EQ(texts.text(0), u"two");
    EXPECT_EQ(texts.text(1), u"") << "null";
    EXPECT_TRUE(texts.asDoubles().size() == 2 && Array().asDoubles().empty());
    Array moved = std::move(texts);
    EXPECT_EQ(moved.text(0), u"two");
    EXPECT_EQ(texts.get(), nullptr);  // NOLINT(bugprone-use-after-move): what a move leaves behind
    EXPECT_THROW(Array::doubles(std::size_t{1} << 40), std::bad_alloc);
}

TEST(CallerTable, BuildsRecordsThatSurviveAMove) {
    NumericTable first = numericTable({{u"x", {1, 2, 3}}, {u"y", {4, 5}}});
    NumericTable table = std::move(first);
    EXPECT_EQ(table.record().nColumns, 2);
    EXPECT_EQ(table.record().nRows, 3);
    EXPECT_EQ(table.record().nCells, 3);
    const auto* columns = static_cast<ST_Column*>(table.record().columns->pvData);
    EXPECT_EQ(static_cast<double*>(columns[1].cells->pvData)[1], 5.0);
    EXPECT_EQ(static_cast<std::int32_t*>(table.record().attributes->pvData)[1], 2) << "its own length";
    EXPECT_EQ(table.label(1), u"y");
    DataSet data;
    data.setNumeric1(std::move(table)).setStrings3(textTable({{u"g", {u"a", u"b", u""}}}));
    EXPECT_EQ(data.record().nRows, 3);
    EXPECT_EQ(data.record().groupColumn, 1);
    EXPECT_EQ(data.record().numeric1Present.value, NUMCORE_TRUE);
    EXPECT_EQ(data.record().weightsPresent, NUMCORE_FALSE);
}

// A door that reads and one that fills the forms.
TEST(CallerForms, TravelThroughTheLibrary) {
    DataSet data;
    data.setNumeric1(numericTable({{u"x", {1, 2, 6, NUMCORE_MISSING}}}));
    DescStats stats(1);
    Host host(u"text");
    Cpp_GetDescriptive_ST(&data.record(), NUMCORE_FALSE, &stats.record(), host.system());
    EXPECT_EQ(stats.labels().text(0), u"x");
    EXPECT_EQ(stats.table().at(0, 1), 1.0);
    EXPECT_EQ(stats.table().at(0, 5), 3.0);

    data = DataSet();
    data.setStrings1(textTable({{u"t", {u"b", u"a", u"b", u""}}}));
    QualiInfo info(1);
    Cpp_GetMaxCat_ST(&data.record().strings1, 1, &info.record());
    ASSERT_EQ(info.nCategories(0), 2U);
    info.allocate(2);
    EXPECT_EQ(Cpp_GetQualiDataInfo_ST(&data.record(), &info.record()), 0);
    EXPECT_EQ(info.labels().column(0).text(1), u"b");
    EXPECT_EQ(info.counts().column(0).at(1), 2.0);
    Messages messages(3);
    messages.set(1, u"all");
    EXPECT_EQ(std::u16string(messages.data()[1]), u"all");
    EXPECT_EQ(messages.data()[0], nullptr);
}

}  // namespace
}  // namespace numcore::caller
