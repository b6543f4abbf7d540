// Door of the t and z tests over a data set.

#include <algorithm>
#include <array>

#include "exports/parametric_input.hpp"
#include "frame/categories.hpp"
#include "suite/rngcore.hpp"

namespace inside = numcore::tests;

using inside::CompactSample;
using inside::MeanQuestion;
using inside::MeanTest;
using numcore::cST_DataSet;
using numcore::isTrue;
using numcore::kMissing;

namespace {

/// Cells of a sample and the weights of its rows.
struct Column {
    std::span<const double> cells;
    std::vector<double> weights;
};

struct TestedRow {
    MeanTest test;
    double n1 = 0.0;
    double n2 = kMissing;
};

class MeanTests {
  public:
    MeanTests(ST_DataSet* data, const ST_TZParam& param, ResamplingOptions* resampling)
        : data_(data), param_(param) {
        question_ = {param.hypothesised, param.alpha, inside::alternativeOf(param.alternative),
                     inside::askedFor(resampling)};
        byGroup_ = isTrue(param.byGroup) && !isOneSample() && !isPaired();
        if (byGroup_) findGroups();
    }

    /// Tests to make; 0 when the data set does not hold the samples.
    std::int32_t count() const {
        const std::int32_t nColumns = data_.numeric1->columnCount();
        if (isOneSample()) return nColumns;
        if (byGroup_) return groupOfRow_.empty() ? 0 : nColumns;
        return std::min(nColumns, data_.numeric2->columnCount());
    }

    TestedRow operator()(std::int32_t c) const {
        const Column first = column(*data_.numeric1, c, data_.observationWeights());
        if (isOneSample()) return oneSample(first);
        if (isPaired()) return paired(first, column(*data_.numeric2, c, {}));
        if (byGroup_) return independent(ofGroup(first, 0), ofGroup(first, 1));
        return independent(first, column(*data_.numeric2, c, secondWeights()));
    }

  private:
    bool isOneSample() const { return param_.design == NUMCORE_MEAN_ONE_SAMPLE; }
    bool isPaired() const { return param_.design == NUMCORE_MEAN_PAIRED; }
    bool isZ() const { return param_.test == NUMCORE_MEAN_Z; }

    void findGroups() {
        const std::int32_t c = data_.groupColumn - 1;
        if (!isTrue(data_.strings3Present) || c < 0 || c >= data_.strings3->columnCount()) return;
        numcore::frame::Categories groups = numcore::frame::findCategories(data_.strings3->cells(c));
        if (groups.labels.size() == 2) groupOfRow_ = std::move(groups.ofRow);
    }

    std::span<const double> secondWeights() const {
        if (!isTrue(data_.weights2Present)) return {};
        return std::as_const(*data_.weights2).span();
    }

    Column column(const numcore::cST_MVect<double>& table, std::int32_t c,
                  std::span<const double> weights) const {
        const auto cells = table.cells(c);
        return {cells, inside::rowWeights(data_, weights, cells.size())};
    }

    // The same cells with no weight outside the group.
    Column ofGroup(const Column& all, std::int32_t group) const {
        Column part = all;
        part.weights.resize(all.cells.size(), all.weights.empty() ? 1.0 : 0.0);
        for (std::size_t i = 0; i < part.weights.size(); ++i) {
            if (i >= groupOfRow_.size() || groupOfRow_[i] != group) part.weights[i] = 0.0;
        }
        return part;
    }

    // Rows without weight are taken out first: the one-sample tests count values whatever their weight.
    TestedRow oneSample(const Column& sample) const {
        const CompactSample kept = inside::compactSample(sample.cells, sample.weights);
        const auto given = isTrue(param_.givenVariances) ? std::optional(param_.variance1) : std::nullopt;
        return {isZ() ? inside::zTestOneSample(kept.values, kept.weights, given, question_)
                      : inside::tTestOneSample(kept.values, kept.weights, question_),
                static_cast<double>(kept.values.size())};
    }

    TestedRow independent(const Column& first, const Column& second) const {
        const CompactSample a = inside::compactSample(first.cells, first.weights);
        const CompactSample b = inside::compactSample(second.cells, second.weights);
        const inside::TVariant variant{isTrue(param_.equalVariances), isTrue(param_.cochranCox)};
        return {isZ() ? inside::zTestIndependent(a.view(), b.view(), given(), question_)
                      : inside::tTestIndependent(a.view(), b.view(), variant, question_),
                static_cast<double>(a.values.size()), static_cast<double>(b.values.size())};
    }

