#include "hedro34/xml/expat_document.h"

#include <expat.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <utility>

#include "hedro34/platform/files.h"
#include "hedro34/xml/attribute_lists.h"
#include "hedro34/xml/entity_graph.h"
#include "hedro34/xml/utf16_input.h"
#include "hedro34/xml/xml_nodes.h"
#include "hedro34/xml/xml_tree.h"

namespace hedro34 {
namespace {

// What the parser is given at a time: all that is left where its size is known, since the parser counts the lines of each
// part but the last; and more while one tag or comment goes on, since some versions start over at its beginning each time.
constexpr std::uint64_t chunk = 1 << 18;
constexpr std::uint64_t most_at_a_time = 1 << 26;

// What a document type adds to elements as attributes may take so many bytes, or so many times the bytes read: the
// bounds that expat has for entities.
constexpr std::uint64_t free_defaults = 8 << 20;
constexpr std::uint64_t most_amplified = 100;
constexpr std::uint64_t default_cost = 8;  // of an attribute besides its value

// Expat has to hold a whole tag or comment in memory. One longer than this that does not fit makes the document
// malformed.
constexpr std::uint64_t longest_part = 1 << 28;

constexpr const char* too_large = "the document is too large";
constexpr const char* blown_up = "entities blow the document up beyond reason";
constexpr const char* blown_up_by_attributes = "declared attributes blow the document up beyond reason";
constexpr const char* circular = "the entity refers to itself";

// Steps up chains of entities, and attributes that expat goes through: 2^30 of those take half a second.
constexpr Effort for_entities(1 << 26, 32);
constexpr Effort for_attributes(1 << 30, 128);

constexpr std::size_t longest_name = 60;  // of an entity, in a reason

// Reads up to a number of bytes; less at the end, nothing at a failure.
using Source = std::function<std::optional<std::size_t>(char*, std::size_t)>;

bool equals_ignoring_case(std::string_view name, std::string_view expected) {
  return std::equal(name.begin(), name.end(), expected.begin(), expected.end(),
                    [](char a, char b) { return a == b || (a >= 'A' && a <= 'Z' && a - 'A' + 'a' == b); });
}

// What the bytes of an encoding with one byte a character mean; -1 for those that mean nothing.
using CharacterTable = std::array<int, 256>;
constexpr CharacterTable iso_8859_1 = [] {
  CharacterTable table{};
  for (std::size_t i = 0; i < table.size(); ++i) table[i] = static_cast<int>(i);
  return table;
}();
constexpr CharacterTable windows_1252 = [] {
  constexpr std::array<int, 32> from_80 = {0x20AC, -1,     0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                           0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, -1,     0x017D, -1,
                                           -1,     0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                           0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, -1,     0x017E, 0x0178};
  CharacterTable table = iso_8859_1;
  std::copy(from_80.begin(), from_80.end(), table.begin() + 0x80);
  return table;
}();

// The table of an encoding by its name; null for all others, which of those that are read are UTF-8, UTF-16 and
// US-ASCII.
const CharacterTable* table_of(std::string_view encoding) {
  if (equals_ignoring_case(encoding, "iso-8859-1")) return &iso_8859_1;
  if (equals_ignoring_case(encoding, "windows-1252")) return &windows_1252;
  return nullptr;
}

// Expat asks for the encodings that it does not know itself.
int XMLCALL unknown_encoding(void*, const XML_Char* name, XML_Encoding* encoding) {
  const CharacterTable* const table = table_of(name);
  if (table == nullptr) return XML_STATUS_ERROR;
  std::copy(table->begin(), table->end(), encoding->map);
  encoding->data = nullptr;
  encoding->convert = nullptr;
  encoding->release = nullptr;
  return XML_STATUS_OK;
}

// What is wrong, where expat's own words for it are too terse.
std::string reason_of(XML_Error error, std::size_t open_elements) {
  switch (error) {
    case XML_ERROR_NO_ELEMENTS:
      return open_elements > 0 ? "the document ends inside an element" : "there is no element";
    case XML_ERROR_SYNTAX: return "not well-formed: markup has to stand here";
    case XML_ERROR_INVALID_TOKEN: return "not well-formed: a character that cannot stand here";
    case XML_ERROR_UNCLOSED_TOKEN: return "the document ends inside what starts here";
    case XML_ERROR_PARTIAL_CHAR: return "the document ends inside a character";
    case XML_ERROR_TAG_MISMATCH: return "the end tag does not match the start tag";
    case XML_ERROR_DUPLICATE_ATTRIBUTE: return "the element has two attributes of this name";
    case XML_ERROR_JUNK_AFTER_DOC_ELEMENT: return "something stands behind the document element";
    case XML_ERROR_RECURSIVE_ENTITY_REF: return circular;
    case XML_ERROR_BAD_CHAR_REF: return "the character reference stands for no character";
    case XML_ERROR_MISPLACED_XML_PI: return "the XML declaration is not at the start of the file";
    case XML_ERROR_INCORRECT_ENCODING: return "the file's encoding is not the declared one";
    case XML_ERROR_AMPLIFICATION_LIMIT_BREACH: return blown_up;
    default: return XML_ErrorString(error);
  }
}

// "the entity NAME is ...", with a long name cut short.
std::string about_entity(std::string_view name, std::string_view what) {
  std::string reason = "the entity ";
  if (name.empty()) return reason.append(what);
  if (name.size() <= longest_name) {
    reason += name;
  } else {
    std::size_t end = longest_name;
    while ((static_cast<unsigned char>(name[end]) & 0xC0) == 0x80) --end;  // not inside a character
    reason.append(name.substr(0, end)).append("...");
  }
  return reason.append(" ").append(what);
}

constexpr std::string_view not_declared = "is not declared";
constexpr std::string_view not_read = "is not declared, or behind a parameter entity, where declarations are not read";
constexpr std::string_view outside = "stands for another file, which is not read";

// One run of the parser over one document.
class Reader {
 public:
  // `expected` is about how many bytes there are.
  Reader(StringView path, std::uint64_t expected)
      : path_(path), expected_(expected), builder_(expected), parser_(XML_ParserCreate(nullptr)) {
    if (!parser_) throw std::bad_alloc();
    const XML_Parser parser = parser_.get();
    XML_SetUserData(parser, this);
    XML_SetElementHandler(parser, on<&Reader::start_element, const XML_Char*, const XML_Char**>,
                          on<&Reader::end_element, const XML_Char*>);
    XML_SetCharacterDataHandler(parser, on<&Reader::text, const XML_Char*, int>);
    XML_SetCdataSectionHandler(parser, on<&Reader::start_cdata>, on<&Reader::end_cdata>);
    XML_SetUnknownEncodingHandler(parser, unknown_encoding, nullptr);
    XML_SetXmlDeclHandler(parser, on<&Reader::xml_declaration, const XML_Char*, const XML_Char*, int>);
    XML_SetDoctypeDeclHandler(parser,
                              on<&Reader::start_doctype, const XML_Char*, const XML_Char*, const XML_Char*, int>,
                              on<&Reader::end_doctype>);
    XML_SetEntityDeclHandler(parser, on<&Reader::declare_entity, const XML_Char*, int, const XML_Char*, int,
                                        const XML_Char*, const XML_Char*, const XML_Char*, const XML_Char*>);
    XML_SetSkippedEntityHandler(parser, on<&Reader::skipped_entity, const XML_Char*, int>);
    XML_SetNotStandaloneHandler(parser, [](void* self) {
      on<&Reader::not_standalone>(self);
      return static_cast<int>(XML_STATUS_OK);
    });
    XML_SetExternalEntityRefHandlerArg(parser, this);
    XML_SetExternalEntityRefHandler(
        parser, [](XML_Parser self, const XML_Char*, const XML_Char*, const XML_Char*, const XML_Char*) {
          on<&Reader::external_entity>(self);
          return static_cast<int>(XML_STATUS_OK);
        });
  }

