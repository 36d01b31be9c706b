// Identifiers of 128 bits as text: {1A11377D-4B0A-4D1C-958B-625FA5F427D6}.
#pragma once

#include <optional>

#include "hedro34/base/text.h"
#include "hedro34/component/binary.h"

namespace hedro34 {

// The text of an identifier, in braces and with capital letters.
String identifier_text(const binary::GUID& id);

// The identifier that a text of this form names, with letters in any case. Nothing when it is of another form.
std::optional<binary::GUID> identifier_of(StringView text) noexcept;

}  // namespace hedro34
