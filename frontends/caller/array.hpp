// An owned automation array.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "numcore/records.h"

namespace numcore::caller {

/// Owns one SAFEARRAY of one to three dimensions, lower bounds 0. Makers throw std::bad_alloc when memory is
/// short; element access beyond the bounds throws std::out_of_range, the spans are unchecked.
class Array {
  public:
    Array() = default;
    /// Takes over an existing array.
    explicit Array(SAFEARRAY* owned) : array_(owned) {}
    Array(Array&& other) noexcept : array_(other.release()) {}
    Array& operator=(Array&& other) noexcept;
    Array(const Array&) = delete;
    Array& operator=(const Array&) = delete;
    ~Array() { reset(); }

    /// Zeroed vectors; texts are null.
    static Array doubles(std::size_t n);
    static Array doubles(std::span<const double> values);
    static Array ints(std::size_t n);
    static Array ints(std::span<const std::int32_t> values);
    static Array shorts(std::size_t n);
    static Array texts(std::size_t n);
    static Array texts(std::span<const std::u16string_view> values);
    /// Column records without cells.
    static Array columns(std::size_t n);
    /// Zeroed doubles of two dimensions.
    static Array matrix(std::size_t nRows, std::size_t nColumns);
    /// Zeroed doubles of three dimensions; element (k, i, j) stands at k + nSlices (i + nRows j).
    static Array cube(std::size_t nSlices, std::size_t nRows, std::size_t nColumns);

    SAFEARRAY* get() const { return array_; }
    SAFEARRAY* release();
    /// Elements of the first dimension; of all dimensions.
    std::size_t nRows() const { return extent(0); }
    std::size_t size() const;

    /// The elements, to be read or written in place; column by column in a matrix.
    std::span<double> asDoubles() const { return as<double>(); }
    std::span<std::int32_t> asInts() const { return as<std::int32_t>(); }
    std::span<std::int16_t> asShorts() const { return as<std::int16_t>(); }
    std::span<BSTR> asTexts() const { return as<BSTR>(); }
    std::span<ST_Column> asColumns() const { return as<ST_Column>(); }

    double at(std::size_t i) const;
    double at(std::size_t i, std::size_t j) const;
    std::u16string_view text(std::size_t i) const;
    void setText(std::size_t i, std::u16string_view text);

    /// Makes a vector of numbers end after n elements; its memory stays.
    void shrink(std::size_t n);

  private:
    static Array vector(VARTYPE type, std::size_t n);
    static Array table(std::span<SAFEARRAYBOUND> bounds);
    /// Elements along a dimension counted from 0; 0 beyond the last.
    std::size_t extent(std::size_t dimension) const;
    void reset();

    template <class T>
    std::span<T> as() const {
        if (array_ == nullptr || array_->cbElements != sizeof(T)) return {};
        return {static_cast<T*>(array_->pvData), size()};
    }

    SAFEARRAY* array_ = nullptr;
};

}  // namespace numcore::caller
