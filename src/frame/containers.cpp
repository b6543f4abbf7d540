#include "numcore/containers.hpp"

#include <algorithm>
#include <limits>

namespace numcore {

namespace {

/// The system's string type: 16 bits wide here as there, under another name on Windows.
BSTR asBstr(char16_t* text) noexcept {
    return reinterpret_cast<BSTR>(text);
}

char16_t* allocate(std::u16string_view text) {
    if (text.empty()) return nullptr;
    if (text.size() > std::numeric_limits<std::uint32_t>::max()) throw std::bad_alloc();
    BSTR copy = SysAllocStringLen(reinterpret_cast<const OLECHAR*>(text.data()),
                                  static_cast<std::uint32_t>(text.size()));
    if (copy == nullptr) throw std::bad_alloc();
    return reinterpret_cast<char16_t*>(copy);
}

}  // namespace

u16string::u16string(std::u16string_view text) : text_(allocate(text)) {}

u16string& u16string::operator=(const u16string& other) {
    if (this != &other) {
        char16_t* copy = allocate(other.view());
        release();
        text_ = copy;
    }
    return *this;
}

void u16string::release() noexcept {
    if (text_ != nullptr) SysFreeString(asBstr(text_));
}

CellVal::CellVal() noexcept {
    VariantInit(&value_);
}

CellVal::CellVal(double number) noexcept : CellVal() {
    value_.vt = VT_R8;
    value_.dblVal = number;
}

CellVal::CellVal(std::u16string_view text) : CellVal() {
    value_.bstrVal = asBstr(allocate(text));
    value_.vt = VT_BSTR;
}

CellVal::CellVal(const CellVal& other) : CellVal() {
    // The system's function takes a non-const source on some systems.
    if (VariantCopy(&value_, const_cast<VARIANT*>(&other.value_)) != S_OK) throw std::bad_alloc();
}

CellVal::CellVal(CellVal&& other) noexcept : CellVal() {
    std::swap(value_, other.value_);
}

CellVal::~CellVal() {
    VariantClear(&value_);
}

CellVal& CellVal::operator=(CellVal other) noexcept {
    std::swap(value_, other.value_);
    return *this;
}

double CellVal::number() const noexcept {
    switch (value_.vt) {
        case VT_R8:
            return value_.dblVal;
        case VT_I4:
            return value_.lVal;
        case VT_I2:
            return value_.iVal;
        default:
            return kMissing;
    }
}

std::u16string_view CellVal::text() const noexcept {
    if (!isText() || value_.bstrVal == nullptr) return {};
    return {reinterpret_cast<const char16_t*>(value_.bstrVal), SysStringLen(value_.bstrVal)};
}

template <class T>
cST_MVect<T>::cST_MVect(Record* source) : record(source) {
    if (source == nullptr) return;
    integers[0] = source->nColumns;
    integers[1] = source->nRows;
    integers[2] = source->reserved;
    integers[3] = source->nCells;
    attributes = matrix<std::int32_t>(source->attributes);
    labels = matrix<u16string>(source->labels);
    const SAFEARRAY* array = source->columns;
    if (array == nullptr || array->pvData == nullptr) return;
    if (array->cDims != 1 || (array->cbElements != 0 && array->cbElements != sizeof(ST_Column))) return;
    auto* columnRecords = static_cast<ST_Column*>(array->pvData);
    columns.reserve(array->rgsabound[0].cElements);
    for (std::uint32_t c = 0; c < array->rgsabound[0].cElements; ++c) {
        columns.push_back(std::make_unique<cST_Column<T>>(&columnRecords[c]));
    }
    collectData();
}

template <class T>
cST_MVect<T>::cST_MVect(std::int32_t rows, std::int32_t nColumns, const T& init)
    : attributes(nColumns, 1, rows), labels(nColumns, 1, u16string()) {
    if (rows < 1 || nColumns < 1) return;
    setShape(rows, nColumns);
    columns.reserve(static_cast<std::size_t>(nColumns));
    for (std::int32_t c = 0; c < nColumns; ++c) columns.push_back(std::make_unique<cST_Column<T>>(rows, init));
    collectData();
}

template <class T>
std::int32_t cST_MVect<T>::columnCount() const noexcept {
    return std::clamp<std::int32_t>(integers[0], 0, static_cast<std::int32_t>(columns.size()));
}

template <class T>
void cST_MVect<T>::setShape(std::int32_t rows, std::int32_t nColumns) noexcept {
    integers[0] = nColumns;
    integers[1] = rows;
    integers[3] = rows;
}

template <class T>
std::int32_t cST_MVect<T>::length(std::int32_t c) const noexcept {
    const std::int32_t nCells = column(c).size();
    return c < attributes.size() ? std::clamp(attributes[c], 0, nCells) : nCells;
}

template <class T>
void cST_MVect<T>::setLength(std::int32_t c, std::int32_t n) noexcept {
    if (c < attributes.size()) attributes[c] = n;
}

template <class T>
void cST_MVect<T>::writeBack() const noexcept {
    if (record == nullptr) return;
    record->nColumns = integers[0];
    record->nRows = integers[1];
    record->reserved = integers[2];
    record->nCells = integers[3];
}

template <class T>
void cST_MVect<T>::collectData() {
    data.reserve(columns.size());
    for (const auto& item : columns) data.push_back(item->cells.data());
}

template <class T>
T& cST_MVect<T>::spareCell() {
    // A column that is not there has no object to hold a spare element.
    thread_local T spare;
    spare = detail::spareElement<T>();
    return spare;
}

template class matrix<double>;
template class matrix<std::int32_t>;
template class matrix<std::int16_t>;
template class matrix<bool>;
template class matrix<u16string>;
template class matrix<CellVal>;
template class cST_MVect<double>;
template class cST_MVect<std::int32_t>;
template class cST_MVect<u16string>;
template class cST_MVect<CellVal>;

}  // namespace numcore
