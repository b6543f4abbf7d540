#include "caller/data_set.hpp"

#include <algorithm>
#include <utility>

namespace numcore::caller {

void DataSet::noteRows(std::int32_t n) {
    if (record_.nRows == 0) record_.nRows = n;
}

DataSet& DataSet::setNumeric1(NumericTable table) {
    numeric1_.emplace(std::move(table));
    record_.numeric1 = numeric1_->record();
    record_.numeric1Present.value = NUMCORE_TRUE;
    record_.labelsPresent = NUMCORE_TRUE;
    noteRows(record_.numeric1.nRows);
    return *this;
}

DataSet& DataSet::setNumeric2(NumericTable table) {
    numeric2_.emplace(std::move(table));
    record_.numeric2 = numeric2_->record();
    record_.numeric2Present.value = NUMCORE_TRUE;
    noteRows(record_.numeric2.nRows);
    return *this;
}

DataSet& DataSet::setStrings1(TextTable table) {
    strings1_.emplace(std::move(table));
    record_.strings1 = strings1_->record();
    record_.strings1Present.value = NUMCORE_TRUE;
    record_.labelsPresent = NUMCORE_TRUE;
    noteRows(record_.strings1.nRows);
    return *this;
}

DataSet& DataSet::setStrings2(TextTable table) {
    strings2_.emplace(std::move(table));
    record_.strings2 = strings2_->record();
    record_.strings2Present.value = NUMCORE_TRUE;
    noteRows(record_.strings2.nRows);
    return *this;
}

DataSet& DataSet::setStrings3(TextTable table, std::int32_t groupColumn) {
    strings3_.emplace(std::move(table));
    record_.strings3 = strings3_->record();
    record_.strings3Present = NUMCORE_TRUE;
    record_.groupColumn = groupColumn;
    noteRows(record_.strings3.nRows);
    return *this;
}

DataSet& DataSet::setWeights(Array weights) {
    weights_ = std::move(weights);
    record_.weights = weights_.get();
    record_.weightsPresent = NUMCORE_TRUE;
    noteRows(static_cast<std::int32_t>(weights_.size()));
    return *this;
}

DataSet& DataSet::setWeights2(Array weights) {
    weights2_ = std::move(weights);
    record_.weights2 = weights2_.get();
    record_.weights2Present = NUMCORE_TRUE;
    return *this;
}

DataSet& DataSet::setRowMarks(Array marks) {
    rowMarks_ = std::move(marks);
    record_.rowMarks = rowMarks_.get();
    record_.rowMarksPresent = NUMCORE_TRUE;
    const auto values = rowMarks_.asShorts();
    record_.nMarked = static_cast<std::int32_t>(std::ranges::count(values, NUMCORE_TRUE));
    return *this;
}

DataSet& DataSet::setRowLabels(Array labels) {
    rowLabels_ = std::move(labels);
    record_.rowLabels = rowLabels_.get();
    record_.rowLabelsPresent.value = NUMCORE_TRUE;
    return *this;
}

DataSet& DataSet::setNRows(std::size_t n) {
    record_.nRows = static_cast<std::int32_t>(n);
    return *this;
}

DataSet& DataSet::setGroupArrays(std::size_t n) {
    groups_ = Array::ints(n);
    order_ = Array::ints(n);
    record_.groups = groups_.get();
    record_.order = order_.get();
    return *this;
}

}  // namespace numcore::caller
