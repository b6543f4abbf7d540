#include <algorithm>

#include "numcore/containers.hpp"

namespace numcore {
namespace {

/// Linear element i (from 0, column by column) of a slice, or a spare element.
double& linearElement(matrix<double>& slice, std::int32_t i) {
    return slice[i];
}

template <class T>
T& linearElement(cST_MVect<T>& slice, std::int32_t i) {
    for (std::int32_t c = 0; c < slice.columnCount() && i >= 0; ++c) {
        if (i < slice.column(c).size()) return slice.column(c)[i];
        i -= slice.column(c).size();
    }
    return slice.at(-1, -1);
}

/// Cell (i, j), from 1, through the slice's virtual access.
double& cellOf(matrix<double>& slice, std::int32_t i, std::int32_t j) {
    return slice(i, j);
}

template <class T>
T& cellOf(cST_MVect<T>& slice, std::int32_t i, std::int32_t j) {
    return j >= 1 && j <= slice.columnCount() ? slice.column(j - 1)(i) : slice.at(-1, -1);
}

template <class T>
std::unique_ptr<T> makeSlice(std::int32_t rows, std::int32_t columns) {
    return std::make_unique<T>(rows, columns, 0);
}

template <class Element>
Element& spareOutside() {
    // There is no slice to lend its spare element.
    thread_local Element spare;
    spare = -1;
    return spare;
}

/// Copies a three-dimensional array into slices of at most nRows rows; element (k, i, j) stands at
/// k + K (i + R j).
template <class T, class Element>
void copySlices(matrix3DBase<T>& out, const SAFEARRAY& array, std::int32_t nRows) {
    const auto* cells = static_cast<const Element*>(array.pvData);
    const std::int64_t nSlices = array.rgsabound[2].cElements;
    const std::int64_t rows = array.rgsabound[1].cElements;
    const auto columns = static_cast<std::int32_t>(array.rgsabound[0].cElements);
    const auto taken = static_cast<std::int32_t>(nRows < 1 ? rows : std::min<std::int64_t>(rows, nRows));
    for (std::int32_t k = 0; k < nSlices; ++k) {
        auto slice = makeSlice<T>(taken, columns);
        for (std::int32_t j = 0; j < columns; ++j) {
            for (std::int32_t i = 0; i < taken; ++i) {
                cellOf(*slice, i + 1, j + 1) = cells[k + nSlices * (i + rows * j)];
            }
        }
        out.setSlice(k, std::move(slice));
    }
}

/// Number of slices of a usable three-dimensional array; 0 otherwise.
template <class Element>
std::int32_t usableSlices(const SAFEARRAY* array) {
    if (array == nullptr || array->pvData == nullptr || array->cDims != 3) return 0;
    if (array->cbElements != 0 && array->cbElements != sizeof(Element)) return 0;
    std::int64_t size = 1;
    for (int d = 0; d < 3; ++d) {
        const std::int64_t n = array->rgsabound[d].cElements;
        if (n == 0 || size > INT32_MAX / n) return 0;
        size *= n;
    }
    return static_cast<std::int32_t>(array->rgsabound[2].cElements);
}

}  // namespace

template <class T>
matrix3DBase<T>::matrix3DBase(std::int32_t n)
    : count_(std::max(n, 0)), slices_(static_cast<std::size_t>(count_), nullptr) {}

template <class T>
matrix3DBase<T>& matrix3DBase<T>::operator=(matrix3DBase&& other) noexcept {
    std::swap(count_, other.count_);
    std::swap(slices_, other.slices_);
    return *this;
}

template <class T>
matrix3DBase<T>::~matrix3DBase() {
    for (T* item : slices_) delete item;
}

template <class T>
auto matrix3DBase<T>::getElement(std::int32_t k, std::int32_t i) const -> Element {
    return slice(k) == nullptr ? spareOutside<Element>() : linearElement(*slice(k), i);
}

template <class T>
auto matrix3DBase<T>::vbget(std::int32_t k, std::int32_t i) const -> Element {
    return matrix3DBase::getElement(detail::fromOne(k), detail::fromOne(i));
}

template <class T>
void matrix3DBase<T>::setElement(std::int32_t k, std::int32_t i, Element value) {
    if (slice(k) != nullptr) linearElement(*slice(k), i) = value;
}

template <class T>
void matrix3DBase<T>::vbset(std::int32_t k, std::int32_t i, Element value) {
    matrix3DBase::setElement(detail::fromOne(k), detail::fromOne(i), value);
}

template <class T>
void matrix3DBase<T>::setSlice(std::int32_t k, std::unique_ptr<T> item) noexcept {
    if (k < 0 || k >= count_) return;
    delete std::exchange(slices_[static_cast<std::size_t>(k)], item.release());
}

template <class T>
matrix3D<T>::matrix3D(std::int32_t slices, std::int32_t rows, std::int32_t columns,
                      double init) requires(!std::is_same_v<T, cST_MVect<std::int32_t>>)
    : matrix3DBase<T>(slices) {
    for (std::int32_t k = 0; k < slices; ++k) this->setSlice(k, std::make_unique<T>(rows, columns, init));
}

template <class T>
matrix3D<T>::matrix3D(SAFEARRAY* array) requires std::is_same_v<T, matrix<double>>
    : matrix3DBase<T>(usableSlices<Element>(array)) {
    if (this->count() > 0) copySlices<T, Element>(*this, *array, 0);
}

template <class T>
matrix3D<T>::matrix3D(SAFEARRAY* array, std::int32_t nRows) requires(!std::is_same_v<T, matrix<double>>)
    : matrix3DBase<T>(usableSlices<Element>(array)) {
    if (this->count() > 0) copySlices<T, Element>(*this, *array, nRows);
}

template <class T>
matrix3D<T>::matrix3D(std::int32_t n, SAFEARRAY** arrays) requires std::is_same_v<T, matrix<double>>
    : matrix3DBase<T>(arrays == nullptr ? 0 : n) {
    // The requirement again, for compilers that instantiate the constructor for every T.
    if constexpr (std::is_same_v<T, matrix<double>>) {
        for (std::int32_t k = 0; k < this->count(); ++k) this->setSlice(k, std::make_unique<T>(arrays[k]));
    }
}

template <class T>
auto matrix3D<T>::operator()(std::int32_t k, std::int32_t i, std::int32_t j) -> Element& {
    T* item = this->slice(detail::fromOne(k));
    return item == nullptr ? spareOutside<Element>() : cellOf(*item, i, j);
}

template class matrix3DBase<matrix<double>>;
template class matrix3DBase<cST_MVect<double>>;
template class matrix3DBase<cST_MVect<std::int32_t>>;
template class matrix3D<matrix<double>>;
template class matrix3D<cST_MVect<double>>;
template class matrix3D<cST_MVect<std::int32_t>>;

}  // namespace numcore
