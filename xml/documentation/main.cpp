// Writes a documentation file to standard output with its generated parts made anew. Such a part
// stands between the lines
//
//   <!-- begin NAME … -->
//   <!-- end NAME -->

#include <fstream>
#include <iostream>
#include <string>

#include "xml/documentation/sections.hpp"

namespace {

struct Section {
    const char* name;
    std::string (*make)();
};

constexpr Section sections[] = {
    {"schema", orvane::xml::schema},
    {"elements", orvane::xml::table_of_elements},
    {"other options", orvane::xml::table_of_other_options},
};

const Section* beginning_in(const std::string& line) {
    for (const Section& section : sections) {
        if (line.find(std::string("<!-- begin ") + section.name + " ") != std::string::npos) {
            return &section;
        }
    }
    return nullptr;
}

bool ends(const Section& section, const std::string& line) {
    return line.find(std::string("<!-- end ") + section.name + " ") != std::string::npos;
}

/// Copies a file with its sections made anew. @return whether every section ends.
bool renew(std::istream& input, std::ostream& output) {
    const Section* open = nullptr;
    for (std::string line; std::getline(input, line);) {
        if (open != nullptr && !ends(*open, line)) {
            continue;
        }
        output << line << '\n';
        open = open == nullptr ? beginning_in(line) : nullptr;
        if (open != nullptr) {
            output << open->make();
        }
    }
    return open == nullptr;
}

}  // namespace

int main(int argc, char** argv) {
    std::ifstream file(argc == 2 ? argv[1] : "");
    if (!file || !renew(file, std::cout)) {
        std::cerr << "usage: xml_documentation FILE; the end of each begun section must follow\n";
        return 1;
    }
    return 0;
}
