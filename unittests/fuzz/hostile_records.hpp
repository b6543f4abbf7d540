// Bytes as records: shapes that no careful caller builds.
//
// Each array is real memory with a descriptor that is sound or spoiled: no data, other dimensions, too few
// elements, another element size, odd feature bits, a lock count. Counts and flags of the records are any
// number. No pointer is wild: what a library without second sight could not know is not asked of it. Afterwards
// every descriptor must be as it was.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <list>
#include <new>
#include <optional>
#include <vector>

#include "numcore/numcore.h"

namespace numcore::testing {

constexpr std::uint32_t kMaxRows = 40;
constexpr std::uint32_t kMaxColumns = 5;

/// The input, byte by byte; zeros when it is used up.
class Bytes {
  public:
    Bytes(const std::uint8_t* data, std::size_t size) : next_(data), end_(data + size) {}

    std::uint8_t byte() { return next_ == end_ ? std::uint8_t{0} : *next_++; }
    bool oneIn(unsigned n) { return byte() % n == n - 1; }
    std::uint32_t below(std::uint32_t n) { return byte() % n; }
    std::int16_t flag() { return oneIn(3) ? static_cast<std::int16_t>(byte() - 2) : NUMCORE_TRUE; }

    /// Mostly the sound count; else a neighbour, an extreme or a small number.
    std::int32_t count(std::uint32_t sound) {
        constexpr std::int32_t kExtremes[] = {-1,
                                              0,
                                              std::numeric_limits<std::int32_t>::max(),
                                              std::numeric_limits<std::int32_t>::min(),
                                              1 << 30,
                                              -2,
                                              65536,
                                              1};
        switch (below(8)) {
            case 0:
                return kExtremes[below(8)];
            case 1:
                return static_cast<std::int32_t>(sound) + 1;
            case 2:
                return static_cast<std::int32_t>(byte());
            default:
                return static_cast<std::int32_t>(sound);
        }
    }

    double number() {
        constexpr double kSpecial[] = {NUMCORE_MISSING,
                                       NUMCORE_OVERFLOW,
                                       0.0,
                                       -0.0,
                                       std::numeric_limits<double>::infinity(),
                                       -std::numeric_limits<double>::infinity(),
                                       std::numeric_limits<double>::quiet_NaN(),
                                       std::numeric_limits<double>::max(),
                                       std::numeric_limits<double>::denorm_min(),
                                       1e-17};
        const std::uint8_t kind = byte();
        if (kind % 4 == 0) return kSpecial[kind / 4 % std::size(kSpecial)];
        return (byte() - 100) / 8.0;
    }

  private:
    const std::uint8_t* next_;
    const std::uint8_t* end_;
};

enum class Cells { kDouble, kInteger, kShort, kText, kVariant };

/// Arrays of one input, with what their descriptors said when they were made and when they were handed over.
class Arrays {
  public:
    explicit Arrays(Bytes& in) : in_(in) {}
    Arrays(const Arrays&) = delete;
    Arrays& operator=(const Arrays&) = delete;

    ~Arrays() {
        for (Item& item : items_) {
            if (!sameDescriptor(*item.array, item.handedOver)) {
                std::fputs("a door changed the descriptor of a caller's array\n", stderr);
                std::abort();
            }
            *item.array = item.sound;
            if (item.askedFor) emptyOtherType(item);
            SafeArrayDestroy(item.array);
        }
    }

    SAFEARRAY* vector(Cells cells, std::uint32_t n) { return in_.oneIn(12) ? nullptr : make(cells, {n}); }
    SAFEARRAY* table(Cells cells, std::uint32_t nRows, std::uint32_t nColumns) {
        return in_.oneIn(12) ? nullptr : make(cells, {nRows, nColumns});
    }

