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

    /// Hands the tree over; a tree that is not taken is deleted with the builder.
    TreePtr take_tree() { return std::move(tree_); }

    /// @return NULL while no parse runs on this thread.
    static TreeBuilder* current();
    /// Adds a fault of the innermost open element. @param line 0 for the line being parsed
    void add_fault(std::string_view message, DDS_Long line);

private:
    /// Reports an element in the wrong place.
    void check_place(std::string_view name);
    void start_object(const char* name, const char* const* attributes);
    void enter(DDS_XMLObject* object);
    /// Runs a callback of a class. If it sets the error indicator without a report, a fault is
    /// added.
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
    /// Open elements without an object: one that a class refused, and those inside it.
    int skipped_ = 0;
};

}  // namespace pexa::dds::xml
