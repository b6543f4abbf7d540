// The containers: 16-bit strings in BSTR slots, cells, matrices, column sets, three-dimensional tables.
//
// A container built over a caller's array works on the caller's memory and never frees it. An index past
// the end reads or writes the container's spare element instead of failing.
#pragma once

#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "numcore/markers.hpp"
#include "numcore/records.h"

namespace numcore {

/// A 16-bit string whose only member is a BSTR, so that an array of BSTR is an array of these: reading and
/// assigning work in place in a caller's array, without a copy of the array.
class NUMCORE_API u16string {
  public:
    u16string() noexcept = default;
    u16string(std::u16string_view text);  // NOLINT(google-explicit-constructor): texts are meant to convert
    u16string(const char16_t* text)
        : u16string(text == nullptr ? std::u16string_view() : std::u16string_view(text)) {}
    u16string(const std::u16string& text) : u16string(std::u16string_view(text)) {}
    u16string(const u16string& other) : u16string(other.view()) {}
    u16string(u16string&& other) noexcept : text_(std::exchange(other.text_, nullptr)) {}
    ~u16string() { release(); }

    u16string& operator=(const u16string& other);
    u16string& operator=(u16string&& other) noexcept {
        std::swap(text_, other.text_);
        return *this;
    }

    /// The characters, by the length stored before them; a null slot is empty.
    std::u16string_view view() const noexcept {
        if (text_ == nullptr) return {};
        std::uint32_t nBytes = 0;
        std::memcpy(&nBytes, reinterpret_cast<const char*>(text_) - sizeof nBytes, sizeof nBytes);
        return {text_, nBytes / sizeof(char16_t)};
    }
    operator std::u16string_view() const noexcept { return view(); }  // NOLINT(google-explicit-constructor)
    std::u16string str() const { return std::u16string(view()); }
    std::size_t size() const noexcept { return view().size(); }
    bool empty() const noexcept { return view().empty(); }

    friend bool operator==(const u16string& a, const u16string& b) noexcept { return a.view() == b.view(); }
    friend bool operator==(const u16string& a, std::u16string_view b) noexcept { return a.view() == b; }
    friend bool operator==(const u16string& a, const std::u16string& b) noexcept { return a.view() == b; }
    friend bool operator==(const u16string& a, const char16_t* b) noexcept { return a.view() == b; }

  private:
    void release() noexcept;

    char16_t* text_ = nullptr;
};
static_assert(sizeof(u16string) == sizeof(BSTR) && std::is_standard_layout_v<u16string>);

/// A cell of any kind: a VARIANT with value semantics, so that an array of VARIANT is an array of these.
class NUMCORE_API CellVal {
  public:
    CellVal() noexcept;
    explicit CellVal(double number) noexcept;
    explicit CellVal(std::u16string_view text);
    CellVal(const CellVal& other);
    CellVal(CellVal&& other) noexcept;
    ~CellVal();
    CellVal& operator=(CellVal other) noexcept;

    bool isEmpty() const noexcept { return value_.vt == VT_EMPTY; }
    bool isNumber() const noexcept { return value_.vt == VT_R8 || value_.vt == VT_I4 || value_.vt == VT_I2; }
    bool isText() const noexcept { return value_.vt == VT_BSTR; }
    /// The number; the missing value when the cell does not hold one.
    double number() const noexcept;
    /// The text; empty when the cell does not hold one.
    std::u16string_view text() const noexcept;

  private:
    VARIANT value_;
};
static_assert(sizeof(CellVal) == 24 && sizeof(CellVal) == sizeof(VARIANT));

namespace detail {

template <class T>
T spareElement() {
    if constexpr (std::is_same_v<T, u16string>) {
        return T();
    } else if constexpr (std::is_same_v<T, CellVal>) {
        return CellVal(-1.0);
    } else {
        return static_cast<T>(-1);
    }
}

/// A 1-based index as a 0-based one; the smallest integer wraps to the largest, which no table has.
constexpr std::int32_t fromOne(std::int32_t i) noexcept {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(i) - 1U);
}

/// Number of elements of a rows x columns table; throws when a 32-bit size cannot hold it.
inline std::int32_t checkedSize(std::int32_t rows, std::int32_t columns) {
    const std::int64_t size = std::int64_t{rows} * columns;
    if (size > INT32_MAX) throw std::bad_array_new_length();
    return static_cast<std::int32_t>(size);
}

}  // namespace detail