  // An empty reference and a file error when the document cannot be read or is malformed.
  Ref<const XmlTree> read(const Source& source) {
    for (bool more = true; more;) {
      const std::uint64_t left = expected_ > fed_ ? expected_ - fed_ + 1 : 0;  // one more shows that it is the end
      const auto size = static_cast<std::size_t>(std::clamp(std::max(left, fed_ - reached_), chunk, most_at_a_time));
      auto* const buffer =
          static_cast<char*>(XML_GetBuffer(parser_.get(), static_cast<int>(size + Utf16Input::most_held)));
      if (buffer == nullptr) return stop_with_parser_error();
      const std::size_t held = utf16_.put_held(buffer);
      const auto count = source(buffer + held, size);
      if (!count) return {};
      more = *count == size;
      const std::size_t ready = utf16_.check(buffer, held + *count, !more);
      fed_ += ready;
      const bool good = XML_ParseBuffer(parser_.get(), static_cast<int>(ready), !more) == XML_STATUS_OK;
      if (thrown_) std::rethrow_exception(thrown_);
      if (stopped_) return {};
      if (!good) return stop_with_parser_error();
      const XML_Index reached = XML_GetCurrentByteIndex(parser_.get());
      if (reached >= 0) reached_ = static_cast<std::uint64_t>(reached);
    }
    return builder_.finish();
  }

