// Automation arrays, strings and variants where the system has none (everywhere but Windows).

#include "numcore/automation.h"

#ifndef _WIN32

#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>

namespace {

// A descriptor has a hidden block in front of it, whose last 4 bytes hold the element type.
constexpr std::size_t kHiddenSize = 16;
constexpr std::size_t kMaxDataSize = std::numeric_limits<std::int64_t>::max();

std::uint32_t elementSize(VARTYPE type) {
    switch (type) {
        case VT_UI1:
            return 1;
        case VT_I2:
        case VT_BOOL:
            return 2;
        case VT_I4:
        case VT_R4:
        case VT_ERROR:
            return 4;
        case VT_I8:
        case VT_R8:
        case VT_DATE:
        case VT_BSTR:
            return 8;
        case VT_VARIANT:
            return sizeof(VARIANT);
        default:
            return 0;
    }
}

std::uint16_t ownershipFeature(VARTYPE type) {
    if (type == VT_BSTR) return FADF_BSTR;
    return type == VT_VARIANT ? FADF_VARIANT : 0;
}

char* hiddenBlock(SAFEARRAY* array) {
    return reinterpret_cast<char*>(array) - kHiddenSize;
}

/// Number of elements; false when they would not fit into an address space.
bool elementCount(const SAFEARRAY& array, std::size_t& count) {
    count = 1;
    const std::size_t limit = kMaxDataSize / (array.cbElements == 0 ? 1 : array.cbElements);
    for (std::uint16_t d = 0; d < array.cDims; ++d) {
        const std::size_t n = array.rgsabound[d].cElements;
        if (n != 0 && count > limit / n) return false;
        count *= n;
    }
    return true;
}

const SAFEARRAYBOUND* findBound(const SAFEARRAY* array, std::uint32_t dimension) {
    if (array == nullptr || dimension < 1 || dimension > array->cDims) return nullptr;
    return &array->rgsabound[array->cDims - dimension];
}

void releaseElements(SAFEARRAY& array) {
    std::size_t count = 0;
    if (!elementCount(array, count)) return;
    if ((array.fFeatures & FADF_BSTR) != 0) {
        auto* strings = static_cast<BSTR*>(array.pvData);
        for (std::size_t i = 0; i < count; ++i) SysFreeString(strings[i]);
    } else if ((array.fFeatures & FADF_VARIANT) != 0) {
        auto* variants = static_cast<VARIANT*>(array.pvData);
        for (std::size_t i = 0; i < count; ++i) VariantClear(&variants[i]);
    }
}

}  // namespace

HRESULT SafeArrayAllocDescriptor(uint32_t nDimensions, SAFEARRAY** out) {
    if (out == nullptr) return E_INVALIDARG;
    *out = nullptr;
    if (nDimensions < 1 || nDimensions > 0xFFFF) return E_INVALIDARG;
    const std::size_t size = sizeof(SAFEARRAY) + (nDimensions - 1) * sizeof(SAFEARRAYBOUND);
    auto* block = static_cast<char*>(std::calloc(1, kHiddenSize + size));
    if (block == nullptr) return E_OUTOFMEMORY;
    auto* array = reinterpret_cast<SAFEARRAY*>(block + kHiddenSize);
    array->cDims = static_cast<std::uint16_t>(nDimensions);
    *out = array;
    return S_OK;
}

HRESULT SafeArrayAllocData(SAFEARRAY* array) {
    std::size_t count = 0;
    if (array == nullptr || !elementCount(*array, count)) return E_INVALIDARG;
    // An array without elements has data too, so that null always means "no data".
    array->pvData = std::calloc(count == 0 ? 1 : count, array->cbElements == 0 ? 1 : array->cbElements);
    return array->pvData == nullptr ? E_OUTOFMEMORY : S_OK;
}

SAFEARRAY* SafeArrayCreate(VARTYPE type, uint32_t nDimensions, SAFEARRAYBOUND* bounds) {
    const std::uint32_t size = elementSize(type);
    SAFEARRAY* array = nullptr;
    if (size == 0 || bounds == nullptr || SafeArrayAllocDescriptor(nDimensions, &array) != S_OK) return nullptr;
    array->cbElements = size;
    array->fFeatures = static_cast<std::uint16_t>(FADF_HAVEVARTYPE | ownershipFeature(type));
    const std::uint32_t storedType = type;
    std::memcpy(hiddenBlock(array) + kHiddenSize - sizeof storedType, &storedType, sizeof storedType);
    for (std::uint32_t d = 0; d < nDimensions; ++d) array->rgsabound[d] = bounds[nDimensions - 1 - d];
    if (SafeArrayAllocData(array) != S_OK) {
        SafeArrayDestroyDescriptor(array);
        return nullptr;
    }
    return array;
}

SAFEARRAY* SafeArrayCreateVector(VARTYPE type, int32_t lowerBound, uint32_t nElements) {
    SAFEARRAYBOUND bound{nElements, lowerBound};
    return SafeArrayCreate(type, 1, &bound);
}

HRESULT SafeArrayDestroyData(SAFEARRAY* array) {
    if (array == nullptr) return E_INVALIDARG;
    if (array->cLocks != 0) return DISP_E_ARRAYISLOCKED;
    if (array->pvData == nullptr) return S_OK;
    releaseElements(*array);
    std::free(array->pvData);
    array->pvData = nullptr;
    return S_OK;
}

HRESULT SafeArrayDestroyDescriptor(SAFEARRAY* array) {
    if (array == nullptr) return S_OK;
    if (array->cLocks != 0) return DISP_E_ARRAYISLOCKED;
    std::free(hiddenBlock(array));
    return S_OK;
}

