#include "caller/array.hpp"

#include <algorithm>
#include <limits>
#include <new>
#include <stdexcept>
#include <utility>

#include "caller/text.hpp"

namespace numcore::caller {

namespace {

std::uint32_t checkedCount(std::size_t n) {
    if (n > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max())) throw std::bad_alloc();
    return static_cast<std::uint32_t>(n);
}

SAFEARRAYBOUND bound(std::size_t n) {
    SAFEARRAYBOUND out{};
    out.cElements = checkedCount(n);
    return out;
}

void check(bool inside) {
    if (!inside) throw std::out_of_range("numcore::caller::Array");
}

}  // namespace

Array& Array::operator=(Array&& other) noexcept {
    if (this != &other) {
        reset();
        array_ = other.release();
    }
    return *this;
}

SAFEARRAY* Array::release() {
    return std::exchange(array_, nullptr);
}

void Array::reset() {
    if (array_ != nullptr) SafeArrayDestroy(array_);
    array_ = nullptr;
}

Array Array::vector(VARTYPE type, std::size_t n) {
    Array out(SafeArrayCreateVector(type, 0, checkedCount(n)));
    if (out.array_ == nullptr) throw std::bad_alloc();
    return out;
}

Array Array::doubles(std::size_t n) {
    return vector(VT_R8, n);
}
Array Array::ints(std::size_t n) {
    return vector(VT_I4, n);
}
Array Array::shorts(std::size_t n) {
    return vector(VT_I2, n);
}
Array Array::texts(std::size_t n) {
    return vector(VT_BSTR, n);
}

Array Array::doubles(std::span<const double> values) {
    Array out = doubles(values.size());
    std::ranges::copy(values, out.asDoubles().begin());
    return out;
}

Array Array::ints(std::span<const std::int32_t> values) {
    Array out = ints(values.size());
    std::ranges::copy(values, out.asInts().begin());
    return out;
}

Array Array::texts(std::span<const std::u16string_view> values) {
    Array out = texts(values.size());
    for (std::size_t i = 0; i < values.size(); ++i) out.setText(i, values[i]);
    return out;
}

Array Array::columns(std::size_t n) {
    Array out;
    if (SafeArrayAllocDescriptor(1, &out.array_) != S_OK) throw std::bad_alloc();
    out.array_->cbElements = sizeof(ST_Column);
    out.array_->rgsabound[0] = bound(n);
    if (SafeArrayAllocData(out.array_) != S_OK) throw std::bad_alloc();
    return out;
}

Array Array::table(std::span<SAFEARRAYBOUND> bounds) {
    Array out(SafeArrayCreate(VT_R8, static_cast<std::uint32_t>(bounds.size()), bounds.data()));
    if (out.array_ == nullptr) throw std::bad_alloc();
    return out;
}

Array Array::matrix(std::size_t nRows, std::size_t nColumns) {
    SAFEARRAYBOUND bounds[] = {bound(nRows), bound(nColumns)};
    return table(bounds);
}

Array Array::cube(std::size_t nSlices, std::size_t nRows, std::size_t nColumns) {
    SAFEARRAYBOUND bounds[] = {bound(nSlices), bound(nRows), bound(nColumns)};
    return table(bounds);
}

std::size_t Array::extent(std::size_t dimension) const {
    if (array_ == nullptr || dimension >= array_->cDims) return 0;
    // The descriptor holds the last dimension first.
    return array_->rgsabound[array_->cDims - 1 - dimension].cElements;
}

std::size_t Array::size() const {
    std::size_t n = extent(0);
    for (std::size_t k = 1; array_ != nullptr && k < array_->cDims; ++k) n *= extent(k);
    return n;
}

double Array::at(std::size_t i) const {
    const auto values = asDoubles();
    check(i < values.size());
    return values[i];
}

double Array::at(std::size_t i, std::size_t j) const {
    check(i < extent(0) && j < extent(1));
    return at(i + j * extent(0));
}

std::u16string_view Array::text(std::size_t i) const {
    const auto values = asTexts();
    check(i < values.size());
    return textView(values[i]);
}

void Array::setText(std::size_t i, std::u16string_view text) {
    const auto values = asTexts();
    check(i < values.size());
    SysFreeString(std::exchange(values[i], newText(text)));
}

void Array::shrink(std::size_t n) {
    check(array_ != nullptr && array_->cDims == 1 && n <= size());
    array_->rgsabound[0].cElements = static_cast<std::uint32_t>(n);
}

}  // namespace numcore::caller