    TestedRow paired(const Column& first, const Column& second) const {
        const inside::CompactPairs pairs = inside::compactPairs(first.cells, second.cells, first.weights);
        return {isZ() ? inside::zTestPaired(pairs, given(), question_) : inside::tTestPaired(pairs, question_),
                static_cast<double>(pairs.first.size()), static_cast<double>(pairs.second.size())};
    }

    std::optional<inside::GivenVariances> given() const {
        if (!isTrue(param_.givenVariances)) return std::nullopt;
        return inside::GivenVariances{param_.variance1, param_.variance2};
    }

    cST_DataSet data_;
    const ST_TZParam& param_;
    MeanQuestion question_;
    bool byGroup_ = false;
    std::vector<std::int32_t> groupOfRow_;  // empty unless there are two groups
};

// The tests of a call draw from one seed: one of chance is chosen once, so that it tells of all of them.
class OneSeed {
  public:
    explicit OneSeed(ResamplingOptions* options) : options_(inside::askedFor(options)) {
        if (options_ == nullptr) return;
        given_ = options_->seedGiven;
        if (!isTrue(given_)) options_->seed = numcore::rngcore::chooseSeed();
        options_->seedGiven = NUMCORE_TRUE;
    }
    ~OneSeed() {
        if (options_ != nullptr) options_->seedGiven = given_;
    }
    OneSeed(const OneSeed&) = delete;
    OneSeed& operator=(const OneSeed&) = delete;

  private:
    ResamplingOptions* options_;
    std::int16_t given_ = 0;
};

std::array<double, NUMCORE_MEAN_COLUMNS> cellsOf(const TestedRow& row, bool isZ) {
    std::array<double, NUMCORE_MEAN_COLUMNS> cells{};
    cells[NUMCORE_MEAN_N1] = row.n1;
    cells[NUMCORE_MEAN_N2] = row.n2;
    cells[NUMCORE_MEAN_DIFFERENCE] = row.test.difference;
    cells[NUMCORE_MEAN_STATISTIC] = row.test.statistic;
    cells[NUMCORE_MEAN_CRITICAL] = row.test.critical;
    cells[NUMCORE_MEAN_DF] = isZ ? kMissing : row.test.df;
    cells[NUMCORE_MEAN_P] = row.test.pValue;
    cells[NUMCORE_MEAN_LOWER] = row.test.limits.lower;
    cells[NUMCORE_MEAN_UPPER] = row.test.limits.upper;
    cells[NUMCORE_MEAN_STATUS] = row.test.status;
    return cells;
}

// The status of the first test that failed.
std::int32_t write(std::span<const TestedRow> rows, bool isZ, ST_TZResults& results) {
    numcore::matrix<double> table(results.table);
    results.nTests = static_cast<std::int32_t>(rows.size());
    std::int32_t status = rows.empty() ? inside::kTooFew : inside::kDone;
    for (std::int32_t r = 0; r < results.nTests; ++r) {
        const TestedRow& row = rows[static_cast<std::size_t>(r)];
        const auto cells = cellsOf(row, isZ);
        for (std::int32_t j = 0; j < NUMCORE_MEAN_COLUMNS; ++j)
            table.at(r, j) = cells[static_cast<std::size_t>(j)];
        if (status == inside::kDone) status = row.test.status;
    }
    return status;
}

}  // namespace

int32_t Cpp_TZ_Compute(ST_DataSet* data, const ST_TZParam* param, ST_TZResults* results) {
    if (data == nullptr || param == nullptr || results == nullptr) return NUMCORE_TEST_TOO_FEW;
    return inside::withCopy(param->resampling, [&](ResamplingOptions* options) {
        return inside::withinMemory([&] {
            const OneSeed seed(options);
            const MeanTests tests(data, *param, options);
            std::vector<TestedRow> rows;
            rows.reserve(static_cast<std::size_t>(tests.count()));
            for (std::int32_t c = 0; c < tests.count(); ++c) rows.push_back(tests(c));
            return write(rows, param->test == NUMCORE_MEAN_Z, *results);
        });
    });
}
