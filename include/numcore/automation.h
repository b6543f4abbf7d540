/* Automation arrays, strings and variants: how data crosses the library's boundary.
 *
 * On Windows these are the system's own types and functions. Elsewhere this header declares the
 * same layouts and the functions a caller needs, and the library exports them:
 *
 *   SAFEARRAY  descriptor of an array of 1 or more dimensions; the bounds are stored last dimension
 *              first, the elements column by column (first index fastest)
 *   BSTR       pointer to the first 16-bit character of a zero-terminated string that has its length
 *              in bytes in the 4 bytes before it; a null pointer is an empty string
 *   VARIANT    one cell of any kind: empty, number, text, boolean, error
 *
 * Every array and string that the library returns inside a caller's array was made with these
 * functions, and is released with them. */
#pragma once

#include "numcore/api.h"

#ifdef _WIN32

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
/* windows.h comes first: oleauto.h needs its types. */
#include <oleauto.h>

#else

typedef uint16_t VARTYPE;
typedef int16_t VARIANT_BOOL;
typedef int32_t HRESULT;
typedef char16_t OLECHAR;
typedef OLECHAR* BSTR;

enum {
    VT_EMPTY = 0,
    VT_NULL = 1,
    VT_I2 = 2,
    VT_I4 = 3,
    VT_R4 = 4,
    VT_R8 = 5,
    VT_DATE = 7,
    VT_BSTR = 8,
    VT_ERROR = 10,
    VT_BOOL = 11,
    VT_VARIANT = 12,
    VT_UI1 = 17,
    VT_I8 = 20
};

/* Status codes: the system's numbers. */
#define S_OK 0
#define E_INVALIDARG (-2147024809)         /* 0x80070057 */
#define E_OUTOFMEMORY (-2147024882)        /* 0x8007000E */
#define E_UNEXPECTED (-2147418113)         /* 0x8000FFFF */
#define DISP_E_BADINDEX (-2147352565)      /* 0x8002000B */
#define DISP_E_ARRAYISLOCKED (-2147352563) /* 0x8002000D */
#define DISP_E_BADVARTYPE (-2147352568)    /* 0x80020008 */

/* Bits of SAFEARRAY.fFeatures. */
#define FADF_HAVEVARTYPE 0x0080
#define FADF_BSTR 0x0100
#define FADF_VARIANT 0x0800

typedef struct tagSAFEARRAYBOUND {
    uint32_t cElements;
    int32_t lLbound;
} SAFEARRAYBOUND;

typedef struct tagSAFEARRAY {
    uint16_t cDims;
    uint16_t fFeatures;
    uint32_t cbElements;
    uint32_t cLocks;
    void* pvData;
    SAFEARRAYBOUND rgsabound[1]; /* cDims of them, last dimension first */
} SAFEARRAY;

typedef struct tagVARIANT {
    VARTYPE vt;
    uint16_t wReserved1;
    uint16_t wReserved2;
    uint16_t wReserved3;
    union {
        int64_t llVal;
        int32_t lVal;
        int16_t iVal;
        uint8_t bVal;
        float fltVal;
        double dblVal;
        VARIANT_BOOL boolVal;
        int32_t scode;
        double date;
        BSTR bstrVal;
        void* byref;
        void* reserved[2];
    };
} VARIANT;

NUMCORE_BEGIN_C

/** A new zeroed array of nDimensions dimensions; bounds[0] is the first dimension. Null when an argument
 *  is unusable or memory is short. Element types: VT_I2, VT_I4, VT_I8, VT_R4, VT_R8, VT_UI1, VT_BOOL,
 *  VT_BSTR, VT_VARIANT, VT_DATE, VT_ERROR. */
NUMCORE_API SAFEARRAY* SafeArrayCreate(VARTYPE type, uint32_t nDimensions, SAFEARRAYBOUND* bounds);
/** `SafeArrayCreate` with one dimension. */
NUMCORE_API SAFEARRAY* SafeArrayCreateVector(VARTYPE type, int32_t lowerBound, uint32_t nElements);
/** A zeroed descriptor without data, for elements of a size of the caller's own (set cbElements and
 *  rgsabound, then call `SafeArrayAllocData`). */
NUMCORE_API HRESULT SafeArrayAllocDescriptor(uint32_t nDimensions, SAFEARRAY** out);
/** Zeroed data for a descriptor made by `SafeArrayAllocDescriptor`. */
NUMCORE_API HRESULT SafeArrayAllocData(SAFEARRAY* array);
/** Frees the elements (strings and variants too), the data and the descriptor; fails while locked. */
NUMCORE_API HRESULT SafeArrayDestroy(SAFEARRAY* array);
NUMCORE_API HRESULT SafeArrayDestroyData(SAFEARRAY* array);
NUMCORE_API HRESULT SafeArrayDestroyDescriptor(SAFEARRAY* array);
NUMCORE_API HRESULT SafeArrayLock(SAFEARRAY* array);
NUMCORE_API HRESULT SafeArrayUnlock(SAFEARRAY* array);
/** Locks the array and gives its data pointer. */
NUMCORE_API HRESULT SafeArrayAccessData(SAFEARRAY* array, void** data);
NUMCORE_API HRESULT SafeArrayUnaccessData(SAFEARRAY* array);
NUMCORE_API uint32_t SafeArrayGetDim(SAFEARRAY* array);
NUMCORE_API uint32_t SafeArrayGetElemsize(SAFEARRAY* array);
/** Bounds of a dimension counted from 1. */
NUMCORE_API HRESULT SafeArrayGetLBound(SAFEARRAY* array, uint32_t dimension, int32_t* bound);
NUMCORE_API HRESULT SafeArrayGetUBound(SAFEARRAY* array, uint32_t dimension, int32_t* bound);
NUMCORE_API HRESULT SafeArrayGetVartype(SAFEARRAY* array, VARTYPE* type);

/** A string of nCharacters 16-bit characters copied from text (zeros when text is null) and a final
 *  zero; null when memory is short or the count is absurd. */
NUMCORE_API BSTR SysAllocStringLen(const OLECHAR* text, uint32_t nCharacters);
/** A string copied from zero-terminated text; null for null. */
NUMCORE_API BSTR SysAllocString(const OLECHAR* text);
/** Replaces *string by a new copy of text; 0 when memory is short (then *string is unchanged). */
NUMCORE_API int32_t SysReAllocStringLen(BSTR* string, const OLECHAR* text, uint32_t nCharacters);
NUMCORE_API void SysFreeString(BSTR string);
/** Length in characters, or in bytes; 0 for null. */
NUMCORE_API uint32_t SysStringLen(BSTR string);
NUMCORE_API uint32_t SysStringByteLen(BSTR string);

NUMCORE_API void VariantInit(VARIANT* variant);
/** Releases what the variant holds and makes it empty. */
NUMCORE_API HRESULT VariantClear(VARIANT* variant);
/** Clears the destination, then copies the source (strings by value). */
NUMCORE_API HRESULT VariantCopy(VARIANT* destination, const VARIANT* source);

NUMCORE_END_C

#endif
