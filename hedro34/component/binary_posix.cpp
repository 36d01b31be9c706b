#include "hedro34/component/binary.h"

#include <cstdlib>
#include <cstring>
#include <limits>

namespace hedro34::binary {
namespace {

constexpr std::size_t text_header = 8;

std::uint32_t elements_of(const SAFEARRAY& array) noexcept {
  std::uint64_t count = 1;
  for (std::uint16_t i = 0; i < array.cDims; ++i) count *= (&array.rgsabound[0])[i].cElements;
  return static_cast<std::uint32_t>(count);
}

}  // namespace

BSTR SysAllocStringLen(const OLECHAR* text, std::uint32_t length) {
  if (length > std::numeric_limits<std::uint32_t>::max() / sizeof(OLECHAR)) return nullptr;
  const std::uint32_t bytes = length * std::uint32_t{sizeof(OLECHAR)};
  auto* const block = static_cast<char*>(std::malloc(text_header + bytes + sizeof(OLECHAR)));
  if (block == nullptr) return nullptr;
  std::memset(block, 0, text_header - sizeof bytes);
  std::memcpy(block + text_header - sizeof bytes, &bytes, sizeof bytes);
  if (text != nullptr) std::memcpy(block + text_header, text, bytes);
  std::memset(block + text_header + bytes, 0, sizeof(OLECHAR));
  return static_cast<BSTR>(static_cast<void*>(block + text_header));
}

void SysFreeString(BSTR text) {
  if (text != nullptr) std::free(static_cast<char*>(static_cast<void*>(text)) - text_header);
}

std::uint32_t SysStringLen(BSTR text) {
  if (text == nullptr) return 0;
  std::uint32_t bytes = 0;
  std::memcpy(&bytes, static_cast<const char*>(static_cast<const void*>(text)) - sizeof bytes, sizeof bytes);
  return bytes / std::uint32_t{sizeof(OLECHAR)};
}

HRESULT VariantClear(VARIANT* variant) {
  if (variant == nullptr) return E_INVALIDARG;
  const VARIANT old = *variant;
  *variant = VARIANT{};
  if ((old.vt & VT_BYREF) != 0) return S_OK;
  if ((old.vt & VT_ARRAY) != 0) return SafeArrayDestroy(old.parray);
  if (old.vt == VT_BSTR) SysFreeString(old.bstrVal);
  if ((old.vt == VT_DISPATCH || old.vt == VT_UNKNOWN) && old.punkVal != nullptr) old.punkVal->Release();
  return S_OK;
}

SAFEARRAY* SafeArrayCreateVector(VARTYPE element, std::int32_t lower, std::uint32_t count) {
  const std::uint32_t size = element == VT_I4        ? sizeof(std::int32_t)
                             : element == VT_BSTR    ? sizeof(BSTR)
                             : element == VT_VARIANT ? sizeof(VARIANT)
                                                     : 0;
  if (size == 0) return nullptr;
  auto* const array = static_cast<SAFEARRAY*>(std::calloc(1, sizeof(SAFEARRAY)));
  if (array == nullptr) return nullptr;
  array->pvData = std::calloc(count > 0 ? count : 1, size);
  if (array->pvData == nullptr) {
    std::free(array);
    return nullptr;
  }
  array->cDims = 1;
  array->fFeatures = element == VT_BSTR ? FADF_BSTR : element == VT_VARIANT ? FADF_VARIANT : std::uint16_t{0};
  array->cbElements = size;
  array->rgsabound[0] = {count, lower};
  return array;
}

HRESULT SafeArrayDestroy(SAFEARRAY* array) {
  if (array == nullptr) return S_OK;
  if (array->pvData != nullptr) {
    const std::uint32_t count = elements_of(*array);
    if ((array->fFeatures & FADF_BSTR) != 0) {
      for (std::uint32_t i = 0; i < count; ++i) SysFreeString(static_cast<BSTR*>(array->pvData)[i]);
    } else if ((array->fFeatures & (FADF_UNKNOWN | FADF_DISPATCH)) != 0) {
      for (std::uint32_t i = 0; i < count; ++i) {
        if (IUnknown* const object = static_cast<IUnknown**>(array->pvData)[i]) object->Release();
      }
    } else if ((array->fFeatures & FADF_VARIANT) != 0) {
      for (std::uint32_t i = 0; i < count; ++i) VariantClear(static_cast<VARIANT*>(array->pvData) + i);
    }
    std::free(array->pvData);
  }
  std::free(array);
  return S_OK;
}

}  // namespace hedro34::binary