/// Column-major two-dimensional container; a vector is one column.
///
/// Virtual access, operator(), is 1-based; inline access, operator[] and at(), is 0-based.
/// Instantiated for double, std::int32_t, std::int16_t, bool, u16string and CellVal.
template <class T>
class NUMCORE_API matrix final {
  public:
    matrix() noexcept(!std::is_same_v<T, CellVal>) = default;

    /// Over a caller's array, in place. Fewer than 2 dimensions give a column; 2 dimensions rows x columns.
    /// Null, without data, of more dimensions, of another element size or too large for 32 bits: empty.
    explicit matrix(SAFEARRAY* array);

    /// Own storage, every element init. A count below 1 gives an empty matrix.
    matrix(std::int32_t rows, std::int32_t columns, const T& init);

    /// Adopt: works on data in place and never frees it. Otherwise own storage with a copy of data.
    matrix(std::int32_t rows, std::int32_t columns, T* data, bool adopt);

    /// Own storage with string p copied from texts[p]; a null entry or one of byte length 0 is empty. Entries
    /// are BSTRs; null texts give empty strings.
    matrix(std::int32_t rows, std::int32_t columns,
           char16_t* const* texts) requires std::is_same_v<T, u16string>;

    matrix(const matrix&) = delete;
    matrix& operator=(const matrix&) = delete;
    matrix(matrix&& other) noexcept { *this = std::move(other); }
    matrix& operator=(matrix&& other) noexcept;
    ~matrix() { release(); }

    /// Linear access, from 1.
    virtual const T& operator()(std::int32_t i) const { return (*this)[detail::fromOne(i)]; }
    virtual T& operator()(std::int32_t i) { return (*this)[detail::fromOne(i)]; }

    /// Row and column, from 1. Kept: only the upper bounds are tested, so row 0 is the last cell of the column
    /// before; a position that would leave the storage is the spare element.
    virtual const T& operator()(std::int32_t i, std::int32_t j) const {
        return at(detail::fromOne(i), detail::fromOne(j));
    }
    virtual T& operator()(std::int32_t i, std::int32_t j) { return at(detail::fromOne(i), detail::fromOne(j)); }

    /// Linear access, from 0.
    const T& operator[](std::int32_t i) const { return inRange(i) ? data_[i] : spare_; }
    T& operator[](std::int32_t i) { return inRange(i) ? data_[i] : spare_; }

    /// Row and column, from 0.
    const T& at(std::int32_t i, std::int32_t j) const { return const_cast<matrix*>(this)->at(i, j); }
    T& at(std::int32_t i, std::int32_t j) {
        if (i >= rows_ || j >= columns_) return spare_;
        const std::int64_t position = i + std::int64_t{rows_} * j;
        return position >= 0 && position < size_ ? data_[position] : spare_;
    }

    std::int32_t rows() const noexcept { return rows_; }
    std::int32_t columns() const noexcept { return columns_; }
    std::int32_t size() const noexcept { return size_; }
    bool owns() const noexcept { return owner_ != 0; }
    T* data() noexcept { return data_; }
    const T* data() const noexcept { return data_; }
    std::span<T> span() noexcept { return {data_, static_cast<std::size_t>(size_)}; }
    std::span<const T> span() const noexcept { return {data_, static_cast<std::size_t>(size_)}; }
    /// The wrapped descriptor, or null.
    SAFEARRAY* descriptor() const noexcept { return descriptor_; }

  private:
    bool inRange(std::int32_t i) const noexcept {
        return static_cast<std::uint32_t>(i) < static_cast<std::uint32_t>(size_);
    }
    void setShape(std::int32_t rows, std::int32_t columns);
    void release() noexcept {
        if (owner_ != 0) delete[] data_;
    }

    T spare_ = detail::spareElement<T>();
    std::int32_t owner_ = 1;
    T* data_ = nullptr;
    std::int32_t rows_ = 0;
    std::int32_t columns_ = 0;
    std::int32_t size_ = 0;
    SAFEARRAY* descriptor_ = nullptr;
};

