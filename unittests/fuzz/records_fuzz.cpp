// Every door that takes a record or arrays, called with hostile ones. The sanitizers must have nothing to say.
#include "hostile_records.hpp"

namespace {

using numcore::testing::Arrays;
using numcore::testing::Bytes;
using numcore::testing::Cells;
using numcore::testing::kMaxColumns;
using numcore::testing::kMaxRows;
using numcore::testing::Records;

constexpr std::size_t kMessages = 7779;
constexpr std::size_t kNameMessages = 6500;

/// The record or, seldom, a null one.
template <class Record>
Record* orNull(Bytes& in, Record& record) {
    return in.oneIn(30) ? nullptr : &record;
}

void callSummaryDoor(Bytes& in, Arrays& arrays, Records& records) {
    ST_DataSet data = records.dataSet();
    ST_DataSet* source = orNull(in, data);
    ST_DescStats out{arrays.vector(Cells::kText, arrays.length(records.nColumns())),
                     arrays.table(Cells::kDouble, arrays.length(records.nColumns()), arrays.length(7))};
    SystemInfo system{};
    const double orders[] = {0.0, 0.25, in.number(), in.number() / 16.0, 1.0};
    ST_QuantileOptions options{in.count(5), in.flag(), in.flag(), in.flag(), {}, in.number() / 16.0};
    switch (in.below(6)) {
        case 0:
            Cpp_GetDescriptive_ST(source, in.flag(), orNull(in, out), orNull(in, system));
            break;
        case 1:
            Cpp_ComputeQuantiStats_ST(source, orNull(in, out), in.flag(), in.flag(), orNull(in, system));
            break;
        case 2: {
            ST_DataSet result = records.dataSet();
            ST_TableFormats formats = records.formats();
            Cpp_ComputeQualiStats_ST(orNull(in, data.quali), orNull(in, formats), orNull(in, result));
            break;
        }
        case 3: {
            const std::int32_t nOrders = in.oneIn(8) ? -1 : static_cast<std::int32_t>(in.below(6));
            Cpp_GetQuantileTable(source, in.oneIn(20) ? nullptr : orders, nOrders, orNull(in, options),
                                 out.table, out.labels);
            break;
        }
        case 4:
            Cpp_UNI_Compute_Stats(source, in.count(5), out.table, out.labels);
            break;
        default: {
            ST_DataSet result = records.dataSet();
            QUORIXInfo host{};
            // Every entry of the caller's messages is one automation string.
            constexpr OLECHAR kAll[] = {'a', 'l', 'l', 0};
            const BSTR all = in.oneIn(2) ? SysAllocString(kAll) : nullptr;
            std::vector<char16_t*> messages(kMessages, reinterpret_cast<char16_t*>(all));
            Cpp_GetStatsAndRestructure2_ST(source, in.count(1), in.flag(), orNull(in, result),
                                           in.oneIn(3) ? nullptr : messages.data(), orNull(in, system),
                                           orNull(in, host));
            SysFreeString(all);
        }
    }
}

void callDataDoor(Bytes& in, Records& records) {
    ST_DataSet data = records.dataSet();
    ST_DataSet* source = orNull(in, data);
    switch (in.below(8)) {
        case 0: {
            ST_DataSet copy = records.dataSet();
            const std::int32_t column = in.count(1);
            const std::int32_t first = in.count(1);
            Cpp_Duplicate_STDataset(source, orNull(in, copy), in.flag(), column, first,
                                    in.count(records.nRows()));
            break;
        }
        case 1: {
            ST_DataSet copy = records.dataSet();
            std::vector<std::int32_t> rows(1 + in.below(20));
            for (std::int32_t& row : rows) row = in.count(records.nRows());
            const std::int32_t n = in.oneIn(8) ? -5 : static_cast<std::int32_t>(rows.size());
            Cpp_ExtractRowsIntoNewTable_ST(source, in.oneIn(20) ? nullptr : rows.data(), n, orNull(in, copy));
            break;
        }
        case 2: {
            ST_MVectStr table = records.textTable();
            Cpp_GetMaxCat_ST(orNull(in, table), in.count(records.nColumns()), orNull(in, data.quali));
            break;
        }
        case 3: {
            ST_QualiInfo info = records.qualiInfo();
            Cpp_GetQualiDataInfo_ST(source, orNull(in, info));
            break;
        }
        case 4:
            Cpp_SortSTDataSetByGroup_ST(source, in.count(1));
            break;
        case 5: {
            ST_DataSet result = records.dataSet();
            Cpp_ReStructureData(source, orNull(in, result), static_cast<std::int32_t>(in.below(4)) - 1);
            break;
        }
        case 6: {
            ST_MVectStr table = records.textTable();
            std::int32_t kinds[kMaxColumns];
            double shares[kMaxColumns];
            const std::int32_t n = in.oneIn(8) ? -1 : static_cast<std::int32_t>(in.below(kMaxColumns + 1));
            const char16_t mark = in.oneIn(2) ? u',' : u'.';
            Cpp_GuessTypes_ST(orNull(in, table), mark, in.number(), in.oneIn(20) ? nullptr : kinds,
                              in.oneIn(3) ? nullptr : shares, n);
            break;
        }
        default:
            Cpp_Init_TableFormats(orNull(in, data.formats));
    }
}

void callQuantileDoor(Bytes& in) {
    std::vector<double> x(in.below(kMaxRows));
    std::vector<double> weights(x.size());
    for (double& value : x) value = in.number();
    for (double& weight : weights) weight = in.number();
    double* cells = in.oneIn(20) ? nullptr : x.data();
    double* cellWeights = in.oneIn(6) ? nullptr : weights.data();
    const std::int32_t n = in.oneIn(10) ? -1 : static_cast<std::int32_t>(x.size());
    const double p = in.number() / 16.0;
    double lower = 0.0;
    double upper = 0.0;
    ST_QuantileOptions options{in.count(5), in.flag(), in.flag(), in.flag(), {}, in.number() / 16.0};
    Cpp_V_QuantileMethod2(cells, n, in.count(5), p);
    Cpp_V_QuantileMethod(cells, n, nullptr, in.flag(), cellWeights, in.count(5), p);
    Cpp_QuantileOpt(cells, n, cellWeights, orNull(in, options), p, orNull(in, lower), orNull(in, upper));
    Cpp_Skewness(cells, n, cellWeights, in.count(1));
}

/// Laws by code with any numbers, names, data rules and step tables.
void callLawDoor(Bytes& in) {
    const std::int32_t code = in.oneIn(10) ? in.count(33) : static_cast<std::int32_t>(in.below(34)) - 1;
    double p[4];
    for (double& parameter : p) parameter = in.number();
    PDFGeneral(in.number(), code, p[0], p[1], p[2], p[3]);
    CDFGeneral(in.number(), code, p[0], p[1], p[2], p[3]);
    InvCDFGeneral(in.number() / 16.0, code, p[0], p[1], p[2], p[3]);

    std::vector<double> cells(2 * in.below(kMaxRows));
    for (double& cell : cells) cell = in.number();
    const auto half = static_cast<std::int32_t>(cells.size() / 2);
    const std::int32_t n = in.oneIn(10) ? -1 : half;
    double* data = in.oneIn(20) ? nullptr : cells.data();
    double* weights = in.oneIn(3) || data == nullptr ? nullptr : data + half;
    std::vector<double> table(4 * cells.size());
    std::int32_t nRows = 0;
    VB_BuildCDFEmpirical(data, n, weights, in.flag(), in.oneIn(20) ? nullptr : table.data(), orNull(in, nRows));
    VB_InvCDFEmpirical(in.number() / 16.0, table.data(), 2 * half);
    Cpp_GetProbaVal(in.number(), table.data(), 2 * half);
    Cpp_InvCDFUniformWDisc(in.number() / 16.0, data, n, in.number(), in.number());
    // Any numbers as a table, too.
    VB_InvCDFEmpirical(in.number() / 16.0, data, n);
    Cpp_GetProbaVal(in.number(), data, n);

    const std::int16_t exempt[] = {in.flag(), in.flag()};
    ST_DistribSettings settings{code, in.oneIn(10) ? -1 : 2, in.oneIn(3) ? nullptr : exempt};
    ST_DistribCheck check{};
    Cpp_CheckDistribConstraints2(orNull(in, settings), data, n, nullptr, orNull(in, check));
    std::vector<char16_t*> messages(kNameMessages, nullptr);
    const char16_t name[] = {static_cast<char16_t>(in.byte()), 0};
    std::int32_t nParameters = 0;
    Cpp_GetDistCodeNParam(in.oneIn(20) ? nullptr : name, in.oneIn(20) ? nullptr : messages.data(),
                          orNull(in, settings.code), orNull(in, nParameters));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Bytes in(data, size);
    Arrays arrays(in);
    Records records(in, arrays);
    try {
        switch (in.below(6)) {
            case 0:
            case 1:
                callSummaryDoor(in, arrays, records);
                break;
            case 2:
            case 3:
                callDataDoor(in, records);
                break;
            case 4:
                callLawDoor(in);
                break;
            default:
                callQuantileDoor(in);
        }
    } catch (const std::bad_alloc&) {
        // A door passes on that memory is short; what it held is released, which the sanitizers check.
    }
    return 0;
}
