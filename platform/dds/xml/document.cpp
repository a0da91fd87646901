#include "platform/dds/xml/document.hpp"

#include <expat.h>

#include <exception>
#include <memory>
#include <new>
#include <type_traits>
#include <vector>

#include "platform/dds/xml/white_space.hpp"

namespace pexa::dds::xml {
namespace {

struct ParserFree {
    void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
};
using ParserPtr = std::unique_ptr<std::remove_pointer_t<XML_Parser>, ParserFree>;

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
        const XML_Status status =
            XML_Parse(parser_, text.data(), static_cast<int>(text.size()), XML_TRUE);
        if (exception_ != nullptr) {
            std::rethrow_exception(exception_);
        }
        if (fault_ || status == XML_STATUS_OK) {
            return fault_;
        }
        return DocumentFault{
            line(), std::string("not well-formed: ") + XML_ErrorString(XML_GetErrorCode(parser_))};
    }

private:
    DDS_Long line() const { return static_cast<DDS_Long>(XML_GetCurrentLineNumber(parser_)); }

    void stop() { XML_StopParser(parser_, XML_FALSE); }

    /// Ends the reading. The first fault counts.
    void refuse(const char* message) {
        if (!fault_) {
            fault_ = DocumentFault{line(), message};
        }
        stop();
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
            reader.texts_.emplace_back();
            reader.handler_.on_start(name, attributes, reader.line());
        });
    }

    static void on_text(void* self, const XML_Char* text, int length) {
        guarded(self, [&](Reader& reader) {
            std::string& whole = reader.texts_.back();
            whole.append(text, static_cast<std::size_t>(length));
            if (whole.size() > DDS_XML_MAX_TEXT_LENGTH) {
                reader.refuse("the element's text is too long");
            }
        });
    }

    static void on_end(void* self, const XML_Char* name) {
        guarded(self, [&](Reader& reader) {
            const std::string text(trimmed(reader.texts_.back()));
            reader.texts_.pop_back();
            reader.handler_.on_end(name, text, reader.line());
        });
    }

    static void on_document_type(void* self, const XML_Char* /*name*/, const XML_Char* /*system*/,
                                 const XML_Char* /*publisher*/, int /*has_internal_subset*/) {
        guarded(self, [](Reader& reader) {
            reader.refuse("a document type declaration is not allowed here");
        });
    }

    /// Counts an element, and refuses one that exceeds a limit.
    void count_element(std::string_view name, const XML_Char** attributes) {
        if (texts_.size() == DDS_XML_MAX_DEPTH) {
            return refuse("the elements are nested too deeply");
        }
        if (++element_count_ > DDS_XML_MAX_ELEMENTS) {
            return refuse("the document has too many elements");
        }
        if (name.size() > DDS_XML_MAX_TEXT_LENGTH) {
            return refuse("the element's name is too long");
        }
        std::size_t count = 0;
        for (; attributes[count] != nullptr; ++count) {
            if (std::string_view(attributes[count]).size() > DDS_XML_MAX_TEXT_LENGTH) {
                return refuse("an attribute is too long");
            }
        }
        if (count / 2 > DDS_XML_MAX_ATTRIBUTES) {
            refuse("the element has too many attributes");
        }
    }

    XML_Parser parser_;
    DocumentHandler& handler_;
    /// Own texts of the open elements.
    std::vector<std::string> texts_;
    DDS_Long element_count_ = 0;
    std::optional<DocumentFault> fault_;
    std::exception_ptr exception_;
};

}  // namespace

std::optional<DocumentFault> read_document(std::string_view text, DocumentHandler& handler) {
    if (text.size() > DDS_XML_MAX_DOCUMENT_SIZE) {
        return DocumentFault{0, "the document is too long"};
    }
    const ParserPtr parser(XML_ParserCreate(nullptr));
    if (parser == nullptr) {
        throw std::bad_alloc();
    }
    return Reader(parser.get(), handler).read(text);
}

}  // namespace pexa::dds::xml
