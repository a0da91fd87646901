#include "tests/peer/samples.hpp"

#include <fastrtps/utils/md5.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <sstream>
#include <stdexcept>

namespace foreign {
namespace {

using Pair = std::pair<std::string, std::string>;

constexpr std::size_t pairs_in_state = 5;
constexpr std::uint32_t unknown_id = 9;

Pair split(const std::string& text, char separator) {
    const std::size_t place = text.find(separator);
    if (place == std::string::npos) {
        throw std::runtime_error{"not two parts: " + text};
    }
    return {text.substr(0, place), text.substr(place + 1)};
}

std::vector<Pair> pairs_of(const std::string& text) {
    std::vector<Pair> pairs;
    std::istringstream list{text};
    for (std::string pair; std::getline(list, pair, ',');) {
        pairs.push_back(split(pair, ':'));
    }
    return pairs;
}

void put_identity(ParameterListWriter& writer, const std::string& text) {
    const auto [host, application] = split(text, ':');
    writer.put_long(std::stol(host, nullptr, 16));
    writer.put_long(std::stol(application, nullptr, 16));
}

std::string get_identity(ParameterListReader& reader) {
    const auto host = static_cast<unsigned>(reader.get_long());
    const auto application = static_cast<unsigned>(reader.get_long());
    char text[32];
    std::snprintf(text, sizeof text, "%08x:%08x", host, application);
    return text;
}

std::string get_pairs(ParameterListReader& reader) {
    std::string text;
    for (std::size_t i = 0; i < pairs_in_state; ++i) {
        text += (i == 0 ? "" : ",") + std::to_string(reader.get_long());
        text += ':' + std::to_string(reader.get_long());
    }
    return text;
}

std::string get_value(ParameterListReader& reader, ValueKind kind) {
    switch (kind) {
        case ValueKind::identity:
            return get_identity(reader);
        case ValueKind::number:
            return std::to_string(reader.get_long());
        case ValueKind::text:
            return reader.get_string();
        case ValueKind::pairs:
            return get_pairs(reader);
    }
    throw std::runtime_error{"no such kind of value"};
}

/// Keys consist of identities and numbers only.
KeyHash key_hash(const TopicDescription& topic, const std::vector<std::string>& values) {
    ParameterListWriter key{{.encapsulation = 2}};
    for (std::uint32_t id = 0; id < topic.key_members; ++id) {
        key.put_member(id, [&] {
            if (topic.members[id].kind == ValueKind::identity) {
                put_identity(key, values[id]);
            } else {
                key.put_long(std::stol(values[id]));
            }
        });
    }
    key.put_header(list_end, 0);
    MD5 md5;
    md5.init();
    md5.update(key.bytes.data() + encapsulation_size,
               static_cast<MD5::size_type>(key.bytes.size() - encapsulation_size));
    md5.finalize();
    return std::to_array(md5.digest);
}

/// The words of a request and what they make of it.
class Request {
public:
    explicit Request(const std::string& text) : writer_{{}} {
        std::istringstream words{text};
        for (std::string word; words >> word;) {
            const auto [name, value] = split(word, '=');
            words_[name] = value;
        }
    }

    Bytes encode() {
        writer_ = ParameterListWriter{
            {.encapsulation = static_cast<std::uint16_t>(number("encapsulation", 3)),
             .options = static_cast<std::uint16_t>(number("options", 0)),
             .extended = words_.contains("extended"),
             .slack = static_cast<std::size_t>(number("slack", 0))}};
        for (const char item : word("members", "0123.")) {
            put_item(item);
        }
        const long size = static_cast<long>(writer_.bytes.size());
        writer_.bytes.resize(static_cast<std::size_t>(std::min(size, number("keep", size))));
        return writer_.bytes;
    }

private:
    [[nodiscard]] std::string word(const std::string& name, const std::string& otherwise) const {
        return words_.contains(name) ? words_.at(name) : otherwise;
    }
    [[nodiscard]] long number(const std::string& name, long otherwise) const {
        return words_.contains(name) ? std::stol(words_.at(name), nullptr, 0) : otherwise;
    }