 private:
  struct Free {
    void operator()(XML_Parser parser) const noexcept { XML_ParserFree(parser); }
  };

  // Expat's way into a step of this class, which answers why the parser is to stop or with nothing. No exception may
  // cross expat's frames, and expat may call once more after a stop.
  template <auto Step, class... Arguments>
  static void XMLCALL on(void* self, Arguments... arguments) {
    Reader& reader = *static_cast<Reader*>(self);
    if (reader.stopped_) return;
    try {
      const char* reason = (reader.*Step)(arguments...);
      if (reason == nullptr) return;
      reader.reject_here(reason);
    } catch (...) {
      reader.thrown_ = std::current_exception();
      reader.stop();
    }
  }

  const char* start_element(const XML_Char* name, const XML_Char** attributes) {
    if (builder_.depth() == ExpatDocument::most_nested) return "elements are nested more than 1,000 deep";
    if (!builder_.start_element(name)) return too_large;
    const int specified = XML_GetSpecifiedAttributeCount(parser_.get());
    if (!declared_.empty() && !spend_on_attributes(name, specified)) return blown_up_by_attributes;
    if (may_skip_ && specified > 0 && has_undeclared()) return nullptr;
    const XML_Char** const specified_end = attributes + specified;
    for (; *attributes != nullptr; attributes += 2) {
      const std::string_view value = attributes[1];
      if (attributes >= specified_end) {
        defaults_ += value.size() + default_cost;
        if (defaults_ > std::max(free_defaults, most_amplified * counted_bytes()))
          return "default attributes blow the document up";
      }
      if (!builder_.add_attribute(attributes[0], value)) return too_large;
    }
    return nullptr;
  }
  const char* end_element(const XML_Char*) { return builder_.end_element() ? nullptr : too_large; }
  const char* text(const XML_Char* text, int size) {
    return builder_.add_text({text, static_cast<std::size_t>(size)}) ? nullptr : too_large;
  }
  const char* start_cdata() { return builder_.start_cdata() ? nullptr : too_large; }
  const char* end_cdata() { return builder_.end_cdata() ? nullptr : too_large; }

  const char* xml_declaration(const XML_Char* version, const XML_Char* encoding, int) {
    if (encoding != nullptr) table_ = table_of(encoding);
    const std::string_view number = version;
    const bool known = number.size() == 3 && number.starts_with("1.") && number[2] >= '0' && number[2] <= '9';
    return known ? nullptr : "the version of XML is not one of 1.0 to 1.9";
  }

  // In an internal subset the default handler gets what no other takes, among it all attribute lists.
  const char* start_doctype(const XML_Char*, const XML_Char*, const XML_Char*, int has_subset) {
    if (has_subset == 0) return nullptr;
    XML_SetCommentHandler(parser_.get(), [](void*, const XML_Char*) {});
    XML_SetProcessingInstructionHandler(parser_.get(), [](void*, const XML_Char*, const XML_Char*) {});
    in_subset_ = true;
    set_default_handler();
    return nullptr;
  }
  const char* end_doctype() {
    XML_SetCommentHandler(parser_.get(), nullptr);
    XML_SetProcessingInstructionHandler(parser_.get(), nullptr);
    in_subset_ = false;
    set_default_handler();
    return nullptr;
  }
  void set_default_handler() {
    constexpr XML_DefaultHandler handler = on<&Reader::subset_text, const XML_Char*, int>;
    XML_SetDefaultHandlerExpand(parser_.get(), in_subset_ ? handler : nullptr);
  }