HRESULT SafeArrayDestroy(SAFEARRAY* array) {
    if (array == nullptr) return S_OK;
    const HRESULT status = SafeArrayDestroyData(array);
    return status == S_OK ? SafeArrayDestroyDescriptor(array) : status;
}

HRESULT SafeArrayLock(SAFEARRAY* array) {
    if (array == nullptr) return E_INVALIDARG;
    if (array->cLocks == std::numeric_limits<std::uint16_t>::max()) return E_UNEXPECTED;
    ++array->cLocks;
    return S_OK;
}

HRESULT SafeArrayUnlock(SAFEARRAY* array) {
    if (array == nullptr) return E_INVALIDARG;
    if (array->cLocks == 0) return E_UNEXPECTED;
    --array->cLocks;
    return S_OK;
}

HRESULT SafeArrayAccessData(SAFEARRAY* array, void** data) {
    if (data == nullptr) return E_INVALIDARG;
    *data = nullptr;
    const HRESULT status = SafeArrayLock(array);
    if (status == S_OK) *data = array->pvData;
    return status;
}

HRESULT SafeArrayUnaccessData(SAFEARRAY* array) {
    return SafeArrayUnlock(array);
}

uint32_t SafeArrayGetDim(SAFEARRAY* array) {
    return array == nullptr ? 0 : array->cDims;
}

uint32_t SafeArrayGetElemsize(SAFEARRAY* array) {
    return array == nullptr ? 0 : array->cbElements;
}

HRESULT SafeArrayGetLBound(SAFEARRAY* array, uint32_t dimension, int32_t* bound) {
    const SAFEARRAYBOUND* found = findBound(array, dimension);
    if (bound == nullptr) return E_INVALIDARG;
    if (found == nullptr) return DISP_E_BADINDEX;
    *bound = found->lLbound;
    return S_OK;
}

HRESULT SafeArrayGetUBound(SAFEARRAY* array, uint32_t dimension, int32_t* bound) {
    const SAFEARRAYBOUND* found = findBound(array, dimension);
    if (bound == nullptr) return E_INVALIDARG;
    if (found == nullptr) return DISP_E_BADINDEX;
    *bound = static_cast<std::int32_t>(found->lLbound + std::int64_t{found->cElements} - 1);
    return S_OK;
}

HRESULT SafeArrayGetVartype(SAFEARRAY* array, VARTYPE* type) {
    if (array == nullptr || type == nullptr) return E_INVALIDARG;
    if ((array->fFeatures & FADF_HAVEVARTYPE) == 0) return DISP_E_BADVARTYPE;
    std::uint32_t storedType = 0;
    std::memcpy(&storedType, hiddenBlock(array) + kHiddenSize - sizeof storedType, sizeof storedType);
    *type = static_cast<VARTYPE>(storedType);
    return S_OK;
}

BSTR SysAllocStringLen(const OLECHAR* text, uint32_t nCharacters) {
    constexpr std::uint32_t kMaxCharacters = (std::numeric_limits<std::uint32_t>::max() - 6) / sizeof(OLECHAR);
    if (nCharacters > kMaxCharacters) return nullptr;
    const std::uint32_t nBytes = nCharacters * static_cast<std::uint32_t>(sizeof(OLECHAR));
    auto* block = static_cast<char*>(std::calloc(1, sizeof nBytes + nBytes + sizeof(OLECHAR)));
    if (block == nullptr) return nullptr;
    std::memcpy(block, &nBytes, sizeof nBytes);
    if (text != nullptr) std::memcpy(block + sizeof nBytes, text, nBytes);
    return reinterpret_cast<BSTR>(block + sizeof nBytes);
}

BSTR SysAllocString(const OLECHAR* text) {
    if (text == nullptr) return nullptr;
    const std::size_t length = std::char_traits<char16_t>::length(text);
    if (length > std::numeric_limits<std::uint32_t>::max()) return nullptr;
    return SysAllocStringLen(text, static_cast<std::uint32_t>(length));
}

int32_t SysReAllocStringLen(BSTR* string, const OLECHAR* text, uint32_t nCharacters) {
    if (string == nullptr) return 0;
    BSTR replacement = SysAllocStringLen(text, nCharacters);
    if (replacement == nullptr) return 0;
    SysFreeString(*string);
    *string = replacement;
    return 1;
}

void SysFreeString(BSTR string) {
    if (string != nullptr) std::free(reinterpret_cast<char*>(string) - sizeof(std::uint32_t));
}

uint32_t SysStringByteLen(BSTR string) {
    if (string == nullptr) return 0;
    std::uint32_t nBytes = 0;
    std::memcpy(&nBytes, reinterpret_cast<const char*>(string) - sizeof nBytes, sizeof nBytes);
    return nBytes;
}

uint32_t SysStringLen(BSTR string) {
    return SysStringByteLen(string) / static_cast<uint32_t>(sizeof(OLECHAR));
}

void VariantInit(VARIANT* variant) {
    if (variant != nullptr) *variant = VARIANT{};
}

HRESULT VariantClear(VARIANT* variant) {
    if (variant == nullptr) return E_INVALIDARG;
    if (variant->vt == VT_BSTR) SysFreeString(variant->bstrVal);
    *variant = VARIANT{};
    return S_OK;
}

HRESULT VariantCopy(VARIANT* destination, const VARIANT* source) {
    if (destination == nullptr || source == nullptr) return E_INVALIDARG;
    if (destination == source) return S_OK;
    VARIANT copy = *source;
    if (source->vt == VT_BSTR && source->bstrVal != nullptr) {
        copy.bstrVal = SysAllocStringLen(source->bstrVal, SysStringLen(source->bstrVal));
        if (copy.bstrVal == nullptr) return E_OUTOFMEMORY;
    }
    VariantClear(destination);
    *destination = copy;
    return S_OK;
}

#endif