    /// The columns of a set: elements of a size that no element type has.
    SAFEARRAY* columns(Cells cells, std::uint32_t nRows, std::uint32_t nColumns) {
        if (in_.oneIn(16)) return nullptr;
        SAFEARRAY* array = nullptr;
        if (SafeArrayAllocDescriptor(1, &array) != S_OK) throw std::bad_alloc();
        array->cbElements = sizeof(ST_Column);
        array->rgsabound[0].cElements = nColumns;
        array->rgsabound[0].lLbound = 1;
        if (SafeArrayAllocData(array) != S_OK) throw std::bad_alloc();
        keep(array);
        auto* column = static_cast<ST_Column*>(items_.back().sound.pvData);
        for (std::uint32_t c = 0; c < nColumns; ++c) column[c].cells = vector(cells, length(nRows));
        return array;
    }

    /// The expected number of elements, or fewer, or one more.
    std::uint32_t length(std::uint32_t expected) {
        if (!in_.oneIn(6)) return expected;
        return in_.below(expected + 2);
    }

  private:
    struct Item {
        SAFEARRAY* array;
        SAFEARRAY sound;
        SAFEARRAY handedOver;
        std::optional<Cells> askedFor;  // when the array is of another type
    };

    /// What a door wrote into an array of another type is not what the array's own destruction expects.
    static void emptyOtherType(const Item& item) {
        const SAFEARRAY& array = *item.array;
        const std::size_t n = count(array);
        if (item.askedFor == Cells::kText && array.cbElements == sizeof(BSTR)) {
            std::for_each_n(static_cast<BSTR*>(array.pvData), n, SysFreeString);
        }
        std::fill_n(static_cast<char*>(array.pvData), n * array.cbElements, '\0');
    }

    static std::size_t count(const SAFEARRAY& array) {
        std::size_t n = array.pvData == nullptr ? 0 : 1;
        for (std::uint16_t d = 0; d < array.cDims; ++d) n *= (&array.rgsabound[0])[d].cElements;
        return n;
    }

    static bool sameDescriptor(const SAFEARRAY& a, const SAFEARRAY& b) {
        return a.cDims == b.cDims && a.fFeatures == b.fFeatures && a.cbElements == b.cbElements &&
               a.cLocks == b.cLocks && a.pvData == b.pvData &&
               a.rgsabound[0].cElements == b.rgsabound[0].cElements &&
               a.rgsabound[0].lLbound == b.rgsabound[0].lLbound;
    }

    SAFEARRAY* make(Cells cells, std::vector<std::uint32_t> sizes) {
        constexpr VARTYPE kTypes[] = {VT_R8, VT_I4, VT_I2, VT_BSTR, VT_VARIANT};
        if (in_.oneIn(14)) sizes.push_back(1 + in_.below(3));
        if (in_.oneIn(24)) sizes.resize(1);
        std::vector<SAFEARRAYBOUND> bounds;
        bounds.reserve(sizes.size());
        for (const std::uint32_t n : sizes) bounds.push_back({n, static_cast<std::int32_t>(in_.below(3))});
        // Another type than asked for stays zeroed: its zeros are sound whatever they are taken for.
        const VARTYPE wanted = kTypes[static_cast<unsigned>(cells)];
        const VARTYPE type = in_.oneIn(16) ? kTypes[in_.below(std::size(kTypes))] : wanted;
        const bool otherType = type != wanted;
        SAFEARRAY* array = SafeArrayCreate(type, static_cast<std::uint32_t>(bounds.size()), bounds.data());
        if (array == nullptr) return nullptr;
        if (!otherType) fill(cells, *array);
        keep(array, otherType ? std::optional(cells) : std::nullopt);
        return array;
    }

    void keep(SAFEARRAY* array, std::optional<Cells> askedFor = std::nullopt) {
        const SAFEARRAY sound = *array;
        // Of another type and with its element size hidden, an array could not be told from one of the right
        // type.
        if (!askedFor && in_.oneIn(12)) spoil(*array);
        items_.push_back({array, sound, *array, askedFor});
    }

    void spoil(SAFEARRAY& array) {
        switch (in_.below(6)) {
            case 0:
                array.pvData = nullptr;
                break;
            case 1:
                array.pvData = nullptr;
                array.rgsabound[0].cElements = std::numeric_limits<std::uint32_t>::max() - in_.below(3);
                break;
            case 2:
                array.rgsabound[0].cElements /= 2;
                break;
            case 3:
                array.cbElements = in_.below(4);
                break;
            case 4:
                // Taken for a column of as many elements as the first pair says: with another pair of 0 it
                // would announce elements that the array does not have.
                if (count(array) != 0) array.cDims = 0;
                break;
            default:
                array.cLocks = in_.below(3);
                array.fFeatures = static_cast<std::uint16_t>(array.fFeatures ^ in_.byte());
        }
    }