  const char* subset_text(const XML_Char* text, int size) {
    if (ignores_declarations_) return nullptr;
    if (!attribute_lists_.in_quotes()) token_ = here();  // else this is more of the same one
    for (const char c : std::string_view(text, static_cast<std::size_t>(size))) {
      if (!attribute_lists_.next(c)) continue;
      // Expat looks for the attribute among those that the element has already.
      if (!attribute_effort_.at(counted_bytes()).spend(++declared_[attribute_lists_.element()]))
        return blown_up_by_attributes;
      const std::string_view missing = entities_.undeclared_in(attribute_lists_.value());
      if (!missing.empty()) return reject(token_, about_entity(missing, undeclared()));
    }
    return nullptr;
  }

  // For each specified attribute expat may go through those that are declared, and it does so once for all the others,
  // which takes twice as long.
  bool spend_on_attributes(std::string_view element, int specified) {
    const auto found = declared_.find(element);
    return found == declared_.end() ||
           attribute_effort_.at(counted_bytes()).spend(found->second * (static_cast<std::uint64_t>(specified) / 2 + 2));
  }

  // Rejects a tag with a reference to an entity that is not declared: in the value of an attribute expat skips it
  // silently.
  bool has_undeclared() {
    const Position tag = here();
    const std::string_view missing = entities_.undeclared_in(event_text());
    if (missing.empty()) return false;
    reject(tag, about_entity(missing, undeclared()));
    return true;
  }

  const char* declare_entity(const XML_Char* name, int is_parameter, const XML_Char* value, int size, const XML_Char*,
                             const XML_Char*, const XML_Char*, const XML_Char*) {
    if (is_parameter != 0) return nullptr;  // expat is not asked to follow these
    if (value == nullptr) {
      entities_.declare_without_text(name);
      return nullptr;
    }
    Effort& effort = entity_effort_.at(counted_bytes());
    switch (entities_.declare(name, {value, static_cast<std::size_t>(size)}, effort)) {
      case EntityGraph::Problem::None: return nullptr;
      case EntityGraph::Problem::NestedTooDeep: return "entities are nested more than 1,000 deep";
      case EntityGraph::Problem::RefersToItself: return circular;
      case EntityGraph::Problem::TooMuchEffort: break;
    }
    return blown_up;
  }

  // There are declarations that are not read. From here on expat skips references to what is not declared, and behind a
  // parameter entity it reads no declaration any more.
  const char* not_standalone() {
    may_skip_ = true;
    if (event_text().starts_with('%')) ignores_declarations_ = true;
    return nullptr;
  }

  std::string_view undeclared() const noexcept { return ignores_declarations_ ? not_read : not_declared; }

  const char* skipped_entity(const XML_Char* name, int is_parameter) {
    return is_parameter != 0 ? nullptr : reject(here(), about_entity(name, undeclared()));
  }
  const char* external_entity() {
    const Position reference = here();
    const std::string_view text = event_text();  // "&name;"
    return reject(reference, about_entity(text.substr(1, text.size() - 2), outside));
  }

  // The markup that expat is at, in UTF-8; valid until the next call. Expat then takes another place for the current
  // one.
  std::string_view event_text() {
    event_.clear();
    const XML_Parser parser = parser_.get();
    XML_SetDefaultHandlerExpand(parser, on<&Reader::add_event_text, const XML_Char*, int>);
    XML_DefaultCurrent(parser);
    set_default_handler();
    return event_;
  }
  const char* add_event_text(const XML_Char* text, int size) {
    event_.append(text, static_cast<std::size_t>(size));
    return nullptr;
  }

  // The bytes up to where the parser is, in whole chunks: what a document may cost does not depend on how much of it was
  // read ahead.
  std::uint64_t counted_bytes() const {
    const XML_Parser parser = parser_.get();
    const XML_Index end = XML_GetCurrentByteIndex(parser) + XML_GetCurrentByteCount(parser);
    const std::uint64_t chunks = end <= 0 ? 1 : (static_cast<std::uint64_t>(end) + chunk - 1) / chunk;
    return std::min(fed_, chunks * chunk);
  }

  struct Position {
    std::int64_t line;
    std::int64_t column;
  };
  Position here() {
    return {static_cast<std::int64_t>(XML_GetCurrentLineNumber(parser_.get())),
            static_cast<std::int64_t>(XML_GetCurrentColumnNumber(parser_.get())) + 1};
  }

  void stop() {
    stopped_ = true;
    XML_StopParser(parser_.get(), XML_FALSE);
  }

  // Stops with a file error, and gives nothing, which a step can give on.
  std::nullptr_t reject(Position position, std::string reason) {
    FileError error;
    error.kind = FileError::Kind::Malformed;
    error.path = path_;
    error.line = position.line;
    error.column = position.column;
    error.reason = std::move(reason);
    set_file_error(std::move(error));
    stop();
    return nullptr;
  }