template <class T>
matrix<T>::matrix(SAFEARRAY* array) {
    if (array == nullptr || array->pvData == nullptr || array->cDims > 2) return;
    if (array->cbElements != 0 && array->cbElements != sizeof(T)) return;
    const std::uint64_t rows = array->rgsabound[array->cDims == 2 ? 1 : 0].cElements;
    const std::uint64_t columns = array->cDims == 2 ? array->rgsabound[0].cElements : 1;
    if (rows > INT32_MAX || columns > INT32_MAX || rows * columns > INT32_MAX) return;
    setShape(static_cast<std::int32_t>(rows), static_cast<std::int32_t>(columns));
    data_ = static_cast<T*>(array->pvData);
    owner_ = 0;
    descriptor_ = array;
}

template <class T>
matrix<T>::matrix(std::int32_t rows, std::int32_t columns, const T& init) {
    if (rows < 1 || columns < 1) return;
    const std::int32_t size = detail::checkedSize(rows, columns);
    auto cells = std::make_unique_for_overwrite<T[]>(static_cast<std::size_t>(size));
    for (std::int32_t i = 0; i < size; ++i) cells[static_cast<std::size_t>(i)] = init;
    data_ = cells.release();
    setShape(rows, columns);
}

template <class T>
matrix<T>::matrix(std::int32_t rows, std::int32_t columns, T* data, bool adopt) {
    if (rows < 1 || columns < 1 || data == nullptr) return;
    const std::int32_t size = detail::checkedSize(rows, columns);
    if (adopt) {
        data_ = data;
        owner_ = 0;
    } else {
        auto cells = std::make_unique_for_overwrite<T[]>(static_cast<std::size_t>(size));
        for (std::int32_t i = 0; i < size; ++i) cells[static_cast<std::size_t>(i)] = data[i];
        data_ = cells.release();
    }
    setShape(rows, columns);
}

template <class T>
matrix<T>::matrix(std::int32_t rows, std::int32_t columns,
                  char16_t* const* texts) requires std::is_same_v<T, u16string> {
    if (rows < 1 || columns < 1) return;
    const std::int32_t size = detail::checkedSize(rows, columns);
    auto cells = std::make_unique<T[]>(static_cast<std::size_t>(size));
    // The entries are BSTRs: seen as slots they carry their own lengths.
    const auto* slots = reinterpret_cast<const T*>(texts);
    for (std::int32_t i = 0; texts != nullptr && i < size; ++i) cells[static_cast<std::size_t>(i)] = slots[i];
    data_ = cells.release();
    setShape(rows, columns);
}

template <class T>
matrix<T>& matrix<T>::operator=(matrix&& other) noexcept {
    if (this == &other) return *this;
    release();
    spare_ = other.spare_;
    owner_ = std::exchange(other.owner_, 1);
    data_ = std::exchange(other.data_, nullptr);
    rows_ = std::exchange(other.rows_, 0);
    columns_ = std::exchange(other.columns_, 0);
    size_ = std::exchange(other.size_, 0);
    descriptor_ = std::exchange(other.descriptor_, nullptr);
    return *this;
}

template <class T>
void matrix<T>::setShape(std::int32_t rows, std::int32_t columns) {
    rows_ = rows;
    columns_ = columns;
    size_ = detail::checkedSize(rows, columns);
}

namespace detail {

/// The record and the kind tag of a column set of T.
template <class T>
struct ColumnSetKind;
template <>
struct ColumnSetKind<double> {
    using Record = ST_MVectDbl;
    static constexpr std::uint16_t kTag = 1;
};
template <>
struct ColumnSetKind<std::int32_t> {
    using Record = ST_MVectLng;
    static constexpr std::uint16_t kTag = 2;
};
template <>
struct ColumnSetKind<u16string> {
    using Record = ST_MVectStr;
    static constexpr std::uint16_t kTag = 3;
};
template <>
struct ColumnSetKind<CellVal> {
    using Record = ST_MVectVar;
    static constexpr std::uint16_t kTag = 4;
};

}  // namespace detail

