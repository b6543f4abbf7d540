// Building the data set from the caller's record, and telling the record what changed.

#include "numcore/dataset.hpp"

#include <algorithm>

namespace numcore {
namespace {

std::u16string textOf(const char16_t* text) {
    return text == nullptr ? std::u16string() : std::u16string(text);
}

template <class T, class Source>
std::unique_ptr<T> make(Source* source) {
    return std::make_unique<T>(source);
}

template <class T>
FormatList<T> formatList(std::int32_t length, SAFEARRAY* array) {
    FormatList<T> list{0, matrix<T>(array)};
    list.length = std::clamp(length, 0, list.cells.size());
    return list;
}

std::u16string boundedText(const char16_t* text, std::size_t capacity) {
    return std::u16string(text, std::find(text, text + capacity, u'\0'));
}

}  // namespace

cST_TableFormats::cST_TableFormats(ST_TableFormats* source) : record(source) {
    if (source == nullptr) return;
    columnWidth = source->columnWidth;
    headerColour = source->headerColour;
    bodyColour = source->bodyColour;
    decimals = source->decimals;
    textFormat = boundedText(source->textFormat, std::size(source->textFormat));
    showRowLabels = source->showRowLabels;
    showColumnLabels = source->showColumnLabels;
    layout = source->layout;
    boldHeader = source->boldHeader;
    highlight = source->highlight;
    general = source->general;
    nBlocks = source->nBlocks;
    nRows = source->nRows;
    nColumns = source->nColumns;
    numberFormats = formatList<u16string>(source->nNumberFormats, source->numberFormats);
    formatKinds = formatList<std::int32_t>(source->nFormatKinds, source->formatKinds);
    formatDigits = formatList<std::int32_t>(source->nFormatDigits, source->formatDigits);
    columnTable = formatList<std::int32_t>(source->nColumnTable, source->columnTable);
    rowTable = formatList<std::int32_t>(source->nRowTable, source->rowTable);
}

void cST_TableFormats::writeBack() const noexcept {
    if (record == nullptr) return;
    record->columnWidth = columnWidth;
    record->headerColour = headerColour;
    record->bodyColour = bodyColour;
    record->decimals = decimals;
    std::fill(std::begin(record->textFormat), std::end(record->textFormat), u'\0');
    std::copy_n(textFormat.begin(), std::min(textFormat.size(), std::size(record->textFormat) - 1),
                std::begin(record->textFormat));
    record->showRowLabels = showRowLabels;
    record->showColumnLabels = showColumnLabels;
    record->layout = layout;
    record->boldHeader = boldHeader;
    record->highlight = highlight;
    record->general = general;
    record->nBlocks = nBlocks;
    record->nRows = nRows;
    record->nColumns = nColumns;
    record->nNumberFormats = numberFormats.length;
    record->nFormatKinds = formatKinds.length;
    record->nFormatDigits = formatDigits.length;
    record->nColumnTable = columnTable.length;
    record->nRowTable = rowTable.length;
}

cST_QualiInfo::cST_QualiInfo(ST_QualiInfo* source) : record(source) {
    if (source == nullptr) return;
    nVariables = source->nVariables;
    totalWeight = source->totalWeight;
    maxCategories = source->maxCategories;
    nCategories = matrix<std::int32_t>(source->nCategories);
    nRows = source->nRows;
    labels = cST_MVect<u16string>(&source->labels);
    counts = cST_MVect<double>(&source->counts);
    frequencies = cST_MVect<double>(&source->frequencies);
    nMissing = source->nMissing;
    names = matrix<u16string>(source->names);
    hasWeights = source->hasWeights;
    sorted = source->sorted;
    missing = matrix<double>(source->missing);
    status = source->status;
    nDropped = source->nDropped;
}

void cST_QualiInfo::writeBack() const noexcept {
    if (record == nullptr) return;
    record->nVariables = nVariables;
    record->totalWeight = totalWeight;
    record->maxCategories = maxCategories;
    record->nRows = nRows;
    labels.writeBack();
    counts.writeBack();
    frequencies.writeBack();
    record->nMissing = nMissing;
    record->hasWeights = hasWeights;
    record->sorted = sorted;
    record->status = status;
    record->nDropped = nDropped;
}

cST_DataSet::cST_DataSet()
    : numeric1(std::make_unique<cST_MVect<double>>()),
      raw1(std::make_unique<cST_MVect<CellVal>>()),
      numeric2(std::make_unique<cST_MVect<double>>()),
      raw2(std::make_unique<cST_MVect<CellVal>>()),
      strings1(std::make_unique<cST_MVect<u16string>>()),
      raw3(std::make_unique<cST_MVect<CellVal>>()),
      strings2(std::make_unique<cST_MVect<u16string>>()),
      raw4(std::make_unique<cST_MVect<CellVal>>()),
      rowNumbers(std::make_unique<matrix<std::int32_t>>()),
      groups(std::make_unique<matrix<std::int32_t>>()),
      numericTypes(std::make_unique<matrix<std::int32_t>>()),
      stringTypes(std::make_unique<matrix<std::int32_t>>()),
      order(std::make_unique<matrix<std::int32_t>>()),
      selection(std::make_unique<matrix<std::int32_t>>()),
      rowLabels(std::make_unique<matrix<u16string>>()),
      weights(std::make_unique<matrix<double>>()),
      weights2(std::make_unique<matrix<double>>()),
      strings3(std::make_unique<cST_MVect<u16string>>()),
      numeric3(std::make_unique<cST_MVect<double>>()),
      rowMarks(std::make_unique<matrix<std::int16_t>>()) {}

cST_DataSet::cST_DataSet(ST_DataSet* source) : cST_DataSet() {
    record = source;
    if (source == nullptr) return;
    text1 = textOf(source->text1);
    numeric1Present = source->numeric1Present.value;
    numeric1 = make<cST_MVect<double>>(&source->numeric1);
    raw1Present = source->raw1Present.value;
    raw1 = make<cST_MVect<CellVal>>(&source->raw1);
    text2 = textOf(source->text2);
    numeric2Present = source->numeric2Present.value;
    numeric2 = make<cST_MVect<double>>(&source->numeric2);
    raw2Present = source->raw2Present.value;
    raw2 = make<cST_MVect<CellVal>>(&source->raw2);
    text3 = textOf(source->text3);
    strings1Present = source->strings1Present.value;
    strings1 = make<cST_MVect<u16string>>(&source->strings1);
    raw3Present = source->raw3Present.value;
    raw3 = make<cST_MVect<CellVal>>(&source->raw3);
    text4 = textOf(source->text4);
    strings2Present = source->strings2Present.value;
    strings2 = make<cST_MVect<u16string>>(&source->strings2);
    raw4Present = source->raw4Present.value;
    raw4 = make<cST_MVect<CellVal>>(&source->raw4);
    nRows = source->nRows;
    nRowsSelected = source->nRowsSelected;
    rowNumbers = make<matrix<std::int32_t>>(source->rowNumbers);
    groups = make<matrix<std::int32_t>>(source->groups);
    numericTypes = make<matrix<std::int32_t>>(source->numericTypes);
    stringTypes = make<matrix<std::int32_t>>(source->stringTypes);
    order = make<matrix<std::int32_t>>(source->order);
    selectionPresent = source->selectionPresent.value;
    selection = make<matrix<std::int32_t>>(source->selection);
    rowLabelsPresent = source->rowLabelsPresent.value;
    rowLabels = make<matrix<u16string>>(source->rowLabels);
    text5 = textOf(source->text5);
    weightsPresent = source->weightsPresent;
    weightsKind = source->weightsKind;
    weights = make<matrix<double>>(source->weights);
    weights2Present = source->weights2Present;
    weights2Kind = source->weights2Kind;
    weights2 = make<matrix<double>>(source->weights2);
    strings3 = make<cST_MVect<u16string>>(&source->strings3);
    groupColumn = source->groupColumn;
    strings3Present = source->strings3Present;
    groupSorted = source->groupSorted;
    nGroups = source->nGroups;
    labelsPresent = source->labelsPresent;
    rowMarksPresent = source->rowMarksPresent;
    text6 = textOf(source->text6);
    rowMarks = make<matrix<std::int16_t>>(source->rowMarks);
    nMarked = source->nMarked;
    seed = source->seed;
    numeric3Present = source->numeric3Present.value;
    numeric3 = make<cST_MVect<double>>(&source->numeric3);
    text7 = textOf(source->text7);
    text8 = textOf(source->text8);
    quali = cST_QualiInfo(&source->quali);
    numericTables = cST_DataDbl(source->nNumericTables, source->numericTables);
    stringTables = cST_DataStr(source->nStringTables, source->stringTables);
    formats = cST_TableFormats(&source->formats);
}

void cST_DataSet::writeBack() const noexcept {
    if (record == nullptr) return;
    record->numeric1Present.value = numeric1Present;
    record->raw1Present.value = raw1Present;
    record->numeric2Present.value = numeric2Present;
    record->raw2Present.value = raw2Present;
    record->strings1Present.value = strings1Present;
    record->raw3Present.value = raw3Present;
    record->strings2Present.value = strings2Present;
    record->raw4Present.value = raw4Present;
    record->nRows = nRows;
    record->nRowsSelected = nRowsSelected;
    record->rowLabelsPresent.value = rowLabelsPresent;
    record->weightsPresent = weightsPresent;
    record->weights2Present = weights2Present;
    record->groupColumn = groupColumn;
    record->strings3Present = strings3Present;
    record->groupSorted = groupSorted;
    record->nGroups = nGroups;
    record->labelsPresent = labelsPresent;
    record->rowMarksPresent = rowMarksPresent;
    record->nMarked = nMarked;
    record->seed = seed;
    record->numeric3Present.value = numeric3Present;
    for (const auto* table : {numeric1.get(), numeric2.get(), numeric3.get()}) table->writeBack();
    for (const auto* table : {strings1.get(), strings2.get(), strings3.get()}) table->writeBack();
    for (const auto& table : numericTables.tables) table->writeBack();
    for (const auto& table : stringTables.tables) table->writeBack();
    quali.writeBack();
    formats.writeBack();
}

std::span<const double> cST_DataSet::observationWeights() const noexcept {
    return isTrue(weightsPresent) ? std::as_const(*weights).span() : std::span<const double>();
}

}  // namespace numcore
