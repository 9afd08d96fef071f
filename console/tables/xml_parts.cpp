#include "console/tables/xml_parts.h"

#include <array>
#include <charconv>
#include <exception>
#include <expat.h>
#include <type_traits>
#include <zip.h>

#include "console/base/failure.h"

namespace spx::console {
namespace {

constexpr char SEPARATOR = '\n';                 ///< between the namespace and the name
constexpr std::string_view DOUBLED = "calcext";  ///< a namespace that says again what the cell says

std::string_view localName(std::string_view name) {
  return name.substr(name.rfind(SEPARATOR) + 1);
}

/// Passes what the parser finds to a handler. No exception may pass through the parser, which is written in C.
class Parser {
 public:
  explicit Parser(XmlHandler& handler)
      : parser_(XML_ParserCreateNS(nullptr, SEPARATOR), &XML_ParserFree), handler_(handler) {
    XML_SetUserData(parser_.get(), this);
    XML_SetElementHandler(
        parser_.get(),
        [](void* self, const char* name, const char** attributes) {
          of(self).guarded([&](XmlHandler& to) { to.start(localName(name), XmlAttributes(attributes)); });
        },
        [](void* self, const char* name) { of(self).guarded([&](XmlHandler& to) { to.end(localName(name)); }); });
    XML_SetCharacterDataHandler(parser_.get(), [](void* self, const char* text, int size) {
      of(self).guarded([&](XmlHandler& to) { to.text({text, static_cast<std::size_t>(size)}); });
    });
    XML_SetStartDoctypeDeclHandler(parser_.get(), [](void* self, const char*, const char*, const char*, int) {
      of(self).guarded([](XmlHandler&) { throw Failure("is damaged: it has a DTD"); });
    });
  }

  void add(std::string_view bytes, bool is_last) {
    const bool is_valid =
        XML_Parse(parser_.get(), bytes.data(), static_cast<int>(bytes.size()), is_last ? 1 : 0) == XML_STATUS_OK;
    if (thrown_) {
      std::rethrow_exception(thrown_);
    }
    if (!is_valid) {
      throw Failure(std::string("is damaged: ") + XML_ErrorString(XML_GetErrorCode(parser_.get())));
    }
  }

 private:
  static Parser& of(void* self) { return *static_cast<Parser*>(self); }

  template <typename Action>
  void guarded(Action action) {
    if (thrown_) {
      return;
    }
    try {
      action(handler_);
    } catch (...) {
      thrown_ = std::current_exception();
      XML_StopParser(parser_.get(), XML_FALSE);
    }
  }

  std::unique_ptr<std::remove_pointer_t<XML_Parser>, void (*)(XML_Parser)> parser_;
  XmlHandler& handler_;
  std::exception_ptr thrown_;
};

}  // namespace

std::string_view XmlAttributes::operator[](std::string_view name) const {
  for (const char** attribute = attributes_; *attribute != nullptr; attribute += 2) {
    const std::string_view full = *attribute;
    if (localName(full) == name && full.find(DOUBLED) == std::string_view::npos) {
      return attribute[1];
    }
  }
  return {};
}

std::size_t XmlAttributes::number(std::string_view name, std::size_t fallback) const {
  const std::string_view text = (*this)[name];
  std::size_t value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  return result.ec == std::errc() && result.ptr == text.data() + text.size() ? value : fallback;
}

XmlParts::XmlParts(const std::string& content) : archive_(nullptr, &zip_discard) {
  zip_error_t error;
  zip_error_init(&error);
  zip_source_t* source = zip_source_buffer_create(content.data(), content.size(), 0, &error);
  archive_.reset(source == nullptr ? nullptr : zip_open_from_source(source, ZIP_RDONLY, &error));
  zip_error_fini(&error);
  if (archive_ == nullptr) {
    zip_source_free(source);
    throw Failure("is damaged: it ends too early, or its parts are not where they should be");
  }
}

bool XmlParts::has(const std::string& name) const {
  return zip_name_locate(archive_.get(), name.c_str(), ZIP_FL_NOCASE) >= 0;
}

void XmlParts::parse(const std::string& name, XmlHandler& handler) const {
  const zip_int64_t index = zip_name_locate(archive_.get(), name.c_str(), ZIP_FL_NOCASE);
  const std::unique_ptr<zip_file_t, int (*)(zip_file_t*)> part(
      index < 0 ? nullptr : zip_fopen_index(archive_.get(), static_cast<zip_uint64_t>(index), 0), &zip_fclose);
  if (part == nullptr) {
    throw Failure("is damaged: its part " + name + " is missing");
  }
  Parser parser(handler);
  std::array<char, 1 << 16> bytes{};
  for (zip_int64_t size = 1; size > 0;) {
    size = zip_fread(part.get(), bytes.data(), bytes.size());
    if (size < 0) {
      throw Failure("is damaged: a part is not what was packed");
    }
    parser.add({bytes.data(), static_cast<std::size_t>(size)}, size == 0);
  }
}

}  // namespace spx::console
