// The alpha command. Expected: R, alpha from cov and cor of the items, item-rest correlations by cor.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "cli/run.hpp"
#include "csv_support.hpp"
#include "numcore/api.h"
#include "reference_table.hpp"

namespace numcore::cli {
namespace {

using numcore::testing::agrees;

Report reliabilityOf(const std::string& file, const std::string& columns) {
    Options options;
    options.command = Command::kReliability;
    options.file = file;
    options.selection.columns = {columns};
    return analyse(options);
}

void expectRow(const std::vector<Cell>& row, std::size_t first, const std::vector<double>& expected) {
    for (std::size_t k = 0; k < expected.size(); ++k) {
        const auto* got = std::get_if<double>(&row.at(first + k));
        ASSERT_NE(got, nullptr) << k;
        EXPECT_TRUE(agrees(*got, expected[k], 1e-12)) << k << ": " << *got << ", expected " << expected[k];
    }
}

TEST(Alpha, AgreesWithR) {
    const Report report = reliabilityOf(NUMCORE_DATA_DIR "/iris.csv", "1-4");
    expectRow(report.tables.at(0).rows.at(0), 2, {0.70847724832832992, 0.62040177764719351});
    const auto& items = report.tables.at(1).rows;
    expectRow(items.at(0), 1,
              {5.8433333333333337, 0.82806612797786294, 0.89404025001116616, 0.45426659485435711,
               0.15132121526302328});
    expectRow(items.at(1), 1,
              {3.0573333333333332, 0.43586628493669821, -0.34865774726907145, 0.87714478364413839,
               0.95816560886171354});
    EXPECT_EQ(report.notes, std::vector<std::string>{
                                "'Sepal.Width' runs against the rest of the scale; should it be reversed?"});
}

TEST(Alpha, LeavesOutIncompleteRows) {
    const Report report = reliabilityOf(NUMCORE_DATA_DIR "/airquality.csv", "Ozone-Temp");
    EXPECT_EQ(report.rows.used, 111U);
    EXPECT_EQ(report.droppedWhy, "42 with missing cells");
    const TemporaryFile two("a,b,t\n1,2,x\n2,3,y\n,1,z\n4,4,u\n");
    const Report pair = reliabilityOf(two.path(), "a,b,t");
    // Of two columns alpha is 2(1 - sum of variances / variance of the sum): here 1 - (7/3 + 1)/(19/3) twice.
    expectRow(pair.tables.at(0).rows.at(0), 2, {2.0 * (1.0 - (10.0 / 3.0) / (19.0 / 3.0))});
    EXPECT_EQ(pair.tables.at(1).rows.at(0).at(4), Cell()) << "one item left is no scale";
    EXPECT_EQ(pair.notes, std::vector<std::string>{"'t' is left out: it holds texts"});
    EXPECT_THROW(reliabilityOf(two.path(), "a,t"), DataError);
    const TemporaryFile empty("a,b\n1,\n,2\n1,\n,2\n");
    const Report none = reliabilityOf(empty.path(), "1,2");
    EXPECT_EQ(none.rows.used, 0U);
    EXPECT_EQ(none.tables.at(0).rows.at(0).at(2), Cell());
    const TemporaryFile endless("a,b\n1,2\n2,Inf\n3,5\n");
    EXPECT_EQ(reliabilityOf(endless.path(), "1,2").notes,
              std::vector<std::string>{"'b' holds an infinite value: it has no spread, the scale no alpha"});
}

}  // namespace
}  // namespace numcore::cli
