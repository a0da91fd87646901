#include "platform/dds/xml/document.hpp"

#include <expat.h>

#include <algorithm>
#include <cstddef>
#include <exception>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>
#include <vector>

#include "platform/dds/xml/excerpt.hpp"
#include "platform/dds/xml/white_space.hpp"

namespace pexa::dds::xml {
namespace {

struct ParserFree {
    void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
};
using ParserPtr = std::unique_ptr<std::remove_pointer_t<XML_Parser>, ParserFree>;

struct Expectation {
    XML_Error error;
    const char* expected;
};

/// What a document should hold where it is not well-formed.
constexpr Expectation expectations[] = {
    {XML_ERROR_SYNTAX, "markup and no text outside of the root element"},
    {XML_ERROR_NO_ELEMENTS, "dds as the root element"},
    {XML_ERROR_INVALID_TOKEN, "&amp; and &lt; for & and < in a text"},
    {XML_ERROR_UNCLOSED_TOKEN, "> at the end of a tag"},
    {XML_ERROR_JUNK_AFTER_DOC_ELEMENT, "one root element and nothing behind it"},
    {XML_ERROR_DUPLICATE_ATTRIBUTE, "each attribute once"},
    {XML_ERROR_UNDEFINED_ENTITY, "&amp; &lt; &gt; &quot; &apos; or the number of a character"},
    {XML_ERROR_UNKNOWN_ENCODING, "the encoding UTF-8, UTF-16, ISO-8859-1 or US-ASCII"},
    {XML_ERROR_INCORRECT_ENCODING, "the encoding that the document declares"},
};

/// Feeds a handler from the callbacks of expat, through whose frames no exception may pass.
class Reader {
public:
    Reader(XML_Parser parser, DocumentHandler& handler) : parser_(parser), handler_(handler) {
        XML_SetUserData(parser, this);
        XML_SetElementHandler(parser, on_start, on_end);
        XML_SetCharacterDataHandler(parser, on_text);
        XML_SetStartDoctypeDeclHandler(parser, on_document_type);
    }

    std::optional<DocumentFault> read(std::string_view text) {
        document_ = text;
        const XML_Status status =
            XML_Parse(parser_, text.data(), static_cast<int>(text.size()), XML_TRUE);
        if (exception_ != nullptr) {
            std::rethrow_exception(exception_);
        }
        if (fault_ || status == XML_STATUS_OK) {
            return fault_;
        }
        return DocumentFault{line(), syntax_fault()};
    }

private:
    struct OpenElement {
        std::string name;
        DDS_Long line;
        std::string text{};
    };

    DDS_Long line() const { return static_cast<DDS_Long>(XML_GetCurrentLineNumber(parser_)); }

    void stop() { XML_StopParser(parser_, XML_FALSE); }

    /// Ends the reading. The first fault counts.
    void refuse(std::string message) {
        if (!fault_) {
            fault_ = DocumentFault{line(), std::move(message)};
        }
        stop();
    }

    /// @param what is beyond the limit
    void refuse_beyond(const std::string& what, std::size_t limit, const char* unit) {
        refuse(what + ", expected at most " + std::to_string(limit) + unit);
    }

    /// The name in the end tag at which expat has stopped, in the encoding of the document.
    std::string_view name_at_fault() const {
        const auto index = static_cast<std::size_t>(XML_GetCurrentByteIndex(parser_));
        const std::string_view rest = document_.substr(std::min(index, document_.size()));
        return rest.substr(0, rest.find_first_of("> \t\r\n"));
    }

    std::string syntax_fault() const {
        const XML_Error error = XML_GetErrorCode(parser_);
        if (error == XML_ERROR_TAG_MISMATCH) {
            return "not well-formed: mismatched tag </" + excerpt(name_at_fault()) + ">" +
                   expected_end();
        }
        if (error == XML_ERROR_NO_ELEMENTS && !open_.empty()) {
            return "not well-formed: the document ends too early" + expected_end();
        }
        std::string fault = XML_ErrorString(error);
        if (!fault.starts_with("not well-formed")) {
            fault.insert(0, "not well-formed: ");
        }
        for (const Expectation& row : expectations) {
            if (row.error == error) {
                fault.append(", expected ").append(row.expected);
            }
        }
        return fault;
    }

