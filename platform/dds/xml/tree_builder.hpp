/// @file tree_builder.hpp
/// @brief Makes objects of the elements of a document and calls their classes.
#pragma once

#include "platform/dds/xml/document.hpp"
#include "platform/dds/xml/parser.hpp"

namespace pexa::dds::xml {

/// Builds the tree of a parser during one parse. Callbacks find the builder that runs on their
/// thread through current().
class TreeBuilder final : public DocumentHandler {
public:
    explicit TreeBuilder(Parser& parser);
    ~TreeBuilder() override;

    void on_start(const char* name, const char* const* attributes, DDS_Long line) override;
    void on_end(const char* name, const std::string& text, DDS_Long line) override;

    /// Hands over what was built; a builder that keeps it deletes it.
    [[nodiscard]] TreePtr take_tree() { return std::move(tree_); }

    /// @return NULL while no parse runs on this thread.
    [[nodiscard]] static TreeBuilder* current();
    /// Adds a fault of the innermost open element. @param line 0 for the line being parsed
    void add_fault(std::string_view message, DDS_Long line);

private:
    /// Reports an element that must not stand where it does.
    void check_place(std::string_view name);
    void start_object(const char* name, const char* const* attributes);
    void enter(DDS_XMLObject* object);
    /// Runs a callback of a class; that it marks the context counts as a fault.
    template <typename Callback>
    void call(Callback callback);

    Parser& parser_;
    TreeBuilder* outer_;
    DDS_XMLContext context_{};
    TreePtr tree_;
    /// The innermost open object, NULL at the beginning.
    DDS_XMLObject* object_ = nullptr;
    /// Open elements that belong to an object of a class, its own included.
    int inside_class_ = 0;
    /// Open elements that nobody wants.
    int skipped_ = 0;
};

}  // namespace pexa::dds::xml