/// A cell of T without a value: the missing value, 0, an empty text, an empty cell.
template <class T>
T missingCell() {
    if constexpr (std::is_same_v<T, double>) {
        return kMissing;
    } else {
        return T();
    }
}

/// One column of a column set: its record and its cells.
template <class T>
struct cST_Column {
    explicit cST_Column(ST_Column* source)
        : record(source), header{source->header[0], source->header[1]}, cells(source->cells) {}
    cST_Column(std::int32_t rows, const T& init) : cells(rows, 1, init) {}

    std::int16_t flag = 1;
    ST_Column* record = nullptr;
    std::int64_t header[2] = {0, 0};
    matrix<T> cells;
};

/// A set of columns, built from its boundary record or with storage of its own.
template <class T>
class NUMCORE_API cST_MVect {
  public:
    using Record = typename detail::ColumnSetKind<T>::Record;

    /// Without columns.
    cST_MVect() = default;
    /// Over the caller's arrays; null gives no columns.
    explicit cST_MVect(Record* source);
    /// Own storage, every cell init; every column's own length is rows. A count below 1 gives no columns.
    cST_MVect(std::int32_t rows, std::int32_t columns, const T& init);

    cST_MVect(cST_MVect&&) noexcept = default;
    cST_MVect& operator=(cST_MVect&&) noexcept = default;

    /// Columns that exist: the stated number, or fewer when the array holds fewer.
    std::int32_t columnCount() const noexcept;
    /// Number of rows as stated.
    std::int32_t rowCount() const noexcept { return integers[1]; }
    void setShape(std::int32_t rows, std::int32_t columns) noexcept;
    /// Column c, from 0; c must be below columnCount().
    matrix<T>& column(std::int32_t c) { return columns[static_cast<std::size_t>(c)]->cells; }
    const matrix<T>& column(std::int32_t c) const { return columns[static_cast<std::size_t>(c)]->cells; }
    /// Cell by row and column, from 0; an unknown column is the spare cell.
    T& at(std::int32_t i, std::int32_t c) { return c >= 0 && c < columnCount() ? column(c)[i] : spareCell(); }
    /// Own length of column c, from the attributes; its number of cells when the attributes do not tell. Never
    /// more than its number of cells.
    std::int32_t length(std::int32_t c) const noexcept;
    void setLength(std::int32_t c, std::int32_t n) noexcept;
    /// The cells of column c within its own length.
    std::span<T> cells(std::int32_t c) { return column(c).span().first(static_cast<std::size_t>(length(c))); }
    std::span<const T> cells(std::int32_t c) const {
        return column(c).span().first(static_cast<std::size_t>(length(c)));
    }
    /// Name of column c, from 0; empty when there is none.
    std::u16string_view label(std::int32_t c) const noexcept { return labels[c].view(); }
    /// Copies the four integers into the record that the set was built from, if any.
    void writeBack() const noexcept;

    std::uint16_t kind = detail::ColumnSetKind<T>::kTag;
    Record* record = nullptr;
    std::vector<T*> data;  // first cell of each column
    std::int32_t zero = 0;
    std::int32_t integers[4] = {0, 0, 0, 0};  // columns, rows, reserved, rows
    std::vector<std::unique_ptr<cST_Column<T>>> columns;
    matrix<std::int32_t> attributes;
    matrix<u16string> labels;
    std::int32_t zero2 = 0;

  private:
    void collectData();
    static T& spareCell();
};

/// A growable vector with a 32-bit count; row lists.
template <class T>
class cST_Vect {
  public:
    cST_Vect() = default;
    cST_Vect(std::initializer_list<T> items) : items_(items) {}
    explicit cST_Vect(std::span<const T> items) : items_(items.begin(), items.end()) {}

    std::int32_t count() const noexcept { return static_cast<std::int32_t>(items_.size()); }
    void push_back(const T& item) { items_.push_back(item); }
    T& operator[](std::int32_t i) { return items_[static_cast<std::size_t>(i)]; }
    const T& operator[](std::int32_t i) const { return items_[static_cast<std::size_t>(i)]; }
    std::span<const T> span() const noexcept { return items_; }

  private:
    std::vector<T> items_;
};