    void fill(Cells cells, const SAFEARRAY& array) {
        const std::size_t n = count(array);
        switch (cells) {
            case Cells::kDouble:
                fillWith(static_cast<double*>(array.pvData), n, [&] { return in_.number(); });
                break;
            case Cells::kInteger:
                fillWith(static_cast<std::int32_t*>(array.pvData), n, [&] { return in_.count(kMaxRows / 2); });
                break;
            case Cells::kShort:
                fillWith(static_cast<std::int16_t*>(array.pvData), n, [&] { return in_.flag(); });
                break;
            case Cells::kText:
                fillWith(static_cast<BSTR*>(array.pvData), n, [&] { return text(); });
                break;
            case Cells::kVariant:
                fillWith(static_cast<VARIANT*>(array.pvData), n, [&] { return variant(); });
                break;
        }
    }

    template <class T, class Next>
    static void fillWith(T* cells, std::size_t n, Next next) {
        std::generate(cells, cells + n, next);
    }

    /// Null, a number, a date, a letter, or any code units.
    BSTR text() {
        static constexpr OLECHAR kTexts[][12] = {
            {'a'}, {'b'}, {'1', '.', '5'}, {'-', '7'}, {'2', '0', '2', '0', '-', '0', '2', '-', '3', '0'}, {0}};
        const std::uint32_t kind = in_.below(10);
        if (kind < std::size(kTexts)) return SysAllocString(kTexts[kind]);
        if (kind < 8) return nullptr;
        OLECHAR units[8];
        const std::uint32_t n = in_.below(9);
        for (std::uint32_t i = 0; i < n; ++i) units[i] = static_cast<OLECHAR>(in_.byte() << (in_.below(2) * 8));
        return SysAllocStringLen(units, n);
    }

    VARIANT variant() {
        VARIANT cell;
        VariantInit(&cell);
        if (in_.oneIn(3)) {
            cell.vt = VT_BSTR;
            cell.bstrVal = text();
        } else if (!in_.oneIn(4)) {
            cell.vt = VT_R8;
            cell.dblVal = in_.number();
        }
        return cell;
    }

    Bytes& in_;
    std::list<Item> items_;
};

/// Records made of the input's bytes; the arrays belong to `arrays_`.
class Records {
  public:
    Records(Bytes& in, Arrays& arrays)
        : in_(in), arrays_(arrays), nRows_(in.below(kMaxRows)), nColumns_(in.below(kMaxColumns)) {}

    ST_DataSet dataSet() {
        ST_DataSet set{};
        set.text1 = set.text3 = set.text7 = name();
        set.numeric1 = columnSet<ST_MVectDbl>(Cells::kDouble);
        set.numeric1Present.value = in_.flag();
        set.numeric2 = columnSet<ST_MVectDbl>(Cells::kDouble);
        set.numeric2Present.value = in_.flag();
        set.strings1 = columnSet<ST_MVectStr>(Cells::kText);
        set.strings1Present.value = in_.flag();
        set.strings3 = columnSet<ST_MVectStr>(Cells::kText);
        set.strings3Present = in_.flag();
        set.raw1 = columnSet<ST_MVectVar>(Cells::kVariant);
        set.raw1Present.value = in_.flag();
        set.nRows = in_.count(nRows_);
        set.nRowsSelected = in_.count(0);
        set.rowNumbers = arrays_.vector(Cells::kInteger, nRows_);
        set.groups = arrays_.vector(Cells::kInteger, nRows_);
        set.order = arrays_.vector(Cells::kInteger, nRows_);
        set.selectionPresent.value = in_.flag();
        set.selection = arrays_.vector(Cells::kInteger, nRows_);
        set.rowLabelsPresent.value = in_.flag();
        set.rowLabels = arrays_.vector(Cells::kText, nRows_);
        set.weightsPresent = in_.flag();
        set.weights = arrays_.vector(Cells::kDouble, nRows_);
        set.weights2Present = in_.flag();
        set.weights2 = arrays_.vector(Cells::kDouble, arrays_.length(nRows_));
        set.groupColumn = in_.count(1);
        set.groupSorted = in_.flag();
        set.nGroups = in_.count(2);
        set.quali = qualiInfo();
        set.labelsPresent = in_.flag();
        set.rowMarksPresent = in_.flag();
        set.rowMarks = arrays_.vector(Cells::kShort, nRows_);
        set.nMarked = in_.count(0);
        addTables(set);
        set.formats = formats();
        return set;
    }