  [[gnu::cold]] void reject_here(const char* reason) { reject(here(), reason); }

  // The file from where expat has stopped, as far as it has been read, in UTF-8.
  std::string text_at_error() {
    int offset = 0;
    int size = 0;
    const char* const context = XML_GetInputContext(parser_.get(), &offset, &size);
    if (context == nullptr) return {};
    const auto bytes =
        std::string_view(context, static_cast<std::size_t>(size)).substr(static_cast<std::size_t>(offset));
    String text;
    if (utf16_.is_utf16()) {
      for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) text += utf16_.unit_at(bytes.data() + i);
    } else if (table_ != nullptr) {
      for (const char c : bytes) text += static_cast<char16_t>((*table_)[static_cast<unsigned char>(c)]);
    } else {
      return std::string(bytes);
    }
    return to_utf8(text);
  }

  // Rejects what expat has rejected.
  std::nullptr_t stop_with_parser_error() {
    const XML_Error error = XML_GetErrorCode(parser_.get());
    const Position position = here();
    switch (error) {
      case XML_ERROR_UNDEFINED_ENTITY:
        return reject(position, about_entity(entities_.undeclared_in(text_at_error()), not_declared));
      case XML_ERROR_ATTRIBUTE_EXTERNAL_ENTITY_REF:
      case XML_ERROR_BINARY_ENTITY_REF:
        return reject(position, about_entity(entities_.without_text_in(text_at_error()), outside));
      case XML_ERROR_NO_MEMORY: break;
      default: return reject(position, reason_of(error, builder_.depth()));
    }
    if (fed_ - reached_ > longest_part) return reject(position, "what starts here is too large");
    throw std::bad_alloc();
  }

  StringView path_;
  std::uint64_t expected_;
  XmlTreeBuilder builder_;
  std::unique_ptr<XML_ParserStruct, Free> parser_;
  Utf16Input utf16_;
  const CharacterTable* table_ = nullptr;  // of the declared encoding
  std::uint64_t fed_ = 0;                  // bytes given to the parser
  std::uint64_t reached_ = 0;              // where what it has not finished yet begins
  std::uint64_t defaults_ = 0;             // bytes that default attributes took
  Effort entity_effort_ = for_entities;
  Effort attribute_effort_ = for_attributes;
  EntityGraph entities_;
  AttributeLists attribute_lists_;
  Position token_{};                                            // what `attribute_lists_` is in
  std::map<std::string, std::uint64_t, std::less<>> declared_;  // attributes of each element
  bool in_subset_ = false;
  bool may_skip_ = false;
  bool ignores_declarations_ = false;
  std::string event_;
  bool stopped_ = false;
  std::exception_ptr thrown_;  // in a step
};

class Documents final : public XmlDocumentFactory {
 public:
  Ref<IXMLDOMDocument2> document() override { return make<ExpatDocument>(); }
};

}  // namespace

ExpatDocument::ExpatDocument() = default;
ExpatDocument::~ExpatDocument() = default;

bool ExpatDocument::load(const Variant& path) {
  clear_file_error();
  tree_ = nullptr;
  const String name = to_text(path);
  auto file = InputFile::open(name);
  if (!file) return false;
  tree_ = Reader(name, file->size()).read([&](char* target, std::size_t size) { return file->read(target, size); });
  return static_cast<bool>(tree_);
}

bool ExpatDocument::parse(std::string_view bytes) {
  clear_file_error();
  tree_ = nullptr;
  tree_ = Reader({}, bytes.size()).read([&](char* target, std::size_t size) {
    const std::size_t count = bytes.copy(target, size);
    bytes.remove_prefix(count);
    return std::optional(count);
  });
  return static_cast<bool>(tree_);
}

Ref<IXMLDOMElement> ExpatDocument::selectSingleNode(StringView name) {
  if (!tree_ || tree_->name(0) != name) return {};
  return element_handle(tree_, 0);
}

Ref<IXMLDOMNodeList> ExpatDocument::getElementsByTagName(StringView name) {
  if (!tree_) return list_handle(nullptr, {});
  return list_handle(tree_, tree_->elements(name));
}

XmlDocumentFactory& expat_documents() noexcept {
  static Documents documents;
  return documents;
}

}  // namespace hedro34