/// What all three-dimensional tables share: a count of slices and the slices, each on the heap and owned.
template <class T>
class NUMCORE_API matrix3DBase {
  public:
    using Element = std::conditional_t<std::is_same_v<T, cST_MVect<std::int32_t>>, std::int32_t, double>;

    matrix3DBase() noexcept = default;
    matrix3DBase(const matrix3DBase&) = delete;
    matrix3DBase& operator=(const matrix3DBase&) = delete;
    matrix3DBase(matrix3DBase&& other) noexcept { *this = std::move(other); }
    /// Takes over the slices and the count of the source.
    matrix3DBase& operator=(matrix3DBase&& other) noexcept;
    ~matrix3DBase();

    /// Linear element i (column by column) of slice k, from 0.
    virtual Element getElement(std::int32_t k, std::int32_t i) const;
    /// The same, both from 1.
    virtual Element vbget(std::int32_t k, std::int32_t i) const;
    virtual void setElement(std::int32_t k, std::int32_t i, Element value);
    virtual void vbset(std::int32_t k, std::int32_t i, Element value);

    std::int32_t count() const noexcept { return count_; }
    /// Slice k, from 0; null outside the table or where no slice was set.
    T* slice(std::int32_t k) const noexcept {
        return k >= 0 && k < count_ ? slices_[static_cast<std::size_t>(k)] : nullptr;
    }
    /// Puts an owned slice at k, from 0; outside the table the slice is dropped.
    void setSlice(std::int32_t k, std::unique_ptr<T> slice) noexcept;

  protected:
    explicit matrix3DBase(std::int32_t n);

    std::int32_t count_ = 0;
    std::vector<T*> slices_;
};

/// A count of slices; instantiated for matrix<double>, cST_MVect<double> and cST_MVect<std::int32_t>.
template <class T>
class NUMCORE_API matrix3D : public matrix3DBase<T> {
  public:
    using Element = typename matrix3DBase<T>::Element;

    matrix3D() noexcept = default;
    /// n slices, all null; n below 1 gives an empty container.
    explicit matrix3D(std::int32_t n) : matrix3DBase<T>(n) {}
    /// slices slices of rows x columns, every element init.
    matrix3D(std::int32_t slices, std::int32_t rows, std::int32_t columns,
             double init) requires(!std::is_same_v<T, cST_MVect<std::int32_t>>);
    /// From a three-dimensional array (slices, rows, columns), copied. Null, without data or of another shape
    /// or element size: empty.
    explicit matrix3D(SAFEARRAY* array) requires std::is_same_v<T, matrix<double>>;
    /// The same; of each slice only the first nRows rows are taken (all when nRows is below 1).
    matrix3D(SAFEARRAY* array, std::int32_t nRows) requires(!std::is_same_v<T, matrix<double>>);
    /// Slice k over the two-dimensional array arrays[k], in place.
    matrix3D(std::int32_t n, SAFEARRAY** arrays) requires std::is_same_v<T, matrix<double>>;
    matrix3D(matrix3D&&) noexcept = default;
    matrix3D& operator=(matrix3D&&) noexcept = default;

    /// Slice, row and column, from 1. Outside the slices: a spare element.
    Element& operator()(std::int32_t k, std::int32_t i, std::int32_t j);
    /// Slice k, from 1, which must exist.
    T& operator()(std::int32_t k) requires(!std::is_same_v<T, matrix<double>>) {
        return *this->slice(detail::fromOne(k));
    }
};

extern template class matrix<double>;
extern template class matrix<std::int32_t>;
extern template class matrix<std::int16_t>;
extern template class matrix<bool>;
extern template class matrix<u16string>;
extern template class matrix<CellVal>;
extern template class cST_MVect<double>;
extern template class cST_MVect<std::int32_t>;
extern template class cST_MVect<u16string>;
extern template class cST_MVect<CellVal>;
extern template class matrix3DBase<matrix<double>>;
extern template class matrix3DBase<cST_MVect<double>>;
extern template class matrix3DBase<cST_MVect<std::int32_t>>;
extern template class matrix3D<matrix<double>>;
extern template class matrix3D<cST_MVect<double>>;
extern template class matrix3D<cST_MVect<std::int32_t>>;

}  // namespace numcore