    void put_item(char item) {
        switch (item) {
            case '.':
                return writer_.put_header(list_end, 0);
            case 'u':
                return writer_.put_member(unknown_id, [&] { writer_.put_long(-1); });
            case 'U':
                return writer_.put_member(
                    unknown_id, [&] { writer_.put_long(-1); }, must_understand);
            case 'i':
                writer_.put_header(ignored_id, 4);
                return writer_.put_long(-1);
            case 'x':
                writer_.put_header(extended_id | must_understand, 4);
                return writer_.put_long(unknown_id);
            default:
                return put_member(item);
        }
    }

    void put_member(char id) {
        const auto [wrong, error] = split(word("error", ":0"), ':');
        writer_.put_member(
            static_cast<std::uint32_t>(id - '0'), [&] { put_value(id); }, 0,
            wrong == std::string{id} ? std::stoi(error) : 0);
    }

    void put_value(char id) {
        switch (id) {
            case '0':
                return put_identity(writer_, word("target", "0:0"));
            case '1':
                return put_identity(writer_, word("originator", "0:0"));
            case '2':
                return writer_.put_long(number("invocation", 0));
            default:
                return put_command();
        }
    }

    void put_command() {
        // The value's member has the id behind that of its kind's number.
        const long kind = words_.contains("verbosities") ? 1 : words_.contains("format") ? 2 : 0;
        writer_.put_member(0, [&] { writer_.put_long(number("kind", kind)); });
        writer_.put_member(static_cast<std::uint32_t>(kind + 1), [&] {
            if (kind == 1) {
                put_verbosities();
            } else {
                writer_.put_long(kind == 2 ? number("format", 0) : number("level", 0));
            }
        });
        writer_.put_header(list_end, 0);
    }

    void put_verbosities() {
        const std::vector<Pair> pairs = pairs_of(word("verbosities", ""));
        writer_.put_long(number("count", static_cast<long>(pairs.size())));
        for (const auto& [category, verbosity] : pairs) {
            writer_.put_long(std::stol(category));
            writer_.put_long(std::stol(verbosity));
        }
    }

    std::map<std::string, std::string> words_;
    ParameterListWriter writer_;
};

}  // namespace

const TopicDescription log_topic{"log",
                                 "qel/orvane",
                                 "com::qel::kx::LogMessage",
                                 2,
                                 {{"logger", ValueKind::identity},
                                  {"level", ValueKind::number},
                                  {"category", ValueKind::text},
                                  {"message", ValueKind::text}}};

const TopicDescription state_topic{"state",
                                   "qel/orvane/administration/state",
                                   "com::qel::kx::admin::State",
                                   1,
                                   {{"logger", ValueKind::identity},
                                    {"domain", ValueKind::number},
                                    {"state", ValueKind::number},
                                    {"kind", ValueKind::text},
                                    {"level", ValueKind::number},
                                    {"verbosities", ValueKind::pairs},
                                    {"format", ValueKind::number}}};

const TopicDescription request_topic{"request",
                                     "qel/orvane/administration/command_request",
                                     "com::qel::kx::admin::CommandRequest",
                                     0,
                                     {}};

const TopicDescription response_topic{"response",
                                      "qel/orvane/administration/command_response",
                                      "com::qel::kx::admin::CommandResponse",
                                      1,
                                      {{"logger", ValueKind::identity},
                                       {"originator", ValueKind::identity},
                                       {"invocation", ValueKind::number},
                                       {"result", ValueKind::number},
                                       {"message", ValueKind::text}}};

Sample decode(const TopicDescription& topic, const Bytes& payload) {
    Sample sample;
    ParameterListReader reader{payload};
    sample.encapsulation = reader.encapsulation;
    std::vector<std::string> values(topic.members.size());
    reader.get_members([&](std::uint32_t id) {
        const Member& member = topic.members.at(id);
        values[id] = get_value(reader, member.kind);
        sample.fields.emplace_back(member.name, values[id]);
    });
    sample.key_hash = key_hash(topic, values);
    return sample;
}

Bytes encode_request(const std::string& words) {
    return Request{words}.encode();
}

}  // namespace foreign