    ST_QualiInfo qualiInfo() {
        const std::uint32_t nCategories = 1 + in_.below(4);
        ST_QualiInfo info{};
        info.nVariables = in_.count(nColumns_);
        info.totalWeight = in_.number();
        info.maxCategories = in_.count(nCategories);
        info.nCategories = arrays_.vector(Cells::kInteger, nColumns_);
        info.nRows = in_.count(nRows_);
        info.labels = columnSet<ST_MVectStr>(Cells::kText, nCategories);
        info.counts = columnSet<ST_MVectDbl>(Cells::kDouble, nCategories);
        info.frequencies = columnSet<ST_MVectDbl>(Cells::kDouble, nCategories);
        info.names = arrays_.vector(Cells::kText, nColumns_);
        info.hasWeights = in_.flag();
        info.sorted = in_.flag();
        info.missing = arrays_.vector(Cells::kDouble, nColumns_);
        return info;
    }

    ST_TableFormats formats() {
        ST_TableFormats formats{};
        formats.nRows = in_.count(nRows_);
        formats.nColumns = in_.count(nColumns_);
        formats.nNumberFormats = in_.count(nColumns_);
        formats.numberFormats = arrays_.vector(Cells::kText, nColumns_);
        formats.nRowTable = in_.count(nColumns_);
        formats.rowTable = arrays_.vector(Cells::kInteger, nColumns_);
        formats.nColumnTable = in_.count(nColumns_);
        formats.columnTable = arrays_.vector(Cells::kInteger, nColumns_);
        return formats;
    }

    ST_MVectStr textTable() { return columnSet<ST_MVectStr>(Cells::kText); }
    std::uint32_t nRows() const { return nRows_; }
    std::uint32_t nColumns() const { return nColumns_; }

  private:
    template <class Set>
    Set columnSet(Cells cells) {
        return columnSet<Set>(cells, nRows_);
    }

    template <class Set>
    Set columnSet(Cells cells, std::uint32_t nRows) {
        Set set{};
        if (in_.oneIn(6)) return set;
        set.nColumns = in_.count(nColumns_);
        set.nRows = in_.count(nRows);
        set.nCells = in_.count(nRows);
        set.attributes = arrays_.vector(Cells::kInteger, arrays_.length(nColumns_));
        set.columns = arrays_.columns(cells, nRows, arrays_.length(nColumns_));
        set.labels = arrays_.vector(Cells::kText, arrays_.length(nColumns_));
        return set;
    }

    /// Lists of tables: never more announced than there are, except of none.
    void addTables(ST_DataSet& set) {
        if (in_.oneIn(4)) {
            set.nNumericTables = in_.count(0);
            set.nStringTables = in_.count(0);
            return;
        }
        numericTables_.push_back(columnSet<ST_MVectDbl>(Cells::kDouble));
        stringTables_.push_back(columnSet<ST_MVectStr>(Cells::kText));
        set.numericTables = &numericTables_.back();
        set.stringTables = &stringTables_.back();
        set.nNumericTables = static_cast<std::int32_t>(in_.below(3)) - 1;
        set.nStringTables = static_cast<std::int32_t>(in_.below(3)) - 1;
    }

    const char16_t* name() { return in_.oneIn(2) ? u"Sheet1!A1:C9" : nullptr; }

    Bytes& in_;
    Arrays& arrays_;
    std::uint32_t nRows_;
    std::uint32_t nColumns_;
    std::list<ST_MVectDbl> numericTables_;
    std::list<ST_MVectStr> stringTables_;
};

}  // namespace numcore::testing
