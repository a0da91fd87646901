#include "platform/dds/xml/tree_builder.hpp"

#include <algorithm>
#include <array>
#include <memory>

#include "platform/dds/xml/excerpt.hpp"

namespace pexa::dds::xml {
namespace {

constexpr std::array<std::string_view, 6> top_elements{
    "types", "qos_library", "domain_library", "domain_participant_library", "application_library",
    "data"};

thread_local TreeBuilder* current_builder = nullptr;

/// Keeps the place of the parse in the context for the time of a callback.
class Place {
public:
    Place(DDS_XMLContext& context, const char* name, DDS_Long line) : context_(context) {
        context.line = line;
        context.tagName = name;
    }
    Place(const Place&) = delete;
    Place& operator=(const Place&) = delete;
    ~Place() { context_.tagName = nullptr; }

private:
    DDS_XMLContext& context_;
};

}  // namespace

TreeBuilder::TreeBuilder(Parser& parser) : parser_(parser), outer_(current_builder) {
    context_.parser = handle_of(&parser);
    current_builder = this;
}

TreeBuilder::~TreeBuilder() {
    current_builder = outer_;
}

TreeBuilder* TreeBuilder::current() {
    return current_builder;
}

void TreeBuilder::add_fault(std::string_view message, DDS_Long line) {
    // The context has the element's name only during a callback of the document.
    const char* tag_name = context_.tagName;
    if (tag_name == nullptr && object_ != nullptr) {
        tag_name = object_->tagName;
    }
    parser_.add_fault(line != 0 ? line : context_.line, tag_name != nullptr ? tag_name : "",
                      message);
}

void TreeBuilder::check_place(std::string_view name) {
    if (object_ == nullptr) {
        if (name != "dds") {
            add_fault("expected dds as the root element", 0);
        }
        return;
    }
    const bool is_known =
        object_->parent != nullptr || parser_.find_class(name) != nullptr ||
        std::find(top_elements.begin(), top_elements.end(), name) != top_elements.end();
    if (is_known) {
        return;
    }
    std::string message = "unknown element, expected";
    for (const std::string_view known : top_elements) {
        message.append(" ").append(known);
    }
    for (const DDS_XMLExtensionClass* extension_class : parser_.classes_) {
        message.append(" ").append(extension_class->tag_name);
    }
    if (parser_.foreign_elements_ == ForeignElements::warnings) {
        parser_.add_warning(context_.line, name, message);
    } else {
        add_fault(message, 0);
    }
}

template <typename Callback>
void TreeBuilder::call(Callback callback) {
    const DDS_Long faults = parser_.fault_count();
    context_.error = 0;
    callback();
    if (context_.error != 0 && parser_.fault_count() == faults) {
        add_fault("the content of the element is not accepted", 0);
    }
}

void TreeBuilder::enter(DDS_XMLObject* object) {
    if (object_ != nullptr) {
        append_child(*object_, *object);
    } else {
        tree_.reset(object);
    }
    object_ = object;
}

void TreeBuilder::start_object(const char* name, const char* const* attributes) {
    DDS_XMLExtensionClass* extension_class = parser_.find_class(name);
    if (extension_class == nullptr) {
        auto plain = std::make_unique<PlainObject>(object_, name, attributes, context_.line);
        enter(plain.release());
        return;
    }
    const DDS_Long faults = parser_.fault_count();
    call([&] {
        DDS_XMLObject* object =
            extension_class->new_object(extension_class, object_, attributes, &context_);
        if (object == nullptr) {
            skipped_ = 1;
            return;
        }
        // A constructor may have left them out.
        object->extensionClass = extension_class;
        object->parent = object_;
        enter(object);
    });
    if (skipped_ > 0 && parser_.fault_count() == faults) {
        add_fault("no object could be made of the element", 0);
    }
}

void TreeBuilder::on_start(const char* name, const char* const* attributes, DDS_Long line) {
    const Place place(context_, name, line);
    if (skipped_ > 0) {
        ++skipped_;
        return;
    }
    if (inside_class_ == 0) {
        check_place(name);
        start_object(name, attributes);
        if (skipped_ > 0 || object_->extensionClass == nullptr) {
            return;
        }
    }
    ++inside_class_;
    if (const auto start = object_->extensionClass->on_start) {
        call([&] { start(object_, name, attributes, &context_); });
    }
}

void TreeBuilder::on_end(const char* name, const std::string& text, DDS_Long line) {
    const Place place(context_, name, line);
    if (skipped_ > 0) {
        --skipped_;
        return;
    }
    if (object_->extensionClass == nullptr) {
        static_cast<PlainObject*>(object_)->text = text;
        object_ = object_->parent;
        if (object_ == nullptr && !text.empty()) {
            parser_.add_warning(
                line, name,
                "the text \"" + excerpt(text) + "\" has no effect, expected nothing but elements");
        }
        return;
    }
    if (const auto end = object_->extensionClass->on_end) {
        call([&] { end(object_, name, text.c_str(), &context_); });
    }
    if (--inside_class_ == 0) {
        object_ = object_->parent;
    }
}

}  // namespace pexa::dds::xml

DDS_Long DDS_XMLContext_get_current_line_number(const DDS_XMLContext* context) {
    return context != nullptr ? context->line : 0;
}