    std::string expected_end() const {
        const OpenElement& element = open_.back();
        return ", expected </" + excerpt(element.name) + "> for the element of line " +
               std::to_string(element.line);
    }

    template <typename Work>
    static void guarded(void* self, Work work) {
        auto& reader = *static_cast<Reader*>(self);
        // Expat may still call for text that it had read before it was stopped.
        if (reader.fault_ || reader.exception_ != nullptr) {
            return;
        }
        try {
            work(reader);
        } catch (...) {
            reader.exception_ = std::current_exception();
            reader.stop();
        }
    }

    static void on_start(void* self, const XML_Char* name, const XML_Char** attributes) {
        guarded(self, [&](Reader& reader) {
            reader.count_element(name, attributes);
            if (reader.fault_) {
                return;
            }
            reader.open_.push_back({name, reader.line()});
            reader.handler_.on_start(name, attributes, reader.line());
        });
    }

    static void on_text(void* self, const XML_Char* text, int length) {
        guarded(self, [&](Reader& reader) {
            std::string& whole = reader.open_.back().text;
            whole.append(text, static_cast<std::size_t>(length));
            if (whole.size() > DDS_XML_MAX_TEXT_LENGTH) {
                reader.refuse_beyond("the element's text is too long", DDS_XML_MAX_TEXT_LENGTH,
                                     " bytes");
            }
        });
    }

    static void on_end(void* self, const XML_Char* name) {
        guarded(self, [&](Reader& reader) {
            const std::string text(trimmed(reader.open_.back().text));
            reader.open_.pop_back();
            reader.handler_.on_end(name, text, reader.line());
        });
    }

    static void on_document_type(void* self, const XML_Char* /*name*/, const XML_Char* /*system*/,
                                 const XML_Char* /*publisher*/, int /*has_internal_subset*/) {
        guarded(self, [](Reader& reader) {
            reader.refuse("a document type declaration is not allowed here, expected none");
        });
    }

    /// Counts an element, and refuses one that exceeds a limit.
    void count_element(std::string_view name, const XML_Char** attributes) {
        if (open_.size() == DDS_XML_MAX_DEPTH) {
            return refuse_beyond("the elements are nested too deeply", DDS_XML_MAX_DEPTH,
                                 " levels");
        }
        if (++element_count_ > DDS_XML_MAX_ELEMENTS) {
            return refuse_beyond("the document has too many elements", DDS_XML_MAX_ELEMENTS, "");
        }
        if (name.size() > DDS_XML_MAX_TEXT_LENGTH) {
            return refuse_beyond("the element's name is too long", DDS_XML_MAX_TEXT_LENGTH,
                                 " bytes");
        }
        std::size_t count = 0;
        for (; attributes[count] != nullptr; ++count) {
            if (std::string_view(attributes[count]).size() > DDS_XML_MAX_TEXT_LENGTH) {
                return refuse_beyond("an attribute is too long", DDS_XML_MAX_TEXT_LENGTH, " bytes");
            }
        }
        if (count / 2 > DDS_XML_MAX_ATTRIBUTES) {
            refuse_beyond("the element has too many attributes", DDS_XML_MAX_ATTRIBUTES, "");
        }
    }

    XML_Parser parser_;
    DocumentHandler& handler_;
    std::string_view document_;
    std::vector<OpenElement> open_;
    DDS_Long element_count_ = 0;
    std::optional<DocumentFault> fault_;
    std::exception_ptr exception_;
};

}  // namespace

std::optional<DocumentFault> read_document(std::string_view text, DocumentHandler& handler) {
    if (text.size() > DDS_XML_MAX_DOCUMENT_SIZE) {
        return DocumentFault{0, "the document is too long, expected at most " +
                                    std::to_string(DDS_XML_MAX_DOCUMENT_SIZE) + " bytes"};
    }
    const ParserPtr parser(XML_ParserCreate(nullptr));
    if (parser == nullptr) {
        throw std::bad_alloc();
    }
    return Reader(parser.get(), handler).read(text);
}

}  // namespace pexa::dds::xml
